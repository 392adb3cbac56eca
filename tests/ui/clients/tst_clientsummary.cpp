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

private slots:
    void emptyTable()
    {
        ClientWorld world;
        auto *w = world.open<frmClientSummary>("mnuDataClientSummary");
        QVERIFY(w);
        QCOMPARE(statusText(w), QStringLiteral("Record: 0 of 0"));
        QVERIFY(block(w).isEmpty());
        QVERIFY(!w->findChild<QPushButton *>(QStringLiteral("cmdClientEdit"))->isEnabled());
        QTest::keyClick(w, Qt::Key_PageDown);
        QCOMPARE(statusText(w), QStringLiteral("Record: 0 of 0"));
    }

    void clientBlockAndGrids()
    {
        ClientWorld world;
        const qint64 id = ClientWorld::addClient("Adams", "Ann", "B",
                                                 {{"SocialSecurityNumber", "123456789"},
                                                  {"Address", "12 Main St"},
                                                  {"City", "Peoria"},
                                                  {"State", "IL"},
                                                  {"ZipCode", "61602"},
                                                  {"HomePhone", "3095551212"}});
        const QString longLast = QStringLiteral("Montgomery-Fitzwilliam-Abernathy");
        const qint64 other = ClientWorld::addClient(longLast, "Alexandra", "C", {{"SocialSecurityNumber", "987654321"}});
        TestDatabase::insert("Payments", {{"ClientID", id}, {"AmountPaid", 123450}, {"PaymentDate", "2025-12-01"}});
        auto *w = world.open<frmClientSummary>("mnuDataClientSummary");
        const QStringList lines = block(w).split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 4);
        QCOMPARE(lines.at(0), QStringLiteral("Adams, Ann B").leftJustified(40) + QStringLiteral("123-45-6789"));
        QCOMPARE(lines.at(1), QStringLiteral("12 Main St"));
        QCOMPARE(lines.at(2), QStringLiteral("Peoria, IL  61602"));
        QCOMPARE(lines.at(3), QStringLiteral("(309) 555-1212"));
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 2     ID: %1").arg(id));
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

    void gridDeleteAndRefresh()
    {
        ClientWorld world;
        const qint64 a = ClientWorld::addClient("Adams", "Ann");
        TestDatabase::insert("FoodService",
                             {{"ClientID", a}, {"NumberOfBags", 3}, {"FoodServiceDate", "2026-01-05"}, {"FoodServiceTypeID", 1}});
        auto *w = world.open<frmClientSummary>("mnuDataClientSummary");
        QTableView *food = w->findChildren<QTableView *>(QStringLiteral("grdData")).at(1);
        clickRow(food, 0);
        auto *remove = w->findChildren<ClientSubGrid *>().at(1)->findChild<QPushButton *>(QStringLiteral("cmdGridDataDelete"));
        QVERIFY(remove->isEnabled());
        world.prompts.answer(Prompt::Yes);
        remove->click();
        QCOMPARE(world.prompts.last(),
                 (Prompt::Message {"Delete Record?", "Are you sure you want to delete '01/05/2026 - Emergency food box'?",
                                   Prompt::Icon::Question, Prompt::Yes | Prompt::No}));
        QCOMPARE(TestDatabase::count("FoodService"), 0);

        TestDatabase::insert("FoodService", {{"ClientID", a}, {"NumberOfBags", 1}});
        world.main.recordEvents()->announce(QString::number(a), nullptr);
        QCOMPARE(basTendmark::Model(food)->dataRowCount(), 1);
    }
};

QTEST_MAIN(tst_ClientSummary)
#include "tst_clientsummary.moc"
