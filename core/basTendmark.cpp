#include "basTendmark.h"

#include "Money.h"

#include <QRegularExpression>

namespace basTendmark {

QString StripPhoneNumber(const QString &text)
{
    QString out = text;
    out.remove(QLatin1Char('-')).remove(QLatin1Char(' ')).remove(QLatin1Char('(')).remove(QLatin1Char(')'));
    return out;
}

QString FormatPhone(const QString &digits)
{
    if (digits.size() == 10)
        return QStringLiteral("(%1) %2-%3").arg(digits.left(3), digits.mid(3, 3), digits.mid(6));
    if (digits.size() == 7)
        return QStringLiteral("(   ) %1-%2").arg(digits.left(3), digits.mid(3));
    return digits;
}

QString FormatSSN(const QString &digits)
{
    if (digits.size() == 9)
        return QStringLiteral("%1-%2-%3").arg(digits.left(3), digits.mid(3, 2), digits.mid(5));
    return digits;
}

QString FormatDate(const QDate &date)
{
    return date.isValid() ? date.toString(QStringLiteral("MM/dd/yyyy")) : QString();
}

QString FormatIsoDate(const QString &iso)
{
    return FormatDate(QDate::fromString(iso, Qt::ISODate));
}

QDate ParseDate(const QString &text)
{
    const QString t = text.trimmed();
    static const QRegularExpression us(QStringLiteral("^(\\d{1,2})/(\\d{1,2})/(\\d{4})$"));
    const auto m = us.match(t);
    if (m.hasMatch())
        return QDate(m.captured(3).toInt(), m.captured(1).toInt(), m.captured(2).toInt());
    static const QRegularExpression iso(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}$"));
    if (iso.match(t).hasMatch())
        return QDate::fromString(t, Qt::ISODate);
    return {};
}

bool IsNumberType(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

bool IsNumeric(const QVariant &value)
{
    if (!value.isValid() || value.isNull())
        return false;
    if (IsNumberType(value))
        return true;
    QString t = value.toString().trimmed();
    if (t.isEmpty())
        return false;
    static const QRegularExpression number(QStringLiteral("^[-+]?\\$?\\s*[-+]?(\\d{1,3}(,\\d{3})+|\\d+)?(\\.\\d*)?$"));
    return number.match(t).hasMatch() && t.contains(QRegularExpression(QStringLiteral("\\d")));
}

bool IsDate(const QVariant &value)
{
    if (value.typeId() == QMetaType::QDate)
        return value.toDate().isValid();
    if (value.typeId() == QMetaType::QDateTime)
        return value.toDateTime().isValid();
    return ParseDate(value.toString()).isValid();
}

}   // namespace basTendmark
