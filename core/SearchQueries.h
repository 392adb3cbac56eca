#pragma once

#include "Query.h"

#include <QStringList>

// The search bar's queries: one per "Search on" field, with the typed text
// prepared for that field and bound as a parameter.
namespace SearchQueries {

// sql's first column is the key handed to the client or volunteer window;
// countSql gives the same rows (their row ids as RowKey) from the searched table alone, without joins or order.
struct Query : ::Query
{
    QString keySql;   // turns a RowKey into the key handed over; empty when they are the same
    QString problem;   // set when the typed text cannot be searched for (a bad date)
    QString manySql;   // sql reading along the order's index, for when the rows are many; empty: sql
};

// The "Search on" names, untranslated: the search bar shows them translated in the "SearchQueries" context.
QStringList clientFields();
QStringList volunteerFields();
Query client(const QString &field, const QString &text);
Query volunteer(const QString &field, const QString &text);

struct Outcome
{
    int count = 0;
    QString onlyKey;   // the key, when exactly one row matches
    ::Query shown;   // the rows for the picker, counted, read the way that suits their number
};
// Counts the matches in one pass and tells the key when there is exactly one; throws TmError on failure.
Outcome run(const Query &query);

}   // namespace SearchQueries
