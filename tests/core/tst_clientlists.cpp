#include "ClientImport.h"
#include "CsvWriter.h"
#include "ExportFile.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QDate>
#include <QDir>
#include <QFile>
#include <QSqlQuery>
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

QVariant stored(const QString &column, const QString &lastName = QStringLiteral("Doe"))
{
    return TestDatabase::scalar(QStringLiteral("SELECT %1 FROM Client WHERE LastName = ?").arg(column), {lastName});
}

}   // namespace

// Lists of clients read in from a file and written out to one.
class TestClientLists : public QObject
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

    // One row under the base header plus one more column: skipped with its problems, or stored.
    void valuesFollowTheClientWindowsRules_data()
    {
        QTest::addColumn<QByteArray>("caption");
        QTest::addColumn<QByteArray>("cell");
        QTest::addColumn<QString>("column");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("problem");
        QTest::addColumn<QByteArray>("base");
        const auto row = [](const char *tag, const QByteArray &caption, const QByteArray &cell, const char *column, const char *value,
                            const QString &problem = {}, const QByteArray &base = "Doe,Jane,123-45-6789,1 Main St,Dayton,OH") {
            QTest::newRow(tag) << caption << cell << QString::fromUtf8(column) << QString::fromUtf8(value) << problem << base;
        };
        row("date mm/dd/yyyy", "Birth Date", "03/05/1961", "BirthDate", "1961-03-05");
        row("date yyyy-mm-dd", "Birth Date", "1961-03-05", "BirthDate", "1961-03-05");
        row("date dd-Mon-yy, last century", "Birth Date", "05-Mar-61", "BirthDate", "1961-03-05");
        row("date dd-Mon-yy, this century", "Birth Date", "05-mar-04", "BirthDate", "2004-03-05");
        row("date that is none", "Birth Date", "31/02/1961", "", "",
            "Birth Date '31/02/1961' is not a date (mm/dd/yyyy, yyyy-mm-dd or dd-Mon-yy).");
        row("date in the future", "Birth Date", QDate::currentDate().addDays(2).toString(Qt::ISODate).toUtf8(), "", "",
            "Birth Date cannot be in the future.");
        row("phone to digits", "Home Phone", "\"(555) 123-4567\"", "HomePhone", "5551234567");
        row("phone with letters", "Fax", "555-CALL-NOW", "", "", "Fax '555-CALL-NOW' must be digits only.");
        row("too long refused, not cut", "Drivers License Number", QByteArray(21, '7'), "", "",
            "Drivers License Number cannot exceed 20 characters.");
        row("state code in any case", "Employer State", "oh", "EmployerState", "OH");
        row("state that is none", "Employer State", "Ohio", "", "", "Employer State 'Ohio' is not one of its choices.");
        row("gender code", "Gender", "f", "Gender", "F");
        row("lookup by description", "Housing", "renting", "HousingID", "1");
        row("FEMA yes", "FEMA Contacted", "Yes", "FEMAContacted", "1");
        row("FEMA empty is no", "FEMA Contacted", "\"\"", "FEMAContacted", "0");
        row("FEMA maybe", "FEMA Contacted", "maybe", "", "", "FEMA Contacted 'maybe' must be Yes or No.");
        row("years worked", "Number of Years Worked", "12", "EmployerDurationYears", "12");
        row("years worked, words", "Number of Years Worked", "a dozen", "", "",
            "Number of Years Worked 'a dozen' must be a whole number from 0 to 999.");
        row("formula guard taken off", "Comments", "'=1+1", "Comments", "=1+1");
        row("apostrophe of a name kept", "Comments", "'Tis O'Hara", "Comments", "'Tis O'Hara");
        row("required fields empty", "Comments", "", "", "",
            "Last Name is required. First Name is required. Social Security Number is required. Address is required. City is required.",
            ",,,,,OH");
        row("SSN of eight digits", "Comments", "", "", "", "Social Security Number '12345678' must have nine digits.",
            "Doe,Jane,12345678,1 Main St,Dayton,OH");
        row("SSN as plain digits", "Comments", "", "SocialSecurityNumber", "123456789", {}, "Doe,Jane,123456789,1 Main St,Dayton,OH");
    }

    void valuesFollowTheClientWindowsRules()
    {
        QFETCH(QByteArray, caption);
        QFETCH(QByteArray, cell);
        QFETCH(QString, column);
        QFETCH(QString, value);
        QFETCH(QString, problem);
        QFETCH(QByteArray, base);
        TestDatabase db;
        const ClientImport::Plan plan = planOf(kBase + ',' + caption + "\r\n" + base + ',' + cell + "\r\n");
        QCOMPARE(plan.rows.size(), 1);
        QCOMPARE(ClientImport::describe(plan, false), problem.isEmpty() ? QStringList() : QStringList {"Line 2: skipped: " + problem});
        QCOMPARE(ClientImport::run(plan, false).imported, problem.isEmpty() ? 1 : 0);
        QCOMPARE(TestDatabase::count("Client"), problem.isEmpty() ? 1 : 0);
        if (problem.isEmpty())
            QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT %1 FROM Client").arg(column)).toString(), value);
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

    // An export that is cancelled or cannot finish leaves no trace: the earlier file
    // stays, no temporary file is left behind.
    void cancelKeepsTheEarlierFile_data()
    {
        QTest::addColumn<bool>("workbook");
        QTest::newRow("csv") << false;
        QTest::newRow("workbook") << true;
    }

    void cancelKeepsTheEarlierFile()
    {
        QFETCH(bool, workbook);
        TestDatabase db;
        QVERIFY(basDatabase::Connection().transaction());
        for (int i = 0; i < 1200; ++i)
            TestDatabase::insert(QStringLiteral("Client"), {{QStringLiteral("LastName"), QStringLiteral("Name %1").arg(i)}});
        QVERIFY(basDatabase::Connection().commit());
        const QString path = QDir(db.folder()).filePath(QStringLiteral("earlier.export"));
        QFile earlier(path);
        QVERIFY(earlier.open(QIODevice::WriteOnly));
        earlier.write("earlier");
        earlier.close();

        ExportFile::Request request;
        request.fields = ExportFields::all(RecordScope::Kind::Client);
        request.type = workbook ? ExportFile::FileType::Workbook : ExportFile::FileType::CommaSeparated;
        request.path = path;
        QList<qint64> steps;
        const ExportFile::Result result = ExportFile::ExportFile(request, [&steps](qint64 done, qint64 total) {
            steps << done << total;
            return false;
        });
        QVERIFY(result.cancelled);
        QVERIFY(!result.ok);
        QCOMPARE(steps, (QList<qint64> {500, 1200}));
        QVERIFY(earlier.open(QIODevice::ReadOnly));
        QCOMPARE(earlier.readAll(), QByteArray("earlier"));
        QCOMPARE(QDir(db.folder()).entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("export")), QStringList {"earlier.export"});

        // Run to the end, the same request replaces it.
        const ExportFile::Result done = ExportFile::ExportFile(request);
        QVERIFY2(done.ok, qPrintable(done.error));
        QCOMPARE(done.rows, 1200);
        QVERIFY(QFileInfo(path).size() > 1200 * 10);
    }

    // The display forms the command-line export's files do not show (they show the rest).
    void valuesTakeTheirDisplayForms_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QString>("written");
        QTest::newRow("birth date, early century") << "Birth Date" << QVariant("2004-01-09") << "09-Jan-04";
        QTest::newRow("carriage return alone") << "Comments" << QVariant("a\rb") << "a b";
    }

    void valuesTakeTheirDisplayForms()
    {
        QFETCH(QString, caption);
        QFETCH(QVariant, stored);
        QFETCH(QString, written);
        QStringList unknown;
        const QList<ExportFields::Field> field = ExportFields::byCaption(RecordScope::Kind::Client, {caption}, &unknown);
        QCOMPARE(field.size(), 1);
        QCOMPARE(ExportFile::FormatValue(field.first(), stored, true), written);
    }

    // The real export's file, read back into a new database, gives every field as it was.
    void anExportedFileImportsBackWhole()
    {
        const QStringList columns
            = QStringLiteral(
                  "LastName FirstName MiddleInitial SocialSecurityNumber DriversLicenseNumber BirthDate Gender EthnicOriginID MaritalStatusID "
                  "Address City State ZipCode HomePhone WorkPhone MobilePhone Fax EducationLevelID HousingID ReligiousPreferenceID "
                  "OtherAssistanceID EmployerName EmployerAddress EmployerCity EmployerState EmployerZip EmployerDurationYears "
                  "EmployerDurationMonths Comments MedicalProblems DietaryRequirements FEMAContacted FEMAComments FormerAddress "
                  "RelativesSearchingFor")
                  .split(u' ');
        const auto rows = [&] {
            QList<QStringList> result;
            QSqlQuery q = basDatabase::Execute("SELECT " + columns.join(", ") + " FROM Client ORDER BY ClientID");
            while (q.next()) {
                QStringList values;
                for (int i = 0; i < columns.size(); ++i)
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
            // Every field filled but the mobile phone, the fax and the medical problems; then one of only the required fields.
            const QStringList clients
                = {QStringLiteral(
                       "García|José|M|123456789|D123|1961-03-05|M|%1|%2|12 Elm St Apt 3|Dayton|OH|45402|5551234567|5552223333|||%3|%4|"
                       "%5|%6|Acme, \"the\" Works|1 Plant Rd|Xenia|OH|45385|4|6|Needs a ride||No pork|1|Called 1/2|Old St|Ana")
                       .arg(id("EthnicOrigin", "Hispanic or Latino"))
                       .arg(id("MaritalStatus", "Married"))
                       .arg(id("EducationLevel", "Some college"))
                       .arg(id("Housing", "Renting"))
                       .arg(id("ReligiousPreference", "Catholic"))
                       .arg(id("OtherAssistance", "SNAP")),
                   QStringLiteral("王|秀英||987654321|||F|||8 Oak Ave|Kettering|OH||||||||||||||||||||0|||")};
            for (const QString &client : clients) {
                const QStringList values = client.split(u'|');
                QVariantMap row;
                for (int i = 0; i < columns.size(); ++i)
                    row.insert(columns[i], values[i].isEmpty() ? QVariant() : QVariant(values[i]));
                TestDatabase::insert("Client", row);
            }
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

QTEST_GUILESS_MAIN(TestClientLists)
#include "tst_clientlists.moc"
