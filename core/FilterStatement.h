#pragma once

#include <QList>
#include <QString>

// Turns the filter's criteria into the SELECT statement the user sees, and may
// edit, before it runs. Values stand in it as SQL literals: text quoted with its
// quotes doubled, dates as ISO text, money in cents.
namespace FilterStatement {

struct Criterion
{
    QString conjunction;   // "Where" on the first row, then "And" or "Or"
    QString field;   // the field's caption
    QString condition;   // "is equal to", ...
    QString value;   // as typed; dates "mm/dd/yyyy"; list fields the chosen key
    QString value2;   // the second value of "is between"
};

struct Result
{
    bool ok = false;
    QString sql;   // empty when there are no criteria
    QString error;   // what is wrong, naming the row
    int row = -1;   // the row at fault, from 0
};

// tableName is "Client" or "Volunteer". Rows without a field are skipped.
Result build(const QString &tableName, const QList<Criterion> &criteria);

// Every column of the rows of tableName ("Client", "Volunteer") whose key the
// statement returns: what a window shows for a filter, in its own order, however
// few columns the statement selects.
QString matching(const QString &tableName, const QString &statement);

// A text as an SQL literal: 'O''Brien'.
QString quoted(const QString &text);

}   // namespace FilterStatement
