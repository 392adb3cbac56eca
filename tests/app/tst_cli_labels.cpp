#include "CliRun.h"
#include "LabelLayout.h"
#include "PdfText.h"
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

// Each word of a PDF with its page and position, and the size of each page.
QList<Word> readWords(const QString &path, QList<QSizeF> *pages)
{
    static const QRegularExpression tag(QStringLiteral("<page width=\"([\\d.]+)\" height=\"([\\d.]+)\">|<word xMin=\"([\\d.]+)\" "
                                                       "yMin=\"([\\d.]+)\" xMax=\"([\\d.]+)\" yMax=\"([\\d.]+)\">([^<]*)</word>"));
    QList<Word> words;
    for (auto it = tag.globalMatch(pdfText(path, "-bbox")); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        if (!m.captured(1).isEmpty()) {
            *pages << QSizeF(m.captured(1).toDouble(), m.captured(2).toDouble());
            continue;
        }
        QString text = m.captured(7);
        text.replace(QLatin1String("&apos;"), QLatin1String("'")).replace(QLatin1String("&amp;"), QLatin1String("&"));
        words.append({int(pages->size()),
                      QRectF(QPointF(m.captured(3).toDouble(), m.captured(4).toDouble()),
                             QPointF(m.captured(5).toDouble(), m.captured(6).toDouble())),
                      text});
    }
    return words;
}

// Where the sheet's maker puts a label, in points: worked out here on its own so that
// a fault in the program's layout cannot hide in the check.
QRectF makersLabel(const Labels::Template &t, int position)
{
    const int column = (position - 1) % t.numberAcross, row = (position - 1) / t.numberAcross;
    return QRectF(72 * (t.sideMargin + column * t.horizontalPitch), 72 * (t.topMargin + row * t.verticalPitch), 72 * t.width,
                  72 * t.height);
}

