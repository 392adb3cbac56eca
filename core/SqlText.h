#pragma once

#include <QString>

// SQL pieces that every query shares, in the database's dialect. Each takes a
// column expression and returns an expression, so that queries stay readable.
namespace SqlText {

QString id(const QString &name);   // a quoted identifier
QString likeContains(const QString &text);   // pattern for "LIKE ? ESCAPE '\'": anywhere
QString likeStartsWith(const QString &text);   // pattern: from the start
QString fullName(const QString &prefix = {});   // "Last, First M"
QString fullAddress(const QString &prefix = {});   // "Street, City ST Zip"
QString ssn(const QString &column);   // 9 digits as 3-2-4
QString phone(const QString &column);   // 10 digits as (555) 123-4567
QString currency(const QString &column);   // cents as $1,234.50
QString date(const QString &column);   // ISO as mm/dd/yyyy
QString yearsSince(const QString &column);   // difference of calendar years to today

}   // namespace SqlText
