#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// What the filter's criteria grid offers: the fields of a table in the order
// the list shows them, and the conditions that fit each kind of field.
namespace FilterFields {

enum class Type { Text, Date, IDNumber, Number, Currency, Boolean };

struct Field
{
    const char *caption;   // "Last Name"
    const char *table;   // "Client", or a table joined on ClientID
    const char *column;   // "LastName"
    Type type;
    // IDNumber fields: the lookup table whose descriptions the value list shows.
    const char *lookupTable = nullptr;
    const char *lookupKey = nullptr;   // the value the criterion compares
    const char *lookupDescription = nullptr;

    QString qualified() const { return QString::fromLatin1(table) + QLatin1Char('.') + QString::fromLatin1(column); }
    // Zip codes are kept as text but compared as numbers, so 02134 matches 2134.
    bool numberStoredAsText() const;
};

// The fields of "Client" or "Volunteer"; empty for any other table.
const QList<Field> &forTable(const QString &tableName);
const Field *find(const QString &tableName, const QString &caption);

// The conditions offered for a type, in list order (at most 20).
QStringList conditions(Type type);
bool isRange(const QString &condition);   // "is between", "is not between": two values
bool needsValue(const QString &condition);   // false for "is empty", "is True" and the like

}   // namespace FilterFields
