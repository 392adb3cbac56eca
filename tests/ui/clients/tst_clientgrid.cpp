#include "FormTesting.h"
#include "DataBinding.h"
#include "GridModel.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

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
            shown << static_cast<QWidget *>(watched)->windowTitle() + QLatin1Char('|')
                    + watched->findChild<QLabel *>(QStringLiteral("lblMessage"))->text();
        return false;
    }
};

class tst_ClientGrid : public QObject
{
    Q_OBJECT

    static QTableView *grid(QWidget *w) { return w->findChild<QTableView *>(QStringLiteral("grdData")); }

private slots:
    void showsClientsSortedWithFormattedColumnsAndSortsByAHeading()
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
        QVERIFY(w);
        QAbstractItemModelTester tester(grid(w)->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(grid(w)->model()->rowCount(), 2);
        auto cell = [w](int row, int column) { return basTendmark::GridText(grid(w), row, column); };
        QCOMPARE(cell(0, 1), QString::number(id));
        QCOMPARE(cell(0, 2), QStringLiteral("Abbot"));
        QCOMPARE(cell(0, 5), QStringLiteral("123-45-6789"));
        QCOMPARE(cell(0, 7), QStringLiteral("03/15/1980"));
        QCOMPARE(cell(0, 9), QStringLiteral("Asian"));
        QCOMPARE(cell(0, 11), QStringLiteral("1 Main Apt 2"));
        QCOMPARE(cell(0, 15), QStringLiteral("(217) 555-1234"));
        QCOMPARE(cell(1, 2), QStringLiteral("Zeller"));
        QVERIFY(!button(w, "cmdClientEdit")->isEnabled());

        // A click on a heading chooses the column the toolbar's sort buttons then sort by.
        QHeaderView *header = grid(w)->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(header->sectionViewportPosition(3) + 5, 5));
        QVERIFY(w->ColumnSelected());
        QVERIFY(!button(w, "cmdClientDelete")->isEnabled());
        world.toolbar("Sort Descending");
        QCOMPARE(cell(0, 3), QStringLiteral("Zoe"));
        world.toolbar("Sort Ascending");
        QCOMPARE(cell(0, 3), QStringLiteral("Amy"));
        // Choosing a row lets the column go and offers the row's client; the clicked cell's column is then the one to sort.
        clickRow(grid(w), 1);
        QVERIFY(!w->ColumnSelected());
        QVERIFY(world.main.toolbarButton(QStringLiteral("Sort Ascending"))->isEnabled());
        QCOMPARE(w->ClientID(), cell(1, 1));
        QVERIFY(button(w, "cmdClientEdit")->isEnabled());
    }

    void filterCaptionAndEmptyResult()
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
        QCOMPARE(basTendmark::GridText(grid(w), 0, 2), QStringLiteral("Baker"));
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
    void editAndDelete()
    {
        ClientWorld world;
        ClientWorld::addClient("Abbot", "Amy");
        const qint64 baker = ClientWorld::addClient("Baker", "Bob", "B");
        TestDatabase::insert("Payments", {{"ClientID", baker}, {"AmountPaid", 100}});
        auto *w = world.open<frmClientGrid>("mnuDataClientTable");
        clickRow(grid(w), 1);
        QVERIFY(!world.main.findChildWindow<frmClientDetails>());
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
        QCOMPARE(world.prompts.last().title, QStringLiteral("Delete Client?"));
        QCOMPARE(world.prompts.last().text,
                 QStringLiteral("This will delete client 'Baker, Bob B' and all supporting data from the database. "
                                "\r\nAre you sure you want to do this?"));
        QCOMPARE(TestDatabase::count("Client"), 1);
        QCOMPARE(TestDatabase::count("Payments"), 0);
        QCOMPARE(basTendmark::Model(grid(w))->dataRowCount(), 1);
        QVERIFY(!button(w, "cmdClientDelete")->isEnabled());
        QVERIFY(w->ClientID().isEmpty());
    }
};

QTEST_MAIN(tst_ClientGrid)
#include "tst_clientgrid.moc"
