#include "FormTesting.h"
#include "RecordEvents.h"
#include "Recordset.h"
#include "basDatabase.h"
#include "frmClientDetails.h"

#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

class tst_ClientDetails : public QObject
{
    Q_OBJECT

    static void typeRequired(QWidget *w, const QString &last, const QString &ssn, const QString &address, const QString &city)
    {
        typeInto(w, QStringLiteral("LastName"), last);
        typeInto(w, QStringLiteral("FirstName"), QStringLiteral("Pat"));
        typeInto(w, QStringLiteral("SocialSecurityNumber"), ssn);
        typeInto(w, QStringLiteral("Address"), address);
        typeInto(w, QStringLiteral("City"), city);
        typeInto(w, QStringLiteral("State"), QStringLiteral("IL"));
    }
    static qint64 stone()
    {
        return ClientWorld::addClient("Stone", "Sam", "S",
                                      {{"SocialSecurityNumber", "555667777"}, {"Address", "1 Oak"}, {"City", "Peoria"}});
    }
    static QString status(QWidget *w) { return w->findChild<QLabel *>(QStringLiteral("lblStatus"))->text(); }

private slots:
    void newClientIsStoredAsTyped()
    {
        ClientWorld world;
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        QVERIFY(w);
        QVERIFY(w->ClientID().isEmpty());   // empty table: a new client
        typeRequired(w, QStringLiteral("O'Brien"), QStringLiteral("123456789"), QStringLiteral("12 Main St"),
                     QStringLiteral("Springfield"));
        typeInto(w, QStringLiteral("BirthDate"), QStringLiteral("03151980"));
        typeInto(w, QStringLiteral("HomePhone"), QStringLiteral("2175551234"));
        typeInto(w, QStringLiteral("EmployerDurationYears"), QStringLiteral("4"));
        QVERIFY(w->DataChanged());
        QVERIFY(world.main.toolbarButton(QStringLiteral("Save"))->isEnabled());
        world.toolbar("Save");

        QCOMPARE(TestDatabase::count("Client"), 1);
        const qint64 id = TestDatabase::scalar("SELECT ClientID FROM Client").toLongLong();
        QCOMPARE(TestDatabase::scalar("SELECT LastName || '|' || SocialSecurityNumber || '|' || HomePhone || '|' || BirthDate || '|'"
                                      " || EmployerDurationYears || '|' || ifnull(MobilePhone, 'null') FROM Client")
                     .toString(),
                 QStringLiteral("O'Brien|123456789|2175551234|1980-03-15|4|null"));
        QCOMPARE(w->ClientID(), QString::number(id));
        QCOMPARE(status(w), QStringLiteral("Record: 1 of 1     ID: %1").arg(id));
        QVERIFY(!w->DataChanged());
        QVERIFY(!world.main.toolbarButton(QStringLiteral("Save"))->isEnabled());
        QVERIFY(world.prompts.messages().isEmpty());
    }

