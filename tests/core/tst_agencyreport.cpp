#include "AgencyFigures.h"
#include "CsvWriter.h"
#include "ReportDocument.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QTest>

using AgencyFigures::Figures;

namespace {

qint64 household(const char *last, const char *birthDate)
{
    return TestDatabase::insert(QStringLiteral("Client"), {{"LastName", last}, {"FirstName", "Pat"}, {"BirthDate", birthDate}});
}

void member(qint64 client, const char *first, const char *birthDate)
{
    TestDatabase::insert(QStringLiteral("Family"),
                         {{"ClientID", client}, {"LastName", "Kin"}, {"FirstName", first}, {"BirthDate", birthDate}});
}

void visit(qint64 client, const char *date, int bags, const char *type = "Regular grocery visit")
{
    TestDatabase::insert(QStringLiteral("FoodService"),
                         {{"ClientID", client},
                          {"FoodServiceDate", date},
                          {"NumberOfBags", bags},
                          {"FoodServiceTypeID", TestDatabase::lookupId("FoodServiceTypes", type)}});
}

// Four households on the edges of the rules, January to March 2026.
void seed()
{
    // Able: visits twice in March, first came in 2025; one member turns 18 between the
    // visits, one has no birth date.
    const qint64 able = household("Able", "1980-05-10");
    member(able, "Turns 18", "2008-03-20");
    member(able, "No date", nullptr);
    visit(able, "2025-11-10", 1);
    visit(able, "2026-03-05", 2);
    visit(able, "2026-03-25", 1, "Emergency food box");
    // Baker: new in March (an empty service before does not count), a senior in both
    // presets, a baby born between the two visits.
    const qint64 baker = household("Baker", "1960-01-15");
    member(baker, "Baby", "2026-03-15");
    visit(baker, "2026-02-01", 0);
    visit(baker, "2026-03-05", 3);
    visit(baker, "2026-03-20", 1);
    // Clark: 61, new in February; a service without bags in March is no visit.
    const qint64 clark = household("Clark", "1964-06-01");
    visit(clark, "2026-02-10", 2);
    visit(clark, "2026-03-12", 0);
    // Dunn: no birth date, with a 62-year-old (60+ in one preset, 18-64 in the other)
    // and a child; first came in January, again in March.
    const qint64 dunn = household("Dunn", nullptr);
    member(dunn, "Sixty-two", "1963-07-01");
    member(dunn, "Child", "2015-01-01");
    visit(dunn, "2026-01-15", 1);
    visit(dunn, "2026-03-28", 2, "Senior box");
}

QList<AgeBrackets::Bracket> brackets(const QString &text)
{
    QList<AgeBrackets::Bracket> read;
    QString error;
    if (!AgeBrackets::parse(text, &read, &error))
        qFatal("%s", qPrintable(error));
    return read;
}

QString join(const QList<qint64> &values)
{
    QStringList texts;
    for (qint64 v : values)
        texts << QString::number(v);
    return texts.join(QLatin1Char('/'));
}

// Every figure on one line, so that a table row states them all.
QString summary(const Figures &f)
{
    QStringList bags;
    for (auto it = f.bagsByType.cbegin(); it != f.bagsByType.cend(); ++it)
        bags << QStringLiteral("%1=%2").arg(it.key()).arg(it.value());
    return QStringLiteral("days %1, households %2, visits %3, new %4, people %5, person-visits %6, ages %7, age-visits %8, "
                          "minors %9/%10, bags %11 (%12)")
        .arg(f.distributionDays)
        .arg(f.households)
        .arg(f.visits)
        .arg(f.newHouseholds)
        .arg(f.individuals)
        .arg(f.individualVisits)
        .arg(join(f.byAge), join(f.byAgeVisits))
        .arg(f.withMinors)
        .arg(f.withoutMinors)
        .arg(f.bags)
        .arg(bags.join(QStringLiteral(", ")));
}

const QString kMarch
    = QStringLiteral("days 4, households 3, visits 5, new 1, people 8, person-visits 13, ages 2/1/2/3, age-visits 3/3/3/4, "
                     "minors 2/1, bags 9 (Emergency food box=1, Regular grocery visit=6, Senior box=2)");

}   // namespace

class TestAgencyReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Ages list the brackets in order, then the unknown ages.
    void figuresFollowTheRules_data()
    {
        QTest::addColumn<QDate>("start");
        QTest::addColumn<QDate>("end");
        QTest::addColumn<QString>("brackets");
        QTest::addColumn<int>("month");   // -1: the whole range
        QTest::addColumn<QString>("expected");
        const QDate march1(2026, 3, 1), march31(2026, 3, 31), january1(2026, 1, 1);
        const QString youngOld = AgeBrackets::presets().at(0), olderSeniors = AgeBrackets::presets().at(1);
        // Able and Baker come twice and count once; the two visits of 03/05 make one day. Baker's
        // baby is of unknown age at the first visit and 0 at the second; Able's member is 17
        // at the first and 18 at the second.
        QTest::newRow("March, 0-17/18-59/60+") << march1 << march31 << youngOld << -1 << kMarch;
        QTest::newRow("March, 0-17/18-64/65+") << march1 << march31 << olderSeniors << -1
                                               << QString(kMarch).replace(QStringLiteral("ages 2/1/2/3, age-visits 3/3/3/4"),
                                                                          QStringLiteral("ages 2/2/1/3, age-visits 3/4/2/4"));
        QTest::newRow("one bracket for all") << march1 << march31 << "0+" << -1
                                             << QString(kMarch).replace(QStringLiteral("ages 2/1/2/3, age-visits 3/3/3/4"),
                                                                        QStringLiteral("ages 5/3, age-visits 9/4"));
        // Dunn comes in January and March: once in the total. Ages on each household's first visit of the range.
        QTest::newRow("January to March") << january1 << march31 << youngOld << -1
                                          << "days 6, households 4, visits 7, new 3, people 9, person-visits 17, ages 2/1/3/3, "
                                             "age-visits 4/3/5/5, minors 2/2, bags 12 (Emergency food box=1, Regular grocery visit=9, "
                                             "Senior box=2)";
        QTest::newRow("January of three") << january1 << march31 << youngOld << 0
                                          << "days 1, households 1, visits 1, new 1, people 3, person-visits 3, ages 1/0/1/1, "
                                             "age-visits 1/0/1/1, minors 1/0, bags 1 (Regular grocery visit=1)";
        QTest::newRow("February of three") << january1 << march31 << youngOld << 1
                                           << "days 1, households 1, visits 1, new 1, people 1, person-visits 1, ages 0/0/1/0, "
                                              "age-visits 0/0/1/0, minors 0/1, bags 2 (Regular grocery visit=2)";
        QTest::newRow("March of three") << january1 << march31 << youngOld << 2 << kMarch;
        // From the middle of March: Able's and Baker's first visits are gone, and so are the ages they gave.
        QTest::newRow("from the 20th") << QDate(2026, 3, 20) << march31 << youngOld << -1
                                       << "days 3, households 3, visits 3, new 0, people 8, person-visits 8, ages 2/2/2/2, "
                                          "age-visits 2/2/2/2, minors 2/1, bags 4 (Emergency food box=1, Regular grocery visit=1, "
                                          "Senior box=2)";
        QTest::newRow("before the first visit") << QDate(2025, 6, 1) << QDate(2025, 6, 30) << youngOld << -1
                                                << "days 0, households 0, visits 0, new 0, people 0, person-visits 0, ages 0/0/0/0, "
                                                   "age-visits 0/0/0/0, minors 0/0, bags 0 ()";
    }

    void figuresFollowTheRules()
    {
        QFETCH(QDate, start);
        QFETCH(QDate, end);
        QFETCH(QString, brackets);
        QFETCH(int, month);
        QFETCH(QString, expected);
        TestDatabase db;
        seed();
        const AgencyFigures::Period period = AgencyFigures::compute(start, end, ::brackets(brackets), month >= 0);
        QCOMPARE(summary(month < 0 ? period.total : period.months.at(month).second), expected);
        if (month >= 0)
            QCOMPARE(period.months.at(month).first, start.addMonths(month));
    }

    void bracketsAreReadOrRefused_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");   // the brackets as stored, or the message
        const auto row = [](const char *tag, const char *text, const char *result) { QTest::newRow(tag) << text << result; };
        row("preset", "0-17,18-59,60+", "0-17,18-59,60+");
        row("blanks", " 0 - 17 , 18-64, 65 +", "0-17,18-64,65+");
        row("to 120 is open", "0-17,18-120", "0-17,18+");
        row("empty", " ", "Give the age brackets, such as 0-17,18-59,60+.");
        row("not from 0", "1-17,18+", "Age 0 is in no bracket.");
        row("gap", "0-17,20+", "Ages 18 to 19 are in no bracket.");
        row("overlap", "0-17,17-59,60+", "The brackets 0-17 and 17-59 overlap.");
        row("open in the middle", "0-17,18+,60+", "The brackets 18+ and 60+ overlap.");
        row("short of 120", "0-17,18-59", "Ages 60 to 120 are in no bracket.");
        row("backwards", "0-17,59-18", "The bracket 59-18 ends before it starts.");
        row("beyond 120", "0-130", "The bracket 0-130 goes beyond age 120.");
        row("words", "0-17,adults", "\"adults\" is not an age bracket: write each one as 0-17, or as 60+ for the last.");
        row("too many", "0-9,10-19,20-29,30-39,40-49,50-59,60-69,70-79,80-89,90-99,100-109,110-115,116+",
            "There can be at most 12 age brackets.");
    }

    void bracketsAreReadOrRefused()
    {
        QFETCH(QString, text);
        QFETCH(QString, result);
        QList<AgeBrackets::Bracket> read;
        QString error;
        const bool ok = AgeBrackets::parse(text, &read, &error);
        QCOMPARE(ok ? AgeBrackets::text(read) : error, result);
    }

    // The document: one Count column for a month, month columns and a Total beside for a longer
    // range, in the PDF and the CSV alike; the baby born after a visit is named.
    void documentSaysWhatTheFiguresAre_data()
    {
        QTest::addColumn<QDate>("start");
        QTest::addColumn<QStringList>("headings");
        QTest::addColumn<QStringList>("csv");   // the header and some rows
        QTest::addColumn<bool>("chart");
        QTest::newRow("one month") << QDate(2026, 3, 1) << QStringList {"Item", "Count"}
                                   << QStringList {"Section,Item,Value", "Households,\"Households, unduplicated\",3",
                                                   "\"Individuals, Duplicated\",Ages 60+,3", "Bags Given,Total bags,9",
                                                   "Born after the visit,\"Kin, Baby (household of Baker, Pat)\",03/15/2026"}
                                   << false;
        QTest::newRow("month by month") << QDate(2026, 1, 1) << QStringList {"Item", "Jan\n2026", "Feb\n2026", "Mar\n2026", "Total"}
                                        << QStringList {"Section,Item,Month,Value", "Households,\"Households, unduplicated\",2026-01,1",
                                                        "Households,\"Households, unduplicated\",Total,4",
                                                        "\"Individuals, Unduplicated\",Age unknown,2026-03,3"}
                                        << true;
    }

    void documentSaysWhatTheFiguresAre()
    {
        QFETCH(QDate, start);
        QFETCH(QStringList, headings);
        QFETCH(QStringList, csv);
        QFETCH(bool, chart);
        TestDatabase db;
        seed();
        Report::Parameters p;
        p.name = Report::Name::Agency;
        p.startDate = start;
        p.endDate = QDate(2026, 3, 31);
        const Report::Result r = Report::build(p);
        QVERIFY2(r.ok, qPrintable(r.error));
        const Report::Document &d = r.document;
        QCOMPARE(d.caption, QStringLiteral("TendMark - Agency Report"));
        QCOMPARE(d.landscape, chart);
        QStringList lines;
        for (const QStringList &row : d.csvRows)
            lines << CsvWriter::line(row);
        QCOMPARE(lines.first(), csv.first());
        for (const QString &line : csv)
            QVERIFY2(lines.contains(line), qPrintable(line));

        QStringList tableHeadings, charts, text;
        for (const Report::Block &b : d.blocks) {
            if (b.kind == Report::Block::Table && tableHeadings.isEmpty())
                for (const Report::Column &c : b.columns)
                    tableHeadings << c.heading;
            if (b.kind == Report::Block::Chart)
                for (const auto &item : b.chartItems)
                    charts << QStringLiteral("%1=%2").arg(item.first).arg(item.second);
            text << b.lines;
        }
        QCOMPARE(tableHeadings, headings);
        QCOMPARE(charts, (chart ? QStringList {"Jan 2026=1", "Feb 2026=1", "Mar 2026=3"} : QStringList {}));
        QVERIFY(text.contains(QStringLiteral("Definitions")));
        QVERIFY(text.join(QLatin1Char(' ')).contains(QStringLiteral("A visit is a food service of at least one bag.")));
    }

    void organisationsBracketsAreUsedAndBadOnesRefused()
    {
        TestDatabase db;
        seed();
        basDatabase::Execute(QStringLiteral("UPDATE Options SET AgeBrackets = '0-17,18-64,65+'"));
        Report::Parameters p;
        p.name = Report::Name::Agency;
        p.startDate = QDate(2026, 3, 1);
        p.endDate = QDate(2026, 3, 31);
        Report::Result r = Report::build(p);
        QVERIFY(r.ok);
        QVERIFY(r.document.csvRows.contains(QStringList {"Individuals, Unduplicated", "Ages 65+", "1"}));

        p.ageBrackets = QStringLiteral("0-17,19+");
        r = Report::build(p);
        QVERIFY(!r.ok);
        QCOMPARE(r.error, QStringLiteral("Age 18 is in no bracket."));
    }
};

QTEST_GUILESS_MAIN(TestAgencyReport)
#include "tst_agencyreport.moc"
