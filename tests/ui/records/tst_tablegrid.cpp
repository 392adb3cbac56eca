#include "Desk.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "frmMain.h"
#include "frmTableGrid.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTest>

class tst_tablegrid : public QObject
{
    Q_OBJECT

private:
    using Session = Desk;

    struct Editor
    {
        frmTableGrid *form = nullptr;
        QTableView *grid = nullptr;
        QAbstractItemModel *model = nullptr;

        QString text(int row, int column) const { return model->index(row, column).data().toString(); }
        int rowOf(const QString &description) const
        {
            for (int row = 0; row < model->rowCount(); ++row)
                if (text(row, 2) == description)
                    return row;
            return -1;
        }
        // The cell editor open now, if any.
        template<class Box> Box *openBox(const char *name) const
        {
            for (Box *box : form->findChildren<Box *>(QString::fromLatin1(name)))
                if (box->isVisible())
                    return box;
            return nullptr;
        }
        QLineEdit *txt() const { return openBox<QLineEdit>("txtEditBox"); }
        QComboBox *cbo() const { return openBox<QComboBox>("cboEditBox"); }
        int newRow() const { return model->rowCount() - 1; }
        void enter(int row, int column) const { grid->setCurrentIndex(model->index(row, column)); }
        // Types into a cell as the user does: the cell's text is selected on entering.
        void type(int row, int column, const QString &value) const
        {
            enter(row, column);
            QTest::keyClick(txt(), Qt::Key_Backspace);
            QTest::keyClicks(txt(), value);
        }
        void key(Qt::Key k) const { QTest::keyClick(cbo() ? static_cast<QWidget *>(cbo()) : txt(), k); }
        void click(const char *name) const { form->findChild<QPushButton *>(QString::fromLatin1(name))->click(); }
        QString status() const { return form->findChild<QStatusBar *>(QStringLiteral("sbrStatusBar"))->currentMessage(); }
    };

    static Editor open(frmMain &main, const char *menuName)
    {
        main.findChild<QAction *>(QString::fromLatin1(menuName))->trigger();
        Editor e;
        e.form = qobject_cast<frmTableGrid *>(main.activeChild());
        if (!e.form)
            return e;
        e.grid = e.form->findChild<QTableView *>(QStringLiteral("grdData"));
        e.model = e.grid->model();
        return e;
    }

    static qint64 someClient() { return TestDatabase::insert("Client", {{"LastName", "Doe"}, {"FirstName", "Jane"}}); }
    static QString firstDescription(const char *table, const char *column, int offset = 0)
    {
        return TestDatabase::scalar(QStringLiteral("SELECT %1 FROM %2 ORDER BY rowid LIMIT 1 OFFSET %3")
                                        .arg(QLatin1String(column), QLatin1String(table))
                                        .arg(offset))
            .toString();
    }

private Q_SLOTS:
    void showsTheTableAndEditsInPlace();
    void itemsInUseAreNotDeleted();
    void deleteConfirmsAndKeepsOtherEdits();
    void zipCodesNeedEveryFieldAndTakeTheStateFromTheList();
    void editedCellsAreValidated();
    void saveWritesChangesAndNewRowsTogetherOrNothing();
    void closingWithPendingEditsAsks();
};

