#include "Schema.h"
#include "TestDatabase.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

// The program itself, started as a user starts it, offscreen, in a home of its own.
// Its questions are written to a log instead of being shown (TENDMARK_PROMPT_LOG).
class TestProgram : public QObject
{
    Q_OBJECT

private:
    struct Home
    {
        QTemporaryDir dir;
        QString path(const QString &name) const { return dir.filePath(name); }
        QString settingsFile() const { return path(QStringLiteral("home/.config/TendMark/Settings.conf")); }
        QString lastOpened() const
        {
            return QSettings(settingsFile(), QSettings::IniFormat).value(QStringLiteral("LastOpened")).toString();
        }
    };

    static void start(QProcess &process, const Home &home, const QString &log, const QStringList &arguments)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "USERNAME"})
            env.remove(QString::fromLatin1(name));
        env.insert("HOME", home.path(QStringLiteral("home")));
        env.insert("USER", "intake");
        env.insert("TMPDIR", home.path(QStringLiteral("tmp")));
        env.insert("XDG_RUNTIME_DIR", home.path(QStringLiteral("run")));
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("TENDMARK_PROMPT_LOG", home.path(log));
        process.setProcessEnvironment(env);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QStringLiteral(TENDMARK_PROGRAM), arguments);
        QVERIFY2(process.waitForStarted(10000), qPrintable(process.errorString()));
    }

    static QStringList logLines(const Home &home, const QString &log)
    {
        QFile f(home.path(log));
        if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
            return {};
        return QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

    static void stop(QProcess &process)
    {
        if (process.state() == QProcess::NotRunning)
            return;
        process.terminate();
        if (!process.waitForFinished(10000)) {
            process.kill();
            process.waitForFinished(5000);
        }
    }

    static bool prepare(Home &home)
    {
        if (!home.dir.isValid())
            return false;
        for (const char *sub : {"home", "tmp", "run"})
            if (!QDir().mkpath(home.path(QString::fromLatin1(sub))))
                return false;
        return QFile::setPermissions(home.path(QStringLiteral("run")),
                                     QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }

private slots:
    void aSecondCopyIsTurnedAwayAndTheFirstRunsOn()
    {
        Home home;
        QVERIFY(prepare(home));
        const QString database = home.path(QStringLiteral("pantry.tmdb"));
        const QString other = home.path(QStringLiteral("other.tmdb"));
        QString error;
        QVERIFY2(Schema::CreateDatabase(database, true, &error), qPrintable(error));
        QVERIFY2(Schema::CreateDatabase(other, true, &error), qPrintable(error));

        QProcess first;
        start(first, home, QStringLiteral("first.log"), {database});
        // Up and running once it has opened the file and remembered it.
        QTRY_COMPARE_WITH_TIMEOUT(home.lastOpened(), database, 30000);

        QProcess second;
        QElapsedTimer clock;
        clock.start();
        start(second, home, QStringLiteral("second.log"), {other});
        QVERIFY(second.waitForFinished(15000));
        QVERIFY(clock.elapsed() < 15000);
        QCOMPARE(second.exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.exitCode(), 0);
        // message, title, icon (exclamation), buttons (OK), text
        QCOMPARE(logLines(home, QStringLiteral("second.log")),
                 QStringList {QStringLiteral("message\tTendMark\t2\t1\tAn instance of TendMark is already open.")});

        // The first copy carries on with its own database; the second one's file is not opened.
        QTest::qWait(500);
        QCOMPARE(first.state(), QProcess::Running);
        QCOMPARE(home.lastOpened(), database);
        QVERIFY(logLines(home, QStringLiteral("first.log")).isEmpty());
        stop(first);
    }

    void theDemoOpensFromAFreshHome()
    {
        Home home;
        QVERIFY(prepare(home));
        const QString demo = home.path(QStringLiteral("home/.local/share/TendMark/TendMark/demo.tmdb"));
        QProcess program;
        start(program, home, QStringLiteral("demo.log"), {QStringLiteral("--demo")});
        QTRY_COMPARE_WITH_TIMEOUT(home.lastOpened(), demo, 180000);
        QCOMPARE(program.state(), QProcess::Running);
        QVERIFY(logLines(home, QStringLiteral("demo.log")).isEmpty());
        QVERIFY(!QFile::exists(demo + QStringLiteral(".part")));
        stop(program);
        QCOMPARE(TestDatabase::onFile(demo, {"SELECT COUNT(*) FROM Client"}).toInt(), 500);
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
