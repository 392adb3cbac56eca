#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

// Which records a report, an export or a label run covers: all of a table, the
// active list's current statement, or its current record. Hand-typed statements
// run on a read-only connection of their own whose authorizer lets through
// nothing but reading, so a statement that writes is refused by the database.
namespace RecordScope {

enum class Kind { None, Client, Volunteer };
enum ReportType { AllRecords = 0, CurrentRecordset = 1, CurrentRecord = 2 };

// What the active list form offers: its kind, its current statement and key.
struct ActiveScope
{
    Kind kind = Kind::None;
    QString sql;
    QString key;
};

QString tableName(Kind kind);   // "Client" / "Volunteer"
QString keyColumn(Kind kind);   // "ClientID" / "VolunteerID"

// The records chosen, as a condition on the table's key column.
struct Selection
{
    bool ok = false;
    QString error;   // the database's reason, or which column is missing
    QString where;   // "" for every record, else " WHERE <alias>.<key> IN (...)"
    QVariantList binds;
    int count = -1;   // number of chosen records, -1 for all
};

// reportType 0 keeps every record; 1 runs scope.sql read-only and keeps the
// keys it returns; 2 keeps scope.key. alias names the table in the caller's query.
Selection select(Kind kind, int reportType, const ActiveScope &scope, const QString &alias);

// Runs one hand-typed statement on a read-only connection to the open database.
// It must be a single SELECT reading `table` and returning `requiredColumns`,
// else *error says why (the database's own reason when it refuses). What runs is
// `wrapper` with the statement for its lowest placeholder ("%1" runs it as is).
bool runReadOnly(const QString &sql, const QString &table, const QStringList &requiredColumns, const QString &wrapper,
                 QList<QVariantList> *rows, QString *error);

}   // namespace RecordScope
