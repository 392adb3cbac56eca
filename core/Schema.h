#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

// The database file: creating one with the standard contents, recognising a
// TendMark file, and bringing an older one up to the current version.
namespace Schema {

constexpr int CurrentVersion = 1;
constexpr int ApplicationId = 0x544D4B31; // "TMK1"
inline constexpr const char *FileSuffix = "tmdb";

enum class FileState { Ok, Missing, NotSqlite, Foreign, Newer, Damaged, ReadOnly };

struct FileCheck
{
    FileState state = FileState::Missing;
    int version = 0;
    QString reason; // for the user, when state is not Ok
};

// Looks at a file without changing it.
FileCheck InspectFile(const QString &path);

// Creates a new database file with the schema and the standard contents.
// Refuses an existing file unless overwrite is set. Returns false with *error set.
bool CreateDatabase(const QString &path, bool overwrite, QString *error);

// Applies the schema and standard contents to an empty, open database.
bool ApplyNewSchema(QSqlDatabase db, QString *error);

// Brings an open database from its version up to CurrentVersion, all or nothing.
bool Upgrade(QSqlDatabase db, int fromVersion, QString *error);

// Integrity, foreign keys and version of a file; empty when all is well.
QStringList CheckFile(const QString &path);

// Runs the statements of a script, stopping at the first failure.
bool RunScript(QSqlDatabase db, const QString &script, QString *error);

} // namespace Schema
