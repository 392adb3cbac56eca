#include "DataBinding.h"
#include "FormTesting.h"
#include "MarkingTranslator.h"
#include "GridModel.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"
#include "frmClientSummary.h"
#include "frmFilter.h"
#include "frmVolunteer.h"

#include <QStandardItemModel>
#include <QTabWidget>
#include <QTableView>

namespace {

enum Column {
    Conj = frmFilter::ColConjunction,
    Field = frmFilter::ColField,
    Cond = frmFilter::ColCondition,
    Value = frmFilter::ColValue,
    Value2 = frmFilter::ColValue2
};

// One criterion as a user fills it in: the cells left empty are not touched.
struct Row
{
    QString field = {}, condition = {}, value = {}, value2 = {}, conjunction = {};
};

// The filter dialog the Filter button opened, worked cell by cell through its in-cell editors.
struct FilterDialog
{
    QPointer<frmFilter> w;   // it deletes itself when it closes

    static FilterDialog open(ClientWorld &world)
    {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        world.toolbar("Filter");
        QCoreApplication::processEvents();
        return {world.main.findChild<frmFilter *>()};
    }
    QTableView *grid() const { return w->findChild<QTableView *>("grdCriteria"); }
    QAbstractItemModel *model() const { return grid()->model(); }
    QString cell(int row, int column) const { return model()->index(row, column).data().toString(); }
    QPlainTextEdit *sql() const { return w->findChild<QPlainTextEdit *>("txtSQL"); }
    QWidget *editor() const
    {
        for (const char *name : {"cboEditBox", "dtpEditBox", "txtEditBox"})
            for (QWidget *e : grid()->findChildren<QWidget *>(name))
                if (e->isVisible())
                    return e;
        return nullptr;
    }
    // Enters the cell and sets its editor as the user would; false when the cell offers no editor.
    bool set(int row, int column, const QString &text) const
    {
        grid()->setFocus();
        const QModelIndex index = model()->index(row, column);
        grid()->setCurrentIndex(index);
        if (!editor() && (index.flags() & Qt::ItemIsEditable))
            grid()->edit(index);   // F2 on the cell already current
        QWidget *e = editor();
        if (!e)
            return false;
        if (auto *list = qobject_cast<QComboBox *>(e))
            list->setCurrentIndex(list->findText(text));
        else if (auto *date = qobject_cast<QDateEdit *>(e))
            date->setDate(QDate::fromString(text, "MM/dd/yyyy"));
        else if (text.size() > 100 || text.toLatin1() != text.toUtf8()) {
            qobject_cast<QLineEdit *>(e)->selectAll();
            qobject_cast<QLineEdit *>(e)->insert(text);   // pasted: the test keyboard types only ASCII
        } else
            typeInto(e, text);
        return true;
    }
    void fill(const QList<Row> &rows) const
    {
        for (int r = 0; r < rows.size(); ++r) {
            const Row &c = rows.at(r);
            if (r > 0 && !c.conjunction.isEmpty())
                set(r, Conj, c.conjunction);
            set(r, Field, c.field);
            set(r, Cond, c.condition);
            if (!c.value.isEmpty())
                set(r, Value, c.value);
            if (!c.value2.isEmpty())
                set(r, Value2, c.value2);
        }
    }
    void typeSql(const QString &text) const
    {
        w->findChild<QTabWidget *>("SSTab")->setCurrentIndex(1);
        sql()->clear();
        sql()->setFocus();
        sql()->insertPlainText(text);
    }
    void ok() const
    {
        button(w, "cmdOk")->click();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    bool isOpen() const { return w && w->isVisible(); }
};

QStringList lastNames(frmClientGrid *w)
{
    auto *g = w->findChild<QTableView *>("grdData");
    QStringList names;
    for (int row = 0; row < basTendmark::Model(g)->dataRowCount(); ++row)
        names << basTendmark::GridText(g, row, 2);
    return names;
}

QString filterStatus(ClientWorld &world)
{
    auto *label = world.main.findChild<QLabel *>("lblFilter");
    const QString shown = label->isVisible() ? label->text() : QString();
    // The View menu offers to remove the filter exactly while the status bar does.
    if (menu(world.main, "mnuViewRemoveFilter")->isEnabled() != !shown.isEmpty())
        return QStringLiteral("View, Remove Filter does not follow \"%1\"").arg(shown);
    return shown;
}

}   // namespace

Q_DECLARE_METATYPE(Row)

class tst_Filter : public QObject
{
    Q_OBJECT

