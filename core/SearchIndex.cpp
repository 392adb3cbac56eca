#include "SearchIndex.h"

#include "FoldedText.h"
#include "Schema.h"

#include <QSqlDatabase>
#include <QStringList>

namespace SearchIndex {
namespace {

struct Indexed
{
    const char *table;
    const char *key;
    const char *index;
    QList<const char *> columns;   // as the table names them: a name's or address's folded key
};

const QList<Indexed> &indexed()
{
    static const QList<Indexed> tables = {
        {"Client", "ClientID", "ClientText", {"LastNameKey", "FirstNameKey", "AddressKey", "HomePhone", "WorkPhone", "MobilePhone"}},
        {"Family", "FamilyMemberID", "FamilyText", {"LastNameKey", "FirstNameKey"}},
    };
    return tables;
}

}   // namespace

Condition holding(const QString &table, const QString &column, const QString &text)
{
    if (text.size() < 3)
        return {};
    for (const Indexed &t : indexed()) {
        if (table != QLatin1String(t.table))
            continue;
        for (const char *c : t.columns) {
            if (column != QLatin1String(c))
                continue;
            const QString matching = QStringLiteral("SELECT rowid FROM %1 WHERE %1 MATCH ?").arg(QLatin1String(t.index));
            const QString key = QLatin1String(t.table) + QLatin1Char('.') + QLatin1String(t.key);
            // A phrase in double quotes is matched as written, its own quotes doubled.
            return {QStringLiteral("%1 IN (%2)").arg(key, matching), QStringLiteral("+%1 IN (%2)").arg(key, matching),
                    QStringLiteral("SELECT rowid AS RowKey FROM %1 WHERE %1 MATCH ?").arg(QLatin1String(t.index)),
                    QStringLiteral("%1 : \"%2\"").arg(column, QString(text).replace(QLatin1Char('"'), QStringLiteral("\"\"")))};
        }
    }
    return {};
}

bool Install(QSqlDatabase db, QString *error)
{
    FoldedText::RegisterSqlFunctions(db);
    for (const Indexed &t : indexed()) {
        const QString table = QLatin1String(t.table);
        const QString index = QLatin1String(t.index);
        QStringList names, sources, oldValues, newValues;
        for (const char *c : t.columns) {
            // The index holds what the column holds, computed from the row as its key trigger does.
            QString source;
            names << QLatin1String(c);
            oldValues << FoldedText::valueOver(table, names.last(), QStringLiteral("OLD"), &source);
            newValues << FoldedText::valueOver(table, names.last(), QStringLiteral("NEW"), &source);
            sources << source;
        }
        const QString key = QLatin1String(t.key);
        const QString removed = QStringLiteral("INSERT INTO %1 (%1, rowid, %2) VALUES ('delete', OLD.%3, %4);")
                                    .arg(index, names.join(QStringLiteral(", ")), key, oldValues.join(QStringLiteral(", ")));
        const QString added = QStringLiteral("INSERT INTO %1 (rowid, %2) VALUES (NEW.%3, %4);")
                                  .arg(index, names.join(QStringLiteral(", ")), key, newValues.join(QStringLiteral(", ")));
        if (!Schema::Exec(
                db,
                QStringLiteral("CREATE VIRTUAL TABLE %1 USING fts5(%2, content = '%3', content_rowid = '%4', tokenize = 'trigram')")
                    .arg(index, names.join(QStringLiteral(", ")), table, key),
                error)
            || !Schema::Exec(db, QStringLiteral("CREATE TRIGGER %1Insert AFTER INSERT ON %2 BEGIN %3 END").arg(index, table, added), error)
            || !Schema::Exec(db, QStringLiteral("CREATE TRIGGER %1Delete AFTER DELETE ON %2 BEGIN %3 END").arg(index, table, removed),
                             error)
            || !Schema::Exec(db,
                             QStringLiteral("CREATE TRIGGER %1Update AFTER UPDATE OF %2, %3 ON %4 BEGIN %5 %6 END")
                                 .arg(index, key, sources.join(QStringLiteral(", ")), table, removed, added),
                             error)
            || !Schema::Exec(db, QStringLiteral("INSERT INTO %1 (%1) VALUES ('rebuild')").arg(index), error))
            return false;
    }
    return true;
}

}   // namespace SearchIndex
