#include "Backups.h"
#include "FileHealth.h"
#include "PrivateFiles.h"
#include "Schema.h"
#include "SingleInstance.h"
#include "ScriptedPrompts.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basRegistry.h"
#include "TestDatabase.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QSet>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int clients(const QString &path)
{
    QString error;
    if (!basDatabase::OpenConnection(path, &error))
        return -1;
    const int n = basDatabase::ScalarValue(QStringLiteral("SELECT count(*) FROM Client")).toInt();
    basDatabase::CloseConnection();
    return n;
}

}   // namespace

class TestFileSafety : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ::umask(022); }   // as most desktops set it: the program must not rely on it

    // How a file is made (a TendMark file of 300 clients changed by statements, or another
    // kind of file), what the check before opening finds, and what it names.
    void fileStatesOnOpening_data()
    {
        QTest::addColumn<QString>("make");
        QTest::addColumn<QStringList>("statements");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("named");
        const auto row
            = [](const char *tag, const char *make, const QStringList &statements, Schema::FileState state, const char *named = "") {
                  QTest::newRow(tag) << make << statements << int(state) << QString::fromLatin1(named);
              };
        row("healthy", "filled", {}, Schema::FileState::Ok);
        row("missing table", "filled", {"DROP TABLE Volunteer"}, Schema::FileState::Incomplete, "The table Volunteer is missing.");
        row("missing column", "filled", {"ALTER TABLE Client RENAME COLUMN Comments TO Remarks"}, Schema::FileState::Incomplete,
            "The column Comments of the table Client is missing.");
        row("missing index", "filled", {"DROP INDEX ClientBySSN"}, Schema::FileState::Incomplete, "The index ClientBySSN is missing.");
        row("missing audit trigger", "filled", {"DROP TRIGGER AuditClientDelete"}, Schema::FileState::Incomplete,
            "The trigger AuditClientDelete is missing.");
        row("newer TendMark", "filled", {"PRAGMA user_version = 99"}, Schema::FileState::Newer);
        row("foreign application id", "filled", {"PRAGMA application_id = 7"}, Schema::FileState::Foreign);
        row("another program's database", "sqlite", {"CREATE TABLE Client (Id INTEGER PRIMARY KEY, Name TEXT)"},
            Schema::FileState::Foreign);
        row("damaged header", "header", {}, Schema::FileState::Damaged);
        row("text file", "text", {}, Schema::FileState::NotSqlite);
        row("Access file", "mdb", {}, Schema::FileState::NotSqlite);
        row("missing", "none", {}, Schema::FileState::Missing);
        if (::geteuid() != 0)   // the superuser can write to any file
            row("read-only", "read-only", {}, Schema::FileState::ReadOnly);
    }

    void fileStatesOnOpening()
    {
        QFETCH(QString, make);
        QFETCH(QStringList, statements);
        QFETCH(int, state);
        QFETCH(QString, named);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("pantry.tmdb"));
        if (make == "filled" || make == "header" || make == "read-only")
            TestDatabase::filledFile(path);
        if (make == "header") {
            QFile f(path);
            QVERIFY(f.open(QIODevice::ReadWrite) && f.seek(16));
            f.write(QByteArray(200, '\xff'));
        } else if (make == "read-only") {
            QFile::setPermissions(path, QFile::ReadOwner);
        } else if (make == "text") {
            QVERIFY(TestDatabase::writeFile(path, "LastName,FirstName\nDoe,Jane\n"));
        } else if (make == "mdb") {
            QVERIFY(QFile::copy(QStringLiteral(TENDMARK_SOURCE_DIR "/../shared/fixtures/sample-jet4.mdb"), path));
        }
        if (!statements.isEmpty())
            QVERIFY(TestDatabase::onFile(path, statements).isValid());
        const QByteArray before = TestDatabase::fileHash(path);
        const QDateTime modified = QFileInfo(path).lastModified();
        const Schema::FileCheck check = Schema::ExamineForOpening(path);
        QCOMPARE(int(check.state), state);
        const bool healthy = state == int(Schema::FileState::Ok);
        QCOMPARE(check.reason.isEmpty(), healthy);
        QCOMPARE(Schema::CheckFile(path).isEmpty(), healthy || state == int(Schema::FileState::ReadOnly));   // its contents are sound
        QString reason;
        QCOMPARE(basDatabase::OpenConnection(path, &reason), healthy);
        QCOMPARE(reason.isEmpty(), healthy);
        QCOMPARE(basDatabase::IsOpen(), healthy);
        basDatabase::CloseConnection();
        // Checked and refused files are left as they were; a sound file is not even touched, nor anything left beside it.
        QCOMPARE(TestDatabase::fileHash(path), before);
        if (healthy) {
            QVERIFY(!check.recovered);
            QCOMPARE(QFileInfo(path).lastModified(), modified);
            QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList {"pantry.tmdb"});
        }
        if (!named.isEmpty()) {
            QVERIFY2(check.problems.contains(named), qPrintable(check.problems.join('|')));
            QVERIFY(Schema::CheckFile(path).contains(named));
        }
    }

    void damagedFileIsRefusedAndItsReadableRowsCanBeCopied()
    {
        QTemporaryDir dir;
        const QString path = TestDatabase::filledFile(dir.filePath(QStringLiteral("pantry.tmdb")));
        TestDatabase::scribble(path);
        QCOMPARE(Schema::ExamineForOpening(path).state, Schema::FileState::Damaged);

        const QString rescued = dir.filePath(QStringLiteral("rescued.tmdb"));
        FileHealth::CopyReport report;
        QString error;
        QVERIFY2(FileHealth::CopyReadable(path, rescued, &report, &error), qPrintable(error));
        QCOMPARE(Schema::CheckFile(rescued), QStringList());
        qInfo("copied %d rows, lost %d; tables lost: %s", report.rowsCopied, report.rowsLost, qPrintable(report.lostTables.join(", ")));
        QVERIFY(report.rowsCopied > 100);
        QVERIFY(report.rowsLost > 0);
        QVERIFY(basDatabase::OpenConnection(rescued));
        const int clients = basDatabase::ScalarValue(QStringLiteral("SELECT count(*) FROM Client")).toInt();
        basDatabase::CloseConnection();
        QVERIFY(clients > 0 && clients < 300);
        QCOMPARE(TestDatabase::fileMode(rescued), 0600);
        QVERIFY(!FileHealth::CopyReadable(path, rescued, &report, &error));   // never over an existing file
    }

    void filesAreOwnerOnly()
    {
        QTemporaryDir dir;
        const QString path = TestDatabase::filledFile(dir.filePath(QStringLiteral("pantry.tmdb")));
        QCOMPARE(TestDatabase::fileMode(path), 0600);
        QVERIFY(basDatabase::OpenConnection(path));
        basDatabase::Execute(QStringLiteral("INSERT INTO Client (LastName) VALUES ('Wal')"));
        QCOMPARE(TestDatabase::fileMode(path + QStringLiteral("-wal")), 0600);
        QCOMPARE(TestDatabase::fileMode(path + QStringLiteral("-shm")), 0600);
        basDatabase::CloseConnection();

        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        QVERIFY(PrivateFiles::IsReadableByOthers(path));
        QVERIFY(Schema::ExamineForOpening(path).notPrivate);
        QVERIFY(PrivateFiles::MakePrivate(path));
        QVERIFY(!Schema::ExamineForOpening(path).notPrivate);
        QCOMPARE(TestDatabase::fileMode(path), 0600);

        // The error log and the settings too; the backups' folders are checked with the backups below.
        ScriptedPrompts prompts;
        basErrorHandler::setLogFilePathForTesting(dir.filePath(QStringLiteral("error.log")));
        basErrorHandler::ReportError(QStringLiteral("test"), 1, QStringLiteral("Ames, Ann"));
        basRegistry::SetString(basRegistry::SettingsKey(), QStringLiteral("LastOpened"), path);
        const QString settings = QSettings(QSettings::NativeFormat, QSettings::UserScope, "TendMark", "Settings").fileName();
        QCOMPARE(TestDatabase::fileMode(dir.filePath(QStringLiteral("error.log"))), 0600);
        QCOMPARE(TestDatabase::fileMode(settings), 0600);
        QCOMPARE(TestDatabase::fileMode(QFileInfo(settings).absolutePath()), 0700);
    }

    void interruptedCreationLeavesNothingAndIsClearedByTheNext()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("new.tmdb"));
        QString error;
        const auto fail = [](QSqlDatabase, QString *e) {
            *e = QStringLiteral("stopped half-way");
            return false;
        };
        QVERIFY(!Schema::CreateDatabase(path, false, &error, fail));
        QCOMPARE(error, QStringLiteral("stopped half-way"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
        // What a killed run leaves: the half-made file under its building name.
        QFile stale(dir.filePath(QStringLiteral(".new.tmdb.creating")));
        QVERIFY(stale.open(QIODevice::WriteOnly));
        stale.write("half");
        stale.close();
        QVERIFY(Schema::CreateDatabase(path, false, &error));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList {"new.tmdb"});
    }

    void socketIsPrivateAndForeignSocketsGetNothing()
    {
        const QString path = SingleInstance::SocketPath(QStringLiteral("TendMark-test"));
        QCOMPARE(TestDatabase::fileMode(QFileInfo(path).absolutePath()), 0700);
        QVERIFY(PrivateFiles::OwnedByMe(QFileInfo(path).absolutePath()));
        SingleInstance first(QStringLiteral("TendMark-test"));
        QVERIFY(!first.anotherIsRunning({}));
        QVERIFY(first.listen());
        QVERIFY((TestDatabase::fileMode(path) & 077) == 0);
        QStringList received;
        connect(&first, &SingleInstance::activated, this, [&](const QStringList &a) { received = a; });
        SingleInstance second(QStringLiteral("TendMark-test"));
        bool running = false;
        QThread *t = QThread::create([&] { running = second.anotherIsRunning({"pantry.tmdb"}); });
        t->start();
        QTRY_COMPARE(received, QStringList {"pantry.tmdb"});
        t->wait();
        delete t;
        QVERIFY(running);

        // A socket of that name made by another user receives nothing.
        if (::geteuid() != 0)
            return;
        QVERIFY(::chown(QFile::encodeName(path).constData(), 65534, 65534) == 0);
        received.clear();
        SingleInstance third(QStringLiteral("TendMark-test"));
        QVERIFY(!third.anotherIsRunning({"secret.tmdb"}));
        QTest::qWait(200);
        QCOMPARE(received, QStringList());
    }

    // A writer is killed in the middle of its saves again and again; after every kill the file
    // must open, pass the check, and hold every save it acknowledged.
    void killedWritersLoseNothing()
    {
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("pantry.tmdb"));
        QString error;
        QVERIFY2(Schema::CreateDatabase(file, false, &error), qPrintable(error));
        QRandomGenerator random(20261123);
        QSet<qlonglong> acknowledged;
        int recovered = 0;
        const int runs = 120;
        for (int run = 0; run < runs; ++run) {
            QProcess writer;
            writer.start(QStringLiteral(CRASH_WRITER), {file});
            QVERIFY(writer.waitForStarted());
            QVERIFY2(writer.waitForReadyRead(10000), qPrintable(writer.readAllStandardError()));
            QThread::usleep(random.bounded(1, 20000));
            ::kill(pid_t(writer.processId()), SIGKILL);
            QVERIFY(writer.waitForFinished());
            const QList<QByteArray> lines = writer.readAllStandardOutput().split('\n');
            for (const QByteArray &line : lines)
                if (!line.isEmpty())
                    acknowledged.insert(line.toLongLong());

            const Schema::FileCheck check = Schema::ExamineForOpening(file);
            QVERIFY2(check.state == Schema::FileState::Ok, qPrintable(check.reason));
            recovered += check.recovered ? 1 : 0;
            QCOMPARE(Schema::CheckFile(file), QStringList());
            QVERIFY(!QFileInfo::exists(file + QStringLiteral("-wal")));
            QVERIFY(!QFileInfo::exists(file + QStringLiteral("-shm")));
        }
        QVERIFY2(basDatabase::OpenConnection(file, &error), qPrintable(error));
        QSet<qlonglong> stored;
        QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT ClientID FROM Client WHERE LastName LIKE 'Crash%'"));
        while (q.next())
            stored.insert(q.value(0).toLongLong());
        const int services = basDatabase::ScalarValue(QStringLiteral("SELECT count(*) FROM FoodService")).toInt();
        basDatabase::CloseConnection();
        QVERIFY(stored.contains(acknowledged));
        QCOMPARE(services, stored.size());   // no save is half there
        qInfo("%d kills, %d recovered on open, %lld saves acknowledged, %lld stored", runs, recovered, qlonglong(acknowledged.size()),
              qlonglong(stored.size()));
        QVERIFY(recovered > runs / 2);
        QVERIFY(acknowledged.size() > runs);
    }

    void rotationKeepsRecentDailyAndMonthly_data()
    {
        QTest::addColumn<QList<int>>("hoursAgo");   // ages of the copies
        QTest::addColumn<QList<int>>("deleted");   // indexes into hoursAgo
        // Twelve copies today: the two oldest go, but one of today stays.
        QTest::newRow("many today") << QList<int> {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11} << QList<int> {10, 11};
        // Two a day for two weeks: beyond the last ten, the newest of each day stays.
        QList<int> twice;
        QList<int> older;
        for (int d = 0; d < 14; ++d) {
            twice << d * 24 + 1 << d * 24 + 2;
            if (d * 2 + 1 >= 10)
                older << d * 2 + 1;
        }
        QTest::newRow("twice a day") << twice << older;
        // Older than 30 days: one a month, for a year; older than a year: none beyond the last ten.
        QList<int> monthly;
        for (int i = 0; i < 10; ++i)
            monthly << i;
        monthly << 24 * 40 << 24 * 41 << 24 * 400;
        QTest::newRow("months and years") << monthly << QList<int> {11, 12};
    }

    void rotationKeepsRecentDailyAndMonthly()
    {
        QFETCH(QList<int>, hoursAgo);
        QFETCH(QList<int>, deleted);
        const QDateTime now(QDate(2026, 11, 23), QTime(23, 30));
        QList<QDateTime> taken;
        for (int h : hoursAgo)
            taken << now.addSecs(-3600LL * h);
        QList<QDateTime> expected;
        for (int i : deleted)
            expected << taken.at(i);
        QList<QDateTime> actual = Backups::ToDelete(taken, now, 10);
        std::sort(actual.begin(), actual.end());
        std::sort(expected.begin(), expected.end());
        QCOMPARE(actual, expected);
    }

    void backupListAndRestore()
    {
        TestDatabase db;
        for (const char *name : {"Ames", "Baker"})
            TestDatabase::insert(QStringLiteral("Client"), {{"LastName", name}});
        basDatabase::CloseConnection();
        QString made, error;
        QVERIFY2(Backups::BackupNow(db.path(), {}, &made, &error), qPrintable(error));
        const QString folder = QFileInfo(made).absolutePath();
        QCOMPARE(folder, QDir(db.folder()).filePath(QStringLiteral("backups")));
        QCOMPARE(TestDatabase::fileMode(folder), 0700);
        QCOMPARE(TestDatabase::fileMode(made), 0600);
        QCOMPARE(Schema::CheckFile(made), QStringList());
        QCOMPARE(Backups::Latest(db.path()), made);

        QVERIFY(basDatabase::OpenConnection(db.path()));
        QVERIFY(!basDatabase::HasChangesSinceOpen());
        TestDatabase::insert(QStringLiteral("Client"), {{"LastName", "Carter"}});
        QVERIFY(basDatabase::HasChangesSinceOpen());
        basDatabase::CloseConnection();
        QTest::qWait(2);   // copies are named to the millisecond
        QVERIFY2(Backups::Restore(made, db.path(), &error), qPrintable(error));
        QCOMPARE(clients(db.path()), 2);
        QCOMPARE(TestDatabase::fileMode(db.path()), 0600);

        const QList<Backups::Info> list = Backups::List(db.path());
        QCOMPARE(list.size(), 2);   // the restored copy and the file as it was before
        QCOMPARE(list.at(0).clients, 3);
        QCOMPARE(list.at(1).clients, 2);
        QVERIFY(list.at(0).taken > list.at(1).taken);
        QCOMPARE(list.at(1).size, QFileInfo(made).size());
        QCOMPARE(QDir(db.folder()).entryList({"*.restoring", "*.part"}, QDir::Files | QDir::Hidden), QStringList());

        const QString bad = QDir(db.folder()).filePath(QStringLiteral("bad.tmdb"));
        QVERIFY(TestDatabase::writeFile(bad, QByteArray(8192, 'x')));
        QVERIFY(!Backups::Restore(bad, db.path(), &error));
        QCOMPARE(clients(db.path()), 2);
    }

    void onOpenAtMostOncePerDayAndIntoTheChosenFolder()
    {
        TestDatabase db(false);
        QTemporaryDir stick;
        basRegistry::SetString(basRegistry::SettingsKey(), QStringLiteral("BackupFolder"), stick.filePath("copies"));
        QString first, second, error;
        QVERIFY(Backups::BackupOnOpen(db.path(), &first, &error));
        QVERIFY(Backups::BackupOnOpen(db.path(), &second, &error));
        basRegistry::DeleteValue(basRegistry::SettingsKey(), QStringLiteral("BackupFolder"));
        QVERIFY(first.startsWith(stick.filePath("copies")));
        QVERIFY(second.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestFileSafety)
#include "tst_filesafety.moc"
