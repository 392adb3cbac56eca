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

// The text of every block of a kind, one entry per line, row or field.
QStringList texts(const Report::Document &d, Block::Kind kind)
{
    QStringList out;
    for (const Block &b : d.blocks) {
        if (b.kind != kind)
            continue;
        out += b.lines;
        for (const QStringList &row : b.rows)
            out << row.join(QLatin1Char('|'));
        for (const auto &f : b.fields)
            out << f.first + QLatin1Char('=') + f.second;
    }
    return out;
}

}   // namespace

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
        QTest::newRow("all") << 0 << 0 << ""
                             << "" << QStringList() << all;
        // The list's own filter and order give way to the last name.
        QTest::newRow("current recordset") << 1 << 0 << "SELECT * FROM Client WHERE City = 'Dayton' ORDER BY ClientID DESC"
                                           << "" << QStringList() << QStringList {"Clark, Cy", "Davis, Di", "Evans, Eve", "O'Brien, Seán"};
        // "Dayton" and "dayton" share one group, headed by the first client's spelling.
        QTest::newRow("by city") << 0 << 1 << ""
                                 << "Grouped By City" << QStringList {"City: ", "City: dayton", "City: Kettering"} << all;
        // Within a zip code, by last name; any other grouping is by zip code too.
        const QStringList zips = {"Zip Code: ", "Zip Code: 45402", "Zip Code: 45403", "Zip Code: 45420"};
        const QStringList byZip
            = {"Davis, Di", "Adams, Ann", "Clark, Cy", "Evans, Eve", "O'Brien, Seán", "Brown, Bob \"Bo\"", "Zhang 张, Wei"};
        QTest::newRow("by zip") << 0 << 2 << ""
                                << "Grouped By Zip Code" << zips << byZip;
        QTest::newRow("any other group is by zip") << 0 << 7 << ""
                                                   << "Grouped By Zip Code" << zips << byZip;
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

    void listRowsAndHeaderShowStoredValues()
    {
        TestDatabase db;
        const Ids ids = seed();
        basDatabase::Execute("UPDATE Organization SET OrganizationName = 'Pantry', OrganizationAddress = '9 Elm St', "
                             "OrganizationCity = 'Dayton', OrganizationState = 'OH', OrganizationZip = '45402'");
        const Report::Result r = Report::build(parameters(Name::ClientList, 2, {}, QString::number(ids.obrien)));
        QVERIFY2(r.ok, qPrintable(r.error));
        QCOMPARE(texts(r.document, Block::Table), QStringList {"O'Brien, Seán|1 Main St, Dayton OH 45402|123-45-6789|(937) 555-0100"});
        QCOMPARE(r.document.header.organizationName, QStringLiteral("Pantry"));
        QCOMPARE(r.document.header.organizationAddress, QStringLiteral("9 Elm St\r\nDayton, OH 45402"));
        QCOMPARE(r.document.runDate, kToday);
        QCOMPARE(r.document.title, QStringLiteral("Client List"));

        // Without a state the comma goes too.
        basDatabase::Execute("UPDATE Organization SET OrganizationState = NULL");
        QCOMPARE(Report::build(parameters(Name::ClientList)).document.header.organizationAddress,
                 QStringLiteral("9 Elm St\r\nDayton 45402"));
    }

    void clientDetailPrintsFieldsDescriptionsAndFamily()
    {
        TestDatabase db;
        const Ids ids = seed();
        const Report::Result r = Report::build(parameters(Name::ClientDetail, 2, {}, QString::number(ids.obrien)));
        QVERIFY2(r.ok, qPrintable(r.error));
        const QStringList fields = texts(r.document, Block::Fields);
        for (const char *expected : {"Ethnic Origin=White", "FEMA Contacted=Yes", "FEMA Eligible=No", "Birth Date=06/01/1970",
                                     "Social Security Number=123-45-6789", "Home Phone=(937) 555-0100", "Marital Status="})
            QVERIFY2(fields.contains(QString::fromUtf8(expected)), expected);
        QVERIFY(!fields.join(' ').contains("EthnicOriginID"));
        // Born in December, reported in January: one calendar year.
        QCOMPARE(texts(r.document, Block::Table), QStringList {"O'Brien, Niamh|Daughter|||1|F"});
        QCOMPARE(texts(r.document, Block::Heading), QStringList {"O'Brien, Seán"});
    }

    void datedHistoriesLeaveOutClientsWithNothingInRange_data()
    {
        QTest::addColumn<int>("name");
        QTest::addColumn<bool>("allDates");
        QTest::addColumn<QString>("dateCaption");
        QTest::addColumn<QStringList>("totals");
        QTest::addColumn<int>("clients");
        QTest::newRow("food, December") << int(Name::FoodService) << false << "For Dates: 01-Dec-26  To  31-Dec-26"
                                        << QStringList {"Total Bags=3", "Total Bags=4", "Total Bags=1", "Total Bags=2", "Total Bags=2"}
                                        << 5;
        QTest::newRow("food, all dates") << int(Name::FoodService) << true << "All Dates"
                                         << QStringList {"Total Bags=3", "Total Bags=4", "Total Bags=1",
                                                         "Total Bags=2", "Total Bags=2", "Total Bags=1"}
                                         << 6;
        // Zhang's payment in range paid nothing: left out although something was requested.
        QTest::newRow("payments, December") << int(Name::PaymentHistory) << false << "For Dates: 01-Dec-26  To  31-Dec-26"
                                            << QStringList {"Total Paid=$1.00",       "Total Requested=$1.00", "Total Paid=$25.00",
                                                            "Total Requested=$25.00", "Total Paid=$50.00",     "Total Requested=$60.00"}
                                            << 3;
    }

    void datedHistoriesLeaveOutClientsWithNothingInRange()
    {
        QFETCH(int, name);
        QFETCH(bool, allDates);
        QFETCH(QString, dateCaption);
        QFETCH(QStringList, totals);
        QFETCH(int, clients);
        TestDatabase db;
        seed();
        Report::Parameters p = parameters(Name(name));
        if (!allDates) {
            p.startDate = kStart;
            p.endDate = kEnd;
        }
        const Report::Result r = Report::build(p);
        QVERIFY2(r.ok, qPrintable(r.error));
        QCOMPARE(r.document.dateCaption, dateCaption);
        QCOMPARE(texts(r.document, Block::Totals), totals);
        int headings = 0;
        for (const Block &b : r.document.blocks)
            headings += b.kind == Block::Heading;
        QCOMPARE(headings, clients);
    }

    void badRequestsFailWithAClearMessage_data()
    {
        QTest::addColumn<int>("name");
        QTest::addColumn<int>("reportType");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("title");
        QTest::newRow("sql writes") << int(Name::ClientList) << 1 << "DELETE FROM Client"
                                    << ""
                                    << "Error in SQL syntax:\nnot authorized\nCorrect syntax and try again."
                                    << "SQL Error";
        QTest::newRow("no current client") << int(Name::ClientDetail) << 2 << ""
                                           << ""
                                           << "No client has been selected."
                                           << "Client Detail Report";
        QTest::newRow("no current volunteer") << int(Name::VolunteerDetail) << 2 << ""
                                              << ""
                                              << "No Volunteer has been selected."
                                              << "Volunteer Detail Report";
        QTest::newRow("unknown client") << int(Name::ClientList) << 2 << ""
                                        << "999"
                                        << "There is no client with ID 999."
                                        << "Client List Report";
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
            Report::Parameters p = parameters(e.name);
            p.startDate = kStart;
            p.endDate = kEnd;
            const Report::Result r = Report::build(p);
            QVERIFY2(r.ok, e.cliName);
            QCOMPARE(r.document.caption, QString::fromUtf8(e.caption));
            QVERIFY2(!r.document.csvRows.isEmpty(), e.cliName);   // at least the header row
        }
    }
};

QTEST_GUILESS_MAIN(TestReports)
#include "tst_reports.moc"
