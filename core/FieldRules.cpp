#include "FieldRules.h"

#include "Money.h"
#include "basTendmark.h"

#include <QCoreApplication>
#include <QDate>
#include <QLocale>
#include <QRegularExpression>

namespace FieldRules {

namespace {

constexpr qint64 kLargestCount = 2147483647;
constexpr qint64 kLargestCents = 999999999999999;   // $9,999,999,999,999.99: exact in every program that reads the file

QString tr(const char *text)
{
    return QCoreApplication::translate("FieldRules", text);
}

QString grouped(qint64 n)
{
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(n);
}

bool isDigits(const QString &text)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]+$"));
    return digits.match(text).hasMatch();
}

// A number the column cannot hold: signed, fractional where it counts, too large.
QString numberProblem(const FieldInfo &field, const QVariant &value)
{
    if (basTendmark::IsNumberType(value)) {
        if (value.toDouble() < 0)
            return tr(" cannot be negative.");
        return {};
    }
    const QString text = value.toString().trimmed();
    if (text.contains(QLatin1Char('-')) || text.startsWith(QLatin1Char('(')))
        return tr(" cannot be negative.");
    if (field.type == FieldInfo::Type::Integer) {
        if (!isDigits(text))
            return tr(" must be a whole number.");
        bool ok = false;
        const qint64 n = text.toLongLong(&ok);
        if (!ok || n > kLargestCount)
            return tr(" cannot be more than %1.").arg(grouped(kLargestCount));
    } else if (field.type == FieldInfo::Type::Currency) {
        const qsizetype point = text.indexOf(QLatin1Char('.'));
        if (point >= 0 && text.size() - point - 1 > 2)
            return tr(" can have at most two decimals.");
        const auto cents = Money::parse(text);
        if (!cents || *cents > kLargestCents)
            return tr(" cannot be more than %1.").arg(Money::format(kLargestCents));
    }
    return {};
}

}   // namespace

QString clean(const QString &text, bool multiLine)
{
    const QString composed = text.normalized(QString::NormalizationForm_C);
    QString out;
    out.reserve(composed.size());
    for (qsizetype i = 0; i < composed.size(); ++i) {
        const QChar c = composed.at(i);
        const bool lineBreak
            = c == QLatin1Char('\n') || c == QLatin1Char('\r') || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
        if (lineBreak && c == QLatin1Char('\r') && i + 1 < composed.size() && composed.at(i + 1) == QLatin1Char('\n'))
            continue;   // CR LF is one break
        if (lineBreak)
            out += multiLine ? QLatin1Char('\n') : QLatin1Char(' ');
        else if (c == QLatin1Char('\t') && !multiLine)
            out += QLatin1Char(' ');
        else if (c.category() != QChar::Other_Control)
            out += c;
    }
    return multiLine ? out : out.trimmed();
}

qsizetype characterCount(const QString &text)
{
    qsizetype n = 0;
    for (QChar c : text)
        n += c.isLowSurrogate() ? 0 : 1;
    return n;
}

bool isPhoneColumn(const QString &column)
{
    return column.endsWith(QLatin1String("Phone"), Qt::CaseInsensitive) || column.compare(QLatin1String("Fax"), Qt::CaseInsensitive) == 0;
}

bool valueIsValid(const FieldInfo &field, const QVariant &value, QString &message)
{
    message.clear();
    const QString text = value.toString();
    if (field.isNumeric()) {
        if (!basTendmark::IsNumeric(value) && !Money::parse(text)) {   // "(20.00)" reads as a number, a negative one
            message = tr(" must be numeric.");
            return false;
        }
        message = numberProblem(field, value);
        if (!message.isEmpty())
            return false;
    } else if (field.type == FieldInfo::Type::Date) {
        if (!basTendmark::IsDate(value)) {
            message = tr(" is not a valid date.");
            return false;
        }
        const QDate date = value.typeId() == QMetaType::QDate ? value.toDate() : basTendmark::ParseDate(text);
        if (date.isValid() && date.year() < 1900) {
            message = tr(" must be 01/01/1900 or later.");
            return false;
        }
    } else if (field.type == FieldInfo::Type::Text) {
        const qsizetype length = characterCount(text);
        // The message names the column's size, the test the nine digits it stores.
        if (field.name == QLatin1String("SocialSecurityNumber")) {
            if (length != field.size - 2 || !isDigits(text)) {
                message = tr(" must be %1 characters.").arg(field.size);
                return false;
            }
        } else if (isPhoneColumn(field.name) && !text.isEmpty()) {
            const bool sevenAllowed = field.table.compare(QLatin1String("Organization"), Qt::CaseInsensitive) == 0;
            if (!isDigits(text) || (text.size() != 10 && !(sevenAllowed && text.size() == 7))) {
                message = sevenAllowed ? tr(" must have 7 or 10 digits.") : tr(" must have all ten digits, area code first.");
                return false;
            }
        } else if (field.size > 0 && length > field.size) {
            message = tr(" cannot exceed %1 characters.").arg(field.size);
            return false;
        }
    }
    if (field.required && !field.isKey && (value.isNull() || text.trimmed().isEmpty())) {
        message = tr(" cannot be empty.");
        return false;
    }
    return true;
}

}   // namespace FieldRules
