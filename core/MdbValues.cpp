#include "MdbConvert.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>

#include <cmath>

namespace MdbConvert {

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("MdbConvert", text);
}

}   // namespace

const QStringList &Tables()
{
    // Lookups and settings first, then clients, then what refers to them.
    static const QStringList tables = {
        QStringLiteral("States"),           QStringLiteral("Gender"),
        QStringLiteral("ZipCode"),          QStringLiteral("EducationLevel"),
        QStringLiteral("EthnicOrigin"),     QStringLiteral("ExpenseCategories"),
        QStringLiteral("FoodServiceTypes"), QStringLiteral("Housing"),
        QStringLiteral("IncomeSources"),    QStringLiteral("MaritalStatus"),
        QStringLiteral("OtherAssistance"),  QStringLiteral("PaymentTypes"),
        QStringLiteral("Relationships"),    QStringLiteral("ReligiousPreference"),
        QStringLiteral("Organization"),     QStringLiteral("Options"),
        QStringLiteral("LabelDetails"),     QStringLiteral("Client"),
        QStringLiteral("Family"),           QStringLiteral("FoodService"),
        QStringLiteral("Payments"),         QStringLiteral("Income"),
        QStringLiteral("Expenses"),         QStringLiteral("Volunteer"),
    };
    return tables;
}

std::optional<QDate> DateFromDays(double days, bool *hadTime)
{
    // The whole part counts days from 1899-12-30, also before it; the fraction is the time of day either way.
    const double whole = std::trunc(days);
    if (hadTime)
        *hadTime = std::isfinite(days) && days != whole;
    if (!std::isfinite(days) || whole == 0 || std::fabs(whole) > 3.0e6)
        return std::nullopt;
    return QDate(1899, 12, 30).addDays(qint64(whole));
}

qint64 CentsFromMoney(qint64 tenThousandths, bool *rounded)
{
    qint64 cents = tenThousandths / 100;
    const qint64 rest = tenThousandths % 100;   // same sign as the amount
    if (rounded)
        *rounded = rest != 0;
    const qint64 half = std::abs(rest) * 2;
    if (half > 100 || (half == 100 && cents % 2 != 0))
        cents += rest > 0 ? 1 : -1;
    return cents;
}

QString CutText(const QString &text, int length)
{
    if (text.size() <= length)
        return text;
    int end = length;
    if (end > 0 && text.at(end - 1).isHighSurrogate())
        --end;
    return text.left(end);
}

QString MoneyText(qint64 tenThousandths)
{
    const bool negative = tenThousandths < 0;
    const quint64 magnitude = negative ? quint64(0) - quint64(tenThousandths) : quint64(tenThousandths);
    QString fraction = QStringLiteral("%1").arg(magnitude % 10000, 4, 10, QLatin1Char('0'));
    while (fraction.size() > 2 && fraction.endsWith(u'0'))
        fraction.chop(1);
    return (negative ? QStringLiteral("-") : QString()) + QString::number(magnitude / 10000) + QLatin1Char('.') + fraction;
}

QStringList Describe(const Report &report, int maxChanges)
{
    QStringList lines;
    if (report.cancelled) {
        lines << tr("The conversion was cancelled; no file was written.");
        return lines;
    }
    if (!report.ok) {
        lines << report.error;
        return lines;
    }
    lines << tr("Rows read and written, by table:");
    qint64 read = 0;
    qint64 written = 0;
    for (const TableCount &t : report.tables) {
        QString line = tr("  %1: %2 read, %3 written").arg(t.table).arg(t.read).arg(t.written);
        if (!t.totals.isEmpty())
            line += QStringLiteral("; ") + t.totals.join(QStringLiteral(", "));
        lines << line;
        read += t.read;
        written += t.written;
    }
    lines << tr("  All tables: %1 read, %2 written").arg(read).arg(written);
    lines << tr("Checked: every table's row count and money and bag totals equal the Access file's, less the rows left out; "
                "the new file's integrity and references are sound.");
    for (const QString &note : report.notes)
        lines << note;
    if (report.changes.isEmpty()) {
        lines << tr("No value needed changing.");
    } else {
        lines << tr("Changes (%1):").arg(report.changes.size());
        const qsizetype shown = maxChanges < 0 ? report.changes.size() : qMin<qsizetype>(maxChanges, report.changes.size());
        for (qsizetype i = 0; i < shown; ++i)
            lines << QStringLiteral("  ") + report.changes.at(i);
        if (shown < report.changes.size())
            lines << tr("  ... and %1 more.").arg(report.changes.size() - shown);
    }
    return lines;
}

bool SaveReport(const QString &path, const QStringList &lines, QString *error)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write((lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8()) >= 0
        && file.commit())
        return true;
    *error = tr("%1 cannot be written: %2").arg(QDir::toNativeSeparators(path), file.errorString());
    return false;
}

}   // namespace MdbConvert
