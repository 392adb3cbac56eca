#include "ExportFile.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QDir>
#include <QFile>
#include <QTest>

// An export that is cancelled or cannot finish leaves no trace: the earlier file
// stays, no temporary file is left behind.
class TestExportFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cancelKeepsTheEarlierFile_data()
    {
        QTest::addColumn<bool>("workbook");
        QTest::newRow("csv") << false;
        QTest::newRow("workbook") << true;
    }

    void cancelKeepsTheEarlierFile()
    {
        QFETCH(bool, workbook);
        TestDatabase db;
        QVERIFY(basDatabase::Connection().transaction());
        for (int i = 0; i < 1200; ++i)
            TestDatabase::insert(QStringLiteral("Client"), {{QStringLiteral("LastName"), QStringLiteral("Name %1").arg(i)}});
        QVERIFY(basDatabase::Connection().commit());
        const QString path = QDir(db.folder()).filePath(QStringLiteral("earlier.export"));
        QFile earlier(path);
        QVERIFY(earlier.open(QIODevice::WriteOnly));
        earlier.write("earlier");
        earlier.close();

        ExportFile::Request request;
        request.fields = ExportFields::all(RecordScope::Kind::Client);
        request.type = workbook ? ExportFile::FileType::Workbook : ExportFile::FileType::CommaSeparated;
        request.path = path;
        QList<qint64> steps;
        const ExportFile::Result result = ExportFile::ExportFile(request, [&steps](qint64 done, qint64 total) {
            steps << done << total;
            return false;
        });
        QVERIFY(result.cancelled);
        QVERIFY(!result.ok);
        QCOMPARE(steps, (QList<qint64> {500, 1200}));
        QVERIFY(earlier.open(QIODevice::ReadOnly));
        QCOMPARE(earlier.readAll(), QByteArray("earlier"));
        QCOMPARE(QDir(db.folder()).entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("export")), QStringList {"earlier.export"});

        // Run to the end, the same request replaces it.
        const ExportFile::Result done = ExportFile::ExportFile(request);
        QVERIFY2(done.ok, qPrintable(done.error));
        QCOMPARE(done.rows, 1200);
        QVERIFY(QFileInfo(path).size() > 1200 * 10);
    }

    // The display forms the command-line export's files do not show (they show the rest).
    void valuesTakeTheirDisplayForms_data()
    {
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QString>("written");
        QTest::newRow("birth date, early century") << "Birth Date" << QVariant("2004-01-09") << "09-Jan-04";
        QTest::newRow("carriage return alone") << "Comments" << QVariant("a\rb") << "a b";
    }

    void valuesTakeTheirDisplayForms()
    {
        QFETCH(QString, caption);
        QFETCH(QVariant, stored);
        QFETCH(QString, written);
        QStringList unknown;
        const QList<ExportFields::Field> field = ExportFields::byCaption(RecordScope::Kind::Client, {caption}, &unknown);
        QCOMPARE(field.size(), 1);
        QCOMPARE(ExportFile::FormatValue(field.first(), stored, true), written);
    }
};

QTEST_GUILESS_MAIN(TestExportFile)
#include "tst_exportfile.moc"
