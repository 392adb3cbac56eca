#pragma once

#include "RecordScope.h"

#include <QDate>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <functional>

// A report as data: what it says, in the order it says it. Builders in core fill
// one from the database; the renderer turns any of them into pages, and the CSV
// writer into rows. Nothing here knows about pages or widgets.
namespace Report {

// The reports the Reports menu offers, by their command-line names.
enum class Name {
    ClientList,
    ClientDetail,
    FoodService,
    PaymentHistory,
    GroceryLog,
    GeographicSummary,
    Demographics,
    VolunteerList,
    VolunteerDetail,
    Agency   // the monthly figures food banks ask for
};

// Which parameter dialog a report asks through.
enum class Dialog { By, ByGrouped, ByDate, ByClientAndDate, Agency };

struct CatalogueEntry
{
    Name name;
    const char *cliName;   // "client-list"
    Dialog dialog;
    RecordScope::Kind kind;   // None for the dated statistical reports
    const char *itemWord;   // "Client", "Volunteer"; empty for none
    const char *caption;   // the preview window's caption
    const char *groupedCaption;   // the grouped variant's caption; null when not groupable
    const char *noRecordTitle;   // title of the "no current record" message; null for none
    const char *noRecordText;   // "No client has been selected."
};

const QList<CatalogueEntry> &catalogue();
const CatalogueEntry *find(Name name);
const CatalogueEntry *findByCliName(const QString &cliName);

// What the user chose in the parameter dialog (or on the command line).
struct Parameters
{
    Name name = Name::ClientList;
    int reportType = RecordScope::AllRecords;   // 0 all, 1 current recordset, 2 current record
    int groupBy = 0;   // 0 none, 1 city, anything else zip code
    QDate startDate;   // null for "All Dates" in the dated client reports
    QDate endDate;
    RecordScope::ActiveScope scope;   // the active form's statement and key
    QDate today;   // ages and the run date count from this day; null: the current date
    QString ageBrackets;   // the agency report's, as "0-17,18-59,60+"; empty: the organisation's
};

// One column of a table: its heading, its share of the line's width, its alignment.
struct Column
{
    QString heading;
    int weight = 1;
    Qt::Alignment alignment = Qt::AlignLeft;
};

// A piece of a report, drawn top to bottom in order.
struct Block
{
    enum Kind {
        Heading,   // lines of bold text: a group header ("City:" "Springfield") or a record's header
        Fields,   // label/value pairs laid out in `fieldColumns` columns
        Table,   // columns and rows; headings repeat when the table runs onto a new page
        Totals,   // label/value pairs right below a table or group, in bold
        Text,   // a plain paragraph
        Chart,   // a bar or pie chart of `chartItems`
        PageBreak
    };
    Kind kind = Text;
    int level = 0;   // headings: 0 a group, 1 a record within a group
    QStringList lines;   // Heading, Text
    QList<QPair<QString, QString>> fields;   // Fields, Totals
    int fieldColumns = 2;
    QList<Column> columns;   // Table
    QList<QStringList> rows;   // Table
    bool lastRowIsTotal = false;   // Table: the last row sums the others and prints in bold
    QString chartTitle;   // Chart
    QList<QPair<QString, qint64>> chartItems;   // Chart
    bool pie = false;   // Chart: a pie instead of bars
    bool keepWithNext = false;   // never left alone at the foot of a page
};

// The organisation header printed at the top of every page.
struct PageHeader
{
    QString organizationName;
    QString organizationAddress;   // street, CRLF, "City, ST Zip"
    QString logoPath;   // empty or missing: no logo
};

struct Document
{
    QString caption;   // the preview window's caption
    QString title;   // the report's title under the organisation header
    QString title2;   // "Grouped By City" and the like; may be empty
    QString dateCaption;   // "For Dates: ...", "All Dates", or empty
    PageHeader header;
    QDate runDate;   // printed in every page's footer
    QList<Block> blocks;
    bool landscape = false;   // wide tables: the pages lie on their side
    // What --csv writes, header row first: Section,Item,Value for the statistical
    // reports, the detail lines for the others.
    QList<QStringList> csvRows;
};

// Called now and then while a report is built or drawn: done of total steps.
// Returning false cancels the work.
using Progress = std::function<bool(qint64 done, qint64 total)>;

struct Result
{
    bool ok = false;
    bool cancelled = false;
    QString error;   // for the user: the database's reason, "SQL Error" text, bad dates
    QString errorTitle;   // the message box's title for error: "SQL Error", the report's name
    Document document;
};

// Builds the report the parameters ask for from the open database.
Result build(const Parameters &parameters, const Progress &progress = {});

}   // namespace Report
