#include "ClientRules.h"
#include "DataBinding.h"
#include "FormTesting.h"
#include "GridModel.h"
#include "RecordEvents.h"
#include "RowValues.h"
#include "Recordset.h"
#include "basDatabase.h"
#include "frmClientDetails.h"
#include "frmImportClients.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>

// Clients entered one by one in the details window, and many at once from a file under the same rules.
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
        const std::tuple<QWidget *, Qt::Key, Qt::KeyboardModifiers, qint64> keys[]
            = {{last, Qt::Key_PageDown, {}, b},
               {last, Qt::Key_PageDown, Qt::ControlModifier, c},
               {fieldOf(w, "Comments"), Qt::Key_PageDown, {}, c},
               {last, Qt::Key_PageUp, Qt::ControlModifier | Qt::ShiftModifier, b},
               {last, Qt::Key_PageUp, Qt::ControlModifier, a},
               {last, Qt::Key_PageUp, {}, a}};
        for (const auto &[field, key, modifiers, client] : keys) {
            QTest::keyClick(field, key, modifiers);
            QCOMPARE(w->ClientID(), QString::number(client));
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

    // The user chooses a file, fixes a column the header names its own way,
    // sees every row's fate, declines once, then imports adding the new lookup.
    void importThroughTheDialog()
    {
        ClientWorld world;
        // The details window marks as required exactly the fields an import requires.
        QStringList required, rules = ClientRules::requiredColumns();
        for (QWidget *c : world.open<frmClientDetails>("mnuDataClientDetails")->findChildren<QWidget *>())
            if (basTendmark::IsRequired(c))
                required << basTendmark::DataField(c);
        required.sort();
        rules.sort();
        QCOMPARE(required, rules);

        const QString csv = world.db.folder() + "/households.csv";
        QVERIFY(TestDatabase::writeFile(csv,
                                        "Client ID,Surname,First Name,Social Security Number,Address,City,State,Housing\r\n"
                                        "7,Garc\xC3\xAD"
                                        "a,Jos\xC3\xA9,123-45-6789,1 Main St,Dayton,OH,Tent\r\n"
                                        "8,Roe,Rick,12-34,2 Main St,Dayton,OH,Renting\r\n"
                                        "9,\xE7\x8E\x8B,\xE7\xA7\x80,987-65-4321,3 Main St,Dayton,OH,\r\n"));
        world.prompts.answerFile(csv);
        world.main.findChild<QAction *>("mnuDataImportClients")->trigger();
        auto *dialog = world.main.findChild<frmImportClients *>();
        QVERIFY(dialog && dialog->isVisible());
        dialog->findChild<QPushButton *>("cmdBrowse")->click();
        QCOMPARE(dialog->findChild<QLineEdit *>("txtFileName")->text(), QDir::toNativeSeparators(csv));
        QCOMPARE(dialog->findChild<QTableWidget *>("grdPreview")->rowCount(), 3);
        QCOMPARE(dialog->findChild<QTableWidget *>("grdPreview")->item(2, 1)->text(), "王");
        auto combo = [dialog](int column) { return dialog->findChild<QComboBox *>(QStringLiteral("cboField%1").arg(column)); };
        QCOMPARE((QStringList {combo(0)->currentText(), combo(1)->currentText(), combo(2)->currentText(), combo(7)->currentText()}),
                 (QStringList {"(not imported)", "(not imported)", "First Name", "Housing"}));

        auto *next = dialog->findChild<QPushButton *>("cmdNext");
        next->click();
        QCOMPARE(world.prompts.last().text, "Every client needs Last Name: choose the columns that hold them.");
        combo(1)->setCurrentText("Last Name");
        next->click();

        auto *results = dialog->findChild<QTableView *>("grdResults");
        QVERIFY(results->isVisible());
        const auto result = [results](int row, int column) { return results->model()->index(row, column).data().toString(); };
        QCOMPARE(results->model()->rowCount(), 3);
        QCOMPARE((QStringList {result(1, 1), result(1, 2), result(0, 2)}),
                 (QStringList {"Will be skipped", "Social Security Number '12-34' must have nine digits.",
                               "Housing 'Tent' is not in its list: left empty."}));
        QCOMPARE(dialog->findChild<QListWidget *>("lstUnknown")->item(0)->text(), "Housing: Tent (1 row)");
        QCOMPARE(dialog->findChild<QLabel *>("lblSummary")->text(), "2 rows would be imported, 1 skipped.");

        auto *import = dialog->findChild<QPushButton *>("cmdImport");
        world.prompts.answer(Prompt::No);
        import->click();
        QCOMPARE(world.prompts.last(),
                 (Prompt::Message {"Import Clients", "Import 2 clients? 1 row will be skipped.", Prompt::Icon::Question,
                                   Prompt::Yes | Prompt::No}));
        QCOMPARE(TestDatabase::count("Client"), 0);

        dialog->findChild<QRadioButton *>("optAddLookups")->click();
        QCOMPARE(result(0, 2), "Housing 'Tent' is added to its list.");
        world.prompts.answer(Prompt::Yes);
        import->click();
        QCOMPARE(world.prompts.last().text, "2 rows imported, 1 skipped.");
        QCOMPARE(TestDatabase::scalar("SELECT group_concat(LastName || FirstName || ifnull(HousingDescription, '-'), '|') FROM Client"
                                      " LEFT JOIN Housing USING (HousingID)")
                     .toString(),
                 "GarcíaJoséTent|王秀-");
        QCOMPARE(result(0, 1), "Imported");
        QVERIFY(!import->isEnabled());
        QCOMPARE(dialog->findChild<QPushButton *>("cmdCancel")->text(), "Close");
    }

    // Cancel while the rows go in: the dialog stays, and no client is added.
    void cancelDuringTheImportAddsNothing()
    {
        ClientWorld world;
        const QString csv = world.db.folder() + "/many.csv";
        QByteArray rows = "Last Name,First Name,Social Security Number,Address,City,State\n";
        for (int i = 0; i < 1000; ++i)
            rows += "Doe,Jo," + QByteArray::number(100000000 + i) + "," + QByteArray::number(i) + " Main St,Dayton,OH\n";
        QVERIFY(TestDatabase::writeFile(csv, rows));
        world.prompts.answerFile(csv);
        world.main.findChild<QAction *>("mnuDataImportClients")->trigger();
        auto *dialog = world.main.findChild<frmImportClients *>();
        dialog->findChild<QPushButton *>("cmdBrowse")->click();
        dialog->findChild<QPushButton *>("cmdNext")->click();
        auto *cancel = dialog->findChild<QPushButton *>("cmdCancel");
        QTimer::singleShot(0, cancel, &QPushButton::click);   // runs while the import shows its progress
        world.prompts.answer(Prompt::Yes);
        dialog->findChild<QPushButton *>("cmdImport")->click();
        QCOMPARE(world.prompts.last().text, "The import was cancelled: no client was added.");
        QCOMPARE(TestDatabase::count("Client"), 0);
        QVERIFY(dialog->isVisible());
        QVERIFY(dialog->findChild<QPushButton *>("cmdImport")->isEnabled());
    }
};

QTEST_MAIN(tst_ClientDetails)
#include "tst_clientdetails.moc"
