#include "DataBinding.h"
#include "FilterStatement.h"
#include "GridModel.h"
#include "SqlText.h"
#include "RecordQueries.h"
#include "Recordset.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "basRegistry.h"

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTableView>
#include <QTest>

using namespace basTendmark;

class TestDataBinding : public QObject
{
    Q_OBJECT

private:
    static QTableView *grid(const QString &spec)
    {
        auto *g = new QTableView;
        g->setProperty("ColumnSpec", spec);
        FormatDataGrid(g);
        return g;
    }

private Q_SLOTS:
    // A grid takes its columns from the layout text (heading, width in twips, alignment mark) and always keeps one
    // row: a blank one when the query finds nothing or its last row goes.
    void gridsTakeTheirLayoutAndKeepARow()
    {
        TestDatabase db;
        std::unique_ptr<QTableView> g(grid(">Last Name,1400|<First Name,|^Zip,1100"));
        QAbstractItemModelTester tester(g->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(g->columnWidth(1), 1400 / 15);
        QCOMPARE(g->columnWidth(2), g->horizontalHeader()->defaultSectionSize());
        QCOMPARE(g->model()->headerData(2, Qt::Horizontal).toString(), QStringLiteral("First Name"));
        const QList<GridModel::Column> &columns = Model(g.get())->columns();
        QCOMPARE(QList<Qt::Alignment>({columns.at(1).alignment, columns.at(2).alignment, columns.at(3).alignment}),
                 QList<Qt::Alignment>(
                     {Qt::AlignRight | Qt::AlignVCenter, Qt::AlignLeft | Qt::AlignVCenter, Qt::AlignHCenter | Qt::AlignVCenter}));
        const Query query {"SELECT ClientID, LastName, FirstName, ZipCode FROM Client WHERE LastName <> ? ORDER BY LastName", {"x"}, {}};
        PopulateDataGrid(g.get(), query);
        QCOMPARE(g->model()->rowCount(), 1);
        QCOMPARE(GridRowKey(g.get(), 0), 0);

        const qint64 a = TestDatabase::insert("Client", {{"LastName", "O'Brien"}, {"FirstName", QVariant()}});
        const qint64 b = TestDatabase::insert("Client", {{"LastName", "Adams"}, {"FirstName", "Ann"}});
        PopulateDataGrid(g.get(), query);
        QCOMPARE(g->model()->rowCount(), 2);
        QCOMPARE(GridRowKey(g.get(), 0), b);
        QCOMPARE(GridText(g.get(), 1, 1), QStringLiteral("O'Brien"));
        QCOMPARE(GridText(g.get(), 1, 2), QString());   // null shows empty
        QCOMPARE(Model(g.get())->findKey(a), 1);
        for (const qint64 key : {b, a}) {
            basDatabase::Execute("DELETE FROM Client WHERE ClientID = ?", {key});
            RemoveGridRow(g.get(), 0);
            QCOMPARE(g->model()->rowCount(), 1);
            QCOMPARE(GridRowKey(g.get(), 0), key == b ? a : 0);
        }
        QCOMPARE(GridText(g.get(), 0, 1), QString());
    }

    void largeListsAreReadInPages()
    {
        TestDatabase db;
        basDatabase::Execute("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) "
                             "INSERT INTO Client (LastName) SELECT printf('L%05d', i) FROM n");
        std::unique_ptr<QTableView> g(grid("<Last Name,1400"));
        QAbstractItemModelTester tester(g->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        PopulateDataGrid(g.get(), {"SELECT ClientID, LastName FROM Client ORDER BY LastName", {}, "SELECT ClientID FROM Client"});
        QCOMPARE(g->model()->rowCount(), 20000);
        QCOMPARE(GridText(g.get(), 19999, 1), QStringLiteral("L20000"));
        Model(g.get())->sortByColumn(1, Qt::DescendingOrder);
        QCOMPARE(GridText(g.get(), 0, 1), QStringLiteral("L20000"));
        SelectRow(g.get(), 5);
        QCOMPARE(g->currentIndex().row(), 5);
        QCOMPARE(g->selectionModel()->selectedIndexes().size(), 2);
    }

    // A list read by seeking on its order meets every row once, in the order a single full read gives, in
    // every order both ways, whichever page is read first (from either end, or far from any row seen) and
    // with ties and NULLs across page boundaries; a row's position is found without reading the list.
    void seekingPagesMeetEveryRowOnceInOrder()
    {
        TestDatabase db;
        // Few distinct values per column, about one in seven NULL, both cases of the same names, phones
        // whose shown text sorts unlike the stored digits.
        basDatabase::Execute(
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000) "
            "INSERT INTO Client (LastName, FirstName, MiddleInitial, SocialSecurityNumber, DriversLicenseNumber, BirthDate, Gender, "
            "EthnicOriginID, MaritalStatusID, Address, City, State, ZipCode, HomePhone, WorkPhone, MobilePhone, Comments) SELECT "
            "CASE WHEN i % 7 = 0 THEN NULL WHEN i % 2 THEN 'ng' || (i % 5) ELSE 'Ng' || (i % 5) END, nullif('F' || (i % 3), 'F0'), "
            "nullif(char(65 + i % 4), 'A'), nullif(printf('%09d', i % 6), '000000000'), nullif('D' || (i % 8), 'D7'), "
            "CASE WHEN i % 9 THEN date('1990-01-01', '+' || (i % 11) || ' days') END, nullif(substr('MF ', 1 + i % 3, 1), ' '), "
            "CASE i % 3 WHEN 1 THEN (SELECT MAX(EthnicOriginID) FROM EthnicOrigin) WHEN 2 THEN (SELECT MIN(EthnicOriginID) FROM EthnicOrigin) END, "
            "CASE WHEN i % 4 THEN (SELECT CASE i % 2 WHEN 0 THEN MIN(MaritalStatusID) ELSE MAX(MaritalStatusID) END FROM MaritalStatus) END, "
            "CASE WHEN i % 5 THEN (i % 3) || ' Main St' END, CASE WHEN i % 6 THEN 'City' || (i % 2) END, nullif('T' || (i % 3), 'T2'), "
            "nullif('7' || (i % 4), '73'), nullif('555000' || (i % 5), '5550004'), nullif('555100' || (i % 3), '5551000'), "
            "CASE i % 7 WHEN 6 THEN NULL WHEN 0 THEN '55520' ELSE '55520000' || (i % 7) || '0' END, nullif('note ' || (i % 2), 'note 1') FROM n");
        const QString filtered = FilterStatement::matching("Client", "SELECT ClientID FROM Client WHERE ClientID % 3 = 0");
        std::unique_ptr<QTableView> g(grid(""));
        GridModel *model = Model(g.get());
        for (const QString &base : {RecordQueries::allClients(), filtered}) {
            const Query query = RecordQueries::clientList(base);
            for (int column = 0; column < query.orders.size(); ++column) {
                for (const bool descending : {false, true}) {
                    if (column == 0 && descending)
                        continue;   // the list's own order goes one way
                    QStringList terms;
                    for (const QString &term : query.orders.at(column))
                        terms << term + (descending ? " DESC" : "");
                    QList<qint64> expected;
                    QSqlQuery all = basDatabase::Execute("SELECT ClientID FROM " + query.source + " ORDER BY " + terms.join(", "));
                    while (all.next())
                        expected << all.value(0).toLongLong();
                    const QString what = QStringLiteral("column %1%2 of %3").arg(column).arg(descending ? " descending" : "").arg(base);
                    PopulateDataGrid(g.get(), query);
                    model->sortByColumn(column, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
                    QVERIFY2(model->dataRowCount() == expected.size(), qPrintable(what));
                    // The middle page is read first, seeking from a row found before it, then the last; the
                    // found row's own page is read last, from that row both ways.
                    const int seen = int(expected.size()) * 3 / 10;
                    QVERIFY2(model->findKey(expected.at(seen)) == seen, qPrintable(what));
                    model->rowKey(int(expected.size()) / 2);
                    model->rowKey(int(expected.size()) - 1);
                    QList<qint64> keys;
                    for (int row = 0; row < expected.size(); ++row)
                        keys << model->rowKey(row);
                    QVERIFY2(keys == expected, qPrintable(what));
                    for (const int row : {0, 199, 200, int(expected.size()) - 1})
                        QVERIFY2(model->findKey(expected.at(row)) == row, qPrintable(what));
                }
            }
        }
        QCOMPARE(model->findKey(-1), -1);
    }

    void shownDatesAndAmountsSortByValue()
    {
        TestDatabase db;
        const qint64 a = TestDatabase::insert("Client", {{"LastName", "A"}, {"BirthDate", "1990-01-05"}});
        const qint64 b = TestDatabase::insert("Client", {{"LastName", "B"}, {"BirthDate", "1985-12-31"}});
        const qint64 c = TestDatabase::insert("Client", {{"LastName", "C"}, {"BirthDate", "2001-06-15"}});
        TestDatabase::insert("Income", {{"ClientID", a}, {"Amount", 99000}});
        TestDatabase::insert("Income", {{"ClientID", b}, {"Amount", 120000}});
        TestDatabase::insert("Income", {{"ClientID", c}, {"Amount", 9500}});
        std::unique_ptr<QTableView> g(grid("<Name,1400|^Birth Date,1000|^Amount,900"));
        PopulateDataGrid(g.get(),
                         {"SELECT Client.ClientID, LastName, " + SqlText::date("BirthDate") + " AS BirthDate, "
                              + SqlText::currency("Amount") + " AS Amount FROM Client JOIN Income ON Income.ClientID = Client.ClientID",
                          {},
                          {}});
        GridModel *model = Model(g.get());
        model->sortByColumn(2, Qt::AscendingOrder);
        QCOMPARE(QStringList({GridText(g.get(), 0, 1), GridText(g.get(), 1, 1), GridText(g.get(), 2, 1)}), (QStringList {"B", "A", "C"}));
        model->sortByColumn(3, Qt::DescendingOrder);
        QCOMPARE(QStringList({GridText(g.get(), 0, 3), GridText(g.get(), 1, 3), GridText(g.get(), 2, 3)}),
                 (QStringList {"$1,200.00", "$990.00", "$95.00"}));
        QCOMPARE(model->findKey(c), 2);
    }

    // Controls show a record's stored values formatted and give them back as stored; lists find
    // their entry by the stored text (its case kept) or key.
    void controlsShowAndReturnTheStoredValues()
    {
        TestDatabase db;
        const qint64 asian = TestDatabase::lookupId("EthnicOrigin", "Asian");
        TestDatabase::insert("Client",
                             {{"LastName", "O'Brien"},
                              {"HomePhone", "5551234567"},
                              {"BirthDate", "1980-12-31"},
                              {"SocialSecurityNumber", "123456789"},
                              {"FEMAContacted", 1},
                              {"State", "TX"},
                              {"EthnicOriginID", asian}});
        Recordset rs;
        rs.open("Client", "ClientID", "SELECT * FROM Client");
        QLineEdit last, phone, birth, ssn;
        QCheckBox fema;
        QComboBox state, origin;
        PopulateDataCombo(&state, "States", "StateID", "StateCode");
        PopulateDataCombo(&origin, "EthnicOrigin", "EthnicOriginID", "EthnicOriginDescription");
        QCOMPARE(state.count(), 56);
        QCOMPARE(state.currentIndex(), -1);
        phone.setInputMask("(999) 999-9999");
        birth.setInputMask("99/99/9999");
        ssn.setInputMask("999-99-9999");
        const QList<std::pair<QWidget *, const char *>> bound
            = {{&last, "LastName"},      {&phone, "HomePhone"}, {&birth, "BirthDate"},      {&ssn, "SocialSecurityNumber"},
               {&fema, "FEMAContacted"}, {&state, "State"},     {&origin, "EthnicOriginID"}};
        QList<QWidget *> controls;
        for (auto [w, column] : bound) {
            w->setProperty("DataField", column);
            controls << w;
        }
        PopulateDataControls(controls, rs);
        QCOMPARE(last.text(), QStringLiteral("O'Brien"));
        QCOMPARE(phone.text(), QStringLiteral("(555) 123-4567"));
        QCOMPARE(birth.text(), QStringLiteral("12/31/1980"));
        QVERIFY(fema.isChecked());
        QCOMPARE(state.currentText(), QStringLiteral("TX"));
        QCOMPARE(origin.currentText(), QStringLiteral("Asian"));
        QCOMPARE(GetControlValue(&phone, rs.field("HomePhone")), QStringLiteral("5551234567"));
        QCOMPARE(GetControlValue(&ssn, rs.field("SocialSecurityNumber")), QStringLiteral("123456789"));
        QCOMPARE(GetControlValue(&birth, rs.field("BirthDate")), QStringLiteral("12/31/1980"));
        QCOMPARE(GetControlValue(&fema, rs.field("FEMAContacted")), QStringLiteral("True"));
        QCOMPARE(GetControlValue(&state, rs.field("State")), QStringLiteral("TX"));
        QCOMPARE(GetControlValue(&origin, rs.field("EthnicOriginID")), QString::number(asian));
        QCOMPARE(GetFieldValue(rs, "BirthDate"), QStringLiteral("12/31/1980"));
        for (const char *text : {"", "tx", "ZZ"})   // text matches keep their case
            QCOMPARE(GetComboItemIndex(&state, rs.field("State"), QString::fromLatin1(text)), -1);
        QCOMPARE(GetComboItemIndex(&origin, rs.field("EthnicOriginID"), "999"), -1);
        phone.clear();
        birth.clear();
        QCOMPARE(GetControlValue(&phone, rs.field("HomePhone")), QString());
        QCOMPARE(GetControlValue(&birth, rs.field("BirthDate")), QString());
        QDateEdit date;
        SetControlValue(&date, rs.field("BirthDate"), "12/31/1980");
        QCOMPARE(date.date(), QDate(1980, 12, 31));
    }

    void childWindowsKeepTheirPlace()
    {
        basRegistry::DeleteKey(basRegistry::SettingsKey());
        QMdiArea area;
        area.resize(1000, 800);
        area.show();
        QVERIFY(QTest::qWaitForWindowExposed(&area));
        auto *child = new QWidget;
        child->setObjectName("frmTestChild");
        QMdiSubWindow *sub = area.addSubWindow(child);
        sub->move(30, 40);
        SetMDIChildDimensions(child, &area);
        QCOMPARE(sub->width(), int(area.viewport()->width() * 0.85));
        QCOMPARE(sub->height(), int(area.viewport()->height() * 0.75));
        QCOMPARE(sub->pos(), QPoint(0, 0));   // no stored place: the first step of the cascade
        sub->setGeometry(50, 60, 400, 300);
        SaveMDIChildDimensions(child);
        QCOMPARE(basRegistry::GetString(basRegistry::SettingsKey(), "frmTestChild"), QStringLiteral("50,60,400,300"));
        sub->setGeometry(0, 0, 200, 200);
        SetMDIChildDimensions(child, &area);
        QCOMPARE(sub->geometry(), QRect(50, 60, 400, 300));
    }
};

QTEST_MAIN(TestDataBinding)
#include "tst_databinding.moc"
