#include "Desk.h"
#include "basDatabase.h"
#include "frmTableGrid.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QTest>

// The lookup table editor, worked cell by cell as a user does.
class tst_tablegrid : public QObject
{
    Q_OBJECT

private:
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
        QPushButton *button(const char *name) const { return form->findChild<QPushButton *>(QString::fromLatin1(name)); }
        void click(const char *name) const { button(name)->click(); }
        QString status() const { return form->findChild<QStatusBar *>(QStringLiteral("sbrStatusBar"))->currentMessage(); }
    };

    static Editor open(frmMain &main, const char *menuName)
    {
        main.findChild<QAction *>(QString::fromLatin1(menuName))->trigger();
        Editor e;
        e.form = qobject_cast<frmTableGrid *>(main.activeChild());
        if (e.form) {
            e.grid = e.form->findChild<QTableView *>(QStringLiteral("grdData"));
            e.model = e.grid->model();
        }
        return e;
    }
    // The description stored in a table's row at offset, in the order of the rows.
    static QString stored(const char *table, const char *column, int offset = 0)
    {
        return TestDatabase::scalar(QStringLiteral("SELECT %1 FROM %2 ORDER BY rowid LIMIT 1 OFFSET %3")
                                        .arg(QLatin1String(column), QLatin1String(table))
                                        .arg(offset))
            .toString();
    }

