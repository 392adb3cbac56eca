#include "ReportFixture.h"
#include "CliRun.h"
#include "PdfText.h"
#include "basDatabase.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

// tendmark-cli report, run as a scheduled job runs it.
class TestCliReport : public QObject
{
    Q_OBJECT

    QTemporaryDir m_out;
    std::unique_ptr<TestDatabase> m_db;
    ReportFixture::Ids m_ids {};

    QString out(const QString &name) const { return m_out.filePath(name); }

    static QByteArray read(const QString &path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("(missing)");
    }

private Q_SLOTS:
    void initTestCase()
    {
        m_db = std::make_unique<TestDatabase>();
        m_ids = ReportFixture::seed();
        basDatabase::CloseConnection();
    }

    // Written whole, the CSV and the PDF beside it; or refused with its status, nothing written and the database untouched.
    void reportsAreWrittenOrRefused_data()
    {
        QTest::addColumn<QStringList>("arguments");   // DB: the database, OUT: the CSV file, PDF: the PDF file
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("said");   // the whole CSV file, or lines it holds; on refusal, the message
        QTest::addColumn<QString>("inPdf");   // a line the printed report holds
        const auto row = [](const char *tag, const QStringList &arguments, int exitCode, const QByteArray &said, const char *inPdf = "") {
            QTest::newRow(tag) << arguments << exitCode << said << QString::fromUtf8(inPdf);
        };
        // The hand-typed statement filters; the report sorts by last name; quotes are doubled.
        row("client list, recordset",
            {"client-list", "DB", "--sql", "SELECT * FROM Client WHERE LastName IN ('Brown', 'O''Brien') ORDER BY 1 DESC", "--csv", "OUT",
             "--pdf", "PDF"},
            0,
            "\xEF\xBB\xBFName,Address,Social Security No.,Home Phone\r\n"
            "\"Brown, Bob \"\"Bo\"\"\",dayton  45403,,\r\n"
            "\"O'Brien, Se\xC3\xA1n\",\"1 Main St, Dayton OH 45402\",123-45-6789,(937) 555-0100\r\n",
            "Brown, Bob \"Bo\"");
        row("payments of one client, all dates", {"payment-history", "DB", "--client", "CLIENT", "--csv", "OUT", "--pdf", "PDF"}, 0,
            "\xEF\xBB\xBFName,Address,Social Security No.,Date,Type,Amount Paid,Amount Requested,Comments\r\n"
            "\"O'Brien, Se\xC3\xA1n\",\"1 Main St, Dayton OH 45402\",123-45-6789,12/06/2026,Rent,50.00,60.00,\r\n",
            "All Dates");
        // The dates and brackets given reach the agency report.
        row("agency, own brackets",
            {"agency", "DB", "--from", "2026-12-01", "--to", "2026-12-31", "--brackets", "0-17,18-64,65+", "--csv", "OUT", "--pdf", "PDF"},
            0,
            "Households,New households,5\r\n"
            "\"Individuals, Unduplicated\",Ages 18-64,1\r\n"
            "\"Individuals, Unduplicated\",Ages 65+,1\r\n",
            "Definitions");
        row("volunteers by zip, none on file", {"volunteer-list", "DB", "--group", "zip", "--csv", "OUT", "--pdf", "PDF"}, 0,
            "\xEF\xBB\xBFZip Code,Name,Address,Home Phone,Work Phone\r\n", "Grouped By Zip Code");
        row("unknown report", {"client-lists", "DB", "--csv", "OUT"}, 2, "there is no report 'client-lists'");
        row("bad date", {"grocery-log", "DB", "--from", "2026-13-01", "--csv", "OUT"}, 2, "YYYY-MM-DD");
        row("start after end", {"demographics", "DB", "--from", "2026-12-31", "--to", "2026-12-01", "--csv", "OUT"}, 2,
            "is after the end date");
        row("dates on a list", {"client-list", "DB", "--from", "2026-12-01", "--csv", "OUT"}, 2, "has no dates");
        row("bad group", {"client-list", "DB", "--group", "state", "--csv", "OUT"}, 2, "none, city or zip");
        row("group on a summary", {"demographics", "DB", "--group", "city", "--csv", "OUT"}, 2, "can be grouped");
        row("volunteer on a client report", {"client-detail", "DB", "--volunteer", "1", "--csv", "OUT"}, 2, "does not take --volunteer");
        row("id not a number", {"client-detail", "DB", "--client", "abc", "--csv", "OUT"}, 2, "record number");
        row("unknown option", {"client-list", "DB", "--colour", "--csv", "OUT"}, 2, "colour");
        row("empty sql", {"client-list", "DB", "--sql", " ", "--csv", "OUT"}, 2, "SELECT statement");
        row("bad brackets", {"agency", "DB", "--brackets", "0-17,19+", "--csv", "OUT"}, 2, "Age 18 is in no bracket.");
        row("brackets on another report", {"demographics", "DB", "--brackets", "0+", "--csv", "OUT"}, 2, "only the agency report");
        row("no output", {"client-list", "DB"}, 2, "--csv");
        row("missing database", {"client-list", "NOWHERE", "--csv", "OUT"}, 1, "");
        row("unknown client", {"client-detail", "DB", "--client", "999", "--csv", "OUT"}, 1, "There is no client with ID 999.");
        row("sql that writes", {"client-list", "DB", "--sql", "DELETE FROM Client", "--csv", "OUT"}, 1, "not authorized");
        row("cannot write", {"client-list", "DB", "--csv", "NODIR"}, 1, "cannot be written");
    }

    void reportsAreWrittenOrRefused()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, said);
        QFETCH(QString, inPdf);
        const QString file = out(QString::fromLatin1(QTest::currentDataTag()).replace(' ', '_') + ".csv");
        const QString pdf = QString(file).replace(".csv", ".pdf");
        const std::pair<const char *, QString> places[]
            = {{"DB", m_db->path()}, {"NOWHERE", out("nowhere.tmdb")},     {"OUT", file},
               {"PDF", pdf},         {"NODIR", out("no/such/folder.csv")}, {"CLIENT", QString::number(m_ids.obrien)}};
        for (const auto &[placeholder, path] : places)
            arguments.replaceInStrings(QRegularExpression(QStringLiteral("^%1$").arg(QLatin1String(placeholder))), path);
        const QByteArray before = TestDatabase::fileHash(m_db->path());
        const CliRun r = cli(QStringList {"report"} + arguments);
        QCOMPARE(r.exitCode, exitCode);
        QCOMPARE(TestDatabase::fileHash(m_db->path()), before);
        if (exitCode != 0) {
            QVERIFY2(r.err.contains(QString::fromUtf8(said)), qPrintable(r.err));
            QVERIFY(!QFile::exists(file));
            return;
        }
        const QByteArray written = read(file);
        if (said.startsWith("\xEF\xBB\xBF"))
            QCOMPARE(written, said);
        else
            for (const QByteArray &line : said.split('\n'))
                QVERIFY2(written.contains(line), line.constData());
        const QString printed = pdfText(pdf, "-layout");
        QVERIFY2(printed.contains(inPdf) && printed.contains("Page 1 of "), qPrintable(printed));
    }
};

QTEST_GUILESS_MAIN(TestCliReport)
#include "tst_cli_report.moc"
