#include "CsvWriter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestCsvWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void csvQuotesOnlyWhatNeedsIt_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("everything");
        QTest::addColumn<QString>("written");
        QTest::newRow("plain") << "Dayton" << false << "Dayton";
        QTest::newRow("comma") << "Dayton, OH" << false << "\"Dayton, OH\"";
        QTest::newRow("quotes doubled") << "Bob \"Bo\"" << false << "\"Bob \"\"Bo\"\"\"";
        QTest::newRow("line break") << "a\r\nb" << false << "\"a\r\nb\"";
        QTest::newRow("everything quoted") << "Dayton" << true << "\"Dayton\"";
        QTest::newRow("empty, everything quoted") << "" << true << "\"\"";
    }

    void csvQuotesOnlyWhatNeedsIt()
    {
        QFETCH(QString, value);
        QFETCH(bool, everything);
        QFETCH(QString, written);
        CsvWriter::Format format;
        format.quoteEverything = everything;
        QCOMPARE(CsvWriter::field(value, format), written);
    }

    void csvFilesAreWholeOrAbsent()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("out.csv");
        QString error;
        QVERIFY(CsvWriter::write(path, {{"Section", "Item"}, {"Zhang 张", "a,b"}}, &error));
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), QByteArray("\xEF\xBB\xBFSection,Item\r\nZhang \xE5\xBC\xA0,\"a,b\"\r\n"));
        f.close();

        QVERIFY(!CsvWriter::write(dir.filePath("missing/out.csv"), {{"x"}}, &error));
        QVERIFY(error.contains("missing"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList {"out.csv"});
    }
};

QTEST_GUILESS_MAIN(TestCsvWriter)
#include "tst_csvwriter.moc"
