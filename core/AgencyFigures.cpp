#include "AgencyFigures.h"

#include "RowStream.h"
#include "SqlText.h"
#include "basDatabase.h"

#include <QHash>
#include <QSqlQuery>

#include <vector>

// The period's visits and the people of every household are read once each, in two
// statements; the counting is done here, where a person's age at every visit costs
// next to nothing. Dates are numbers yyyymmdd.
namespace AgencyFigures {
namespace {

constexpr int kMinorAge = 18;

QString iso(const QDate &date)
{
    return date.toString(Qt::ISODate);
}

// Completed years from birth to day: the difference of the years, less one while day's
// month and day come before birth's.
int age(int birth, int day)
{
    return day / 10000 - birth / 10000 - (day % 10000 < birth % 10000 ? 1 : 0);
}

// Which bracket a person is in on a day: the brackets in order, then the unknown ages
// (no birth date, or born after the day).
class Brackets
{
public:
    explicit Brackets(const QList<AgeBrackets::Bracket> &brackets) : m_unknown(int(brackets.size()))
    {
        for (int a = 0; a <= AgeBrackets::kTopAge; ++a) {
            int k = 0;
            while (k + 1 < brackets.size() && a > brackets.at(k).high)
                ++k;
            m_byAge.push_back(k);
        }
    }
    int of(int birth, int day) const
    {
        if (birth == 0 || birth > day)
            return m_unknown;
        return m_byAge[size_t(std::min(age(birth, day), AgeBrackets::kTopAge))];
    }
    int count() const { return m_unknown + 1; }

private:
    int m_unknown;
    std::vector<int> m_byAge;
};

bool minor(int birth, int day)
{
    return birth != 0 && birth <= day && age(birth, day) < kMinorAge;
}

struct Household
{
    std::vector<int> visits;   // in date order
    std::vector<int> births;   // the client's and the members', 0 when unknown
    bool firstVisitInPeriod = false;   // no visit before the period: new
};

// The figures of the whole period (index 0) and of each month (1...).
class Tally
{
public:
    Tally(const QDate &start, const QDate &end, int brackets, bool byMonth)
        : m_firstMonth(start.year() * 12 + start.month() - 1)
        , m_months(byMonth ? (end.year() * 12 + end.month() - 1) - m_firstMonth + 1 : 0)
    {
        Figures zero;
        zero.byAge = QList<qint64>(brackets, 0);
        zero.byAgeVisits = zero.byAge;
        m_figures.assign(size_t(m_months + 1), zero);
        m_bags.resize(m_figures.size());
        m_ageVisits.assign(m_figures.size() * size_t(brackets), 0);
    }

    // The whole period's figures, then the day's month's when there are months.
    template<typename Change> void add(int day, const Change &change)
    {
        change(m_figures[0]);
        if (const int m = month(day); m > 0)
            change(m_figures[size_t(m)]);
    }
    Figures &period(int index) { return m_figures[size_t(index)]; }
    int month(int day) const
    {
        const int m = (day / 10000) * 12 + (day / 100) % 100 - 1 - m_firstMonth + 1;
        return m_months > 0 && m >= 1 && m <= m_months ? m : 0;
    }
    // Someone of bracket k at a visit on a day of month m (0: none): counted a great many
    // times, so kept apart from the figures until the end.
    void addAgeVisit(int m, int k)
    {
        const size_t brackets = m_ageVisits.size() / m_figures.size();
        m_ageVisits[size_t(k)] += 1;
        if (m > 0)
            m_ageVisits[size_t(m) * brackets + size_t(k)] += 1;
    }
    void addBags(int day, qint64 type, qint64 bags)
    {
        m_bags[0][type] += bags;
        if (const int m = month(day); m > 0)
            m_bags[size_t(m)][type] += bags;
    }

