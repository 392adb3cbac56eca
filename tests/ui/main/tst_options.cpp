#include "Backups.h"
#include "Desk.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "frmMain.h"
#include "frmOptions.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

class tst_options : public QObject
{
    Q_OBJECT

private:
    using Session = Desk;

    static frmOptions *openOptions(frmMain &main)
    {
        main.findChild<QAction *>(QStringLiteral("mnuToolsOptions"))->trigger();
        auto *dialog = main.findChild<frmOptions *>();
        if (dialog) {
            dialog->activateWindow();
            QApplication::setActiveWindow(dialog);
        }
        return dialog;
    }

    template<typename T> static T *control(QWidget *form, const QString &dataField)
    {
        for (T *w : form->findChildren<T *>())
            if (w->property("DataField").toString() == dataField)
                return w;
        return nullptr;
    }

    static void retype(QLineEdit *box, const QString &text)
    {
        box->setFocus();
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Backspace);
        QTest::keyClicks(box, text);
    }

    static void click(QWidget *form, const char *name)
    {
        form->findChild<QPushButton *>(QString::fromLatin1(name))->click();
        QApplication::processEvents();
    }

private Q_SLOTS:
    void savesAndReloadsEveryField();
    void overLongNameIsRefusedAndNothingSaved();
    void emptyNameShowsPlaceholderTitle();
    void missingRowsAreAddedAndCancelWritesNothing();
    void logoIsChosenThroughTheFileDialog();
    void backupPlaceAndCountAreKeptForThisComputer();
};

void tst_options::savesAndReloadsEveryField()
{
    Session s;
    frmOptions *dialog = openOptions(s.main);
    QVERIFY(dialog);
    QVERIFY(dialog->isModal() || dialog->windowModality() != Qt::NonModal);
    QStringList boxes;
    for (QLineEdit *box : dialog->findChildren<QLineEdit *>(QStringLiteral("txtData")))
        boxes << box->property("DataField").toString();
    QCOMPARE(boxes, QStringList({"OrganizationName", "OrganizationAddress", "OrganizationCity", "OrganizationZip", "OrganizationPhone"}));

    retype(control<QLineEdit>(dialog, "OrganizationName"), QStringLiteral("St. Mary's Pantry"));
    retype(control<QLineEdit>(dialog, "OrganizationAddress"), QStringLiteral("12 O'Neil Street"));
    retype(control<QLineEdit>(dialog, "OrganizationCity"), QStringLiteral("Austin"));
    auto *state = control<QComboBox>(dialog, "OrganizationState");
    state->setCurrentIndex(state->findText(QStringLiteral("TX")));
    retype(control<QLineEdit>(dialog, "OrganizationZip"), QStringLiteral("78701"));
    retype(control<QLineEdit>(dialog, "OrganizationPhone"), QStringLiteral("5125551234"));
    control<QCheckBox>(dialog, "ShowNotesTab")->setChecked(false);
    control<QCheckBox>(dialog, "ShowFEMATab")->setChecked(false);
    control<QSpinBox>(dialog, "FoodVisitIntervalDays")->setValue(14);
    click(dialog, "cmdOk");
    QVERIFY(s.prompts.messages().isEmpty());
    QVERIFY(!s.main.findChild<frmOptions *>() || !s.main.findChild<frmOptions *>()->isVisible());

    QCOMPARE(TestDatabase::scalar("SELECT OrganizationName FROM Organization").toString(), QStringLiteral("St. Mary's Pantry"));
    QCOMPARE(TestDatabase::scalar("SELECT OrganizationAddress FROM Organization").toString(), QStringLiteral("12 O'Neil Street"));
    QCOMPARE(TestDatabase::scalar("SELECT OrganizationState FROM Organization").toString(), QStringLiteral("TX"));
    QCOMPARE(TestDatabase::scalar("SELECT OrganizationPhone FROM Organization").toString(), QStringLiteral("5125551234"));
    QCOMPARE(TestDatabase::scalar("SELECT FoodVisitIntervalDays FROM Options").toInt(), 14);
    QCOMPARE(TestDatabase::scalar("SELECT ShowFEMATab FROM Options").toInt(), 0);
    QCOMPARE(TestDatabase::scalar("SELECT ShowEmployerTab FROM Options").toInt(), 1);
    QCOMPARE(TestDatabase::count("Organization"), 1);
    QCOMPARE(TestDatabase::count("Options"), 1);

    // The main window takes the new name and flags at once.
    QCOMPARE(s.main.windowTitle(), QStringLiteral("TendMark - St. Mary's Pantry"));
    QCOMPARE(s.main.optionFlags().showNotesTab, false);
    QCOMPARE(s.main.optionFlags().showEmployerTab, true);
    QCOMPARE(s.main.optionFlags().showFEMATab, false);

    QTest::qWait(0);   // the closed dialog is deleted
    dialog = openOptions(s.main);
    QVERIFY(dialog);
    QCOMPARE(control<QLineEdit>(dialog, "OrganizationName")->text(), QStringLiteral("St. Mary's Pantry"));
    QCOMPARE(control<QLineEdit>(dialog, "OrganizationPhone")->text(), QStringLiteral("(512) 555-1234"));
    QCOMPARE(control<QComboBox>(dialog, "OrganizationState")->currentText(), QStringLiteral("TX"));
    QCOMPARE(control<QCheckBox>(dialog, "ShowNotesTab")->isChecked(), false);
    QCOMPARE(control<QCheckBox>(dialog, "ShowFormerAddressTab")->isChecked(), true);
    QCOMPARE(control<QSpinBox>(dialog, "FoodVisitIntervalDays")->value(), 14);
    // A partial phone number is refused.
    retype(control<QLineEdit>(dialog, "OrganizationPhone"), QStringLiteral("51255"));
    click(dialog, "cmdApply");
    QCOMPARE(s.prompts.last().title, QStringLiteral("Data Entry Error"));
    QVERIFY(s.prompts.last().text.startsWith(QStringLiteral("Phone ")));
    QCOMPARE(TestDatabase::scalar("SELECT OrganizationPhone FROM Organization").toString(), QStringLiteral("5125551234"));
}

