#include "ScriptedPrompts.h"
#include "basErrorHandler.h"

#include <QFile>
#include <QRegularExpression>
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

class TestErrorHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messageText()
    {
        const QString text = basErrorHandler::MessageText("frmMain.mnuFileOpen_Click", 3343, "Unrecognized database format.", 0, {});
        const QString expected = QStringLiteral("An error has occurred.\r\n\r\n"
                                                "Product Name: \tTendMark\r\n"
                                                "Application File:  \t%1\r\n"
                                                "Module: \t\tfrmMain.mnuFileOpen_Click\r\n"
                                                "Line Number: \t0\r\n\r\n"
                                                "Error Number: \t3343\r\n"
                                                "Error Description: \tUnrecognized database format.\r\n\r\n"
                                                "\r\n\r\n")
                                     .arg(QFileInfo(QCoreApplication::applicationFilePath()).fileName());
        QCOMPARE(text, expected);
    }

    void eachReportAppendsARecordBeforeTheMessageShows()
    {
        QTemporaryDir dir;
        const QString log = dir.filePath("error.log");
        basErrorHandler::setLogFilePathForTesting(log);
        LogAtMessage prompts(log);
        basErrorHandler::ReportError("basDatabase.GetClientInfo", 3021, "No current record.");
        basErrorHandler::ReportError("frmClientGrid.ExecuteSQL", TmError(-1, "no such column: XXX"));

        QCOMPARE(prompts.messages().size(), 2);
        const Prompt::Message first = prompts.messages().first();
        QCOMPARE(first.title, QStringLiteral("Application Error"));
        QCOMPARE(first.icon, Prompt::Icon::Information);
        QCOMPARE(first.buttons, int(Prompt::Ok));
        QVERIFY(first.text.contains("Module: \t\tbasDatabase.GetClientInfo\r\n"));
        QVERIFY(prompts.logWhenShown.at(0).contains("In module: basDatabase.GetClientInfo"));
        QVERIFY(!prompts.logWhenShown.at(0).contains("frmClientGrid"));

        const QString all = readLog(log);
        const QStringList records = all.split(QString(50, '-') + "\r\n\r\n", Qt::SkipEmptyParts);
        QCOMPARE(records.size(), 2);
        static const QRegularExpression stamp("^\\d{2}-[A-Z][a-z]{2}-\\d{4}  \\d{2}:\\d{2}:\\d{2}\r\n");
        QVERIFY2(stamp.match(records.at(1)).hasMatch(), qPrintable(records.at(1)));
        QVERIFY(records.at(1).contains("Error logged by application: "));
        QVERIFY(records.at(1).contains("In module: frmClientGrid.ExecuteSQL\r\nAt line: 0\r\nError Number: -1\r\n"
                                       "Error Description: no such column: XXX\r\n"));
    }

    void guardReportsAndCarriesOn()
    {
        QTemporaryDir dir;
        basErrorHandler::setLogFilePathForTesting(dir.filePath("error.log"));
        ScriptedPrompts prompts;
        bool after = false;
        QVERIFY(!basErrorHandler::Guard("frmX.Work", [] { throw TmError(5, "boom"); }));
        QVERIFY(basErrorHandler::Guard("frmX.Work", [&] { after = true; }));
        QVERIFY(after);
        QCOMPARE(prompts.messages().size(), 1);
        QVERIFY(prompts.last().text.contains("Error Description: \tboom"));
    }

    void logGoesBesideTheProgramOrToUserData()
    {
        basErrorHandler::setLogFilePathForTesting({});
        const QString path = basErrorHandler::LogFilePath();
        QVERIFY(path.endsWith("/error.log"));
        QVERIFY(path.startsWith(QCoreApplication::applicationDirPath()) || path.contains("TendMark"));
    }
};

QTEST_GUILESS_MAIN(TestErrorHandler)
#include "tst_errorhandler.moc"
