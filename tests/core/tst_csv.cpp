#include "CsvReader.h"
#include "CsvWriter.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

// Delimited text files: read as spreadsheets write them, written as spreadsheets read them.
class TestCsv : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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
        QCOMPARE(CsvWriter::field("Dayton", everything), "\"Dayton\"");
        QCOMPARE(CsvWriter::field("", everything), "\"\"");
    }
};

QTEST_GUILESS_MAIN(TestCsv)
#include "tst_csv.moc"
