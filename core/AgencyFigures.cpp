#include "AgencyFigures.h"

#include "SqlText.h"
#include "basDatabase.h"

#include <QSqlQuery>

namespace AgencyFigures {
namespace {

constexpr int kMinorAge = 18;

// Statement text with the values of its placeholders, kept in step as pieces are joined.
struct Sql
{
    QString text;
    QVariantList binds;

    Sql &operator<<(const QString &more)
    {
        text += more;
        return *this;
    }
    Sql &operator<<(const Sql &more)
    {
        text += more.text;
        binds += more.binds;
        return *this;
    }
    Sql &bind(const QVariant &value)
    {
        text += QLatin1Char('?');
        binds << value;
        return *this;
    }
};

QString iso(const QDate &date)
{
    return date.toString(Qt::ISODate);
}

// Completed years from the ISO birth date b to the ISO date d: the difference of the
// years, less one while d's month and day come before b's.
QString age(const QString &b, const QString &d)
{
    return QStringLiteral("(CAST(substr(%2, 1, 4) AS INTEGER) - CAST(substr(%1, 1, 4) AS INTEGER) - (substr(%2, 6) < substr(%1, 6)))")
        .arg(b, d);
}

// The bracket someone born on b is in on d: 0 for an unknown age, else 1, 2, ... in order.
Sql bracket(const QList<AgeBrackets::Bracket> &brackets, const QString &b, const QString &d)
{
    Sql s;
    s << QStringLiteral("(CASE WHEN %1 IS NULL OR %1 > %2 THEN 0").arg(b, d);
    for (int i = 0; i + 1 < brackets.size(); ++i)
        s << QStringLiteral(" WHEN %1 <= ").arg(age(b, d)) << Sql().bind(brackets.at(i).high) << QStringLiteral(" THEN %1").arg(i + 1);
    s << QStringLiteral(" ELSE %1 END)").arg(brackets.size());
    return s;
}

// 1 when someone born on b is under 18 on d, else 0.
Sql minor(const QString &b, const QString &d)
{
    Sql s;
    s << QStringLiteral("(%1 IS NOT NULL AND %1 <= %2 AND %3 < ").arg(b, d, age(b, d));
    s.bind(kMinorAge) << QStringLiteral(")");
    return s;
}

QString nulls(int n)
{
    return n > 0 ? QStringLiteral(", NULL").repeated(n) : QString();
}

// The rows are (part, period, key, values...); a period is '' for the whole range or
// a month as "YYYY-MM". Parts: 1 per period the households, visits, people and those
// whose bracket and minors do not change in the range; 2 the unduplicated brackets of
// the people whose bracket changes; 3 their duplicated brackets by month; 4 households
// whose minors change, by period; 5 new households by month; 6 distribution days by
// month; 7 bags by month and type. Parts 3, 5, 6 and 7 add up to the range's figures.
Sql statement(const QDate &start, const QDate &end, const QList<AgeBrackets::Bracket> &brackets, bool byMonth)
{
    const int n = int(brackets.size());
    const int width = 6 + 2 * (n + 1);
    Sql s;
    s << QStringLiteral("WITH v AS MATERIALIZED (SELECT ClientID AS c, FoodServiceDate AS d, FoodServiceTypeID AS t, NumberOfBags AS bags "
                        "FROM FoodService WHERE FoodServiceDate BETWEEN ");
    s.bind(iso(start)) << QStringLiteral(" AND ");
    s.bind(iso(end)) << QStringLiteral(" AND NumberOfBags > 0), ");
    s << QStringLiteral("hm AS MATERIALIZED (SELECT '' AS g, c, MIN(d) AS d1, MAX(d) AS d2, COUNT(*) AS n FROM v GROUP BY c");
    if (byMonth)
        s << QStringLiteral(" UNION ALL SELECT substr(d, 1, 7), c, MIN(d), MAX(d), COUNT(*) FROM v GROUP BY 1, 2");
    s << QStringLiteral("), ppl AS MATERIALIZED (SELECT c, b, d1, d2, ") << bracket(brackets, QStringLiteral("b"), QStringLiteral("d1"))
      << QStringLiteral(" AS k1, ") << bracket(brackets, QStringLiteral("b"), QStringLiteral("d2")) << QStringLiteral(" AS k2, ")
      << minor(QStringLiteral("b"), QStringLiteral("d1")) << QStringLiteral(" AS u1, ") << minor(QStringLiteral("b"), QStringLiteral("d2"))
      << QStringLiteral(" AS u2 FROM (SELECT h.c, x.BirthDate AS b, h.d1, h.d2 FROM hm h JOIN Client x ON x.ClientID = h.c WHERE h.g = '' "
                        "UNION ALL SELECT h.c, x.BirthDate, h.d1, h.d2 FROM hm h JOIN Family x ON x.ClientID = h.c WHERE h.g = '')), ");
    // Per household: its people, whether its minors change in the range, and how many
    // people keep each bracket through it.
    s << QStringLiteral("hh AS MATERIALIZED (SELECT c, COUNT(*) AS s, MAX(u1 <> u2 OR (b > d1 AND b <= d2)) AS mc, MAX(u1) AS m1");
    for (int k = 0; k <= n; ++k)
        s << QStringLiteral(", SUM(k1 = %1 AND k2 = %1) AS f%1").arg(k);
    s << QStringLiteral(" FROM ppl GROUP BY c) ");

    s << QStringLiteral("SELECT 1, h.g, NULL, COUNT(*), SUM(h.n), SUM(x.s), SUM(h.n * x.s), SUM(x.mc = 0 AND x.m1 = 1), "
                        "SUM(x.mc = 0 AND x.m1 = 0)");
    for (int k = 0; k <= n; ++k)
        s << QStringLiteral(", SUM(x.f%1), SUM(h.n * x.f%1)").arg(k);
    s << QStringLiteral(" FROM hm h JOIN hh x ON x.c = h.c GROUP BY h.g");

    s << QStringLiteral(" UNION ALL SELECT 2, h.g, ") << bracket(brackets, QStringLiteral("p.b"), QStringLiteral("h.d1"))
      << QStringLiteral(", COUNT(*)%1 FROM ppl p JOIN hm h ON h.c = p.c WHERE p.k1 <> p.k2 GROUP BY 2, 3").arg(nulls(width - 1));

    s << QStringLiteral(" UNION ALL SELECT 3, substr(f.FoodServiceDate, 1, 7), ")
      << bracket(brackets, QStringLiteral("p.b"), QStringLiteral("f.FoodServiceDate"))
      << QStringLiteral(", COUNT(*)%1 FROM ppl p JOIN FoodService f ON f.ClientID = p.c AND f.FoodServiceDate BETWEEN ")
             .arg(nulls(width - 1));
    s.bind(iso(start)) << QStringLiteral(" AND ");
    s.bind(iso(end)) << QStringLiteral(" AND f.NumberOfBags > 0 WHERE p.k1 <> p.k2 GROUP BY 2, 3");

    s << QStringLiteral(" UNION ALL SELECT 4, g, has, COUNT(*)%1 FROM (SELECT h.g, h.c, MAX(").arg(nulls(width - 1))
      << minor(QStringLiteral("p.b"), QStringLiteral("h.d1"))
      << QStringLiteral(
             ") AS has FROM hm h JOIN ppl p ON p.c = h.c WHERE h.c IN (SELECT c FROM hh WHERE mc) GROUP BY h.g, h.c) GROUP BY 2, 3");

    s << QStringLiteral(" UNION ALL SELECT 5, substr(h.d1, 1, 7), NULL, COUNT(*)%1 FROM hm h WHERE h.g = '' AND NOT EXISTS "
                        "(SELECT 1 FROM FoodService f WHERE f.ClientID = h.c AND f.FoodServiceDate < ")
             .arg(nulls(width - 1));
    s.bind(iso(start)) << QStringLiteral(" AND f.NumberOfBags > 0) GROUP BY 2");

    s << QStringLiteral(" UNION ALL SELECT 6, substr(d, 1, 7), NULL, COUNT(DISTINCT d)%1 FROM v GROUP BY 2").arg(nulls(width - 1));

    s << QStringLiteral(" UNION ALL SELECT 7, m, IFNULL(ty.FoodServiceTypeDescription, ''), SUM(b)%1 FROM "
                        "(SELECT substr(d, 1, 7) AS m, t, SUM(bags) AS b FROM v GROUP BY 1, 2) "
                        "LEFT JOIN FoodServiceTypes ty ON ty.FoodServiceTypeID = t GROUP BY 2, 3")
             .arg(nulls(width - 1));
    return s;
}

Figures zeroed(int brackets)
{
    Figures f;
    f.byAge = QList<qint64>(brackets + 1, 0);
    f.byAgeVisits = f.byAge;
    return f;
}

QList<BornAfterVisit> bornAfterVisit(const QDate &start, const QDate &end)
{
    Sql s;
    const QString firstVisit = QStringLiteral("(SELECT MIN(f.FoodServiceDate) FROM FoodService f WHERE f.ClientID = %1 "
                                              "AND f.FoodServiceDate BETWEEN ? AND ? AND f.NumberOfBags > 0)");
    s << QStringLiteral("SELECT name, household, b, first FROM (SELECT %1 AS name, %2 AS household, m.BirthDate AS b, %3 AS first "
                        "FROM Family m JOIN Client c ON c.ClientID = m.ClientID WHERE m.BirthDate > ? "
                        "UNION ALL SELECT %2, '', c.BirthDate, %4 FROM Client c WHERE c.BirthDate > ?) WHERE first < b "
                        "ORDER BY household, name")
             .arg(SqlText::fullName(QStringLiteral("m")), SqlText::fullName(QStringLiteral("c")),
                  firstVisit.arg(QStringLiteral("m.ClientID")), firstVisit.arg(QStringLiteral("c.ClientID")));
    s.binds = {iso(start), iso(end), iso(start), iso(start), iso(end), iso(start)};
    QList<BornAfterVisit> people;
    QSqlQuery q = basDatabase::Execute(s.text, s.binds);
    while (q.next())
        people.append({q.value(0).toString().trimmed(), q.value(1).toString().trimmed(),
                       QDate::fromString(q.value(2).toString(), Qt::ISODate), QDate::fromString(q.value(3).toString(), Qt::ISODate)});
    return people;
}

}   // namespace

Query figuresQuery(const QDate &start, const QDate &end, const QList<AgeBrackets::Bracket> &brackets, bool byMonth)
{
    const Sql s = statement(start, end, brackets, byMonth);
    return {s.text, s.binds, {}};
}

Period compute(const QDate &start, const QDate &end, const QList<AgeBrackets::Bracket> &brackets, bool byMonth)
{
    const int n = int(brackets.size());
    Period period;
    period.total = zeroed(n);
    QMap<QString, Figures> months;
    if (byMonth)
        for (QDate m(start.year(), start.month(), 1); m <= end; m = m.addMonths(1))
            months.insert(m.toString(QStringLiteral("yyyy-MM")), zeroed(n));
    // The statement's bracket 0 is the unknown age, which the figures list last.
    auto index = [n](const QVariant &key) { return key.toInt() == 0 ? n : key.toInt() - 1; };
    auto of = [&](const QString &g) -> Figures * {
        if (g.isEmpty())
            return &period.total;
        const auto it = months.find(g);
        return it == months.end() ? nullptr : &it.value();
    };
    // Figures that add up over the months go to their month and to the range.
    auto add = [&](const QString &month, const std::function<void(Figures &)> &change) {
        change(period.total);
        if (Figures *f = of(month))
            change(*f);
    };

    const Sql s = statement(start, end, brackets, byMonth);
    QSqlQuery q = basDatabase::Execute(s.text, s.binds);
    while (q.next()) {
        const int part = q.value(0).toInt();
        const QString g = q.value(1).toString();
        const QVariant key = q.value(2);
        const qint64 value = q.value(3).toLongLong();
        switch (part) {
        case 1:
            if (Figures *f = of(g)) {
                f->households = value;
                f->visits = q.value(4).toLongLong();
                f->individuals = q.value(5).toLongLong();
                f->individualVisits = q.value(6).toLongLong();
                f->withMinors += q.value(7).toLongLong();
                f->withoutMinors += q.value(8).toLongLong();
                for (int k = 0; k <= n; ++k) {
                    f->byAge[index(k)] += q.value(9 + 2 * k).toLongLong();
                    f->byAgeVisits[index(k)] += q.value(10 + 2 * k).toLongLong();
                }
            }
            break;
        case 2:
            if (Figures *f = of(g))
                f->byAge[index(key)] += value;
            break;
        case 3:
            add(g, [&](Figures &f) { f.byAgeVisits[index(key)] += value; });
            break;
        case 4:
            if (Figures *f = of(g))
                (key.toInt() ? f->withMinors : f->withoutMinors) += value;
            break;
        case 5:
            add(g, [&](Figures &f) { f.newHouseholds += value; });
            break;
        case 6:
            add(g, [&](Figures &f) { f.distributionDays += value; });
            break;
        case 7:
            add(g, [&](Figures &f) {
                f.bags += value;
                f.bagsByType[key.toString()] += value;
            });
            break;
        }
    }
    for (auto it = months.cbegin(); it != months.cend(); ++it)
        period.months.append({QDate::fromString(it.key() + QStringLiteral("-01"), Qt::ISODate), it.value()});
    period.bornAfterVisit = bornAfterVisit(start, end);
    return period;
}

}   // namespace AgencyFigures