    void requiredFieldsInOrder()
    {
        ClientWorld world;
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        typeInto(w, QStringLiteral("DriversLicenseNumber"), QStringLiteral("D123"));
        // field, its caption, a value
        const QList<QStringList> steps = {{"LastName", "Last Name", "Lee"},
                                          {"FirstName", "First Name", "Ann"},
                                          {"SocialSecurityNumber", "Social Security No", "987654321"},
                                          {"Address", "Address", "5 Elm"},
                                          {"City", "City", "Peoria"},
                                          {"State", "State", "IL"}};
        for (const QStringList &step : steps) {
            world.prompts.clear();
            QVERIFY(!w->SaveCurrentRecord());
            QCOMPARE(world.prompts.last(),
                     (Prompt::Message {"Required Field Empty", step.at(1) + QStringLiteral(" is required."), Prompt::Icon::Exclamation,
                                       Prompt::Ok}));
            QCOMPARE(TestDatabase::count(QStringLiteral("Client")), 0);
            typeInto(w, step.at(0), step.at(2));
        }
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count(QStringLiteral("Client")), 1);
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT DriversLicenseNumber FROM Client")).toString(), QStringLiteral("D123"));
        // Required labels are bold, the others are not.
        for (QLabel *label : w->findChildren<QLabel *>(QStringLiteral("lblLabels")))
            QCOMPARE(label->font().bold(),
                     label->text() == QLatin1String("Last Name") || label->text() == QLatin1String("First Name")
                         || label->text() == QLatin1String("Social Security No")
                         || (label->text() == QLatin1String("Address") && label->property("Index").toInt() < 20)
                         || (label->text() == QLatin1String("City") && label->property("Index").toInt() < 20)
                         || (label->text() == QLatin1String("State") && label->property("Index").toInt() < 20));
    }

    void invalidValuesAreRefusedAndNothingIsWritten()
    {
        ClientWorld world;
        const qint64 id = stone();
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        QCOMPARE(w->ClientID(), QString::number(id));

        typeInto(w, QStringLiteral("LastName"), QStringLiteral("Changed"));
        typeInto(w, QStringLiteral("SocialSecurityNumber"), QStringLiteral("12345"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().title, QStringLiteral("Data Entry Error"));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Social Security No must be 11 characters."));
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT LastName FROM Client")).toString(), QStringLiteral("Stone"));
        QVERIFY(w->DataChanged());

        typeInto(w, QStringLiteral("SocialSecurityNumber"), QStringLiteral("555667777"));
        typeInto(w, QStringLiteral("BirthDate"), QStringLiteral("13451980"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().text, QStringLiteral("Birth Date is not a valid date."));
        typeInto(w, QStringLiteral("BirthDate"), QStringLiteral("01021980"));
        typeInto(w, QStringLiteral("HomePhone"), QStringLiteral("217555"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().title, QStringLiteral("Data Entry Error"));
        QVERIFY(world.prompts.last().text.startsWith(QStringLiteral("Home Phone ")));
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT LastName FROM Client")).toString(), QStringLiteral("Stone"));

        // Leaving a field with a bad value says so at once and keeps the focus there.
        world.prompts.clear();
        QWidget *phone = fieldOf(w, QStringLiteral("HomePhone"));
        phone->setFocus();
        fieldOf(w, QStringLiteral("FirstName"))->setFocus(Qt::TabFocusReason);
        QCOMPARE(world.prompts.last().title, QStringLiteral("Data Entry Error"));
        QCoreApplication::processEvents();
        QCOMPARE(QApplication::focusWidget(), phone);

        typeInto(w, QStringLiteral("HomePhone"), QStringLiteral("2175550000"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT LastName FROM Client")).toString(), QStringLiteral("Changed"));
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT BirthDate FROM Client")).toString(), QStringLiteral("1980-01-02"));
    }

    void failedSaveLeavesTheDatabaseAsItWas()
    {
        ClientWorld world;
        stone();
        basDatabase::Execute(
            QStringLiteral("CREATE TRIGGER NoWrites BEFORE UPDATE ON Client BEGIN SELECT RAISE(ABORT, 'disk is full'); END"));
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        typeInto(w, QStringLiteral("LastName"), QStringLiteral("Stoner"));
        typeInto(w, QStringLiteral("City"), QStringLiteral("Pekin"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().title, QStringLiteral("Application Error"));
        QVERIFY(w->DataChanged());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT LastName || '/' || City FROM Client")).toString(),
                 QStringLiteral("Stone/Peoria"));
        QCOMPARE(w->recordset()->editMode(), Recordset::EditMode::None);

        // Nothing half-taken is left behind: once the database accepts, both changes land.
        basDatabase::Execute(QStringLiteral("DROP TRIGGER NoWrites"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT LastName || '/' || City FROM Client")).toString(),
                 QStringLiteral("Stoner/Pekin"));

        // A new client that the database refuses is not written either.
        basDatabase::Execute(
            QStringLiteral("CREATE TRIGGER NoInserts BEFORE INSERT ON Client BEGIN SELECT RAISE(ABORT, 'disk is full'); END"));
        w->findChild<QPushButton *>(QStringLiteral("cmdAdd"))->click();
        typeRequired(w, QStringLiteral("Young"), QStringLiteral("111000111"), QStringLiteral("9 Pine"), QStringLiteral("Peoria"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count(QStringLiteral("Client")), 1);
        QCOMPARE(w->recordset()->editMode(), Recordset::EditMode::Adding);
        basDatabase::Execute(QStringLiteral("DROP TRIGGER NoInserts"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count(QStringLiteral("Client"), QStringLiteral("LastName = ? AND City = ?"),
                                     {QStringLiteral("Young"), QStringLiteral("Peoria")}),
                 1);
    }

    void duplicatesAreOfferedThroughThePicker()
    {
        ClientWorld world;
        const qint64 obrien = ClientWorld::addClient(
            "O'Brien", "Kate", "M", {{"SocialSecurityNumber", "111223333"}, {"Address", "12 Main St"}, {"City", "Springfield"}});
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        w->setClientID(QStringLiteral("ADD"));

        // The same address in other letter case: offered; Cancel saves anyway.
        world.prompts.answerPick(std::nullopt);
        typeRequired(w, QStringLiteral("O'Brien"), QStringLiteral("444556666"), QStringLiteral("12 MAIN ST"),
                     QStringLiteral("springfield"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(world.prompts.pickRequests().size(), 1);
        const Prompt::PickRequest address = world.prompts.pickRequests().first();
        QCOMPARE(address.caption, QStringLiteral("Client Already On File?"));
        QCOMPARE(address.label,
                 QStringLiteral("The entered address is already on file for another client. Select an entry from the "
                                "following the list and click 'OK' to go to that client record. Click 'Cancel' to "
                                "continue saving the current record."));
        QCOMPARE(TestDatabase::count(QStringLiteral("Client")), 2);

        // The same social security number: OK jumps to that client and drops the new one.
        w->setClientID(QStringLiteral("ADD"));
        world.prompts.answerPick(QString::number(obrien));
        typeRequired(w, QStringLiteral("Walsh"), QStringLiteral("111223333"), QStringLiteral("3 Bay Rd"), QStringLiteral("Dover"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.pickRequests().size(), 2);
        QVERIFY(world.prompts.pickRequests().last().label.startsWith(QStringLiteral("The entered Social Security Number is already")));
        QCOMPARE(TestDatabase::count(QStringLiteral("Client")), 2);
        QCOMPARE(w->ClientID(), QString::number(obrien));
        QVERIFY(!w->DataChanged());
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, QStringLiteral("LastName")))->text(), QStringLiteral("O'Brien"));
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, QStringLiteral("FirstName")))->text(), QStringLiteral("Kate"));
    }

    void deleteCascadesToSupportingRows()
    {
        ClientWorld world;
        const qint64 keep = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Al"));
        const qint64 id = ClientWorld::addClient(QStringLiteral("Doe"), QStringLiteral("Jane"), QStringLiteral("Q"));
        for (const char *table : {"Family", "FoodService", "Payments", "Income", "Expenses"})
            TestDatabase::insert(table, {{"ClientID", id}});
        TestDatabase::insert("FoodService", {{"ClientID", keep}, {"NumberOfBags", 1}});

        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        world.main.showClient(QString::number(id));
        QCOMPARE(w->ClientID(), QString::number(id));
        QCOMPARE(w->findChild<QLabel *>(QStringLiteral("lblHousehold"))->text().left(13), QStringLiteral("Household: 2 "));

        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(
            world.prompts.messages().first(),
            (Prompt::Message {
                "Delete Client?",
                "This will delete client 'Doe, Jane Q' and all supporting data from the database. \r\nAre you sure you want to do this?",
                Prompt::Icon::Exclamation, Prompt::Yes | Prompt::No}));
        QCOMPARE(world.prompts.last().title, QStringLiteral("Delete Client"));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Client 'Doe, Jane Q' deleted."));
        for (const char *table : {"Client", "Family", "FoodService", "Payments", "Income", "Expenses"})
            QCOMPARE(TestDatabase::count(QString::fromLatin1(table), QStringLiteral("ClientID = ?"), {id}), 0);
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 1);
        QCOMPARE(w->ClientID(), QString::number(keep));
    }

    void navigationAndStatus()
    {
        ClientWorld world;
        const qint64 c = ClientWorld::addClient(QStringLiteral("Clark"), QStringLiteral("Cy"));
        const qint64 a = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Al"));
        const qint64 b = ClientWorld::addClient(QStringLiteral("Baker"), QStringLiteral("Bo"));
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        QCOMPARE(status(w), QStringLiteral("Record: 1 of 3     ID: %1").arg(a));
        QVERIFY(!w->findChild<QPushButton *>(QStringLiteral("cmdPrevious"))->isEnabled());
        QWidget *last = fieldOf(w, QStringLiteral("LastName"));
        QTest::keyClick(last, Qt::Key_PageDown);
        QCOMPARE(status(w), QStringLiteral("Record: 2 of 3     ID: %1").arg(b));
        QTest::keyClick(last, Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(status(w), QStringLiteral("Record: 3 of 3     ID: %1").arg(c));
        QVERIFY(!w->findChild<QPushButton *>(QStringLiteral("cmdNext"))->isEnabled());
        QTest::keyClick(fieldOf(w, QStringLiteral("Comments")), Qt::Key_PageDown);   // stays on the last
        QCOMPARE(w->ClientID(), QString::number(c));
        QTest::keyClick(last, Qt::Key_PageUp, Qt::ShiftModifier);   // Shift counts as the plain key
        QCOMPARE(w->ClientID(), QString::number(b));
        QTest::keyClick(last, Qt::Key_PageUp, Qt::ControlModifier);
        QCOMPARE(w->ClientID(), QString::number(a));
        w->findChild<QPushButton *>(QStringLiteral("cmdLast"))->click();
        QCOMPARE(w->ClientID(), QString::number(c));

        // A change is saved before moving on; a blank new record is dropped.
        typeInto(w, QStringLiteral("FirstName"), QStringLiteral("Cyrus"));
        w->findChild<QPushButton *>(QStringLiteral("cmdFirst"))->click();
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT FirstName FROM Client WHERE ClientID = ?"), {c}).toString(),
                 QStringLiteral("Cyrus"));
        w->findChild<QPushButton *>(QStringLiteral("cmdAdd"))->click();
        w->findChild<QPushButton *>(QStringLiteral("cmdAdd"))->click();
        QVERIFY(w->ClientID().isEmpty());
        w->findChild<QPushButton *>(QStringLiteral("cmdNext"))->click();
        QCOMPARE(TestDatabase::count(QStringLiteral("Client")), 3);
        QCOMPARE(status(w), QStringLiteral("Record: 2 of 3     ID: %1").arg(b));
    }

    void newRecordKeepsTheStatusAndTheWindowFits()
    {
        ClientWorld world;
        world.main.resize(1100, 760);
        QCoreApplication::processEvents();
        const qint64 a = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Al"));
        ClientWorld::addClient(QStringLiteral("Baker"), QStringLiteral("Bo"));
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        QCOMPARE(status(w), QStringLiteral("Record: 1 of 2     ID: %1").arg(a));
        w->findChild<QPushButton *>(QStringLiteral("cmdAdd"))->click();
        QVERIFY(w->ClientID().isEmpty());
        QCOMPARE(status(w), QStringLiteral("Record: 1 of 2     ID: %1").arg(a));

        // At its first size the window sits inside the main window's work area, nothing squeezed.
        const QSize area = world.main.mdiArea()->viewport()->size();
        const QSize least = w->minimumSizeHint();
        QVERIFY2(least.width() <= area.width() * 0.85 && least.height() <= area.height() * 0.75,
                 qPrintable(QStringLiteral("%1x%2 in %3x%4").arg(least.width()).arg(least.height()).arg(area.width()).arg(area.height())));
        QVERIFY(w->width() >= least.width() && w->height() >= least.height());
        QVERIFY(QRect(QPoint(0, 0), area).contains(w->parentWidget()->geometry()));
    }

    void closingAsksToSave()
    {
        ClientWorld world;
        ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Al"));
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        typeInto(w, QStringLiteral("FirstName"), QStringLiteral("Alan"));
        world.prompts.answer(Prompt::Cancel);
        QTest::keyClick(fieldOf(w, QStringLiteral("FirstName")), Qt::Key_Escape);
        QCOMPARE(world.prompts.last().title, QStringLiteral("Save Record?"));
        QVERIFY(world.main.findChildWindow<frmClientDetails>());
        // Yes with a required field empty keeps the window open.
        typeInto(w, QStringLiteral("LastName"), QString());
        world.prompts.answer(Prompt::Yes);
        QVERIFY(!w->close());
        QCOMPARE(world.prompts.last().title, QStringLiteral("Required Field Empty"));
        world.prompts.answer(Prompt::No);
        QVERIFY(w->close());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT FirstName FROM Client")).toString(), QStringLiteral("Al"));
    }

    void tabsFollowOptionsAndShowWhereDataIs()
    {
        ClientWorld world;
        basDatabase::Execute(QStringLiteral("UPDATE Options SET ShowNotesTab = 0, ShowFEMATab = 0"));
        world.main.refreshOptionFlags();
        const qint64 id = ClientWorld::addClient("Adams", "Al", "A", {{"Comments", "hidden note"}, {"MedicalProblems", "asthma"}});
        TestDatabase::insert("Family", {{"ClientID", id}, {"FirstName", "Jo"}});
        TestDatabase::insert("Expenses", {{"ClientID", id}, {"Amount", 1200}});
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        auto *tabs = w->findChild<QTabWidget *>(QStringLiteral("tabData"));
        QCOMPARE(tabs->count(), 9);
        const QStringList expected
            = {"Notes ",          "Employer", "Family Members ", "Food Service", "Payment History", "Income/Expenses ",
               "Health/Medical ", "FEMA",     "Former Address"};
        for (int i = 0; i < 9; ++i) {
            QCOMPARE(tabs->tabText(i), expected.at(i));
            QCOMPARE(tabs->tabIcon(i).isNull(), !expected.at(i).endsWith(QLatin1Char(' ')));
            QCOMPARE(tabs->isTabVisible(i), i != frmClientDetails::NotesTab && i != frmClientDetails::FEMATab);
        }
        // A supporting row saved elsewhere shows at once.
        TestDatabase::insert(QStringLiteral("FoodService"),
                             {{QStringLiteral("ClientID"), id}, {QStringLiteral("FoodServiceDate"), QStringLiteral("2026-02-11")}});
        world.main.recordEvents()->announce(QString::number(id), nullptr);
        QCOMPARE(tabs->tabText(frmClientDetails::FoodServiceTab), QStringLiteral("Food Service "));
        QCOMPARE(w->findChild<QLabel *>(QStringLiteral("lblHousehold"))->text(),
                 QStringLiteral("Household: 2   Last food service: 02/11/2026"));
    }

    void supportingRowsNeedASavedClient()
    {
        ClientWorld world;
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        auto *tabs = w->findChild<QTabWidget *>(QStringLiteral("tabData"));
        tabs->widget(frmClientDetails::FoodServiceTab)->findChild<QPushButton *>(QStringLiteral("cmdGridDataAdd"))->click();
        QCOMPARE(world.prompts.last().title, QStringLiteral("Required Client Data Not Entered"));
        QCOMPARE(world.prompts.last().text,
                 QStringLiteral("Please enter the required client information before entering any supporting details."));
    }

    void zipCodeFillsCityAndState()
    {
        ClientWorld world;
        TestDatabase::insert("ZipCode", {{"ZipCode", "62701"}, {"City", "Springfield"}, {"State", "IL"}});
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        typeInto(w, QStringLiteral("City"), QStringLiteral("Keep"));
        typeInto(w, QStringLiteral("ZipCode"), QStringLiteral("99999"));
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, QStringLiteral("City")))->text(), QStringLiteral("Keep"));
        typeInto(w, QStringLiteral("ZipCode"), QStringLiteral("62701"));
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, QStringLiteral("City")))->text(), QStringLiteral("Springfield"));
        QCOMPARE(qobject_cast<QComboBox *>(fieldOf(w, QStringLiteral("State")))->currentText(), QStringLiteral("IL"));
    }
};

QTEST_MAIN(tst_ClientDetails)
#include "tst_clientdetails.moc"
