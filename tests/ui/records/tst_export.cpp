#include "ExportReading.h"
#include "FormTesting.h"
#include "frmClientGrid.h"
#include "frmExport.h"
#include "basDatabase.h"
#include "frmVolunteer.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QPointer>
#include <QProgressDialog>
#include <QRadioButton>
#include <QTimer>
#include <unistd.h>

// The export dialogs, worked as a user works them.
class tst_Export : public QObject
{
    Q_OBJECT

private:
    static frmExport *openExport(Desk &desk, const char *menuName)
    {
        menu(desk.main, menuName)->trigger();
        return desk.main.findChild<frmExport *>();
    }

    static void closeDialog(frmExport *dialog)
    {
        dialog->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    template<typename T = QRadioButton> static T *control(QWidget *dialog, const QString &name) { return dialog->findChild<T *>(name); }

    static QList<QCheckBox *> fieldBoxes(QWidget *dialog) { return dialog->findChildren<QCheckBox *>(QStringLiteral("chkFields")); }

    static void tick(QWidget *dialog, const QStringList &captions)
    {
        button(dialog, "cmdClearAll")->click();
        for (QCheckBox *box : fieldBoxes(dialog))
            if (captions.contains(box->text()))
                box->setChecked(true);
    }

    static QByteArray contents(const QString &path)
    {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("(missing)");
    }

private slots:
    void dialogsOfferTheirRecordsFieldsAndFile_data()
    {
        QTest::addColumn<QString>("menuName");
        QTest::addColumn<QString>("window");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QStringList>("records");   // Frame2, then each option's name and caption
        QTest::addColumn<QStringList>("fields");   // count, first and last
        QTest::addColumn<QString>("browseTitle");
        QTest::newRow("clients") << "mnuDataExportClients"
                                 << "mnuDataClientTable"
                                 << "Export Client Data"
                                 << QStringList {"Clients To Export",  "optAllClients",    "&All clients",   "optCurrentRecordset",
                                                 "Current &recordset", "optCurrentClient", "Current &client"}
                                 << QStringList {"36", "Client ID", "Relatives Searching For"} << "Export Client Data To ...";
        QTest::newRow("volunteers") << "mnuDataExportVolunteers"
                                    << "mnuDataVolunteers"
                                    << "Export Volunteer  Data"
                                    << QStringList {"Records To Export",  "optAllVolunteers",    "&All volunteers",   "optCurrentRecordset",
                                                    "Current &recordset", "optCurrentVolunteer", "&Current volunteer"}
                                    << QStringList {"18", "Volunteer ID", "Comments"} << "Export Volunteer Data To ...";
    }

    void dialogsOfferTheirRecordsFieldsAndFile()
    {
        QFETCH(QString, menuName);
        QFETCH(QString, window);
        QFETCH(QString, title);
        QFETCH(QStringList, records);
        QFETCH(QStringList, fields);
        QFETCH(QString, browseTitle);
        ClientWorld desk;
        frmExport *dialog = openExport(desk, qPrintable(menuName));
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), title);
        QCOMPARE(control<QGroupBox>(dialog, "Frame2")->title(), records.at(0));
        for (int i = 1; i < records.size(); i += 2)
            QCOMPARE(control(dialog, records.at(i))->text(), records.at(i + 1));
        QVERIFY(control(dialog, records.at(1))->isChecked());
        // No list of that kind is open: the "current" options have nothing to read.
        QVERIFY(!control(dialog, records.at(3))->isEnabled());
        QVERIFY(!control(dialog, records.at(5))->isEnabled());
        const QList<QCheckBox *> boxes = fieldBoxes(dialog);
        QCOMPARE(QString::number(boxes.size()), fields.at(0));
        QCOMPARE(boxes.first()->text(), fields.at(1));
        QCOMPARE(boxes.last()->text(), fields.at(2));
        button(dialog, "cmdCheckAll")->click();
        QVERIFY(std::all_of(boxes.begin(), boxes.end(), [](QCheckBox *b) { return b->isChecked(); }));
        button(dialog, "cmdClearAll")->click();
        QVERIFY(std::none_of(boxes.begin(), boxes.end(), [](QCheckBox *b) { return b->isChecked(); }));

        // The save dialog; a workbook's name chooses the workbook, where no formula can run.
        QVERIFY(control<QCheckBox>(dialog, "chkFormulaGuard")->isChecked());
        desk.prompts.answerFile(QStringLiteral("/tmp/people.xlsx"));
        button(dialog, "cmdBrowse")->click();
        const Prompt::FileRequest request = desk.prompts.fileRequests().last();
        QVERIFY(request.save);
        QCOMPARE(request.title, browseTitle);
        QCOMPARE(request.defaultName, QStringLiteral("export.csv"));
        QCOMPARE(request.defaultSuffix, QStringLiteral("csv"));
        QVERIFY(request.filter.startsWith(QStringLiteral("CSV (comma delimited) (*.csv);;Text (tab delimited) (*.txt);;")));
        QCOMPARE(control<QLineEdit>(dialog, "txtFileName")->text(), QStringLiteral("/tmp/people.xlsx"));
        QVERIFY(control(dialog, "optWorkbook")->isChecked());
        QVERIFY(!control<QCheckBox>(dialog, "chkFormulaGuard")->isEnabled());
        control(dialog, "optTabDelimited")->setChecked(true);
        QCOMPARE(control<QLineEdit>(dialog, "txtFileName")->text(), QStringLiteral("/tmp/people.txt"));
        closeDialog(dialog);

