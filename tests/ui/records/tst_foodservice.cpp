#include "EditorTesting.h"
#include "MdiChild.h"
#include "basDatabase.h"
#include "frmFoodService.h"

#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QPointer>

namespace {
// Stands in for a client window: it only needs to hear that its grids are stale.
class ClientWindowStub : public MdiChild
{
public:
    using MdiChild::MdiChild;
    Kind kind() const override { return Kind::Client; }
};

QString iso(const QDate &d) { return d.toString(Qt::ISODate); }

void closeWindow(QWidget *w)
{
    qobject_cast<QMdiSubWindow *>(w->parentWidget())->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
} // namespace

class tst_FoodService : public QObject
{
    Q_OBJECT

private:
    qint64 addService(EditorDesk &desk, const QDate &date, int bags)
    {
        return TestDatabase::insert(QStringLiteral("FoodService"),
                                    {{QStringLiteral("ClientID"), desk.clientId},
                                     {QStringLiteral("FoodServiceDate"), iso(date)},
                                     {QStringLiteral("FoodServiceTypeID"), TestDatabase::lookupId(QStringLiteral("FoodServiceTypes"), QStringLiteral("Senior box"))},
                                     {QStringLiteral("NumberOfBags"), bags}});
    }

private slots:
    void newClientOpensOnBlankRecordAndSaves()
    {
        EditorDesk desk;
        auto *stub = new ClientWindowStub(&desk.main);
        desk.main.addChild(stub);
        auto *w = desk.open<frmFoodService>(frmMain::Editor::FoodService);
        QVERIFY(w);
        QCOMPARE(w->windowTitle(), QStringLiteral("Food Service History"));
        QCOMPARE(w->findChild<QLineEdit *>(QStringLiteral("txtClientName"))->text(), QStringLiteral("O'Brien, Mary K"));
        QCOMPARE(w->findChild<QLineEdit *>(QStringLiteral("txtClientSSN"))->text(), QStringLiteral("123-45-6789"));
        QCOMPARE(w->findChild<QLineEdit *>(QStringLiteral("txtClientDLN"))->text(), QStringLiteral("D1234"));
        QCOMPARE(dateEdit(w, "FoodServiceDate")->date(), QDate::currentDate());
        QVERIFY(!desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
        QVERIFY(!w->DataChanged());
        // Required captions are bold, the comments caption is not.
        QVERIFY(w->label(1)->font().bold());
        QVERIFY(!w->label(3)->font().bold());

        choose(combo(w, "FoodServiceTypeID"), QStringLiteral("Holiday basket"));
        QVERIFY(w->DataChanged());
        QVERIFY(desk.main.toolbarButton(QStringLiteral("Save"))->isEnabled());
        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("3"));
        menu(desk.main, "mnuFileSave")->trigger();

        QVERIFY(!w->DataChanged());
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 1);
        const QString id = TestDatabase::scalar(QStringLiteral("SELECT FoodServiceID FROM FoodService")).toString();
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT ClientID FROM FoodService")).toLongLong(), desk.clientId);
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT FoodServiceDate FROM FoodService")).toString(), iso(QDate::currentDate()));
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT NumberOfBags FROM FoodService")).toInt(), 3);
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT FoodServiceTypeID FROM FoodService")).toLongLong(),
                 TestDatabase::lookupId(QStringLiteral("FoodServiceTypes"), QStringLiteral("Holiday basket")));
        QVERIFY(TestDatabase::scalar(QStringLiteral("SELECT Comments FROM FoodService")).isNull());
        QCOMPARE(w->FoodServiceID(), id);
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: ") + id);
        QVERIFY(desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
        QVERIFY(stub->refreshPending());
        QVERIFY(desk.prompts.messages().isEmpty());
    }

