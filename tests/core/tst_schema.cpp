#include "OptionsStore.h"
#include "Schema.h"
#include "ScriptedPrompts.h"
#include "TmError.h"
#include "basErrorHandler.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

class TestSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newDatabaseHasTheTablesAndColumns()
    {
        TestDatabase db;
        const QStringList clientColumns
            = QStringLiteral("ClientID LastName FirstName MiddleInitial SocialSecurityNumber DriversLicenseNumber Address City State "
                             "ZipCode HomePhone WorkPhone MobilePhone Fax BirthDate Gender MaritalStatusID EthnicOriginID "
                             "EducationLevelID HousingID ReligiousPreferenceID OtherAssistanceID EmployerName EmployerAddress "
                             "EmployerCity EmployerState EmployerZip EmployerDurationYears EmployerDurationMonths FormerAddress "
                             "DietaryRequirements MedicalProblems RelativesSearchingFor FEMAContacted FEMAEligible FEMAComments Comments")
                  .split(QLatin1Char(' '));
        QStringList actual;
        for (const FieldInfo &f : basDatabase::Fields(QStringLiteral("Client")))
            actual << f.name;
        QCOMPARE(actual, clientColumns);

        const QStringList tables
            = QStringLiteral("EducationLevel EthnicOrigin ExpenseCategories Expenses Family FoodService FoodServiceTypes Gender Housing "
                             "Income IncomeSources LabelDetails MaritalStatus Options Organization OtherAssistance Payments "
                             "PaymentTypes Relationships ReligiousPreference States Volunteer ZipCode")
                  .split(QLatin1Char(' '));
        for (const QString &t : tables)
            QVERIFY2(!basDatabase::Fields(t).isEmpty(), qPrintable(t));
        QVERIFY(basDatabase::Field("Payments", "PaymentsTypeID").isValid());
        QVERIFY(basDatabase::Field("Volunteer", "EmailAddress").isValid());   // the editor's spelling finds the column
    }

    void columnDeclarationsAreReadAtRunTime()
    {
        TestDatabase db;
        const FieldInfo ssn = basDatabase::Field("Client", "SocialSecurityNumber");
        QCOMPARE(ssn.type, FieldInfo::Type::Text);
        QCOMPARE(ssn.size, 11);
        QCOMPARE(basDatabase::Field("Client", "BirthDate").type, FieldInfo::Type::Date);
        QCOMPARE(basDatabase::Field("Payments", "AmountPaid").type, FieldInfo::Type::Currency);
        QCOMPARE(basDatabase::Field("Client", "Comments").type, FieldInfo::Type::Memo);
        QCOMPARE(basDatabase::Field("Client", "FEMAContacted").type, FieldInfo::Type::Boolean);
        QCOMPARE(basDatabase::Field("LabelDetails", "Height").type, FieldInfo::Type::Double);
        QVERIFY(basDatabase::Field("EthnicOrigin", "EthnicOriginDescription").required);
        QVERIFY(!basDatabase::Field("Client", "LastName").required);
        QVERIFY(basDatabase::Field("Client", "ClientID").isKey);
    }

    void standardContents()
    {
        TestDatabase db;
        QCOMPARE(TestDatabase::count("States"), 56);
        QCOMPARE(TestDatabase::count("States", "StateCode IN ('DC', 'PR', 'GU', 'VI', 'AS', 'MP', 'TX', 'WY')"), 8);
        QCOMPARE(TestDatabase::scalar("SELECT group_concat(GenderCode, ',') FROM Gender").toString(), QStringLiteral("M,F"));
        for (const char *t : {"EducationLevel", "EthnicOrigin", "ExpenseCategories", "FoodServiceTypes", "Housing", "IncomeSources",
                              "MaritalStatus", "OtherAssistance", "PaymentTypes", "Relationships", "ReligiousPreference"})
            QVERIFY2(TestDatabase::count(t) >= 4, t);
        QCOMPARE(TestDatabase::count("Organization"), 1);
        QCOMPARE(TestDatabase::count("Options"), 1);
        QCOMPARE(OptionsStore::readOptions(), DatabaseOptions {});
        QCOMPARE(TestDatabase::count("LabelDetails", "\"Default\" = 1"), 1);
        QCOMPARE(TestDatabase::scalar("SELECT Description FROM LabelDetails WHERE \"Default\" = 1").toString().left(10),
                 QStringLiteral("Avery 5160"));
        QCOMPARE(TestDatabase::count("LabelDetails", "Description LIKE 'Avery 5161%' OR Description LIKE 'Avery 5163%'"), 2);
        QCOMPARE(TestDatabase::scalar("SELECT NumberAcross * NumberDown FROM LabelDetails WHERE Description LIKE 'Avery 5160%'").toInt(),
                 30);
    }

    void deletingAClientCascadesToItsRows()
    {
        TestDatabase db;
        const qint64 id = TestDatabase::insert("Client", {{"LastName", "Doe"}});
        const qint64 other = TestDatabase::insert("Client", {{"LastName", "Roe"}});
        for (qint64 c : {id, other}) {
            TestDatabase::insert("Family", {{"ClientID", c}, {"FirstName", "Kid"}});
            TestDatabase::insert("FoodService", {{"ClientID", c}, {"FoodServiceDate", "2026-01-02"}, {"NumberOfBags", 2}});
            TestDatabase::insert("Payments", {{"ClientID", c}, {"AmountPaid", 1000}});
            TestDatabase::insert("Income", {{"ClientID", c}, {"Amount", 50000}});
            TestDatabase::insert("Expenses", {{"ClientID", c}, {"Amount", 20000}});
        }
        QVERIFY(basDatabase::DeleteItemFromTable("Client", "ClientID", QString::number(id)));
        for (const char *t : {"Family", "FoodService", "Payments", "Income", "Expenses"}) {
            QCOMPARE(TestDatabase::count(t, "ClientID = ?", {id}), 0);
            QCOMPARE(TestDatabase::count(t, "ClientID = ?", {other}), 1);
        }
    }

    void lookupReferencesAndValuesAreEnforced()
    {
        TestDatabase db;
        const qint64 origin = TestDatabase::lookupId("EthnicOrigin", "Asian");
        const qint64 client = TestDatabase::insert("Client", {{"LastName", "Doe"}, {"EthnicOriginID", origin}});
        QVERIFY_THROWS_EXCEPTION(TmError, TestDatabase::insert("Client", {{"LastName", "X"}, {"EthnicOriginID", 9999}}));
        QVERIFY_THROWS_EXCEPTION(TmError, TestDatabase::insert("FoodService", {{"ClientID", 9999}}));
        QVERIFY_THROWS_EXCEPTION(TmError, TestDatabase::insert("Payments", {{"ClientID", client}, {"AmountPaid", 12.5}}));
        QVERIFY_THROWS_EXCEPTION(TmError, TestDatabase::insert("Client", {{"LastName", "X"}, {"BirthDate", "12/31/1980"}}));
        ScriptedPrompts prompts;
        QVERIFY(!basDatabase::DeleteItemFromTable("EthnicOrigin", "EthnicOriginID", QString::number(origin)));
        QCOMPARE(prompts.last().title, QStringLiteral("Application Error"));
        QVERIFY(prompts.last().text.contains("basDatabase.DeleteItemFromTable"));
        QCOMPARE(TestDatabase::count("EthnicOrigin", "EthnicOriginID = ?", {origin}), 1);
    }

    void foreignDamagedAndNewerFilesAreRefusedUnchanged_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("state");
        QTest::newRow("text file") << "text" << int(Schema::FileState::NotSqlite);
        QTest::newRow("another program's database") << "foreign" << int(Schema::FileState::Foreign);
        QTest::newRow("damaged") << "damaged" << int(Schema::FileState::Damaged);
        QTest::newRow("newer TendMark") << "newer" << int(Schema::FileState::Newer);
        QTest::newRow("Access file") << "mdb" << int(Schema::FileState::NotSqlite);
        QTest::newRow("missing") << "missing" << int(Schema::FileState::Missing);
    }

    void foreignDamagedAndNewerFilesAreRefusedUnchanged()
    {
        QFETCH(QString, kind);
        QFETCH(int, state);
        QTemporaryDir dir;
        const QString path = dir.filePath("file.tmdb");
        if (kind == "text") {
            QVERIFY(TestDatabase::writeFile(path, "LastName,FirstName\nDoe,Jane\n"));
        } else if (kind == "foreign") {
            QVERIFY(TestDatabase::onFile(path, {"CREATE TABLE Client (Id INTEGER PRIMARY KEY, Name TEXT)"}).isValid());
        } else if (kind == "damaged") {
            QVERIFY(Schema::CreateDatabase(path, false, nullptr));
            QFile f(path);
            QVERIFY(f.open(QIODevice::ReadWrite));
            f.seek(16);
            f.write(QByteArray(200, '\xff'));
        } else if (kind == "newer") {
            QVERIFY(Schema::CreateDatabase(path, false, nullptr));
            QVERIFY(TestDatabase::onFile(path, {QStringLiteral("PRAGMA user_version = %1").arg(Schema::CurrentVersion + 1)}).isValid());
        } else if (kind == "mdb") {
            QVERIFY(QFile::copy(QStringLiteral(TENDMARK_SOURCE_DIR "/../shared/fixtures/sample-jet4.mdb"), path)
                    || QFile::copy(QStringLiteral("/work/shared/fixtures/sample-jet4.mdb"), path));
        }
        const QByteArray before = TestDatabase::fileHash(path);
        const Schema::FileCheck check = Schema::InspectFile(path);
        QCOMPARE(int(check.state), state);
        QVERIFY(!check.reason.isEmpty());
        QString reason;
        QVERIFY(!basDatabase::OpenConnection(path, &reason));
        QVERIFY(!reason.isEmpty());
        QVERIFY(!basDatabase::IsOpen());
        QCOMPARE(TestDatabase::fileHash(path), before);
        QVERIFY(!Schema::CheckFile(path).isEmpty());
    }

    void readOnlyFileIsRefused()
    {
        if (geteuid() == 0)
            QSKIP("the superuser can write to any file");
        QTemporaryDir dir;
        const QString path = dir.filePath("ro.tmdb");
        QVERIFY(Schema::CreateDatabase(path, false, nullptr));
        QFile::setPermissions(path, QFile::ReadOwner);
        QCOMPARE(Schema::InspectFile(path).state, Schema::FileState::ReadOnly);
        QVERIFY(!basDatabase::OpenConnection(path));
    }

    // Check names a broken reference; creating over a file needs to be asked for, and leaves a sound file.
    void checkAndReplace()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("a.tmdb");
        QVERIFY(Schema::CreateDatabase(path, false, nullptr));
        QVERIFY(TestDatabase::onFile(path, {"INSERT INTO Family (ClientID, FirstName) VALUES (42, 'Orphan')"}).isValid());
        const QStringList problems = Schema::CheckFile(path);
        QCOMPARE(problems.size(), 1);
        QVERIFY(problems.first().contains("Family"));
        QString error;
        QVERIFY(!Schema::CreateDatabase(path, false, &error));
        QVERIFY(error.contains("already exists"));
        QVERIFY(Schema::CreateDatabase(path, true, &error));
        QVERIFY(Schema::CheckFile(path).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestSchema)
#include "tst_schema.moc"
