#include "CliRun.h"
#include "ExportReading.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QFile>
#include <QTest>

// tendmark-cli export: the file other programs read, checked with a real CSV reader.
class TestCliExport : public QObject
{
    Q_OBJECT

    QTemporaryDir m_out;
    std::unique_ptr<TestDatabase> m_db;
    qint64 m_brown = 0;

    QString out(const QString &name) const { return m_out.filePath(name); }

private Q_SLOTS:
    void initTestCase()
    {
        m_db = std::make_unique<TestDatabase>();
        m_brown = TestDatabase::insert(QStringLiteral("Client"),
                                       {{"LastName", "Brown"},
                                        {"FirstName", "José"},
                                        {"Address", "1 Main St, Apt 2"},
                                        {"ZipCode", "02134"},
                                        {"SocialSecurityNumber", "012345678"},
                                        {"HomePhone", "5551234567"},
                                        {"WorkPhone", "5550100"},
                                        {"BirthDate", "1975-03-21"},
                                        {"FEMAContacted", 1},
                                        {"Comments", "first line\r\nsecond\nthird"},
                                        {"EthnicOriginID", TestDatabase::lookupId("EthnicOrigin", "Hispanic or Latino")}});
        TestDatabase::insert(QStringLiteral("Client"),
                             {{"LastName", "Adams"},
                              {"FirstName", "王"},
                              {"EmployerName", "Bob's \"Best\" Bakery"},
                              {"Comments", "=HYPERLINK(\"http://example.com\")"},
                              {"DietaryRequirements", "-low salt"},
                              {"MedicalProblems", "@risk"},
                              {"FormerAddress", "+1 Old Road"},
                              {"EmployerDurationYears", 3}});
        TestDatabase::insert(QStringLiteral("Client"), {{"LastName", "Clark"}, {"Address", "PO Box 5\tSuite 9"}});
        TestDatabase::insert(QStringLiteral("Volunteer"),
                             {{"LastName", "Diaz"}, {"FirstName", "Ana"}, {"EmergencyContactPhone", "9375550100"}, {"NumberInParty", 2}});
        basDatabase::CloseConnection();
    }