void tst_tablegrid::showsTheTableAndEditsInPlace()
{
    Session s;
    Editor e = open(s.main, "mnuToolsTablesEducationLevel");
    QVERIFY(e.form);
    QAbstractItemModelTester tester(e.model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(e.form->windowTitle(), QStringLiteral("Education Level"));
    QCOMPARE(e.model->columnCount(), 3);
    QCOMPARE(e.model->headerData(2, Qt::Horizontal).toString(), QStringLiteral("Education Level"));
    QCOMPARE(e.model->rowCount(), TestDatabase::count("EducationLevel") + 1);
    QCOMPARE(e.text(e.newRow(), 0), QStringLiteral("*"));
    QCOMPARE(e.text(e.newRow(), 1), QString());
    QCOMPARE(e.text(0, 1), TestDatabase::scalar("SELECT MIN(EducationLevelID) FROM EducationLevel").toString());

    // The key column is not edited; the description is, in place.
    e.enter(0, 1);
    QVERIFY(!e.txt());
    QVERIFY(e.form->findChild<QPushButton *>(QStringLiteral("cmdDelete"))->isEnabled());
    e.enter(0, 2);
    QVERIFY(e.txt());
    QCOMPARE(e.txt()->text(), e.text(0, 2));
    QCOMPARE(e.txt()->geometry(), e.grid->visualRect(e.model->index(0, 2)));
    // It stays over its cell when the window, and so the description column, widens.
    QWidget *frame = e.form->parentWidget();
    const int narrow = e.txt()->width();
    frame->resize(frame->width() + 120, frame->height());
    QApplication::processEvents();
    QCOMPARE(e.txt()->width(), narrow + 120);
    QCOMPARE(e.txt()->geometry(), e.grid->visualRect(e.model->index(0, 2)));

    // Tab in the last column stays there.
    e.type(0, 2, QStringLiteral("Changed"));
    QVERIFY(e.form->DataChanged());
    e.key(Qt::Key_Tab);
    QCOMPARE(e.grid->currentIndex(), e.model->index(0, 2));
    QVERIFY(e.txt());
    // Escape puts back the text the cell had when it was entered, and does not close the window.
    e.type(1, 2, QStringLiteral("Oops"));
    e.key(Qt::Key_Escape);
    QCOMPARE(e.text(1, 2), firstDescription("EducationLevel", "EducationLevelDescription", 1));
    QVERIFY(!e.txt());
    QVERIFY(e.form->isVisible());
    QCOMPARE(e.text(0, 2), QStringLiteral("Changed"));
    QVERIFY(s.prompts.messages().isEmpty());
    e.enter(e.newRow(), 2);
    QVERIFY(!e.form->findChild<QPushButton *>(QStringLiteral("cmdDelete"))->isEnabled());

    // A second Education Level command brings the same window forward.
    open(s.main, "mnuToolsTablesHousing");
    QCOMPARE(open(s.main, "mnuToolsTablesEducationLevel").form, e.form);
    QCOMPARE(s.main.mdiArea()->subWindowList().size(), 2);
}

// An item that records refer to stays, and the user is told why. Which columns refer to which
// lookup table is checked for every reference in tst_lookuptables; here, an expense category.
void tst_tablegrid::itemsInUseAreNotDeleted()
{
    Session s;
    const qint64 key = TestDatabase::scalar("SELECT MAX(ExpenseCategoryID) FROM ExpenseCategories").toLongLong();
    TestDatabase::insert("Expenses", {{"ClientID", someClient()}, {"ExpenseCategoryID", key}});
    const int before = TestDatabase::count("ExpenseCategories");

    Editor e = open(s.main, "mnuToolsTablesExpenseCategories");
    const int row = e.newRow() - 1;
    QCOMPARE(e.text(row, 1).toLongLong(), key);
    e.enter(row, 1);
    s.prompts.answer(Prompt::Yes);   // would confirm, were it asked
    e.click("cmdDelete");
    QCOMPARE(s.prompts.messages(),
             (QList<Prompt::Message> {{"Delete Record",
                                       "This item is currently in use in the database.\r\n"
                                       "You must change all references to this item before it can be deleted.",
                                       Prompt::Icon::Exclamation, Prompt::Ok}}));
    QCOMPARE(TestDatabase::count("ExpenseCategories"), before);
    QCOMPARE(e.text(row, 1).toLongLong(), key);
}

void tst_tablegrid::deleteConfirmsAndKeepsOtherEdits()
{
    Session s;
    const qint64 key = TestDatabase::insert("FoodServiceTypes", {{"FoodServiceTypeDescription", "Holiday Box"}});
    const qint64 gone = TestDatabase::insert("FoodServiceTypes", {{"FoodServiceTypeDescription", "Gone Box"}});
    Editor e = open(s.main, "mnuToolsTablesFoodServiceTypes");
    // A row deleted elsewhere is reported once chosen; moving within the row says nothing more.
    basDatabase::Execute(QStringLiteral("DELETE FROM FoodServiceTypes WHERE FoodServiceTypeID = ?"), {gone});
    e.enter(e.rowOf(QStringLiteral("Gone Box")), 2);
    e.enter(e.rowOf(QStringLiteral("Gone Box")), 1);
    QCOMPARE(s.prompts.messages(),
             (QList<Prompt::Message> {{"Application Error", "Error locating record in database.", Prompt::Icon::Critical, Prompt::Ok}}));
    auto *save = e.form->findChild<QPushButton *>(QStringLiteral("cmdSave"));
    auto *del = e.form->findChild<QPushButton *>(QStringLiteral("cmdDelete"));
    const int rows = e.model->rowCount();
    e.type(0, 2, QStringLiteral("Renamed Box"));
    e.key(Qt::Key_Return);

    const int row = e.rowOf(QStringLiteral("Holiday Box"));
    e.enter(row, 2);
    s.prompts.answer(Prompt::No);
    e.click("cmdDelete");
    QCOMPARE(s.prompts.last(),
             (Prompt::Message {"Delete Record", "Are you sure you want to delete 'Holiday Box'?", Prompt::Icon::Question,
                               Prompt::Yes | Prompt::No}));
    QCOMPARE(TestDatabase::count("FoodServiceTypes", "FoodServiceTypeID = ?", {key}), 1);
    // Whatever the answer, Delete waits for a row to be chosen again; the other row's edit waits for Save.
    QVERIFY(!del->isEnabled());
    QVERIFY(!s.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
    QVERIFY(save->isEnabled());

    e.enter(row, 1);
    s.prompts.answer(Prompt::Yes);
    e.click("cmdDelete");
    QCOMPARE(TestDatabase::count("FoodServiceTypes", "FoodServiceTypeID = ?", {key}), 0);
    QCOMPARE(e.status(), QStringLiteral("Record number %1 deleted.").arg(key));
    QCOMPARE(e.model->rowCount(), rows - 1);
    QCOMPARE(e.rowOf(QStringLiteral("Holiday Box")), -1);
    QCOMPARE(e.text(e.newRow(), 0), QStringLiteral("*"));
    QVERIFY(save->isEnabled());
    e.click("cmdSave");
    QCOMPARE(e.status(), QStringLiteral("Records updated."));
    QCOMPARE(TestDatabase::count("FoodServiceTypes", "FoodServiceTypeDescription = ?", {"Renamed Box"}), 1);
    QVERIFY(!save->isEnabled());
}

void tst_tablegrid::zipCodesNeedEveryFieldAndTakeTheStateFromTheList()
{
    Session s;
    const qint64 key = TestDatabase::insert("ZipCode", {{"ZipCode", "73301"}, {"City", "Austin"}, {"State", "OK"}});
    const int before = TestDatabase::count("ZipCode");
    Editor e = open(s.main, "mnuToolsTablesZipCodes");
    QCOMPARE(e.model->columnCount(), 5);
    const int row = e.rowOf(QStringLiteral("73301"));
    QCOMPARE(e.text(row, 3), QStringLiteral("Austin"));
    e.enter(row, 4);
    QVERIFY(e.cbo());
    QVERIFY(!e.txt());
    QCOMPARE(e.cbo()->currentText(), QStringLiteral("OK"));
    e.cbo()->setCurrentIndex(e.cbo()->findText(QStringLiteral("TX")));
    QCOMPARE(e.text(row, 4), QStringLiteral("TX"));
    e.key(Qt::Key_Return);
    QVERIFY(!e.cbo());

    // A half-filled new row is refused and nothing is written, the typing left to finish.
    e.type(e.newRow(), 2, QStringLiteral("73344"));
    e.key(Qt::Key_Tab);
    QCOMPARE(e.grid->currentIndex().column(), 3);
    QCOMPARE(e.txt()->geometry(), e.grid->visualRect(e.model->index(e.newRow(), 3)));
    QTest::keyClicks(e.txt(), QStringLiteral("Austin"));
    e.click("cmdSave");
    QCOMPARE(s.prompts.last(),
             (Prompt::Message {"Required Fields Missing", "Fields cannot be empty on new record.", Prompt::Icon::Exclamation, Prompt::Ok}));
    QCOMPARE(TestDatabase::count("ZipCode"), before);
    QCOMPARE(TestDatabase::scalar("SELECT State FROM ZipCode WHERE ZipCodeID = ?", {key}).toString(), QStringLiteral("OK"));
    QCOMPARE(e.text(row, 4), QStringLiteral("TX"));
    QCOMPARE(e.text(e.newRow(), 2), QStringLiteral("73344"));
    QVERIFY(e.form->DataChanged());

    // Finished with a state from the list, both rows are written.
    e.enter(e.newRow(), 4);
    QVERIFY(e.cbo());
    e.cbo()->setCurrentIndex(e.cbo()->findText(QStringLiteral("TX")));
    e.click("cmdSave");
    QCOMPARE(TestDatabase::scalar("SELECT State FROM ZipCode WHERE ZipCodeID = ?", {key}).toString(), QStringLiteral("TX"));
    QCOMPARE(TestDatabase::count("ZipCode", "ZipCode = '73344' AND City = 'Austin' AND State = 'TX'"), 1);

    // A zip code a client lives in is still deletable: clients keep their own copy.
    TestDatabase::insert("Client", {{"LastName", "Doe"}, {"ZipCode", "73301"}, {"City", "Austin"}, {"State", "TX"}});
    e.enter(e.rowOf(QStringLiteral("73301")), 1);
    s.prompts.answer(Prompt::Yes);
    e.click("cmdDelete");
    QCOMPARE(s.prompts.last().text, QStringLiteral("Are you sure you want to delete '73301'?"));
    QCOMPARE(TestDatabase::count("ZipCode", "ZipCodeID = ?", {key}), 0);
}

void tst_tablegrid::editedCellsAreValidated()
{
    Session s;
    Editor e = open(s.main, "mnuToolsTablesHousing");
    e.type(0, 2, QString());
    e.key(Qt::Key_Tab);
    QCOMPARE(s.prompts.last(), (Prompt::Message {"Required Field", "Field cannot be empty.", Prompt::Icon::Exclamation, Prompt::Ok}));
    QVERIFY(e.txt());

    QTest::keyClicks(e.txt(), QString(51, QLatin1Char('h')));
    e.key(Qt::Key_Return);
    QCOMPARE(s.prompts.last().title, QStringLiteral("Data Entry Error"));
    QCOMPARE(s.prompts.last().text, QStringLiteral("Housing cannot exceed 50 characters."));
    QVERIFY(e.txt());

    // Moving to another row with the refused value stays on it; Save refuses it again.
    e.enter(1, 2);
    QCOMPARE(e.grid->currentIndex(), e.model->index(0, 2));
    const int messages = s.prompts.messages().size();
    e.click("cmdSave");
    QCOMPARE(s.prompts.messages().size(), messages + 1);
    QCOMPARE(TestDatabase::count("Housing", "length(HousingDescription) > 50"), 0);
}

// A change and a new row are written together, or, when the database refuses, neither.
void tst_tablegrid::saveWritesChangesAndNewRowsTogetherOrNothing()
{
    Session s;
    const int before = TestDatabase::count("Relationships");
    const QString firstBefore = firstDescription("Relationships", "RelationshipDescription");
    TestDatabase::scalar("CREATE TEMP TRIGGER refuse BEFORE INSERT ON Relationships BEGIN SELECT RAISE(ABORT, 'refused'); END");
    Editor e = open(s.main, "mnuToolsTablesRelationships");
    e.type(0, 2, QStringLiteral("O'Brien's Kin"));
    e.key(Qt::Key_Return);
    e.type(e.newRow(), 2, QStringLiteral("Mother's Partner"));
    e.click("cmdSave");
    QCOMPARE(s.prompts.last().title, QStringLiteral("Application Error"));
    QCOMPARE(TestDatabase::count("Relationships"), before);
    QCOMPARE(firstDescription("Relationships", "RelationshipDescription"), firstBefore);
    QVERIFY(e.form->DataChanged());
    QCOMPARE(e.text(0, 2), QStringLiteral("O'Brien's Kin"));

    // Once the obstacle is gone the same Save goes through.
    TestDatabase::scalar("DROP TRIGGER refuse");
    s.prompts.clear();
    e.click("cmdSave");
    QVERIFY2(s.prompts.messages().isEmpty(), qPrintable(s.prompts.last().text));
    QCOMPARE(e.status(), QStringLiteral("Records updated."));
    QCOMPARE(TestDatabase::count("Relationships"), before + 1);
    QCOMPARE(firstDescription("Relationships", "RelationshipDescription"), QStringLiteral("O'Brien's Kin"));
    const qint64 added
        = TestDatabase::scalar("SELECT RelationshipID FROM Relationships WHERE RelationshipDescription = ?", {"Mother's Partner"})
              .toLongLong();
    QVERIFY(added > 0);
    // The grid is read again: the new row has its key and a fresh new-record row follows.
    QCOMPARE(e.model->rowCount(), before + 2);
    QCOMPARE(e.text(e.newRow() - 1, 1).toLongLong(), added);
    QCOMPARE(e.text(e.newRow(), 2), QString());
    QVERIFY(!e.form->DataChanged());
    QVERIFY(!e.form->findChild<QPushButton *>(QStringLiteral("cmdSave"))->isEnabled());
}

void tst_tablegrid::closingWithPendingEditsAsks()
{
    Session s;
    const QString first = firstDescription("MaritalStatus", "MaritalStatusDescription");
    Editor e = open(s.main, "mnuToolsTablesMaritalStatus");
    e.type(0, 2, QStringLiteral("Something Else"));
    e.key(Qt::Key_Return);
    s.prompts.answer(Prompt::No);
    e.click("cmdCancel");
    QApplication::processEvents();
    QCOMPARE(s.prompts.last().icon, Prompt::Icon::Question);
    QCOMPARE(s.prompts.last().buttons, Prompt::Yes | Prompt::No);
    QVERIFY(e.form->isVisible());

    QPointer<frmTableGrid> form = e.form;
    s.prompts.answer(Prompt::Yes);
    e.click("cmdCancel");
    QTest::qWait(0);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(form.isNull());
    QCOMPARE(firstDescription("MaritalStatus", "MaritalStatusDescription"), first);
    QCOMPARE(s.main.openChildCount(), 0);
}

QTEST_MAIN(tst_tablegrid)
#include "tst_tablegrid.moc"
