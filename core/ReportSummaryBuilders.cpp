#include "ReportBuilders.h"

#include "ReportSummaries.h"
#include "basDatabase.h"

// The grocery log, the geographic summary and the demographics report as documents.
namespace Report::detail {
namespace {

Block heading(const QString &line)
{
    Block b;
    b.kind = Block::Heading;
    b.keepWithNext = true;
    b.lines = {line};
    return b;
}

// Each breakdown as a heading, a table and a chart; the figures also as Section,Item,Value rows.
void addSummary(Document &d, const ReportSummaries::Summary &summary)
{
    d.csvRows.append({QStringLiteral("Section"), QStringLiteral("Item"), QStringLiteral("Value")});
    for (const ReportSummaries::Breakdown &b : summary.breakdowns) {
        d.blocks.append(heading(b.heading));
        if (b.items.isEmpty())
            continue;
        Block table;
        table.kind = Block::Table;
        table.columns = {{b.itemHeading, 4}, {QStringLiteral("Clients"), 1, Qt::AlignRight}};
        Block chart;
        chart.kind = Block::Chart;
        chart.chartTitle = b.heading;
        chart.pie = b.heading == QLatin1String("Gender Breakdown");
        for (const ReportSummaries::Item &item : b.items) {
            table.rows.append({item.description, count(item.clients)});
            chart.chartItems.append({item.description, item.clients});
            d.csvRows.append({b.heading, item.description, count(item.clients)});
        }
        d.blocks.append(table);
        d.blocks.append(chart);
    }
    Block total;
    total.kind = Block::Totals;
    total.fields = {{QStringLiteral("Total Clients"), count(summary.totalClients)}};
    d.blocks.append(total);
    d.csvRows.append({QStringLiteral("Total"), QString(), count(summary.totalClients)});
}

}   // namespace

bool geographicSummary(Context &context)
{
    const Parameters &p = context.parameters;
    if (!context.step(0, 1))
        return false;
    addSummary(context.document, ReportSummaries::geographic(p.startDate, p.endDate));
    return context.step(1, 1);
}

bool demographics(Context &context)
{
    const Parameters &p = context.parameters;
    if (!context.step(0, 1))
        return false;
    addSummary(context.document, ReportSummaries::demographics(p.startDate, p.endDate, context.today));
    return context.step(1, 1);
}

bool groceryLog(Context &context)
{
    const Parameters &p = context.parameters;
    const ReportSummaries::GroceryTotals t = ReportSummaries::groceryTotals(p.startDate, p.endDate, context.today);
    const Query lines = ReportSummaries::groceryLines(p.startDate, p.endDate, context.today);
    QSqlQuery q = basDatabase::Execute(lines.sql, lines.binds);

    // One group per service date: its services by age class, then the day's sums.
    Document &d = context.document;
    Block table;
    table.kind = Block::Table;
    table.columns = {{QStringLiteral("Client Name"), 5},
                     {QStringLiteral("Adult"), 1, Qt::AlignRight},
                     {QStringLiteral("Senior"), 1, Qt::AlignRight},
                     {QStringLiteral("Child"), 1, Qt::AlignRight},
                     {QStringLiteral("Total Bags"), 1, Qt::AlignRight}};
    QString date;
    qint64 sums[4] = {};
    // The day's sums close its table, each under its column.
    auto closeDay = [&] {
        if (date.isEmpty())
            return;
        table.rows.append({QStringLiteral("Total for ") + shownDate(date), count(sums[0]), count(sums[1]), count(sums[2]), count(sums[3])});
        table.lastRowIsTotal = true;
        d.blocks.append(table);
        table.rows.clear();
        std::fill(std::begin(sums), std::end(sums), 0);
    };
    qint64 done = 0;
    while (q.next()) {
        const QString day = q.value(0).toString();
        if (day != date) {
            closeDay();
            date = day;
            d.blocks.append(heading(QStringLiteral("Date: ") + shownDate(day)));
        }
        const QVariant age = q.value(2);
        const qint64 bags = q.value(3).toLongLong();
        const int a = age.toInt();
        const qint64 adult = !age.isNull() && a > 18 && a < 60 ? bags : 0;
        const qint64 senior = !age.isNull() && a > 59 ? bags : 0;
        const qint64 child = !age.isNull() && a < 18 ? bags : 0;
        sums[0] += adult;
        sums[1] += senior;
        sums[2] += child;
        sums[3] += bags;
        table.rows.append({text(q.value(1)), count(adult), count(senior), count(child), count(bags)});
        if (++done % 1000 == 0 && !context.step(done, t.services))
            return false;
    }
    closeDay();

    Block footer;
    footer.kind = Block::Totals;
    footer.fields
        = {{QStringLiteral("Total Services"), QStringLiteral("%1 (%2 individual clients)").arg(t.services).arg(t.individualClients)},
           {QStringLiteral("Adults"), count(t.adults)},
           {QStringLiteral("Seniors"), count(t.seniors)},
           {QStringLiteral("Children"), count(t.children)}};
    if (t.noBirthDate > 0)
        footer.fields.append({QStringLiteral("No Birth Date"), count(t.noBirthDate)});
    d.blocks.append(footer);

    const QString section = QStringLiteral("Totals");
    d.csvRows = {{QStringLiteral("Section"), QStringLiteral("Item"), QStringLiteral("Value")},
                 {section, QStringLiteral("Services"), count(t.services)},
                 {section, QStringLiteral("Individual clients"), count(t.individualClients)},
                 {section, QStringLiteral("Adults"), count(t.adults)},
                 {section, QStringLiteral("Seniors"), count(t.seniors)},
                 {section, QStringLiteral("Children"), count(t.children)},
                 {section, QStringLiteral("No birth date"), count(t.noBirthDate)}};
    return context.step(done, t.services);
}

}   // namespace Report::detail
