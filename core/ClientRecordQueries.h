#pragma once

#include "Query.h"

#include <QList>
#include <QString>

// The rows a client owns, as the client windows list them: one query per kind
// of record, in a full form (the details window's tabs) and a short one (the
// summary's three lists).
namespace ClientRecordQueries {

enum class Kind { FamilyMember, FoodService, Payment, Income, Expenses };
enum class Form { Full, Short };

// The table the rows live in and its key column, for deleting a row.
struct Source
{
    QString table;
    QString keyColumn;
};
Source source(Kind kind);

// The rows of one client; the first column is the row's key.
Query rowsOf(Kind kind, qint64 clientId, Form form = Form::Full);

// The kinds of which the client has rows, in one statement: what a window needs to mark
// its tabs before it lists them.
QList<Kind> kindsWithRows(qint64 clientId);

}   // namespace ClientRecordQueries
