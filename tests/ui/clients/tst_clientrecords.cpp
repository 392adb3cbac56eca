// The client windows together with the record editors they open, worked
// through the main window as a user would.
#include "ClientSubGrid.h"
#include "FormTesting.h"
#include "DataBinding.h"
#include "GridModel.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"
#include "frmClientSummary.h"
#include "frmFamilyMember.h"
#include "frmFoodService.h"
#include "frmIncomeExpense.h"
#include "frmPaymentHistory.h"

#include <QDate>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>

class tst_ClientRecords : public QObject
{
    Q_OBJECT

    static QWidget *page(frmClientDetails *w, frmClientDetails::Tab tab)
    {
        return w->findChild<QTabWidget *>(QStringLiteral("tabData"))->widget(tab);
    }
    static QTableView *gridOf(QWidget *page, const QString &table = {})
    {
        for (QTableView *g : page->findChildren<QTableView *>(QStringLiteral("grdData")))
            if (table.isEmpty() || g->property("Table").toString() == table)
                return g;
        return nullptr;
    }
    // A button of the page, or of its index-th list.
    static QPushButton *buttonOf(QWidget *page, const char *name, int index = -1)
    {
        QWidget *lists = index < 0 ? page : page->findChildren<ClientSubGrid *>().at(index);
        return lists->findChild<QPushButton *>(QString::fromLatin1(name));
    }
    static void clickRow(QTableView *g, int row)
    {
        QTest::mouseClick(g->viewport(), Qt::LeftButton, {}, g->visualRect(g->model()->index(row, 1)).center());
    }
    static void doubleClickRow(QTableView *g, int row)
    {
        const QPoint at = g->visualRect(g->model()->index(row, 1)).center();
        QTest::mouseClick(g->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(g->viewport(), Qt::LeftButton, {}, at);
    }
    static void bringBack(ClientWorld &world, MdiChild *w)
    {
        world.main.activateChild(w);
        QCoreApplication::processEvents();
        QCOMPARE(world.main.activeChild(), w);
    }
    template<typename T> static T *activeEditor(ClientWorld &world, qint64 clientId)
    {
        auto *editor = qobject_cast<T *>(world.main.activeChild());
        if (editor && editor->ClientID() != QString::number(clientId))
            return nullptr;
        return editor;
    }

private slots:
    void familyMembersFromTheDetailsTab()
    {
        ClientWorld world;
        const qint64 id = ClientWorld::addClient(QStringLiteral("O'Brien"), QStringLiteral("Mary"));
        auto *details = world.open<frmClientDetails>("mnuDataClientDetails");
        QWidget *family = page(details, frmClientDetails::FamilyTab);

        buttonOf(family, "cmdGridDataAdd")->click();
        auto *member = activeEditor<frmFamilyMember>(world, id);
        QVERIFY(member);
        QVERIFY(member->FamilyMemberID().isEmpty());
        typeInto(member, QStringLiteral("RelationshipID"), QStringLiteral("Son"));
        typeInto(member, QStringLiteral("LastName"), QStringLiteral("O'Brien"));
        typeInto(member, QStringLiteral("FirstName"), QStringLiteral("Sean"));
        typeInto(member, QStringLiteral("BirthDate"), QStringLiteral("05012010"));
        world.toolbar("Save");
        QCOMPARE(TestDatabase::count(QStringLiteral("Family"), QStringLiteral("ClientID = ? AND FirstName = 'Sean'"), {id}), 1);

        // Back in the details window the new member is listed.
        bringBack(world, details);
        QTableView *grid = gridOf(family);
        QCOMPARE(basTendmark::Model(grid)->dataRowCount(), 1);
        QCOMPARE(basTendmark::GridText(grid, 0, 1), QStringLiteral("Son"));
        QCOMPARE(basTendmark::GridText(grid, 0, 2).trimmed(), QStringLiteral("O'Brien, Sean"));
        QCOMPARE(basTendmark::GridText(grid, 0, 3), QString::number(QDate::currentDate().year() - 2010));
        const QString key = QString::number(basTendmark::GridRowKey(grid, 0));

        // Edit opens the editor on that member; so does a double-click once it is closed.
        ClientWorld::closeWindow(member);
        QVERIFY(!world.main.findChildWindow<frmFamilyMember>());
        clickRow(grid, 0);
        buttonOf(family, "cmdGridDataEdit")->click();
        member = activeEditor<frmFamilyMember>(world, id);
        QVERIFY(member);
        QCOMPARE(member->FamilyMemberID(), key);
        ClientWorld::closeWindow(member);
        bringBack(world, details);
        doubleClickRow(grid, 0);
        member = activeEditor<frmFamilyMember>(world, id);
        QVERIFY(member);
        QCOMPARE(member->FamilyMemberID(), key);

        // A change saved in the editor shows in the list; so does a delete.
        typeInto(member, QStringLiteral("FirstName"), QStringLiteral("Shane"));
        world.toolbar("Save");
        bringBack(world, details);
        QCOMPARE(basTendmark::GridText(grid, 0, 2).trimmed(), QStringLiteral("O'Brien, Shane"));
        world.main.activateChild(member);
        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(TestDatabase::count(QStringLiteral("Family")), 0);
        bringBack(world, details);
        QCOMPARE(basTendmark::Model(grid)->dataRowCount(), 0);
        QCOMPARE(details->findChild<QTabWidget *>(QStringLiteral("tabData"))->tabText(frmClientDetails::FamilyTab),
                 QStringLiteral("Family Members"));
    }

    void serviceTabsOpenTheirEditors()
    {
        ClientWorld world;
        const qint64 id = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Ann"));
        world.main.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&world.main));
        auto *details = world.open<frmClientDetails>("mnuDataClientDetails");

