#include "PdfText.h"
#include "ReportRenderer.h"
#include "TestDatabase.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QPdfWriter>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using Report::Block;

namespace {

Block heading(const QString &text, int level = 0)
{
    Block b;
    b.kind = Block::Heading;
    b.level = level;
    b.lines = {text};
    b.keepWithNext = true;
    return b;
}

Block table(int rows, const QString &prefix = QStringLiteral("Row"))
{
    Block b;
    b.kind = Block::Table;
    b.columns = {{QStringLiteral("Full Name"), 3}, {QStringLiteral("Address"), 4}, {QStringLiteral("Bags"), 1, Qt::AlignRight}};
    for (int i = 0; i < rows; ++i)
        b.rows << QStringList {QStringLiteral("%1 %2").arg(prefix).arg(i), QStringLiteral("%1 Main Street, Springfield IL 62701").arg(i),
                               QString::number(i % 7)};
    return b;
}

Block chart(int items = 3)
{
    Block b;
    b.kind = Block::Chart;
    b.chartTitle = QStringLiteral("Clients By City");
    for (int i = 0; i < items; ++i)
        b.chartItems << qMakePair(QStringLiteral("Town %1").arg(i), qint64(i * 7 + 1));
    return b;
}

Report::Document document(QList<Block> blocks)
{
    Report::Document d;
    d.caption = QStringLiteral("TendMark - Client List");
    d.title = QStringLiteral("Client List");
    d.title2 = QStringLiteral("Grouped By City");
    d.dateCaption = QStringLiteral("For Dates: 01-Mar-26  To  31-Mar-26");
    d.header.organizationName = QStringLiteral("St. Anne's Food Pantry");
    d.header.organizationAddress = QStringLiteral("12 Church Road\r\nSpringfield, IL 62701");
    d.runDate = QDate(2026, 3, 31);
    d.blocks = std::move(blocks);
    return d;
}

QList<ReportLayout::Page> layoutOf(const Report::Document &d)
{
    QBuffer sink;
    sink.open(QIODevice::WriteOnly);
    QPdfWriter writer(&sink);
    writer.setPageLayout(ReportRenderer::pageLayout());
    writer.setResolution(600);
    return ReportRenderer::layout(d, &writer);
}

// The text of each page of a PDF file, as pdftotext reads it.
QStringList pdfPages(const QString &path)
{
    // Runs of blanks are the layout's, not the text's: one blank stands for any run.
    QStringList pages
        = pdfText(path, "-layout").replace(QRegularExpression(QStringLiteral(" +")), QStringLiteral(" ")).split(QLatin1Char('\f'));
    if (!pages.isEmpty() && pages.last().trimmed().isEmpty())
        pages.removeLast();
    return pages;
}

}   // namespace

// Pages are laid out, then drawn: what lands where, and what a PDF file says.
class TestReportRender : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString path(const QString &name) const { return m_dir.filePath(name); }

