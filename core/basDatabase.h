#pragma once

#include "FieldInfo.h"
#include "Prompt.h"

#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

class Recordset;

// The one shared database connection and the small services every window uses.
// Every value reaches SQL as a bound parameter.
namespace basDatabase {

QSqlDatabase Connection();
bool IsOpen();
QString DatabasePath();
// True when the open file is no longer where it was opened (deleted, moved or replaced).
bool OpenFileWasMovedOrDeleted();

// Opens the shared connection on a TendMark database file, replacing any earlier
// one. A save cut short by a crash is finished first; a file that is not a TendMark
// database, or is damaged or incomplete, is refused and left unchanged; an older one
// is upgraded after a checked backup. *reason says why it failed.
bool OpenConnection(const QString &path, QString *reason = nullptr);
void CloseConnection();
// True when something was written through the shared connection since it was opened
// (a backup is due when the file is closed).
bool HasChangesSinceOpen();

// A query on the shared connection, prepared and bound; throws TmError on failure.
QSqlQuery Execute(const QString &sql, const QVariantList &binds = {});
// The first column of the first row, or an invalid QVariant when there is none.
QVariant ScalarValue(const QString &sql, const QVariantList &binds = {});

// Column metadata, read from the database and cached while it is open.
QList<FieldInfo> Fields(const QString &table);
FieldInfo Field(const QString &table, const QString &column);

bool DeleteItemFromTable(const QString &table, const QString &keyColumn, const QString &keyValue);

bool FieldIsValid(const FieldInfo &field, const QVariant &value, QString &message);
// The value as the column stores it: cents for money, ISO text for dates, 0/1 for yes/no, null for empty.
QVariant StorageValue(const FieldInfo &field, const QVariant &value);
bool UpdateDataField(Recordset &recordset, const QString &column, const QVariant &value);
// A stored value as the user sees it: "" for null, dates "mm/dd/yyyy", money "1234.50", yes/no "True"/"False".
QString DisplayText(const FieldInfo &field, const QVariant &stored);

bool GetCityStateFromZip(const QString &zip, QString &city, QString &state);
bool GetClientInfo(const QString &clientId, QStringList &result);

// Other clients at the same address (address and city ignore case, state does not)
// or with the same social security number. On a match the request holds the query.
bool MatchAddress(const QString &clientId, const QString &address, const QString &city, const QString &state, Prompt::PickRequest &result);
bool MatchSSN(const QString &clientId, const QString &ssn, Prompt::PickRequest &result);

bool FindRecord(Recordset &recordset, const QString &column, const QString &value);

}   // namespace basDatabase
