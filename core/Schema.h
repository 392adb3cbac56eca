#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <functional>

// The database file: creating one with the standard contents, recognising a
// TendMark file, and bringing an older one up to the current version.
namespace Schema {

constexpr int CurrentVersion = 10;
constexpr int ApplicationId = 0x544D4B31;   // "TMK1"
inline constexpr const char *FileSuffix = "tmdb";

enum class FileState { Ok, Missing, NotSqlite, Foreign, Newer, Damaged, Incomplete, ReadOnly };

struct FileCheck
{
    FileState state = FileState::Missing;
    int version = 0;
    QString reason;   // for the user, when state is not Ok
    QStringList problems;   // the details of a damaged or incomplete file
    bool recovered = false;   // a save that was cut short was finished or undone first
    bool notPrivate = false;   // other users of the computer can read the file
};

// Looks at a file: first lets SQLite finish or undo a save that was cut short
// (which needs a read-write open by the file's owner), then reads it without
// changing anything. A healthy file is left byte for byte as it was.
FileCheck InspectFile(const QString &path);

// What the program checks before opening a file: InspectFile, the quick integrity
// check, every table, column, index and trigger of its version, and who can read it.
// Only Ok (perhaps recovered or notPrivate) may be opened.
FileCheck ExamineForOpening(const QString &path);

// The tables, columns, indexes and triggers a database of that version lacks.
QStringList MissingSchemaItems(QSqlDatabase db, int version);

// Makes the SQL functions the database's triggers call (the audit log's, the folded name keys')
// known to every connection opened from now on. Call before opening a connection that writes.
void RegisterTriggerFunctions();

// Creates a new database file with the schema and the standard contents; fill, when
// given, adds more in the same connection. The file is built under a temporary name
// and renamed into place when complete, so a failure or a killed run leaves nothing.
// Refuses an existing file unless overwrite is set. Returns false with *error set.
bool CreateDatabase(const QString &path, bool overwrite, QString *error, const std::function<bool(QSqlDatabase, QString *)> &fill = {});

// Journal mode and durability of every connection that writes: write-ahead log with
// synchronous=FULL, so an acknowledged save survives a crash or power cut and an
// interrupted one is finished or undone by the next open.
bool PrepareForWriting(QSqlDatabase db, QString *error);

// Applies the schema and standard contents to an empty, open database.
bool ApplyNewSchema(QSqlDatabase db, QString *error);

// Brings an open database from its version up to CurrentVersion, all or nothing.
bool Upgrade(QSqlDatabase db, int fromVersion, QString *error);

// Integrity, foreign keys, tables and columns, and version of a file; empty when
// all is well. Changes nothing but finishing an interrupted save.
QStringList CheckFile(const QString &path);

// Runs the statements of a script, stopping at the first failure.
bool RunScript(QSqlDatabase db, const QString &script, QString *error);
// Runs one statement; on failure *error holds the database's reason.
bool Exec(QSqlDatabase db, const QString &sql, QString *error);

}   // namespace Schema