// Each label that holds words as "page:position line / line...", its lines top to bottom. A word outside
// every label is listed as "page:? word", a line that does not start 1/16 in inside the label's left edge
// (within a point) as "page:position misplaced".
QStringList labelsIn(const QList<Word> &words, const Labels::Template &t)
{
    QMap<std::pair<int, int>, QMap<int, QList<Word>>> labels;   // (page, position) -> top -> words
    QStringList found;
    for (const Word &w : words) {
        int at = 0;
        for (int position = 1; position <= t.perSheet() && !at; ++position)
            at = makersLabel(t, position).contains(w.box) ? position : 0;
        if (at)
            labels[{w.page, at}][qRound(w.box.top())] << w;
        else
            found << QStringLiteral("%1:? %2").arg(w.page).arg(w.text);
    }
    for (auto label = labels.cbegin(); label != labels.cend(); ++label) {
        const QString where = QStringLiteral("%1:%2").arg(label.key().first).arg(label.key().second);
        QStringList lines;
        for (QList<Word> line : label.value()) {
            std::sort(line.begin(), line.end(), [](const Word &a, const Word &b) { return a.box.left() < b.box.left(); });
            if (qAbs(line.first().box.left() - (makersLabel(t, label.key().second).left() + 4.5)) > 1.0)
                found << where + QStringLiteral(" misplaced");
            QStringList texts;
            for (const Word &w : line)
                texts << w.text;
            lines << texts.join(u' ');
        }
        found << where + u' ' + lines.join(QStringLiteral(" / "));
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
            m_templates[name] = *Labels::findTemplate(Labels::loadTemplates(), name);
        basDatabase::CloseConnection();
    }

    // The labels printed, each on its page and position with its lines; every word inside its label, on the template's
    // paper. Bad input: exit 1 or 2, a clear message, and no file. The limits of a run are the planner's; here, how the
    // tool says them. The database is never written.
    void runsPrintWhereTheTemplateSaysOrAreRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QStringList>("setup");   // statements run on a copy of the database first
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("sheet");
        QTest::addColumn<int>("printed");   // labels
        QTest::addColumn<QStringList>("expected");   // some of them
        QTest::addColumn<QStringList>("said");   // on standard error
        const auto row = [](const char *tag, const QStringList &arguments, int exitCode, const char *sheet, int printed,
                            const QStringList &expected, const QStringList &said, const QStringList &setup = {}) {
            QTest::newRow(tag) << arguments << setup << exitCode << QString::fromLatin1(sheet) << printed << expected << said;
        };
        const QString alpha = QStringLiteral("Alpha, Ann / 1 First St / Dayton, OH 45402");
        row("start 5, 2 copies, a statement",
            {"--start", "5", "--copies", "2", "--sql", "SELECT * FROM Client WHERE LastName IN ('Alpha', 'Beta')"}, 0, "5160", 4,
            {"1:5 " + alpha, "1:6 " + alpha, "1:8 Beta, Bob / 2 Second St / Kettering, OH 45420"}, {});
        row("last label, then the next sheet from the top", {"--start", "30", "--from-client", "BETA"}, 0, "5160", 3,
            {"1:30 Beta, Bob / 2 Second St / Kettering, OH 45420", "2:1 O'Brien, Seán / 3 Third Ave / Dayton, OH 45403",
             "2:2 Zhang, Ольга"},
            {});
        row("A4 sheet, one client, names only", {"--template", "L7163", "--client", "OBRIEN", "--start", "4", "--names-only"}, 0, "L7163",
            1, {"1:4 O'Brien, Seán"}, {});
        row("small labels in a smaller font", {"--template", "5167", "--font", "DejaVu Sans,6", "--copies", "3", "--names-only"}, 0, "5167",
            12, {"1:1 Alpha, Ann", "1:3 Alpha, Ann", "1:12 Zhang, Ольга"}, {});
        // A font that is not installed: the closest one stands in, and the user is told; long lines are shortened inside the label.
        row("missing font, lines shortened", {"--client", "ALPHA", "--font", "No Such Font Family,40"}, 0, "5160", 1, {},
            {"shortened to fit", "the font 'No Such Font Family' is not installed"});
        const auto refused
            = [&row](const char *tag, const QStringList &arguments, int exitCode, const char *message, const QStringList &setup = {}) {
                  row(tag, arguments, exitCode, "", 0, {}, {QString::fromUtf8(message)}, setup);
              };
        refused("no copies", {"--copies", "0"}, 1, "Number of copies must be between 1 and 1000.");
        refused("copies not a number", {"--copies", "two"}, 2, "--copies takes a number.");
        refused("unknown template", {"--template", "9999"}, 2, "there is no template named '9999'.");
        refused("ambiguous template", {"--template", "L716"}, 2, "'L716' matches more than one template: Avery L7160 Address");
        refused("a statement that writes", {"--sql", "DELETE FROM Client"}, 1, "");
        refused("no templates", {}, 1, "holds no label templates", {"DELETE FROM LabelDetails"});
        refused("zero across", {}, 1, "Number Across must be at least 1.", {"UPDATE LabelDetails SET NumberAcross = 0"});
        refused("bad font size", {"--font", "Arial,0"}, 2, "--font takes a family");
    }
    void runsPrintWhereTheTemplateSaysOrAreRefused()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QStringList, setup);
        QFETCH(int, exitCode);
        QFETCH(QString, sheet);
        QFETCH(int, printed);
        QFETCH(QStringList, expected);
        QFETCH(QStringList, said);
        for (QString &a : arguments)
            a.replace("ALPHA", QString::number(m_ids["Alpha"]))
                .replace("BETA", QString::number(m_ids["Beta"]))
                .replace("OBRIEN", QString::number(m_ids["O'Brien"]));
        QString file = m_db->path();
        if (!setup.isEmpty()) {
            file = out("changed.tmdb");
            QFile::remove(file);
            QVERIFY(QFile::copy(m_db->path(), file));
            QVERIFY(TestDatabase::onFile(file, setup + QStringList {"SELECT 1"}).isValid());
        }
        const QByteArray before = TestDatabase::fileHash(file);
        const QString pdf = out(QStringLiteral("%1.pdf").arg(QTest::currentDataTag()));
        const CliRun r = cli(QStringList {"labels", file, pdf} + arguments);
        QCOMPARE(r.exitCode, exitCode);
        QVERIFY2(exitCode == 0 || !r.err.trimmed().isEmpty(), "a refusal says why");
        for (const QString &s : said)
            QVERIFY2(r.err.contains(s), qPrintable(r.err));
        QCOMPARE(TestDatabase::fileHash(file), before);
        if (exitCode != 0) {
            QVERIFY(!QFile::exists(pdf));
            return;
        }
        const Labels::Template &t = m_templates[sheet];
        QList<QSizeF> pages;
        const QStringList labels = labelsIn(readWords(pdf, &pages), t);
        const QSizeF paper = Labels::pageSize(t.paper).size(QPageSize::Point);
        QVERIFY(!pages.isEmpty());
        for (const QSizeF &page : pages)
            QVERIFY(qAbs(page.width() - paper.width()) < 0.5 && qAbs(page.height() - paper.height()) < 0.5);
        QVERIFY2(labels.size() == printed && labels.filter(QRegularExpression(":\\? | misplaced$")).isEmpty(),
                 qPrintable(labels.join('\n')));
        for (const QString &e : expected)
            QVERIFY2(labels.contains(e), qPrintable(e + "\n" + labels.join('\n')));
    }
};

QTEST_GUILESS_MAIN(TestCliLabels)
#include "tst_cli_labels.moc"
