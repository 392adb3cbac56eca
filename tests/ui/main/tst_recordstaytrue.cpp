#include "DataBinding.h"
#include "FormTesting.h"
#include "GridModel.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"
#include "frmClientSummary.h"
#include "frmFamilyMember.h"
#include "frmOptions.h"
#include "frmTableGrid.h"

#include <QApplication>
#include <QTabWidget>

// What one window does to the records shows at once in the others, and the
// small things a person notices while working through them.
class tst_RecordsStayTrue : public QObject
{
    Q_OBJECT

    static QString strip(QWidget *w)
    {
        QString s;
        for (const char *name : {"cmdFirst", "cmdPrevious", "cmdNext", "cmdLast"})
            s += button(w, name)->isEnabled() ? QChar::fromLatin1(name[3]) : QLatin1Char(' ');
        return s;
    }
    static QString shown(int position, int count, qint64 id)
    {
        return count ? QStringLiteral("Record: %1 of %2     ID: %3").arg(position).arg(count).arg(id) : QStringLiteral("Record: 0 of 0");
    }

private slots:
    // A client deleted in any client window leaves every other one at once: the list drops
    // the row, and details and summary move to the client after it (before it, when it was
    // the last), so that nothing is shown, or saved, for a client no longer on file.
    void deletedClientLeavesEveryWindow_data()
    {
        QTest::addColumn<QString>("deleter");
        QTest::addColumn<int>("clients");
        QTest::addColumn<int>("deleted");   // its place in the name order
        QTest::addColumn<bool>("editing");   // the details window holds a change to it
        QTest::newRow("list, middle") << "list" << 3 << 1 << false;
        QTest::newRow("list, while edited") << "list" << 3 << 1 << true;
        QTest::newRow("details, middle") << "details" << 3 << 1 << false;
        QTest::newRow("summary, last") << "summary" << 3 << 2 << false;
        QTest::newRow("summary, while edited") << "summary" << 3 << 0 << true;
        QTest::newRow("list, the only one") << "list" << 1 << 0 << false;
    }

    void deletedClientLeavesEveryWindow()
    {
        QFETCH(QString, deleter);
        QFETCH(int, clients);
        QFETCH(int, deleted);
        QFETCH(bool, editing);
        ClientWorld world;
        QMap<QString, qint64> byName;
        for (const char *name : {"Cole", "Adams", "Baker"})
            if (byName.size() < clients)
                byName.insert(QString::fromLatin1(name), ClientWorld::addClient(name, "Pat"));
        const QList<qint64> ids = byName.values();   // in name order
        const QString gone = QString::number(ids.at(deleted));
        auto *list = world.open<frmClientGrid>("mnuDataClientTable");
        auto *details = world.open<frmClientDetails>("mnuDataClientDetails");
        auto *summary = world.open<frmClientSummary>("mnuDataClientSummary");
        details->showRecord(gone);
        summary->showRecord(gone);
        list->showRecord(gone);
        if (editing)
            typeInto(details, "FirstName", "Changed");

        world.prompts.answer(Prompt::Yes);
        MdiChild *from = deleter == "list" ? static_cast<MdiChild *>(list)
            : deleter == "details"         ? static_cast<MdiChild *>(details)
                                           : summary;
        from->DeleteCurrentRecord();

        auto *grid = list->findChild<QTableView *>(QStringLiteral("grdData"));
        QCOMPARE(basTendmark::Model(grid)->dataRowCount(), clients - 1);
        QCOMPARE(basTendmark::Model(grid)->findKey(gone.toLongLong()), -1);
        const int next = deleted < clients - 1 ? deleted + 1 : deleted - 1;
        const QString neighbour = next >= 0 ? QString::number(ids.at(next)) : QString();
        const QString expected = shown(qMin(deleted + 1, clients - 1), clients - 1, neighbour.toLongLong());
        QCOMPARE(details->ClientID(), neighbour);
        QCOMPARE(statusText(details), expected);
        QCOMPARE(summary->ClientID(), neighbour);
        QCOMPARE(statusText(summary), expected);
        QCOMPARE(world.prompts.titles().contains("Client Deleted"), editing);
        QVERIFY(!details->DataChanged());   // nothing left to save into a client that is gone
    }

    // A new client, or a new record in an editor, takes its place in the order at once; while
    // a new record is open the navigation buttons lead back to the others.
    void newRecordTakesItsPlace()
    {
        ClientWorld world;
        const qint64 adams = ClientWorld::addClient("Adams", "Ann");
        ClientWorld::addClient("Cole", "Cy");
        auto *summary = world.open<frmClientSummary>("mnuDataClientSummary");
        auto *details = world.open<frmClientDetails>("mnuDataClientDetails");
        button(details, "cmdAdd")->click();
        for (const auto &[field, value] :
             {std::pair {"LastName", "Baker"}, std::pair {"FirstName", "Bo"}, std::pair {"SocialSecurityNumber", "321654987"},
              std::pair {"Address", "9 Elm"}, std::pair {"City", "Peoria"}, std::pair {"State", "IL"}})
            typeInto(details, field, value);
        QVERIFY(details->SaveCurrentRecord());
        const qint64 baker = details->ClientID().toLongLong();
        QCOMPARE(statusText(details), shown(2, 3, baker));
        button(details, "cmdPrevious")->click();
        QCOMPARE(details->ClientID(), QString::number(adams));
        QCOMPARE(statusText(summary), shown(1, 3, adams));

        // A record editor: a new visit dated between two others is shown between them once saved.
        for (const char *date : {"2025-01-10", "2025-12-01"})
            TestDatabase::insert("FoodService", {{"ClientID", adams}, {"FoodServiceDate", date}, {"NumberOfBags", 2}});
        const QString december = TestDatabase::scalar("SELECT MAX(FoodServiceID) FROM FoodService").toString();
        world.main.openRecordEditor(RecordKind::FoodService, QString::number(adams), december);
        auto *editor = qobject_cast<RecordEditor *>(world.main.activeChild());
        button(editor, "cmdAdd")->click();
        QCOMPARE(strip(editor), QStringLiteral("FPNL"));
        button(editor, "cmdLast")->click();
        QCOMPARE(editor->recordId(), december);
        button(editor, "cmdAdd")->click();
        dateEdit(editor, "FoodServiceDate")->setDate(QDate(2025, 6, 1));
        choose(combo(editor, "FoodServiceTypeID"), "Senior box");
        typeInto(editor, "NumberOfBags", "3");
        QVERIFY(editor->SaveCurrentRecord());
        QCOMPARE(statusText(editor), shown(2, 3, editor->recordId().toLongLong()));
    }