    // What a spreadsheet reads back from the file written; or, refused before anything is written, the status and
    // message, the old file at the target as it was and nothing left beside it. The database is never written.
    void exportsAreReadBackOrRefused_data()
    {
        QTest::addColumn<QString>("target");   // in the output folder, where old.csv holds an earlier export
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("kind");   // how the file is read back
        QTest::addColumn<QList<QStringList>>("rows");
        const auto written = [](const char *tag) -> QTestData & {
            return QTest::newRow(tag) << QString::fromLatin1(tag).replace(u' ', u'_') + ".csv" << 0 << QString();
        };
        // The fields follow the export's order whatever order --fields names them in; what a spreadsheet would take
        // for a formula gets an apostrophe.
        written("csv, display forms, line breaks, formulas guarded")
            << QStringList {"clients", "--fields",
                            "comments,Last Name,First Name,Social Security Number,Birth Date,Ethnic Origin,Zip Code,Home Phone,"
                            "Work Phone,FEMA Contacted,Address,Dietary Requirements,Medical Problems,Former Address"}
            << "csv"
            << QList<QStringList> {{"Last Name", "First Name", "Social Security Number", "Birth Date", "Ethnic Origin", "Address",
                                    "Zip Code", "Home Phone", "Work Phone", "Comments", "Medical Problems", "Dietary Requirements",
                                    "FEMA Contacted", "Former Address"},
                                   {"Adams", "王", "", "", "", "", "", "", "", "'=HYPERLINK(\"http://example.com\")", "'@risk",
                                    "'-low salt", "No", "'+1 Old Road"},
                                   {"Brown", "José", "012-34-5678", "21-Mar-75", "Hispanic or Latino", "1 Main St, Apt 2", "02134",
                                    "(555) 123-4567", "(   ) 555-0100", "first line  second third", "", "", "Yes", ""},
                                   {"Clark", "", "", "", "", "PO Box 5\tSuite 9", "", "", "", "", "", "", "No", ""}};
        written("tab, formulas left alone")
            << QStringList {"clients", "--tab", "--no-formula-guard", "--fields",
                            "Last Name,Address,Employer Name,Number of Years Worked,Comments,Dietary Requirements,Medical Problems,"
                            "Former Address"}
            << "tab"
            << QList<QStringList> {
                   {"Last Name", "Address", "Employer Name", "Number of Years Worked", "Comments", "Medical Problems",
                    "Dietary Requirements", "Former Address"},
                   {"Adams", "", "Bob's \"Best\" Bakery", "3", "=HYPERLINK(\"http://example.com\")", "@risk", "-low salt", "+1 Old Road"},
                   {"Brown", "1 Main St, Apt 2", "", "", "first line  second third", "", "", ""},
                   {"Clark", "PO Box 5\tSuite 9", "", "", "", "", "", ""}};
        // A hand-typed statement picks the records; the file still goes by last name.
        written("statement") << QStringList {"clients", "--fields", "Last Name", "--sql",
                                             "SELECT * FROM Client WHERE LastName <> 'Brown' ORDER BY ClientID DESC"}
                             << "csv" << QList<QStringList> {{"Last Name"}, {"Adams"}, {"Clark"}};
        written("one client") << QStringList {"clients", "--fields", "Last Name,First Name", "--client", "BROWN"} << "csv"
                              << QList<QStringList> {{"Last Name", "First Name"}, {"Brown", "José"}};
        written("volunteers") << QStringList {"volunteers", "--fields", "Last Name,Emergency Contact Phone,Number In Party"} << "csv"
                              << QList<QStringList> {{"Last Name", "Emergency Contact Phone", "Number In Party"},
                                                     {"Diaz", "(937) 555-0100", "2"}};
        const auto refused
            = [](const char *tag, const QStringList &arguments, int exitCode, const char *message, const char *target = "old.csv") {
                  QTest::newRow(tag) << QString::fromLatin1(target) << exitCode << QString::fromLatin1(message) << arguments << QString()
                                     << QList<QStringList> {};
              };
        refused("unknown field", {"clients", "--fields", "Last Name,Shoe Size"}, 2,
                "no field named Shoe Size; the fields are: Client ID, Last Name, First Name");
        refused("two types", {"clients", "--tab", "--xlsx"}, 2, "not both");
        refused("unknown kind", {"donors"}, 2, "not 'donors'");
        refused("other key", {"clients", "--volunteer", "1"}, 2, "does not take --volunteer");
        refused("statement that writes", {"clients", "--sql", "DELETE FROM Client"}, 1, "Error in SQL syntax");
        refused("no such client", {"clients", "--client", "9999"}, 1, "There is no client with ID 9999.");
        refused("missing folder csv", {"clients"}, 1, "cannot be written", "missing/out.csv");
        refused("missing folder xlsx", {"clients", "--xlsx"}, 1, "cannot be written", "missing/out.xlsx");
        refused("folder is a file csv", {"clients"}, 1, "cannot be written", "plain.txt/out.csv");
        refused("folder is a file xlsx", {"clients", "--xlsx"}, 1, "cannot be written", "plain.txt/out.xlsx");
    }

