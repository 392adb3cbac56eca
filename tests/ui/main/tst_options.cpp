#include "Backups.h"
#include "FormTesting.h"
#include "frmOptions.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPointer>
#include <QSpinBox>

class tst_options : public QObject
{
    Q_OBJECT

private:
    static frmOptions *openOptions(frmMain &main)
    {
        QTest::qWait(0);   // a dialog closed before is deleted first
        menu(main, "mnuToolsOptions")->trigger();
        auto *dialog = main.findChild<frmOptions *>();
        if (dialog) {
            dialog->activateWindow();
            QApplication::setActiveWindow(dialog);
        }
        return dialog;
    }
    template<typename T> static T *control(QWidget *form, const char *dataField)
    {
        return qobject_cast<T *>(fieldOf(form, QLatin1String(dataField)));
    }
    static void click(QWidget *form, const char *name)
    {
        button(form, name)->click();
        QApplication::processEvents();
    }
    static QString organization(const char *column)
    {
        return TestDatabase::scalar(QStringLiteral("SELECT %1 FROM Organization").arg(QLatin1String(column))).toString();
    }
    static int option(const char *column)
    {
        return TestDatabase::scalar(QStringLiteral("SELECT %1 FROM Options").arg(QLatin1String(column))).toInt();
    }

private Q_SLOTS:
    void savesAndReloadsEveryField()
    {
        // A database without its organisation and options rows: every tab shows, Cancel writes nothing, OK adds them.
        Desk s;
        TestDatabase::scalar("DELETE FROM Organization");
        TestDatabase::scalar("DELETE FROM Options");
        s.main.refreshOptionFlags();
        frmOptions *dialog = openOptions(s.main);
        QCOMPARE(dialog->findChildren<QCheckBox *>("chkData").size(), 9);
        for (QCheckBox *check : dialog->findChildren<QCheckBox *>("chkData"))
            QVERIFY2(check->isChecked(), qPrintable(check->text()));
        typeInto(dialog, "OrganizationName", "Not Saved");
        click(dialog, "cmdCancel");
        QCOMPARE(TestDatabase::count("Organization") + TestDatabase::count("Options"), 0);

        dialog = openOptions(s.main);
        typeFields(dialog,
                   "OrganizationName=St. Mary's Pantry;OrganizationAddress=12 O'Neil Street;OrganizationCity=Austin;"
                   "OrganizationState=TX;OrganizationZip=78701;OrganizationPhone=51255512349");   // the 11th digit is not taken
        control<QCheckBox>(dialog, "ShowNotesTab")->setChecked(false);
        control<QCheckBox>(dialog, "ShowFEMATab")->setChecked(false);
        control<QSpinBox>(dialog, "FoodVisitIntervalDays")->setValue(14);
        click(dialog, "cmdOk");
        QVERIFY(s.prompts.messages().isEmpty());
        QVERIFY(!s.main.findChild<frmOptions *>() || !s.main.findChild<frmOptions *>()->isVisible());
        QCOMPARE(TestDatabase::scalar(
                     "SELECT OrganizationName || '|' || OrganizationAddress || '|' || OrganizationCity || '|' || OrganizationState"
                     " || '|' || OrganizationZip || '|' || OrganizationPhone FROM Organization")
                     .toString(),
                 QStringLiteral("St. Mary's Pantry|12 O'Neil Street|Austin|TX|78701|5125551234"));
        QCOMPARE((QList<int> {option("FoodVisitIntervalDays"), option("ShowFEMATab"), option("ShowEmployerTab")}), (QList<int> {14, 0, 1}));
        QCOMPARE(TestDatabase::count("Organization") + TestDatabase::count("Options"), 2);

        // The main window takes the new name and flags at once.
        QCOMPARE(s.main.windowTitle(), "TendMark - St. Mary's Pantry");
        QVERIFY(!s.main.optionFlags().showFEMATab && s.main.optionFlags().showEmployerTab);

        dialog = openOptions(s.main);
        QCOMPARE(
            (QStringList {control<QLineEdit>(dialog, "OrganizationName")->text(), control<QLineEdit>(dialog, "OrganizationPhone")->text(),
                          control<QComboBox>(dialog, "OrganizationState")->currentText()}),
            (QStringList {"St. Mary's Pantry", "(512) 555-1234", "TX"}));
        QVERIFY(!control<QCheckBox>(dialog, "ShowNotesTab")->isChecked()
                && control<QCheckBox>(dialog, "ShowFormerAddressTab")->isChecked());
        QCOMPARE(control<QSpinBox>(dialog, "FoodVisitIntervalDays")->value(), 14);
        // An empty name is stored as none, and the title says so; Apply keeps the dialog open.
        typeInto(dialog, "OrganizationName", QString());
        click(dialog, "cmdApply");
        QVERIFY(dialog->isVisible());
        QCOMPARE(s.main.windowTitle(), "TendMark - [No Organization Name]");
        QVERIFY(TestDatabase::scalar("SELECT OrganizationName FROM Organization").isNull());
        QVERIFY(!button(dialog, "cmdApply")->isEnabled());
    }