    // Five households: food services in March and payments of two kinds, and names that test the quoting.
    struct Pantry : ClientWorld
    {
        const QString hostile = "x'); DROP TABLE Client; --";
        Pantry()
        {
            const qint64 box = TestDatabase::lookupId("FoodServiceTypes", "Emergency food box");
            const qint64 rent = TestDatabase::lookupId("PaymentTypes", "Rent");
            const qint64 utilities = TestDatabase::lookupId("PaymentTypes", "Utilities");
            const qint64 obrien = addClient("O'Brien", "Mary", "K", {{"City", "Pekin"}, {"ZipCode", "61554"}});
            const qint64 nguyen = addClient("Nguyễn", "Văn", "T", {{"City", "Pekin"}});
            const qint64 adams = addClient("Adams", "Zoe", "A", {{"City", "Peoria"}});
            addClient(hostile, "Eve", "E", {{"City", "Peoria"}});
            const qint64 chen = addClient("張", "偉", "C", {{"City", "Normal"}});
            // Two services in March for O'Brien: the client shows once.
            for (const auto &[client, date] : {std::pair {obrien, "2026-03-04"},
                                               {obrien, "2026-03-20"},
                                               {nguyen, "2026-04-02"},
                                               {adams, "2026-03-15"},
                                               {chen, "2026-03-31"}})
                TestDatabase::insert("FoodService",
                                     {{"ClientID", client}, {"FoodServiceDate", date}, {"FoodServiceTypeID", box}, {"NumberOfBags", 2}});
            for (const auto &[client, type] : {std::pair {obrien, utilities}, {nguyen, utilities}, {adams, rent}, {chen, utilities}})
                TestDatabase::insert("Payments",
                                     {{"ClientID", client}, {"PaymentDate", "2026-03-10"}, {"PaymentsTypeID", type}, {"AmountPaid", 5000}});
        }
    };

private slots:
    // Criteria through the real dialog on the real client list: exactly the expected clients, in the list's order.
    void criteriaSelectTheExpectedClients_data()
    {
        QTest::addColumn<QList<Row>>("rows");
        QTest::addColumn<QString>("typed");   // a statement typed on the SQL tab over the criteria
        QTest::addColumn<QStringList>("names");
        const auto row = [](const char *name, const QList<Row> &rows, const char *typed, const QStringList &names) {
            QTest::newRow(name) << rows << QString::fromUtf8(typed) << names;
        };
        row("food service in March and a utility payment",
            {{"Food Service Date", "is between", "03/01/2026", "03/31/2026"}, {"Payment Type", "is equal to", "Utilities"}}, "",
            {"O'Brien", "張"});
        row("same joined table twice, Or",
            {{"Food Service Date", "is less than", "03/10/2026"}, {"Food Service Date", "is greater than", "04/01/2026", {}, "Or"}}, "",
            {"Nguyễn", "O'Brien"});
        row("statement in a value", {{"Last Name", "is equal to", "x'); DROP TABLE Client; --"}}, "", {"x'); DROP TABLE Client; --"});
        row("non-Latin begins with", {{"Last Name", "begins with", "Nguyễ"}}, "", {"Nguyễn"});
        row("10,000 characters", {{"Comments", "contains", QString(10000, u'é')}}, "", {});
        row("no value for is not empty, And", {{"City", "is not empty"}, {"City", "begins with", "Peo", {}, "And"}}, "",
            {"Adams", "x'); DROP TABLE Client; --"});
        // A typed statement needs only the key; the list keeps its own order.
        row("typed statement", {{"City", "is equal to", "Normal"}},
            "SELECT ClientID FROM Client WHERE City = 'Pekin' -- typed\nORDER BY FirstName; \n", {"Nguyễn", "O'Brien"});
    }
    void criteriaSelectTheExpectedClients()
    {
        QFETCH(QList<Row>, rows);
        QFETCH(QString, typed);
        QFETCH(QStringList, names);
        Pantry world;
        auto *list = world.open<frmClientGrid>("mnuDataClientTable");
        const QByteArray before = TestDatabase::fileHash(world.db.path());
        const FilterDialog dialog = FilterDialog::open(world);
        QVERIFY(dialog.isOpen());
        dialog.fill(rows);
        if (!typed.isEmpty())
            dialog.typeSql(typed);
        dialog.ok();
        QVERIFY2(!dialog.isOpen(), qPrintable(world.prompts.last().text));
        QCOMPARE(lastNames(list), names);
        QCOMPARE(list->windowTitle(), QString("Client Table (Filter Applied)"));
        QCOMPARE(filterStatus(world), QString("Filtered: %1 of 5 clients").arg(names.size()));
        QCOMPARE(TestDatabase::fileHash(world.db.path()), before);
    }