        menu(desk.main, qPrintable(window))->trigger();
        dialog = openExport(desk, qPrintable(menuName));
        QVERIFY(control(dialog, records.at(3))->isEnabled());
        QVERIFY(control(dialog, records.at(5))->isEnabled());
        closeDialog(dialog);
    }

    void refusalsWriteNothing_data()
    {
        QTest::addColumn<QString>("menuName");
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("option");
        QTest::addColumn<bool>("fields");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::newRow("no file name") << "mnuDataExportClients"
                                      << "" << QString() << true << "Required Field Missing"
                                      << "An export file name is required.";
        QTest::newRow("no field") << "mnuDataExportClients"
                                  << "out.csv" << QString() << false << "Required Field Missing"
                                  << "At least one field must be checked.";
        QTest::newRow("no client shown") << "mnuDataExportClients"
                                         << "out.csv"
                                         << "optCurrentClient" << true << "Export Data"
                                         << "No client has been selected.";
        QTest::newRow("no volunteer shown") << "mnuDataExportVolunteers"
                                            << "out.csv"
                                            << "optCurrentVolunteer" << true << "Export Data"
                                            << "No volunteer has been selected.";
    }

    void refusalsWriteNothing()
    {
        QFETCH(QString, menuName);
        QFETCH(QString, fileName);
        QFETCH(QString, option);
        QFETCH(bool, fields);
        QFETCH(QString, title);
        QFETCH(QString, text);
        ClientWorld desk;
        // The lists are open, on no record: an empty client table, a new volunteer.
        menu(desk.main, "mnuDataClientTable")->trigger();
        menu(desk.main, "mnuDataVolunteers")->trigger();
        frmExport *dialog = openExport(desk, qPrintable(menuName));
        const QString path = fileName.isEmpty() ? QString() : QDir(desk.db.folder()).filePath(fileName);
        control<QLineEdit>(dialog, "txtFileName")->setText(path);
        if (fields)
            button(dialog, "cmdCheckAll")->click();
        if (!option.isEmpty())
            control(dialog, option)->setChecked(true);
        button(dialog, "cmdOK")->click();
        QCOMPARE(desk.prompts.last(), (Prompt::Message {title, text, Prompt::Icon::Exclamation, Prompt::Ok}));
        QVERIFY(dialog->isVisible());
        QVERIFY(path.isEmpty() || !QFile::exists(path));
        closeDialog(dialog);
    }

    // The filtered list's records, re-sorted by last name; then the list's current client alone.
    void currentRecordsetAndClient()
    {
        ClientWorld desk;
        const qint64 zed = ClientWorld::addClient(QStringLiteral("Zed"), QStringLiteral("Al"), QStringLiteral("A"),
                                                  {{QStringLiteral("City"), QStringLiteral("Pekin")}});
        ClientWorld::addClient(QStringLiteral("Abbot"), QStringLiteral("Amy"), QStringLiteral("B"),
                               {{QStringLiteral("City"), QStringLiteral("Peoria")}});
        ClientWorld::addClient(QStringLiteral("Young"), QStringLiteral("王"), QStringLiteral("C"),
                               {{QStringLiteral("City"), QStringLiteral("Pekin")}});
        ClientWorld::addClient(QStringLiteral("Baker"), QStringLiteral("José"), QStringLiteral("D"),
                               {{QStringLiteral("City"), QStringLiteral("Pekin")}});
        auto *grid = desk.open<frmClientGrid>("mnuDataClientTable");
        grid->setSQL(QStringLiteral("SELECT * FROM Client WHERE City = 'Pekin' ORDER BY FirstName DESC"));
        grid->ExecuteSQL();
        grid->showRecord(QString::number(zed));

        const QString path = QDir(desk.db.folder()).filePath(QStringLiteral("pekin.csv"));
        const QList<std::pair<QString, QList<QStringList>>> runs = {
            {QStringLiteral("optCurrentRecordset"),
             {{"Last Name", "First Name", "City"}, {"Baker", "José", "Pekin"}, {"Young", "王", "Pekin"}, {"Zed", "Al", "Pekin"}}},
            {QStringLiteral("optCurrentClient"), {{"Last Name", "First Name", "City"}, {"Zed", "Al", "Pekin"}}},
        };
        for (const auto &[option, rows] : runs) {
            QPointer<frmExport> dialog = openExport(desk, "mnuDataExportClients");
            control<QLineEdit>(dialog, "txtFileName")->setText(path);
            control(dialog, option)->setChecked(true);
            tick(dialog, {"Last Name", "First Name", "City"});
            button(dialog, "cmdOK")->click();
            QCOMPARE(desk.prompts.last(),
                     (Prompt::Message {"Export Client Data", "Export file created.", Prompt::Icon::Information, Prompt::Ok}));
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(!dialog);
            QString error;
            const QJsonObject file = readExport(path, QStringLiteral("csv"), &error);
            QVERIFY2(error.isEmpty(), qPrintable(error));
            QCOMPARE(exportRows(file), rows);
        }
    }

    // What cannot be written is said, and an earlier export stays as it was.
    void failedWritesKeepTheOldFile_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("listSql");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::newRow("folder is a file") << "old.csv/new.csv" << QString() << "Export Client Data"
                                          << "could not be written";
        QTest::newRow("missing folder, workbook") << "missing/new.xlsx" << QString() << "Export Client Data"
                                                  << "could not be written";
        QTest::newRow("statement fails") << "old.csv"
                                         << "SELECT * FROM Client WHERE NoSuchColumn = 1"
                                         << "SQL Error"
                                         << "no such column: NoSuchColumn";
        if (geteuid() != 0)
            QTest::newRow("read-only folder") << "locked/old.csv" << QString() << "Export Client Data"
                                              << "could not be written";
    }

    void failedWritesKeepTheOldFile()
    {
        QFETCH(QString, fileName);
        QFETCH(QString, listSql);
        QFETCH(QString, title);
        QFETCH(QString, text);
        ClientWorld desk;
        ClientWorld::addClient(QStringLiteral("Abbot"), QStringLiteral("Amy"));
        const QDir folder(desk.db.folder());
        for (const QString &old : {QStringLiteral("old.csv"), QStringLiteral("locked/old.csv")}) {
            folder.mkpath(QFileInfo(folder.filePath(old)).path());
            QFile f(folder.filePath(old));
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write("old export\r\n");
        }
        QFile::setPermissions(folder.filePath(QStringLiteral("locked")), QFile::ReadOwner | QFile::ExeOwner);
        auto *grid = desk.open<frmClientGrid>("mnuDataClientTable");
        if (!listSql.isEmpty())
            grid->setSQL(listSql);

        frmExport *dialog = openExport(desk, "mnuDataExportClients");
        control<QLineEdit>(dialog, "txtFileName")->setText(folder.filePath(fileName));
        control(dialog, listSql.isEmpty() ? "optAllClients" : "optCurrentRecordset")->setChecked(true);
        if (fileName.endsWith(QLatin1String("xlsx")))
            control(dialog, "optWorkbook")->setChecked(true);
        button(dialog, "cmdCheckAll")->click();
        button(dialog, "cmdOK")->click();
        QCOMPARE(desk.prompts.last().title, title);
        QVERIFY2(desk.prompts.last().text.contains(text), qPrintable(desk.prompts.last().text));
        QVERIFY(dialog->isVisible());
        QCOMPARE(contents(folder.filePath(QStringLiteral("old.csv"))), QByteArray("old export\r\n"));
        QCOMPARE(contents(folder.filePath(QStringLiteral("locked/old.csv"))), QByteArray("old export\r\n"));
        QCOMPARE(folder.entryList({"*.tmp", "*.xlsx", "new*"}, QDir::Files | QDir::Hidden), QStringList {});
        QFile::setPermissions(folder.filePath(QStringLiteral("locked")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        closeDialog(dialog);
    }

    // A long export shows its progress; cancelling it writes nothing and keeps the earlier file.
    void cancelledExportKeepsTheOldFile()
    {
        ClientWorld desk;
        basDatabase::Execute(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10000) "
                                            "INSERT INTO Client (LastName) SELECT 'Name ' || i FROM n"));
        const QString path = QDir(desk.db.folder()).filePath(QStringLiteral("old.csv"));
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("old export\r\n");
        old.close();

        frmExport *dialog = openExport(desk, "mnuDataExportClients");
        control<QLineEdit>(dialog, "txtFileName")->setText(path);
        button(dialog, "cmdCheckAll")->click();
        int total = 0;
        QTimer canceller;
        connect(&canceller, &QTimer::timeout, dialog, [dialog, &total] {
            if (auto *progress = dialog->findChild<QProgressDialog *>()) {
                total = progress->maximum();
                progress->cancel();
            }
        });
        canceller.start(0);
        button(dialog, "cmdOK")->click();
        QCOMPARE(total, 10000);
        QVERIFY(desk.prompts.messages().isEmpty());
        QVERIFY(dialog->isVisible());
        QCOMPARE(contents(path), QByteArray("old export\r\n"));
        QCOMPARE(QDir(desk.db.folder()).entryList({"*.csv*"}, QDir::Files | QDir::Hidden), QStringList {"old.csv"});
        closeDialog(dialog);
    }
};

QTEST_MAIN(tst_Export)
#include "tst_export.moc"
