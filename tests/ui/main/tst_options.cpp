#include "Backups.h"
#include "FormTesting.h"
#include "frmOptions.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QImage>
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
    void savesAndReloadsEveryField();
    void overLongNameIsRefusedAndNothingSaved();
    void logoAndBackupPlaceAreChosenThroughTheFileDialog();
    void ageBracketsAreStoredOrRefused_data();
    void ageBracketsAreStoredOrRefused();
};

void tst_options::savesAndReloadsEveryField()
{
    // A database without its organisation and options rows: every tab shows, Cancel writes nothing, OK adds them.
    Desk s;
    TestDatabase::scalar("DELETE FROM Organization");
    TestDatabase::scalar("DELETE FROM Options");
    s.main.refreshOptionFlags();
    frmOptions *dialog = openOptions(s.main);
    QCOMPARE(dialog->findChildren<QCheckBox *>(QStringLiteral("chkData")).size(), 9);
    for (QCheckBox *check : dialog->findChildren<QCheckBox *>(QStringLiteral("chkData")))
        QVERIFY2(check->isChecked(), qPrintable(check->text()));
    typeInto(dialog, "OrganizationName", "Not Saved");
    click(dialog, "cmdCancel");
    QCOMPARE(TestDatabase::count("Organization") + TestDatabase::count("Options"), 0);

    dialog = openOptions(s.main);
    typeInto(dialog, "OrganizationName", "St. Mary's Pantry");
    typeInto(dialog, "OrganizationAddress", "12 O'Neil Street");
    typeInto(dialog, "OrganizationCity", "Austin");
    typeInto(dialog, "OrganizationState", "TX");
    typeInto(dialog, "OrganizationZip", "78701");
    typeInto(dialog, "OrganizationPhone", "5125551234");
    control<QCheckBox>(dialog, "ShowNotesTab")->setChecked(false);
    control<QCheckBox>(dialog, "ShowFEMATab")->setChecked(false);
    control<QSpinBox>(dialog, "FoodVisitIntervalDays")->setValue(14);
    click(dialog, "cmdOk");
    QVERIFY(s.prompts.messages().isEmpty());
    QVERIFY(!s.main.findChild<frmOptions *>() || !s.main.findChild<frmOptions *>()->isVisible());
    QCOMPARE(
        TestDatabase::scalar("SELECT OrganizationName || '|' || OrganizationAddress || '|' || OrganizationCity || '|' || OrganizationState"
                             " || '|' || OrganizationZip || '|' || OrganizationPhone FROM Organization")
            .toString(),
        QStringLiteral("St. Mary's Pantry|12 O'Neil Street|Austin|TX|78701|5125551234"));
    QCOMPARE(option("FoodVisitIntervalDays"), 14);
    QCOMPARE(option("ShowFEMATab"), 0);
    QCOMPARE(option("ShowEmployerTab"), 1);
    QCOMPARE(TestDatabase::count("Organization"), 1);
    QCOMPARE(TestDatabase::count("Options"), 1);

    // The main window takes the new name and flags at once.
    QCOMPARE(s.main.windowTitle(), QStringLiteral("TendMark - St. Mary's Pantry"));
    QVERIFY(!s.main.optionFlags().showFEMATab && s.main.optionFlags().showEmployerTab);

    dialog = openOptions(s.main);
    QCOMPARE(control<QLineEdit>(dialog, "OrganizationName")->text(), QStringLiteral("St. Mary's Pantry"));
    QCOMPARE(control<QLineEdit>(dialog, "OrganizationPhone")->text(), QStringLiteral("(512) 555-1234"));
    QCOMPARE(control<QComboBox>(dialog, "OrganizationState")->currentText(), QStringLiteral("TX"));
    QCOMPARE(control<QCheckBox>(dialog, "ShowNotesTab")->isChecked(), false);
    QCOMPARE(control<QCheckBox>(dialog, "ShowFormerAddressTab")->isChecked(), true);
    QCOMPARE(control<QSpinBox>(dialog, "FoodVisitIntervalDays")->value(), 14);
    // A partial phone number is refused.
    typeInto(dialog, "OrganizationPhone", "51255");
    click(dialog, "cmdApply");
    QCOMPARE(s.prompts.last().title, QStringLiteral("Data Entry Error"));
    QVERIFY(s.prompts.last().text.startsWith(QStringLiteral("Phone ")));
    QCOMPARE(organization("OrganizationPhone"), QStringLiteral("5125551234"));
    // An empty name is stored as none, and the title says so; Apply keeps the dialog open.
    typeInto(dialog, "OrganizationPhone", "5125551234");
    typeInto(dialog, "OrganizationName", QString());
    click(dialog, "cmdApply");
    QVERIFY(dialog->isVisible());
    QCOMPARE(s.main.windowTitle(), QStringLiteral("TendMark - [No Organization Name]"));
    QVERIFY(TestDatabase::scalar("SELECT OrganizationName FROM Organization").isNull());
    QVERIFY(!button(dialog, "cmdApply")->isEnabled());
}

