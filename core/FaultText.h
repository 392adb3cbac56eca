#pragma once

#include <QString>

// Plain words for the faults of the world outside the program: a full disk, a
// read-only file or folder, a file moved or deleted while open, a database
// another program holds. Each says what happened and what to do.
namespace FaultText {

// The message for a failed database operation on the file, or an empty string
// when the SQLite result code is not one of these faults. fileGone: the file is
// no longer where it was opened.
QString ForDatabaseError(int sqliteCode, const QString &databasePath, bool fileGone);

}   // namespace FaultText
