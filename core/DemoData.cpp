#include "DemoData.h"
#include "DemoGenerator.h"
#include "LookupTables.h"
#include "SqlText.h"
#include "Transaction.h"

#include <QScopeGuard>

#include <algorithm>

namespace DemoData {
namespace detail {

bool Generator::loadLookup(const char *table, const char *column, Lookup *lookup)
{
    const LookupTables::LookupTable *t = LookupTables::referencedBy(QLatin1String(table), QLatin1String(column));
    if (!t) {
        m_error = QStringLiteral("No lookup table is referenced by %1.%2.").arg(QLatin1String(table), QLatin1String(column));
        return false;
    }
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    const QString sql
        = QStringLiteral("SELECT %1, %2 FROM %3 ORDER BY %1")
              .arg(SqlText::id(QLatin1String(t->keyColumn)), SqlText::id(QLatin1String(t->descriptionColumn)), SqlText::id(t->name()));
    if (!query.exec(sql))
        return fail(QStringLiteral("Could not read %1").arg(t->name()), query);
    while (query.next()) {
        lookup->ids.append(query.value(0).toInt());
        lookup->descriptions.append(query.value(1).toString());
    }
    if (lookup->ids.isEmpty()) {
        m_error = QStringLiteral("The lookup table %1 is empty.").arg(t->name());
        return false;
    }
    return true;
}

bool Generator::insertHousehold()
{
    const QVariant null;
    const QChar gender = percent(58) ? u'F' : u'M';
    int age = 18 + between(0, 36);
    age += between(0, 36);   // peaks in the fifties
    const Person head = person({}, gender, age);
    const QString middle = middleInitial();
    const QVariant ssnValue = percent(97) ? QVariant(ssn()) : null;
    const QVariant dln = percent(70) ? QVariant(driversLicense()) : null;
    const QString address = street();
    const int zip = between(0, int(m_zips.size()) - 1);
    const QVariant home = percent(70) ? QVariant(phone()) : null;
    const QVariant mobile = percent(80) ? QVariant(phone()) : null;
    const QVariant birth = percent(98) ? QVariant(birthDate(age)) : null;
    const int maritalId = pickId(m_marital);
    const bool married = maritalId == m_marital.find(QStringLiteral("Married"));
    const int ethnicId = pickId(m_ethnic);
    const int educationId = pickId(m_education);
    const int housingId = pickId(m_housing);
    const QVariant religionId = percent(85) ? QVariant(pickId(m_religion)) : null;
    const int assistanceId = pickId(m_assistance);

    const bool employed = age < 70 && percent(48);
    QVariant work, employer, employerAddress, employerCity, employerState, employerZip, years, months;
    if (employed) {
        employer = pick(m_employers);
        employerAddress = street();
        const int ez = between(0, int(m_zips.size()) - 1);
        employerCity = m_cities.at(ez);
        employerState = m_state;
        employerZip = m_zips.at(ez);
        years = between(0, std::min(age - 17, 25));
        months = between(0, 11);
        if (percent(50))
            work = phone();
    }
    QVariant former;
    if (percent(10)) {
        const QString formerStreet = street();
        const int formerZip = between(0, int(m_zips.size()) - 1);
        former = formerStreet + QLatin1Char('\n') + m_cities.at(formerZip) + QStringLiteral(", OH ") + m_zips.at(formerZip);
    }
    const QVariant diet = percent(8) ? QVariant(memo(m_diets, 25)) : null;
    const QVariant medical = percent(12) ? QVariant(memo(m_medical, 30)) : null;
    const QVariant relatives = permille(5) ? QVariant(QStringLiteral("Looking for a brother, last heard of in Columbus.")) : null;
    const bool femaContacted = percent(2);
    const bool femaEligible = femaContacted && percent(50);
    const QVariant femaComments = femaContacted ? QVariant(QStringLiteral("Storm damage to the house; applied for assistance.")) : null;
    const QVariant comments = percent(15) ? QVariant(memo(m_comments, 30)) : null;

    if (!exec(m_client,
              {head.last,
               head.first,
               middle.isEmpty() ? null : QVariant(middle),
               ssnValue,
               dln,
               address,
               m_cities.at(zip),
               m_state,
               m_zips.at(zip),
               home,
               work,
               mobile,
               birth,
               QString(head.gender),
               maritalId,
               ethnicId,
               educationId,
               housingId,
               religionId,
               assistanceId,
               employer,
               employerAddress,
               employerCity,
               employerState,
               employerZip,
               years,
               months,
               former,
               diet,
               medical,
               relatives,
               int(femaContacted),
               int(femaEligible),
               femaComments,
               comments},
              "Client"))
        return false;
    const qint64 clientId = m_client.lastInsertId().toLongLong();

    int members = 0;
    if (m_options.familyMembers >= 0) {
        members = share(m_options.familyMembers, &m_familyGiven);
    } else {
        static const int familyWeights[] = {30, 22, 20, 14, 8, 4, 2};   // 0..6 members, about 1.7 on average
        int roll = between(0, 99);
        while (roll >= familyWeights[members]) {
            roll -= familyWeights[members];
            ++members;
        }
    }
    if (!insertFamily(clientId, head, married, members))
        return false;
    const int visits = m_options.foodServices >= 0 ? share(m_options.foodServices, &m_servicesGiven) : -1;
    if (!insertVisits(clientId, members + 1, visits))
        return false;
    int payments = 0;
    if (m_options.payments >= 0)
        payments = share(m_options.payments, &m_paymentsGiven);
    else if (percent(25))
        payments = between(1, 4);
    return insertPayments(clientId, payments) && insertIncomeAndExpenses(clientId, employed);
}

int Generator::share(qint64 total, qint64 *given)
{
    // Keeps close to an even spread; the variation is at most half a household's mean either way.
    const qint64 due = total * (m_household + 1) / m_options.clients;
    const int mean = int(total / m_options.clients);
    const qint64 n = std::max<qint64>(0, due - *given + between(-mean / 2, mean / 2));
    *given += n;
    return int(n);
}

bool Generator::insertVolunteer()
{
    const QVariant null;
    const QChar gender = percent(60) ? u'F' : u'M';
    const Person p = person({}, gender, 0);
    const QString middle = middleInitial();
    const int zip = between(0, int(m_zips.size()) - 1);
    const QString address = street();
    const QVariant home = percent(60) ? QVariant(phone()) : null;
    const QVariant work = percent(25) ? QVariant(phone()) : null;
    const QVariant mobile = percent(85) ? QVariant(phone()) : null;
    const QVariant mail = percent(85) ? QVariant(email(p)) : null;
    const QVariant affiliation = percent(80) ? QVariant(pick(m_affiliations)) : null;
    const QString contactLast = percent(60) ? p.last : QString();
    const QChar contactGender = percent(50) ? u'F' : u'M';
    const Person contact = person(contactLast, contactGender, 0);
    const QString contactPhone = phone();
    const int party = percent(70) ? 1 : between(2, 4);
    const QVariant comments = percent(30) ? QVariant(pick(m_volunteerComments)) : null;
    return exec(m_volunteer,
                {p.last, p.first, middle.isEmpty() ? null : QVariant(middle), address, m_cities.at(zip), m_state, m_zips.at(zip), home,
                 work, mobile, mail, affiliation, contact.first + QLatin1Char(' ') + contact.last, contactPhone, party, comments},
                "Volunteer");
}

bool Generator::run()
{
    if (!loadLookup("Client", "MaritalStatusID", &m_marital) || !loadLookup("Client", "EthnicOriginID", &m_ethnic)
        || !loadLookup("Client", "EducationLevelID", &m_education) || !loadLookup("Client", "HousingID", &m_housing)
        || !loadLookup("Client", "ReligiousPreferenceID", &m_religion) || !loadLookup("Client", "OtherAssistanceID", &m_assistance)
        || !loadLookup("Family", "RelationshipID", &m_relationships) || !loadLookup("FoodService", "FoodServiceTypeID", &m_serviceTypes)
        || !loadLookup("Payments", "PaymentsTypeID", &m_paymentTypes) || !loadLookup("Income", "IncomeSourceID", &m_incomeSources)
        || !loadLookup("Expenses", "ExpenseCategoryID", &m_expenseCategories))
        return false;

    // SSNs already on file stay unique too.
    qint64 existingClients = 0;
    {
        QSqlQuery existing(m_db);
        existing.setForwardOnly(true);
        if (!existing.exec(QStringLiteral("SELECT SocialSecurityNumber FROM Client WHERE SocialSecurityNumber IS NOT NULL "
                                          "UNION SELECT SocialSecurityNumber FROM Family WHERE SocialSecurityNumber IS NOT NULL")))
            return fail(QStringLiteral("Could not read existing SSNs"), existing);
        while (existing.next()) {
            bool ok = false;
            const int value = existing.value(0).toString().toInt(&ok);
            if (ok)
                m_ssns.insert(value);
        }
        if (!existing.exec(QStringLiteral("SELECT COUNT(*) FROM Client")) || !existing.next())
            return fail(QStringLiteral("Could not count clients"), existing);
        existingClients = existing.value(0).toLongLong();
    }
    // Filling an index row by row costs far more than building it once at the end, unless
    // the tables already hold more than this run adds.
    if (m_options.clients >= existingClients && !dropIndexes())
        return false;

    if (!prepare(m_client,
                 QStringLiteral("INSERT INTO Client (LastName, FirstName, MiddleInitial, SocialSecurityNumber, DriversLicenseNumber, "
                                "Address, City, State, ZipCode, HomePhone, WorkPhone, MobilePhone, BirthDate, Gender, MaritalStatusID, "
                                "EthnicOriginID, EducationLevelID, HousingID, ReligiousPreferenceID, OtherAssistanceID, EmployerName, "
                                "EmployerAddress, EmployerCity, EmployerState, EmployerZip, EmployerDurationYears, "
                                "EmployerDurationMonths, FormerAddress, DietaryRequirements, MedicalProblems, RelativesSearchingFor, "
                                "FEMAContacted, FEMAEligible, FEMAComments, Comments) "
                                "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, "
                                "?, ?, ?, ?)"))
        || !prepare(
            m_family,
            QStringLiteral("INSERT INTO Family (ClientID, RelationshipID, LastName, FirstName, MiddleInitial, SocialSecurityNumber, "
                           "DriversLicenseNumber, BirthDate, Gender, EthnicOriginID, EducationLevelID, WorkPhone, MobilePhone, "
                           "EmployerName, EmployerCity, EmployerState, EmployerZip, Comments) "
                           "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"))
        || !prepare(m_visit,
                    QStringLiteral("INSERT INTO FoodService (ClientID, FoodServiceDate, FoodServiceTypeID, "
                                   "NumberOfBags, Comments) VALUES (?, ?, ?, ?, ?)"))
        || !prepare(m_payment,
                    QStringLiteral("INSERT INTO Payments (ClientID, PaymentDate, PaymentsTypeID, "
                                   "AmountRequested, AmountPaid, Comments) VALUES (?, ?, ?, ?, ?, ?)"))
        || !prepare(m_income, QStringLiteral("INSERT INTO Income (ClientID, IncomeSourceID, Amount) VALUES (?, ?, ?)"))
        || !prepare(m_expense,
                    QStringLiteral("INSERT INTO Expenses (ClientID, ExpenseCategoryID, Amount) "
                                   "VALUES (?, ?, ?)"))
        || !prepare(m_volunteer,
                    QStringLiteral("INSERT INTO Volunteer (LastName, FirstName, MiddleInitial, Address, City, State, ZipCode, HomePhone, "
                                   "WorkPhone, MobilePhone, EMailAddress, Affiliation, EmergencyContact, EmergencyContactPhone, "
                                   "NumberInParty, Comments) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)")))
        return false;

    if (!insertZips() || !updateOrganization())
        return false;
    for (m_household = 0; m_household < m_options.clients; ++m_household) {
        if (!insertHousehold())
            return false;
    }
    const int volunteers = m_options.volunteers >= 0 ? m_options.volunteers : std::max(5, m_options.clients / 50);
    for (int i = 0; i < volunteers; ++i) {
        if (!insertVolunteer())
            return false;
    }
    return createIndexes();
}

bool Generator::dropIndexes()
{
    QSqlQuery query(m_db);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT name, sql FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL "
                                   "AND tbl_name IN ('Client', 'Family', 'FoodService', 'Payments', 'Income', "
                                   "'Expenses') ORDER BY rowid")))
        return fail(QStringLiteral("Could not list the indexes"), query);
    QStringList names;
    while (query.next()) {
        names.append(query.value(0).toString());
        m_indexes.append(query.value(1).toString());
    }
    query.finish();
    for (const QString &name : std::as_const(names)) {
        QString quoted = name;
        quoted.replace(QLatin1Char('"'), QStringLiteral("\"\""));
        if (!query.exec(QStringLiteral("DROP INDEX \"%1\"").arg(quoted)))
            return fail(QStringLiteral("Could not drop index %1").arg(name), query);
    }
    return true;
}

