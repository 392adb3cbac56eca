#include "SqlText.h"

namespace SqlText {
namespace {

QString escapeLike(QString text)
{
    text.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    text.replace(QLatin1Char('%'), QStringLiteral("\\%"));
    text.replace(QLatin1Char('_'), QStringLiteral("\\_"));
    return text;
}

QString col(const QString &prefix, const QString &name)
{
    return prefix.isEmpty() ? name : prefix + QLatin1Char('.') + name;
}

}   // namespace

QString id(const QString &name)
{
    QString n = name;
    n.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}

QString likeContains(const QString &text)
{
    return QLatin1Char('%') + escapeLike(text) + QLatin1Char('%');
}

QString likeStartsWith(const QString &text)
{
    return escapeLike(text) + QLatin1Char('%');
}

QString fullName(const QString &prefix)
{
    const QString last = col(prefix, QStringLiteral("LastName"));
    return QStringLiteral("IFNULL(%1,'') || CASE WHEN LENGTH(%1) > 0 THEN ', ' ELSE '' END || IFNULL(%2,'') || ' ' || IFNULL(%3,'')")
        .arg(last, col(prefix, QStringLiteral("FirstName")), col(prefix, QStringLiteral("MiddleInitial")));
}

QString fullAddress(const QString &prefix)
{
    const QString address = col(prefix, QStringLiteral("Address"));
    return QStringLiteral(
               "IFNULL(%1,'') || CASE WHEN LENGTH(%1) > 0 THEN ', ' ELSE '' END || IFNULL(%2,'') || ' ' || IFNULL(%3,'') || ' ' || IFNULL(%4,'')")
        .arg(address, col(prefix, QStringLiteral("City")), col(prefix, QStringLiteral("State")), col(prefix, QStringLiteral("ZipCode")));
}

QString ssn(const QString &c)
{
    return QStringLiteral("CASE WHEN LENGTH(%1) = 9 THEN substr(%1,1,3) || '-' || substr(%1,4,2) || '-' || substr(%1,6) ELSE %1 END")
        .arg(c);
}

QString phone(const QString &c)
{
    return QStringLiteral("CASE LENGTH(%1) WHEN 10 THEN '(' || substr(%1,1,3) || ') ' || substr(%1,4,3) || '-' || substr(%1,7) "
                          "WHEN 7 THEN '(   ) ' || substr(%1,1,3) || '-' || substr(%1,4) ELSE %1 END")
        .arg(c);
}

QString currency(const QString &c)
{
    // Built by concatenation: printf's "%02d" must not meet QString::arg.
    const QString pos
        = QStringLiteral("'$' || printf('%,d', ") + c + QStringLiteral(" / 100) || '.' || printf('%02d', ") + c + QStringLiteral(" % 100)");
    const QString neg = QStringLiteral("'($' || printf('%,d', (-") + c + QStringLiteral(") / 100) || '.' || printf('%02d', (-") + c
        + QStringLiteral(") % 100) || ')'");
    return QStringLiteral("CASE WHEN ") + c + QStringLiteral(" IS NULL THEN NULL WHEN ") + c + QStringLiteral(" < 0 THEN ") + neg
        + QStringLiteral(" ELSE ") + pos + QStringLiteral(" END");
}

QString date(const QString &c)
{
    return QStringLiteral("strftime('%m/%d/%Y', %1)").arg(c);
}

QString yearsSince(const QString &c)
{
    return QStringLiteral("(CAST(strftime('%Y','now','localtime') AS INTEGER) - CAST(strftime('%Y', %1) AS INTEGER))").arg(c);
}

}   // namespace SqlText