void tst_options::overLongNameIsRefusedAndNothingSaved()
{
    Desk s;
    frmOptions *dialog = openOptions(s.main);
    QVERIFY(QTest::qWaitForWindowActive(dialog));
    auto *name = control<QLineEdit>(dialog, "OrganizationName");
    typeInto(name, QString(101, QLatin1Char('x')));
    control<QSpinBox>(dialog, "FoodVisitIntervalDays")->setValue(30);
    const Prompt::Message tooLong {"Data Entry Error", "Organization Name cannot exceed 100 characters.", Prompt::Icon::Exclamation,
                                   Prompt::Ok};

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

void tst_options::logoAndBackupPlaceAreChosenThroughTheFileDialog()
{
    Desk s;
    const QString picture = s.db.folder() + QStringLiteral("/logo.png");
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QVERIFY(image.save(picture));

    frmOptions *dialog = openOptions(s.main);
    s.prompts.answerFile(picture);
    click(dialog, "cmdBrowse");
    QCOMPARE(s.prompts.fileRequests().size(), 1);
    QCOMPARE(s.prompts.fileRequests().last().title, QStringLiteral("Select Organization Logo"));
    QVERIFY(s.prompts.fileRequests().last().filter.contains(QStringLiteral("*.png")));
    QVERIFY(!dialog->findChild<QLabel *>(QStringLiteral("picLogo"))->pixmap().isNull());

    // A file that is no picture is refused and the logo stays.
    const QString text = s.db.folder() + QStringLiteral("/notes.png");
    QVERIFY(TestDatabase::writeFile(text, "not a picture"));
    s.prompts.answerFile(text);
    click(dialog, "cmdBrowse");
    QCOMPARE(s.prompts.last().title, QStringLiteral("Select Organization Logo"));
    QCOMPARE(s.prompts.last().icon, Prompt::Icon::Exclamation);

    // The backup place and count are kept for this computer, not in the database.
    const QString folder = s.db.folder() + QStringLiteral("/usb");
    QVERIFY(QDir().mkpath(folder));
    s.prompts.answerFile(folder);
    click(dialog, "cmdBackupFolder");
    QVERIFY(s.prompts.fileRequests().last().folder);
    dialog->findChild<QSpinBox *>(QStringLiteral("spnBackupsToKeep"))->setValue(3);
    click(dialog, "cmdOk");
    QCOMPARE(organization("OrganizationLogo"), picture);
    QCOMPARE(QDir(Backups::Folder(s.db.path())), QDir(folder));
    QCOMPARE(Backups::KeepLast(), 3);

    // Cleared, the backups go beside the database again.
    dialog = openOptions(s.main);
    QCOMPARE(dialog->findChild<QSpinBox *>(QStringLiteral("spnBackupsToKeep"))->value(), 3);
    typeInto(dialog->findChild<QLineEdit *>(QStringLiteral("txtBackupFolder")), QString());
    click(dialog, "cmdOk");
    QCOMPARE(Backups::Folder(s.db.path()), QFileInfo(s.db.path()).absoluteDir().filePath(QStringLiteral("backups")));
}

void tst_options::ageBracketsAreStoredOrRefused_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("stored");   // null: nothing stored
    QTest::addColumn<QString>("refusal");
    QTest::newRow("second preset") << "0-17,18-64,65+"
                                   << "0-17,18-64,65+" << QString();
    QTest::newRow("own, tidied") << " 0-4, 5-17 ,18-120"
                                 << "0-4,5-17,18+" << QString();
    QTest::newRow("gap") << "0-17,19+" << QString() << "Age 18 is in no bracket.";
}

// What is stored shows again when the dialog is opened next; a refusal keeps the dialog open.
void tst_options::ageBracketsAreStoredOrRefused()
{
    QFETCH(QString, typed);
    QFETCH(QString, stored);
    QFETCH(QString, refusal);
    Desk s;
    frmOptions *dialog = openOptions(s.main);
    auto *brackets = dialog->findChild<QComboBox *>(QStringLiteral("cboAgeBrackets"));
    QCOMPARE(brackets->currentText(), QStringLiteral("0-17,18-59,60+"));
    brackets->setCurrentText(typed);
    click(dialog, "cmdOk");
    QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT AgeBrackets FROM Options")).toString(), stored);
    if (!refusal.isEmpty()) {
        QCOMPARE(s.prompts.last(), (Prompt::Message {"Data Entry Error", refusal, Prompt::Icon::Exclamation, Prompt::Ok}));
        QVERIFY(dialog->isVisible());
        return;
    }
    QVERIFY(s.prompts.messages().isEmpty());
    dialog = openOptions(s.main);
    QCOMPARE(dialog->findChild<QComboBox *>(QStringLiteral("cboAgeBrackets"))->currentText(), stored);
    click(dialog, "cmdCancel");
}

QTEST_MAIN(tst_options)
#include "tst_options.moc"