    // The same statement narrows each window that lists clients or volunteers, in that window's order.
    void everyListWindowTakesTheFilter()
    {
        Pantry world;
        TestDatabase::insert("Volunteer", {{"LastName", "Young"}, {"FirstName", "Al"}, {"NumberInParty", 3}});
        TestDatabase::insert("Volunteer", {{"LastName", "Baker"}, {"FirstName", "Bo"}, {"NumberInParty", 2}});
        TestDatabase::insert("Volunteer", {{"LastName", "Cole"}, {"FirstName", "Cy"}, {"NumberInParty", 1}});
        // window, criteria, the last name of the record shown, the filter's status
        const std::tuple<const char *, QList<Row>, QString, QString> cases[]
            = {{"mnuDataClientDetails", {{"City", "is equal to", "Pekin"}}, "Nguyễn", "Filtered: 2 of 5 clients"},
               {"mnuDataClientSummary", {{"City", "is equal to", "Peoria"}}, "Adams", "Filtered: 2 of 5 clients"},
               {"mnuDataVolunteers", {{"Number In Party", "is between", "2", "3"}}, "Baker", "Filtered: 2 of 3 volunteers"}};
        for (const auto &[window, rows, lastName, status] : cases) {
            world.main.findChild<QAction *>(window)->trigger();
            QCoreApplication::processEvents();
            MdiChild *w = world.main.activeChild();
            const FilterDialog dialog = FilterDialog::open(world);
            QCOMPARE(dialog.w->windowTitle(), QString(w->kind() == MdiChild::Kind::Volunteer ? "Volunteer Filter" : "Client Filter"));
            dialog.fill(rows);
            dialog.ok();
            QVERIFY2(w->windowTitle().endsWith(" (Filter Applied)"), qPrintable(w->windowTitle()));
            QCOMPARE(w->recordCount(), 2);
            QCOMPARE(world.main.activeChild(), w);
            QCOMPARE(filterStatus(world), status);
            const QString table = w->kind() == MdiChild::Kind::Volunteer ? "Volunteer" : "Client";
            QCOMPARE(TestDatabase::scalar(QString("SELECT LastName FROM %1 WHERE %1ID = ?").arg(table), {w->currentKey()}).toString(),
                     lastName);
        }
        QVERIFY(!world.prompts.titles().contains("SQL Error"));

        // The volunteers sort by the field that holds the focus; the one shown stays; the order outlives the filter.
        auto *volunteers = qobject_cast<RecordEditor *>(world.main.activeChild());
        auto names = [volunteers] {
            QStringList shown;
            volunteers->cmdFirst_Click();
            for (int i = 0; i < volunteers->recordset().recordCount(); ++i, volunteers->cmdNext_Click())
                shown << lineEdit(volunteers, "LastName")->text();
            return shown;
        };
        lineEdit(volunteers, "NumberInParty")->setFocus();
        menu(world.main, "mnuDataSortSortDescending")->trigger();
        QVERIFY2(statusText(volunteers).startsWith("Record: 2 of 2"), qPrintable(statusText(volunteers)));
        QCOMPARE(lineEdit(volunteers, "LastName")->text(), QString("Baker"));
        QCOMPARE(names(), (QStringList {"Young", "Baker"}));
        // A filter that matches nobody says so and leaves a blank form, which nothing is saved from.
        const FilterDialog none = FilterDialog::open(world);
        none.fill({{"Last Name", "is equal to", "Nobody"}});
        none.ok();
        QCOMPARE(world.prompts.last(),
                 (Prompt::Message {"No Volunteer Records Found", "No records were found that matched the specified criteria.",
                                   Prompt::Icon::Exclamation}));
        QVERIFY(lineEdit(volunteers, "LastName")->text().isEmpty() && !volunteers->DataChanged());
        menu(world.main, "mnuViewRemoveFilter")->trigger();
        QCOMPARE(volunteers->windowTitle(), QString("Volunteers"));
        QCOMPARE(names(), (QStringList {"Young", "Baker", "Cole"}));
    }

