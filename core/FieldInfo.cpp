#include "FieldInfo.h"

#include <QRegularExpression>

FieldInfo::Type FieldInfo::typeFromDeclaration(const QString &declared, int *size)
{
    const QString d = declared.trimmed().toUpper();
    if (size)
        *size = 0;
    static const QRegularExpression sized(QStringLiteral("^(VAR)?CHAR(ACTER)?\\s*\\(\\s*(\\d+)\\s*\\)"));
    const auto m = sized.match(d);
    if (m.hasMatch()) {
        if (size)
            *size = m.captured(3).toInt();
        return Type::Text;
    }
    if (d.startsWith(QLatin1String("INT")) || d == QLatin1String("BIGINT") || d == QLatin1String("SMALLINT"))
        return Type::Integer;
    if (d == QLatin1String("CURRENCY"))
        return Type::Currency;
    if (d == QLatin1String("DOUBLE") || d == QLatin1String("REAL") || d == QLatin1String("FLOAT") || d.startsWith(QLatin1String("NUMERIC")))
        return Type::Double;
    if (d == QLatin1String("DATE"))
        return Type::Date;
    if (d == QLatin1String("BOOLEAN"))
        return Type::Boolean;
    if (d == QLatin1String("TEXT") || d.startsWith(QLatin1String("VARCHAR")))
        return Type::Memo;
    return Type::Unknown;
}
