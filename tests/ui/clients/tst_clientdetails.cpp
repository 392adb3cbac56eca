#include "DataBinding.h"
#include "FormTesting.h"
#include "GridModel.h"
#include "RecordEvents.h"
#include "RowValues.h"
#include "Recordset.h"
#include "basDatabase.h"
#include "frmClientDetails.h"

#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

class tst_ClientDetails : public QObject
{
    Q_OBJECT

private slots:
    // A new client: the required fields are asked for in order; the supporting rows wait for a saved
    // client; a known zip code fills the city and state; a likely duplicate is offered through the picker.
    void newClientIsCheckedThenStoredAsTyped()
    {
        ClientWorld world;
        TestDatabase::insert("ZipCode", {{"ZipCode", "62701"}, {"City", "Springfield"}, {"State", "IL"}});
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        QVERIFY(w);
        QVERIFY(w->ClientID().isEmpty());   // empty table: a new client
        auto *tabs = w->findChild<QTabWidget *>("tabData");
        tabs->widget(frmClientDetails::FoodServiceTab)->findChild<QPushButton *>("cmdGridDataAdd")->click();
        QCOMPARE(world.prompts.last().title, "Required Client Data Not Entered");
        QCOMPARE(world.prompts.last().text,
                 QStringLiteral("Please enter the required client information before entering any supporting details."));

        typeFields(w, "DriversLicenseNumber=D123;BirthDate=03151980;HomePhone=2175551234;EmployerDurationYears=4;City=Keep;ZipCode=99999");
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, "City"))->text(), "Keep");
        QVERIFY(world.main.toolbarButton(QStringLiteral("Save"))->isEnabled());
        // field, its caption, a value
        const char *const steps[][3] = {{"LastName", "Last Name", "O'Brien"},
                                        {"FirstName", "First Name", "Ann"},
                                        {"SocialSecurityNumber", "Social Security No", "123456789"},
                                        {"Address", "Address", "12 Main St"}};
        for (const auto &step : steps) {
            world.prompts.clear();
            world.toolbar("Save");
            const Prompt::Message required {"Required Field Empty", QStringLiteral("%1 is required.").arg(QLatin1String(step[1])),
                                            Prompt::Icon::Exclamation};
            QCOMPARE(world.prompts.messages(), QList<Prompt::Message> {required});
            QCOMPARE(TestDatabase::count("Client"), 0);
            typeInto(w, step[0], step[2]);
        }
        typeInto(w, "ZipCode", "62701");
        QCOMPARE(qobject_cast<QComboBox *>(fieldOf(w, "State"))->currentText(), "IL");
        world.prompts.clear();
        world.toolbar("Save");
        QCOMPARE(TestDatabase::count("Client"), 1);
        const qint64 id = TestDatabase::scalar("SELECT ClientID FROM Client").toLongLong();
        QCOMPARE(TestDatabase::scalar("SELECT LastName || '|' || SocialSecurityNumber || '|' || HomePhone || '|' || BirthDate || '|'"
                                      " || EmployerDurationYears || '|' || DriversLicenseNumber || '|' || City || '|' || State || '|'"
                                      " || ZipCode || '|' || ifnull(MobilePhone, 'null') FROM Client")
                     .toString(),
                 QStringLiteral("O'Brien|123456789|2175551234|1980-03-15|4|D123|Springfield|IL|62701|null"));
        QCOMPARE(w->ClientID(), QString::number(id));
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: %1").arg(id));
        QVERIFY(!w->DataChanged() && !world.main.toolbarButton(QStringLiteral("Save"))->isEnabled());
        QVERIFY(world.prompts.messages().isEmpty());

        // Another client at the same address in other letter case and with the street word written out: the first is offered
        // through the picker; Cancel saves anyway.
        w->setClientID(QStringLiteral("ADD"));
        world.prompts.answerPick(std::nullopt);
        typeFields(w, "LastName=O'Brien;FirstName=Pat;SocialSecurityNumber=444556666;Address=12 MAIN STREET;City=springfield;State=IL");
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(world.prompts.pickRequests().size(), 1);
        const Prompt::PickRequest address = world.prompts.pickRequests().first();
        QCOMPARE(address.caption, "Client Already On File?");
        QCOMPARE(address.label,
                 QStringLiteral("The entered address is already on file for another client. Select an entry from the "
                                "following the list and click 'OK' to go to that client record. Click 'Cancel' to "
                                "continue saving the current record."));
        QCOMPARE(TestDatabase::count("Client"), 2);

        // The same social security number: OK jumps to that client and drops the new one.
        w->setClientID(QStringLiteral("ADD"));
        world.prompts.answerPick(QString::number(id));
        typeFields(w, "LastName=Walsh;FirstName=Pat;SocialSecurityNumber=123456789;Address=3 Bay Rd;City=Dover;State=IL");
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.pickRequests().size(), 2);
        QVERIFY(world.prompts.pickRequests().last().label.startsWith(QStringLiteral("The entered Social Security Number is already")));
        QCOMPARE(TestDatabase::count("Client"), 2);
        QCOMPARE(w->ClientID(), QString::number(id));
        QVERIFY(!w->DataChanged());
        QCOMPARE(qobject_cast<QLineEdit *>(fieldOf(w, "LastName"))->text() + qobject_cast<QLineEdit *>(fieldOf(w, "FirstName"))->text(),
                 QStringLiteral("O'BrienAnn"));
    }

    // Bad values and refused writes leave the stored client as it was, and the typing in place.
    void refusedValuesAndWritesChangeNothing()
    {
        ClientWorld world;
        const qint64 id
            = ClientWorld::addClient("Stone", "Sam", "S", rowValues("SocialSecurityNumber=555667777;Address=1 Oak;City=Peoria"));
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        QCOMPARE(w->ClientID(), QString::number(id));
        const auto stored
            = [] { return TestDatabase::scalar("SELECT LastName || '/' || City || '/' || ifnull(BirthDate, '') FROM Client").toString(); };

        const char *const refusals[][2]
            = {{"LastName=Changed;City=Pekin;SocialSecurityNumber=12345", "Social Security No must be 11 characters."},
               {"SocialSecurityNumber=555667777;BirthDate=13451980", "Birth Date is not a valid date."},
               {"BirthDate=01021980;HomePhone=217555", "Home Phone must have all ten digits, area code first."}};
        for (const auto &[typed, told] : refusals) {
            typeFields(w, QString::fromUtf8(typed));
            QVERIFY(!w->SaveCurrentRecord());
            QCOMPARE(world.prompts.last(), (Prompt::Message {"Data Entry Error", told, Prompt::Icon::Exclamation}));
            QVERIFY(w->DataChanged());
            QCOMPARE(stored(), "Stone/Peoria/");
        }

        // Leaving a field with a bad value says so at once and keeps the focus there.
        world.prompts.clear();
        QWidget *phone = fieldOf(w, "HomePhone");
        phone->setFocus();
        fieldOf(w, "FirstName")->setFocus(Qt::TabFocusReason);
        QCOMPARE(world.prompts.last().title, "Data Entry Error");
        QCoreApplication::processEvents();
        QCOMPARE(QApplication::focusWidget(), phone);
        typeInto(w, "HomePhone", "2175550000");

        // A write the database refuses changes nothing; once it accepts, every change lands.
        basDatabase::Execute("CREATE TRIGGER NoWrites BEFORE UPDATE ON Client BEGIN SELECT RAISE(ABORT, 'disk is full'); END");
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(world.prompts.last().title, "Application Error");
        QVERIFY(w->DataChanged());
        QCOMPARE(stored(), "Stone/Peoria/");
        QCOMPARE(w->recordset()->editMode(), Recordset::EditMode::None);
        basDatabase::Execute("DROP TRIGGER NoWrites");
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(stored(), "Changed/Pekin/1980-01-02");

        // A new client that the database refuses is not written either.
        basDatabase::Execute("CREATE TRIGGER NoInserts BEFORE INSERT ON Client BEGIN SELECT RAISE(ABORT, 'disk is full'); END");
        button(w, "cmdAdd")->click();
        typeFields(w, "LastName=Young;FirstName=Pat;SocialSecurityNumber=111000111;Address=9 Pine;City=Peoria;State=IL");
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count("Client"), 1);
        QCOMPARE(w->recordset()->editMode(), Recordset::EditMode::Adding);
        basDatabase::Execute("DROP TRIGGER NoInserts");
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count("Client", "LastName = ? AND City = ?", {"Young", "Peoria"}), 1);
    }

    // The keys move from any field (Ctrl alone to the ends, neither end passed); a change is saved before moving on; a new record
    // keeps the position shown and a blank one is dropped.
    void navigationAndStatus()
    {
        ClientWorld world;
        const qint64 c = ClientWorld::addClient("Clark", "Cy");
        const qint64 a = ClientWorld::addClient("Adams", "Al");
        const qint64 b = ClientWorld::addClient("Baker", "Bo");
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        const auto shown = [](qint64 n, qint64 id) { return QStringLiteral("Record: %1 of 3     ID: %2").arg(n).arg(id); };
        QCOMPARE(statusText(w), shown(1, a));
        QWidget *last = fieldOf(w, "LastName");
        const struct
        {
            QWidget *field;
            Qt::Key key;
            Qt::KeyboardModifiers modifiers;
            qint64 client;
        } keys[] = {{last, Qt::Key_PageDown, {}, b},
                    {last, Qt::Key_PageDown, Qt::ControlModifier, c},
                    {fieldOf(w, "Comments"), Qt::Key_PageDown, {}, c},
                    {last, Qt::Key_PageUp, Qt::ControlModifier | Qt::ShiftModifier, b},
                    {last, Qt::Key_PageUp, Qt::ControlModifier, a},
                    {last, Qt::Key_PageUp, {}, a}};
        for (const auto &k : keys) {
            QTest::keyClick(k.field, k.key, k.modifiers);
            QCOMPARE(w->ClientID(), QString::number(k.client));
        }
        button(w, "cmdLast")->click();
        typeInto(w, "FirstName", "Cyrus");
        button(w, "cmdFirst")->click();
        QCOMPARE(TestDatabase::scalar("SELECT FirstName FROM Client WHERE ClientID = ?", {c}).toString(), "Cyrus");
        button(w, "cmdAdd")->click();
        button(w, "cmdAdd")->click();
        QVERIFY(w->ClientID().isEmpty());
        QCOMPARE(statusText(w), shown(1, a));
        button(w, "cmdNext")->click();
        QCOMPARE(TestDatabase::count("Client"), 3);
        QCOMPARE(statusText(w), shown(2, b));

        // At its first size the window sits inside the main window's work area, nothing squeezed.
        const QSize area = world.main.mdiArea()->viewport()->size();
        const QSize least = w->minimumSizeHint();
        QVERIFY(least.width() <= area.width() * 0.85 && least.height() <= area.height() * 0.75);
        QVERIFY(w->width() >= least.width() && w->height() >= least.height());
        QVERIFY(QRect(QPoint(0, 0), area).contains(w->parentWidget()->geometry()));
    }

    // The tabs follow the options and mark where the client has data; Delete asks, then says what went (its rows go
    // with it in the database itself).
    void tabsShowWhereDataIsAndDeleteTakesItAll()
    {
        ClientWorld world;
        basDatabase::Execute("UPDATE Options SET ShowNotesTab = 0, ShowFEMATab = 0");
        world.main.refreshOptionFlags();
        const qint64 keep = ClientWorld::addClient("Adams", "Al");
        const qint64 id = ClientWorld::addClient("Doe", "Jane", "Q", {{"Comments", "hidden note"}, {"MedicalProblems", "asthma"}});
        for (const char *table : {"Family", "Payments", "Income", "Expenses"})
            TestDatabase::insert(table, {{"ClientID", id}});
        TestDatabase::insert("FoodService", {{"ClientID", keep}, {"NumberOfBags", 1}});
        auto *w = world.open<frmClientDetails>("mnuDataClientDetails");
        world.main.showClient(QString::number(id));
        QCOMPARE(w->ClientID(), QString::number(id));
        auto *tabs = w->findChild<QTabWidget *>("tabData");
        const QStringList expected
            = {"Notes ",          "Employer", "Family Members ", "Food Service", "Payment History ", "Income/Expenses ",
               "Health/Medical ", "FEMA",     "Former Address"};
        QCOMPARE(tabs->count(), expected.size());
        for (int i = 0; i < tabs->count(); ++i) {
            QCOMPARE(tabs->tabText(i), expected.at(i));
            QCOMPARE(tabs->tabIcon(i).isNull(), !expected.at(i).endsWith(QLatin1Char(' ')));
            QCOMPARE(tabs->isTabVisible(i), i != frmClientDetails::NotesTab && i != frmClientDetails::FEMATab);
        }
        // A list out of view is read when its tab is chosen.
        tabs->setCurrentIndex(frmClientDetails::FamilyTab);
        QCOMPARE(basTendmark::Model(tabs->currentWidget()->findChild<QTableView *>())->dataRowCount(), 1);
        // A supporting row saved elsewhere shows at once.
        TestDatabase::insert("FoodService", {{"ClientID", id}, {"FoodServiceDate", "2026-02-11"}});
        world.main.recordEvents()->announce(QString::number(id), nullptr);
        QCOMPARE(tabs->tabText(frmClientDetails::FoodServiceTab), "Food Service ");
        QCOMPARE(w->findChild<QLabel *>("lblHousehold")->text(), QStringLiteral("Household: 2   Last food service: 02/11/2026"));

        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        const Prompt::Message question {
            "Delete Client?",
            "This will delete client 'Doe, Jane Q' and all supporting data from the database. \r\nAre you sure you want to do this?",
            Prompt::Icon::Exclamation, Prompt::Yes | Prompt::No};
        QCOMPARE(world.prompts.messages().first(), question);
        QCOMPARE(world.prompts.last(), (Prompt::Message {"Delete Client", "Client 'Doe, Jane Q' deleted."}));
        QCOMPARE(TestDatabase::scalar("SELECT group_concat(ClientID) FROM Client").toLongLong(), keep);   // the other stays
    }
};

QTEST_MAIN(tst_ClientDetails)
#include "tst_clientdetails.moc"
