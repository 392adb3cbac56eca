#include "ClientSubGrid.h"
#include "FormTesting.h"
#include "RecordEvents.h"
#include "DataBinding.h"
#include "GridModel.h"
#include "frmClientDetails.h"
#include "frmClientSummary.h"

#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTextEdit>

class tst_ClientSummary : public QObject
{
    Q_OBJECT

    static QString block(QWidget *w) { return w->findChild<QTextEdit *>(QStringLiteral("rtbClientInfo"))->toPlainText(); }
    static QString status(QWidget *w) { return w->findChild<QLabel *>(QStringLiteral("lblStatus"))->text(); }

private slots:
    void emptyTable()
    {
        ClientWorld world;
        auto *w = world.open<frmClientSummary>("mnuDataClientSummary");
        QVERIFY(w);
        QCOMPARE(status(w), QStringLiteral("Record: 0 of 0"));
        QVERIFY(block(w).isEmpty());
        QVERIFY(!w->findChild<QPushButton *>(QStringLiteral("cmdClientEdit"))->isEnabled());
        QTest::keyClick(w, Qt::Key_PageDown);
        QCOMPARE(status(w), QStringLiteral("Record: 0 of 0"));
    }

    void clientBlockAndGrids()
    {
        ClientWorld world;
        const qint64 id = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Ann"), QStringLiteral("B"),
                                                 {{QStringLiteral("SocialSecurityNumber"), QStringLiteral("123456789")},
                                                  {QStringLiteral("Address"), QStringLiteral("12 Main St")},
                                                  {QStringLiteral("City"), QStringLiteral("Peoria")},
                                                  {QStringLiteral("State"), QStringLiteral("IL")},
                                                  {QStringLiteral("ZipCode"), QStringLiteral("61602")},
                                                  {QStringLiteral("HomePhone"), QStringLiteral("3095551212")}});
        const QString longLast = QStringLiteral("Montgomery-Fitzwilliam-Abernathy");
        const qint64 other = ClientWorld::addClient(longLast, QStringLiteral("Alexandra"), QStringLiteral("C"),
                                                    {{QStringLiteral("SocialSecurityNumber"), QStringLiteral("987654321")}});
        TestDatabase::insert(QStringLiteral("Payments"),
                             {{QStringLiteral("ClientID"), id},
                              {QStringLiteral("AmountPaid"), 123450},
                              {QStringLiteral("PaymentDate"), QStringLiteral("2025-12-01")}});
        auto *w = world.open<frmClientSummary>("mnuDataClientSummary");
        const QStringList lines = block(w).split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines.at(0), QStringLiteral("Adams, Ann B").leftJustified(40) + QStringLiteral("123-45-6789"));
        QCOMPARE(lines.at(1), QStringLiteral("12 Main St"));
        QCOMPARE(lines.at(2), QStringLiteral("Peoria, IL  61602"));
        QCOMPARE(lines.at(3), QStringLiteral("(309) 555-1212"));
        QCOMPARE(status(w), QStringLiteral("Record: 1 of 2     ID: %1").arg(id));
        const auto grids = w->findChildren<QTableView *>(QStringLiteral("grdData"));
        QCOMPARE(grids.size(), 3);
        QTableView *payments = grids.at(2);
        QCOMPARE(basTendmark::GridText(payments, 0, 1), QStringLiteral("12/01/2025"));
        QCOMPARE(basTendmark::GridText(payments, 0, 3), QStringLiteral("$1,234.50"));

        w->findChild<QPushButton *>(QStringLiteral("cmdNext"))->click();
        QCOMPARE(w->ClientID(), QString::number(other));
        // A name over 40 characters is not padded: the number follows at once.
        QCOMPARE(block(w).split(QLatin1Char('\n')).first(), longLast + QStringLiteral(", Alexandra C987-65-4321"));

        w->findChild<QPushButton *>(QStringLiteral("cmdClientEdit"))->click();
        auto *details = world.main.findChildWindow<frmClientDetails>();
        QVERIFY(details);
        QCOMPARE(details->ClientID(), QString::number(other));
    }

    void deleteMovesToANeighbour()
    {
        ClientWorld world;
        const qint64 a = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Ann"));
        const qint64 b = ClientWorld::addClient(QStringLiteral("Baker"), QStringLiteral("Bo"), QStringLiteral("C"));
        TestDatabase::insert(QStringLiteral("Family"),
                             {{QStringLiteral("ClientID"), b}, {QStringLiteral("FirstName"), QStringLiteral("Kid")}});
        TestDatabase::insert(QStringLiteral("Income"), {{QStringLiteral("ClientID"), b}, {QStringLiteral("Amount"), 100}});
        auto *w = world.open<frmClientSummary>("mnuDataClientSummary");
        QTest::keyClick(w, Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(w->ClientID(), QString::number(b));
        world.prompts.answer(Prompt::Yes);
        world.toolbar("Delete");
        QCOMPARE(world.prompts.messages().first().text.left(36), QStringLiteral("This will delete client 'Baker, Bo C"));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Client 'Baker, Bo C' deleted."));
        QCOMPARE(TestDatabase::count(QStringLiteral("Family")), 0);
        QCOMPARE(TestDatabase::count(QStringLiteral("Income")), 0);
        QCOMPARE(w->ClientID(), QString::number(a));
        QCOMPARE(status(w), QStringLiteral("Record: 1 of 1     ID: %1").arg(a));
    }

    void gridDeleteAndRefresh()
    {
        ClientWorld world;
        const qint64 a = ClientWorld::addClient(QStringLiteral("Adams"), QStringLiteral("Ann"));
        TestDatabase::insert(QStringLiteral("FoodService"),
                             {{QStringLiteral("ClientID"), a},
                              {QStringLiteral("NumberOfBags"), 3},
                              {QStringLiteral("FoodServiceDate"), QStringLiteral("2026-01-05")},
                              {QStringLiteral("FoodServiceTypeID"), 1}});
        auto *w = world.open<frmClientSummary>("mnuDataClientSummary");
        QTableView *food = w->findChildren<QTableView *>(QStringLiteral("grdData")).at(1);
        QTest::mouseClick(food->viewport(), Qt::LeftButton, {}, food->visualRect(food->model()->index(0, 1)).center());
        auto *remove = w->findChildren<ClientSubGrid *>().at(1)->findChild<QPushButton *>(QStringLiteral("cmdGridDataDelete"));
        QVERIFY(remove->isEnabled());
        world.prompts.answer(Prompt::Yes);
        remove->click();
        QCOMPARE(world.prompts.last().title, QStringLiteral("Delete Record?"));
        QCOMPARE(world.prompts.last().text, QStringLiteral("Are you sure you want to delete '01/05/2026 - Emergency food box'?"));
        QCOMPARE(world.prompts.last().icon, Prompt::Icon::Question);
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 0);

        TestDatabase::insert(QStringLiteral("FoodService"), {{QStringLiteral("ClientID"), a}, {QStringLiteral("NumberOfBags"), 1}});
        world.main.recordEvents()->announce(QString::number(a), nullptr);
        QCOMPARE(basTendmark::Model(food)->dataRowCount(), 1);
    }
};

QTEST_MAIN(tst_ClientSummary)
#include "tst_clientsummary.moc"
