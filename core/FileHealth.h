#pragma once

#include <QString>
#include <QStringList>

// Getting a database file back to work after something went wrong with it.
namespace FileHealth {

// When a save was cut short (a -journal or -wal file lies beside the database),
// opens the file read-write as SQLite requires, which finishes or undoes that
// save, and closes it again, leaving no -wal or -shm behind. Does nothing to a
// file without one. Refuses a file of another user. *recovered says whether
// there was anything to do.
bool FinishInterruptedSave(const QString &path, bool *recovered, QString *error);

struct CopyReport
{
    int rowsCopied = 0;
    int rowsLost = 0;
    QStringList lostTables;   // tables of which nothing could be read
};

// Copies what can still be read of a damaged database, table by table and row by
// row, into a new file (which must not exist) with the current schema. Rows that
// cannot be read, or that refer to a row that was lost, are left out and counted.
bool CopyReadable(const QString &damaged, const QString &newFile, CopyReport *report, QString *error);

}   // namespace FileHealth
