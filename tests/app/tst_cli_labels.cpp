#include "CliRun.h"
#include "LabelLayout.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

namespace {

struct Word
{
    int page = 0;
    QRectF box;   // points from the page's top-left corner
    QString text;
};

struct PdfText
{
    QList<QSizeF> pages;
    QList<Word> words;
};

// Each word of a PDF with its page and position, as pdftotext -bbox reads them.
PdfText readPdf(const QString &path)
{
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), path, QStringLiteral("-")});
    p.waitForFinished(60000);
    const QString html = QString::fromUtf8(p.readAllStandardOutput());
    PdfText pdf;
    static const QRegularExpression tag(QStringLiteral("<page width=\"([\\d.]+)\" height=\"([\\d.]+)\">|<word xMin=\"([\\d.]+)\" "
                                                       "yMin=\"([\\d.]+)\" xMax=\"([\\d.]+)\" yMax=\"([\\d.]+)\">([^<]*)</word>"));
    for (auto it = tag.globalMatch(html); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        if (!m.captured(1).isEmpty()) {
            pdf.pages << QSizeF(m.captured(1).toDouble(), m.captured(2).toDouble());
            continue;
        }
        const QPointF topLeft(m.captured(3).toDouble(), m.captured(4).toDouble());
        const QPointF bottomRight(m.captured(5).toDouble(), m.captured(6).toDouble());
        QString text = m.captured(7);
        text.replace(QLatin1String("&apos;"), QLatin1String("'")).replace(QLatin1String("&amp;"), QLatin1String("&"));
        pdf.words.append({int(pdf.pages.size()), QRectF(topLeft, bottomRight), text});
    }
    return pdf;
}

Labels::Template templateNamed(const QString &name)
{
    return *Labels::findTemplate(Labels::loadTemplates(), name);
}

// Where the sheet's maker puts a label, in points: worked out here on its own so that
// a fault in the program's layout cannot hide in the check.
QRectF makersLabel(const Labels::Template &t, int position)
{
    const int column = (position - 1) % t.numberAcross, row = (position - 1) / t.numberAcross;
    return QRectF(72 * (t.sideMargin + column * t.horizontalPitch), 72 * (t.topMargin + row * t.verticalPitch), 72 * t.width,
                  72 * t.height);
}

// The labels (page:position) whose first line starts with the word, judged by where
// the word lies: 1/16 in inside the label's left edge (within a point) and inside its height.
QStringList labelsHolding(const PdfText &pdf, const Labels::Template &t, const QString &word)
{
    QStringList found;
    for (const Word &w : pdf.words) {
        if (w.text != word)
            continue;
        QString where = QStringLiteral("%1:?").arg(w.page);
        for (int position = 1; position <= t.perSheet(); ++position) {
            const QRectF label = makersLabel(t, position);
            if (qAbs(w.box.left() - (label.left() + 4.5)) <= 1.0 && w.box.top() >= label.top() && w.box.bottom() <= label.bottom())
                where = QStringLiteral("%1:%2").arg(w.page).arg(position);
        }
        found << where;
    }
    return found;
}

}   // namespace

// tendmark-cli labels: the text of each label lies where the template puts the label.
class TestCliLabels : public QObject
{
    Q_OBJECT

    QTemporaryDir m_out;
    std::unique_ptr<TestDatabase> m_db;
    QHash<QString, qint64> m_ids;
    QHash<QString, Labels::Template> m_templates;

    QString out(const QString &name) const { return m_out.filePath(name); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(!QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty());
        m_db = std::make_unique<TestDatabase>();
        const QList<QStringList> clients = {{"Alpha", "Ann", "1 First St", "Dayton", "OH", "45402"},
                                            {"Beta", "Bob", "2 Second St", "Kettering", "OH", "45420"},
                                            {"O'Brien", "Seán", "3 Third Ave", "Dayton", "OH", "45403"},
                                            {"Zhang", "Ольга", "", "", "", ""}};
        for (const QStringList &c : clients)
            m_ids[c[0]] = TestDatabase::insert(
                "Client", {{"LastName", c[0]}, {"FirstName", c[1]}, {"Address", c[2]}, {"City", c[3]}, {"State", c[4]}, {"ZipCode", c[5]}});
        for (const char *name : {"5160", "L7163", "5167"})
            m_templates[name] = templateNamed(name);
        basDatabase::CloseConnection();
    }

