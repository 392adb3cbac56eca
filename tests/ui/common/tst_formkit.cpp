#include "AmountBox.h"
#include "DataBinding.h"
#include "FilterStatement.h"
#include "GridModel.h"
#include "NavigationStrip.h"
#include "RecordQueries.h"
#include "Recordset.h"
#include "RowValues.h"
#include "SqlText.h"
#include "TestDatabase.h"
#include "WidgetPrompts.h"
#include "basDatabase.h"
#include "frmSelect.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QTimer>

using namespace basTendmark;

// What the record windows are built from: grids and their model, bound controls, the navigation
// strip, the amount box, the record picker and the real prompt that shows it. How bound fields
// report edits and moves is seen through the record windows.
class TestFormKit : public QObject
{
    Q_OBJECT

    static QTableView *grid(const QString &spec)
    {
        auto *g = new QTableView;
        g->setProperty("ColumnSpec", spec);
        FormatDataGrid(g);
        return g;
    }
    static QStringList column(QTableView *g, int c)
    {
        QStringList texts;
        for (int row = 0; row < g->model()->rowCount(); ++row)
            texts << GridText(g, row, c);
        return texts;
    }
    const QString pickerQuery = "SELECT ClientID, LastName, FirstName, MiddleInitial, SocialSecurityNumber, Address, City, State, ZipCode, "
                                "HomePhone FROM Client WHERE LastName LIKE ? ORDER BY LastName";
    // Two clients for the picker, Adams with a value in each column shown; returns their keys.
    static std::pair<qint64, qint64> pickerClients()
    {
        return {TestDatabase::insert("Client",
                                     rowValues("LastName=Adams;FirstName=Ruth;SocialSecurityNumber=123456789;"
                                               "Address=12 Elm St\r\nApt 4\nBack door;HomePhone=9375551234")),
                TestDatabase::insert("Client", {{"LastName", "Baker"}, {"FirstName", "Tom"}})};
    }

private Q_SLOTS:
    // A grid takes its columns from the layout text (heading, width in twips, alignment mark), always keeps one
    // row (a blank one when the query finds nothing or its last row goes) and sorts by value.
    void gridsTakeTheirLayoutAndKeepARow()
    {
        TestDatabase db;
        std::unique_ptr<QTableView> g(grid(">Last Name,1400|<First Name,|^Zip,1100"));
        QAbstractItemModelTester tester(g->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(g->columnWidth(1), 1400 / 15);
        QCOMPARE(g->columnWidth(2), g->horizontalHeader()->defaultSectionSize());
        QCOMPARE(g->model()->headerData(2, Qt::Horizontal).toString(), "First Name");
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
        QCOMPARE(GridText(g.get(), 1, 1), "O'Brien");
        QCOMPARE(GridText(g.get(), 1, 2), QString());   // null shows empty
        QCOMPARE(Model(g.get())->findKey(a), 1);
        for (const qint64 key : {b, a}) {
            basDatabase::Execute("DELETE FROM Client WHERE ClientID = ?", {key});
            RemoveGridRow(g.get(), 0);
            QCOMPARE(g->model()->rowCount(), 1);
            QCOMPARE(GridRowKey(g.get(), 0), key == b ? a : 0);
        }
        QCOMPARE(GridText(g.get(), 0, 1), QString());

        // Shown dates and amounts sort by their value, not their text.
        const qint64 x = TestDatabase::insert("Client", {{"LastName", "A"}, {"BirthDate", "1990-01-05"}});
        const qint64 y = TestDatabase::insert("Client", {{"LastName", "B"}, {"BirthDate", "1985-12-31"}});
        const qint64 z = TestDatabase::insert("Client", {{"LastName", "C"}, {"BirthDate", "2001-06-15"}});
        for (const auto &[client, amount] : {std::pair {x, 99000}, {y, 120000}, {z, 9500}})
            TestDatabase::insert("Income", {{"ClientID", client}, {"Amount", amount}});
        g.reset(grid("<Name,1400|^Birth Date,1000|^Amount,900"));
        PopulateDataGrid(g.get(),
                         {"SELECT Client.ClientID, LastName, " + SqlText::date("BirthDate") + " AS BirthDate, "
                              + SqlText::currency("Amount") + " AS Amount FROM Client JOIN Income ON Income.ClientID = Client.ClientID",
                          {},
                          {}});
        Model(g.get())->sortByColumn(2, Qt::AscendingOrder);
        QCOMPARE(column(g.get(), 1), (QStringList {"B", "A", "C"}));
        Model(g.get())->sortByColumn(3, Qt::DescendingOrder);
        QCOMPARE(column(g.get(), 3), (QStringList {"$1,200.00", "$990.00", "$95.00"}));
        QCOMPARE(Model(g.get())->findKey(z), 2);
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
        QCOMPARE(GridText(g.get(), 19999, 1), "L20000");
        Model(g.get())->sortByColumn(1, Qt::DescendingOrder);
        QCOMPARE(GridText(g.get(), 0, 1), "L20000");
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

    // Controls show a record's stored values formatted and give them back as stored; lists find
    // their entry by the stored text (its case kept) or key.
    void controlsShowAndReturnTheStoredValues()
    {
        TestDatabase db;
        const qint64 asian = TestDatabase::lookupId("EthnicOrigin", "Asian");
        QVariantMap obrien
            = rowValues("LastName=O'Brien;HomePhone=5551234567;BirthDate=1980-12-31;SocialSecurityNumber=123456789;State=TX");
        obrien.insert("FEMAContacted", 1);
        obrien.insert("EthnicOriginID", asian);
        TestDatabase::insert("Client", obrien);
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
        QCOMPARE((QStringList {last.text(), phone.text(), birth.text(), state.currentText(), origin.currentText()}),
                 (QStringList {"O'Brien", "(555) 123-4567", "12/31/1980", "TX", "Asian"}));
        QVERIFY(fema.isChecked());
        QStringList values;
        for (auto [w, column] : bound)
            values << GetControlValue(w, rs.field(column));
        QCOMPARE(values, (QStringList {"O'Brien", "5551234567", "12/31/1980", "123456789", "True", "TX", QString::number(asian)}));
        QCOMPARE(GetFieldValue(rs, "BirthDate"), "12/31/1980");
        for (const char *text : {"", "tx", "ZZ"})   // text matches keep their case
            QCOMPARE(GetComboItemIndex(&state, rs.field("State"), QString::fromLatin1(text)), -1);
        QCOMPARE(GetComboItemIndex(&origin, rs.field("EthnicOriginID"), "999"), -1);
        phone.clear();
        birth.clear();
        QCOMPARE(GetControlValue(&phone, rs.field("HomePhone")) + GetControlValue(&birth, rs.field("BirthDate")), QString());
        QDateEdit date;
        SetControlValue(&date, rs.field("BirthDate"), "12/31/1980");
        QCOMPARE(date.date(), QDate(1980, 12, 31));
    }

    void stripShowsThePosition_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("buttons");
        // A new record (position 0, or -1 while it is being added) keeps the text and buttons shown before it.
        const auto row = [](const char *name, int position, int count, const char *label, const char *buttons) {
            QTest::newRow(name) << position << count << label << buttons;
        };
        row("first of three", 1, 3, "Record: 1 of 3     ID: 42", "  NL");
        row("middle", 2, 3, "Record: 2 of 3     ID: 42", "FPNL");
        row("last", 3, 3, "Record: 3 of 3     ID: 42", "FP  ");
        row("the only one", 1, 1, "Record: 1 of 1     ID: 42", "    ");
        row("none", 0, 0, "Record: 0 of 0", "    ");
        row("new beside others", 0, 3, "Record: 1 of 3     ID: 7", "  NL");
        row("new, none saved", -1, 0, "Record: 0 of 0", "    ");
        row("adding beside others", -1, 3, "Record: 1 of 3     ID: 7", "FPNL");
    }

    void stripShowsThePosition()
    {
        QFETCH(int, position);
        QFETCH(int, count);
        QFETCH(QString, label);
        QFETCH(QString, buttons);
        QWidget window;
        NavigationStrip strip(&window, false);
        strip.showPosition(1, 3, "7");
        strip.showPosition(position, count, "42");
        QCOMPARE(window.findChild<QLabel *>("lblStatus")->text(), label);
        QString enabled;   // "FPNL", a blank for each button disabled
        for (const char *name : {"cmdFirst", "cmdPrevious", "cmdNext", "cmdLast"})
            enabled += window.findChild<QPushButton *>(QLatin1String(name))->isEnabled() ? QChar::fromLatin1(name[3]) : QLatin1Char(' ');
        QCOMPARE(enabled, buttons);
        QVERIFY(!window.findChild<QPushButton *>("cmdAdd"));
    }

    void amountBoxTakesMoneyOnly_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("value");
        const char *const rows[][4] = {{"whole", "1234", "$1,234.00", "1234.00"},
                                       {"one point only", "12.5.7", "$12.57", "12.57"},
                                       {"letters and signs dropped", "a1-b2,c", "$12.00", "12.00"},
                                       {"empty", "", "", ""}};
        for (const auto &r : rows)
            QTest::newRow(r[0]) << QString(r[1]) << QString(r[2]) << QString(r[3]);
    }

