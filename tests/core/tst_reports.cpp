#include "CsvWriter.h"
#include "ReportDocument.h"
#include "ReportFixture.h"
#include "basDatabase.h"

#include <QTest>

using Report::Block;
using Report::Name;
using namespace ReportFixture;

namespace {

Report::Parameters parameters(Name name, int reportType = 0, const QString &sql = {}, const QString &key = {})
{
    Report::Parameters p;
    p.name = name;
    p.reportType = reportType;
    const bool volunteers = name == Name::VolunteerList || name == Name::VolunteerDetail;
    p.scope = {volunteers ? RecordScope::Kind::Volunteer : RecordScope::Kind::Client, sql, key};
    p.today = kToday;
    return p;
}

// A block's text: its lines, its rows with cells joined by '|', its fields as label=value.
QStringList textOf(const Block &b)
{
    QStringList out = b.lines;
    for (const QStringList &row : b.rows)
        out << row.join(QLatin1Char('|'));
    for (const auto &f : b.fields)
        out << f.first + QLatin1Char('=') + f.second;
    return out;
}

// The text of every block of a kind.
QStringList texts(const Report::Document &d, Block::Kind kind)
{
    QStringList out;
    for (const Block &b : d.blocks)
        if (b.kind == kind)
            out += textOf(b);
    return out;
}

// A dated report over the month that starts on `start`.
Report::Result monthOf(Name name, const QDate &start, const QDate &today = kToday)
{
    Report::Parameters p = parameters(name);
    p.startDate = start;
    p.endDate = start.addMonths(1).addDays(-1);
    p.today = today;
    return Report::build(p);
}

QString csv(const Report::Document &d)
{
    QStringList lines;
    for (const QStringList &row : d.csvRows)
        lines << CsvWriter::line(row);
    return lines.join(QLatin1Char('\n'));
}

// Each block as one line: its kind's letter and its text (a chart's kind and title).
QStringList outline(const Report::Document &d)
{
    QStringList out;
    for (const Block &b : d.blocks) {
        if (b.kind == Block::Chart)
            out << (b.pie ? QStringLiteral("pie ") : QStringLiteral("bars ")) + b.chartTitle;
        else
            out << QString(QStringLiteral("HFTSXCP").at(b.kind)) + QLatin1Char(' ') + textOf(b).join(QStringLiteral(" / "));
    }
    return out;
}

}   // namespace