void tst_options::overLongNameIsRefusedAndNothingSaved()
{
    Session s;
    frmOptions *dialog = openOptions(s.main);
    QVERIFY(QTest::qWaitForWindowActive(dialog));
    auto *name = control<QLineEdit>(dialog, "OrganizationName");
    auto *address = control<QLineEdit>(dialog, "OrganizationAddress");
    retype(name, QString(101, QLatin1Char('x')));
    control<QSpinBox>(dialog, "FoodVisitIntervalDays")->setValue(30);

    // Leaving the box says why and keeps the focus there.
    address->setFocus();
    QApplication::processEvents();
    QCOMPARE(s.prompts.messages().size(), 1);
    QCOMPARE(s.prompts.last().title, QStringLiteral("Data Entry Error"));
    QCOMPARE(s.prompts.last().text, QStringLiteral("Organization Name cannot exceed 100 characters."));
    QCOMPARE(s.prompts.last().icon, Prompt::Icon::Exclamation);
    QCOMPARE(QApplication::focusWidget(), name);

    // OK refuses it too, once, and writes nothing: not even the valid interval.
    s.prompts.clear();
    click(dialog, "cmdOk");
    QCOMPARE(s.prompts.messages().size(), 1);
    QCOMPARE(s.prompts.last().text, QStringLiteral("Organization Name cannot exceed 100 characters."));
    QVERIFY(dialog->isVisible());
    QVERIFY(TestDatabase::scalar("SELECT OrganizationName FROM Organization").isNull());
    QCOMPARE(TestDatabase::scalar("SELECT FoodVisitIntervalDays FROM Options").toInt(), 0);

    // Exactly the column's size is accepted.
    retype(name, QString(100, QLatin1Char('y')));
    click(dialog, "cmdOk");
    QCOMPARE(s.prompts.messages().size(), 1);
    QCOMPARE(TestDatabase::scalar("SELECT length(OrganizationName) FROM Organization").toInt(), 100);
    QCOMPARE(TestDatabase::scalar("SELECT FoodVisitIntervalDays FROM Options").toInt(), 30);
}