    void amountBoxTakesMoneyOnly()
    {
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(QString, value);
        QWidget window;
        auto *box = new AmountBox(&window);
        auto *other = new QLineEdit(&window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QSignalSpy changes(box, &QLineEdit::textChanged);
        box->setFocus();
        QTest::keyClicks(box, typed);
        const auto edits = changes.size();
        QCOMPARE(box->value(), value);
        box->showFormatted();
        other->setFocus();
        QCOMPARE(box->text(), shown);
        QCOMPARE(changes.size(), edits);   // reformatting is no edit
        box->setFocus();   // back in the box, the dollar sign goes
        QVERIFY(!box->text().contains(QLatin1Char('$')));
        QCOMPARE(box->value(), value);
    }

    // A double-click chooses its row; an empty result shows one blank row that cannot be chosen, OK stays off.
    void pickerDoubleClickChoosesTheRow()
    {
        TestDatabase db;
        const qint64 second = pickerClients().second;
        for (const bool chosen : {true, false}) {   // the second row, or the blank row of an empty result
            frmSelect form;
            form.setRecordset({pickerQuery, {chosen ? "%" : "Nobody"}, {}});
            form.show();
            auto *grid = form.findChild<QTableView *>("grdData");
            auto *ok = form.findChild<QPushButton *>("cmdOK");
            QCOMPARE(grid->model()->rowCount(), chosen ? 2 : 1);
            QCOMPARE(ok->isEnabled(), chosen);   // the first row starts current
            const QPoint at = grid->visualRect(grid->model()->index(chosen ? 1 : 0, 2)).center();
            QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, at);
            QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, at);
            QCOMPARE(form.OKClicked(), chosen);
            QCOMPARE(form.isVisible(), !chosen);
            QCOMPARE(form.RecordID(), chosen ? QString::number(second) : QString());
            QVERIFY(!ok->isEnabled() || chosen);
            if (!chosen)
                form.findChild<QPushButton *>("cmdCancel")->click();
            QVERIFY(!form.isVisible());
            QCOMPARE(form.result(), int(chosen ? QDialog::Accepted : QDialog::Rejected));
        }
    }

    // The real prompt shows the picker with its caption, the values formatted on one line each.
    void realPromptShowsThePickerFormatted()
    {
        TestDatabase db;
        const qint64 first = pickerClients().first;
        WidgetPrompts prompts;
        Prompt::setHandler(&prompts);
        QString caption;
        QStringList headings, rows;
        QTimer::singleShot(0, [&] {
            auto *form = qobject_cast<frmSelect *>(QApplication::activeModalWidget());
            QVERIFY(form);
            caption = form->windowTitle();
            QAbstractItemModel *model = form->findChild<QTableView *>("grdData")->model();
            for (int c = 1; c < model->columnCount(); ++c) {
                headings << model->headerData(c, Qt::Horizontal).toString();
                rows << model->index(0, c).data().toString() + QLatin1Char('/') + model->index(1, c).data().toString();
            }
            form->findChild<QPushButton *>("cmdOK")->click();
        });
        const std::optional<QString> chosen
            = Prompt::pick({QStringLiteral("Select Client"), QStringLiteral("Pick one."), {pickerQuery, {"%"}, {}}});
        Prompt::setHandler(nullptr);
        QCOMPARE(caption, "Select Client");
        QCOMPARE(headings, (QStringList {"Last Name", "First Name", "MI", "SSN", "Address", "City", "State", "Zip Code", "Home Phone"}));
        // Adams over Baker: nulls show empty, line breaks as spaces.
        QCOMPARE(rows,
                 (QStringList {"Adams/Baker", "Ruth/Tom", "/", "123-45-6789/", "12 Elm St  Apt 4 Back door/", "/", "/", "/",
                               "(937) 555-1234/"}));
        QCOMPARE(chosen, std::optional<QString>(QString::number(first)));
    }
};

QTEST_MAIN(TestFormKit)
#include "tst_formkit.moc"
