#include "ClientImport.h"
#include "CsvWriter.h"
#include "ExportFile.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QDate>
#include <QFile>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QByteArray kBase = "Last Name,First Name,Social Security Number,Address,City,State";

ClientImport::Plan planOf(const QByteArray &csv)
{
    CsvReader::Table table;
    QString error;
    if (!CsvReader::parse(csv, &table, &error))
        qFatal("%s", qPrintable(error));
    return ClientImport::check(table, ClientImport::automaticMapping(table.header));
}

// One client row under the base header plus one more column.
ClientImport::Plan oneRow(const QByteArray &caption, const QByteArray &cell,
                          const QByteArray &base = "Doe,Jane,123-45-6789,1 Main St,Dayton,OH")
{
    return planOf(kBase + ',' + caption + "\r\n" + base + ',' + cell + "\r\n");
}

QVariant stored(const QString &column, const QString &lastName = QStringLiteral("Doe"))
{
    return TestDatabase::scalar(QStringLiteral("SELECT %1 FROM Client WHERE LastName = ?").arg(column), {lastName});
}

}   // namespace

class TestClientImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headersNamedLikeTheExportMapThemselves()
    {
        const QList<int> mapping = ClientImport::automaticMapping({"Client ID", " last name ", "Phone of Aunt", "BirthDate", "Last Name"});
        QCOMPARE(mapping.size(), 5);
        QCOMPARE(mapping[0], -1);   // keys are the new database's own
        QCOMPARE(ClientImport::fields()[mapping[1]].name(), "Last Name");
        QCOMPARE(mapping[2], -1);
        QCOMPARE(ClientImport::fields()[mapping[3]].name(), "Birth Date");
        QCOMPARE(mapping[4], -1);   // a field filled once
        QCOMPARE(ClientImport::unmappedRequired(mapping),
                 (QStringList {"First Name", "Social Security Number", "Address", "City", "State"}));
    }

    void valuesFollowTheClientWindowsRules_data()
    {
        QTest::addColumn<QByteArray>("caption");
        QTest::addColumn<QByteArray>("cell");
        QTest::addColumn<QString>("problem");
        QTest::addColumn<QString>("column");
        QTest::addColumn<QVariant>("value");
        const QString none;
        QTest::newRow("date mm/dd/yyyy") << QByteArray("Birth Date") << QByteArray("03/05/1961") << none << "BirthDate"
                                         << QVariant("1961-03-05");
        QTest::newRow("date yyyy-mm-dd") << QByteArray("Birth Date") << QByteArray("1961-03-05") << none << "BirthDate"
                                         << QVariant("1961-03-05");
        QTest::newRow("date dd-Mon-yy, last century")
            << QByteArray("Birth Date") << QByteArray("05-Mar-61") << none << "BirthDate" << QVariant("1961-03-05");
        QTest::newRow("date dd-Mon-yy, this century")
            << QByteArray("Birth Date") << QByteArray("05-mar-04") << none << "BirthDate" << QVariant("2004-03-05");
        QTest::newRow("date that is none") << QByteArray("Birth Date") << QByteArray("31/02/1961")
                                           << "Birth Date '31/02/1961' is not a date (mm/dd/yyyy, yyyy-mm-dd or dd-Mon-yy)."
                                           << "BirthDate" << QVariant();
        QTest::newRow("date in the future") << QByteArray("Birth Date") << QDate::currentDate().addDays(2).toString(Qt::ISODate).toUtf8()
                                            << "Birth Date cannot be in the future."
                                            << "BirthDate" << QVariant();
        QTest::newRow("phone to digits") << QByteArray("Home Phone") << QByteArray("\"(555) 123-4567\"") << none << "HomePhone"
                                         << QVariant("5551234567");
        QTest::newRow("phone without area code")
            << QByteArray("Home Phone") << QByteArray("123-4567") << "Home Phone must have all ten digits, area code first."
            << "HomePhone" << QVariant();
        QTest::newRow("phone with letters") << QByteArray("Fax") << QByteArray("555-CALL-NOW") << "Fax '555-CALL-NOW' must be digits only."
                                            << "Fax" << QVariant();
        QTest::newRow("too long refused, not cut")
            << QByteArray("Drivers License Number") << QByteArray(21, '7') << "Drivers License Number cannot exceed 20 characters."
            << "DriversLicenseNumber" << QVariant();
        QTest::newRow("state code in any case")
            << QByteArray("Employer State") << QByteArray("oh") << none << "EmployerState" << QVariant("OH");
        QTest::newRow("state that is none") << QByteArray("Employer State") << QByteArray("Ohio")
                                            << "Employer State 'Ohio' is not one of its choices."
                                            << "EmployerState" << QVariant();
        QTest::newRow("gender code") << QByteArray("Gender") << QByteArray("f") << none << "Gender" << QVariant("F");
        QTest::newRow("lookup by description") << QByteArray("Housing") << QByteArray("renting") << none << "HousingID" << QVariant(1);
        QTest::newRow("FEMA yes") << QByteArray("FEMA Contacted") << QByteArray("Yes") << none << "FEMAContacted" << QVariant(1);
        QTest::newRow("FEMA empty is no") << QByteArray("FEMA Contacted") << QByteArray("\"\"") << none << "FEMAContacted" << QVariant(0);
        QTest::newRow("FEMA maybe") << QByteArray("FEMA Contacted") << QByteArray("maybe") << "FEMA Contacted 'maybe' must be Yes or No."
                                    << "FEMAContacted" << QVariant();
        QTest::newRow("years worked") << QByteArray("Number of Years Worked") << QByteArray("12") << none << "EmployerDurationYears"
                                      << QVariant(12);
        QTest::newRow("years worked, words") << QByteArray("Number of Years Worked") << QByteArray("a dozen")
                                             << "Number of Years Worked 'a dozen' must be a whole number from 0 to 999."
                                             << "EmployerDurationYears" << QVariant();
        QTest::newRow("formula guard taken off") << QByteArray("Comments") << QByteArray("'=1+1") << none << "Comments" << QVariant("=1+1");
        QTest::newRow("apostrophe of a name kept")
            << QByteArray("Comments") << QByteArray("'Tis O'Hara") << none << "Comments" << QVariant("'Tis O'Hara");
    }

    void valuesFollowTheClientWindowsRules()
    {
        QFETCH(QByteArray, caption);
        QFETCH(QByteArray, cell);
        QFETCH(QString, problem);
        QFETCH(QString, column);
        QFETCH(QVariant, value);
        TestDatabase db;
        const ClientImport::Plan plan = oneRow(caption, cell);
        QCOMPARE(plan.rows.size(), 1);
        QCOMPARE(plan.rows[0].problems.join(' '), problem);
        QCOMPARE(ClientImport::run(plan, false).imported, problem.isEmpty() ? 1 : 0);
        QCOMPARE(TestDatabase::count("Client"), problem.isEmpty() ? 1 : 0);
        if (problem.isEmpty())
            QCOMPARE(stored(column).toString(), value.toString());
    }

    void requiredFieldsAndSocialSecurityNumbers_data()
    {
        QTest::addColumn<QByteArray>("row");
        QTest::addColumn<QString>("problem");
        QTest::newRow("required fields empty") << QByteArray(",,,,,OH")
                                               << "Last Name is required. First Name is required. "
                                                  "Social Security Number is required. Address is required. "
                                                  "City is required.";
        QTest::newRow("SSN of eight digits") << QByteArray("Doe,Jane,12345678,1 Main St,Dayton,OH")
                                             << "Social Security Number '12345678' must have nine digits.";
        QTest::newRow("SSN as plain digits") << QByteArray("Doe,Jane,123456789,1 Main St,Dayton,OH") << QString();
        QTest::newRow("last name too long") << "Doe" + QByteArray(50, 'e') + ",Jane,123456789,1 Main St,Dayton,OH"
                                            << "Last Name cannot exceed 50 characters.";
    }

    void requiredFieldsAndSocialSecurityNumbers()
    {
        QFETCH(QByteArray, row);
        QFETCH(QString, problem);
        TestDatabase db;
        const ClientImport::Plan plan = planOf(kBase + "\n" + row + "\n");
        QCOMPARE(plan.rows[0].problems.join(' '), problem);
        QCOMPARE(ClientImport::describe(plan, false),
                 problem.isEmpty() ? QStringList() : QStringList {QStringLiteral("Line 2: skipped: ") + problem});
    }

    void unknownLookupDescriptionsAreAddedOrLeftEmpty_data()
    {
        QTest::addColumn<bool>("add");
        QTest::newRow("added") << true;
        QTest::newRow("left empty") << false;
    }

    void unknownLookupDescriptionsAreAddedOrLeftEmpty()
    {
        QFETCH(bool, add);
        TestDatabase db;
        const int housings = TestDatabase::count("Housing");
        const ClientImport::Plan plan = planOf(kBase
                                               + ",Housing,Religion\n"
                                                 "Doe,Jane,111-11-1111,1 Main St,Dayton,OH,Tent,Catholic\n"
                                                 "Roe,Rick,222-22-2222,2 Main St,Dayton,OH,TENT,Quaker\n"
                                                 "Poe,Pam,333-33-3333,3 Main St,Dayton,OH,Renting,\n");
        QCOMPARE(plan.unknowns.size(), 2);   // one per description, whatever its case
        QCOMPARE(plan.unknowns[0].description, "Tent");
        QCOMPARE(plan.unknowns[0].rows, 2);
        QCOMPARE(plan.unknowns[1].description, "Quaker");
        QCOMPARE(ClientImport::describe(plan, add)[0],
                 add ? "Line 2: Housing 'Tent' is added to its list." : "Line 2: Housing 'Tent' is not in its list: left empty.");
        const ClientImport::Outcome outcome = ClientImport::run(plan, add);
        QVERIFY(outcome.committed);
        QCOMPARE(outcome.imported, 3);
        QCOMPARE(outcome.lookupsAdded, add ? 2 : 0);
        QCOMPARE(TestDatabase::count("Housing"), housings + (add ? 1 : 0));
        const QVariant tent = TestDatabase::scalar("SELECT HousingID FROM Housing WHERE HousingDescription = 'Tent'");
        QCOMPARE(stored("HousingID", "Doe").isNull(), !add);
        QCOMPARE(stored("HousingID", "Doe").toString(), add ? tent.toString() : QString());
        QCOMPARE(stored("HousingID", "Roe"), stored("HousingID", "Doe"));
        QCOMPARE(stored("HousingID", "Poe").toInt(), TestDatabase::lookupId("Housing", "Renting"));
        QCOMPARE(stored("ReligiousPreferenceID", "Roe").isNull(), !add);
    }

    void duplicatesOnFileAndWithinTheFile()
    {
        TestDatabase db;
        TestDatabase::insert("Client",
                             {{"LastName", "Old"},
                              {"FirstName", "Olga"},
                              {"SocialSecurityNumber", "999999999"},
                              {"Address", "9 Elm St"},
                              {"City", "Dayton"},
                              {"State", "OH"}});
        const ClientImport::Plan plan = planOf(kBase
                                               + "\n"
                                                 "Doe,Jane,999-99-9999,1 Main St,Dayton,OH\n"
                                                 "Roe,Rick,222-22-2222,9 ELM ST,dayton,OH\n"
                                                 "Poe,Pam,333-33-3333,5 Oak St,Dayton,OH\n"
                                                 "Moe,Max,333-33-3333,6 Oak St,Dayton,OH\n"
                                                 "Loe,Liz,444-44-4444,5 Oak St,Dayton,OH\n"
                                                 "Zoe,,444-44-4444,7 Oak St,Dayton,OH\n");
        QCOMPARE(ClientImport::describe(plan, false),
                 (QStringList {"Line 2: skipped: Social Security Number 999-99-9999 is already on file for client 1.",
                               "Line 3: The address is already on file for client 1.",
                               "Line 5: skipped: Social Security Number 333-33-3333 is on line 4 already.",
                               "Line 6: The address is on line 4 too.",
                               "Line 7: skipped: First Name is required. Social Security Number 444-44-4444 is on line 6 already."}));
        QCOMPARE(ClientImport::summary(plan, false), "3 rows would be imported, 3 skipped.");
        QCOMPARE(TestDatabase::count("Client"), 1);   // checking changes nothing
    }

    void aFailureOrCancelLeavesTheDatabaseAsItWas_data()
    {
        QTest::addColumn<bool>("cancel");
        QTest::newRow("statement fails in the middle") << false;
        QTest::newRow("cancelled in the middle") << true;
    }

    void aFailureOrCancelLeavesTheDatabaseAsItWas()
    {
        QFETCH(bool, cancel);
        TestDatabase db;
        QByteArray csv = kBase + ",Housing\n";
        for (int i = 0; i < 1000; ++i)
            csv += "Name" + QByteArray::number(i) + ",Jo," + QByteArray::number(100000000 + i) + "," + QByteArray::number(i)
                + " Main St,Dayton,OH,Barn\n";
        if (!cancel)   // the 600th insert is refused by the database itself
            basDatabase::Execute("CREATE TEMP TRIGGER refuse BEFORE INSERT ON Client WHEN NEW.LastName = 'Name600' "
                                 "BEGIN SELECT RAISE(ABORT, 'refused by the test'); END");
        const ClientImport::Plan plan = planOf(csv);
        QCOMPARE(plan.importable(), 1000);
        const QByteArray before = TestDatabase::fileHash(db.path());
        QList<int> reported;
        const ClientImport::Outcome outcome = ClientImport::run(plan, true, [&](int done, int total) {
            reported << done;
            return !(cancel && done >= 500 && total == 1000);
        });
        QVERIFY(!outcome.committed);
        QCOMPARE(outcome.cancelled, cancel);
        QCOMPARE(outcome.error.contains("refused by the test"), !cancel);
        QCOMPARE(outcome.imported, 0);
        QCOMPARE(TestDatabase::count("Client"), 0);
        QCOMPARE(TestDatabase::count("Housing", "HousingDescription = 'Barn'"), 0);
        QCOMPARE(reported.constFirst(), 250);
        basDatabase::CloseConnection();
        QCOMPARE(TestDatabase::fileHash(db.path()), before);
    }

    // The real export's file, read back into a new database, gives every field as it was.
    void anExportedFileImportsBackWhole()
    {
        const QString everyField = QStringLiteral(
            "SELECT LastName, FirstName, MiddleInitial, SocialSecurityNumber, DriversLicenseNumber, BirthDate, Gender, EthnicOriginID, "
            "MaritalStatusID, Address, City, State, ZipCode, HomePhone, WorkPhone, MobilePhone, Fax, EducationLevelID, HousingID, "
            "ReligiousPreferenceID, OtherAssistanceID, EmployerName, EmployerAddress, EmployerCity, EmployerState, EmployerZip, "
            "EmployerDurationYears, EmployerDurationMonths, Comments, MedicalProblems, DietaryRequirements, FEMAContacted, "
            "FEMAComments, FormerAddress, RelativesSearchingFor FROM Client ORDER BY ClientID");
        const auto rows = [&] {
            QList<QStringList> result;
            QSqlQuery q = basDatabase::Execute(everyField);
            while (q.next()) {
                QStringList values;
                for (int i = 0; i < q.record().count(); ++i)
                    values << q.value(i).toString();
                result << values;
            }
            return result;
        };
        QTemporaryDir out;
        const QString file = out.filePath("clients.csv");
        QList<QStringList> exported;
        {
            TestDatabase source;
            const auto id = [](const char *table, const char *description) { return TestDatabase::lookupId(table, description); };
            TestDatabase::insert("Client",
                                 {{"LastName", "García"},
                                  {"FirstName", "José"},
                                  {"MiddleInitial", "M"},
                                  {"SocialSecurityNumber", "123456789"},
                                  {"DriversLicenseNumber", "D123"},
                                  {"BirthDate", "1961-03-05"},
                                  {"Gender", "M"},
                                  {"EthnicOriginID", id("EthnicOrigin", "Hispanic or Latino")},
                                  {"MaritalStatusID", id("MaritalStatus", "Married")},
                                  {"Address", "12 Elm St Apt 3"},
                                  {"City", "Dayton"},
                                  {"State", "OH"},
                                  {"ZipCode", "45402"},
                                  {"HomePhone", "5551234567"},
                                  {"WorkPhone", "5552223333"},
                                  {"EducationLevelID", id("EducationLevel", "Some college")},
                                  {"HousingID", id("Housing", "Renting")},
                                  {"ReligiousPreferenceID", id("ReligiousPreference", "Catholic")},
                                  {"OtherAssistanceID", id("OtherAssistance", "SNAP")},
                                  {"EmployerName", "Acme, \"the\" Works"},
                                  {"EmployerAddress", "1 Plant Rd"},
                                  {"EmployerCity", "Xenia"},
                                  {"EmployerState", "OH"},
                                  {"EmployerZip", "45385"},
                                  {"EmployerDurationYears", 4},
                                  {"EmployerDurationMonths", 6},
                                  {"Comments", "Needs a ride"},
                                  {"DietaryRequirements", "No pork"},
                                  {"FEMAContacted", 1},
                                  {"FEMAComments", "Called 1/2"},
                                  {"FormerAddress", "Old St"},
                                  {"RelativesSearchingFor", "Ana"}});
            TestDatabase::insert("Client",
                                 {{"LastName", "王"},
                                  {"FirstName", "秀英"},
                                  {"SocialSecurityNumber", "987654321"},
                                  {"Gender", "F"},
                                  {"Address", "8 Oak Ave"},
                                  {"City", "Kettering"},
                                  {"State", "OH"}});
            exported = rows();
            QCOMPARE(exported.size(), 2);
            ExportFile::Request request;
            request.fields = ExportFields::all(RecordScope::Kind::Client);
            request.path = file;
            QVERIFY(ExportFile::ExportFile(request).ok);
        }
        TestDatabase target;
        QFile csv(file);
        QVERIFY(csv.open(QIODevice::ReadOnly));
        const ClientImport::Plan plan = planOf(csv.readAll());
        QCOMPARE(ClientImport::describe(plan, false), QStringList());
        QVERIFY(ClientImport::run(plan, false).committed);
        QCOMPARE(rows(), exported);
    }
};

QTEST_GUILESS_MAIN(TestClientImport)
#include "tst_clientimport.moc"
