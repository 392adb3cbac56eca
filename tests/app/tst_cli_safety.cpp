#include "AuditLog.h"

#include "CliRun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <sys/stat.h>

namespace {

int modeOf(const QString &path)
{
    struct stat st
    { };
    ::stat(QFile::encodeName(path).constData(), &st);
    return int(st.st_mode & 0777);
}

// Runs statements through a connection of the test's own; keepOpen leaves it open.
void sql(const QString &path, const QStringList &statements, bool keepOpen = false)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), path);
    db.setDatabaseName(path);
    QVERIFY(db.open());
    for (const QString &s : statements)
        QVERIFY2(QSqlQuery(db).exec(s), qPrintable(s));
    if (keepOpen)
        return;
    db.close();
    db = {};
    QSqlDatabase::removeDatabase(path);
}

QStringList files(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

}   // namespace

class TestCliSafety : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        ::umask(022);
        AuditLog::RegisterUserFunction();   // the test's own connections write audited tables
    }

    void everyFileMadeIsOwnerOnly()
    {
        QTemporaryDir dir;
        const QString db = dir.filePath("pantry.tmdb");
        QCOMPARE(cli({"demo", db, "--clients", "30"}).exitCode, 0);
        QCOMPARE(cli({"audit", db}).out, QString());   // a new file's log starts empty
        QCOMPARE(cli({"new", dir.filePath("empty.tmdb")}).exitCode, 0);
        QCOMPARE(cli({"backup", db}).exitCode, 0);
        QCOMPARE(cli({"backup", db, dir.filePath("stick/copies")}).exitCode, 0);
        const QStringList made = {db, dir.filePath("empty.tmdb"), dir.filePath("backups"), dir.filePath("stick/copies")};
        for (const QString &path : made)
            QCOMPARE(modeOf(path), QFileInfo(path).isDir() ? 0700 : 0600);
        for (const QString &folder : QStringList {dir.filePath("backups"), dir.filePath("stick/copies")}) {
            QCOMPARE(files(folder).size(), 1);
            QCOMPARE(modeOf(QDir(folder).filePath(files(folder).constFirst())), 0600);
        }
        QCOMPARE(files(dir.path()), (QStringList {"empty.tmdb", "pantry.tmdb"}));
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
        const CliRun again = cli({"demo", db, "--clients", "10"});
        QCOMPARE(again.exitCode, 0);
        QCOMPARE(files(dir.path()), QStringList {"demo.tmdb"});
    }

    void checkFinishesAnInterruptedSaveAndLeavesNothing()
    {
        QTemporaryDir dir;
        const QString db = dir.filePath("pantry.tmdb");
        QCOMPARE(cli({"new", db}).exitCode, 0);
        // A program that crashed after its save: the saved row lives only in the -wal.
        sql(db, {"PRAGMA wal_autocheckpoint = 0", "INSERT INTO Client (LastName) VALUES ('Saved')"}, true);
        const QString crashed = dir.filePath("crashed.tmdb");
        for (const char *suffix : {"", "-wal"})
            QVERIFY(QFile::copy(db + suffix, crashed + suffix));
        QVERIFY(QFileInfo(crashed + "-wal").size() > 0);
        const CliRun check = cli({"check", crashed});
        QCOMPARE(check.exitCode, 0);
        QVERIFY(!QFileInfo::exists(crashed + "-wal"));
        QVERIFY(!QFileInfo::exists(crashed + "-shm"));
        const CliRun audit = cli({"audit", crashed});
        QVERIFY(audit.out.contains("insert Client 1"));
        QVERIFY(audit.out.contains("\"LastName\":\"Saved\""));
    }

    void checkNamesWhatIsMissing()
    {
        QTemporaryDir dir;
        const QString db = dir.filePath("pantry.tmdb");
        QCOMPARE(cli({"new", db}).exitCode, 0);
        sql(db, {"DROP TABLE LabelDetails", "ALTER TABLE Volunteer RENAME COLUMN Comments TO Notes"});
        const CliRun check = cli({"check", db});
        QCOMPARE(check.exitCode, 1);
        QVERIFY(check.err.contains("The table LabelDetails is missing."));
        QVERIFY(check.err.contains("The column Comments of the table Volunteer is missing."));
    }

    void backupRestoreAndAuditOfADeletedClient()
    {
        QTemporaryDir dir;
        const QString db = dir.filePath("pantry.tmdb");
        QCOMPARE(cli({"new", db}).exitCode, 0);
        sql(db, {"INSERT INTO Client (ClientID, LastName, FirstName) VALUES (7, 'Ames', 'Ann')"});
        const CliRun backup = cli({"backup", db});
        QCOMPARE(backup.exitCode, 0);
        const QString copy = backup.out.section(' ', 3).trimmed();
        QVERIFY2(QFileInfo::exists(copy), qPrintable(backup.out));
        sql(db, {"DELETE FROM Client"});

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
};

QTEST_GUILESS_MAIN(TestCliSafety)
#include "tst_cli_safety.moc"