        QWidget *food = page(details, frmClientDetails::FoodServiceTab);
        buttonOf(food, "cmdGridDataAdd")->click();
        auto *service = activeEditor<frmFoodService>(world, id);
        QVERIFY(service);
        QVERIFY(service->recordId().isEmpty());
        typeInto(service, QStringLiteral("FoodServiceTypeID"), QStringLiteral("Holiday basket"));
        typeInto(service, QStringLiteral("NumberOfBags"), QStringLiteral("2"));
        world.toolbar("Save");
        ClientWorld::closeWindow(service);   // the details window comes back to the front by itself
        QCOMPARE(world.main.activeChild(), details);
        QCOMPARE(basTendmark::GridText(gridOf(food), 0, 2), QStringLiteral("Holiday basket"));
        QCOMPARE(basTendmark::GridText(gridOf(food), 0, 3), QStringLiteral("2"));

        QWidget *payments = page(details, frmClientDetails::PaymentTab);
        buttonOf(payments, "cmdGridDataAdd")->click();
        auto *payment = activeEditor<frmPaymentHistory>(world, id);
        QVERIFY(payment);
        typeInto(payment, QStringLiteral("PaymentsTypeID"), QStringLiteral("Rent"));
        typeInto(payment, QStringLiteral("AmountPaid"), QStringLiteral("25"));
        world.toolbar("Save");
        bringBack(world, details);
        QCOMPARE(basTendmark::GridText(gridOf(payments), 0, 2), QStringLiteral("Rent"));
        QCOMPARE(basTendmark::GridText(gridOf(payments), 0, 3), QStringLiteral("$25.00"));

        // Income/Expenses: the grid that has the focus decides which list Add works on.
        QWidget *money = page(details, frmClientDetails::IncomeExpensesTab);
        details->findChild<QTabWidget *>(QStringLiteral("tabData"))->setCurrentWidget(money);
        gridOf(money, QStringLiteral("Expenses"))->setFocus();
        buttonOf(money, "cmdGridDataAdd")->click();
        auto *expenses = activeEditor<frmIncomeExpense>(world, id);
        QVERIFY(expenses);
        QCOMPARE(expenses->TableName(), QStringLiteral("Expenses"));
        typeInto(expenses, QStringLiteral("ExpenseCategoryID"), QStringLiteral("Food"));
        typeInto(expenses, QStringLiteral("Amount"), QStringLiteral("120"));
        world.toolbar("Save");
        bringBack(world, details);
        QTableView *expenseGrid = gridOf(money, QStringLiteral("Expenses"));
        QCOMPARE(basTendmark::GridText(expenseGrid, 0, 1), QStringLiteral("Food"));
        QCOMPARE(basTendmark::GridText(expenseGrid, 0, 2), QStringLiteral("$120.00"));
        QCOMPARE(basTendmark::Model(gridOf(money, QStringLiteral("Income")))->dataRowCount(), 0);

        gridOf(money, QStringLiteral("Income"))->setFocus();
        buttonOf(money, "cmdGridDataAdd")->click();
        auto *income = activeEditor<frmIncomeExpense>(world, id);
        QVERIFY(income);
        QCOMPARE(income->TableName(), QStringLiteral("Income"));
        QVERIFY(income != expenses);