// Each report built from the small pantry of the fixture, seen from 15 January 2027.
class TestReports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsPickSortAndGroupTheirRecords_data()
    {
        QTest::addColumn<int>("reportType");
        QTest::addColumn<int>("groupBy");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("title2");
        QTest::addColumn<QStringList>("headings");
        QTest::addColumn<QStringList>("names");
        const QStringList all
            = {"Adams, Ann", "Brown, Bob \"Bo\"", "Clark, Cy", "Davis, Di", "Evans, Eve", "O'Brien, Seán", "Zhang 张, Wei"};
        const QStringList zips = {"Zip Code: ", "Zip Code: 45402", "Zip Code: 45403", "Zip Code: 45420"};
        const QStringList byZip
            = {"Davis, Di", "Adams, Ann", "Clark, Cy", "Evans, Eve", "O'Brien, Seán", "Brown, Bob \"Bo\"", "Zhang 张, Wei"};
        const auto row = [](const char *tag, int type, int group, const char *sql, const char *title2, const QStringList &headings,
                            const QStringList &names) {
            QTest::newRow(tag) << type << group << QString::fromUtf8(sql) << QString::fromUtf8(title2) << headings << names;
        };
        row("all", 0, 0, "", "", {}, all);
        // The list's own filter and order give way to the last name.
        row("current recordset", 1, 0, "SELECT * FROM Client WHERE City = 'Dayton' ORDER BY ClientID DESC", "", {},
            {"Clark, Cy", "Davis, Di", "Evans, Eve", "O'Brien, Seán"});
        // "Dayton" and "dayton" share one group, headed by the first client's spelling.
        row("by city", 0, 1, "", "Grouped By City", {"City: ", "City: dayton", "City: Kettering"}, all);
        // Within a zip code, by last name; any other grouping is by zip code too.
        row("by zip", 0, 2, "", "Grouped By Zip Code", zips, byZip);
        row("any other group is by zip", 0, 7, "", "Grouped By Zip Code", zips, byZip);
    }

    void listsPickSortAndGroupTheirRecords()
    {
        QFETCH(int, reportType);
        QFETCH(int, groupBy);
        QFETCH(QString, sql);
        QFETCH(QString, title2);
        QFETCH(QStringList, headings);
        QFETCH(QStringList, names);
        TestDatabase db;
        seed();
        Report::Parameters p = parameters(Name::ClientList, reportType, sql);
        p.groupBy = groupBy;
        const Report::Result r = Report::build(p);
        QVERIFY2(r.ok, qPrintable(r.error));
        QCOMPARE(r.document.caption, QStringLiteral("TendMark - Client List"));
        QCOMPARE(r.document.title2, title2);
        QStringList printed;
        for (const QString &row : texts(r.document, Block::Table))
            printed << row.section(QLatin1Char('|'), 0, 0);
        QCOMPARE(printed, names);
        QCOMPARE(texts(r.document, Block::Heading), headings);
        QCOMPARE(r.document.csvRows.size(), qsizetype(names.size() + 1));
    }

    // The current client's list line, detail fields and family, under the organization's header.
    void currentClientReportsShowStoredValues()
    {
        TestDatabase db;
        const Ids ids = seed();
        basDatabase::Execute("UPDATE Organization SET OrganizationName = 'Pantry', OrganizationAddress = '9 Elm St', "
                             "OrganizationCity = 'Dayton', OrganizationState = 'OH', OrganizationZip = '45402'");
        Report::Result r = Report::build(parameters(Name::ClientList, 2, {}, QString::number(ids.obrien)));
        QVERIFY2(r.ok, qPrintable(r.error));
        QCOMPARE(texts(r.document, Block::Table), QStringList {"O'Brien, Seán|1 Main St, Dayton OH 45402|123-45-6789|(937) 555-0100"});
        QCOMPARE(r.document.header.organizationName, QStringLiteral("Pantry"));
        QCOMPARE(r.document.header.organizationAddress, QStringLiteral("9 Elm St\r\nDayton, OH 45402"));
        QCOMPARE(r.document.runDate, kToday);
        QCOMPARE(r.document.title, QStringLiteral("Client List"));

        r = Report::build(parameters(Name::ClientDetail, 2, {}, QString::number(ids.obrien)));
        QVERIFY2(r.ok, qPrintable(r.error));
        const QStringList fields = texts(r.document, Block::Fields);
        for (const char *expected : {"Ethnic Origin=White", "FEMA Contacted=Yes", "FEMA Eligible=No", "Birth Date=06/01/1970",
                                     "Social Security Number=123-45-6789", "Home Phone=(937) 555-0100", "Marital Status="})
            QVERIFY2(fields.contains(QString::fromUtf8(expected)), expected);
        QVERIFY(!fields.join(' ').contains("EthnicOriginID"));
        // Born in December, reported in January: one calendar year.
        QCOMPARE(texts(r.document, Block::Table), QStringList {"O'Brien, Niamh|Daughter|||1|F"});
        QCOMPARE(texts(r.document, Block::Heading), QStringList {"O'Brien, Seán"});

        // Without a state the comma goes too.
        basDatabase::Execute("UPDATE Organization SET OrganizationState = NULL");
        QCOMPARE(Report::build(parameters(Name::ClientList)).document.header.organizationAddress,
                 QStringLiteral("9 Elm St\r\nDayton 45402"));
    }

    void datedReportsFollowTheServedSetAndCalendarAges_data()
    {
        QTest::addColumn<int>("name");
        QTest::addColumn<QDate>("start");
        QTest::addColumn<QDate>("today");
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("rows");   // the CSV, when given
        QTest::addColumn<QStringList>("blocks");   // the date caption and the outline, or its last lines, when given
        QTest::addColumn<QString>("only");   // the outline's kinds of blocks compared, by letter; empty: all
        const QDate y2030(2030, 1, 1);
        const auto row = [](const char *tag, Name name, const QDate &start, const QDate &today, const char *setup, const QString &rows,
                            const QStringList &blocks, const char *only = "") {
            QTest::newRow(tag) << int(name) << start << today << QString::fromLatin1(setup) << rows << blocks << QString::fromLatin1(only);
        };
        // The histories print only the clients with something in range, each with its totals. Zhang's payment in
        // range paid nothing: left out although something was requested. No start date: all dates.
        const QString adams = "H Adams, Ann / 45402 / ", brown = "H Brown, Bob \"Bo\" / dayton  45403 / ",
                      davis = "H Davis, Di / Dayton / ", obrien = "H O'Brien, Seán / 1 Main St, Dayton OH 45402 / 123-45-6789";
        row("food, December", Name::FoodService, kStart, kToday, "", "",
            {"For Dates: 01-Dec-26  To  31-Dec-26", adams, "S Total Bags=3", brown, "S Total Bags=4", "H Clark, Cy / Dayton  45402 / ",
             "S Total Bags=1", davis, "S Total Bags=2", obrien, "S Total Bags=2"},
            "HS");
        row("food, all dates", Name::FoodService, {}, kToday, "", "",
            {"All Dates", "S Total Bags=3", "S Total Bags=4", "S Total Bags=1", "S Total Bags=2", "S Total Bags=2", "S Total Bags=1"}, "S");
        row("payments, December", Name::PaymentHistory, kStart, kToday, "", "",
            {"For Dates: 01-Dec-26  To  31-Dec-26", brown, "S Total Paid=$1.00 / Total Requested=$1.00", davis,
             "S Total Paid=$25.00 / Total Requested=$25.00", obrien, "S Total Paid=$50.00 / Total Requested=$60.00"},
            "HS");
        // Zhang is served through a payment alone; Clark (food, no payment) never; Adams has no
        // city and Davis no zip code: both in the total only; "Dayton" and "dayton" are one city.
        row("geographic", Name::GeographicSummary, kStart, kToday, "",
            "Section,Item,Value\n"
            "Breakdown of Clients By City,Dayton,3\n"
            "Breakdown of Clients By City,Kettering,1\n"
            "Breakdown of Clients By Zip Code,45402,2\n"
            "Breakdown of Clients By Zip Code,45403,1\n"
            "Breakdown of Clients By Zip Code,45420,1\n"
            "Total,,5",
            {});
        // Nobody served: the headings that always print, and no zip code breakdown.
        row("geographic, empty", Name::GeographicSummary, y2030, kToday, "", "Section,Item,Value\nTotal,,0",
            {"For Dates: 01-Jan-30  To  31-Jan-30", "H Breakdown of Clients By City", "S Total Clients=0"});
        // Brown has no ethnic origin: left out everywhere. Adams's gender X counts in the total only.
        // Zhang, born last December, is 1 in January; Adams has no birth date.
        row("demographics", Name::Demographics, kStart, kToday, "",
            "Section,Item,Value\n"
            "Ethnic Breakdown,African American,1\n"
            "Ethnic Breakdown,Asian,1\n"
            "Ethnic Breakdown,Hispanic or Latino,1\n"
            "Ethnic Breakdown,White,1\n"
            "Gender Breakdown,Female,2\n"
            "Gender Breakdown,Male,1\n"
            "Age Breakdown,Birth - 4 Years,1\n"
            "Age Breakdown,45 - 64 Years,1\n"
            "Age Breakdown,65+ Years,1\n"
            "Age Breakdown,Unknown,1\n"
            "Total,,4",
            {"For Dates: 01-Dec-26  To  31-Dec-26", "H Ethnic Breakdown", "T African American|1 / Asian|1 / Hispanic or Latino|1 / White|1",
             "bars Ethnic Breakdown", "H Gender Breakdown", "T Female|2 / Male|1", "pie Gender Breakdown", "H Age Breakdown",
             "T Birth - 4 Years|1 / 45 - 64 Years|1 / 65+ Years|1 / Unknown|1", "bars Age Breakdown", "S Total Clients=4"});
        // Seen in the year of birth the age is 0: Unknown, listed last.
        row("demographics, born this year", Name::Demographics, kStart, QDate(2026, 12, 31), "", "",
            {"T 45 - 64 Years|1 / 65+ Years|1 / Unknown|2", "bars Age Breakdown", "S Total Clients=4"});
        row("demographics, empty", Name::Demographics, y2030, kToday, "", "Section,Item,Value\nTotal,,0",
            {"For Dates: 01-Jan-30  To  31-Jan-30", "H Ethnic Breakdown", "S Total Clients=0"});
        // Five services with bags: Brown at exactly 18 is in no class; zero-bag visits are not counted.
        row("grocery log", Name::GroceryLog, kStart, kToday, "",
            "Section,Item,Value\n"
            "Totals,Services,5\n"
            "Totals,Individual clients,5\n"
            "Totals,Adults,1\n"
            "Totals,Seniors,1\n"
            "Totals,Children,1\n"
            "Totals,No birth date,1",
            {"For Dates: 01-Dec-26 To 31-Dec-26", "H Date: 12/05/2026",
             "T O'Brien, Seán|2|0|0|2 / Adams, Ann|0|0|0|3 / Total for 12/05/2026|2|0|0|5", "H Date: 12/07/2026",
             "T Brown, Bob \"Bo\"|0|0|0|4 / Total for 12/07/2026|0|0|0|4", "H Date: 12/09/2026",
             "T Clark, Cy|0|0|1|1 / Davis, Di|0|2|0|2 / Total for 12/09/2026|0|2|1|3",
             "S Total Services=5 (5 individual clients) / Adults=1 / Seniors=1 / Children=1 / No Birth Date=1"});
        // The no-birth-date line prints only when there is one.
        row("grocery log, every birth date known", Name::GroceryLog, kStart, kToday,
            "UPDATE Client SET BirthDate = '1980-01-01' WHERE LastName = 'Adams'", "",
            {"S Total Services=5 (5 individual clients) / Adults=2 / Seniors=1 / Children=1"});
        row("grocery log, nothing served", Name::GroceryLog, y2030, kToday, "", "",
            {"S Total Services=0 (0 individual clients) / Adults=0 / Seniors=0 / Children=0"});
    }

    void datedReportsFollowTheServedSetAndCalendarAges()
    {
        QFETCH(int, name);
        QFETCH(QDate, start);
        QFETCH(QDate, today);
        QFETCH(QString, setup);
        QFETCH(QString, rows);
        QFETCH(QStringList, blocks);
        QFETCH(QString, only);
        TestDatabase db;
        seed();
        if (!setup.isEmpty())
            basDatabase::Execute(setup);
        const Report::Result r = start.isValid() ? monthOf(Name(name), start, today) : Report::build(parameters(Name(name)));
        QVERIFY2(r.ok, qPrintable(r.error));
        if (!rows.isEmpty())
            QCOMPARE(csv(r.document), rows);
        QStringList shown = {r.document.dateCaption};
        for (const QString &line : outline(r.document))
            if (only.isEmpty() || only.contains(line.front()))
                shown << line;
        if (!blocks.isEmpty())
            QCOMPARE(shown.mid(shown.size() - blocks.size()), blocks);
    }

    void badRequestsFailWithAClearMessage_data()
    {
        QTest::addColumn<int>("name");
        QTest::addColumn<int>("reportType");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("title");
        const auto row = [](const char *tag, Name name, int type, const char *sql, const char *key, const char *error, const char *title) {
            QTest::newRow(tag) << int(name) << type << QString::fromLatin1(sql) << QString::fromLatin1(key) << QString::fromLatin1(error)
                               << QString::fromLatin1(title);
        };
        row("sql writes", Name::ClientList, 1, "DELETE FROM Client", "",
            "Error in SQL syntax:\nnot authorized\nCorrect syntax and try again.", "SQL Error");
        row("no current client", Name::ClientDetail, 2, "", "", "No client has been selected.", "Client Detail Report");
        row("no current volunteer", Name::VolunteerDetail, 2, "", "", "No Volunteer has been selected.", "Volunteer Detail Report");
        row("unknown client", Name::ClientList, 2, "", "999", "There is no client with ID 999.", "Client List Report");
    }

    void badRequestsFailWithAClearMessage()
    {
        QFETCH(int, name);
        QFETCH(int, reportType);
        QFETCH(QString, sql);
        QFETCH(QString, key);
        QFETCH(QString, error);
        QFETCH(QString, title);
        TestDatabase db;
        seed();
        basDatabase::CloseConnection();
        const QByteArray before = TestDatabase::fileHash(db.path());
        QVERIFY(basDatabase::OpenConnection(db.path()));
        const Report::Result r = Report::build(parameters(Name(name), reportType, sql, key));
        QVERIFY(!r.ok);
        QVERIFY(!r.cancelled);
        QCOMPARE(r.error, error);
        QCOMPARE(r.errorTitle, title);
        basDatabase::CloseConnection();
        QCOMPARE(TestDatabase::fileHash(db.path()), before);
    }

    void startAfterEndAndCancelStopTheBuild()
    {
        TestDatabase db;
        seed();
        Report::Parameters p = parameters(Name::GroceryLog);
        p.startDate = kEnd;
        p.endDate = kStart;
        int calls = 0;
        Report::Result r = Report::build(p, [&](qint64, qint64) { return ++calls, true; });
        QVERIFY(!r.ok);
        QCOMPARE(r.error, QStringLiteral("The start date 12/31/2026 is after the end date 12/01/2026."));
        QCOMPARE(calls, 0);

        r = Report::build(parameters(Name::ClientDetail), [](qint64, qint64) { return false; });
        QVERIFY(!r.ok);
        QVERIFY(r.cancelled);
        QVERIFY(r.document.blocks.isEmpty());
    }

    void emptyDatabaseGivesEmptyReports()
    {
        TestDatabase db;
        for (const Report::CatalogueEntry &e : Report::catalogue()) {
            const Report::Result r = monthOf(e.name, kStart);
            QVERIFY2(r.ok, e.cliName);
            QCOMPARE(r.document.caption, QString::fromUtf8(e.caption));
            QVERIFY2(!r.document.csvRows.isEmpty(), e.cliName);   // at least the header row
        }
    }
};

QTEST_GUILESS_MAIN(TestReports)
#include "tst_reports.moc"
