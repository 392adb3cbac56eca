#include "Schema.h"
#include "basDatabase.h"

#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <csignal>

// A writer is killed in the middle of its saves again and again; after every
// kill the file must open, pass the check, and hold every save it acknowledged.
class TestCrashRecovery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
};

QTEST_GUILESS_MAIN(TestCrashRecovery)
#include "tst_crashrecovery.moc"
