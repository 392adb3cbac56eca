#pragma once

#include "CsvReader.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>

// Clients from a spreadsheet: the file's columns mapped to client fields, every
// row checked with the client details window's rules and against the clients on
// file, then the good rows added in one transaction, all or nothing.
namespace ClientImport {

enum class Kind { Text, Ssn, Phone, Date, Lookup, Code, Number, YesNo };

struct Field
{
    const char *caption;   // the export's column caption, which a header may name it by
    const char *column;   // its Client column
    Kind kind = Kind::Text;
    const char *table = nullptr;   // the table its choices come from (lookups and codes)
    const char *tableColumn = nullptr;   // the choice's text column in that table

    QString name() const { return QString::fromLatin1(caption); }
};

// The fields a column can fill, in the export's order.
const QList<Field> &fields();
// The field a header names, by caption or column name, ignoring case and blanks around; -1 for none.
int fieldIndex(const QString &header);
// For each column of a header, the field it fills or -1: columns named like the export's captions map themselves.
QList<int> automaticMapping(const QStringList &header);
// The captions of required fields that no column fills.
QStringList unmappedRequired(const QList<int> &mapping);

// A description a lookup table does not hold yet.
struct Unknown
{
    int field = -1;
    QString description;
    int rows = 0;
};

struct Row
{
    int line = 0;   // the file line the row starts on
    QVariantList values;   // one per field, as stored; null when empty
    QStringList problems;   // why the row cannot be imported
    QStringList notes;   // what was found but does not stop the row
    QList<int> unknownLookups;   // fields whose description is an Unknown (value null until resolved)

    bool ok() const { return problems.isEmpty(); }
};

struct Plan
{
    QList<Row> rows;
    QList<Unknown> unknowns;   // by field, then in the order first met

    int importable() const;
};

// Checks every record of the table against the rules and the open database
// (duplicates by social security number and by address, there and within the
// file). Changes nothing. Throws TmError when the database cannot be read.
Plan check(const CsvReader::Table &table, const QList<int> &mapping);

struct Outcome
{
    bool committed = false;
    bool cancelled = false;
    QString error;   // why nothing was imported, when it failed
    int imported = 0;
    int lookupsAdded = 0;
};

// Reports rows done out of the total; returning false cancels the import.
using Progress = std::function<bool(int done, int total)>;

// Adds the importable rows of the plan to the open database in one transaction:
// all of them, or none when cancelled or failing. addLookups adds the unknown
// descriptions to their tables; without it those fields stay empty.
Outcome run(const Plan &plan, bool addLookups, const Progress &progress = {});

// One line per row that is skipped or carries a note, "Line 7: skipped: ...".
QStringList describe(const Plan &plan, bool addLookups);
// How many rows were (or would be) imported and skipped, in one sentence.
QString summary(const Plan &plan, bool done);

}   // namespace ClientImport