bool Generator::createIndexes()
{
    QSqlQuery query(m_db);
    for (const QString &sql : std::as_const(m_indexes)) {
        if (!query.exec(sql))
            return fail(QStringLiteral("Could not rebuild an index"), query);
    }
    m_indexes.clear();
    return true;
}

}   // namespace detail

using detail::Generator;

bool Generate(QSqlDatabase db, const Options &options, QString *error)
{
    auto report = [error](const QString &text) {
        if (error)
            *error = text;
        return false;
    };
    if (!db.isOpen())
        return report(QStringLiteral("The database is not open."));
    if (!options.today.isValid())
        return report(QStringLiteral("The date for today is not valid."));
    // Every index of a large run stays in memory until the commit; the old size comes back afterwards.
    QVariant cacheSize;
    {
        QSqlQuery pragma(db);
        if (pragma.exec(QStringLiteral("PRAGMA cache_size")) && pragma.next()) {
            cacheSize = pragma.value(0);
            pragma.finish();
            pragma.exec(QStringLiteral("PRAGMA cache_size = -262144"));
        }
    }
    auto restoreCacheSize = qScopeGuard([&db, &cacheSize] {
        if (cacheSize.isValid())
            QSqlQuery(db).exec(QStringLiteral("PRAGMA cache_size = %1").arg(cacheSize.toLongLong()));
    });

    Transaction transaction(db);
    if (!transaction.active())
        return report(QStringLiteral("Could not start a transaction: %1").arg(transaction.error()));

    bool ok;
    QString message;
    {
        Generator generator(db, options);
        ok = generator.run();
        message = generator.error();
    }   // the prepared statements are gone before commit or rollback
    if (!ok) {
        transaction.rollback();
        return report(message);
    }
    if (!transaction.commit())
        return report(QStringLiteral("Could not commit: %1").arg(transaction.error()));
    return true;
}

}   // namespace DemoData
