#include "LabelRun.h"
#include "Schema.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QTest>

using namespace Labels;

namespace {

Template avery5160()
{
    Template t;
    t.description = QStringLiteral("5160");
    t.height = 1.0;
    t.width = 2.625;
    t.topMargin = 0.5;
    t.sideMargin = 0.1875;
    t.verticalPitch = 1.0;
    t.horizontalPitch = 2.75;
    t.numberAcross = 3;
    t.numberDown = 10;
    return t;
}

// "sheet:position" for every label of a run, in order.
QStringList placements(const QList<LabelPage> &pages)
{
    QStringList list;
    for (int i = 0; i < pages.size(); ++i)
        for (const PlacedLabel &l : pages.at(i))
            list << QStringLiteral("%1:%2 %3").arg(i + 1).arg(l.position).arg(l.lines.value(0));
    return list;
}

}   // namespace

class TestLabels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Positions run across then down; copies sit side by side; later sheets start at 1. The CLI test reads the
    // usual runs and each label's place back from the PDF; here, the edges.
    void layoutPlacesEachCopy_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("copies");
        QTest::addColumn<int>("clients");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("copies across the sheet's end") << 29 << 3 << 1 << QStringList {"1:29 A", "1:30 A", "2:1 A"};
        QTest::newRow("a full sheet makes one page") << 1 << 10 << 3 << [] {
            QStringList l;
            for (int i = 0; i < 30; ++i)
                l << QStringLiteral("1:%1 %2").arg(i + 1).arg(QChar(u'A' + i / 10));
            return l;
        }();
        QTest::newRow("start past the sheet prints nothing") << 31 << 1 << 1 << QStringList {};
        QTest::newRow("no copies print nothing") << 1 << 0 << 1 << QStringList {};
    }
    void layoutPlacesEachCopy()
    {
        QFETCH(int, start);
        QFETCH(int, copies);
        QFETCH(int, clients);
        QFETCH(QStringList, expected);
        QList<QStringList> labels;
        for (int i = 0; i < clients; ++i)
            labels << QStringList {QString(QChar(u'A' + i))};
        QCOMPARE(placements(layoutLabels(avery5160(), labels, start, copies)), expected);
    }

    void labelLinesFollowTheAddress_data()
    {
        QTest::addColumn<QStringList>("fields");   // last, first, middle, address, city, state, zip
        QTest::addColumn<bool>("namesOnly");
        QTest::addColumn<QStringList>("expected");
        const QStringList full {"Smith", "Mary", "A", "12 Oak St", "Springfield", "IL", "62701"};
        QTest::newRow("full") << full << false << QStringList {"Smith, Mary A", "12 Oak St", "Springfield, IL 62701"};
        QTest::newRow("names only") << full << true << QStringList {"Smith, Mary A"};
        QTest::newRow("no address or city") << QStringList {"Doe", "Jane", "", "", "", "OH", ""} << false
                                            << QStringList {"Doe, Jane", "OH"};
        QTest::newRow("no last name, no state")
            << QStringList {"", "Jo", "", "5 Elm", "Dayton", "", ""} << false << QStringList {"Jo", "5 Elm", "Dayton"};
        QTest::newRow("nothing at all") << QStringList {"", "", "", "", "", "", ""} << false << QStringList {};
    }
    void labelLinesFollowTheAddress()
    {
        QFETCH(QStringList, fields);
        QFETCH(bool, namesOnly);
        QFETCH(QStringList, expected);
        const Address a {fields[0], fields[1], fields[2], fields[3], fields[4], fields[5], fields[6]};
        QCOMPARE(labelLines(a, namesOnly), expected);
    }

    // A template that cannot print names the measure at fault.
    void validationNamesTheWrongMeasure()
    {
        const struct
        {
            const char *tag;
            void (*change)(Template &);
            QString blamed, words;
        } cases[] = {
            {"sound", [](Template &) {}, "", ""},
            {"zero across", [](Template &t) { t.numberAcross = 0; }, "NumberAcross", "Number Across"},
            {"zero down", [](Template &t) { t.numberDown = 0; }, "NumberDown", "Number Down"},
            {"negative margin", [](Template &t) { t.topMargin = -0.1; }, "TopMargin", "negative"},
            {"labels overlap", [](Template &t) { t.horizontalPitch = 2.5; }, "HorizontalPitch", "overlap"},
            {"pitch too large", [](Template &t) { t.horizontalPitch = 2.9; }, "HorizontalPitch", "0.11 in past the right edge"},
            {"side margin too large", [](Template &t) { t.sideMargin = 6; }, "SideMargin", "Side Margin is too large"},
            {"too many rows", [](Template &t) { t.numberDown = 11; }, "VerticalPitch", "bottom edge of the Letter paper"},
            {"a Letter sheet on A4", [](Template &t) { t.paper = Paper::A4; }, "HorizontalPitch", "A4 paper (8.27 x 11.69 in)"},
            {"tiny label", [](Template &t) { t.height = 0.05; }, "Height", "at least 0.10 in"},
        };
        for (const auto &c : cases) {
            Template t = avery5160();
            c.change(t);
            const Problem p = validate(t);
            QVERIFY2(p.column == c.blamed && p.text.contains(c.words),
                     qPrintable(QStringLiteral("%1: %2 %3").arg(c.tag, p.column, p.text)));
        }
    }

    // The standard sheets are sound, on their paper, with 5160 the one default.
    void standardTemplates()
    {
        TestDatabase db;
        const QList<Template> list = loadTemplates();
        QCOMPARE(list.size(), 11);
        QStringList a4;
        for (const Template &t : list) {
            QVERIFY2(validate(t).ok(), qPrintable(t.description + ": " + validate(t).text));
            if (t.paper == Paper::A4)
                a4 << t.description.section(' ', 1, 1);
        }
        QCOMPARE(a4, (QStringList {"L7160", "L7161", "L7163", "L7165"}));
        const Template def = *defaultTemplate(list);
        QVERIFY(def.description.startsWith("Avery 5160"));
        QCOMPARE(QList<double>({def.sideMargin, def.horizontalPitch, def.verticalPitch}), QList<double>({0.1875, 2.75, 1.0}));
        QCOMPARE(findTemplate(list, "l7163")->perSheet(), 14);
        QVERIFY(!findTemplate(list, "Avery 51").has_value());   // more than one holds it
    }

    void savingKeepsOneDefaultAndUniqueNames()
    {
        TestDatabase db;
        Template t = avery5160();
        t.description = QStringLiteral("Pantry sheet");
        t.isDefault = true;
        QString error;
        QVERIFY(saveTemplate(t, &error));
        QVERIFY(t.id > 0);
        QCOMPARE(TestDatabase::count("LabelDetails", "\"Default\" = 1"), 1);
        QCOMPARE(defaultTemplate(loadTemplates())->id, t.id);
        Template copy = t;
        copy.id = 0;
        copy.description = QStringLiteral("Pantry sheet");
        QVERIFY(!saveTemplate(copy, &error));
        QVERIFY(error.contains("already a template named 'Pantry sheet'"));
        deleteTemplate(t.id);
        QCOMPARE(TestDatabase::count("LabelDetails", "Description = 'Pantry sheet'"), 0);
    }

    // What stops a run, in order, and who is printed.
    void planningARun_data()
    {
        QTest::addColumn<int>("copies");
        QTest::addColumn<int>("start");
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("from");   // a last name: start with that client
        QTest::addColumn<QString>("expected");   // the error, or the first lines joined
        const auto row = [](const char *tag, int copies, int start, const char *sql, const char *from, const char *expected) {
            QTest::newRow(tag) << copies << start << QString::fromUtf8(sql) << QString::fromUtf8(from) << QString::fromUtf8(expected);
        };
        row("all clients by last name", 1, 1, "", "", "Adams, Al|O'Brien, Seán|Zhang, Wei");
        row("starting with the current client", 1, 1, "", "O'Brien", "O'Brien, Seán|Zhang, Wei");
        row("no copies", 0, 1, "", "", "Number of copies must be between 1 and 1000.");
        row("100,000 copies", 100000, 1, "", "", "Number of copies must be between 1 and 1000.");
        row("start past the sheet", 1, 31, "", "", "Starting position must be between 1 and 30");
        row("no clients in the scope", 1, 1, "SELECT * FROM Client WHERE 0", "", "There are no clients to print labels for.");
        row("current client not in the recordset", 1, 1, "SELECT * FROM Client WHERE LastName = 'Zhang'", "Adams",
            "The current client is not among the clients to print.");
    }
    void planningARun()
    {
        QFETCH(int, copies);
        QFETCH(int, start);
        QFETCH(QString, sql);
        QFETCH(QString, from);
        QFETCH(QString, expected);
        TestDatabase db;
        QHash<QString, qint64> ids;
        for (const QStringList &c : {QStringList {"Zhang", "Wei"}, QStringList {"O'Brien", "Seán"}, QStringList {"Adams", "Al"}})
            ids[c[0]] = TestDatabase::insert("Client", {{"LastName", c[0]}, {"FirstName", c[1]}});
        Request r;
        r.sheet = avery5160();
        r.copies = copies;
        r.startPosition = start;
        r.scope = {RecordScope::Kind::Client, sql, {}};
        r.reportType = sql.isEmpty() ? RecordScope::AllRecords : RecordScope::CurrentRecordset;
        if (!from.isEmpty())
            r.startWith = QString::number(ids.value(from));
        const Plan plan = planRun(r);
        if (!plan.ok) {
            QVERIFY2(plan.error.startsWith(expected), qPrintable(plan.error));
            QVERIFY(plan.pages.isEmpty());
            return;
        }
        QStringList names;
        for (const PlacedLabel &l : plan.pages.value(0))
            names << l.lines.value(0);
        QCOMPARE(names.join('|'), expected);
    }
};

QTEST_GUILESS_MAIN(TestLabels)
#include "tst_labels.moc"
