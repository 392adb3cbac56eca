#pragma once

#include <QTextStream>

// Standard output and error of tendmark-cli.
namespace Console {

inline QTextStream &out()
{
    static QTextStream s(stdout);
    return s;
}

inline QTextStream &err()
{
    static QTextStream s(stderr);
    return s;
}

// Says on standard error what stopped a command and answers its exit status:
// 2 for a request that is wrong, 1 for one that could not be carried out.
inline int complain(const char *command, const QString &message, int status)
{
    err() << "tendmark-cli " << command << ": " << message << '\n';
    return status;
}

}   // namespace Console

int commandBackup(const QStringList &args);
int commandRestore(const QStringList &args);
int commandAudit(const QStringList &args);
int commandReport(const QStringList &args);
int commandExport(const QStringList &args);
int commandLabels(const QStringList &args);
int commandImportCsv(const QStringList &args);
int commandImportMdb(const QStringList &args);