void tst_options::emptyNameShowsPlaceholderTitle()
{
    Session s;
    TestDatabase::scalar("UPDATE Organization SET OrganizationName = 'Hope Center'");
    s.main.DisplayOrganizationName();
    QCOMPARE(s.main.windowTitle(), QStringLiteral("TendMark - Hope Center"));
    frmOptions *dialog = openOptions(s.main);
    retype(control<QLineEdit>(dialog, "OrganizationName"), QString());
    click(dialog, "cmdApply");
    QVERIFY(dialog->isVisible());   // Apply stays open
    QCOMPARE(s.main.windowTitle(), QStringLiteral("TendMark - [No Organization Name]"));
    QVERIFY(TestDatabase::scalar("SELECT OrganizationName FROM Organization").isNull());
    QVERIFY(!dialog->findChild<QPushButton *>(QStringLiteral("cmdApply"))->isEnabled());
}

void tst_options::missingRowsAreAddedAndCancelWritesNothing()
{
    Session s;
    TestDatabase::scalar("DELETE FROM Organization");
    TestDatabase::scalar("DELETE FROM Options");
    s.main.refreshOptionFlags();

    frmOptions *dialog = openOptions(s.main);
    // Without an options row every tab is shown.
    for (QCheckBox *check : dialog->findChildren<QCheckBox *>(QStringLiteral("chkData")))
        QVERIFY2(check->isChecked(), qPrintable(check->text()));
    QCOMPARE(dialog->findChildren<QCheckBox *>(QStringLiteral("chkData")).size(), 9);
    retype(control<QLineEdit>(dialog, "OrganizationName"), QStringLiteral("Not Saved"));
    click(dialog, "cmdCancel");
    QCOMPARE(TestDatabase::count("Organization"), 0);
    QCOMPARE(TestDatabase::count("Options"), 0);

    QTest::qWait(0);
    dialog = openOptions(s.main);
    retype(control<QLineEdit>(dialog, "OrganizationName"), QStringLiteral("Food Bank"));
    control<QCheckBox>(dialog, "ShowHealthMedicalTab")->setChecked(false);
    click(dialog, "cmdOk");
    QCOMPARE(TestDatabase::count("Organization"), 1);
    QCOMPARE(TestDatabase::count("Options"), 1);
    QCOMPARE(TestDatabase::scalar("SELECT OrganizationName FROM Organization").toString(), QStringLiteral("Food Bank"));
    QCOMPARE(TestDatabase::scalar("SELECT ShowHealthMedicalTab FROM Options").toInt(), 0);
    QCOMPARE(s.main.optionFlags().showHealthMedicalTab, false);
    QCOMPARE(s.main.optionFlags().showIncomeExpensesTab, true);
}

void tst_options::logoIsChosenThroughTheFileDialog()
{
    Session s;
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
    QFile f(text);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("not a picture");
    f.close();
    s.prompts.answerFile(text);
    click(dialog, "cmdBrowse");
    QCOMPARE(s.prompts.last().title, QStringLiteral("Select Organization Logo"));
    QCOMPARE(s.prompts.last().icon, Prompt::Icon::Exclamation);

    click(dialog, "cmdOk");
    QCOMPARE(TestDatabase::scalar("SELECT OrganizationLogo FROM Organization").toString(), picture);
}

void tst_options::backupPlaceAndCountAreKeptForThisComputer()
{
    Session s;
    const QString folder = s.db.folder() + QStringLiteral("/usb");
    QVERIFY(QDir().mkpath(folder));
    frmOptions *dialog = openOptions(s.main);
    s.prompts.answerFile(folder);
    click(dialog, "cmdBackupFolder");
    QVERIFY(s.prompts.fileRequests().last().folder);
    dialog->findChild<QSpinBox *>(QStringLiteral("spnBackupsToKeep"))->setValue(3);
    click(dialog, "cmdOk");
    QCOMPARE(QDir(Backups::Folder(s.db.path())), QDir(folder));
    QCOMPARE(Backups::KeepLast(), 3);

    // Cleared, the backups go beside the database again.
    dialog = openOptions(s.main);
    QCOMPARE(dialog->findChild<QSpinBox *>(QStringLiteral("spnBackupsToKeep"))->value(), 3);
    retype(dialog->findChild<QLineEdit *>(QStringLiteral("txtBackupFolder")), QString());
    click(dialog, "cmdOk");
    QCOMPARE(Backups::Folder(s.db.path()), QFileInfo(s.db.path()).absoluteDir().filePath(QStringLiteral("backups")));
}

QTEST_MAIN(tst_options)
#include "tst_options.moc"