    // On the income/expenses tab Add adds to the list last chosen, which stands out and is named on the button.
    void addNamesTheChosenList()
    {
        ClientWorld world;
        ClientWorld::addClient("Adams", "Ann");
        auto *details = world.open<frmClientDetails>("mnuDataClientDetails");
        auto *tabs = details->findChild<QTabWidget *>(QStringLiteral("tabData"));
        tabs->setCurrentIndex(frmClientDetails::IncomeExpensesTab);
        QWidget *page = tabs->widget(frmClientDetails::IncomeExpensesTab);
        const QList<QTableView *> grids = page->findChildren<QTableView *>(QStringLiteral("grdData"));
        QPushButton *add = page->findChild<QPushButton *>(QStringLiteral("cmdGridDataAdd"));
        const struct
        {
            QTableView *grid;
            const char *caption, *tip, *window;
        } choices[] = {{grids.at(1), "&Add Expense...", "Click to add a new expense entry.", "Add/Edit Expenses"},
                       {grids.at(0), "&Add Income...", "Click to add a new income entry.", "Add/Edit Income"}};
        for (const auto &c : choices) {
            QTest::mouseClick(c.grid->viewport(), Qt::LeftButton, {}, QPoint(20, 10));
            QCOMPARE(add->text(), QString::fromLatin1(c.caption));
            QCOMPARE(add->toolTip(), QString::fromLatin1(c.tip));
            QVERIFY(c.grid->styleSheet().contains("highlight"));
            add->click();
            MdiChild *editor = world.main.activeChild();
            QCOMPARE(editor->windowTitle(), QString::fromLatin1(c.window));
            ClientWorld::closeWindow(editor);
        }
    }

    // The lookup editor's Delete waits for a row the user chose.
    void lookupDeleteWaitsForAChosenRow()
    {
        Desk s;
        menu(s.main, "mnuToolsTablesHousing")->trigger();
        auto *form = qobject_cast<frmTableGrid *>(s.main.activeChild());
        auto *grid = form->findChild<QTableView *>(QStringLiteral("grdData"));
        QPushButton *del = button(form, "cmdDelete");
        grid->setFocus(Qt::TabFocusReason);
        QVERIFY(grid->currentIndex().isValid());   // the grid makes a current cell of its own
        QVERIFY(!del->isEnabled());
        QVERIFY(!s.main.toolbarButton("Delete")->isEnabled());
        clickRow(grid, 1);
        QVERIFY(del->isEnabled());
        grid->selectionModel()->clearSelection();
        QVERIFY(!del->isEnabled());
    }

    // The organisation's phone takes 7 or 10 digits, shaped as typed and again after reopening.
    void optionsPhoneShowsItsDigits()
    {
        Desk s;
        const char *const cases[][3] = {{"5551234", "555-1234", "5551234"},
                                        {"555-12-34", "555-1234", "5551234"},
                                        {"51255512349", "(512) 555-1234", "5125551234"}};   // the 11th digit is not taken
        for (const auto &[typed, shown, stored] : cases) {
            for (bool reopened : {false, true}) {
                QTest::qWait(0);   // the dialog closed before is gone
                menu(s.main, "mnuToolsOptions")->trigger();
                auto *dialog = s.main.findChild<frmOptions *>();
                QApplication::setActiveWindow(dialog);
                auto *phone = qobject_cast<QLineEdit *>(fieldOf(dialog, "OrganizationPhone"));
                if (!reopened)
                    typeInto(phone, typed);
                QCOMPARE(phone->text(), QString::fromLatin1(shown));
                button(dialog, "cmdOk")->click();
            }
            QCOMPARE(TestDatabase::scalar("SELECT OrganizationPhone FROM Organization").toString(), QString::fromLatin1(stored));
        }
    }

    // The family member's time with the employer reads "[ ] yrs [ ] months" on one line.
    void employerDurationIsLabelledAfterEachBox()
    {
        EditorDesk desk;
        auto *w = desk.open<frmFamilyMember>(RecordKind::FamilyMember);
        for (const auto &[field, unit] : {std::pair {"EmployerDurationYears", "yrs"}, std::pair {"EmployerDurationMonths", "months"}}) {
            QWidget *box = w->boundControl(QLatin1String(field));
            QLabel *label = w->label(box->property("Index").toInt());
            QCOMPARE(label->text(), QString::fromLatin1(unit));
            QVERIFY(label->x() >= box->x() + box->width());
            QVERIFY(qAbs(label->geometry().center().y() - box->geometry().center().y()) <= 2);
        }
        QCOMPARE(w->boundControl("EmployerDurationYears")->y(), w->boundControl("EmployerDurationMonths")->y());
    }
};

QTEST_MAIN(tst_RecordsStayTrue)
#include "tst_recordstaytrue.moc"
