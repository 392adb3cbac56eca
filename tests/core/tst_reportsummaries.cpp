#include "CsvWriter.h"
#include "ReportDocument.h"
#include "ReportFixture.h"
#include "basDatabase.h"

#include <QTest>

using Report::Block;
using Report::Name;
using namespace ReportFixture;

namespace {

Report::Result build(Name name, const QDate &start, const QDate &end, const QDate &today = kToday)
{
    Report::Parameters p;
    p.name = name;
    p.startDate = start;
    p.endDate = end;
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

// Each block as one line: its kind's letter and its text.
QStringList outline(const Report::Document &d)
{
    QStringList out;
    for (const Block &b : d.blocks) {
        switch (b.kind) {
        case Block::Heading:
            out << QStringLiteral("H ") + b.lines.join(QLatin1Char('/'));
            break;
        case Block::Table: {
            QStringList rows;
            for (const QStringList &row : b.rows)
                rows << row.join(QLatin1Char('|'));
            out << QStringLiteral("T ") + rows.join(QStringLiteral(" / "));
            break;
        }
        case Block::Chart:
            out << (b.pie ? QStringLiteral("pie ") : QStringLiteral("bars ")) + b.chartTitle;
            break;
        case Block::Totals: {
            QStringList pairs;
            for (const auto &f : b.fields)
                pairs << f.first + QLatin1Char('=') + f.second;
            out << QStringLiteral("S ") + pairs.join(QStringLiteral(", "));
            break;
        }
        default:
            out << QStringLiteral("?");
        }
    }
    return out;
}

}   // namespace

class TestReportSummaries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void figuresFollowTheServedSetAndCalendarAges_data()
    {
        QTest::addColumn<int>("name");
        QTest::addColumn<QDate>("start");
        QTest::addColumn<QDate>("today");
        QTest::addColumn<QString>("rows");
        // Zhang is served through a payment alone; Clark (food, no payment) never; Adams has no
        // city and Davis no zip code: both in the total only; "Dayton" and "dayton" are one city.
        QTest::newRow("geographic") << int(Name::GeographicSummary) << kStart << kToday
                                    << "Section,Item,Value\n"
                                       "Breakdown of Clients By City,Dayton,3\n"
                                       "Breakdown of Clients By City,Kettering,1\n"
                                       "Breakdown of Clients By Zip Code,45402,2\n"
                                       "Breakdown of Clients By Zip Code,45403,1\n"
                                       "Breakdown of Clients By Zip Code,45420,1\n"
                                       "Total,,5";
        // Brown has no ethnic origin: left out everywhere. Adams's gender X counts in the total only.
        // Zhang, born last December, is 1 in January; Adams has no birth date.
        QTest::newRow("demographics") << int(Name::Demographics) << kStart << kToday
                                      << "Section,Item,Value\n"
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
                                         "Total,,4";
        // Seen in the year of birth the age is 0: Unknown, listed last.
        QTest::newRow("demographics, born this year") << int(Name::Demographics) << kStart << QDate(2026, 12, 31)
                                                      << "Section,Item,Value\n"
                                                         "Ethnic Breakdown,African American,1\n"
                                                         "Ethnic Breakdown,Asian,1\n"
                                                         "Ethnic Breakdown,Hispanic or Latino,1\n"
                                                         "Ethnic Breakdown,White,1\n"
                                                         "Gender Breakdown,Female,2\n"
                                                         "Gender Breakdown,Male,1\n"
                                                         "Age Breakdown,45 - 64 Years,1\n"
                                                         "Age Breakdown,65+ Years,1\n"
                                                         "Age Breakdown,Unknown,2\n"
                                                         "Total,,4";
        // Five services with bags: Brown at exactly 18 is in no class; zero-bag visits are not counted.
        QTest::newRow("grocery log") << int(Name::GroceryLog) << kStart << kToday
                                     << "Section,Item,Value\n"
                                        "Totals,Services,5\n"
                                        "Totals,Individual clients,5\n"
                                        "Totals,Adults,1\n"
                                        "Totals,Seniors,1\n"
                                        "Totals,Children,1\n"
                                        "Totals,No birth date,1";
        QTest::newRow("grocery log, nothing served") << int(Name::GroceryLog) << QDate(2030, 1, 1) << kToday
                                                     << "Section,Item,Value\n"
                                                        "Totals,Services,0\n"
                                                        "Totals,Individual clients,0\n"
                                                        "Totals,Adults,0\n"
                                                        "Totals,Seniors,0\n"
                                                        "Totals,Children,0\n"
                                                        "Totals,No birth date,0";
    }