        bringBack(world, details);
        doubleClickRow(expenseGrid, 0);
        QCOMPARE(world.main.activeChild(), expenses);
        QCOMPARE(expenses->recordId(), QString::number(basTendmark::GridRowKey(expenseGrid, 0)));
    }

    void summaryGridsOpenTheirEditors()
    {
        ClientWorld world;
        const qint64 id = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Ann"));
        auto *summary = world.open<frmClientSummary>("mnuDataClientSummary");
        const auto grids = summary->findChildren<QTableView *>(QStringLiteral("grdData"));
        QCOMPARE(grids.size(), 3);

        buttonOf(summary, "cmdGridDataAdd", 0)->click();
        auto *member = activeEditor<frmFamilyMember>(world, id);
        QVERIFY(member);
        QVERIFY(member->FamilyMemberID().isEmpty());
        typeInto(member, QStringLiteral("RelationshipID"), QStringLiteral("Spouse"));
        typeInto(member, QStringLiteral("LastName"), QStringLiteral("Adams"));
        typeInto(member, QStringLiteral("FirstName"), QStringLiteral("Bill"));
        world.toolbar("Save");
        bringBack(world, summary);
        QCOMPARE(basTendmark::GridText(grids.at(0), 0, 1), QStringLiteral("Spouse"));

        buttonOf(summary, "cmdGridDataAdd", 1)->click();
        auto *service = activeEditor<frmFoodService>(world, id);
        QVERIFY(service);
        typeInto(service, QStringLiteral("FoodServiceTypeID"), QStringLiteral("Senior box"));
        typeInto(service, QStringLiteral("NumberOfBags"), QStringLiteral("3"));
        world.toolbar("Save");
        bringBack(world, summary);
        QCOMPARE(basTendmark::GridText(grids.at(1), 0, 2), QStringLiteral("Senior box"));

        buttonOf(summary, "cmdGridDataAdd", 2)->click();
        auto *payment = activeEditor<frmPaymentHistory>(world, id);
        QVERIFY(payment);
        typeInto(payment, QStringLiteral("PaymentsTypeID"), QStringLiteral("Utilities"));
        typeInto(payment, QStringLiteral("AmountPaid"), QStringLiteral("40.5"));
        world.toolbar("Save");
        bringBack(world, summary);
        QCOMPARE(basTendmark::GridText(grids.at(2), 0, 3), QStringLiteral("$40.50"));

        // Edit (and a double-click) open the editor on the row's record.
        clickRow(grids.at(1), 0);
        buttonOf(summary, "cmdGridDataEdit", 1)->click();
        QCOMPARE(world.main.activeChild(), service);
        QCOMPARE(service->recordId(), QString::number(basTendmark::GridRowKey(grids.at(1), 0)));
        ClientWorld::closeWindow(member);
        bringBack(world, summary);
        doubleClickRow(grids.at(0), 0);
        member = activeEditor<frmFamilyMember>(world, id);
        QVERIFY(member);
        QCOMPARE(member->FamilyMemberID(), QString::number(basTendmark::GridRowKey(grids.at(0), 0)));
    }

    void toolbarAndSearchBarActOnTheActiveClientWindow()
    {
        ClientWorld world;
        const qint64 a = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Ann"));
        const qint64 b = ClientWorld::addClient(QStringLiteral("Baker"), QStringLiteral("Bo"));
        const qint64 c = ClientWorld::addClient(QStringLiteral("Clark"), QStringLiteral("Cy"));
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
        typeInto(details, QStringLiteral("FirstName"), QStringLiteral("Cyrus"));
        world.toolbar("Save");
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT FirstName FROM Client WHERE ClientID = ?"), {c}).toString(),
                 QStringLiteral("Cyrus"));

        // Delete acts on the summary in front; the list drops the client when it comes back.
        bringBack(world, summary);
        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(world.prompts.last().text, QStringLiteral("Client 'Baker, Bo A' deleted."));
        QCOMPARE(TestDatabase::count(QStringLiteral("Client")), 2);
        bringBack(world, list);
        auto *grid = list->findChild<QTableView *>(QStringLiteral("grdData"));
        QCOMPARE(basTendmark::Model(grid)->dataRowCount(), 2);
        QCOMPARE(basTendmark::GridText(grid, 1, 2), QStringLiteral("Clark"));
    }

    void deletingAClientGoesBackToTheFirst()
    {
        ClientWorld world;
        const qint64 a = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Ann"));
        const qint64 b = ClientWorld::addClient(QStringLiteral("Baker"), QStringLiteral("Bo"));
        ClientWorld::addClient(QStringLiteral("Clark"), QStringLiteral("Cy"));
        ClientWorld::addClient(QStringLiteral("Dunn"), QStringLiteral("Di"));
        auto *details = world.open<frmClientDetails>("mnuDataClientDetails");
        world.main.showClient(QString::number(b));
        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(details->ClientID(), QString::number(a));
        QCOMPARE(details->findChild<QLabel *>(QStringLiteral("lblStatus"))->text(), QStringLiteral("Record: 1 of 3     ID: %1").arg(a));

        auto *summary = world.open<frmClientSummary>("mnuDataClientSummary");
        QTest::keyClick(summary, Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(summary->ClientID(),
                 TestDatabase::scalar(QStringLiteral("SELECT ClientID FROM Client WHERE LastName = 'Dunn'")).toString());
        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(summary->ClientID(), QString::number(a));
        QCOMPARE(summary->findChild<QLabel *>(QStringLiteral("lblStatus"))->text(), QStringLiteral("Record: 1 of 2     ID: %1").arg(a));
    }
};

QTEST_MAIN(tst_ClientRecords)
#include "tst_clientrecords.moc"
