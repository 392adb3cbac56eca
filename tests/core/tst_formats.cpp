#include "CsvReader.h"
#include "CsvWriter.h"
#include "Money.h"
#include "SqlText.h"
#include "TestDatabase.h"
#include "basTendmark.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace basTendmark;

// How values are shown, and how lists are read from and written to delimited text files.
class TestFormats : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dates()
    {
        QCOMPARE(ParseDate("1/5/2026"), QDate(2026, 1, 5));
        QCOMPARE(ParseDate("2026-01-05"), QDate(2026, 1, 5));
        QVERIFY(!ParseDate("13/01/2026").isValid());
        QVERIFY(!ParseDate("01/05/26").isValid());
        QCOMPARE(StripPhoneNumber("(555) 123-4567"), QStringLiteral("5551234567"));
    }

    void money()
    {
        // Read as cents, half to even at the cent, or refused.
        const std::pair<const char *, std::optional<qint64>> read[]
            = {{"$1,234.50", 123450}, {"1234.5", 123450}, {".5", 50},     {"(12.00)", -1200}, {"0.125", 12},
               {"0.135", 14},         {"0.1251", 13},     {"12.5.0", {}}, {"1,23", {}},       {"", {}}};
        for (const auto &[text, cents] : read)
            QVERIFY2(Money::parse(text) == cents, text);
        const std::pair<qint64, const char *> shown[] = {{123450, "$1,234.50"}, {5, "$0.05"}, {-120000000, "($1,200,000.00)"}};
        for (const auto &[cents, text] : shown)
            QCOMPARE(Money::format(cents), QString::fromLatin1(text));
        QCOMPARE(Money::plain(-5), QStringLiteral("-0.05"));
        const std::pair<qint64, int> units[] = {{40, 0}, {50, 0}, {60, 1}, {150, 2}, {250, 2}};   // half to even
        for (const auto &[cents, whole] : units)
            QCOMPARE(Money::wholeUnitsHalfEven(cents), whole);
    }

    void sqlExpressionsMatchTheProgramsFormats()
    {
        TestDatabase db;
        auto eval = [](const QString &expression, const QVariant &v) {
            return TestDatabase::scalar("SELECT " + expression + " FROM (SELECT ? AS v)", {v}).toString();
        };
        // Each stored value shown alike by the program and its SQL; what fits no form is shown as stored.
        const std::pair<QString, QString> phones[]
            = {{"5551234567", "(555) 123-4567"}, {"1234567", "(   ) 123-4567"}, {"12345678", "12345678"}},
            ssns[] = {{"123456789", "123-45-6789"}, {"1234", "1234"}};
        for (const auto &[stored, shown] : phones)
            QVERIFY2(FormatPhone(stored) == shown && eval(SqlText::phone("v"), stored) == shown, qPrintable(stored));
        for (const auto &[stored, shown] : ssns)
            QVERIFY2(FormatSSN(stored) == shown && eval(SqlText::ssn("v"), stored) == shown, qPrintable(stored));
        QVERIFY(FormatIsoDate("2026-01-05") == "01/05/2026" && eval(SqlText::date("v"), "2026-01-05") == "01/05/2026");
        QCOMPARE(FormatIsoDate(""), QString());
        for (qint64 c : {0LL, 5LL, 123450LL, 100000000LL, -1200LL})
            QCOMPARE(eval(SqlText::currency("v"), c), Money::format(c));
        const int year = QDate::currentDate().year();
        QCOMPARE(eval(SqlText::yearsSince("v"), QString("%1-12-31").arg(year - 1)).toInt(), 1);   // calendar years, not birthdays
        QVERIFY(eval(SqlText::yearsSince("v"), QVariant()).isEmpty());
        const auto fullName = [](const char *row) {
            return TestDatabase::scalar("SELECT " + SqlText::fullName() + " FROM (SELECT " + row + ")").toString();
        };
        QCOMPARE(fullName("'Doe' AS LastName, 'Jane' AS FirstName, NULL AS MiddleInitial"), QStringLiteral("Doe, Jane "));
        QCOMPARE(fullName("NULL AS LastName, 'Jane' AS FirstName, 'Q' AS MiddleInitial"), QStringLiteral("Jane Q"));
        QCOMPARE(TestDatabase::count("Client", "LastName LIKE ? ESCAPE '\\'", {SqlText::likeContains("100%")}), 0);
        TestDatabase::insert("Client", {{"LastName", "100% Smith"}});
        TestDatabase::insert("Client", {{"LastName", "1000 Smith"}});
        QCOMPARE(TestDatabase::count("Client", "LastName LIKE ? ESCAPE '\\'", {SqlText::likeContains("100%")}), 1);
    }

    // Delimited text files: read as spreadsheets write them, written as spreadsheets read them.
    // What a file reads as: its encoding and header, then each row as "line: fields" or
    // "line! problem"; or why it is refused as a whole.
    void filesReadAsSpreadsheetsWriteThem_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("read");
        const auto row = [](const char *tag, const QByteArray &bytes, const QStringList &read) { QTest::newRow(tag) << bytes << read; };
        row("UTF-8 with BOM, CRLF",
            "\xEF\xBB\xBF"
            "A,B\r\n\"Jos\xC3\xA9\",\"\xE7\x8E\x8B\"\r\n",
            {"UTF-8 A|B", "2: José|王"});
        row("UTF-8 without BOM, LF", "A,B\nJos\xC3\xA9,x\n", {"UTF-8 A|B", "2: José|x"});
        row("Windows-1252", "A,B\r\nJos\xE9,\x80 5\r\n", {"Windows-1252 A|B", "2: José|€ 5"});
        row("UTF-16 with BOM",
            QByteArray("\xFF\xFE"
                       "A\0\t\0B\0\r\0\n\0\xE9\0\t\0x\0",
                       18),
            {"UTF-16 A|B", "2: é|x"});
        row("tab-delimited, commas kept", "A\tB\r\n1,5\t\"x\ty\"\r\n", {"UTF-8 A|B", "2: 1,5|x\ty"});
        row("quotes doubled, line breaks inside, lines counted", "A,B\r\n\"say \"\"hi\"\"\",\"one\r\ntwo\nthree\"\r\n\"\",last\r\n",
            {"UTF-8 A|B", "2: say \"hi\"|one\r\ntwo\nthree", "5: |last"});
        row("blank and empty rows skipped, no final line end", "A,B\n\n1,2\n,\n3,4", {"UTF-8 A|B", "3: 1|2", "5: 3|4"});
        row("ragged rows", "A,B,C\n1,2,3\n1,2\n1,2,3,4\n4,5,6\n",
            {"UTF-8 A|B|C", "2: 1|2|3", "3! The row has 2 values where the header has 3 columns.",
             "4! The row has 4 values where the header has 3 columns.", "5: 4|5|6"});
        row("unclosed quote swallows the rest", "A,B\n1,2\n3,\"never closed\n5,6\n",
            {"UTF-8 A|B", "2: 1|2", "3! A quoted value that starts on line 3 is never closed."});
        row("empty", "", {"The file is empty."});
        row("BOM and blank lines", "\xEF\xBB\xBF\r\n\r\n  \r\n", {"The file is empty."});
        row("picture", QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16), {"The file is not a text file: it holds binary data."});
        row("control characters", QByteArray(200, '\x01'), {"The file is not a text file: it holds binary data."});
    }

    void filesReadAsSpreadsheetsWriteThem()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, read);
        CsvReader::Table table;
        QString error;
        QStringList found;
        if (!CsvReader::parse(bytes, &table, &error))
            found << error;
        else
            found << table.encoding + u' ' + table.header.join(u'|');
        for (const CsvReader::Record &r : std::as_const(table.records))
            found << QString::number(r.line) + (r.problem.isEmpty() ? ": " + r.fields.join(u'|') : "! " + r.problem);
        QCOMPARE(found, read);
    }

    void filesThatCannotBeReadAreRefused()
    {
        QTemporaryDir dir;
        CsvReader::Table table;
        QString why;
        QVERIFY(!CsvReader::read(dir.filePath("no/such/in.csv"), &table, &why));
        QVERIFY(why.contains("cannot be read"));
        QFile huge(dir.filePath("huge.csv"));
        QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(qint64(3) << 29));   // 1.5 GB, sparse
        huge.close();
        QVERIFY(!CsvReader::read(huge.fileName(), &table, &why));
        QCOMPARE(why, "The file is too large to be a list of clients (1536 MB).");
    }

    void hundredThousandRowsReadQuickly()
    {
        QByteArray bytes = "Last Name,First Name,Comments\r\n";
        for (int i = 0; i < 100000; ++i)
            bytes += "\"Name" + QByteArray::number(i) + "\",\"First\",\"a, \"\"quoted\"\" note\"\r\n";
        QElapsedTimer timer;
        timer.start();
        CsvReader::Table table;
        QString error;
        QVERIFY(CsvReader::parse(bytes, &table, &error));
        QCOMPARE(table.records.size(), 100000);
        QCOMPARE(table.records.last().fields, (QStringList {"Name99999", "First", "a, \"quoted\" note"}));
        QCOMPARE(table.records.last().line, 100001);
        QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
    }

    void writerQuotesOnlyWhatNeedsIt()
    {
        CsvWriter::Format everything;
        everything.quoteEverything = true;
        QCOMPARE(CsvWriter::field("Dayton", {}), "Dayton");
        QCOMPARE(CsvWriter::field("Dayton, OH", {}), "\"Dayton, OH\"");
        QCOMPARE(CsvWriter::field("Bob \"Bo\"", {}), "\"Bob \"\"Bo\"\"\"");
        QCOMPARE(CsvWriter::field("a\r\nb", {}), "\"a\r\nb\"");
        QCOMPARE(CsvWriter::field("a\rb", {}), "\"a\rb\"");   // a lone carriage return ends a line to some readers
        QCOMPARE(CsvWriter::field("Dayton", everything), "\"Dayton\"");
        QCOMPARE(CsvWriter::field("", everything), "\"\"");
    }
};

QTEST_GUILESS_MAIN(TestFormats)
#include "tst_formats.moc"
