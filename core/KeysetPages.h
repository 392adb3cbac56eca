#pragma once

#include "Query.h"

#include <QList>
#include <QStringList>
#include <QVariantList>

// A list read by seeking on the index of its order (Query::orders) from a row's sort values, so that a
// page costs the same at the end of half a million rows as at the start. Each throws TmError on failure.
namespace KeysetPages {

struct Order
{
    QStringList terms;   // expressions over the list's rows, the last one the unique key
    bool descending = false;   // every term reversed
};

struct Page
{
    QList<QVariantList> rows;   // the list's columns
    QVariantList first, last;   // the sort values of the first and last row; empty when there are no rows
};

// Up to `rows` rows in the order, starting after the row whose sort values are `after` (at it when
// including; empty: from the first row), once `skip` rows are passed over.
Page read(const Query &query, const Order &order, const QVariantList &after, bool including, int skip, int rows);
// The sort values of the row with this key; empty when the key is not in the list.
QVariantList valuesOf(const Query &query, const Order &order, qint64 key);
// How many rows come before the row with these sort values, counted on the order's index.
int countBefore(const Query &query, const Order &order, const QVariantList &values);

}   // namespace KeysetPages
