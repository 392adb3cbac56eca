#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>

// A query ready to run: its text, the values bound to its placeholders, and
// optionally a cheaper query counting the same rows with the same binds.
struct Query
{
    QString sql;
    QVariantList binds;
    QString countSql;
    int rows = -1;   // the number of rows, when already counted (a search before its picker)
    // Set by a list that is read by seeking on its order rather than by OFFSET: its rows are
    // "SELECT columns FROM source" (sql is that in orders[0]'s order; binds belong to source), and
    // orders[i] is what field i sorts by (orders[0]: the list's own order). An order is a list of
    // expressions over source's rows ending with the unique key, which is never NULL; an empty one
    // leaves that field to sort by its shown text.
    QString columns = {};
    QString source = {};
    QList<QStringList> orders = {};
};
