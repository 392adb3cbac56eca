#include "CsvReader.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using Rows = QList<QStringList>;

class TestCsvReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesAsSpreadsheetsWriteThem_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("encoding");
        QTest::addColumn<QStringList>("header");
        QTest::addColumn<Rows>("rows");
        QTest::addColumn<QList<int>>("lines");

        const QStringList ab = {"A", "B"};
        QTest::newRow("UTF-8 with BOM, CRLF") << QByteArray("\xEF\xBB\xBF"
                                                            "A,B\r\n\"Jos\xC3\xA9\",\"\xE7\x8E\x8B\"\r\n")
                                              << "UTF-8" << ab << Rows {{"José", "王"}} << QList<int> {2};
        QTest::newRow("UTF-8 without BOM, LF") << QByteArray("A,B\nJos\xC3\xA9,x\n") << "UTF-8" << ab << Rows {{"José", "x"}}
                                               << QList<int> {2};
        QTest::newRow("Windows-1252") << QByteArray("A,B\r\nJos\xE9,\x80 5\r\n") << "Windows-1252" << ab << Rows {{"José", "€ 5"}}
                                      << QList<int> {2};
        QTest::newRow("UTF-16 with BOM") << QByteArray("\xFF\xFE"
                                                       "A\0\t\0B\0\r\0\n\0\xE9\0\t\0x\0",
                                                       18)
                                         << "UTF-16" << ab << Rows {{"é", "x"}} << QList<int> {2};
        QTest::newRow("tab-delimited, commas kept")
            << QByteArray("A\tB\r\n1,5\t\"x\ty\"\r\n") << "UTF-8" << ab << Rows {{"1,5", "x\ty"}} << QList<int> {2};
        QTest::newRow("quotes doubled, line breaks inside, lines counted")
            << QByteArray("A,B\r\n\"say \"\"hi\"\"\",\"one\r\ntwo\nthree\"\r\n\"\",last\r\n") << "UTF-8" << ab
            << Rows {{"say \"hi\"", "one\r\ntwo\nthree"}, {"", "last"}} << QList<int> {2, 5};
        QTest::newRow("blank and empty rows skipped, no final line end")
            << QByteArray("A,B\n\n1,2\n,\n3,4") << "UTF-8" << ab << Rows {{"1", "2"}, {"3", "4"}} << QList<int> {3, 5};
    }

    void filesAsSpreadsheetsWriteThem()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, encoding);
        QFETCH(QStringList, header);
        QFETCH(Rows, rows);
        QFETCH(QList<int>, lines);
        CsvReader::Table table;
        QString error;
        QVERIFY2(CsvReader::parse(bytes, &table, &error), qPrintable(error));
        QCOMPARE(table.encoding, encoding);
        QCOMPARE(table.header, header);
        Rows read;
        QList<int> starts;
        for (const CsvReader::Record &r : std::as_const(table.records)) {
            QCOMPARE(r.problem, QString());
            read << r.fields;
            starts << r.line;
        }
        QCOMPARE(read, rows);
        QCOMPARE(starts, lines);
    }

    void badRowsAreNamedByLine_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("problems");
        QTest::newRow("ragged rows") << QByteArray("A,B,C\n1,2,3\n1,2\n1,2,3,4\n4,5,6\n")
                                     << QStringList {"", "The row has 2 values where the header has 3 columns.",
                                                     "The row has 4 values where the header has 3 columns.", ""};
        QTest::newRow("unclosed quote swallows the rest")
            << QByteArray("A,B\n1,2\n3,\"never closed\n5,6\n") << QStringList {"", "A quoted value that starts on line 3 is never closed."};
    }

    void badRowsAreNamedByLine()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, problems);
        CsvReader::Table table;
        QString error;
        QVERIFY(CsvReader::parse(bytes, &table, &error));
        QStringList found;
        for (const CsvReader::Record &r : std::as_const(table.records))
            found << r.problem;
        QCOMPARE(found, problems);
    }

    void filesThatAreNotTablesAreRefused_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("error");
        QTest::newRow("empty") << QByteArray() << "The file is empty.";
        QTest::newRow("BOM and blank lines") << QByteArray("\xEF\xBB\xBF\r\n\r\n  \r\n") << "The file is empty.";
        QTest::newRow("picture") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) << "The file is not a text file: it holds binary data.";
        QTest::newRow("control characters") << QByteArray(200, '\x01') << "The file is not a text file: it holds binary data.";
    }

    void filesThatAreNotTablesAreRefused()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, error);
        CsvReader::Table table;
        QString why;
        QVERIFY(!CsvReader::parse(bytes, &table, &why));
        QCOMPARE(why, error);
        QVERIFY(!CsvReader::read("/nonexistent/folder/in.csv", &table, &why));
        QVERIFY(why.contains("cannot be read"));
    }

    void hugeFilesAreRefusedUnread()
    {
        QTemporaryDir dir;
        QFile huge(dir.filePath("huge.csv"));
        QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(qint64(3) << 29));   // 1.5 GB, sparse
        huge.close();
        CsvReader::Table table;
        QString why;
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
};

QTEST_GUILESS_MAIN(TestCsvReader)
#include "tst_csvreader.moc"
