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

}   // namespace Console

int commandBackup(const QStringList &args);
int commandRestore(const QStringList &args);
int commandAudit(const QStringList &args);
int commandReport(const QStringList &args);
int commandExport(const QStringList &args);
int commandLabels(const QStringList &args);
int commandImportCsv(const QStringList &args);
int commandImportMdb(const QStringList &args);
