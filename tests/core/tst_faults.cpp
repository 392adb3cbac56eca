#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "basErrorHandler.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTest>

// Faults of the disk or the file reach the user in plain words, and the
// details only the error log.
class TestFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void faultsAreToldPlainly_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("words");
        QTest::newRow("disk full") << "full"
                                   << "The disk holding test.tmdb is full. Nothing was saved; free some space and press Save again.";
        QTest::newRow("read-only") << "read-only"
                                   << "test.tmdb or its folder is read-only. Nothing was saved;";
        QTest::newRow("in use") << "locked"
                                << "test.tmdb is in use by another program. Nothing was saved;";
        QTest::newRow("deleted") << "deleted"
                                 << "test.tmdb was moved or deleted while it was open. Nothing was saved;";
        QTest::newRow("moved") << "moved"
                               << "test.tmdb was moved or deleted while it was open. Nothing was saved;";
    }

    void faultsAreToldPlainly()
    {
        QFETCH(QString, fault);
        QFETCH(QString, words);
        TestDatabase db;
        ScriptedPrompts prompts;
        QSqlDatabase other;
        if (fault == QLatin1String("full")) {
            const int pages = basDatabase::ScalarValue(QStringLiteral("PRAGMA page_count")).toInt();
            basDatabase::Execute(QStringLiteral("PRAGMA max_page_count = %1").arg(pages));
        } else if (fault == QLatin1String("read-only")) {
            basDatabase::Execute(QStringLiteral("PRAGMA query_only = 1"));
        } else if (fault == QLatin1String("locked")) {
            basDatabase::Execute(QStringLiteral("PRAGMA busy_timeout = 50"));
            other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
            other.setDatabaseName(db.path());
            QVERIFY(other.open());
            QVERIFY(QSqlQuery(other).exec(QStringLiteral("BEGIN EXCLUSIVE")));
        } else if (fault == QLatin1String("deleted")) {
            QVERIFY(QFile::remove(db.path()));
        } else {
            QVERIFY(QFile::rename(db.path(), db.folder() + QStringLiteral("/elsewhere.tmdb")));
        }
        QCOMPARE(basDatabase::OpenFileWasMovedOrDeleted(), fault == QLatin1String("deleted") || fault == QLatin1String("moved"));
        const bool saved = basErrorHandler::Guard(QStringLiteral("test.Save"), [] {
            for (int i = 0; i < 20; ++i)
                TestDatabase::insert(QStringLiteral("Client"), {{"LastName", QStringLiteral("Ames")}, {"Comments", QString(9000, 'x')}});
        });
        QVERIFY(!saved);
        QVERIFY2(prompts.last().text.startsWith(words), qPrintable(prompts.last().text));
        QCOMPARE(prompts.last().title, QStringLiteral("TendMark"));
        QVERIFY(!prompts.last().text.contains(QStringLiteral("Error Number")));
        QFile log(db.folder() + QStringLiteral("/error.log"));
        QVERIFY(log.open(QIODevice::ReadOnly));
        QVERIFY(log.readAll().contains("Error Description"));   // the details are kept
        if (other.isValid()) {
            QSqlQuery(other).exec(QStringLiteral("ROLLBACK"));
            other.close();
            other = {};
            QSqlDatabase::removeDatabase(QStringLiteral("other"));
        }
    }
};

QTEST_GUILESS_MAIN(TestFaults)
#include "tst_faults.moc"
