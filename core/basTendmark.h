#pragma once

#include <QDate>
#include <QString>
#include <QVariant>

// Text helpers shared by every form: phone and social security number display,
// dates as the user types and sees them, and the loose tests of what a value is.
namespace basTendmark {

QString StripPhoneNumber(const QString &text);
QString FormatPhone(const QString &digits);   // 10 digits "(555) 123-4567"; 7 digits "(   ) 123-4567"
QString FormatSSN(const QString &digits);   // 9 digits "123-45-6789"

QString FormatDate(const QDate &date);   // "mm/dd/yyyy"
QString FormatIsoDate(const QString &iso);   // stored "yyyy-MM-dd" shown as "mm/dd/yyyy"; "" stays ""
QDate ParseDate(const QString &text);   // "m/d/yyyy", "mm/dd/yyyy" or "yyyy-MM-dd"; invalid otherwise

bool IsNumberType(const QVariant &value);   // held as a number, not as text
bool IsNumeric(const QVariant &value);   // a number, or text that reads as one ("$1,234.50")
bool IsDate(const QVariant &value);

}   // namespace basTendmark
