#pragma once

#include "Query.h"

#include <QList>
#include <QString>

// The small tables of choices (education levels, payment types, zip codes...)
// that the records refer to. This is the one list of them: the Tools menu, the
// lookup editor, the record forms' drop-downs and the demo data all read it.
namespace LookupTables {

// A column of a record table that holds a lookup table's key.
struct Reference
{
    const char *table;
    const char *column;
};

struct LookupTable
{
    const char *table;
    const char *keyColumn;
    const char *descriptionColumn;
    const char *caption;   // the lookup editor's title; this and menuCaption are translated in the "LookupTables" context
    const char *menuName;   // the Tools > Tables command
    const char *menuCaption;   // the caption with its access key
    const char *columnSpec;   // the lookup editor's column layout; translated in the "ColumnHeadings" context
    // The columns that refer to an item; zip codes are copied into the records as text, so nothing refers to them.
    QList<Reference> references;

    QString name() const { return QString::fromLatin1(table); }
};

const QList<LookupTable> &all();
// The lookup table of that name, or nullptr.
const LookupTable *byName(const QString &table);
// The lookup table whose key the given column of a record table holds, or nullptr.
const LookupTable *referencedBy(const QString &table, const QString &column);

// The key and the given columns of every item, by key: what the lookup editor shows.
Query items(const LookupTable &table, const QStringList &columns);
// Every column of every item, by key: the lookup editor's recordset when it saves.
QString allRows(const LookupTable &table);
// True when the item is still in the table; throws TmError.
bool exists(const LookupTable &table, qint64 key);
// A drop-down's choices from any small table: key and shown text, by key.
Query choices(const QString &table, const QString &keyColumn, const QString &displayColumn);
// True when any record refers to the item with that key; throws TmError when the database cannot say.
bool inUse(const LookupTable &table, qint64 key);

}   // namespace LookupTables
