// The client list and summary, the record editors the client windows open, and what one
// window does to the records showing at once in the others,
// worked through the main window as a user would.
#include "ClientSubGrid.h"
#include "FormTesting.h"
#include "DataBinding.h"
#include "GridModel.h"
#include "RowValues.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"
#include "frmClientSummary.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTextEdit>

// Notes every "Please Wait..." notice that is shown, with its message.
class NoticeWatch : public QObject
{
public:
    NoticeWatch() { qApp->installEventFilter(this); }
    QStringList shown;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Show && watched->objectName() == QLatin1String("frmMessage"))
            shown << static_cast<QWidget *>(watched)->windowTitle() + QLatin1Char('|') + watched->findChild<QLabel *>("lblMessage")->text();
        return false;
    }
};

class tst_ClientRecords : public QObject
{
    Q_OBJECT

    // The list of a page, or the one of the given table where a page holds two.
    static QTableView *gridOf(QWidget *lists, const QString &table)
    {
        const auto grids = lists->findChildren<QTableView *>("grdData");
        for (QTableView *g : grids)
            if (grids.size() == 1 || g->property("Table").toString() == table)
                return g;
        return nullptr;
    }
    static void bringBack(ClientWorld &world, MdiChild *w)
    {
        world.main.activateChild(w);
        QCoreApplication::processEvents();
        QCOMPARE(world.main.activeChild(), w);
    }
    static QTableView *grid(QWidget *w) { return w->findChild<QTableView *>("grdData"); }
    static QString block(QWidget *w) { return w->findChild<QTextEdit *>("rtbClientInfo")->toPlainText(); }
    static QString shown(int position, int count, qint64 id)
    {
        return count ? QStringLiteral("Record: %1 of %2     ID: %3").arg(position).arg(count).arg(id) : QStringLiteral("Record: 0 of 0");
    }
    static RecordEditor *activeEditor(ClientWorld &world, qint64 clientId)
    {
        auto *editor = qobject_cast<RecordEditor *>(world.main.activeChild());
        return editor && editor->ClientID() == QString::number(clientId) ? editor : nullptr;
    }

private slots:
    // Each list of a client's rows, in the details window and in the summary, worked as a user does:
    // Add opens its editor for the client, the toolbar saves, the list shows the row; Edit and a
    // double-click open the editor on the row; the toolbar deletes and the list lets it go.
    void subGridsOpenTheirEditors_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::addColumn<int>("list");   // the details window's tab, or the index of the summary's list
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("typed");   // field=value;field=value...
        QTest::addColumn<int>("column");
        QTest::addColumn<QString>("shown");
        using D = frmClientDetails;
        const char *details = "mnuDataClientDetails", *summary = "mnuDataClientSummary";
        const auto row = [](const char *name, const char *menu, int list, const char *table, const char *typed, int column,
                            const char *shown) { QTest::newRow(name) << menu << list << table << typed << column << shown; };
        row("details, family", details, D::FamilyTab, "Family", "RelationshipID=Son;LastName=O'Brien;FirstName=Sean;BirthDate=05012010", 2,
            "O'Brien, Sean");
        row("details, food", details, D::FoodServiceTab, "FoodService", "FoodServiceTypeID=Holiday basket;NumberOfBags=2", 2,
            "Holiday basket");
        row("details, payments", details, D::PaymentTab, "Payments", "PaymentsTypeID=Rent;AmountPaid=25", 3, "$25.00");
        row("details, expenses", details, D::IncomeExpensesTab, "Expenses", "ExpenseCategoryID=Food;Amount=120", 2, "$120.00");
        row("details, income", details, D::IncomeExpensesTab, "Income", "IncomeSourceID=Pension;Amount=50", 2, "$50.00");
        row("summary, family", summary, 0, "Family", "RelationshipID=Spouse;LastName=Adams;FirstName=Bill", 1, "Spouse");
        row("summary, food", summary, 1, "FoodService", "FoodServiceTypeID=Senior box;NumberOfBags=3", 2, "Senior box");
        row("summary, payments", summary, 2, "Payments", "PaymentsTypeID=Utilities;AmountPaid=40.5", 3, "$40.50");
    }

    void subGridsOpenTheirEditors()
    {
        QFETCH(QString, menu);
        QFETCH(int, list);
        QFETCH(QString, table);
        QFETCH(QString, typed);
        QFETCH(int, column);
        QFETCH(QString, shown);
        ClientWorld world;
        const qint64 id = ClientWorld::addClient("Adams", "Ann");
        TestDatabase::insert(table, {{"ClientID", ClientWorld::addClient("Baker", "Bo")}});   // another client's row, never listed
        auto *window = world.open<MdiChild>(qPrintable(menu));
        auto *details = qobject_cast<frmClientDetails *>(window);
        auto *tabs = details ? details->findChild<QTabWidget *>("tabData") : nullptr;
        QWidget *lists = tabs ? tabs->widget(list) : window->findChildren<ClientSubGrid *>().at(list);
        QTableView *grid = gridOf(lists, table);
        QVERIFY2(grid, qPrintable(table));
        if (tabs)
            tabs->setCurrentWidget(lists);
        // On a page of two lists, Add adds to the one last clicked, which stands out and is named on the button.
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, QPoint(20, 10));
        if (const QString item = table == "Income" ? "Income" : "Expense"; table == "Income" || table == "Expenses") {
            QPushButton *add = button(lists, "cmdGridDataAdd");
            QCOMPARE(add->text() + '|' + add->toolTip(), "&Add " + item + "...|Click to add a new " + item.toLower() + " entry.");
            QVERIFY(grid->styleSheet().contains("highlight"));
        }
        button(lists, "cmdGridDataAdd")->click();
        RecordEditor *editor = activeEditor(world, id);
        QVERIFY(editor);
        QVERIFY(editor->recordId().isEmpty());
        QVERIFY2(editor->boundControl(typed.section(QLatin1Char('='), 0, 0)), "the editor of the other list opened");
        typeFields(editor, typed);
        world.toolbar("Save");
        QCOMPARE(TestDatabase::count(table, "ClientID = ?", {id}), 1);
        ClientWorld::closeWindow(editor);   // the client window comes back to the front by itself
        QCOMPARE(world.main.activeChild(), window);
        QCOMPARE(basTendmark::Model(grid)->dataRowCount(), 1);
        QCOMPARE(basTendmark::GridText(grid, 0, column).trimmed(), shown);
        if (tabs)
            QVERIFY(tabs->tabText(list).endsWith(QLatin1Char(' ')));   // the tab shows it holds data
        const QString key = QString::number(basTendmark::GridRowKey(grid, 0));

        clickRow(grid, 0);
        button(lists, "cmdGridDataEdit")->click();
        editor = activeEditor(world, id);
        QVERIFY(editor);
        QCOMPARE(editor->recordId(), key);
        ClientWorld::closeWindow(editor);
        bringBack(world, window);
        clickRow(grid, 0, true);
        editor = activeEditor(world, id);
        QVERIFY(editor);
        QCOMPARE(editor->recordId(), key);

        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(TestDatabase::count(table, "ClientID = ?", {id}), 0);
        bringBack(world, window);
        QCOMPARE(basTendmark::Model(grid)->dataRowCount(), 0);
        if (tabs)
            QVERIFY(!tabs->tabText(list).endsWith(QLatin1Char(' ')));
    }

    // A client deleted in any client window leaves every other one at once: the list drops
    // the row, and details and summary move to the client after it (before it, when it was
    // the last), so that nothing is shown, or saved, for a client no longer on file.
    void deletedClientLeavesEveryWindow_data()
    {
        QTest::addColumn<QString>("deleter");
        QTest::addColumn<int>("clients");
        QTest::addColumn<int>("deleted");   // its place in the name order
        QTest::addColumn<bool>("editing");   // the details window holds a change to it
        QTest::newRow("list, middle") << "list" << 3 << 1 << false;
        QTest::newRow("list, while edited") << "list" << 3 << 1 << true;
        QTest::newRow("details, middle") << "details" << 3 << 1 << false;
        QTest::newRow("summary, last") << "summary" << 3 << 2 << false;
        QTest::newRow("summary, while edited") << "summary" << 3 << 0 << true;
        QTest::newRow("list, the only one") << "list" << 1 << 0 << false;
    }

    void deletedClientLeavesEveryWindow()
    {
        QFETCH(QString, deleter);
        QFETCH(int, clients);
        QFETCH(int, deleted);
        QFETCH(bool, editing);
        ClientWorld world;
        QMap<QString, qint64> byName;
        for (const char *name : {"Cole", "Adams", "Baker"})
            if (byName.size() < clients)
                byName.insert(QString::fromLatin1(name), ClientWorld::addClient(name, "Pat"));
        const QList<qint64> ids = byName.values();   // in name order
        const QString gone = QString::number(ids.at(deleted));
        auto *list = world.open<frmClientGrid>("mnuDataClientTable");
        auto *details = world.open<frmClientDetails>("mnuDataClientDetails");
        auto *summary = world.open<frmClientSummary>("mnuDataClientSummary");
        details->showRecord(gone);
        summary->showRecord(gone);
        list->showRecord(gone);
        if (editing)
            typeInto(details, "FirstName", "Changed");

        // No to the question keeps the client; Yes deletes it (the list through its own button).
        MdiChild *from = deleter == "details" ? static_cast<MdiChild *>(details) : summary;
        for (const Prompt::Button answer : {Prompt::No, Prompt::Yes}) {
            QCOMPARE(TestDatabase::count("Client"), clients);
            world.prompts.answer(answer);
            if (deleter == "list")
                button(list, "cmdClientDelete")->click();
            else
                from->DeleteCurrentRecord();
        }

        auto *grid = list->findChild<QTableView *>(QStringLiteral("grdData"));
        QCOMPARE(basTendmark::Model(grid)->dataRowCount(), clients - 1);
        QCOMPARE(basTendmark::Model(grid)->findKey(gone.toLongLong()), -1);
        const int next = deleted < clients - 1 ? deleted + 1 : deleted - 1;
        const QString neighbour = next >= 0 ? QString::number(ids.at(next)) : QString();
        const QString expected = shown(qMin(deleted + 1, clients - 1), clients - 1, neighbour.toLongLong());
        QCOMPARE(details->ClientID(), neighbour);
        QCOMPARE(statusText(details), expected);
        QCOMPARE(summary->ClientID(), neighbour);
        QCOMPARE(statusText(summary), expected);
        QCOMPARE(world.prompts.titles().contains("Client Deleted"), editing);
        QVERIFY(!details->DataChanged());   // nothing left to save into a client that is gone
        QVERIFY(list->ClientID().isEmpty() && !button(list, "cmdClientDelete")->isEnabled());
    }

    // A new client, or a new record in an editor, takes its place in the order at once; while
    // a new record is open the navigation buttons lead back to the others.
    void newRecordTakesItsPlace()
    {
        ClientWorld world;
        const qint64 adams = ClientWorld::addClient("Adams", "Ann");
        ClientWorld::addClient("Cole", "Cy");
        auto *summary = world.open<frmClientSummary>("mnuDataClientSummary");
        auto *details = world.open<frmClientDetails>("mnuDataClientDetails");
        button(details, "cmdAdd")->click();
        typeFields(details, "LastName=Baker;FirstName=Bo;SocialSecurityNumber=321654987;Address=9 Elm;City=Peoria;State=IL");
        QVERIFY(details->SaveCurrentRecord());
        const qint64 baker = details->ClientID().toLongLong();
        QCOMPARE(statusText(details), shown(2, 3, baker));
        button(details, "cmdPrevious")->click();
        QCOMPARE(details->ClientID(), QString::number(adams));
        QCOMPARE(statusText(summary), shown(1, 3, adams));

        // A record editor: a new visit dated between two others is shown between them once saved.
        for (const char *date : {"2025-01-10", "2025-12-01"})
            TestDatabase::insert("FoodService", {{"ClientID", adams}, {"FoodServiceDate", date}, {"NumberOfBags", 2}});
        const QString december = TestDatabase::scalar("SELECT MAX(FoodServiceID) FROM FoodService").toString();
        world.main.openRecordEditor(RecordKind::FoodService, QString::number(adams), december);
        auto *editor = qobject_cast<RecordEditor *>(world.main.activeChild());
        button(editor, "cmdAdd")->click();
        for (const char *name : {"cmdFirst", "cmdPrevious", "cmdNext", "cmdLast"})
            QVERIFY2(button(editor, name)->isEnabled(), name);
        button(editor, "cmdLast")->click();
        QCOMPARE(editor->recordId(), december);
        button(editor, "cmdAdd")->click();
        dateEdit(editor, "FoodServiceDate")->setDate(QDate(2025, 6, 1));
        choose(combo(editor, "FoodServiceTypeID"), "Senior box");
        typeInto(editor, "NumberOfBags", "3");
        QVERIFY(editor->SaveCurrentRecord());
        QCOMPARE(statusText(editor), shown(2, 3, editor->recordId().toLongLong()));
    }

    void listShowsFormattedColumnsAndSortsByAHeading()
    {
        ClientWorld world;
        ClientWorld::addClient("Zeller", "Zoe");
        QVariantMap abbot = rowValues("SocialSecurityNumber=123456789;HomePhone=2175551234;BirthDate=1980-03-15;Address=1 Main\nApt 2");
        abbot.insert("EthnicOriginID", TestDatabase::lookupId("EthnicOrigin", "Asian"));
        const qint64 id = ClientWorld::addClient("Abbot", "Amy", "B", abbot);
        auto *w = world.open<frmClientGrid>("mnuDataClientTable");
        QAbstractItemModelTester tester(grid(w)->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(grid(w)->model()->rowCount(), 2);
        auto cell = [w](int row, int column) { return basTendmark::GridText(grid(w), row, column); };
        QCOMPARE(
            (QStringList {cell(0, 1), cell(0, 2), cell(0, 5), cell(0, 7), cell(0, 9), cell(0, 11), cell(0, 15), cell(1, 2)}),
            (QStringList {QString::number(id), "Abbot", "123-45-6789", "03/15/1980", "Asian", "1 Main Apt 2", "(217) 555-1234", "Zeller"}));
        QVERIFY(!button(w, "cmdClientEdit")->isEnabled());

        // A click on a heading chooses the column the toolbar's sort buttons then sort by.
        QHeaderView *header = grid(w)->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(header->sectionViewportPosition(3) + 5, 5));
        QVERIFY(w->ColumnSelected());
        QVERIFY(!button(w, "cmdClientDelete")->isEnabled());
        world.toolbar("Sort Descending");
        QCOMPARE(cell(0, 3), "Zoe");
        world.toolbar("Sort Ascending");
        QCOMPARE(cell(0, 3), "Amy");
        // Choosing a row lets the column go and offers the row's client; the clicked cell's column is then the one to sort.
        clickRow(grid(w), 1);
        QVERIFY(!w->ColumnSelected());
        QVERIFY(world.main.toolbarButton(QStringLiteral("Sort Ascending"))->isEnabled());
        QCOMPARE(w->ClientID(), cell(1, 1));
        // Edit hands the chosen client over to the details window.
        button(w, "cmdClientEdit")->click();
        auto *details = world.main.findChildWindow<frmClientDetails>();
        QVERIFY(details);
        QCOMPARE(details->ClientID(), cell(1, 1));
    }

    void listFilterAndEmptyResult()
    {
        ClientWorld world;
        ClientWorld::addClient("Abbot", "Amy", "B", {{"City", "Peoria"}});
        auto *w = world.open<frmClientGrid>("mnuDataClientTable");
        // A statement that finds nobody says so after its notice, and leaves one blank row that Edit does not open.
        NoticeWatch notices;
        w->setSQL(QStringLiteral("SELECT * FROM Client WHERE City = 'Nowhere'"));
        w->ExecuteSQL();
        const QString notice = QStringLiteral("Please Wait...|Please wait while the recordset is refreshed...");
        QCOMPARE(notices.shown, QStringList {notice});
        QCOMPARE(world.prompts.messages(),
                 (QList<Prompt::Message> {{"No Client Records Found", "No client records were found that matched the specified criteria.",
                                           Prompt::Icon::Exclamation}}));
        QCOMPARE(grid(w)->model()->rowCount(), 1);
        button(w, "cmdClientEdit")->click();
        QVERIFY(!world.main.findChildWindow<frmClientDetails>());

        // Refresh reads the list again under the same filter, with the same notice.
        w->setSQL(QStringLiteral("SELECT * FROM Client WHERE City LIKE 'Pe%'"));
        w->ExecuteSQL();
        ClientWorld::addClient("Carter", "Cy", "D", {{"City", "Pella"}});
        ClientWorld::addClient("Dunn", "Di", "E", {{"City", "Ames"}});
        notices.shown.clear();
        button(w, "cmdRefresh")->click();
        QCOMPARE(notices.shown, QStringList {notice});
        QCOMPARE(basTendmark::Model(grid(w))->dataRowCount(), 2);
        QVERIFY(!button(w, "cmdClientEdit")->isEnabled());
    }

    void toolbarAndSearchBarActOnTheActiveClientWindow()
    {
        ClientWorld world;
        const qint64 a = ClientWorld::addClient("Adams", "Ann");
        const qint64 b = ClientWorld::addClient("Baker", "Bo");
        const qint64 c = ClientWorld::addClient("Clark", "Cy");
        auto *list = world.open<frmClientGrid>("mnuDataClientTable");
        auto *details = world.open<frmClientDetails>("mnuDataClientDetails");
        auto *summary = world.open<frmClientSummary>("mnuDataClientSummary");
        QVERIFY(list && details && summary);

        // The search bar's choice goes to the window in front, whatever its kind, and to no other: summary, details, list.
        const auto chosen = [&] { return QStringList {summary->ClientID(), details->ClientID(), list->ClientID()}.join('|'); };
        const std::tuple<MdiChild *, qint64, QString> shows[] = {{summary, b, "b|a|"}, {details, c, "b|c|"}, {list, b, "b|c|b"}};
        for (const auto &[front, id, expected] : shows) {
            bringBack(world, front);
            world.main.showClient(QString::number(id));
            QCOMPARE(chosen(),
                     QString(expected).replace('a', QString::number(a)).replace('b', QString::number(b)).replace('c', QString::number(c)));
        }
        QCOMPARE(basTendmark::GridText(grid(list), 1, 1), QString::number(b));

        // Save acts on the details window in front.
        bringBack(world, details);
        typeInto(details, "FirstName", "Cyrus");
        world.toolbar("Save");
        QCOMPARE(TestDatabase::scalar("SELECT FirstName FROM Client WHERE ClientID = ?", {c}).toString(), "Cyrus");

        // Delete acts on the summary in front and moves it to the next client.
        bringBack(world, summary);
        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(world.prompts.titles(), (QStringList {"Delete Client?", "Delete Client"}));
        QCOMPARE(world.prompts.last().text, "Client 'Baker, Bo A' deleted.");
        QCOMPARE(TestDatabase::count("Client"), 2);
        QCOMPARE(statusText(summary), shown(2, 2, c));
    }

    // The summary: the client's block of text, an empty table, and a row deleted from its own list.
    void summaryShowsTheClientAndDeletesARow()
    {
        ClientWorld world;
        auto *w = world.open<frmClientSummary>("mnuDataClientSummary");
        QCOMPARE(statusText(w), "Record: 0 of 0");
        QVERIFY(block(w).isEmpty());
        QVERIFY(!button(w, "cmdClientEdit")->isEnabled());
        QTest::keyClick(w, Qt::Key_PageDown);
        ClientWorld::closeWindow(w);

        const qint64 id = ClientWorld::addClient(
            "Adams", "Ann", "B",
            rowValues("SocialSecurityNumber=123456789;Address=12 Main St;City=Peoria;ZipCode=61602;HomePhone=3095551212"));
        const QString longLast = QStringLiteral("Montgomery-Fitzwilliam-Abernathy");
        const qint64 other = ClientWorld::addClient(longLast, "Alexandra", "C", {{"SocialSecurityNumber", "987654321"}});
        TestDatabase::insert("FoodService",
                             {{"ClientID", id}, {"NumberOfBags", 3}, {"FoodServiceDate", "2026-01-05"}, {"FoodServiceTypeID", 1}});
        w = world.open<frmClientSummary>("mnuDataClientSummary");
        QCOMPARE(block(w).split(QLatin1Char('\n')),
                 (QStringList {QStringLiteral("Adams, Ann B").leftJustified(40) + "123-45-6789", "12 Main St", "Peoria, IL  61602",
                               "(309) 555-1212"}));
        QTableView *food = w->findChildren<QTableView *>("grdData").at(1);
        clickRow(food, 0);
        world.prompts.answer(Prompt::Yes);
        button(w->findChildren<ClientSubGrid *>().at(1), "cmdGridDataDelete")->click();
        QCOMPARE(world.prompts.last(),
                 (Prompt::Message {"Delete Record?", "Are you sure you want to delete '01/05/2026 - Emergency food box'?",
                                   Prompt::Icon::Question, Prompt::Yes | Prompt::No}));
        QCOMPARE(TestDatabase::count("FoodService"), 0);
        QCOMPARE(basTendmark::Model(food)->dataRowCount(), 0);

        // A name over 40 characters is not padded: the number follows at once. Edit hands the client to the details.
        button(w, "cmdNext")->click();
        QCOMPARE(block(w).split(QLatin1Char('\n')).first(), longLast + QStringLiteral(", Alexandra C987-65-4321"));
        button(w, "cmdClientEdit")->click();
        auto *details = world.main.findChildWindow<frmClientDetails>();
        QVERIFY(details);
        QCOMPARE(details->ClientID(), QString::number(other));
    }
};

QTEST_MAIN(tst_ClientRecords)
#include "tst_clientrecords.moc"
