#include "DemoGenerator.h"

// A household's family members, visits, payments, income and expenses.
namespace DemoData::detail {

bool Generator::insertFamily(qint64 clientId, const Person &head, bool married, int members)
{
    const QVariant null;
    const QChar other = head.gender == u'F' ? u'M' : u'F';
    bool hasSpouse = false;
    for (int i = 0; i < members; ++i) {
        int relationship = 0;
        Person p;
        bool child = false;
        if (i == 0 && ((married && percent(90)) || (!married && percent(12)))) {
            relationship = married ? idOr(m_relationships, "Spouse") : idOr(m_relationships, "Partner");
            const QChar g = percent(95) ? other : head.gender;
            const int age = std::max(18, head.age + between(-8, 8));
            p = person(married && percent(80) ? head.last : QString(), g, age);
            hasSpouse = true;
        } else {
            const QChar g = percent(50) ? u'F' : u'M';
            const int kind = between(0, 99);
            const int maxChild = std::min(head.age - 16, 30);
            if (head.age >= 56 && kind < 40) {
                relationship = idOr(m_relationships, "Grandchild");
                const int age = between(0, std::min(head.age - 36, 20));
                p = person(percent(70) ? head.last : QString(), g, age);
                child = true;
            } else if (maxChild >= 0 && kind < 85) {
                relationship = g == u'F' ? idOr(m_relationships, "Daughter") : idOr(m_relationships, "Son");
                // Parents were 16 to 45 when their children were born; most children are minors.
                const int youngest = std::max(0, head.age - 45);
                const int oldest = maxChild > 17 && youngest <= 17 && percent(75) ? 17 : maxChild;
                const int age = between(std::min(youngest, oldest), oldest);
                p = person(percent(85) ? head.last : QString(), g, age);
                child = true;
            } else if (head.age < 60 && kind < 92) {
                relationship = idOr(m_relationships, "Parent");
                const int age = std::min(95, head.age + between(18, 35));
                p = person(percent(60) ? head.last : QString(), g, age);
            } else if (kind < 97) {
                relationship = idOr(m_relationships, "Sibling");
                const int age = std::max(16, head.age + between(-10, 10));
                p = person(percent(50) ? head.last : QString(), g, age);
            } else {
                relationship = percent(50) ? idOr(m_relationships, "Other relative") : idOr(m_relationships, "Other");
                p = person({}, g, between(5, 80));
            }
            // Only the first slot holds a spouse or partner; a lookup fallback must not add a second.
            if (hasSpouse
                && (relationship == m_relationships.find(QStringLiteral("Spouse"))
                    || relationship == m_relationships.find(QStringLiteral("Partner"))))
                relationship = idOr(m_relationships, "Other relative");
        }
        const bool adult = p.age >= 18;
        const QString middle = middleInitial();
        const QVariant ssnValue = percent(adult ? 70 : 50) ? QVariant(ssn()) : null;
        const QVariant dln = adult && percent(50) ? QVariant(driversLicense()) : null;
        const QVariant birth = permille(990) ? QVariant(birthDate(p.age)) : null;
        const QVariant ethnic = percent(90) ? QVariant(pickId(m_ethnic)) : null;
        const QVariant education = p.age >= 16 && percent(70) ? QVariant(pickId(m_education)) : null;
        const QVariant mobile = adult && percent(50) ? QVariant(phone()) : null;
        QVariant employer, employerCity, employerState, employerZip, work;
        if (adult && p.age < 70 && percent(30)) {
            employer = pick(m_employers);
            const int ez = between(0, int(m_zips.size()) - 1);
            employerCity = m_cities.at(ez);
            employerState = m_state;
            employerZip = m_zips.at(ez);
            if (percent(40))
                work = phone();
        }
        const QVariant comments = child && permille(30) ? QVariant(QStringLiteral("Attends Head Start.")) : null;
        if (!exec(m_family,
                  {clientId, relationship, p.last, p.first, middle.isEmpty() ? null : QVariant(middle), ssnValue, dln, birth,
                   QString(p.gender), ethnic, education, work, mobile, employer, employerCity, employerState, employerZip, comments},
                  "Family"))
            return false;
    }
    return true;
}

bool Generator::insertVisits(qint64 clientId, int householdSize, int wanted)
{
    // Many households come once or twice, regulars about monthly; a set number of
    // visits spreads over all the years.
    const int days = 365 * m_options.years;
    QList<int> offsets;   // days before today
    if (wanted < 0) {
        if (percent(10))
            return true;
        const double u = m_rng.generateDouble();
        wanted = std::min(24, 1 + int(25.0 * u * u));
        const int firstVisit = between(0, days - 1);
        for (int i = 0; i < wanted; ++i)
            offsets.append(between(0, firstVisit));
    } else {
        // At most one visit a day, every one of them kept.
        QSet<int> visitDays;
        while (visitDays.size() < std::min(wanted, days))
            visitDays.insert(between(0, days - 1));
        offsets = visitDays.values();
    }
    std::sort(offsets.begin(), offsets.end(), std::greater<int>());
    offsets.erase(std::unique(offsets.begin(), offsets.end()), offsets.end());

    const int regular = idOr(m_serviceTypes, "Regular grocery visit");
    const int holiday = m_serviceTypes.find(QStringLiteral("Holiday basket"));
    const QVariant null;
    for (int offset : offsets) {
        const QDate date = daysAgo(offset);
        int type = percent(70) ? regular : pickId(m_serviceTypes);
        if (holiday && (date.month() == 11 || date.month() == 12) && percent(30))
            type = holiday;
        else if (type == holiday && date.month() != 11 && date.month() != 12)
            type = regular;
        const int spread = between(0, 2);
        const int bags = std::clamp(1 + householdSize / 2 + spread - 1, 1, 6);
        const QVariant comments = percent(4) ? QVariant(pick(m_visitComments)) : null;
        if (!exec(m_visit, {clientId, iso(date), type, bags, comments}, "FoodService"))
            return false;
    }
    return true;
}

bool Generator::insertPayments(qint64 clientId, int n)
{
    const QVariant null;
    QList<int> offsets;
    for (int i = 0; i < n; ++i)
        offsets.append(between(0, 365 * m_options.years - 1));
    std::sort(offsets.begin(), offsets.end(), std::greater<int>());
    for (int offset : offsets) {
        const int type = pickId(m_paymentTypes);
        const QString description = m_paymentTypes.descriptions.at(m_paymentTypes.ids.indexOf(type));
        qint64 requested;
        QString note;
        if (description == QLatin1String("Rent")) {
            requested = dollars(200, 900);
            note = QStringLiteral("Paid directly to the landlord");
        } else if (description == QLatin1String("Utilities")) {
            requested = dollarsAndCents(50, 350);
            note = QStringLiteral("Shutoff notice on file; check sent to AES Ohio");
        } else if (description == QLatin1String("Prescription")) {
            requested = dollarsAndCents(10, 150);
            note = QStringLiteral("Filled at the CVS on Wayne Ave");
        } else if (description == QLatin1String("Transportation")) {
            requested = dollars(10, 80);
            note = QStringLiteral("RTA bus passes");
        } else {
            requested = dollars(20, 250);
            note = QStringLiteral("Balance covered by St. Vincent de Paul");
        }
        qint64 paid;
        const int outcome = between(0, 99);
        if (outcome < 15)
            paid = 0;
        else if (outcome < 65)
            paid = requested;
        else
            paid = std::min(requested, dollars(5, std::max(5, int(requested / 100))));
        const QVariant comments = percent(20) ? QVariant(note) : null;
        if (!exec(m_payment, {clientId, iso(daysAgo(offset)), type, requested, paid, comments}, "Payments"))
            return false;
    }
    return true;
}

bool Generator::insertIncomeAndExpenses(qint64 clientId, bool employed)
{
    // Monthly amounts in whole dollars, by the kind of income or bill.
    struct Range
    {
        const char *description;
        int lo, hi;
    };
    static const Range incomeRanges[] = {
        {"Employment", 800, 3200},
        {"Social Security", 900, 2200},
        {"SSI / Disability", 600, 950},
        {"Unemployment", 400, 1800},
        {"Child support", 100, 600},
        {"Pension", 200, 1500},
        {"SNAP", 100, 900},
        {"TANF", 200, 600},
    };
    static const Range expenseRanges[] = {
        {"Rent or mortgage", 550, 1600}, {"Utilities", 80, 350}, {"Food", 200, 800}, {"Transportation", 50, 400}, {"Medical", 20, 300},
        {"Child care", 200, 1000},       {"Insurance", 50, 250},
    };
    auto amount = [this](const Lookup &lookup, int id, const Range *ranges, int n) {
        const QString description = lookup.descriptions.at(lookup.ids.indexOf(id));
        for (int i = 0; i < n; ++i) {
            if (description == QLatin1String(ranges[i].description))
                return dollars(ranges[i].lo, ranges[i].hi);
        }
        return dollars(20, 300);
    };
    auto distinct = [this](const Lookup &lookup, int n) {
        QList<int> ids = lookup.ids;
        for (qsizetype i = ids.size() - 1; i > 0; --i)
            std::swap(ids[i], ids[between(0, int(i))]);
        return ids.mid(0, std::min<qsizetype>(n, ids.size()));
    };

    int incomes = between(0, 3);
    QList<int> sources = distinct(m_incomeSources, incomes);
    const int employment = m_incomeSources.find(QStringLiteral("Employment"));
    if (employed && employment && !sources.contains(employment)) {
        if (sources.isEmpty())
            sources.append(employment);
        else
            sources[0] = employment;
    }
    for (int id : sources) {
        if (!exec(m_income, {clientId, id, amount(m_incomeSources, id, incomeRanges, count(incomeRanges))}, "Income"))
            return false;
    }
    const int expenses = between(0, 4);
    for (int id : distinct(m_expenseCategories, expenses)) {
        if (!exec(m_expense, {clientId, id, amount(m_expenseCategories, id, expenseRanges, count(expenseRanges))}, "Expenses"))
            return false;
    }
    return true;
}

}   // namespace DemoData::detail
