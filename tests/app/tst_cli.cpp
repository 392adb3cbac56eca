#include "CliRun.h"
#include "TestDatabase.h"

#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

namespace {

int count(const QString &path, const QString &sql)
{
    int n = -1;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("peek"));
        db.setDatabaseName(path);
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (db.open()) {
            QSqlQuery q(db);
            if (q.exec(sql) && q.next())
                n = q.value(0).toInt();
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("peek"));
    return n;
}

}   // namespace

class TestCli : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newDemoAndCheck()
    {
        QTemporaryDir dir;
        const QString fresh = dir.filePath("pantry.tmdb");
        CliRun r = cli({"new", fresh});
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(count(fresh, "SELECT COUNT(*) FROM States"), 56);
        QCOMPARE(count(fresh, "SELECT COUNT(*) FROM Client"), 0);
        r = cli({"new", fresh});
        QCOMPARE(r.exitCode, 1);   // an existing file is never replaced unasked
        QVERIFY(r.err.contains("already exists"));
        QCOMPARE(cli({"check", fresh}).exitCode, 0);

        const QString demo = dir.filePath("demo.tmdb");
        r = cli({"demo", demo, "--clients", "40", "--seed", "3"});
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(count(demo, "SELECT COUNT(*) FROM Client"), 40);
        QVERIFY(count(demo, "SELECT COUNT(*) FROM FoodService") > 0);
        r = cli({"check", demo});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.out.contains("ok"));
    }

    void refusesWhatIsNotADatabaseAndLeavesItAlone()
    {
        QTemporaryDir dir;
        const QString notes = dir.filePath("notes.tmdb");
        {
            QFile f(notes);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("beans, rice, flour\n");
        }
        const QByteArray before = TestDatabase::fileHash(notes);
        const CliRun r = cli({"check", notes});
        QCOMPARE(r.exitCode, 1);
        QVERIFY(r.err.contains("not a TendMark database"));
        QCOMPARE(TestDatabase::fileHash(notes), before);
        QCOMPARE(cli({"check", dir.filePath("missing.tmdb")}).exitCode, 1);
    }

    void usageAndHelp()
    {
        QCOMPARE(cli({}).exitCode, 2);
        CliRun r = cli({"--help"});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.out.contains("demo FILE --clients N"));
        for (const char *command : {"new", "demo", "check"}) {
            r = cli({command, "--help"});
            QCOMPARE(r.exitCode, 0);
            QVERIFY(r.out.contains("FILE"));
        }
        QCOMPARE(cli({"demo", "x.tmdb", "--clients", "many"}).exitCode, 2);
        QCOMPARE(cli({"frobnicate"}).exitCode, 2);
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"
