#include "KeysetPages.h"

#include "basDatabase.h"

#include <QSqlRecord>

namespace KeysetPages {

namespace {

// One part of the rows after a row: its condition, binds, and the terms it still sorts by (those before
// are fixed by the condition). Each part is one range of the order's index.
struct Part
{
    QString where;
    QVariantList binds;
    int firstTerm = 0;
};

// The rows after the sort values (and their own row when including), nearest first. NULL sorts before
// every value, so it is the smallest going up and the largest going down; row values would compare it
// as unknown, hence a part per term.
QList<Part> partsAfter(const Order &order, const QVariantList &values, bool including)
{
    if (values.isEmpty())
        return {Part {}};
    QList<Part> parts;
    for (qsizetype i = order.terms.size() - (including ? 0 : 1); i >= 0; --i) {
        Part fixed;
        QStringList conditions;
        for (qsizetype j = 0; j < i; ++j) {
            if (values.at(j).isNull()) {
                conditions << order.terms.at(j) + QStringLiteral(" IS NULL");
            } else {
                conditions << order.terms.at(j) + QStringLiteral(" = ?");
                fixed.binds << values.at(j);
            }
        }
        if (i == order.terms.size()) {
            fixed.where = conditions.join(QStringLiteral(" AND "));
            fixed.firstTerm = int(i) - 1;
            parts << fixed;
            continue;
        }
        fixed.firstTerm = int(i);
        const QString term = order.terms.at(i);
        auto add = [&](const QString &condition, const QVariantList &binds) {
            Part part = fixed;
            part.where = (conditions + QStringList {condition}).join(QStringLiteral(" AND "));
            part.binds += binds;
            parts << part;
        };
        if (!order.descending && values.at(i).isNull()) {
            add(term + QStringLiteral(" IS NOT NULL"), {});
        } else if (!order.descending) {
            add(term + QStringLiteral(" > ?"), {values.at(i)});
        } else if (!values.at(i).isNull()) {
            add(term + QStringLiteral(" < ?"), {values.at(i)});
            add(term + QStringLiteral(" IS NULL"), {});
        }
    }
    return parts;
}

QString whereClause(const Part &part)
{
    return part.where.isEmpty() ? QString() : QStringLiteral(" WHERE ") + part.where;
}

// By the terms' places in the result: a term named like a shown field would otherwise sort by the shown text.
QString orderBy(const Order &order, int firstTerm)
{
    QStringList terms;
    for (qsizetype i = firstTerm; i < order.terms.size(); ++i)
        terms << QString::number(i + 1) + (order.descending ? QStringLiteral(" DESC") : QStringLiteral(" ASC"));
    return QStringLiteral(" ORDER BY ") + terms.join(QStringLiteral(", "));
}

}   // namespace

Page read(const Query &query, const Order &order, const QVariantList &after, bool including, int skip, int rows)
{
    const int n = int(order.terms.size());
    const QString select = QStringLiteral("SELECT ") + order.terms.join(QStringLiteral(", ")) + QStringLiteral(", ") + query.columns
        + QStringLiteral(" FROM ") + query.source;
    const QList<Part> parts = partsAfter(order, after, including);
    Page page;
    for (qsizetype p = 0; p < parts.size() && page.rows.size() < rows; ++p) {
        const Part &part = parts.at(p);
        const QVariantList binds = query.binds + part.binds;
        if (skip > 0 && p + 1 < parts.size()) {
            // Passes over a part that the skip covers whole, counting no further than the skip.
            const int inPart = basDatabase::ScalarValue(QStringLiteral("SELECT COUNT(*) FROM (SELECT 1 FROM ") + query.source
                                                            + whereClause(part) + QStringLiteral(" LIMIT ?)"),
                                                        binds + QVariantList {skip})
                                   .toInt();
            if (inPart < skip) {
                skip -= inPart;
                continue;
            }
        }
        // The page's keys are chosen on the sort terms alone, and only their rows are shown: an order no
        // index holds then sorts narrow rows, not the list's every column.
        QStringList terms = order.terms;
        terms.last() += QStringLiteral(" AS tm_key");
        const QString keys = QStringLiteral("SELECT tm_key FROM (SELECT ") + terms.join(QStringLiteral(", ")) + QStringLiteral(" FROM ")
            + query.source + whereClause(part) + orderBy(order, part.firstTerm) + QStringLiteral(" LIMIT ? OFFSET ?)");
        QSqlQuery q = basDatabase::Execute(select + QStringLiteral(" WHERE ") + order.terms.last() + QStringLiteral(" IN (") + keys
                                               + QStringLiteral(")") + orderBy(order, part.firstTerm),
                                           query.binds + binds + QVariantList {rows - int(page.rows.size()), skip});
        skip = 0;
        const int fields = q.record().count();
        while (q.next()) {
            QVariantList sortValues;
            QVariantList values;
            for (int i = 0; i < fields; ++i)
                (i < n ? sortValues : values) << q.value(i);
            if (page.rows.isEmpty())
                page.first = sortValues;
            page.last = sortValues;
            page.rows << values;
        }
    }
    return page;
}

QVariantList valuesOf(const Query &query, const Order &order, qint64 key)
{
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT ") + order.terms.join(QStringLiteral(", ")) + QStringLiteral(" FROM ")
                                           + query.source + QStringLiteral(" WHERE ") + order.terms.last() + QStringLiteral(" = ?"),
                                       query.binds + QVariantList {key});
    QVariantList values;
    if (q.next()) {
        for (qsizetype i = 0; i < order.terms.size(); ++i)
            values << q.value(int(i));
    }
    return values;
}

int countBefore(const Query &query, const Order &order, const QVariantList &values)
{
    // The rows before a row are those after it in the opposite direction.
    Order reversed = order;
    reversed.descending = !order.descending;
    int count = 0;
    for (const Part &part : partsAfter(reversed, values, false))
        count += basDatabase::ScalarValue(QStringLiteral("SELECT COUNT(*) FROM ") + query.source + whereClause(part),
                                          query.binds + part.binds)
                     .toInt();
    return count;
}

}   // namespace KeysetPages
