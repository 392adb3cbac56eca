#include "AgeBrackets.h"

#include "OptionsStore.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace AgeBrackets {
namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("AgeBrackets", text);
}

QString ages(int from, int to)
{
    return from == to ? tr("Age %1 is in no bracket.").arg(from) : tr("Ages %1 to %2 are in no bracket.").arg(from).arg(to);
}

}   // namespace

QStringList presets()
{
    return {QStringLiteral("0-17,18-59,60+"), QStringLiteral("0-17,18-64,65+")};
}

bool parse(const QString &text, QList<Bracket> *brackets, QString *error)
{
    static const QRegularExpression closed(QStringLiteral("^(\\d{1,3})\\s*-\\s*(\\d{1,3})$"));
    static const QRegularExpression open(QStringLiteral("^(\\d{1,3})\\s*\\+$"));
    const QStringList pieces = text.split(QLatin1Char(','));
    if (text.trimmed().isEmpty()) {
        *error = tr("Give the age brackets, such as 0-17,18-59,60+.");
        return false;
    }
    if (pieces.size() > kMaxBrackets) {
        *error = tr("There can be at most %1 age brackets.").arg(kMaxBrackets);
        return false;
    }
    QList<Bracket> read;
    for (const QString &raw : pieces) {
        const QString piece = raw.trimmed();
        Bracket b;
        if (const QRegularExpressionMatch m = closed.match(piece); m.hasMatch()) {
            b = {m.captured(1).toInt(), m.captured(2).toInt()};
            if (b.high < b.low) {
                *error = tr("The bracket %1 ends before it starts.").arg(piece);
                return false;
            }
        } else if (const QRegularExpressionMatch o = open.match(piece); o.hasMatch()) {
            b = {o.captured(1).toInt(), -1};
        } else {
            *error = tr("\"%1\" is not an age bracket: write each one as 0-17, or as 60+ for the last.").arg(piece);
            return false;
        }
        if (b.low > kTopAge || b.high > kTopAge) {
            *error = tr("The bracket %1 goes beyond age %2.").arg(piece).arg(kTopAge);
            return false;
        }
        if (read.isEmpty() && b.low != 0) {
            *error = ages(0, b.low - 1);
            return false;
        }
        if (!read.isEmpty()) {
            const Bracket &before = read.constLast();
            if (before.high < 0 || b.low <= before.high) {
                *error = tr("The brackets %1 and %2 overlap.").arg(label(before), piece);
                return false;
            }
            if (b.low > before.high + 1) {
                *error = ages(before.high + 1, b.low - 1);
                return false;
            }
        }
        read << b;
    }
    Bracket &last = read.last();
    if (last.high >= 0 && last.high < kTopAge) {
        *error = ages(last.high + 1, kTopAge);
        return false;
    }
    last.high = -1;   // reaching the top age, the last bracket takes in anyone older too
    *brackets = read;
    return true;
}

QString label(const Bracket &bracket)
{
    return bracket.high < 0 ? QStringLiteral("%1+").arg(bracket.low) : QStringLiteral("%1-%2").arg(bracket.low).arg(bracket.high);
}

QString text(const QList<Bracket> &brackets)
{
    QStringList labels;
    for (const Bracket &b : brackets)
        labels << label(b);
    return labels.join(QLatin1Char(','));
}

QList<Bracket> stored()
{
    QList<Bracket> brackets;
    QString error;
    if (!parse(OptionsStore::readOptions().ageBrackets, &brackets, &error))
        parse(presets().constFirst(), &brackets, &error);
    return brackets;
}

}   // namespace AgeBrackets
