// The client list and summary, and the record editors the client windows open,
// worked through the main window as a user would.
#include "ClientSubGrid.h"
#include "FormTesting.h"
#include "DataBinding.h"
#include "GridModel.h"
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
        const struct
        {
            const char *name, *menu;
            int list;
            const char *table, *typed;
            int column;
            const char *shown;
        } rows[] = {
            {"details, family", details, D::FamilyTab, "Family", "RelationshipID=Son;LastName=O'Brien;FirstName=Sean;BirthDate=05012010", 2,
             "O'Brien, Sean"},
            {"details, food", details, D::FoodServiceTab, "FoodService", "FoodServiceTypeID=Holiday basket;NumberOfBags=2", 2,
             "Holiday basket"},
            {"details, payments", details, D::PaymentTab, "Payments", "PaymentsTypeID=Rent;AmountPaid=25", 3, "$25.00"},
            {"details, expenses", details, D::IncomeExpensesTab, "Expenses", "ExpenseCategoryID=Food;Amount=120", 2, "$120.00"},
            {"details, income", details, D::IncomeExpensesTab, "Income", "IncomeSourceID=Pension;Amount=50", 2, "$50.00"},
            {"summary, family", summary, 0, "Family", "RelationshipID=Spouse;LastName=Adams;FirstName=Bill", 1, "Spouse"},
            {"summary, food", summary, 1, "FoodService", "FoodServiceTypeID=Senior box;NumberOfBags=3", 2, "Senior box"},
            {"summary, payments", summary, 2, "Payments", "PaymentsTypeID=Utilities;AmountPaid=40.5", 3, "$40.50"},
        };
        for (const auto &r : rows)
            QTest::newRow(r.name) << r.menu << r.list << r.table << r.typed << r.column << r.shown;
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
        grid->setFocus();   // on a page of two lists, the one with the focus takes Add

        button(lists, "cmdGridDataAdd")->click();
        RecordEditor *editor = activeEditor(world, id);
        QVERIFY(editor);
        QVERIFY(editor->recordId().isEmpty());
        QVERIFY2(editor->boundControl(typed.section(QLatin1Char('='), 0, 0)), "the editor of the other list opened");
        for (const QString &pair : typed.split(QLatin1Char(';')))
            typeInto(editor, pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
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

    void listShowsFormattedColumnsAndSortsByAHeading()
    {
        ClientWorld world;
        ClientWorld::addClient("Zeller", "Zoe");
        const qint64 id = ClientWorld::addClient("Abbot", "Amy", "B",
                                                 {{"SocialSecurityNumber", "123456789"},
                                                  {"HomePhone", "2175551234"},
                                                  {"BirthDate", "1980-03-15"},
                                                  {"Address", "1 Main\nApt 2"},
                                                  {"EthnicOriginID", TestDatabase::lookupId("EthnicOrigin", "Asian")}});
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
        QVERIFY(button(w, "cmdClientEdit")->isEnabled());
    }

    void listFilterAndEmptyResult()
    {
        ClientWorld world;
        ClientWorld::addClient("Abbot", "Amy", "B", {{"City", "Peoria"}});
        ClientWorld::addClient("Baker", "Bo", "C", {{"City", "Pekin"}});
        auto *w = world.open<frmClientGrid>("mnuDataClientTable");
        w->setSQL(QStringLiteral("SELECT * FROM Client WHERE City = 'Pekin'"));
        NoticeWatch notices;
        w->ExecuteSQL();
        const QString notice = QStringLiteral("Please Wait...|Please wait while the recordset is refreshed...");
        QCOMPARE(notices.shown, QStringList {notice});
        QCOMPARE(basTendmark::Model(grid(w))->dataRowCount(), 1);
        QCOMPARE(basTendmark::GridText(grid(w), 0, 2), "Baker");
        QVERIFY(world.prompts.messages().isEmpty());

        w->setSQL(QStringLiteral("SELECT * FROM Client WHERE City = 'Nowhere'"));
        w->ExecuteSQL();
        QCOMPARE(world.prompts.last(),
                 (Prompt::Message {"No Client Records Found", "No client records were found that matched the specified criteria.",
                                   Prompt::Icon::Exclamation, Prompt::Ok}));
        QCOMPARE(grid(w)->model()->rowCount(), 1);   // one blank row
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
        QCOMPARE(basTendmark::Model(grid(w))->dataRowCount(), 3);
        QVERIFY(!button(w, "cmdClientEdit")->isEnabled());
    }

    // Edit hands the chosen client over to the details window; Delete asks first, takes the client's rows along
    // and leaves no client chosen.
    void listEditAndDelete()
    {
        ClientWorld world;
        ClientWorld::addClient("Abbot", "Amy");
        const qint64 baker = ClientWorld::addClient("Baker", "Bob", "B");
        TestDatabase::insert("Payments", {{"ClientID", baker}, {"AmountPaid", 100}});
        auto *w = world.open<frmClientGrid>("mnuDataClientTable");
        clickRow(grid(w), 1);
        button(w, "cmdClientEdit")->click();
        auto *details = world.main.findChildWindow<frmClientDetails>();
        QVERIFY(details);
        QCOMPARE(details->ClientID(), QString::number(baker));
        world.main.activateChild(w);

        world.prompts.answer(Prompt::No);
        button(w, "cmdClientDelete")->click();
        QCOMPARE(TestDatabase::count("Client"), 2);
        world.prompts.answer(Prompt::Yes);
        button(w, "cmdClientDelete")->click();
        QCOMPARE(world.prompts.titles(), (QStringList {"Delete Client?", "Delete Client?"}));
        QCOMPARE(TestDatabase::count("Client") + TestDatabase::count("Payments"), 1);
        QCOMPARE(basTendmark::Model(grid(w))->dataRowCount(), 1);
        QVERIFY(!button(w, "cmdClientDelete")->isEnabled());
        QVERIFY(w->ClientID().isEmpty());
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
        const auto shown = [&] { return QStringList {summary->ClientID(), details->ClientID(), list->ClientID()}.join('|'); };
        const std::tuple<MdiChild *, qint64, QString> shows[] = {{summary, b, "b|a|"}, {details, c, "b|c|"}, {list, b, "b|c|b"}};
        for (const auto &[front, id, expected] : shows) {
            bringBack(world, front);
            world.main.showClient(QString::number(id));
            QCOMPARE(shown(),
                     QString(expected).replace('a', QString::number(a)).replace('b', QString::number(b)).replace('c', QString::number(c)));
        }
        QCOMPARE(basTendmark::GridText(grid(list), 1, 1), QString::number(b));

        // Save acts on the details window in front.
        bringBack(world, details);
        typeInto(details, "FirstName", "Cyrus");
        world.toolbar("Save");
        QCOMPARE(TestDatabase::scalar("SELECT FirstName FROM Client WHERE ClientID = ?", {c}).toString(), "Cyrus");

        // Delete acts on the summary in front, takes the client's rows and moves to the next client;
        // the list drops the client when it comes back.
        TestDatabase::insert("Family", {{"ClientID", b}, {"FirstName", "Kid"}});
        TestDatabase::insert("Income", {{"ClientID", b}, {"Amount", 100}});
        bringBack(world, summary);
        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(world.prompts.titles(), (QStringList {"Delete Client?", "Delete Client"}));
        QCOMPARE(world.prompts.last().text, "Client 'Baker, Bo A' deleted.");
        QCOMPARE(TestDatabase::count("Client"), 2);
        QCOMPARE(TestDatabase::count("Family") + TestDatabase::count("Income"), 0);
        QCOMPARE(statusText(summary), QStringLiteral("Record: 2 of 2     ID: %1").arg(c));
        bringBack(world, list);
        auto *grid = list->findChild<QTableView *>("grdData");
        QCOMPARE(basTendmark::Model(grid)->dataRowCount(), 2);
        QCOMPARE(basTendmark::GridText(grid, 1, 2), "Clark");
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

        const qint64 id = ClientWorld::addClient("Adams", "Ann", "B",
                                                 {{"SocialSecurityNumber", "123456789"},
                                                  {"Address", "12 Main St"},
                                                  {"City", "Peoria"},
                                                  {"ZipCode", "61602"},
                                                  {"HomePhone", "3095551212"}});
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
