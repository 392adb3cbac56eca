#include "QueryPages.h"

#include "SqlText.h"
#include "basDatabase.h"

#include <QSqlRecord>

namespace QueryPages {

namespace {

QString readableValue(const QString &fieldName)
{
    const QString c = SqlText::id(fieldName);
    if (fieldName == QLatin1String("SocialSecurityNumber"))
        return SqlText::ssn(c);
    if (fieldName == QLatin1String("HomePhone") || fieldName == QLatin1String("MobilePhone") || fieldName == QLatin1String("WorkPhone")
        || fieldName == QLatin1String("EmergencyContactPhone"))
        return SqlText::phone(c);
    if (fieldName == QLatin1String("Address") || fieldName == QLatin1String("EmployerAddress") || fieldName == QLatin1String("Comments"))
        return QStringLiteral("REPLACE(REPLACE(%1, char(13), ' '), char(10), ' ')").arg(c);
    if (fieldName == QLatin1String("BirthDate"))
        return SqlText::date(c);
    return c;
}

}   // namespace

int count(const Query &query)
{
    if (query.rows >= 0)
        return query.rows;
    const QString from = query.countSql.isEmpty() ? query.sql : query.countSql;
    return basDatabase::ScalarValue(QStringLiteral("SELECT COUNT(*) FROM (%1)").arg(from), query.binds).toInt();
}

QStringList fieldNames(const Query &query)
{
    const QSqlRecord record = basDatabase::Execute(QStringLiteral("SELECT * FROM (%1) LIMIT 0").arg(query.sql), query.binds).record();
    QStringList names;
    for (int i = 0; i < record.count(); ++i)
        names << record.fieldName(i);
    return names;
}

Query sorted(const Query &query, const QString &field, bool ascending)
{
    Query result = query;
    result.sql = QStringLiteral("SELECT * FROM (%1)").arg(query.sql);
    if (field.isEmpty())
        return result;
    const QString c = SqlText::id(field);
    const QString key = QStringLiteral("CASE WHEN ") + c + QStringLiteral(" GLOB '[0-9][0-9]/[0-9][0-9]/[0-9][0-9][0-9][0-9]' THEN substr(")
        + c + QStringLiteral(", 7, 4) || substr(") + c + QStringLiteral(", 1, 2) || substr(") + c + QStringLiteral(", 4, 2) WHEN ") + c
        + QStringLiteral(" GLOB '[$(]*[0-9].[0-9][0-9]*' THEN CAST(replace(replace(replace(") + c
        + QStringLiteral(", '$', ''), ',', ''), '(', '-') AS REAL) ELSE ") + c + QStringLiteral(" END");
    result.sql += QStringLiteral(" ORDER BY ") + key + (ascending ? QStringLiteral(" ASC") : QStringLiteral(" DESC"));
    return result;
}

QList<QVariantList> page(const Query &query, int first, int rows)
{
    const QString sql = QStringLiteral("%1 LIMIT %2 OFFSET %3").arg(query.sql, QString::number(rows), QString::number(first));
    QSqlQuery q = basDatabase::Execute(sql, query.binds);
    const int n = q.record().count();
    QList<QVariantList> result;
    while (q.next()) {
        QVariantList values;
        values.reserve(n);
        for (int i = 0; i < n; ++i)
            values << q.value(i);
        result << values;
    }
    return result;
}

QList<qint64> keys(const Query &query)
{
    QSqlQuery q = basDatabase::Execute(query.sql, query.binds);
    QList<qint64> result;
    while (q.next())
        result << q.value(0).toLongLong();
    return result;
}

Query readable(const Query &query, const QStringList &fieldNames)
{
    if (fieldNames.isEmpty())
        return query;
    QStringList shown {SqlText::id(fieldNames.first())};
    for (const QString &name : fieldNames.mid(1))
        shown << readableValue(name) + QStringLiteral(" AS ") + SqlText::id(name);
    Query result = query;
    result.sql = QStringLiteral("SELECT %1 FROM (%2)").arg(shown.join(QStringLiteral(", ")), query.sql);
    return result;
}

}   // namespace QueryPages
