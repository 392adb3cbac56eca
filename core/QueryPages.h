#pragma once

#include "Query.h"

#include <QList>
#include <QStringList>
#include <QVariantList>

// A list's query read a page at a time, as a grid scrolls, optionally re-sorted
// on one of its fields as shown. Each throws TmError on failure.
namespace QueryPages {

int count(const Query &query);   // its known rows, else by its countSql when it has one
QStringList fieldNames(const Query &query);
// The query re-sorted on one of its fields; an empty field keeps the query's own order.
// Shown dates (mm/dd/yyyy) sort by year first and amounts ($1,234.50) by value; the rest as they are.
Query sorted(const Query &query, const QString &field, bool ascending);
QList<QVariantList> page(const Query &query, int first, int rows);
QList<qint64> keys(const Query &query);   // the first field of every row, in order

// The query with each field after the key shown the way people read it (SSN, phones, dates, one-line
// addresses), under its own name; the key stays as it is.
Query readable(const Query &query, const QStringList &fieldNames);

}   // namespace QueryPages
