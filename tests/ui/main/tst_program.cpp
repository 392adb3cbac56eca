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

    struct Home
    {
        QTemporaryDir dir;
        bool ready = dir.isValid() && QDir().mkpath(path("home")) && QDir().mkpath(path("tmp")) && QDir().mkpath(path("run"))
            && QFile::setPermissions(path("run"), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

        QString path(const QString &name) const { return dir.filePath(name); }
        QString lastOpened() const
        {
            return QSettings(path("home/.config/TendMark/Settings.conf"), QSettings::IniFormat).value("LastOpened").toString();
        }
        // Starts the program with its questions logged to the file named.
        void start(QProcess &process, const QString &log, const QStringList &arguments) const
        {
            QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
            for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "USERNAME"})
                env.remove(QString::fromLatin1(name));
            const std::pair<const char *, QString> values[] = {{"HOME", path("home")},           {"USER", "intake"},
                                                               {"TMPDIR", path("tmp")},          {"XDG_RUNTIME_DIR", path("run")},
                                                               {"QT_QPA_PLATFORM", "offscreen"}, {"TENDMARK_PROMPT_LOG", path(log)}};
            for (const auto &[name, value] : values)
                env.insert(QString::fromLatin1(name), value);
            process.setProcessEnvironment(env);
            process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            process.start(QStringLiteral(TENDMARK_PROGRAM), arguments);
            QVERIFY2(process.waitForStarted(10000), qPrintable(process.errorString()));
        }
        QStringList logLines(const QString &log) const
        {
            QFile f(path(log));
            return f.open(QIODevice::ReadOnly | QIODevice::Text) ? QString::fromUtf8(f.readAll()).split('\n', Qt::SkipEmptyParts)
                                                                 : QStringList();
        }
    };

    static void stop(QProcess &process)
    {
        process.terminate();
        if (!process.waitForFinished(10000)) {
            process.kill();
            process.waitForFinished(5000);
        }
    }

private slots:
    void aSecondCopyIsTurnedAwayAndTheFirstRunsOn()
    {
        Home home;
        QVERIFY(home.ready);
        const QString database = home.path("pantry.tmdb"), other = home.path("other.tmdb");
        QString error;
        QVERIFY2(Schema::CreateDatabase(database, true, &error) && Schema::CreateDatabase(other, true, &error), qPrintable(error));

        QProcess first;
        home.start(first, "first.log", {database});
        // Up and running once it has opened the file and remembered it.
        QTRY_COMPARE_WITH_TIMEOUT(home.lastOpened(), database, 30000);

        QProcess second;
        QElapsedTimer clock;
        clock.start();
        home.start(second, "second.log", {other});
        QVERIFY(second.waitForFinished(15000));
        QVERIFY(clock.elapsed() < 15000);
        QCOMPARE(second.exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.exitCode(), 0);
        // message, title, icon (exclamation), buttons (OK), text
        QCOMPARE(home.logLines("second.log"), QStringList {"message\tTendMark\t2\t1\tAn instance of TendMark is already open."});

        // The first copy carries on with its own database; the second one's file is not opened.
        QTest::qWait(500);
        QCOMPARE(first.state(), QProcess::Running);
        QCOMPARE(home.lastOpened(), database);
        QVERIFY(home.logLines("first.log").isEmpty());
        stop(first);
    }

    void theDemoOpensFromAFreshHome()
    {
        Home home;
        QVERIFY(home.ready);
        const QString demo = home.path("home/.local/share/TendMark/TendMark/demo.tmdb");
        QProcess program;
        home.start(program, "demo.log", {"--demo"});
        QTRY_COMPARE_WITH_TIMEOUT(home.lastOpened(), demo, 180000);
        QCOMPARE(program.state(), QProcess::Running);
        QVERIFY(home.logLines("demo.log").isEmpty());
        QVERIFY(!QFile::exists(demo + ".part"));
        stop(program);
        QCOMPARE(TestDatabase::onFile(demo, {"SELECT COUNT(*) FROM Client"}).toInt(), 500);
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
