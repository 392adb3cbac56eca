#include "Backups.h"
#include "Schema.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "basRegistry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <sys/stat.h>

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

class TestBackups : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { ::umask(022); }

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

QTEST_GUILESS_MAIN(TestBackups)
#include "tst_backups.moc"
