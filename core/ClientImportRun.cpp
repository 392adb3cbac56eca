#include "ClientImport.h"

#include "TmError.h"
#include "Transaction.h"
#include "basDatabase.h"

#include <QHash>

namespace ClientImport {

namespace {

QString unknownKey(int field, const QString &description)
{
    return QString::number(field) + u'|' + description.toLower();
}

QString insertStatement()
{
    QStringList columns;
    QStringList marks;
    for (const Field &f : fields()) {
        columns << QString::fromLatin1(f.column);
        marks << QStringLiteral("?");
    }
    return QStringLiteral("INSERT INTO Client (%1) VALUES (%2)").arg(columns.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
}

QString rows(int n)
{
    return n == 1 ? QStringLiteral("1 row") : QStringLiteral("%1 rows").arg(n);
}

}   // namespace

Outcome run(const Plan &plan, bool addLookups, const Progress &progress)
{
    Outcome outcome;
    const int total = plan.importable();
    try {
        Transaction transaction(basDatabase::Connection());
        if (!transaction.active()) {
            outcome.error = QStringLiteral("The import cannot begin: %1").arg(transaction.error());
            return outcome;
        }
        QHash<QString, QVariant> added;
        if (addLookups) {
            for (const Unknown &u : plan.unknowns) {
                const Field &f = fields()[u.field];
                basDatabase::Execute(
                    QStringLiteral("INSERT INTO %1 (%2) VALUES (?)").arg(QLatin1String(f.table), QLatin1String(f.tableColumn)),
                    {u.description});
                added.insert(unknownKey(u.field, u.description), basDatabase::ScalarValue(QStringLiteral("SELECT last_insert_rowid()")));
                ++outcome.lookupsAdded;
            }
        }
        const QString insert = insertStatement();
        int done = 0;
        for (const Row &row : plan.rows) {
            if (!row.ok())
                continue;
            QVariantList values = row.values;
            for (int field : row.unknownLookups)
                values[field] = added.value(unknownKey(field, row.values[field].toString()));
            basDatabase::Execute(insert, values);
            ++done;
            if (progress && (done % 250 == 0 || done == total) && !progress(done, total)) {
                outcome.cancelled = true;
                outcome.lookupsAdded = 0;
                return outcome;   // the transaction rolls back
            }
        }
        if (!transaction.commit()) {
            outcome.error = transaction.error();
            outcome.lookupsAdded = 0;
            return outcome;
        }
        outcome.committed = true;
        outcome.imported = done;
    } catch (const TmError &e) {
        outcome.error = e.plainWords().isEmpty() ? e.description() : e.plainWords();
        outcome.lookupsAdded = 0;
    }
    return outcome;
}

QStringList describe(const Plan &plan, bool addLookups)
{
    QStringList lines;
    for (const Row &row : plan.rows) {
        const QString line = QStringLiteral("Line %1: ").arg(row.line);
        if (!row.ok()) {
            lines << line + QStringLiteral("skipped: ") + row.problems.join(u' ');
            continue;
        }
        QStringList notes = row.notes;
        for (int field : row.unknownLookups)
            notes << QStringLiteral("%1 '%2' %3.")
                         .arg(fields()[field].name(), row.values[field].toString(),
                              addLookups ? QStringLiteral("is added to its list") : QStringLiteral("is not in its list: left empty"));
        if (!notes.isEmpty())
            lines << line + notes.join(u' ');
    }
    return lines;
}

QString summary(const Plan &plan, bool done)
{
    const int importable = plan.importable();
    return QStringLiteral("%1 %2, %3 skipped.")
        .arg(rows(importable), done ? QStringLiteral("imported") : QStringLiteral("would be imported"))
        .arg(plan.rows.size() - importable);
}

}   // namespace ClientImport