private Q_SLOTS:
    // Descriptions are edited in place and checked as the cell is left; closing with edits asks before they go.
    void editsInPlaceAreCheckedAndAskedAboutOnClose()
    {
        Desk s;
        const QString first = stored("Housing", "HousingDescription");
        Editor e = open(s.main, "mnuToolsTablesHousing");
        QVERIFY(e.form);
        QAbstractItemModelTester tester(e.model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(e.model->rowCount(), TestDatabase::count("Housing") + 1);
        QCOMPARE(e.text(e.newRow(), 0), QStringLiteral("*"));
        QCOMPARE(e.text(0, 1), TestDatabase::scalar("SELECT MIN(HousingID) FROM Housing").toString());
        // Delete waits for a row the user chose, not the current cell the grid makes of its own.
        e.grid->setFocus(Qt::TabFocusReason);
        QVERIFY(e.grid->currentIndex().isValid());
        QVERIFY(!e.button("cmdDelete")->isEnabled() && !s.main.toolbarButton("Delete")->isEnabled());
        e.enter(0, 1);   // the key is not edited
        QVERIFY(!e.txt());
        QVERIFY(e.button("cmdDelete")->isEnabled());
        e.enter(e.newRow(), 2);
        QVERIFY(!e.button("cmdDelete")->isEnabled());
        e.enter(0, 1);
        e.grid->selectionModel()->clearSelection();
        QVERIFY(!e.button("cmdDelete")->isEnabled());

        // Tab in the last column stays there; Escape puts back what the cell had and leaves the window open.
        e.type(0, 2, QStringLiteral("Changed"));
        e.key(Qt::Key_Tab);
        QCOMPARE(e.grid->currentIndex(), e.model->index(0, 2));
        QVERIFY(e.txt());
        e.type(1, 2, QStringLiteral("Oops"));
        e.key(Qt::Key_Escape);
        QCOMPARE(e.text(1, 2), stored("Housing", "HousingDescription", 1));
        QVERIFY(!e.txt() && e.form->isVisible());
        QVERIFY(s.prompts.messages().isEmpty());

        // Empty and over-long descriptions are refused on leaving, and moving away stays on the cell; Save refuses again.
        e.type(0, 2, QString());
        e.key(Qt::Key_Tab);
        QCOMPARE(s.prompts.last(), (Prompt::Message {"Required Field", "Field cannot be empty.", Prompt::Icon::Exclamation}));
        QTest::keyClicks(e.txt(), QString(51, QLatin1Char('h')));
        e.key(Qt::Key_Return);
        QCOMPARE(s.prompts.last(),
                 (Prompt::Message {"Data Entry Error", "Housing cannot exceed 50 characters.", Prompt::Icon::Exclamation}));
        e.enter(1, 2);
        QCOMPARE(e.grid->currentIndex(), e.model->index(0, 2));
        s.prompts.clear();
        e.click("cmdSave");
        QCOMPARE(s.prompts.titles(), QStringList {"Data Entry Error"});
        QCOMPARE(TestDatabase::count("Housing", "length(HousingDescription) > 50"), 0);

        // A second Housing command brings the same window forward.
        open(s.main, "mnuToolsTablesMaritalStatus");
        QCOMPARE(open(s.main, "mnuToolsTablesHousing").form, e.form);
        QCOMPARE(s.main.openChildCount(), 2);

        const Prompt::Message discard {"Discard Changes?",
                                       "The changes you made to Housing have not been saved.\r\nDo you want to close and discard them?",
                                       Prompt::Icon::Question, Prompt::Yes | Prompt::No};
        QPointer<frmTableGrid> form = e.form;
        for (const Prompt::Button answer : {Prompt::No, Prompt::Yes}) {
            s.prompts.answer(answer);
            e.click("cmdCancel");
            QTest::qWait(0);
            QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCOMPARE(s.prompts.last(), discard);
            QCOMPARE(s.prompts.last().defaultButton, int(Prompt::No));   // Enter keeps the edits
            QCOMPARE(form.isNull(), answer == Prompt::Yes);
        }
        QCOMPARE(stored("Housing", "HousingDescription"), first);
    }

    // An item that records refer to stays, and the user is told why (expense categories as every other list);
    // another is deleted once confirmed while the other rows' edits wait for Save.
    void deleteRefusesItemsInUseAndConfirms()
    {
        Desk s;
        const qint64 used = TestDatabase::insert("ExpenseCategories", {{"ExpenseCategoryDescription", "Used"}});
        const qint64 key = TestDatabase::insert("ExpenseCategories", {{"ExpenseCategoryDescription", "Holiday Box"}});
        const qint64 gone = TestDatabase::insert("ExpenseCategories", {{"ExpenseCategoryDescription", "Gone Box"}});
        TestDatabase::insert("Expenses",
                             {{"ClientID", TestDatabase::insert("Client", {{"LastName", "Doe"}})}, {"ExpenseCategoryID", used}});
        Editor e = open(s.main, "mnuToolsTablesExpenseCategories");
        const int rows = e.model->rowCount();

        // A row deleted elsewhere is reported once chosen; moving within the row says nothing more.
        basDatabase::Execute(QStringLiteral("DELETE FROM ExpenseCategories WHERE ExpenseCategoryID = ?"), {gone});
        e.enter(e.rowOf(QStringLiteral("Gone Box")), 2);
        e.enter(e.rowOf(QStringLiteral("Gone Box")), 1);
        QCOMPARE(s.prompts.messages(),
                 (QList<Prompt::Message> {{"Application Error", "Error locating record in database.", Prompt::Icon::Critical}}));

        e.enter(e.rowOf(QStringLiteral("Used")), 1);
        s.prompts.clear();
        s.prompts.answer(Prompt::Yes);   // would confirm, were it asked
        e.click("cmdDelete");
        QCOMPARE(s.prompts.messages(),
                 (QList<Prompt::Message> {{"Delete Record",
                                           "This item is currently in use in the database.\r\n"
                                           "You must change all references to this item before it can be deleted.",
                                           Prompt::Icon::Exclamation}}));
        QCOMPARE(TestDatabase::count("ExpenseCategories", "ExpenseCategoryID = ?", {used}), 1);

        e.type(0, 2, QStringLiteral("Renamed"));
        e.key(Qt::Key_Return);
        const int row = e.rowOf(QStringLiteral("Holiday Box"));
        e.enter(row, 2);
        s.prompts.answer(Prompt::No);
        e.click("cmdDelete");
        QCOMPARE(s.prompts.last(),
                 (Prompt::Message {"Delete Record", "Are you sure you want to delete 'Holiday Box'?", Prompt::Icon::Question,
                                   Prompt::Yes | Prompt::No}));
        QCOMPARE(TestDatabase::count("ExpenseCategories", "ExpenseCategoryID = ?", {key}), 1);
        // Whatever the answer, Delete waits for a row to be chosen again.
        QVERIFY(!e.button("cmdDelete")->isEnabled());
        QVERIFY(!s.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());

        e.enter(row, 1);
        s.prompts.answer(Prompt::Yes);
        e.click("cmdDelete");
        QCOMPARE(TestDatabase::count("ExpenseCategories", "ExpenseCategoryID = ?", {key}), 0);
        QCOMPARE(e.status(), QStringLiteral("Record number %1 deleted.").arg(key));
        QCOMPARE(e.model->rowCount(), rows - 1);
        QCOMPARE(e.rowOf(QStringLiteral("Holiday Box")), -1);
        QCOMPARE(e.text(e.newRow(), 0), QStringLiteral("*"));
        QVERIFY(e.button("cmdSave")->isEnabled());
        e.click("cmdSave");
        QCOMPARE(e.status(), QStringLiteral("Records updated."));
        QCOMPARE(TestDatabase::count("ExpenseCategories", "ExpenseCategoryDescription = 'Renamed'"), 1);
        QVERIFY(!e.button("cmdSave")->isEnabled());
    }

    void zipCodesNeedEveryFieldAndTakeTheStateFromTheList()
    {
        Desk s;
        const qint64 key = TestDatabase::insert("ZipCode", {{"ZipCode", "73301"}, {"City", "Austin"}, {"State", "OK"}});
        const int before = TestDatabase::count("ZipCode");
        Editor e = open(s.main, "mnuToolsTablesZipCodes");
        const int row = e.rowOf(QStringLiteral("73301"));
        e.enter(row, 4);
        QVERIFY(e.cbo() && !e.txt());
        QCOMPARE(e.cbo()->currentText(), QStringLiteral("OK"));
        e.cbo()->setCurrentIndex(e.cbo()->findText(QStringLiteral("TX")));
        e.key(Qt::Key_Return);
        QVERIFY(!e.cbo());

        // A half-filled new row is refused and nothing is written, the typing left to finish.
        e.type(e.newRow(), 2, QStringLiteral("73344"));
        e.key(Qt::Key_Tab);
        QCOMPARE(e.grid->currentIndex().column(), 3);
        QTest::keyClicks(e.txt(), QStringLiteral("Austin"));
        e.click("cmdSave");
        QCOMPARE(s.prompts.last(),
                 (Prompt::Message {"Required Fields Missing", "Fields cannot be empty on new record.", Prompt::Icon::Exclamation}));
        QCOMPARE(TestDatabase::count("ZipCode"), before);
        QCOMPARE(TestDatabase::scalar("SELECT State FROM ZipCode WHERE ZipCodeID = ?", {key}).toString(), QStringLiteral("OK"));
        QCOMPARE(e.text(row, 4), QStringLiteral("TX"));
        QCOMPARE(e.text(e.newRow(), 2), QStringLiteral("73344"));

        // Finished with a state from the list, both rows are written.
        e.enter(e.newRow(), 4);
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

    // A change and a new row are written together, or, when the database refuses, neither.
    void saveWritesChangesAndNewRowsTogetherOrNothing()
    {
        Desk s;
        const int before = TestDatabase::count("Relationships");
        const QString firstBefore = stored("Relationships", "RelationshipDescription");
        TestDatabase::scalar("CREATE TEMP TRIGGER refuse BEFORE INSERT ON Relationships BEGIN SELECT RAISE(ABORT, 'refused'); END");
        Editor e = open(s.main, "mnuToolsTablesRelationships");
        e.type(0, 2, QStringLiteral("O'Brien's Kin"));
        e.key(Qt::Key_Return);
        e.type(e.newRow(), 2, QStringLiteral("Mother's Partner"));
        e.click("cmdSave");
        QCOMPARE(s.prompts.last().title, QStringLiteral("Application Error"));
        QCOMPARE(TestDatabase::count("Relationships"), before);
        QCOMPARE(stored("Relationships", "RelationshipDescription"), firstBefore);
        QVERIFY(e.form->DataChanged());
        QCOMPARE(e.text(0, 2), QStringLiteral("O'Brien's Kin"));

        // Once the obstacle is gone the same Save goes through, and the grid is read again.
        TestDatabase::scalar("DROP TRIGGER refuse");
        s.prompts.clear();
        e.click("cmdSave");
        QVERIFY2(s.prompts.messages().isEmpty(), qPrintable(s.prompts.last().text));
        QCOMPARE(e.status(), QStringLiteral("Records updated."));
        QCOMPARE(stored("Relationships", "RelationshipDescription"), QStringLiteral("O'Brien's Kin"));
        const qint64 added
            = TestDatabase::scalar("SELECT RelationshipID FROM Relationships WHERE RelationshipDescription = ?", {"Mother's Partner"})
                  .toLongLong();
        QCOMPARE(e.model->rowCount(), before + 2);
        QCOMPARE(e.text(e.newRow() - 1, 1).toLongLong(), added);
        QCOMPARE(e.text(e.newRow(), 2), QString());
        QVERIFY(!e.form->DataChanged());
        QVERIFY(!e.button("cmdSave")->isEnabled());
    }
};

QTEST_MAIN(tst_tablegrid)
#include "tst_tablegrid.moc"