    // A typed statement that is wrong or would write is refused by the database, the dialog stays open with the text as typed.
    void handTypedStatementsThatFailKeepTheDialogOpen()
    {
        Pantry world;
        auto *list = world.open<frmClientGrid>("mnuDataClientTable");
        const QByteArray before = TestDatabase::fileHash(world.db.path());
        const FilterDialog dialog = FilterDialog::open(world);
        const char *const cases[][2] = {{"SELEC * FROM Client", "near \"SELEC\": syntax error"},
                                        {"DELETE FROM Client", "not authorized"},
                                        {"SELECT LastName FROM Client", "The statement must return the column ClientID."}};
        for (const auto &[sql, reason] : cases) {
            world.prompts.clear();
            dialog.typeSql(sql);
            dialog.ok();
            QVERIFY(dialog.isOpen());
            const Prompt::Message m = world.prompts.last();
            QCOMPARE(m.title, QString("SQL Error"));
            QVERIFY2(m.text.startsWith("Error in SQL syntax:\r\n") && m.text.endsWith("\r\nCorrect syntax and try again.")
                         && m.text.contains(reason),
                     qPrintable(m.text.left(300)));
            QCOMPARE(dialog.sql()->toPlainText(), sql);
        }
        QCOMPARE(list->windowTitle(), QString("Client Table"));
        QCOMPARE(lastNames(list).size(), 5);
        QCOMPARE(TestDatabase::fileHash(world.db.path()), before);
        button(dialog.w, "cmdCancel")->click();
        QVERIFY(!dialog.isOpen());
    }

    // A bad value names its row, which is selected; nothing runs.
    void badValuesNameTheRow_data()
    {
        QTest::addColumn<Row>("second");
        QTest::addColumn<QString>("error");
        QTest::newRow("no value") << Row {"City", "contains"} << "Row 2: enter a value for City.";
        QTest::newRow("no value, translated") << Row {"City", "contains"} << "[Row 2: [enter a value for City.]]";
        QTest::newRow("not a number") << Row {"Food Service Bags", "is equal to", "two"} << "Row 2: two is not a whole number.";
        QTest::newRow("no list choice") << Row {"Payment Type", "is equal to"} << "Row 2: enter a value for Payment Type.";
    }

    void badValuesNameTheRow()
    {
        QFETCH(Row, second);
        QFETCH(QString, error);
        Pantry world;
        MarkingTranslator marking("FilterStatement");
        if (QByteArray(QTest::currentDataTag()).endsWith("translated"))
            QCoreApplication::installTranslator(&marking);
        auto *list = world.open<frmClientGrid>("mnuDataClientTable");
        const FilterDialog dialog = FilterDialog::open(world);
        dialog.fill({{"Last Name", "is not empty"}, second});
        dialog.ok();
        QVERIFY(dialog.isOpen());
        QCOMPARE(world.prompts.last(), (Prompt::Message {"Client Filter", error, Prompt::Icon::Exclamation}));
        QCOMPARE(dialog.grid()->currentIndex().row(), 1);
        QVERIFY(dialog.grid()->selectionModel()->isSelected(dialog.model()->index(1, Field)));
        QCOMPARE(list->windowTitle(), QString("Client Table"));
    }

