#include "ExportReading.h"
#include "FormTesting.h"
#include "frmClientGrid.h"
#include "frmExport.h"
#include "basDatabase.h"
#include "frmVolunteer.h"

#include <QCheckBox>
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

    static QList<QCheckBox *> fieldBoxes(QWidget *dialog) { return dialog->findChildren<QCheckBox *>("chkFields"); }

private slots:
    // Each dialog offers its records (the current ones only while a list of its kind is open), its fields and its file.
    void dialogsOfferTheirRecordsFieldsAndFile()
    {
        ClientWorld desk;
        // menu, list window, records (all, current recordset, current record), fields (count, first, last), browse title
        const char *const kinds[][9] = {{"mnuDataExportClients", "mnuDataClientTable", "optAllClients", "optCurrentRecordset",
                                         "optCurrentClient", "36", "Client ID", "Relatives Searching For", "Export Client Data To ..."},
                                        {"mnuDataExportVolunteers", "mnuDataVolunteers", "optAllVolunteers", "optCurrentRecordset",
                                         "optCurrentVolunteer", "18", "Volunteer ID", "Comments", "Export Volunteer Data To ..."}};
        for (const auto &kind : kinds) {
            const char *menuName = kind[0], *window = kind[1];
            const QStringList records {kind[2], kind[3], kind[4]}, fields {kind[5], kind[6], kind[7]};
            const QString browseTitle = QLatin1String(kind[8]);
            frmExport *dialog = openExport(desk, menuName);
            QVERIFY(control(dialog, records.at(0))->isChecked());
            QVERIFY(!control(dialog, records.at(1))->isEnabled() && !control(dialog, records.at(2))->isEnabled());
            const QList<QCheckBox *> boxes = fieldBoxes(dialog);
            QCOMPARE(QStringList({QString::number(boxes.size()), boxes.first()->text(), boxes.last()->text()}), fields);
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
            QCOMPARE(request.title + '|' + request.defaultName, browseTitle + "|export.csv");
            QVERIFY(request.filter.startsWith(QStringLiteral("CSV (comma delimited) (*.csv);;Text (tab delimited) (*.txt);;")));
            QVERIFY(control(dialog, "optWorkbook")->isChecked());
            QVERIFY(!control<QCheckBox>(dialog, "chkFormulaGuard")->isEnabled());
            control(dialog, "optTabDelimited")->setChecked(true);
            QCOMPARE(control<QLineEdit>(dialog, "txtFileName")->text(), "/tmp/people.txt");
            closeDialog(dialog);

            // With a list of its kind open, the current records are offered too.
            menu(desk.main, window)->trigger();
            dialog = openExport(desk, menuName);
            QVERIFY(control(dialog, records.at(1))->isEnabled() && control(dialog, records.at(2))->isEnabled());
            closeDialog(dialog);
        }
    }

    // What the dialog refuses, it says, the dialog staying open, and no file is written.
    void refusalsWriteNothing()
    {
        ClientWorld desk;
        // The lists are open, on no record: an empty client table, a new volunteer.
        menu(desk.main, "mnuDataClientTable")->trigger();
        menu(desk.main, "mnuDataVolunteers")->trigger();
        const char *clients = "mnuDataExportClients", *missing = "Required Field Missing";
        // menu, file name, option chosen, fields ticked, refusal
        const std::tuple<const char *, const char *, const char *, bool, const char *, const char *> cases[]
            = {{clients, "", nullptr, true, missing, "An export file name is required."},
               {clients, "out.csv", nullptr, false, missing, "At least one field must be checked."},
               {clients, "out.csv", "optCurrentClient", true, "Export Data", "No client has been selected."},
               {"mnuDataExportVolunteers", "out.csv", "optCurrentVolunteer", true, "Export Data", "No volunteer has been selected."}};
        for (const auto &[menuName, fileName, option, fields, title, text] : cases) {
            frmExport *dialog = openExport(desk, menuName);
            const QString path = *fileName ? QDir(desk.db.folder()).filePath(QLatin1String(fileName)) : QString();
            control<QLineEdit>(dialog, "txtFileName")->setText(path);
            if (fields)
                button(dialog, "cmdCheckAll")->click();
            if (option)
                control(dialog, QLatin1String(option))->setChecked(true);
            button(dialog, "cmdOK")->click();
            QCOMPARE(desk.prompts.last(), (Prompt::Message {title, text, Prompt::Icon::Exclamation}));
            QVERIFY(dialog->isVisible());
            QVERIFY(path.isEmpty() || !QFile::exists(path));
            closeDialog(dialog);
        }
    }

    // The filtered list's records, re-sorted by last name; then the list's current client alone.
    void currentRecordsetAndClient()
    {
        ClientWorld desk;
        const qint64 zed = ClientWorld::addClient("Zed", "Al", "A", {{"City", "Pekin"}});
        ClientWorld::addClient("Abbot", "Amy", "B", {{"City", "Peoria"}});
        ClientWorld::addClient("Young", "王", "C", {{"City", "Pekin"}});
        ClientWorld::addClient("Baker", "José", "D", {{"City", "Pekin"}});
        auto *grid = desk.open<frmClientGrid>("mnuDataClientTable");
        grid->setSQL(QStringLiteral("SELECT * FROM Client WHERE City = 'Pekin' ORDER BY FirstName DESC"));
        grid->ExecuteSQL();
        grid->showRecord(QString::number(zed));

        const QString path = QDir(desk.db.folder()).filePath(QStringLiteral("pekin.csv"));
        const QList<std::pair<QString, QList<QStringList>>> runs = {
            {"optCurrentRecordset",
             {{"Last Name", "First Name", "City"}, {"Baker", "José", "Pekin"}, {"Young", "王", "Pekin"}, {"Zed", "Al", "Pekin"}}},
            {"optCurrentClient", {{"Last Name", "First Name", "City"}, {"Zed", "Al", "Pekin"}}},
        };
        for (const auto &[option, rows] : runs) {
            QPointer<frmExport> dialog = openExport(desk, "mnuDataExportClients");
            control<QLineEdit>(dialog, "txtFileName")->setText(path);
            control(dialog, option)->setChecked(true);
            for (QCheckBox *box : fieldBoxes(dialog))
                box->setChecked(rows.first().contains(box->text()));
            button(dialog, "cmdOK")->click();
            QCOMPARE(desk.prompts.last(), (Prompt::Message {"Export Client Data", "Export file created.", Prompt::Icon::Information}));
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(!dialog);
            QString error;
            const QJsonObject file = readExport(path, QStringLiteral("csv"), &error);
            QVERIFY2(error.isEmpty(), qPrintable(error));
            QCOMPARE(exportRows(file), rows);
        }
    }

    // What cannot be written is said, a cancelled export says nothing, and an earlier export stays as it was.
    void failedWritesKeepTheOldFile_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("listSql");
        QTest::addColumn<QString>("title");   // empty: cancelled while its progress shows
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const char *fileName, const char *listSql, const char *title, const char *text) {
            QTest::newRow(name) << fileName << listSql << title << text;
        };
        row("missing folder, workbook", "missing/new.xlsx", "", "Export Client Data", "could not be written");
        row("statement fails", "old.csv", "SELECT * FROM Client WHERE NoSuchColumn = 1", "SQL Error", "no such column: NoSuchColumn");
        row("cancelled", "old.csv", "", "", "");
        if (geteuid() != 0)
            row("read-only folder", "locked/old.csv", "", "Export Client Data", "could not be written");
    }

    void failedWritesKeepTheOldFile()
    {
        QFETCH(QString, fileName);
        QFETCH(QString, listSql);
        QFETCH(QString, title);
        QFETCH(QString, text);
        ClientWorld desk;
        basDatabase::Execute(QStringLiteral("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) "
                                            "INSERT INTO Client (LastName) SELECT 'Name ' || i FROM n"),
                             {title.isEmpty() ? 10000 : 1});
        const QDir folder(desk.db.folder());
        for (const QString &old : {QStringLiteral("old.csv"), QStringLiteral("locked/old.csv")}) {
            folder.mkpath(QFileInfo(folder.filePath(old)).path());
            QVERIFY(TestDatabase::writeFile(folder.filePath(old), "old export\r\n"));
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
        int total = 0;
        QTimer canceller;
        connect(&canceller, &QTimer::timeout, dialog, [dialog, &total] {
            if (auto *progress = dialog->findChild<QProgressDialog *>()) {
                total = progress->maximum();
                progress->cancel();
            }
        });
        if (title.isEmpty())
            canceller.start(0);
        button(dialog, "cmdOK")->click();
        if (title.isEmpty()) {
            QCOMPARE(total, 10000);
            QVERIFY(desk.prompts.messages().isEmpty());
        } else {
            QCOMPARE(desk.prompts.last().title, title);
            QVERIFY2(desk.prompts.last().text.contains(text), qPrintable(desk.prompts.last().text));
        }
        QVERIFY(dialog->isVisible());
        for (const char *old : {"old.csv", "locked/old.csv"})
            QCOMPARE(TestDatabase::fileHash(folder.filePath(QLatin1String(old))),
                     QCryptographicHash::hash("old export\r\n", QCryptographicHash::Sha256));
        QCOMPARE(folder.entryList({"*.tmp", "*.xlsx", "new*", "*.csv?*"}, QDir::Files | QDir::Hidden), QStringList {});
        QFile::setPermissions(folder.filePath(QStringLiteral("locked")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        closeDialog(dialog);
    }
};

QTEST_MAIN(tst_Export)
#include "tst_export.moc"