    void exportsAreReadBackOrRefused()
    {
        QFETCH(QString, target);
        QFETCH(int, exitCode);
        QFETCH(QString, message);
        QFETCH(QStringList, arguments);
        QFETCH(QString, kind);
        QFETCH(QList<QStringList>, rows);
        arguments.replaceInStrings(QStringLiteral("BROWN"), QString::number(m_brown));
        QVERIFY(TestDatabase::writeFile(out(QStringLiteral("old.csv")), "old export\r\n"));
        QVERIFY(TestDatabase::writeFile(out(QStringLiteral("plain.txt")), "not a folder"));
        const QByteArray database = TestDatabase::fileHash(m_db->path());
        const QString file = out(target);
        const CliRun r = cli(QStringList {"export", arguments.at(0), m_db->path(), file} + arguments.mid(1));
        QCOMPARE(r.exitCode, exitCode);
        QCOMPARE(TestDatabase::fileHash(m_db->path()), database);
        QCOMPARE(QDir(m_out.path()).entryList({"*.tmp"}, QDir::Files | QDir::Hidden), QStringList {});
        if (exitCode != 0) {
            QVERIFY2(r.err.contains(message), qPrintable(r.err));
            QFile old(file);
            QCOMPARE(old.open(QIODevice::ReadOnly) ? old.readAll() : QByteArray("(none)"),
                     QByteArray(target == QLatin1String("old.csv") ? "old export\r\n" : "(none)"));
            return;
        }
        QVERIFY(r.out.contains(QStringLiteral("(%1 record").arg(rows.size() - 1)));
        QString error;
        const QJsonObject read = readExport(file, kind, &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        QCOMPARE(exportRows(read), rows);

        // Every value quoted, one CRLF-ended line per record.
        QFile f(file);
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = f.readAll().mid(3).split('\n');
        QCOMPARE(lines.size(), rows.size() + 1);
        const QByteArray separator = kind == QLatin1String("tab") ? "\"\t\"" : "\",\"";
        for (qsizetype i = 0; i < rows.size(); ++i) {
            QVERIFY(lines.at(i).startsWith('"') && lines.at(i).endsWith("\"\r"));
            QCOMPARE(lines.at(i).count(separator), rows.at(i).size() - 1);
        }
    }

    void workbookKeepsTextAndDates()
    {
        const QString file = out(QStringLiteral("clients.xlsx"));
        const CliRun r = cli({"export", "clients", m_db->path(), file, "--xlsx"});
        QVERIFY2(r.exitCode == 0, qPrintable(r.err));
        QString error;
        const QJsonObject book = readExport(file, QStringLiteral("xlsx"), &error);
        QVERIFY2(error.isEmpty(), qPrintable(error));
        for (const char *part : {"[Content_Types].xml", "xl/workbook.xml", "xl/worksheets/sheet1.xml", "xl/styles.xml"})
            QVERIFY2(book.value("parts").toArray().contains(QString::fromLatin1(part)), part);
        const QJsonObject cells = book.value("cells").toObject();
        const auto cell = [&cells](const char *ref) { return cells.value(QString::fromLatin1(ref)).toArray(); };
        QVERIFY(book.value("boldStyles").toArray().contains(cell("A1").at(2)));
        QVERIFY(book.value("frozen").toBool());
        QVERIFY(cell("G3").at(2).toInt() != 0);   // a date style
        // Each cell's type and value. Brown is row 3, after Adams. Columns: A ID, B last name, C first name, E SSN,
        // G birth date (21 March 1975), N zip, O home phone, AD comments, AG FEMA Contacted.
        QStringList typed;
        for (const char *ref : {"A1", "A3", "B3", "C2", "E3", "G3", "N3", "O3", "AD2", "AG3"})
            typed << QStringLiteral("%1 %2 %3").arg(QLatin1String(ref), cell(ref).at(0).toString(), cell(ref).at(1).toString());
        // A workbook cell is never a formula: no apostrophe needed. Texts keep their leading zeros and display forms.
        QCOMPARE(typed,
                 (QStringList {"A1 inlineStr Client ID", "A3 n " + QString::number(m_brown), "B3 inlineStr Brown", "C2 inlineStr 王",
                               "E3 inlineStr 012-34-5678", "G3 n 27474", "N3 inlineStr 02134", "O3 inlineStr (555) 123-4567",
                               "AD2 inlineStr =HYPERLINK(\"http://example.com\")", "AG3 inlineStr Yes"}));
        for (const char *ref : {"E3", "N3", "O3"})
            QCOMPARE(cell(ref).at(2).toInt(), 0);   // plain text, no number format
        const QJsonArray widths = book.value("widths").toArray();
        QCOMPARE(widths.size(), 36);
        QVERIFY(widths.at(4).toDouble() >= 22);   // "Social Security Number"
    }
};

QTEST_GUILESS_MAIN(TestCliExport)
#include "tst_cli_export.moc"
