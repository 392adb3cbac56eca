#include "ReportBuilders.h"

#include "Money.h"
#include "SqlText.h"
#include "basDatabase.h"
#include "basTendmark.h"

#include <QSqlError>

// The food service and payment histories: per client its records in a date range and their totals.
namespace Report::detail {
namespace {

// What sets the two histories apart.
struct History
{
    const char *table;   // FoodService, Payments
    const char *dateColumn;
    const char *keptBy;   // a client whose sum of this column in the range is 0 is left out
    const char *detail;   // the columns of one line, then the FROM part with its joins
    QList<Column> columns;
    QStringList totalLabels;
    bool money;   // the numbers are cents
};

const History &foodServices()
{
    static const History h {
        "FoodService",
        "FoodServiceDate",
        "NumberOfBags",
        "d.FoodServiceDate, ty.FoodServiceTypeDescription, d.NumberOfBags, d.Comments FROM FoodService d "
        "LEFT JOIN FoodServiceTypes ty ON ty.FoodServiceTypeID = d.FoodServiceTypeID",
        {{QStringLiteral("Date"), 2},
         {QStringLiteral("Type"), 4},
         {QStringLiteral("Bags"), 1, Qt::AlignRight},
         {QStringLiteral("Comments"), 6}},
        {QStringLiteral("Total Bags")},
        false,
    };
    return h;
}

const History &payments()
{
    // Nothing paid in the range leaves the client out, whatever was requested.
    static const History h {
        "Payments",
        "PaymentDate",
        "AmountPaid",
        "d.PaymentDate, ty.PaymentTypeDescription, d.AmountPaid, d.AmountRequested, d.Comments FROM Payments d "
        "LEFT JOIN PaymentTypes ty ON ty.PaymentTypeID = d.PaymentsTypeID",
        {{QStringLiteral("Date"), 2},
         {QStringLiteral("Type"), 3},
         {QStringLiteral("Amount Paid"), 2, Qt::AlignRight},
         {QStringLiteral("Amount Requested"), 2, Qt::AlignRight},
         {QStringLiteral("Comments"), 5}},
        {QStringLiteral("Total Paid"), QStringLiteral("Total Requested")},
        true,
    };
    return h;
}

bool history(Context &context, const History &h)
{
    const Parameters &p = context.parameters;
    RecordScope::Selection s;
    if (!scopeSelection(context, RecordScope::Kind::Client, QStringLiteral("c"), &s))
        return false;
    // No start date covers every record.
    const QString from = p.startDate.isNull() ? QStringLiteral("1900-01-01") : isoDate(p.startDate);
    const QString to = p.startDate.isNull() ? QStringLiteral("9999-12-31") : isoDate(p.endDate);
    const QString inRange = QStringLiteral("d.%1 BETWEEN ? AND ?").arg(QLatin1String(h.dateColumn));
    const QString where = (s.where.isEmpty() ? QStringLiteral(" WHERE ") : s.where + QStringLiteral(" AND "))
        + QStringLiteral("(SELECT SUM(d.%1) FROM %2 d WHERE d.ClientID = c.ClientID AND %3) <> 0")
              .arg(QLatin1String(h.keptBy), QLatin1String(h.table), inRange);
    const QVariantList binds = s.binds + QVariantList {from, to};
    const qint64 total = basDatabase::ScalarValue(QStringLiteral("SELECT COUNT(*) FROM Client c") + where, binds).toLongLong();
    QSqlQuery clients
        = basDatabase::Execute(QStringLiteral("SELECT c.ClientID, %1, %2, c.SocialSecurityNumber FROM Client c%3 "
                                              "ORDER BY c.LastNameKey, c.FirstNameKey, c.ClientID")
                                   .arg(SqlText::fullName(QStringLiteral("c")), SqlText::fullAddress(QStringLiteral("c")), where),
                               binds);
    QSqlQuery lines(basDatabase::Connection());
    lines.setForwardOnly(true);
    if (!lines.prepare(QStringLiteral("SELECT %1 WHERE d.ClientID = ? AND %2 ORDER BY d.%3, d.rowid")
                           .arg(QLatin1String(h.detail), inRange, QLatin1String(h.dateColumn))))
        return context.fail(lines.lastError().text());

    Document &d = context.document;
    QStringList csvHeader = {QStringLiteral("Name"), QStringLiteral("Address"), QStringLiteral("Social Security No.")};
    for (const Column &c : h.columns)
        csvHeader << c.heading;
    d.csvRows.append(csvHeader);
    const int numbers = int(h.totalLabels.size());
    qint64 done = 0;
    while (clients.next()) {
        const QStringList who = {text(clients.value(1)), text(clients.value(2)), basTendmark::FormatSSN(text(clients.value(3)))};
        Block heading;
        heading.kind = Block::Heading;
        heading.level = 1;
        heading.keepWithNext = true;
        heading.lines = who;
        d.blocks.append(heading);

        Block table;
        table.kind = Block::Table;
        table.columns = h.columns;
        QList<qint64> sums(numbers, 0);
        lines.bindValue(0, clients.value(0));
        lines.bindValue(1, from);
        lines.bindValue(2, to);
        if (!lines.exec())
            return context.fail(lines.lastError().text());
        while (lines.next()) {
            QStringList row = {shownDate(lines.value(0)), text(lines.value(1))};
            QStringList csv = who + row;
            for (int i = 0; i < numbers; ++i) {
                const QVariant v = lines.value(2 + i);
                sums[i] += v.toLongLong();
                row << (v.isNull() ? QString() : h.money ? Money::format(v.toLongLong()) : v.toString());
                csv << (v.isNull() ? QString() : h.money ? Money::plain(v.toLongLong()) : v.toString());
            }
            row << text(lines.value(2 + numbers));
            csv << row.last();
            table.rows.append(row);
            d.csvRows.append(csv);
        }
        d.blocks.append(table);
        Block totals;
        totals.kind = Block::Totals;
        for (int i = 0; i < numbers; ++i)
            totals.fields.append({h.totalLabels.at(i), h.money ? Money::format(sums.at(i)) : count(sums.at(i))});
        d.blocks.append(totals);
        if (++done % 100 == 0 && !context.step(done, total))
            return false;
    }
    return context.step(done, total);
}

}   // namespace

bool foodService(Context &context)
{
    return history(context, foodServices());
}

bool paymentHistory(Context &context)
{
    return history(context, payments());
}

}   // namespace Report::detail
