#include "AccessSample.h"
#include "CliRun.h"
#include "Schema.h"
#include "TestDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int count(const QString &path, const char *table)
{
    return TestDatabase::onFile(path, {QStringLiteral("SELECT COUNT(*) FROM %1").arg(QLatin1String(table))}).toInt();
}

QByteArray sampleBytes()
{
    QFile f(AccessSample::path());
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The sample with its client rows changed on their data page as Access changes them:
// the last one deleted (flagged, one row fewer in the table's count), or the first one
// moved to a new place (flagged, its old place left pointing there).
QByteArray withClientRows(const QString &change)
{
    QByteArray bytes = sampleBytes();
    const qsizetype page = bytes.indexOf("900120001") / 4096 * 4096;   // client 1's SSN
    const qsizetype definition = qsizetype(qFromLittleEndian<quint32>(bytes.constData() + page + 4)) * 4096;
    const auto word = [&](qsizetype at) { return qFromLittleEndian<quint16>(bytes.constData() + at); };
    const auto setWord = [&](qsizetype at, quint16 value) { qToLittleEndian(value, bytes.data() + at); };
    const int rows = word(page + 12);
    if (change == QLatin1String("deleted")) {
        setWord(page + 14 + 2 * (rows - 1), word(page + 14 + 2 * (rows - 1)) | 0x8000);
        qToLittleEndian(quint32(rows - 1), bytes.data() + definition + 16);
    } else {
        const quint16 lowest = word(page + 14 + 2 * (rows - 1)) - 4;
        setWord(page + 14, word(page + 14) | 0x8000);
        qToLittleEndian(quint32(page / 4096 << 8), bytes.data() + page + lowest);
        setWord(page + 14 + 2 * rows, lowest | 0x4000);
        setWord(page + 12, quint16(rows + 1));
    }
    return bytes;
}

QStringList files(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

}   // namespace

// The command-line tool, run as a user runs it: its own commands, importing clients from a CSV or an Access file, and usage.
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
        const QByteArray access = sampleBytes();
        row("Access file over a file", {"import-mdb", "IN", "DB"}, 1, {"already exists"}, access);
        row("Access file without a target", {"import-mdb", "IN"}, 2, {}, access);
        row("Access file over itself", {"import-mdb", "IN", "IN", "--force"}, 1, {"must not take the place of the Access file"}, access);
        row("Access file into a folder that cannot be written to", {"import-mdb", "IN", "LOCKED/new.tmdb"}, 1, {"cannot be written to"},
            access);
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
        // A folder that cannot be written to: permissions do not stop the superuser; the kernel's own folder does.
        const QString locked = ::geteuid() == 0 ? "/sys" : dir.filePath("locked");
        if (locked != QLatin1String("/sys")) {
            QVERIFY(QDir().mkdir(locked));
            QVERIFY(QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        }
        arguments.replaceInStrings(QRegularExpression("^LOCKED/"), locked + u'/');
        const QStringList there = files(locked);
        const QByteArray before = TestDatabase::fileHash(db), inBefore = TestDatabase::fileHash(input);
        const CliRun r = cli(arguments);
        if (locked != QLatin1String("/sys"))
            QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QCOMPARE(files(locked), there);
        QCOMPARE(r.exitCode, exitCode);
        for (const QString &s : said)
            QVERIFY2((r.out + r.err).contains(s), qPrintable(r.out + r.err));
        QCOMPARE(TestDatabase::fileHash(db), before);
        QCOMPARE(TestDatabase::fileHash(input), inBefore);
        QCOMPARE(files(dir.path()), (QStringList {"in.tmdb", "pantry.tmdb"}));
    }

    // The sample converts into a file that passes its check, private and replaced only with --force; rows Access deleted
    // or moved are read as Access shows them; a file that cannot be converted says why and leaves nothing.
    void accessFilesAsFound_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("said");   // on standard output, or on standard error when it fails
        QTest::addColumn<int>("clients");   // in the new file; -1: the conversion fails
        QTest::newRow("as it is") << sampleBytes()
                                  << QStringList {"  Client: 12 read, 12 written\n",
                                                  "Checked: every table's row count and money and bag totals equal the Access file's"}
                                  << 12;
        QTest::newRow("deleted") << withClientRows("deleted")
                                 << QStringList {"  Client: 11 read, 11 written\n",
                                                 "  FoodService: 33 read, 29 written; NumberOfBags 53 (Access file: 67)\n",
                                                 "  Family 15: left out: its ClientID 12 is not in the table Client.\n", "Changes (14):\n"}
                                 << 11;
        QTest::newRow("moved") << withClientRows("moved") << QStringList {"  Client: 12 read, 12 written\n", "No value needed changing.\n"}
                               << 12;
        const QByteArray sample = sampleBytes();
        QVERIFY(sample.size() > 100 * 4096);
        QByteArray noise(64 * 1024, '\0');
        QRandomGenerator(14).fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
        QByteArray jet3 = sample;
        jet3[0x14] = 0;
        QByteArray accdb = sample;
        accdb.replace(4, 15, "Standard ACE DB");
        // mdbtools may have said more on standard error before.
        const auto refused = [](const char *tag, const QByteArray &bytes, const char *message) {
            QTest::newRow(tag) << bytes << QStringList {"tendmark-cli import-mdb: ", QString::fromLatin1(message)} << -1;
        };
        refused("empty", QByteArray(), "The file is empty.");
        refused("random bytes", noise, "It is not an Access database.");
        refused("renamed text", QByteArray("LastName,FirstName\r\nDoe,Jane\r\n"), "It is not an Access database.");
        refused("cut mid-page", sample.left(sample.size() / 2 + 100), "The file is cut short");
        refused("cut at a page", sample.left(sample.size() - 40 * 4096), "could be read: the file is damaged.");
        refused("cut in the catalog", sample.left(30 * 4096), "its list of tables is damaged or cut short.");
        refused("jet 3", jet3, "Access 97 or older (Jet 3)");
        refused("accdb", accdb, "Access 2007 or later (.accdb)");
    }

    void accessFilesAsFound()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, said);
        QFETCH(int, clients);
        QTemporaryDir dir;
        QVERIFY(TestDatabase::writeFile(dir.filePath("old.mdb"), bytes));
        const QString out = dir.filePath("new.tmdb");
        const CliRun r = cli({"import-mdb", dir.filePath("old.mdb"), out});
        QCOMPARE(r.exitCode, clients < 0 ? 1 : 0);
        for (const QString &line : said)
            QVERIFY2((clients < 0 ? r.err : r.out).contains(line), qPrintable(line + r.out + r.err));
        if (clients < 0) {
            QCOMPARE(files(dir.path()), QStringList {"old.mdb"});
            return;
        }
        QCOMPARE(r.err, QString());
        QCOMPARE(TestDatabase::fileMode(out), 0600);
        QCOMPARE(TestDatabase::onFile(out, {"SELECT COUNT(*) FROM Client"}).toInt(), clients);
        QCOMPARE(TestDatabase::onFile(out, {"SELECT LastName || FirstName FROM Client WHERE ClientID = 1"}).toString(), "O'BrienPatrick");
        QCOMPARE(cli({"import-mdb", dir.filePath("old.mdb"), out, "--force"}).exitCode, 0);
        QCOMPARE(files(dir.path()), (QStringList {"new.tmdb", "old.mdb"}));
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