    // Each client's first word, on the page and label the template gives it.
    void labelsLieOnTheirPositions_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("sheet");
        QTest::addColumn<QStringList>("expected");   // word=page:position,...
        QTest::newRow("start 5, 2 copies") << QStringList {"--start", "5",     "--copies",
                                                           "2",       "--sql", "SELECT * FROM Client WHERE LastName IN ('Alpha', 'Beta')"}
                                           << "5160" << QStringList {"Alpha,=1:5,1:6", "Beta,=1:7,1:8"};
        QTest::newRow("last label, then the next sheet from the top")
            << QStringList {"--start", "30", "--from-client", "BETA"} << "5160"
            << QStringList {"Alpha,=", "Beta,=1:30", "O'Brien,=2:1", "Zhang,=2:2"};
        QTest::newRow("A4 sheet, one client") << QStringList {"--template", "L7163", "--client", "OBRIEN", "--start", "4"} << "L7163"
                                              << QStringList {"O'Brien,=1:4", "Alpha,="};
        QTest::newRow("small labels in a smaller font") << QStringList {"--template", "5167", "--font", "DejaVu Sans,6", "--copies", "3"}
                                                        << "5167" << QStringList {"Alpha,=1:1,1:2,1:3", "Zhang,=1:10,1:11,1:12"};
    }
    void labelsLieOnTheirPositions()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, sheet);
        QFETCH(QStringList, expected);
        for (QString &a : arguments)
            a.replace("BETA", QString::number(m_ids["Beta"])).replace("OBRIEN", QString::number(m_ids["O'Brien"]));
        const QString pdf = out(QStringLiteral("%1.pdf").arg(QTest::currentDataTag()));
        const CliRun r = cli(QStringList {"labels", m_db->path(), pdf} + arguments);
        QVERIFY2(r.exitCode == 0, qPrintable(r.err));
        const PdfText text = readPdf(pdf);
        const Labels::Template &t = m_templates[sheet];
        const QSizeF paper = Labels::pageSize(t.paper).size(QPageSize::Point);
        QVERIFY(!text.pages.isEmpty());
        for (const QSizeF &page : text.pages)
            QVERIFY(qAbs(page.width() - paper.width()) < 0.5 && qAbs(page.height() - paper.height()) < 0.5);
        for (const QString &e : expected) {
            const QString word = e.section('=', 0, 0);
            QCOMPARE(labelsHolding(text, t, word).join(','), e.section('=', 1));
        }
    }

    // Names only prints the name line alone; a full label three lines; a long line is shortened inside its label.
    void linesOfALabel()
    {
        const QString full = out("full.pdf"), names = out("names.pdf");
        QCOMPARE(cli({"labels", m_db->path(), full}).exitCode, 0);
        QCOMPARE(cli({"labels", m_db->path(), names, "--names-only"}).exitCode, 0);
        // Each label's lines, top to bottom, by the words lying in the label.
        auto labelLines = [this](const QString &pdf) {
            const PdfText text = readPdf(pdf);
            QStringList labels;
            for (int position = 1; position <= 4; ++position) {
                QMap<int, QStringList> lines;
                for (const Word &w : text.words)
                    if (makersLabel(m_templates["5160"], position).contains(w.box))
                        lines[qRound(w.box.top())] << w.text;
                QStringList joined;
                for (const QStringList &line : lines)
                    joined << line.join(' ');
                labels << joined.join(" / ");
            }
            return labels;
        };
        QCOMPARE(labelLines(names), (QStringList {"Alpha, Ann", "Beta, Bob", "O'Brien, Seán", "Zhang, Ольга"}));
        QCOMPARE(labelLines(full),
                 (QStringList {"Alpha, Ann / 1 First St / Dayton, OH 45402", "Beta, Bob / 2 Second St / Kettering, OH 45420",
                               "O'Brien, Seán / 3 Third Ave / Dayton, OH 45403", "Zhang, Ольга"}));

        // A font that is not installed: the closest one stands in, and the user is told.
        const QString longName = out("long.pdf");
        const CliRun r
            = cli({"labels", m_db->path(), longName, "--client", QString::number(m_ids["Alpha"]), "--font", "No Such Font Family,30"});
        QCOMPARE(r.exitCode, 0);
        QVERIFY2(r.err.contains("shortened to fit") && r.err.contains("the font 'No Such Font Family' is not installed"),
                 qPrintable(r.err));
        const QList<Word> words = readPdf(longName).words;
        QVERIFY(!words.isEmpty());
        const QRectF label = makersLabel(m_templates["5160"], 1);
        for (const Word &w : words)
            QVERIFY2(label.contains(w.box), qPrintable(w.text));
    }

    // Bad input: a clear message, exit 1 or 2, and no file. The limits of a run are the planner's; here, how the tool says them.
    void badInputIsRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("setup");   // statements run on a copy of the database first
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        const auto row
            = [](const char *tag, const QStringList &arguments, int exitCode, const char *message, const QStringList &setup = {}) {
                  QTest::newRow(tag) << arguments << setup << exitCode << QString::fromUtf8(message);
              };
        row("no copies", {"--copies", "0"}, 1, "Number of copies must be between 1 and 1000.");
        row("copies not a number", {"--copies", "two"}, 2, "--copies takes a number.");
        row("unknown template", {"--template", "9999"}, 2, "there is no template named '9999'.");
        row("ambiguous template", {"--template", "L716"}, 2, "'L716' matches more than one template: Avery L7160 Address");
        row("a statement that writes", {"--sql", "DELETE FROM Client"}, 1, "");
        row("no templates", {}, 1, "holds no label templates", {"DELETE FROM LabelDetails"});
        row("zero across", {}, 1, "Number Across must be at least 1.", {"UPDATE LabelDetails SET NumberAcross = 0"});
        row("bad font size", {"--font", "Arial,0"}, 2, "--font takes a family");
    }
    void badInputIsRefused()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, setup);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        QString file = m_db->path();
        if (!setup.isEmpty()) {
            file = out("changed.tmdb");
            QFile::remove(file);
            QVERIFY(QFile::copy(m_db->path(), file));
            QVERIFY(TestDatabase::onFile(file, setup + QStringList {"SELECT 1"}).isValid());
        }
        const QString pdf = out("refused.pdf");
        const CliRun r = cli(QStringList {"labels", file, pdf} + arguments);
        QCOMPARE(r.exitCode, exitCode);
        QVERIFY2(r.err.contains(message) && !r.err.trimmed().isEmpty(), qPrintable(r.err));
        QVERIFY(!QFile::exists(pdf));
        QCOMPARE(TestDatabase::onFile(m_db->path(), {"SELECT COUNT(*) FROM Client"}).toInt(), 4);
    }
};

QTEST_GUILESS_MAIN(TestCliLabels)
#include "tst_cli_labels.moc"
