#include "AgencyFigures.h"
#include "ReportBuilders.h"

#include <QLocale>

#include <functional>

// The agency report: a period's visits, households, individuals by age and bags, in one
// column, or month by month with the whole period's total beside.
namespace Report::detail {
namespace {

using AgencyFigures::Figures;

constexpr int kMonthsPerTable = 12;

struct Line
{
    QString item;
    std::function<qint64(const Figures &)> value;
};

struct Section
{
    QString heading;
    QList<Line> lines;
    bool lastIsTotal = false;
};

// A column of figures: its heading, its Month in the CSV, and the figures it shows.
struct Period
{
    QString heading;
    QString month;
    const Figures *figures;
};

QList<Line> byAge(const QList<AgeBrackets::Bracket> &brackets, QList<qint64> Figures::*ages, qint64 Figures::*total)
{
    QList<Line> lines;
    for (int i = 0; i < brackets.size(); ++i)
        lines.append(
            {QStringLiteral("Ages ") + AgeBrackets::label(brackets.at(i)), [ages, i](const Figures &f) { return (f.*ages).at(i); }});
    const int unknown = int(brackets.size());
    lines.append({QStringLiteral("Age unknown"), [ages, unknown](const Figures &f) { return (f.*ages).at(unknown); }});
    lines.append({QStringLiteral("Total individuals"), [total](const Figures &f) { return f.*total; }});
    return lines;
}

QList<Section> sections(const QList<AgeBrackets::Bracket> &brackets, const QStringList &types)
{
    QList<Line> bags;
    for (const QString &type : types)
        bags.append(
            {type.isEmpty() ? QStringLiteral("No type given") : type, [type](const Figures &f) { return f.bagsByType.value(type); }});
    bags.append({QStringLiteral("Total bags"), [](const Figures &f) { return f.bags; }});
    return {
        {QStringLiteral("Households"),
         {{QStringLiteral("Distribution days"), [](const Figures &f) { return f.distributionDays; }},
          {QStringLiteral("Households, unduplicated"), [](const Figures &f) { return f.households; }},
          {QStringLiteral("Household visits, duplicated"), [](const Figures &f) { return f.visits; }},
          {QStringLiteral("New households"), [](const Figures &f) { return f.newHouseholds; }},
          {QStringLiteral("With members under 18"), [](const Figures &f) { return f.withMinors; }},
          {QStringLiteral("Without members under 18"), [](const Figures &f) { return f.withoutMinors; }}}},
        {QStringLiteral("Individuals, Unduplicated"), byAge(brackets, &Figures::byAge, &Figures::individuals), true},
        {QStringLiteral("Individuals, Duplicated"), byAge(brackets, &Figures::byAgeVisits, &Figures::individualVisits), true},
        {QStringLiteral("Bags Given"), bags, true},
    };
}

Block heading(const QString &text)
{
    Block b;
    b.kind = Block::Heading;
    b.keepWithNext = true;
    b.lines = {text};
    return b;
}

QStringList definitions(bool byMonth)
{
    QStringList lines = {
        QStringLiteral("A visit is a food service of at least one bag. Distribution days are the dates with at least one visit."),
        QStringLiteral("Households are the clients with a visit in the period: unduplicated counts each household once, duplicated "
                       "counts every visit. A new household is one whose first visit ever falls in the period."),
        QStringLiteral("Individuals are the client and the family members on record, counted once each (unduplicated) or at every "
                       "visit of their household (duplicated)."),
        QStringLiteral("Age is in completed years on the visit date; for unduplicated counts and for households with members under 18, "
                       "on the household's first visit in the period. A missing birth date, or one after the visit, is an unknown age."),
    };
    if (byMonth)
        lines << QStringLiteral("Each month counts its own visits. The Total column counts the whole period, so its unduplicated "
                                "figures can be less than the sum of the months.");
    lines << QStringLiteral("The report reads the records as they are today: clients deleted since are not counted, and the family "
                            "members are those on record now.");
    return lines;
}

void addBornAfterVisit(Document &d, const QList<AgencyFigures::BornAfterVisit> &people, bool byMonth)
{
    if (people.isEmpty())
        return;
    d.blocks.append(heading(QStringLiteral("Born After the Visit")));
    Block note;
    note.kind = Block::Text;
    note.lines = {QStringLiteral("These people were born after their household's first visit in the period: they are counted as of "
                                 "unknown age at the visits before their birth.")};
    d.blocks.append(note);
    Block table;
    table.kind = Block::Table;
    table.columns = {{QStringLiteral("Name"), 3},
                     {QStringLiteral("Household"), 3},
                     {QStringLiteral("Birth Date"), 1},
                     {QStringLiteral("First Visit"), 1}};
    for (const AgencyFigures::BornAfterVisit &p : people) {
        const QString born = shownDate(isoDate(p.birthDate));
        table.rows.append({p.name, p.household, born, shownDate(isoDate(p.firstVisit))});
        const QString who = p.household.isEmpty() ? p.name : QStringLiteral("%1 (household of %2)").arg(p.name, p.household);
        d.csvRows.append(byMonth ? QStringList {QStringLiteral("Born after the visit"), who, QString(), born}
                                 : QStringList {QStringLiteral("Born after the visit"), who, born});
    }
    d.blocks.append(table);
}

}   // namespace

bool agency(Context &context)
{
    const Parameters &p = context.parameters;
    QList<AgeBrackets::Bracket> brackets;
    QString error;
    if (p.ageBrackets.isEmpty())
        brackets = AgeBrackets::stored();
    else if (!AgeBrackets::parse(p.ageBrackets, &brackets, &error))
        return context.fail(error);
    if (!context.step(0, 1))
        return false;
    const bool byMonth = p.startDate.year() != p.endDate.year() || p.startDate.month() != p.endDate.month();
    const AgencyFigures::Period figures = AgencyFigures::compute(p.startDate, p.endDate, brackets, byMonth);

    Document &d = context.document;
    d.landscape = byMonth;
    QList<QList<Period>> tables;
    if (byMonth) {
        d.title2 = QStringLiteral("Month by Month");
        for (int i = 0; i < figures.months.size(); ++i) {
            if (i % kMonthsPerTable == 0)
                tables.append(QList<Period>());
            const auto &[month, f] = figures.months.at(i);
            // The month over its year: every month heading takes two lines alike.
            tables.last().append({QLocale::c().toString(month, QStringLiteral("MMM")) + QLatin1Char('\n') + QString::number(month.year()),
                                  month.toString(QStringLiteral("yyyy-MM")), &f});
        }
        tables.last().append({QStringLiteral("Total"), QStringLiteral("Total"), &figures.total});
        d.csvRows.append({QStringLiteral("Section"), QStringLiteral("Item"), QStringLiteral("Month"), QStringLiteral("Value")});
    } else {
        tables.append({{QStringLiteral("Count"), QString(), &figures.total}});
        d.csvRows.append({QStringLiteral("Section"), QStringLiteral("Item"), QStringLiteral("Value")});
    }

    for (const Section &section : sections(brackets, figures.total.bagsByType.keys())) {
        d.blocks.append(heading(section.heading));
        for (const QList<Period> &periods : tables) {
            Block table;
            table.kind = Block::Table;
            table.columns = {{QStringLiteral("Item"), byMonth ? 3 : 4}};
            for (const Period &period : periods)
                table.columns.append({period.heading, 1, Qt::AlignRight});
            for (const Line &line : section.lines) {
                QStringList row = {line.item};
                for (const Period &period : periods)
                    row << count(line.value(*period.figures));
                table.rows.append(row);
            }
            table.lastRowIsTotal = section.lastIsTotal;
            d.blocks.append(table);
        }
        for (const Line &line : section.lines) {
            for (const QList<Period> &periods : tables)
                for (const Period &period : periods)
                    d.csvRows.append(byMonth ? QStringList {section.heading, line.item, period.month, count(line.value(*period.figures))}
                                             : QStringList {section.heading, line.item, count(line.value(*period.figures))});
        }
    }
    if (byMonth) {
        Block chart;
        chart.kind = Block::Chart;
        chart.chartTitle = QStringLiteral("Households per Month");
        for (const auto &[month, f] : figures.months)
            chart.chartItems.append({QLocale::c().toString(month, QStringLiteral("MMM yyyy")), f.households});
        d.blocks.append(chart);
    }
    addBornAfterVisit(d, figures.bornAfterVisit, byMonth);
    d.blocks.append(heading(QStringLiteral("Definitions")));
    Block notes;
    notes.kind = Block::Text;
    notes.lines = definitions(byMonth);
    d.blocks.append(notes);
    return context.step(1, 1);
}

}   // namespace Report::detail
