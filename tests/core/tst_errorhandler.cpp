#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "basErrorHandler.h"

#include <QFile>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

namespace {

QString readLog(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
}

// Reads the log at the moment the message is shown.
class LogAtMessage : public ScriptedPrompts
{
public:
    explicit LogAtMessage(QString path) : m_path(std::move(path)) { }
    int message(const Prompt::Message &m) override
    {
        logWhenShown << readLog(m_path);
        return ScriptedPrompts::message(m);
    }
    QStringList logWhenShown;

private:
    QString m_path;
};

}   // namespace

// What an error tells the user and what it leaves in the error log; faults of the
// disk or the file are told in plain words, their details kept for the log alone.
class TestErrorHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachReportAppendsARecordBeforeTheMessageShows()
    {
        QTemporaryDir dir;
        const QString log = dir.filePath("error.log");
        basErrorHandler::setLogFilePathForTesting(log);
        LogAtMessage prompts(log);
        basErrorHandler::ReportError("basDatabase.GetClientInfo", 3021, "No current record.");
        // A guarded step that throws is reported the same way; one that does not runs through.
        QVERIFY(!basErrorHandler::Guard("frmClientGrid.ExecuteSQL", [] { throw TmError(-1, "no such column: XXX"); }));
        bool ran = false;
        QVERIFY(basErrorHandler::Guard("frmClientGrid.ExecuteSQL", [&] { ran = true; }));
        QVERIFY(ran);

        QCOMPARE(prompts.messages().size(), 2);
        const Prompt::Message first = prompts.messages().first();
        QCOMPARE(first.title, QStringLiteral("Application Error"));
        QCOMPARE(first.icon, Prompt::Icon::Information);
        QCOMPARE(first.buttons, int(Prompt::Ok));
        QCOMPARE(first.text,
                 QStringLiteral("An error has occurred.\r\n\r\n"
                                "Product Name: \tTendMark\r\n"
                                "Application File:  \t%1\r\n"
                                "Module: \t\tbasDatabase.GetClientInfo\r\n"
                                "Line Number: \t0\r\n\r\n"
                                "Error Number: \t3021\r\n"
                                "Error Description: \tNo current record.\r\n\r\n"
                                "\r\n\r\n")
                     .arg(QFileInfo(QCoreApplication::applicationFilePath()).fileName()));
        QVERIFY(prompts.logWhenShown.at(0).contains("In module: basDatabase.GetClientInfo"));
        QVERIFY(!prompts.logWhenShown.at(0).contains("frmClientGrid"));
        QVERIFY(prompts.last().text.contains("Error Description: \tno such column: XXX"));

        const QString all = readLog(log);
        const QStringList records = all.split(QString(50, '-') + "\r\n\r\n", Qt::SkipEmptyParts);
        QCOMPARE(records.size(), 2);
        static const QRegularExpression stamp("^\\d{2}-[A-Z][a-z]{2}-\\d{4}  \\d{2}:\\d{2}:\\d{2}\r\n");
        QVERIFY2(stamp.match(records.at(1)).hasMatch(), qPrintable(records.at(1)));
        QVERIFY(records.at(1).contains("Error logged by application: "));
        QVERIFY(records.at(1).contains("In module: frmClientGrid.ExecuteSQL\r\nAt line: 0\r\nError Number: -1\r\n"
                                       "Error Description: no such column: XXX\r\n"));
    }

    void logGoesBesideTheProgramOrToUserData()
    {
        basErrorHandler::setLogFilePathForTesting({});
        const QString path = basErrorHandler::LogFilePath();
        QVERIFY(path.endsWith("/error.log"));
        QVERIFY(path.startsWith(QCoreApplication::applicationDirPath()) || path.contains("TendMark"));
    }

    void faultsAreToldPlainly_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("words");
        const QString nothing = QStringLiteral(" Nothing was saved;");
        const QString gone = "test.tmdb was moved or deleted while it was open." + nothing;
        const auto row = [](const char *tag, const QString &words) { QTest::newRow(tag) << QString::fromLatin1(tag) << words; };
        row("full", "The disk holding test.tmdb is full." + nothing + " free some space and press Save again.");
        row("read-only", "test.tmdb or its folder is read-only." + nothing);
        row("locked", "test.tmdb is in use by another program." + nothing);
        row("deleted", gone);
        row("moved", gone);
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

QTEST_GUILESS_MAIN(TestErrorHandler)
#include "tst_errorhandler.moc"