    // The grid offers the editor each cell needs, and the keyboard works it.
    void gridEditorsAndKeys()
    {
        Pantry world;
        world.open<frmClientGrid>("mnuDataClientTable");
        const FilterDialog d = FilterDialog::open(world);
        QCOMPARE(d.w->findChild<QLabel *>("Label1")->text(), QString("Select Client records that meet the following criteria:"));
        QCOMPARE(d.cell(0, Conj), QString("Where"));
        QVERIFY(!d.set(0, Conj, "Or"));
        QCOMPARE(d.model()->rowCount(), 1);
        d.set(0, Field, "Birth Date");
        QCOMPARE(d.model()->rowCount(), 2);   // a new row appears for the next criterion
        QCOMPARE(d.cell(1, Conj), QString("And"));
        QCOMPARE(d.cell(0, Cond), QString("is equal to"));
        QVERIFY(d.grid()->isColumnHidden(Value2));
        d.set(0, Cond, "is between");
        QVERIFY(!d.grid()->isColumnHidden(Value2));
        d.set(0, Value, "01/02/1990");
        QCOMPARE(d.editor()->objectName(), QString("dtpEditBox"));
        QCOMPARE(qobject_cast<QDateEdit *>(d.editor())->displayFormat(), QString("MM/dd/yyyy"));
        const char *const kinds[][3] = {{"Gender", "is equal to", "cboEditBox"},
                                        {"City", "contains", "txtEditBox"},
                                        {"City", "is empty", nullptr},
                                        {"FEMA Contacted?", "is False", nullptr}};
        for (const auto &[field, condition, editor] : kinds) {
            d.set(1, Field, field);
            d.set(1, Cond, condition);
            QCOMPARE(d.set(1, Value, "F"), editor != nullptr);
            if (editor)
                QCOMPARE(d.editor()->objectName(), QString(editor));
        }

        // Tab and Enter move through the cells that take a value; Escape closes an editor; Delete clears a row.
        d.grid()->setCurrentIndex(d.model()->index(0, Field));
        const std::tuple<Qt::Key, int, int> moves[] = {{Qt::Key_Tab, 0, Cond},
                                                       {Qt::Key_Return, 0, Value},
                                                       {Qt::Key_Tab, 0, Value2},
                                                       {Qt::Key_Tab, 1, Conj},
                                                       {Qt::Key_Backtab, 0, Value2}};
        for (const auto &[key, row, column] : moves) {
            QTest::keyClick(d.editor(), key);
            QCOMPARE(d.grid()->currentIndex(), d.model()->index(row, column));
        }
        QTest::keyClick(d.editor(), Qt::Key_Escape);   // closes the editor, not the dialog
        QVERIFY(d.isOpen() && !d.editor());
        QCOMPARE(d.grid()->currentIndex(), d.model()->index(0, Value2));
        d.grid()->setCurrentIndex(d.model()->index(0, Field));
        QTest::keyClick(d.editor(), Qt::Key_Delete);
        QCOMPARE(d.cell(0, Conj) + ' ' + d.cell(0, Field), QString("Where FEMA Contacted?"));   // the second criterion moved up
        QVERIFY(d.grid()->isColumnHidden(Value2));
        QCOMPARE(d.model()->rowCount(), 2);

        // The SQL tab shows the statement built; the user's own typing makes it theirs.
        d.w->findChild<QTabWidget *>("SSTab")->setCurrentIndex(1);
        QCOMPARE(d.sql()->toPlainText(), QString("SELECT * FROM Client WHERE (Client.FEMAContacted = 0)"));
        button(d.w, "cmdClear")->click();
        QCOMPARE(d.model()->rowCount(), 1);
        QVERIFY(d.sql()->toPlainText().isEmpty());
    }

