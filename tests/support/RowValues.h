#pragma once

#include <QString>
#include <QVariantMap>

// A row's values written as "Column=value;Column=value", for tests that set up many columns at once.
// A value may hold '=' but not ';'.
inline QVariantMap rowValues(const QString &spec)
{
    QVariantMap values;
    for (const QString &pair : spec.split(QLatin1Char(';'), Qt::SkipEmptyParts))
        values.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    return values;
}