    void overLongNameIsRefusedAndNothingSaved()
    {
        Desk s;
        frmOptions *dialog = openOptions(s.main);
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        auto *name = control<QLineEdit>(dialog, "OrganizationName");
        typeInto(name, QString(101, QLatin1Char('x')));
        control<QSpinBox>(dialog, "FoodVisitIntervalDays")->setValue(30);
        const Prompt::Message tooLong {"Data Entry Error", "Organization Name cannot exceed 100 characters.", Prompt::Icon::Exclamation};

        // Leaving the box says why and keeps the focus there.
        control<QLineEdit>(dialog, "OrganizationAddress")->setFocus();
        QApplication::processEvents();
        QCOMPARE(s.prompts.messages(), QList<Prompt::Message> {tooLong});
        QCOMPARE(QApplication::focusWidget(), name);

        // OK refuses it too, once, and writes nothing: not even the valid interval.
        s.prompts.clear();
        click(dialog, "cmdOk");
        QCOMPARE(s.prompts.messages(), QList<Prompt::Message> {tooLong});
        QVERIFY(dialog->isVisible());
        QVERIFY(TestDatabase::scalar("SELECT OrganizationName FROM Organization").isNull());
        QCOMPARE(option("FoodVisitIntervalDays"), 0);

        // Exactly the column's size is accepted.
        typeInto(name, QString(100, QLatin1Char('y')));
        click(dialog, "cmdOk");
        QCOMPARE(s.prompts.messages().size(), 1);
        QCOMPARE(organization("OrganizationName").size(), 100);
        QCOMPARE(option("FoodVisitIntervalDays"), 30);
    }

    void logoAndBackupPlaceAreChosenThroughTheFileDialog()
    {
        Desk s;
        const QString picture = s.db.folder() + QStringLiteral("/logo.png");
        QImage image(40, 20, QImage::Format_RGB32);
        image.fill(Qt::darkGreen);
        QVERIFY(image.save(picture));

        frmOptions *dialog = openOptions(s.main);
        typeInto(dialog, "OrganizationPhone", "555-12-34");   // seven digits, shaped as typed and again after reopening
        QCOMPARE(control<QLineEdit>(dialog, "OrganizationPhone")->text(), "555-1234");
        s.prompts.answerFile(picture);
        click(dialog, "cmdBrowse");
        QCOMPARE(s.prompts.fileRequests().size(), 1);
        QCOMPARE(s.prompts.fileRequests().last().title, "Select Organization Logo");
        QVERIFY(s.prompts.fileRequests().last().filter.contains(QStringLiteral("*.png")));
        QVERIFY(!dialog->findChild<QLabel *>("picLogo")->pixmap().isNull());

        // A file that is no picture is refused and the logo stays.
        const QString text = s.db.folder() + QStringLiteral("/notes.png");
        QVERIFY(TestDatabase::writeFile(text, "not a picture"));
        s.prompts.answerFile(text);
        click(dialog, "cmdBrowse");
        QCOMPARE(s.prompts.last().title, "Select Organization Logo");
        QCOMPARE(s.prompts.last().icon, Prompt::Icon::Exclamation);

        // The backup place and count are kept for this computer, not in the database.
        const QString folder = s.db.folder() + QStringLiteral("/usb");
        QVERIFY(QDir().mkpath(folder));
        s.prompts.answerFile(folder);
        click(dialog, "cmdBackupFolder");
        QVERIFY(s.prompts.fileRequests().last().folder);
        dialog->findChild<QSpinBox *>("spnBackupsToKeep")->setValue(3);
        click(dialog, "cmdOk");
        QCOMPARE(organization("OrganizationLogo"), picture);
        QCOMPARE(QDir(Backups::Folder(s.db.path())), QDir(folder));
        QCOMPARE(Backups::KeepLast(), 3);

        // Cleared, the backups go beside the database again.
        dialog = openOptions(s.main);
        QCOMPARE(dialog->findChild<QSpinBox *>("spnBackupsToKeep")->value(), 3);
        QCOMPARE(control<QLineEdit>(dialog, "OrganizationPhone")->text() + '|' + organization("OrganizationPhone"), "555-1234|5551234");
        typeInto(dialog->findChild<QLineEdit *>("txtBackupFolder"), QString());
        click(dialog, "cmdOk");
        QCOMPARE(Backups::Folder(s.db.path()), QFileInfo(s.db.path()).absoluteDir().filePath(QStringLiteral("backups")));
    }

    // What is stored shows again when the dialog is opened next; a refusal keeps the dialog open and stores nothing.
    void ageBracketsAreStoredOrRefused()
    {
        Desk s;
        QString shown = "0-17,18-59,60+", stored;   // the first preset while none is stored
        const char *const cases[][2]
            = {{"0-17,18-64,65+", "0-17,18-64,65+"}, {" 0-4, 5-17 ,18-120", "0-4,5-17,18+"}, {"0-17,19+", nullptr}};
        for (const auto &[typed, tidied] : cases) {
            const QPointer<frmOptions> dialog = openOptions(s.main);
            auto *brackets = dialog->findChild<QComboBox *>("cboAgeBrackets");
            QCOMPARE(brackets->currentText(), shown);
            brackets->setCurrentText(typed);
            click(dialog, "cmdOk");
            if (tidied)
                shown = stored = tidied;
            QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT AgeBrackets FROM Options")).toString(), stored);
            QCOMPARE(dialog && dialog->isVisible(), !tidied);
        }
        QCOMPARE(s.prompts.messages(),
                 (QList<Prompt::Message> {{"Data Entry Error", "Age 18 is in no bracket.", Prompt::Icon::Exclamation}}));
    }
};

QTEST_MAIN(tst_options)
#include "tst_options.moc"
