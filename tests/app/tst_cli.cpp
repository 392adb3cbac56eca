#include "AccessSample.h"
#include "CliRun.h"
#include "Schema.h"
#include "TestDatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
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

// The command-line tool, run as a user runs it: its own commands, importing clients, and usage.
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
        QCOMPARE(cli({"new", fresh}).exitCode, 0);
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
        const CliRun r = cli({"check", demo});
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

        QTest::qWait(2);
        QCOMPARE(cli({"restore", copy, db}).exitCode, 0);
        QVERIFY(cli({"audit", db, "--client", "7"}).out.split('\n', Qt::SkipEmptyParts).size() == 1);
        QCOMPARE(files(dir.filePath("backups")).size(), 2);   // the copy, and the file as it was before the restore
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

    // Help, and runs refused with their status and message: the database (DB, made new), the file read (IN,
    // holding the bytes given) and the folder stay as they were.
    void runsThatChangeNothing_data()
    {
        QTest::addColumn<QStringList>("arguments");   // MISSING: a file that is not there
        QTest::addColumn<QByteArray>("in");
        QTest::addColumn<QStringList>("setup");   // statements run on DB first
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QStringList>("said");
        const auto row
            = [](const char *tag, const QStringList &arguments, int exitCode, const QStringList &said = {}, const QByteArray &in = {},
                 const QStringList &setup = {}) { QTest::newRow(tag) << arguments << in << setup << exitCode << said; };
        row("help", {"--help"}, 0, {"demo FILE --clients N", "import-csv FILE IN.csv"});
        row("help of new", {"new", "--help"}, 0, {"FILE"});
        row("help of demo", {"demo", "--help"}, 0, {"FILE"});
        row("help of check", {"check", "--help"}, 0, {"FILE"});
        row("help of import", {"import-csv", "--help"}, 0, {"--dry-run", "--add-lookups"});
        row("no command", {}, 2);
        row("unknown command", {"frobnicate"}, 2);
        row("clients not a number", {"demo", "x.tmdb", "--clients", "many"}, 2);
        row("no years", {"demo", "x.tmdb", "--years", "0"}, 2);
        row("import without a file", {"import-csv", "DB"}, 2);
        row("audit since no date", {"audit", "DB", "--since", "soon"}, 2);
        row("new over a file", {"new", "DB"}, 1, {"already exists"});   // never replaced unasked
        row("check a missing file", {"check", "MISSING"}, 1);
        row("restore a missing copy", {"restore", "MISSING", "DB"}, 1);
        row("check another kind of file", {"check", "IN"}, 1, {"not a TendMark database"}, "beans, rice, flour\n");
        row("check names what is missing", {"check", "DB"}, 1,
            {"The table LabelDetails is missing.", "The column Comments of the table Volunteer is missing."}, {},
            {"DROP TABLE LabelDetails", "ALTER TABLE Volunteer RENAME COLUMN Comments TO Notes"});
        row("import binary", {"import-csv", "DB", "IN"}, 1, {"The file is not a text file"}, QByteArray("PK\x03\x04\0\0\x08\0", 8));
        row("import header only", {"import-csv", "DB", "IN"}, 1, {"the file has no rows below its header."}, "Last Name,First Name\r\n");
        row("import without required columns", {"import-csv", "DB", "IN"}, 1, {"the header names no column for Last Name, First Name"},
            "Name,Phone\nDoe,555\n");
        const QByteArray access = [] {
            QFile f(AccessSample::path());
            return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
        }();
        row("Access file over a file", {"import-mdb", "IN", "DB"}, 1, {"already exists"}, access);
        row("Access file without a target", {"import-mdb", "IN"}, 2, {}, access);
        row("Access file over itself", {"import-mdb", "IN", "IN", "--force"}, 1, {"must not take the place of the Access file"}, access);
    }

    void runsThatChangeNothing()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, in);
        QFETCH(QStringList, setup);
        QFETCH(int, exitCode);
        QFETCH(QStringList, said);
        QTemporaryDir dir;
        const QString db = dir.filePath("pantry.tmdb"), input = dir.filePath("in.tmdb");
        QCOMPARE(cli({"new", db}).exitCode, 0);
        if (!setup.isEmpty())
            QVERIFY(TestDatabase::onFile(db, setup).isValid());
        QVERIFY(TestDatabase::writeFile(input, in));
        arguments.replaceInStrings(QRegularExpression("^DB$"), db);
        arguments.replaceInStrings(QRegularExpression("^IN$"), input);
        arguments.replaceInStrings(QRegularExpression("^MISSING$"), dir.filePath("missing.tmdb"));
        const QByteArray before = TestDatabase::fileHash(db), inBefore = TestDatabase::fileHash(input);
        const CliRun r = cli(arguments);
        QCOMPARE(r.exitCode, exitCode);
        for (const QString &s : said)
            QVERIFY2((r.out + r.err).contains(s), qPrintable(r.out + r.err));
        QCOMPARE(TestDatabase::fileHash(db), before);
        QCOMPARE(TestDatabase::fileHash(input), inBefore);
        QCOMPARE(files(dir.path()), (QStringList {"in.tmdb", "pantry.tmdb"}));
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
