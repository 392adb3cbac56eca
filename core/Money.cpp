#include "Money.h"

#include <QRegularExpression>

namespace Money {

std::optional<qint64> parse(const QString &text)
{
    QString t = text.trimmed();
    bool negative = false;
    if (t.startsWith(QLatin1Char('(')) && t.endsWith(QLatin1Char(')'))) {
        negative = true;
        t = t.mid(1, t.size() - 2).trimmed();
    }
    if (t.startsWith(QLatin1Char('-'))) {
        negative = !negative;
        t = t.mid(1).trimmed();
    } else if (t.startsWith(QLatin1Char('+'))) {
        t = t.mid(1).trimmed();
    }
    if (t.startsWith(QLatin1Char('$')))
        t = t.mid(1).trimmed();
    if (t.startsWith(QLatin1Char('-')) && !negative) {
        negative = true;
        t = t.mid(1).trimmed();
    }
    static const QRegularExpression shape(QStringLiteral("^(\\d{1,3}(,\\d{3})+|\\d*)(\\.(\\d*))?$"));
    const auto m = shape.match(t);
    if (!m.hasMatch() || t.isEmpty() || t == QLatin1String("."))
        return std::nullopt;
    QString whole = m.captured(1);
    whole.remove(QLatin1Char(','));
    const QString fraction = m.captured(4);
    if (whole.size() > 15)
        return std::nullopt;
    qint64 cents = whole.toLongLong() * 100;
    const QString firstTwo = (fraction + QStringLiteral("00")).left(2);
    cents += firstTwo.toLongLong();
    // Round what lies beyond the cent, half to even.
    const QString rest = fraction.mid(2);
    if (!rest.isEmpty()) {
        const int first = rest.at(0).digitValue();
        const bool moreAfterHalf = rest.mid(1).contains(QRegularExpression(QStringLiteral("[1-9]")));
        if (first > 5 || (first == 5 && (moreAfterHalf || (cents % 2) == 1)))
            ++cents;
    }
    return negative ? -cents : cents;
}

QString plain(qint64 cents)
{
    const qint64 a = cents < 0 ? -cents : cents;
    return QStringLiteral("%1%2.%3").arg(cents < 0 ? QStringLiteral("-") : QString()).arg(a / 100).arg(a % 100, 2, 10, QLatin1Char('0'));
}

QString format(qint64 cents)
{
    const qint64 a = cents < 0 ? -cents : cents;
    QString whole = QString::number(a / 100);
    for (int i = whole.size() - 3; i > 0; i -= 3)
        whole.insert(i, QLatin1Char(','));
    const QString body = QStringLiteral("$%1.%2").arg(whole).arg(a % 100, 2, 10, QLatin1Char('0'));
    return cents < 0 ? QStringLiteral("(%1)").arg(body) : body;
}

qint64 wholeUnitsHalfEven(qint64 cents)
{
    const qint64 a = cents < 0 ? -cents : cents;
    qint64 whole = a / 100;
    const qint64 rest = a % 100;
    if (rest > 50 || (rest == 50 && whole % 2 == 1))
        ++whole;
    return cents < 0 ? -whole : whole;
}

}   // namespace Money