    // The dialog reopens on each window's last criteria; an empty grid or Remove Filter restores the full list;
    // the sort chosen by the current cell holds across filters.
    void reopensOnLastCriteriaAndClears()
    {
        Pantry world;
        auto *list = world.open<frmClientGrid>("mnuDataClientTable");
        auto *grid = list->findChild<QTableView *>("grdData");
        FilterDialog d = FilterDialog::open(world);
        d.fill({{"City", "is equal to", "Pekin"}, {"City", "is equal to", "Normal", {}, "Or"}});
        d.ok();
        QCOMPARE(lastNames(list), (QStringList {"Nguyễn", "O'Brien", "張"}));

        // A click on Nguyễn's first name: the Sort entries sort by first name, and Nguyễn stays chosen.
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(grid->model()->index(0, 3)).center());
        const QString nguyen = list->ClientID();
        QVERIFY(!nguyen.isEmpty());
        menu(world.main, "mnuDataSortSortDescending")->trigger();
        QCOMPARE(lastNames(list), (QStringList {"張", "Nguyễn", "O'Brien"}));   // 偉, Văn, Mary
        QCOMPARE(list->ClientID(), nguyen);
        QCOMPARE(grid->currentIndex(), grid->model()->index(1, 3));
        world.toolbar("Sort Ascending");
        QCOMPARE(lastNames(list), (QStringList {"O'Brien", "Nguyễn", "張"}));

        d = FilterDialog::open(world);
        QCOMPARE((QStringList {d.cell(0, Field), d.cell(1, Value), d.cell(1, Conj)}), (QStringList {"City", "Normal", "Or"}));
        d.set(1, Value, "Peoria");
        d.ok();
        QCOMPARE(lastNames(list), (QStringList {"x'); DROP TABLE Client; --", "O'Brien", "Nguyễn", "Adams"}));   // Eve, Mary, Văn, Zoe

        // Another window starts afresh. A changed client kept there (Cancel to saving it) keeps its records unfiltered,
        // and the criteria for the next time.
        auto *details = world.open<frmClientDetails>("mnuDataClientDetails");
        typeInto(details, "FirstName", "Zed");
        d = FilterDialog::open(world);
        QCOMPARE(d.cell(0, Field), QString());
        d.fill({{"City", "is equal to", "Pekin"}});
        world.prompts.answer(Prompt::Cancel);
        d.ok();
        QCOMPARE(world.prompts.last().title, QString("Save Record?"));
        QCOMPARE(details->windowTitle(), QString("Client Details"));
        QVERIFY(details->DataChanged());
        QCOMPARE(details->recordCount(), 5);
        QVERIFY(filterStatus(world).isEmpty());
        d = FilterDialog::open(world);
        QCOMPARE(d.cell(0, Value), QString("Pekin"));
        button(d.w, "cmdCancel")->click();

        world.main.activateChild(list);
        QCOMPARE(filterStatus(world), QString("Filtered: 4 of 5 clients"));
        d = FilterDialog::open(world);
        button(d.w, "cmdClear")->click();
        d.ok();
        QCOMPARE(list->windowTitle(), QString("Client Table"));
        const QStringList byFirstName {"x'); DROP TABLE Client; --", "O'Brien", "Nguyễn", "Adams", "張"};
        QCOMPARE(lastNames(list), byFirstName);
        QVERIFY(filterStatus(world).isEmpty());

        // Remove Filter in the status bar does as the View menu's entry.
        d = FilterDialog::open(world);
        d.fill({{"City", "is equal to", "Normal"}});
        d.ok();
        QCOMPARE(filterStatus(world), QString("Filtered: 1 of 5 clients"));
        button(&world.main, "cmdRemoveFilter")->click();
        QCOMPARE(lastNames(list), byFirstName);
        QCOMPARE(list->windowTitle(), QString("Client Table"));
        QVERIFY(filterStatus(world).isEmpty());
    }
};

QTEST_MAIN(tst_Filter)
#include "tst_filter.moc"
