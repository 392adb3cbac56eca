#include "FilterStatement.h"

#include "FilterFields.h"
#include "Money.h"

#include <QCoreApplication>
#include <QDate>
#include <QRegularExpression>

namespace FilterStatement {

namespace {

using FilterFields::Field;
using FilterFields::Type;

QString rowError(int row, const QString &text)
{
    return QCoreApplication::translate("FilterStatement", "Row %1: %2").arg(row + 1).arg(text);
}

// One value as the literal the statement holds; empty with *error set when it is not usable.
QString literal(const Field &field, const QString &typed, int row, QString *error)
{
    const QString value = typed.trimmed();
    const QString caption = QString::fromLatin1(field.caption);
    if (value.isEmpty()) {
        *error = rowError(row, QCoreApplication::translate("FilterStatement", "enter a value for %1.").arg(caption));
        return {};
    }
    switch (field.type) {
    case Type::Date: {
        const QDate date = QDate::fromString(value, QStringLiteral("MM/dd/yyyy"));
        if (!date.isValid())
            *error = rowError(row, QCoreApplication::translate("FilterStatement", "%1 is not a date; enter it as mm/dd/yyyy.").arg(value));
        return date.isValid() ? quoted(date.toString(Qt::ISODate)) : QString();
    }
    case Type::Currency: {
        const std::optional<qint64> cents = Money::parse(value);
        if (!cents)
            *error = rowError(row, QCoreApplication::translate("FilterStatement", "%1 is not an amount of money.").arg(value));
        return cents ? QString::number(*cents) : QString();
    }
    case Type::Number: {
        static const QRegularExpression number(QStringLiteral("^-?[0-9]{1,15}$"));
        if (!number.match(value).hasMatch())
            *error = rowError(row, QCoreApplication::translate("FilterStatement", "%1 is not a whole number.").arg(value));
        return number.match(value).hasMatch() ? QString::number(value.toLongLong()) : QString();
    }
    case Type::IDNumber:
        return field.lookupKey && QLatin1String(field.lookupKey).endsWith(QLatin1String("ID")) && value.toLongLong() > 0
            ? QString::number(value.toLongLong())
            : quoted(value);
    case Type::Text:
    case Type::Boolean:
        break;
    }
    return quoted(value);
}

// "is like" takes the wildcards people know from other programs: * and ?.
QString likePattern(const QString &value)
{
    QString pattern = value;
    return quoted(pattern.replace(QLatin1Char('*'), QLatin1Char('%')).replace(QLatin1Char('?'), QLatin1Char('_')));
}

const QList<std::pair<QString, QString>> &comparisons()
{
    static const QList<std::pair<QString, QString>> list = {
        {QStringLiteral("equal to"), QStringLiteral(" = ")},
        {QStringLiteral("less than or equal to"), QStringLiteral(" <= ")},
        {QStringLiteral("greater than or equal to"), QStringLiteral(" >= ")},
        {QStringLiteral("less than"), QStringLiteral(" < ")},
        {QStringLiteral("greater than"), QStringLiteral(" > ")},
    };
    return list;
}

QString negated(bool negate, const QString &expression)
{
    return negate ? QStringLiteral("NOT (") + expression + QLatin1Char(')') : expression;
}

// The expression for one criterion; empty with *error set when a value is missing or wrong.
QString expression(const Field &field, const Criterion &c, int row, QString *error)
{
    const QString column = field.qualified();
    const QString condition = c.condition;
    if (condition == QLatin1String("is empty") || condition == QLatin1String("is not empty")) {
        const QString test
            = field.type == Type::Text ? QStringLiteral("(%1 IS NULL OR %1 = '')").arg(column) : column + QStringLiteral(" IS NULL");
        return negated(condition == QLatin1String("is not empty"), test);
    }
    if (condition == QLatin1String("is True") || condition == QLatin1String("is False"))
        return column + (condition == QLatin1String("is True") ? QStringLiteral(" = 1") : QStringLiteral(" = 0"));
    if (!FilterFields::conditions(field.type).contains(condition)) {
        *error = rowError(
            row, QCoreApplication::translate("FilterStatement", "choose a condition for %1.").arg(QString::fromLatin1(field.caption)));
        return {};
    }
    const bool negate = condition.contains(QLatin1String(" not ")) || condition.startsWith(QLatin1String("does not"));
    const QString raw = c.value.trimmed();
    // Text is compared without regard to case, numbers kept as text as numbers.
    const QString compared = field.type == Type::Text ? column + QStringLiteral(" COLLATE NOCASE")
        : field.numberStoredAsText()                  ? QStringLiteral("CAST(%1 AS INTEGER)").arg(column)
                                                      : column;
    if (condition.contains(QLatin1String("contain"))) {
        if (raw.isEmpty())
            return literal(field, raw, row, error);
        return negated(negate, QStringLiteral("instr(lower(%1), lower(%2)) > 0").arg(column, quoted(raw)));
    }
    if (condition.contains(QLatin1String("begin"))) {
        if (raw.isEmpty())
            return literal(field, raw, row, error);
        // The database counts characters, not the UTF-16 units of a QString.
        const qsizetype characters = raw.toUcs4().size();
        return negated(negate, QStringLiteral("substr(%1, 1, %2) = %3 COLLATE NOCASE").arg(column).arg(characters).arg(quoted(raw)));
    }
    if (condition.endsWith(QLatin1String(" like"))) {
        if (raw.isEmpty())
            return literal(field, raw, row, error);
        return negated(negate, column + QStringLiteral(" LIKE ") + likePattern(raw));
    }
    const QString v = literal(field, c.value, row, error);
    if (v.isEmpty())
        return {};
    if (FilterFields::isRange(condition)) {
        if (c.value2.trimmed().isEmpty()) {
            *error = rowError(row, QCoreApplication::translate("FilterStatement", "enter the second value of \"%1\".").arg(condition));
            return {};
        }
        const QString w = literal(field, c.value2, row, error);
        if (w.isEmpty())
            return {};
        return negated(negate, compared + QStringLiteral(" BETWEEN ") + v + QStringLiteral(" AND ") + w);
    }
    for (const auto &[words, op] : comparisons())
        if (condition.endsWith(words))
            return negated(negate, compared + op + v);
    *error = rowError(row,
                      QCoreApplication::translate("FilterStatement", "choose a condition for %1.").arg(QString::fromLatin1(field.caption)));
    return {};
}

}   // namespace

QString quoted(const QString &text)
{
    QString doubled = text;
    return QLatin1Char('\'') + doubled.replace(QLatin1Char('\''), QStringLiteral("''")) + QLatin1Char('\'');
}

QString matching(const QString &tableName, const QString &statement)
{
    const QString key = tableName + QStringLiteral("ID");
    QString body = statement;
    while (!body.isEmpty() && (body.back().isSpace() || body.back() == u';'))
        body.chop(1);
    // The line break ends a comment the statement may close with.
    return QStringLiteral("SELECT * FROM ") + tableName + QStringLiteral(" WHERE ") + key + QStringLiteral(" IN (SELECT ") + key
        + QStringLiteral(" FROM (") + body + QStringLiteral("\n))");
}

Result build(const QString &tableName, const QList<Criterion> &criteria)
{
    Result r;
    QString where;
    QStringList joined;
    for (int row = 0; row < criteria.size(); ++row) {
        const Criterion &c = criteria.at(row);
        if (c.field.isEmpty())
            continue;
        const Field *field = FilterFields::find(tableName, c.field);
        if (!field) {
            r.error = rowError(row, QCoreApplication::translate("FilterStatement", "%1 is not a field of %2.").arg(c.field, tableName));
            r.row = row;
            return r;
        }
        const QString e = expression(*field, c, row, &r.error);
        if (e.isEmpty()) {
            r.row = row;
            return r;
        }
        if (!where.isEmpty())
            where += QLatin1Char(' ')
                + (c.conjunction.compare(QLatin1String("Or"), Qt::CaseInsensitive) == 0 ? QStringLiteral("OR") : QStringLiteral("AND"))
                + QLatin1Char(' ');
        where += QLatin1Char('(') + e + QLatin1Char(')');
        const QString table = QString::fromLatin1(field->table);
        if (table != tableName && !joined.contains(table))
            joined << table;
    }
    r.ok = true;
    if (where.isEmpty())
        return r;
    if (joined.isEmpty()) {
        r.sql = QStringLiteral("SELECT * FROM ") + tableName;
    } else {
        // Each join closes a parenthesis opened before the table, as the statement has always read.
        QStringList joins;
        for (const QString &table : joined)
            joins << QStringLiteral("INNER JOIN %1 ON %2.ClientID=%1.ClientID)").arg(table, tableName);
        r.sql = QStringLiteral("SELECT DISTINCT %1.* FROM %2%1 %3")
                    .arg(tableName, QString(joined.size(), QLatin1Char('(')), joins.join(QLatin1Char(' ')));
    }
    r.sql += QStringLiteral(" WHERE ") + where;
    return r;
}

}   // namespace FilterStatement
