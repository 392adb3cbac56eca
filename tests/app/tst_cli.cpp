#include "CliRun.h"
#include "Schema.h"
#include "TestDatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <sys/stat.h>

namespace {

int count(const QString &path, const char *table)
{
    return TestDatabase::onFile(path, {QStringLiteral("SELECT COUNT(*) FROM %1").arg(QLatin1String(table))}).toInt();
}

QStringList files(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

}   // namespace

// The command-line tool, run as a user runs it: its own commands, importing a list of clients, and usage.
class TestCli : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        ::umask(022);
        Schema::RegisterTriggerFunctions();   // the test's own connections write audited tables
    }

    void newDemoBackupAndCheckMakeOwnerOnlyFiles()
    {
        QTemporaryDir dir;
        const QString fresh = dir.filePath("pantry.tmdb");
        CliRun r = cli({"new", fresh});
        QCOMPARE(r.exitCode, 0);
        r = cli({"new", fresh});
        QCOMPARE(r.exitCode, 1);   // an existing file is never replaced unasked
        QVERIFY(r.err.contains("already exists"));
        QCOMPARE(cli({"check", fresh}).exitCode, 0);

        const QString demo = dir.filePath("demo.tmdb");
        QCOMPARE(cli({"demo", demo, "--clients", "40", "--seed", "3", "--years", "5", "--payments", "7"}).exitCode, 0);
        // A pantry's history: about 4 family members and 20 visits a household, over all five years.
        QCOMPARE(count(demo, "Client"), 40);
        QVERIFY2(
            qAbs(count(demo, "Family") - 160) <= 8 && qAbs(count(demo, "FoodService") - 800) <= 40
                && qAbs(count(demo, "Payments") - 7) <= 1,
            qPrintable(QStringLiteral("%1 %2 %3").arg(count(demo, "Family")).arg(count(demo, "FoodService")).arg(count(demo, "Payments"))));
        QVERIFY(count(demo, "FoodService WHERE FoodServiceDate < date('now', '-4 years')") > 0);
        QCOMPARE(count(demo, "FoodService WHERE FoodServiceDate < date('now', '-5 years')"), 0);
        r = cli({"check", demo});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.out.contains("ok"));
        QCOMPARE(cli({"audit", demo}).out, QString());   // a new file's log starts empty
        QCOMPARE(cli({"backup", demo}).exitCode, 0);
        QCOMPARE(cli({"backup", demo, dir.filePath("stick/copies")}).exitCode, 0);
        for (const QString &path : {fresh, demo, dir.filePath("backups"), dir.filePath("stick/copies")})
            QCOMPARE(TestDatabase::fileMode(path), QFileInfo(path).isDir() ? 0700 : 0600);
        for (const QString &folder : {dir.filePath("backups"), dir.filePath("stick/copies")}) {
            QCOMPARE(files(folder).size(), 1);
            QCOMPARE(TestDatabase::fileMode(QDir(folder).filePath(files(folder).constFirst())), 0600);
        }
        QCOMPARE(files(dir.path()), (QStringList {"demo.tmdb", "pantry.tmdb"}));

        // Check names what is missing, and refuses a file of another kind without touching it.
        QVERIFY(
            TestDatabase::onFile(fresh, {"DROP TABLE LabelDetails", "ALTER TABLE Volunteer RENAME COLUMN Comments TO Notes"}).isValid());
        r = cli({"check", fresh});
        QCOMPARE(r.exitCode, 1);
        QVERIFY(r.err.contains("The table LabelDetails is missing."));
        QVERIFY(r.err.contains("The column Comments of the table Volunteer is missing."));
        const QString notes = dir.filePath("notes.tmdb");
        QVERIFY(TestDatabase::writeFile(notes, "beans, rice, flour\n"));
        const QByteArray before = TestDatabase::fileHash(notes);
        r = cli({"check", notes});
        QCOMPARE(r.exitCode, 1);
        QVERIFY(r.err.contains("not a TendMark database"));
        QCOMPARE(TestDatabase::fileHash(notes), before);
        QCOMPARE(cli({"check", dir.filePath("missing.tmdb")}).exitCode, 1);
    }

    void killedDemoLeavesNothingBehind()
    {
        QTemporaryDir dir;
        const QString db = dir.filePath("demo.tmdb");
        QProcess p;
        p.start(QStringLiteral(TENDMARK_CLI), {"demo", db, "--clients", "50000"});
        QVERIFY(p.waitForStarted());
        QTest::qWait(400);
        p.kill();
        QVERIFY(p.waitForFinished());
        QVERIFY(!QFileInfo::exists(db));
        QCOMPARE(cli({"demo", db, "--clients", "10"}).exitCode, 0);
        QCOMPARE(files(dir.path()), QStringList {"demo.tmdb"});
    }

    void checkFinishesAnInterruptedSaveAndLeavesNothing()
    {
        QTemporaryDir dir;
        const QString db = dir.filePath("pantry.tmdb");
        QCOMPARE(cli({"new", db}).exitCode, 0);
        // A program that crashed after its save: the saved row lives only in the -wal, its connection still open.
        QSqlDatabase crashing = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("crashing"));
        crashing.setDatabaseName(db);
        QVERIFY(crashing.open());
        for (const char *s : {"PRAGMA wal_autocheckpoint = 0", "INSERT INTO Client (LastName) VALUES ('Saved')"})
            QVERIFY2(QSqlQuery(crashing).exec(QLatin1String(s)), s);
        const QString crashed = dir.filePath("crashed.tmdb");
        for (const char *suffix : {"", "-wal"})
            QVERIFY(QFile::copy(db + suffix, crashed + suffix));
        QVERIFY(QFileInfo(crashed + "-wal").size() > 0);
        QCOMPARE(cli({"check", crashed}).exitCode, 0);
        QVERIFY(!QFileInfo::exists(crashed + "-wal"));
        QVERIFY(!QFileInfo::exists(crashed + "-shm"));
        const CliRun audit = cli({"audit", crashed});
        QVERIFY(audit.out.contains("insert Client 1"));
        QVERIFY(audit.out.contains("\"LastName\":\"Saved\""));
    }

    void backupRestoreAndAuditOfADeletedClient()
    {
        QTemporaryDir dir;
        const QString db = dir.filePath("pantry.tmdb");
        QCOMPARE(cli({"new", db}).exitCode, 0);
        QVERIFY(TestDatabase::onFile(db, {"INSERT INTO Client (ClientID, LastName, FirstName) VALUES (7, 'Ames', 'Ann')"}).isValid());
        const CliRun backup = cli({"backup", db});
        QCOMPARE(backup.exitCode, 0);
        const QString copy = backup.out.section(' ', 3).trimmed();
        QVERIFY2(QFileInfo::exists(copy), qPrintable(backup.out));
        QVERIFY(TestDatabase::onFile(db, {"DELETE FROM Client"}).isValid());

        const CliRun audit = cli({"audit", db, "--client", "7"});
        QCOMPARE(audit.exitCode, 0);
        const QStringList lines = audit.out.split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QVERIFY(lines.at(1).contains("delete Client 7") && lines.at(1).contains("\"FirstName\":\"Ann\""));
        QCOMPARE(cli({"audit", db, "--client", "8"}).out, QString());
        QCOMPARE(cli({"audit", db, "--since", "2999-01-01"}).out, QString());
        QCOMPARE(cli({"audit", db, "--since", "soon"}).exitCode, 2);

        QTest::qWait(2);
        QCOMPARE(cli({"restore", copy, db}).exitCode, 0);
        QVERIFY(cli({"audit", db, "--client", "7"}).out.split('\n', Qt::SkipEmptyParts).size() == 1);
        QCOMPARE(files(dir.filePath("backups")).size(), 2);   // the copy, and the file as it was before the restore
        QCOMPARE(cli({"restore", dir.filePath("nothing.tmdb"), db}).exitCode, 1);
    }

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
        QCOMPARE(count(db, "Client"), 1);
        QCOMPARE(TestDatabase::onFile(db, {"SELECT HousingDescription FROM Housing JOIN Client USING (HousingID)"}).toString(), "Tent");

        r = cli({"import-csv", db, csv});   // everything is on file now: nothing to import
        QCOMPARE(r.exitCode, 1);
        QVERIFY(r.out.contains("Line 2: skipped: Social Security Number 123-45-6789 is already on file for client 1."));
        QVERIFY(r.out.endsWith("0 rows imported, 3 skipped.\n"));
        QCOMPARE(count(db, "Client"), 1);
    }

    void filesThatCannotBeImportedChangeNothing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
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
    void usageAndHelp()
    {
        const QList<std::tuple<QStringList, int, QString>> runs = {
            {{}, 2, ""},
            {{"--help"}, 0, "demo FILE --clients N"},
            {{"--help"}, 0, "import-csv FILE IN.csv"},
            {{"new", "--help"}, 0, "FILE"},
            {{"demo", "--help"}, 0, "FILE"},
            {{"check", "--help"}, 0, "FILE"},
            {{"import-csv", "--help"}, 0, "--dry-run"},
            {{"import-csv", "--help"}, 0, "--add-lookups"},
            {{"demo", "x.tmdb", "--clients", "many"}, 2, ""},
            {{"demo", "x.tmdb", "--years", "0"}, 2, ""},
            {{"import-csv", "only-one.tmdb"}, 2, ""},
            {{"frobnicate"}, 2, ""},
        };
        for (const auto &[arguments, exitCode, says] : runs) {
            const CliRun r = cli(arguments);
            QVERIFY2(r.exitCode == exitCode && r.out.contains(says), qPrintable(arguments.join(' ') + ": " + r.out + r.err));
        }
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