    void figuresFollowTheServedSetAndCalendarAges()
    {
        QFETCH(int, name);
        QFETCH(QDate, start);
        QFETCH(QDate, today);
        QFETCH(QString, rows);
        TestDatabase db;
        seed();
        const Report::Result r = build(Name(name), start, start.addMonths(1).addDays(-1), today);
        QVERIFY2(r.ok, qPrintable(r.error));
        QCOMPARE(csv(r.document), rows);
    }

    void documentsDrawEachBreakdown_data()
    {
        QTest::addColumn<int>("name");
        QTest::addColumn<QDate>("start");
        QTest::addColumn<QString>("dateCaption");
        QTest::addColumn<QStringList>("blocks");
        QTest::newRow("demographics") << int(Name::Demographics) << kStart << "For Dates: 01-Dec-26  To  31-Dec-26"
                                      << QStringList {
                                             "H Ethnic Breakdown",    "T African American|1 / Asian|1 / Hispanic or Latino|1 / White|1",
                                             "bars Ethnic Breakdown", "H Gender Breakdown",
                                             "T Female|2 / Male|1",   "pie Gender Breakdown",
                                             "H Age Breakdown",       "T Birth - 4 Years|1 / 45 - 64 Years|1 / 65+ Years|1 / Unknown|1",
                                             "bars Age Breakdown",    "S Total Clients=4"};
        // Nobody served: the headings that always print, and no zip code breakdown.
        QTest::newRow("geographic, empty") << int(Name::GeographicSummary) << QDate(2030, 1, 1) << "For Dates: 01-Jan-30  To  31-Jan-30"
                                           << QStringList {"H Breakdown of Clients By City", "S Total Clients=0"};
        QTest::newRow("demographics, empty") << int(Name::Demographics) << QDate(2030, 1, 1) << "For Dates: 01-Jan-30  To  31-Jan-30"
                                             << QStringList {"H Ethnic Breakdown", "S Total Clients=0"};
        QTest::newRow("grocery log") << int(Name::GroceryLog) << kStart << "For Dates: 01-Dec-26 To 31-Dec-26"
                                     << QStringList {"H Date: 12/05/2026",
                                                     "T O'Brien, Seán|2|0|0|2 / Adams, Ann|0|0|0|3 / Total for 12/05/2026|2|0|0|5",
                                                     "H Date: 12/07/2026",
                                                     "T Brown, Bob \"Bo\"|0|0|0|4 / Total for 12/07/2026|0|0|0|4",
                                                     "H Date: 12/09/2026",
                                                     "T Clark, Cy|0|0|1|1 / Davis, Di|0|2|0|2 / Total for 12/09/2026|0|2|1|3",
                                                     "S Total Services=5 (5 individual clients), Adults=1, Seniors=1, Children=1, "
                                                     "No Birth Date=1"};
    }

    void documentsDrawEachBreakdown()
    {
        QFETCH(int, name);
        QFETCH(QDate, start);
        QFETCH(QString, dateCaption);
        QFETCH(QStringList, blocks);
        TestDatabase db;
        seed();
        const Report::Result r = build(Name(name), start, start.addMonths(1).addDays(-1));
        QVERIFY2(r.ok, qPrintable(r.error));
        QCOMPARE(r.document.dateCaption, dateCaption);
        QCOMPARE(outline(r.document), blocks);
    }

    void noBirthDateLineOnlyWhenThereIsOne()
    {
        TestDatabase db;
        const Ids ids = seed();
        basDatabase::Execute("UPDATE Client SET BirthDate = '1980-01-01' WHERE ClientID = ?", {ids.adams});
        const Report::Result r = build(Name::GroceryLog, kStart, kEnd);
        QVERIFY(!outline(r.document).last().contains("No Birth Date"));
        QVERIFY(csv(r.document).endsWith("Totals,No birth date,0"));
    }
};

QTEST_GUILESS_MAIN(TestReportSummaries)
#include "tst_reportsummaries.moc"
