#pragma once

#include <QString>

class QSqlDatabase;

// Trigram indexes of the text the search bar looks in "anywhere": a client's folded names and
// address and its phone numbers (ClientText), a family member's folded names (FamilyText). A
// search for three characters or more reads the rows that hold them there instead of every row,
// and finds the same rows as LIKE '%text%' on the same values. Triggers keep them.
namespace SearchIndex {

// How to find the rows of table whose column holds text on its index, with the one bind they all
// take; empty when the column is not indexed or the text is too short for a trigram.
struct Condition
{
    QString sql;   // a condition that seeks the rows by their key
    QString alongOrder;   // the same condition, for a statement that reads the table in an index's order
    QString keys;   // a statement of the rows' keys (as RowKey), from the index alone
    QString bind;
};
Condition holding(const QString &table, const QString &column, const QString &text);

// Adds the indexes and their triggers, and fills them (a schema upgrade step).
bool Install(QSqlDatabase db, QString *error);

}   // namespace SearchIndex
