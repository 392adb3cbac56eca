// The client windows (details, summary, list) together with the record editors
// they open, worked through the main window as a user would.
#include "ClientSubGrid.h"
#include "FormTesting.h"
#include "DataBinding.h"
#include "GridModel.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"
#include "frmClientSummary.h"

#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTextEdit>

class tst_ClientRecords : public QObject
{
    Q_OBJECT

    // The list of a page, or the one of the given table where a page holds two.
    static QTableView *gridOf(QWidget *lists, const QString &table)
    {
        const auto grids = lists->findChildren<QTableView *>(QStringLiteral("grdData"));
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
    static QString block(QWidget *w) { return w->findChild<QTextEdit *>(QStringLiteral("rtbClientInfo"))->toPlainText(); }
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
        auto *tabs = details ? details->findChild<QTabWidget *>(QStringLiteral("tabData")) : nullptr;
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

        // The search bar's choice goes to the window in front, whatever its kind.
        bringBack(world, summary);
        world.main.showClient(QString::number(b));
        QCOMPARE(summary->ClientID(), QString::number(b));
        QCOMPARE(details->ClientID(), QString::number(a));
        bringBack(world, details);
        world.main.showClient(QString::number(c));
        QCOMPARE(details->ClientID(), QString::number(c));
        QCOMPARE(summary->ClientID(), QString::number(b));
        bringBack(world, list);
        world.main.showClient(QString::number(b));
        QCOMPARE(list->ClientID(), QString::number(b));
        QCOMPARE(basTendmark::GridText(list->findChild<QTableView *>(QStringLiteral("grdData")), 1, 1), QString::number(b));

        // Save acts on the details window in front.
        bringBack(world, details);
        typeInto(details, "FirstName", "Cyrus");
        world.toolbar("Save");
        QCOMPARE(TestDatabase::scalar("SELECT FirstName FROM Client WHERE ClientID = ?", {c}).toString(), QStringLiteral("Cyrus"));

        // Delete acts on the summary in front, takes the client's rows and moves to the next client;
        // the list drops the client when it comes back.
        TestDatabase::insert("Family", {{"ClientID", b}, {"FirstName", "Kid"}});
        TestDatabase::insert("Income", {{"ClientID", b}, {"Amount", 100}});
        bringBack(world, summary);
        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(world.prompts.titles(), (QStringList {"Delete Client?", "Delete Client"}));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Client 'Baker, Bo A' deleted."));
        QCOMPARE(TestDatabase::count("Client"), 2);
        QCOMPARE(TestDatabase::count("Family") + TestDatabase::count("Income"), 0);
        QCOMPARE(statusText(summary), QStringLiteral("Record: 2 of 2     ID: %1").arg(c));
        bringBack(world, list);
        auto *grid = list->findChild<QTableView *>(QStringLiteral("grdData"));
        QCOMPARE(basTendmark::Model(grid)->dataRowCount(), 2);
        QCOMPARE(basTendmark::GridText(grid, 1, 2), QStringLiteral("Clark"));
    }

    // The summary: the client's block of text, an empty table, and a row deleted from its own list.
    void summaryShowsTheClientAndDeletesARow()
    {
        ClientWorld world;
        auto *w = world.open<frmClientSummary>("mnuDataClientSummary");
        QCOMPARE(statusText(w), QStringLiteral("Record: 0 of 0"));
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
        QTableView *food = w->findChildren<QTableView *>(QStringLiteral("grdData")).at(1);
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
