#include "basErrorHandler.h"

#include "PrivateFiles.h"
#include "Prompt.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>

namespace basErrorHandler {
namespace {

const char *const kProductName = "TendMark";
QString testLogPath;

QString executableName()
{
    const QString path = QCoreApplication::applicationFilePath();
    return path.isEmpty() ? QStringLiteral("tendmark") : QFileInfo(path).fileName();
}

bool folderIsWritable(const QString &folder)
{
    if (folder.isEmpty())
        return false;
    QFile probe(QDir(folder).filePath(QStringLiteral(".tendmark-write-test")));
    if (!probe.open(QIODevice::WriteOnly))
        return false;
    probe.close();
    probe.remove();
    return true;
}

}   // namespace

QString LogFilePath()
{
    if (!testLogPath.isEmpty())
        return testLogPath;
    const QString beside = QCoreApplication::applicationDirPath();
    if (folderIsWritable(beside))
        return QDir(beside).filePath(QStringLiteral("error.log"));
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir().mkpath(data);
    return QDir(data).filePath(QStringLiteral("error.log"));
}

void setLogFilePathForTesting(const QString &path)
{
    testLogPath = path;
}

QString MessageText(const QString &procedure, int number, const QString &description, int line, const QString &extraText)
{
    const QString nl = QStringLiteral("\r\n");
    QString text = QCoreApplication::translate("basErrorHandler", "An error has occurred.") + nl + nl;
    text += QCoreApplication::translate("basErrorHandler", "Product Name: \t") + QLatin1String(kProductName) + nl;
    text += QCoreApplication::translate("basErrorHandler", "Application File:  \t") + executableName() + nl;
    text += QCoreApplication::translate("basErrorHandler", "Module: \t\t") + procedure + nl;
    text += QCoreApplication::translate("basErrorHandler", "Line Number: \t") + QString::number(line) + nl + nl;
    text += QCoreApplication::translate("basErrorHandler", "Error Number: \t") + QString::number(number) + nl;
    text += QCoreApplication::translate("basErrorHandler", "Error Description: \t") + description + nl + nl;
    text += nl + extraText + nl;
    return text;
}

QString LogRecord(const QString &procedure, int number, const QString &description, int line)
{
    const QString nl = QStringLiteral("\r\n");
    const QDateTime now = QDateTime::currentDateTime();
    const QLocale c(QLocale::C);
    QString record = c.toString(now.date(), QStringLiteral("dd-MMM-yyyy")) + QStringLiteral("  ")
        + now.time().toString(QStringLiteral("HH:mm:ss")) + nl;
    record += QStringLiteral("Error logged by application: ") + executableName() + nl;
    record += QStringLiteral("In module: ") + procedure + nl;
    record += QStringLiteral("At line: ") + QString::number(line) + nl;
    record += QStringLiteral("Error Number: ") + QString::number(number) + nl;
    record += QStringLiteral("Error Description: ") + description + nl;
    record += QString(50, QLatin1Char('-')) + nl;
    record += nl;
    return record;
}

void ReportError(const QString &procedure, int number, const QString &description, int line, bool writeLog, const QString &extraText)
{
    if (writeLog) {
        QFile log(LogFilePath());
        if (log.open(QIODevice::Append, QFileDevice::ReadOwner | QFileDevice::WriteOwner)) {
            log.write(LogRecord(procedure, number, description, line).toUtf8());
            PrivateFiles::MakePrivate(log.fileName());
        }
    }
    Prompt::message(QCoreApplication::translate("basErrorHandler", "Application Error"),
                    MessageText(procedure, number, description, line, extraText), Prompt::Icon::Information, Prompt::Ok);
}

void ReportError(const QString &procedure, const TmError &error)
{
    if (error.plainWords().isEmpty()) {
        ReportError(procedure, error.number(), error.description(), error.line());
        return;
    }
    // A fault of the disk or the file, not of the program: the log keeps the details, the user reads what to do.
    QFile log(LogFilePath());
    if (log.open(QIODevice::Append, QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        log.write(LogRecord(procedure, error.number(), error.description(), error.line()).toUtf8());
    Prompt::message(QStringLiteral("TendMark"), error.plainWords(), Prompt::Icon::Exclamation, Prompt::Ok);
}

void ReportError(const QString &procedure, const std::exception &error)
{
    ReportError(procedure, -1, QString::fromLocal8Bit(error.what()));
}

}   // namespace basErrorHandler
