#pragma once

#include <QString>
#include <QVariantList>

// The search bar's queries: one per "Search on" field, with the typed text
// prepared for that field and bound as a parameter.
namespace SearchQueries {

struct Query
{
    QString sql;            // first column: the key handed to the client or volunteer window
    QVariantList binds;
    QString problem;        // set when the typed text cannot be searched for (a bad date)
};

QStringList clientFields();
QStringList volunteerFields();
Query client(const QString &field, const QString &text);
Query volunteer(const QString &field, const QString &text);

struct Outcome
{
    int count = 0;
    QString firstKey;       // the key of the first row, when there is one
};
// Runs the query far enough to tell none, one or many; throws TmError on failure.
Outcome run(const Query &query);

} // namespace SearchQueries