    void untouchedNewRecordWritesNothing()
    {
        EditorDesk desk;
        auto *w = desk.open<frmFoodService>(frmMain::Editor::FoodService);
        button(w, "cmdAdd")->click();
        button(w, "cmdAdd")->click();
        w->cmdNext_Click();
        w->cmdPrevious_Click();
        QCOMPARE(dateEdit(w, "FoodServiceDate")->date(), QDate::currentDate());
        QPointer<frmFoodService> guard(w);
        closeWindow(w);
        QVERIFY(guard.isNull());
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 0);
        QVERIFY(desk.prompts.messages().isEmpty());
    }

    void addTwiceGivesOneRecord()
    {
        EditorDesk desk;
        const qint64 first = addService(desk, QDate::currentDate().addDays(-40), 2);
        auto *w = desk.open<frmFoodService>(frmMain::Editor::FoodService, QString::number(first));
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: %1").arg(first));
        button(w, "cmdAdd")->click();
        button(w, "cmdAdd")->click();
        choose(combo(w, "FoodServiceTypeID"), QStringLiteral("Baby supplies"));
        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("1"));
        button(w, "cmdAdd")->click();   // saves, then a new blank record
        button(w, "cmdAdd")->click();
        w->cmdFirst_Click();            // the blank one is dropped
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 2);
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 2     ID: %1").arg(first));
    }

    void refusals()
    {
        EditorDesk desk;
        auto *w = desk.open<frmFoodService>(frmMain::Editor::FoodService);
        // The type is checked before the bags.
        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("0"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Required Field Empty"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Food Service Type is required."));
        QCOMPARE(desk.prompts.last().icon, Prompt::Icon::Exclamation);

        choose(combo(w, "FoodServiceTypeID"), QStringLiteral("Senior box"));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Data Entry Error"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Number of bags cannot be zero."));
        QCOMPARE(desk.prompts.last().icon, Prompt::Icon::Exclamation);

        lineEdit(w, "NumberOfBags")->clear();
        w->cmdNext_Click();
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Number of bags is required."));
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Required Field Empty"));

        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("2"));
        dateEdit(w, "FoodServiceDate")->setDate(QDate::currentDate().addDays(1));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last().title, QStringLiteral("Data Entry Error"));
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Future date not allowed."));
        QCOMPARE(desk.prompts.last().icon, Prompt::Icon::Exclamation);
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 0);
        QVERIFY(w->DataChanged());

        // Leaving the date field with a future date is refused at once, and the focus stays.
        const int before = desk.prompts.messages().size();
        dateEdit(w, "FoodServiceDate")->setFocus();
        lineEdit(w, "NumberOfBags")->setFocus();
        QCOMPARE(desk.prompts.messages().size(), before + 1);
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Future date not allowed."));
        QCoreApplication::processEvents();
        QCOMPARE(QApplication::focusWidget(), dateEdit(w, "FoodServiceDate"));

        dateEdit(w, "FoodServiceDate")->setDate(QDate::currentDate());
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 1);
    }

    void navigationAndKeys()
    {
        EditorDesk desk;
        const QDate today = QDate::currentDate();
        const qint64 a = addService(desk, today.addDays(-30), 1);
        const qint64 c = addService(desk, today.addDays(-10), 3);
        const qint64 b = addService(desk, today.addDays(-20), 2);
        auto *w = desk.open<frmFoodService>(frmMain::Editor::FoodService, QString::number(b));
        QCOMPARE(statusText(w), QStringLiteral("Record: 2 of 3     ID: %1").arg(b));
        QCOMPARE(lineEdit(w, "NumberOfBags")->text(), QStringLiteral("2"));
        QVERIFY(button(w, "cmdFirst")->isEnabled() && button(w, "cmdNext")->isEnabled());

        button(w, "cmdNext")->click();
        QCOMPARE(statusText(w), QStringLiteral("Record: 3 of 3     ID: %1").arg(c));
        QVERIFY(!button(w, "cmdNext")->isEnabled() && !button(w, "cmdLast")->isEnabled());
        w->cmdNext_Click();   // past the end: a beep, still on the last
        QCOMPARE(statusText(w), QStringLiteral("Record: 3 of 3     ID: %1").arg(c));

        QWidget *bags = lineEdit(w, "NumberOfBags");
        QTest::keyClick(bags, Qt::Key_PageUp);
        QCOMPARE(statusText(w), QStringLiteral("Record: 2 of 3     ID: %1").arg(b));
        QTest::keyClick(bags, Qt::Key_PageUp, Qt::ControlModifier);
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 3     ID: %1").arg(a));
        QVERIFY(!button(w, "cmdFirst")->isEnabled() && !button(w, "cmdPrevious")->isEnabled());
        w->cmdPrevious_Click();
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 3     ID: %1").arg(a));
        QTest::keyClick(combo(w, "FoodServiceTypeID"), Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(statusText(w), QStringLiteral("Record: 3 of 3     ID: %1").arg(c));
        QTest::keyClick(bags, Qt::Key_PageDown, Qt::ShiftModifier);   // Shift counts as a plain Page Down
        QCOMPARE(statusText(w), QStringLiteral("Record: 3 of 3     ID: %1").arg(c));
        QCOMPARE(w->FoodServiceID(), QString::number(c));

        // A change is saved before the move.
        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("7"));
        QTest::keyClick(bags, Qt::Key_PageUp);
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT NumberOfBags FROM FoodService WHERE FoodServiceID = ?"), {c}).toInt(), 7);
        QVERIFY(!w->DataChanged());
        QVERIFY(desk.prompts.messages().isEmpty());

        QPointer<frmFoodService> guard(w);
        QTest::keyClick(bags, Qt::Key_Escape);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(guard.isNull());
    }

    void closeQuestion()
    {
        EditorDesk desk;
        const qint64 id = addService(desk, QDate::currentDate().addDays(-3), 2);
        auto *w = desk.open<frmFoodService>(frmMain::Editor::FoodService, QString::number(id));
        QPointer<frmFoodService> guard(w);

        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("5"));
        desk.prompts.answer(Prompt::Cancel);
        closeWindow(w);
        QVERIFY(!guard.isNull());
        const Prompt::Message asked = desk.prompts.last();
        QCOMPARE(asked.title, QStringLiteral("Save Record?"));
        QCOMPARE(asked.text, QStringLiteral("Current record has changed. Do you want to save it?"));
        QCOMPARE(asked.icon, Prompt::Icon::Question);
        QCOMPARE(asked.buttons, Prompt::Yes | Prompt::No | Prompt::Cancel);

        // Yes with a required field empty keeps the window open.
        lineEdit(w, "NumberOfBags")->clear();
        desk.prompts.answer(Prompt::Yes);
        closeWindow(w);
        QVERIFY(!guard.isNull());
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Number of bags is required."));

        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("9"));
        desk.prompts.answer(Prompt::No);
        closeWindow(w);
        QVERIFY(guard.isNull());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT NumberOfBags FROM FoodService")).toInt(), 2);

        w = desk.open<frmFoodService>(frmMain::Editor::FoodService, QString::number(id));
        guard = w;
        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("4"));
        desk.prompts.answer(Prompt::Yes);
        closeWindow(w);
        QVERIFY(guard.isNull());
        QCOMPARE(TestDatabase::scalar(QStringLiteral("SELECT NumberOfBags FROM FoodService")).toInt(), 4);
    }

    void deleteOnlyRecordLeavesBlankRecord()
    {
        EditorDesk desk;
        const QDate day = QDate::currentDate().addDays(-3);
        const qint64 id = addService(desk, day, 2);
        auto *stub = new ClientWindowStub(&desk.main);
        desk.main.addChild(stub);
        auto *w = desk.open<frmFoodService>(frmMain::Editor::FoodService, QString::number(id));
        QVERIFY(!stub->refreshPending());
        desk.prompts.answer(Prompt::Yes);
        menu(desk.main, "mnuFileDelete")->trigger();
        const QString description = day.toString(QStringLiteral("MM/dd/yyyy")) + QStringLiteral(" Senior box");
        QCOMPARE(desk.prompts.messages().size(), 2);
        QCOMPARE(desk.prompts.messages().at(0).title, QStringLiteral("Delete Food Service Item?"));
        QCOMPARE(desk.prompts.messages().at(0).text,
                 QStringLiteral("Are you sure you want to delete food service item '%1'?").arg(description));
        QCOMPARE(desk.prompts.messages().at(0).icon, Prompt::Icon::Question);
        QCOMPARE(desk.prompts.messages().at(0).buttons, Prompt::Yes | Prompt::No);
        QCOMPARE(desk.prompts.messages().at(1).title, QStringLiteral("Delete Food Service Item"));
        QCOMPARE(desk.prompts.messages().at(1).text, QStringLiteral("Food service item '%1' deleted.").arg(description));
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 0);
        QVERIFY(stub->refreshPending());
        QVERIFY(w->FoodServiceID().isEmpty());
        QCOMPARE(dateEdit(w, "FoodServiceDate")->date(), QDate::currentDate());
        QCOMPARE(combo(w, "FoodServiceTypeID")->currentIndex(), -1);
        QVERIFY(!desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
        QVERIFY(!w->DataChanged());
    }

    void addingKeepsThePositionShown()
    {
        EditorDesk desk;
        auto *w = desk.open<frmFoodService>(frmMain::Editor::FoodService);
        QVERIFY(statusText(w).isEmpty());   // nothing to show yet
        closeWindow(w);

        const QDate today = QDate::currentDate();
        const qint64 a = addService(desk, today.addDays(-30), 1);
        addService(desk, today.addDays(-20), 2);
        w = desk.open<frmFoodService>(frmMain::Editor::FoodService, QString::number(a));
        const QString shown = QStringLiteral("Record: 1 of 2     ID: %1").arg(a);
        QCOMPARE(statusText(w), shown);
        button(w, "cmdAdd")->click();
        QVERIFY(w->FoodServiceID().isEmpty());
        QCOMPARE(statusText(w), shown);
        QVERIFY(!button(w, "cmdFirst")->isEnabled());
        QVERIFY(button(w, "cmdNext")->isEnabled());
        QVERIFY(!desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());

        // Entering a text field selects what it holds, the comments too.
        auto *comments = qobject_cast<QPlainTextEdit *>(w->boundControl(QStringLiteral("Comments")));
        comments->setPlainText(QStringLiteral("left at the door"));
        comments->setFocus();
        QCoreApplication::processEvents();
        QCOMPARE(comments->textCursor().selectedText(), QStringLiteral("left at the door"));
    }

    void deleteGoesBackToTheFirstRecord()
    {
        EditorDesk desk;
        const QDate today = QDate::currentDate();
        const qint64 a = addService(desk, today.addDays(-30), 1);
        const qint64 b = addService(desk, today.addDays(-20), 2);
        const qint64 c = addService(desk, today.addDays(-10), 3);
        auto *w = desk.open<frmFoodService>(frmMain::Editor::FoodService, QString::number(c));
        desk.prompts.answer(Prompt::Yes);
        w->DeleteCurrentRecord();
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 2     ID: %1").arg(a));
        QCOMPARE(w->FoodServiceID(), QString::number(a));
        QCOMPARE(lineEdit(w, "NumberOfBags")->text(), QStringLiteral("1"));

        w->setFoodServiceID(QString::number(b));
        QCOMPARE(statusText(w), QStringLiteral("Record: 2 of 2     ID: %1").arg(b));
        desk.prompts.answer(Prompt::Yes);
        w->DeleteCurrentRecord();
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: %1").arg(a));

        // The last one goes: a blank record, the label as it was.
        desk.prompts.answer(Prompt::Yes);
        w->DeleteCurrentRecord();
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 0);
        QVERIFY(w->FoodServiceID().isEmpty());
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: %1").arg(a));
        QVERIFY(!w->DataChanged());
    }

    void deleteAnsweredNoKeepsRecord()
    {
        EditorDesk desk;
        const qint64 id = addService(desk, QDate::currentDate(), 2);
        desk.open<frmFoodService>(frmMain::Editor::FoodService, QString::number(id));
        desk.prompts.answer(Prompt::No);
        menu(desk.main, "mnuFileDelete")->trigger();
        QCOMPARE(desk.prompts.messages().size(), 1);
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 1);
    }

    void recentVisitWarning()
    {
        EditorDesk desk;
        const QDate earlier = QDate::currentDate().addDays(-5);
        addService(desk, earlier, 2);
        basDatabase::Execute(QStringLiteral("UPDATE Options SET FoodVisitIntervalDays = 30"));
        auto *w = desk.open<frmFoodService>(frmMain::Editor::FoodService);
        choose(combo(w, "FoodServiceTypeID"), QStringLiteral("Regular grocery visit"));
        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("2"));

        desk.prompts.answer(Prompt::No);
        QVERIFY(!w->SaveCurrentRecord());
        const Prompt::Message warning = desk.prompts.last();
        QCOMPARE(warning.title, QStringLiteral("Recent Food Service"));
        QCOMPARE(warning.text, QStringLiteral("This client received food 5 days ago (on %1). Save this food service anyway?")
                                   .arg(earlier.toString(QStringLiteral("MM/dd/yyyy"))));
        QCOMPARE(warning.icon, Prompt::Icon::Exclamation);
        QCOMPARE(warning.buttons, Prompt::Yes | Prompt::No);
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 1);
        QVERIFY(w->DataChanged());

        desk.prompts.answer(Prompt::Yes);
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 2);

        // Changing a saved service does not ask again.
        const int asked = desk.prompts.messages().size();
        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("4"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.messages().size(), asked);

        // A visit longer ago than the interval, or an interval of 0, never warns.
        basDatabase::Execute(QStringLiteral("UPDATE Options SET FoodVisitIntervalDays = 0"));
        button(w, "cmdAdd")->click();
        choose(combo(w, "FoodServiceTypeID"), QStringLiteral("Senior box"));
        typeInto(lineEdit(w, "NumberOfBags"), QStringLiteral("1"));
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.messages().size(), asked);
        QCOMPARE(TestDatabase::count(QStringLiteral("FoodService")), 3);
    }
};

QTEST_MAIN(tst_FoodService)
#include "tst_foodservice.moc"