    Period result(const QDate &start, const QHash<qint64, QString> &types)
    {
        Period period;
        const size_t brackets = m_ageVisits.size() / m_figures.size();
        for (size_t i = 0; i < m_figures.size(); ++i) {
            for (size_t k = 0; k < brackets; ++k)
                m_figures[i].byAgeVisits[qsizetype(k)] = m_ageVisits[i * brackets + k];
            for (auto it = m_bags[i].cbegin(); it != m_bags[i].cend(); ++it) {
                m_figures[i].bagsByType[types.value(it.key())] += it.value();
                m_figures[i].bags += it.value();
            }
        }
        period.total = m_figures[0];
        const QDate first(start.year(), start.month(), 1);
        for (int m = 1; m <= m_months; ++m)
            period.months.append({first.addMonths(m - 1), m_figures[size_t(m)]});
        return period;
    }

private:
    int m_firstMonth;
    int m_months;
    std::vector<Figures> m_figures;
    std::vector<QHash<qint64, qint64>> m_bags;   // by type ID, -1 for none
    std::vector<qint64> m_ageVisits;   // by period, then bracket
};

// One household's figures over a part of its visits (all those of the period, or a
// month's): counted once, its people at its first visit of the part, and at each visit.
void countVisits(Figures &f, const Household &h, size_t from, size_t to, const Brackets &brackets)
{
    const int first = h.visits[from];
    const auto visits = qint64(to - from);
    const auto people = qint64(h.births.size());
    f.households += 1;
    f.visits += visits;
    f.individuals += people;
    f.individualVisits += visits * people;
    bool minors = false;
    for (int birth : h.births) {
        f.byAge[brackets.of(birth, first)] += 1;
        minors = minors || minor(birth, first);
    }
    (minors ? f.withMinors : f.withoutMinors) += 1;
}

void count(Tally &tally, const Household &h, const Brackets &brackets)
{
    countVisits(tally.period(0), h, 0, h.visits.size(), brackets);
    if (h.firstVisitInPeriod)
        tally.add(h.visits.front(), [](Figures &f) { f.newHouseholds += 1; });
    for (size_t from = 0; from < h.visits.size();) {
        const int month = tally.month(h.visits[from]);
        size_t to = from + 1;
        while (to < h.visits.size() && tally.month(h.visits[to]) == month)
            ++to;
        if (month > 0)
            countVisits(tally.period(month), h, from, to, brackets);
        from = to;
    }
    for (int day : h.visits) {
        const int month = tally.month(day);
        for (int birth : h.births)
            tally.addAgeVisit(month, brackets.of(birth, day));
    }
}

QHash<qint64, QString> typeNames()
{
    QHash<qint64, QString> names {{-1, QString()}};
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT FoodServiceTypeID, FoodServiceTypeDescription FROM FoodServiceTypes"));
    while (q.next())
        names.insert(q.value(0).toLongLong(), q.value(1).toString());
    return names;
}

QList<BornAfterVisit> bornAfterVisit(const QDate &start, const QDate &end)
{
    const QString firstVisit = QStringLiteral("(SELECT MIN(f.FoodServiceDate) FROM FoodService f WHERE f.ClientID = %1 "
                                              "AND f.FoodServiceDate BETWEEN ? AND ? AND f.NumberOfBags > 0)");
    const QString sql = QStringLiteral("SELECT name, household, b, first FROM (SELECT %1 AS name, %2 AS household, m.BirthDate AS b, "
                                       "%3 AS first FROM Family m JOIN Client c ON c.ClientID = m.ClientID WHERE m.BirthDate > ? "
                                       "UNION ALL SELECT %2, '', c.BirthDate, %4 FROM Client c WHERE c.BirthDate > ?) WHERE first < b "
                                       "ORDER BY household, name")
                            .arg(SqlText::fullName(QStringLiteral("m")), SqlText::fullName(QStringLiteral("c")),
                                 firstVisit.arg(QStringLiteral("m.ClientID")), firstVisit.arg(QStringLiteral("c.ClientID")));
    QList<BornAfterVisit> people;
    QSqlQuery q = basDatabase::Execute(sql, {iso(start), iso(end), iso(start), iso(start), iso(end), iso(start)});
    while (q.next())
        people.append({q.value(0).toString().trimmed(), q.value(1).toString().trimmed(),
                       QDate::fromString(q.value(2).toString(), Qt::ISODate), QDate::fromString(q.value(3).toString(), Qt::ISODate)});
    return people;
}

}   // namespace

QList<Query> figuresQueries(const QDate &start, const QDate &end)
{
    // The visits in date order, straight from the date index; each client with its
    // birth date and whether it had no visit before the period; each family member.
    return {
        {QStringLiteral("SELECT ClientID, FoodServiceDate, IFNULL(FoodServiceTypeID, -1), NumberOfBags FROM FoodService "
                        "WHERE FoodServiceDate BETWEEN ? AND ? AND NumberOfBags > 0 ORDER BY FoodServiceDate"),
         {iso(start), iso(end)},
         {}},
        {QStringLiteral("SELECT c.ClientID, c.BirthDate, NOT EXISTS (SELECT 1 FROM FoodService f WHERE f.ClientID = c.ClientID "
                        "AND f.FoodServiceDate < ? AND f.NumberOfBags > 0) FROM Client c "
                        "UNION ALL SELECT ClientID, BirthDate, 0 FROM Family"),
         {iso(start)},
         {}},
    };
}

Period compute(const QDate &start, const QDate &end, const QList<AgeBrackets::Bracket> &brackets, bool byMonth)
{
    const Brackets ages(brackets);
    Tally tally(start, end, ages.count(), byMonth);
    const QList<Query> queries = figuresQueries(start, end);

    QHash<qint64, Household> households;
    RowStream visits(queries.at(0));
    int lastDay = 0;
    while (visits.next()) {
        const int day = visits.date(1);
        households[visits.integer(0)].visits.push_back(day);
        tally.addBags(day, visits.integer(2), visits.integer(3));
        if (day != lastDay)
            tally.add(day, [](Figures &f) { f.distributionDays += 1; });
        lastDay = day;
    }
    RowStream people(queries.at(1));
    while (people.next()) {
        const auto it = households.find(people.integer(0));
        if (it == households.end())
            continue;
        it->births.push_back(people.date(1));
        if (people.integer(2))
            it->firstVisitInPeriod = true;
    }
    for (const Household &h : std::as_const(households))
        count(tally, h, ages);

    Period period = tally.result(start, typeNames());
    period.bornAfterVisit = bornAfterVisit(start, end);
    return period;
}

}   // namespace AgencyFigures
