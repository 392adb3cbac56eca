#include "CliRun.h"
#include "Schema.h"
#include "TestDatabase.h"

#include <QTemporaryDir>
#include <QTest>

namespace {

int clients(const QString &path)
{
    return TestDatabase::onFile(path, {QStringLiteral("SELECT COUNT(*) FROM Client")}).toInt();
}

}   // namespace

// tendmark-cli import-csv, run as a user runs it.
class TestCliImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Schema::RegisterTriggerFunctions(); }

    void dryRunThenImportSayRowByRowWhatHappens()
    {
        QTemporaryDir dir;
        const QString db = dir.filePath("pantry.tmdb");
        QCOMPARE(cli({"new", db}).exitCode, 0);
        const QString csv = dir.filePath("in.csv");
        QVERIFY(TestDatabase::writeFile(csv,
                                        "\xEF\xBB\xBF\"Last Name\",\"First Name\",\"Social Security Number\",\"Address\",\"City\","
                                        "\"State\",\"Housing\"\r\n"
                                        "\"Doe\",\"Jane\",\"123-45-6789\",\"1 Main St\",\"Dayton\",\"OH\",\"Tent\"\r\n"
                                        "\"Roe\",\"Rick\",\"123-45-6789\",\"2 Main St\",\"Dayton\",\"OH\",\"\"\r\n"
                                        "\"Poe\",\"Pam\",\"333-33-3333\",\"3 Main St\",\"Dayton\",\"Ohio\",\"\"\r\n"));
        const QByteArray before = TestDatabase::fileHash(db);
        CliRun r = cli({"import-csv", db, csv, "--dry-run"});
        QCOMPARE(r.exitCode, 0);
        const QString why = "Line 2: Housing 'Tent' is not in its list: left empty.\n"
                            "Line 3: skipped: Social Security Number 123-45-6789 is on line 2 already.\n"
                            "Line 4: skipped: State 'Ohio' is not one of its choices.\n";
        QCOMPARE(r.out, why + "1 row would be imported, 2 skipped.\n");
        QCOMPARE(TestDatabase::fileHash(db), before);

        r = cli({"import-csv", db, csv, "--add-lookups"});
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(r.out, QString(why).replace("is not in its list: left empty", "is added to its list") + "1 row imported, 2 skipped.\n");
        QCOMPARE(clients(db), 1);
        QCOMPARE(TestDatabase::onFile(db, {"SELECT HousingDescription FROM Housing JOIN Client USING (HousingID)"}).toString(), "Tent");

        r = cli({"import-csv", db, csv});   // everything is on file now: nothing to import
        QCOMPARE(r.exitCode, 1);
        QVERIFY(r.out.contains("Line 2: skipped: Social Security Number 123-45-6789 is already on file for client 1."));
        QVERIFY(r.out.endsWith("0 rows imported, 3 skipped.\n"));
        QCOMPARE(clients(db), 1);
    }

    void filesThatCannotBeImportedChangeNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty") << QByteArray() << "The file is empty.";
        QTest::newRow("binary") << QByteArray("PK\x03\x04\0\0\x08\0", 8) << "The file is not a text file";
        QTest::newRow("header only") << QByteArray("Last Name,First Name\r\n") << "the file has no rows below its header.";
        QTest::newRow("required columns missing")
            << QByteArray("Name,Phone\nDoe,555\n") << "the header names no column for Last Name, First Name";
    }

    void filesThatCannotBeImportedChangeNothing()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        QTemporaryDir dir;
        const QString db = dir.filePath("pantry.tmdb");
        QCOMPARE(cli({"new", db}).exitCode, 0);
        const QByteArray before = TestDatabase::fileHash(db);
        QVERIFY(TestDatabase::writeFile(dir.filePath("in.csv"), bytes));
        const CliRun r = cli({"import-csv", db, dir.filePath("in.csv")});
        QCOMPARE(r.exitCode, 1);
        QVERIFY2(r.err.contains(message), qPrintable(r.err));
        QCOMPARE(TestDatabase::fileHash(db), before);
    }
};

QTEST_GUILESS_MAIN(TestCliImport)
#include "tst_cli_import.moc"