private slots:
    void initTestCase() { QVERIFY(!QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty()); }

    void tablesRunOntoNewPagesWithTheirHeadings()
    {
        const Report::Document d = document({heading(QStringLiteral("City: Springfield")), table(150)});
        const QList<ReportLayout::Page> pages = layoutOf(d);
        QVERIFY(pages.size() >= 3);
        int next = 0;
        for (int i = 0; i < pages.size(); ++i) {
            // The group's heading first: as itself on the first page, "continued" on the others.
            QCOMPARE(pages[i].pieces.size(), 2);
            QCOMPARE(pages[i].pieces[0].block, 0);
            QCOMPARE(pages[i].pieces[0].top, 0.0);
            QCOMPARE(pages[i].pieces[0].continued, i > 0);
            const ReportLayout::Piece &rows = pages[i].pieces[1];
            QCOMPARE(rows.block, 1);
            QCOMPARE(rows.first, next);   // no row lost, none twice
            QVERIFY(rows.count > 10);
            next += rows.count;
        }
        QCOMPARE(next, 150);

        // Each page of the file repeats the page header, and the column headings above its own rows.
        const QString file = path(QStringLiteral("long.pdf"));
        QString error;
        QVERIFY2(ReportRenderer::writePdf(d, file, {}, &error), qPrintable(error));
        const QStringList text = pdfPages(file);
        QCOMPARE(text.size(), pages.size());
        for (int i = 0; i < text.size(); ++i) {
            QVERIFY2(text[i].contains(QLatin1String("Full Name")) && text[i].contains(QLatin1String("Address")), qPrintable(text[i]));
            QVERIFY(text[i].contains(QStringLiteral("Row %1 ").arg(pages[i].pieces[1].first)));
            QVERIFY(text[i].contains(QStringLiteral("Page %1 of %2").arg(i + 1).arg(text.size())));
            for (const char *every : {"St. Anne's Food Pantry", "12 Church Road", "Springfield, IL 62701", "Client List", "Grouped By City",
                                      "For Dates: 01-Mar-26 To 31-Mar-26", "03/31/2026"})
                QVERIFY2(text[i].contains(QLatin1String(every)), every);
            QCOMPARE(text[i].contains(QLatin1String("City: Springfield (continued)")), i > 0);
        }
    }

    void headingsAreNeverLeftAtTheFootOfAPage()
    {
        // Filler of every length pushes a group header and a record header, each kept
        // with what follows, to every position on the page, the foot included.
        int broken = 0;
        for (int filler = 0; filler <= 70; ++filler) {
            const Report::Document d = document({table(filler, QStringLiteral("Filler")), heading(QStringLiteral("City: Springfield")),
                                                 heading(QStringLiteral("Doe, Jane"), 1), table(60), chart()});
            const QList<ReportLayout::Page> pages = layoutOf(d);
            for (const ReportLayout::Page &page : pages) {
                const ReportLayout::Piece &last = page.pieces.last();
                QVERIFY2(!d.blocks[last.block].keepWithNext, qPrintable(QStringLiteral("filler %1: a heading ends a page").arg(filler)));
            }
            // The two headings and the first row of their table share a page.
            for (const ReportLayout::Page &page : pages)
                for (int i = 0; i < page.pieces.size(); ++i)
                    if (page.pieces[i].block == 1) {
                        QVERIFY(i + 2 < page.pieces.size());
                        QCOMPARE(page.pieces[i + 2].block, 3);
                        QVERIFY(page.pieces[i + 2].count >= 1);
                        broken += (i == 0 && filler > 0 && !page.pieces[i].continued);
                    }
            // Where the table goes on, both headings come back above it.
            for (const ReportLayout::Page &page : pages)
                if (page.pieces.last().block == 3 && page.pieces.last().first > 0) {
                    QCOMPARE(page.pieces.size(), 3);
                    QVERIFY(page.pieces[0].block == 1 && page.pieces[0].continued);
                    QVERIFY(page.pieces[1].block == 2 && page.pieces[1].continued);
                }
        }
        QVERIFY(broken > 0);   // some filler lengths did push the headings over
    }

    void pageBreaksAndOversizedRows()
    {
        Block pageBreak;
        pageBreak.kind = Block::PageBreak;
        Block tall = table(0);
        tall.rows << QStringList {QString(QStringLiteral("word ")).repeated(4000), QStringLiteral("x"), QStringLiteral("1")};
        // what the case shows, its blocks, the blocks each page holds
        const QList<std::tuple<const char *, QList<Block>, QList<QList<int>>>> cases = {
            {"empty report", {}, {{}}},
            {"break between tables", {table(2), pageBreak, table(2)}, {{0}, {2}}},
            {"break at the start and twice over", {pageBreak, table(1), pageBreak, pageBreak, table(1)}, {{1}, {4}}},
            {"empty table keeps its headings", {table(0)}, {{0}}},
            {"row taller than a page is cut, not looped on", {table(1), tall, table(1)}, {{0}, {1}, {2}}},
            // Near the foot: a short table and its chart go over together, their heading with them.
            {"chart with its table", {table(35), heading(QStringLiteral("Gender")), table(5), chart()}, {{0}, {1, 2, 3}}},
            {"chart after a long table", {table(20), heading(QStringLiteral("Cities")), table(60), chart()}, {{0, 1, 2}, {1, 2}, {3}}},
        };
        for (const auto &[name, blocks, expected] : cases) {
            const QList<ReportLayout::Page> pages = layoutOf(document(blocks));
            QList<QList<int>> blocksByPage;
            for (const ReportLayout::Page &page : pages) {
                QList<int> onPage;
                for (const ReportLayout::Piece &piece : page.pieces)
                    onPage << piece.block;
                blocksByPage << onPage;
            }
            QVERIFY2(blocksByPage == expected, name);
        }
    }

    void textChartsAndLogoAreDrawn()
    {
        Block fields;
        fields.kind = Block::Fields;
        fields.fieldColumns = 2;
        fields.fields = {{QStringLiteral("Last Name"), QStringLiteral("O'Brien")},
                         {QStringLiteral("First Name"), QStringLiteral("Zoë \"Zo\"")},
                         {QStringLiteral("City"), QStringLiteral("Łódź")},
                         {QStringLiteral("Comments"),
                          QStringLiteral("A long comment that must wrap within its own column rather than run "
                                         "over the next column or off the edge of the page entirely")},
                         {QStringLiteral("Medical Problems"), QStringLiteral("Diabetes\r\nNo stairs")}};
        Block totals;
        totals.kind = Block::Totals;
        totals.fields = {{QStringLiteral("Total Bags:"), QStringLiteral("1,234")}};
        Block text;
        text.kind = Block::Text;
        text.lines = {QStringLiteral("(42 individual clients)")};
        Block bars = chart();
        bars.chartItems = {{QStringLiteral("Springfield"), 40}, {QStringLiteral("Shelbyville"), 7}, {QStringLiteral("Capital City"), 1234}};
        // Long names on many bars: every one printed in full, none cut short.
        Block ethnic = bars;
        ethnic.chartTitle = QStringLiteral("Ethnic Breakdown");
        ethnic.chartItems.clear();
        for (const char *name : {"African American", "American Indian or Alaska Native", "Asian", "Hispanic or Latino", "Multiracial",
                                 "Native Hawaiian or Pacific Islander", "Other", "White"})
            ethnic.chartItems << qMakePair(QString::fromLatin1(name), qint64(5));
        Block pie = bars;
        pie.pie = true;
        pie.chartTitle = QStringLiteral("Gender Breakdown");
        const QString logo = path(QStringLiteral("logo.png"));
        QImage image(200, 100, QImage::Format_RGB32);
        image.fill(Qt::darkGreen);
        QVERIFY(image.save(logo));

        // The logo is drawn on every page; one that cannot be read is left out.
        for (const QString &logoPath : {logo, path(QStringLiteral("missing.png"))}) {
            Report::Document d = document({heading(QStringLiteral("Doe, Jane")), fields, table(3), totals, text, bars, pie, ethnic});
            d.header.logoPath = logoPath;
            const QString file = path(QStringLiteral("chart.pdf"));
            QString error;
            QVERIFY2(ReportRenderer::writePdf(d, file, {}, &error), qPrintable(error));
            // Charts are vector drawings: their lettering is text in the file.
            const QStringList pages = pdfPages(file);
            QVERIFY(pages.size() >= 2);
            const QString all = pages.join(QLatin1Char('\n'));
            for (const char *expected :
                 {"O'Brien", "Zoë \"Zo\"", "Łódź", "Total Bags:", "1,234", "(42 individual clients)", "Doe, Jane", "edge of the page",
                  "Diabetes\n No stairs", "Clients By City", "Capital City", "1234", "Gender Breakdown", "Shelbyville: 7",
                  "Native Hawaiian or Pacific Islander", "American Indian or Alaska Native", "Multiracial"})
                QVERIFY2(all.contains(QString::fromUtf8(expected)), expected);
            QProcess list;
            list.start(QStringLiteral("pdfimages"), {QStringLiteral("-list"), file});
            QVERIFY(list.waitForFinished(30000));
            const int rows = int(QString::fromUtf8(list.readAllStandardOutput()).trimmed().split(QLatin1Char('\n')).size()) - 2;
            QCOMPARE(rows, logoPath == logo ? int(pages.size()) : 0);
        }
    }

    void pdfFileAppearsWholeOrNotAtAll()
    {
        const Report::Document d = document({table(200)});
        const QString target = path(QStringLiteral("kept.pdf"));
        QString error;
        QVERIFY(ReportRenderer::writePdf(document({table(1)}), target, {}, &error));
        const QByteArray before = TestDatabase::fileHash(target);

        // Cancelled on the second page: the old file stays as it was, and nothing is left beside it.
        qint64 seenTotal = 0;
        QVERIFY(!ReportRenderer::writePdf(
            d, target,
            [&](qint64 done, qint64 total) {
                seenTotal = total;
                return done < 1;
            },
            &error));
        QVERIFY(seenTotal >= 4);
        QCOMPARE(TestDatabase::fileHash(target), before);
        QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("kept")),
                 QStringList {QStringLiteral("kept.pdf")});

        // A folder that does not exist: a clear reason, no file.
        const QString nowhere = path(QStringLiteral("no/such/folder/r.pdf"));
        error.clear();
        QVERIFY(!ReportRenderer::writePdf(d, nowhere, {}, &error));
        QVERIFY(error.contains(QLatin1String("r.pdf")));
        QVERIFY(!QFile::exists(nowhere));

        // Written over: the new pages replace the old file, counted to the last.
        qint64 lastDone = 0;
        QVERIFY(ReportRenderer::writePdf(
            d, target,
            [&](qint64 done, qint64) {
                lastDone = done;
                return true;
            },
            &error));
        QCOMPARE(lastDone, seenTotal);
        QCOMPARE(pdfPages(target).size(), int(seenTotal));
    }
};

QTEST_MAIN(TestReportRender)
#include "tst_reportrender.moc"
