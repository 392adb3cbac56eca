#pragma once

#include <QString>
#include <QVariantList>

// A query ready to run: its text, the values bound to its placeholders, and
// optionally a cheaper query counting the same rows with the same binds.
struct Query
{
    QString sql;
    QVariantList binds;
    QString countSql;
};
