#pragma once

#include <QString>

class TmError;

// Reports unexpected failures: appends a record to error.log, then tells the user.
namespace basErrorHandler {

void ReportError(const QString &procedure, int number, const QString &description, int line = 0, bool writeLog = true,
                 const QString &extraText = {});
void ReportError(const QString &procedure, const TmError &error);
void ReportError(const QString &procedure, const std::exception &error);

// The message shown to the user and the record written to the log.
QString MessageText(const QString &procedure, int number, const QString &description, int line, const QString &extraText);
QString LogRecord(const QString &procedure, int number, const QString &description, int line);

// Beside the program when that folder is writable, else in the per-user data folder.
QString LogFilePath();
void setLogFilePathForTesting(const QString &path);

// Runs body; an exception it throws is reported under procedure. Returns false then.
template<typename F> bool Guard(const QString &procedure, F &&body);

}   // namespace basErrorHandler

#include "TmError.h"

template<typename F> bool basErrorHandler::Guard(const QString &procedure, F &&body)
{
    try {
        body();
        return true;
    } catch (const TmError &e) {
        ReportError(procedure, e);
    } catch (const std::exception &e) {
        ReportError(procedure, e);
    }
    return false;
}
