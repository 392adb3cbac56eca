#include "FormTesting.h"
#include "MdiChild.h"
#include "basDatabase.h"
#include "frmFoodService.h"

#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QPointer>

namespace {
// Stands in for a client window: it only needs to hear whose records changed.
class ClientWindowStub : public MdiChild
{
public:
    using MdiChild::MdiChild;
    Kind kind() const override { return Kind::Client; }
    QStringList refilledFor;

protected:
    void refillForClient(const QString &clientId) override { refilledFor << clientId; }
};

QString iso(const QDate &d)
{
    return d.toString(Qt::ISODate);
}

}   // namespace

class tst_FoodService : public QObject
{
    Q_OBJECT

private:
    qint64 addService(EditorDesk &desk, const QDate &date, int bags)
    {
        return TestDatabase::insert("FoodService",
                                    {{"ClientID", desk.clientId},
                                     {"FoodServiceDate", iso(date)},
                                     {"FoodServiceTypeID", TestDatabase::lookupId("FoodServiceTypes", "Senior box")},
                                     {"NumberOfBags", bags}});
    }

private slots:
    // A client's first service: a blank record, the refusals in their order, then saved from the File menu.
    void newServiceIsCheckedThenSaved()
    {
        EditorDesk desk;
        auto *stub = new ClientWindowStub(&desk.main);
        desk.main.addChild(stub);
        auto *w = desk.open<frmFoodService>(RecordKind::FoodService);
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

        // The type is checked before the bags.
        typeInto(lineEdit(w, "NumberOfBags"), "0");
        QVERIFY(w->DataChanged());
        QVERIFY(desk.main.toolbarButton(QStringLiteral("Save"))->isEnabled());
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last(),
                 (Prompt::Message {"Required Field Empty", "Food Service Type is required.", Prompt::Icon::Exclamation, Prompt::Ok}));
        choose(combo(w, "FoodServiceTypeID"), "Holiday basket");
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last(),
                 (Prompt::Message {"Data Entry Error", "Number of bags cannot be zero.", Prompt::Icon::Exclamation, Prompt::Ok}));
        lineEdit(w, "NumberOfBags")->clear();
        w->cmdNext_Click();
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Number of bags is required."));
        typeInto(lineEdit(w, "NumberOfBags"), "3");
        dateEdit(w, "FoodServiceDate")->setDate(QDate::currentDate().addDays(1));
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last(),
                 (Prompt::Message {"Data Entry Error", "Future date not allowed.", Prompt::Icon::Exclamation, Prompt::Ok}));
        QCOMPARE(TestDatabase::count("FoodService"), 0);
        QVERIFY(w->DataChanged());
        // Leaving the date field with a future date is refused at once, and the focus stays.
        desk.prompts.clear();
        dateEdit(w, "FoodServiceDate")->setFocus();
        lineEdit(w, "NumberOfBags")->setFocus();
        QCOMPARE(desk.prompts.titles(), QStringList {"Data Entry Error"});
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Future date not allowed."));
        QCoreApplication::processEvents();
        QCOMPARE(QApplication::focusWidget(), dateEdit(w, "FoodServiceDate"));

        dateEdit(w, "FoodServiceDate")->setDate(QDate::currentDate());
        desk.prompts.clear();
        menu(desk.main, "mnuFileSave")->trigger();
        QVERIFY(!w->DataChanged());
        QCOMPARE(
            TestDatabase::count("FoodService",
                                "ClientID = ? AND FoodServiceDate = ? AND NumberOfBags = 3 AND Comments IS NULL"
                                " AND FoodServiceTypeID = ?",
                                {desk.clientId, iso(QDate::currentDate()), TestDatabase::lookupId("FoodServiceTypes", "Holiday basket")}),
            1);
        QCOMPARE(TestDatabase::count("FoodService"), 1);
        const QString id = TestDatabase::scalar("SELECT FoodServiceID FROM FoodService").toString();
        QCOMPARE(w->FoodServiceID(), id);
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: ") + id);
        QVERIFY(desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
        QCOMPARE(stub->refilledFor, QStringList {QString::number(desk.clientId)});
        QVERIFY(desk.prompts.messages().isEmpty());

        // Entering a text field selects what it holds, the comments too.
        auto *comments = qobject_cast<QPlainTextEdit *>(w->boundControl(QStringLiteral("Comments")));
        comments->setPlainText(QStringLiteral("left at the door"));
        comments->setFocus();
        QCoreApplication::processEvents();
        QCOMPARE(comments->textCursor().selectedText(), QStringLiteral("left at the door"));
    }

    void addingKeepsThePositionAndGivesOneRecord()
    {
        EditorDesk desk;
        auto *w = desk.open<frmFoodService>(RecordKind::FoodService);
        QVERIFY(statusText(w).isEmpty());   // nothing to show yet
        ClientWorld::closeWindow(w);

        const qint64 first = addService(desk, QDate::currentDate().addDays(-40), 2);
        addService(desk, QDate::currentDate().addDays(-20), 1);
        w = desk.open<frmFoodService>(RecordKind::FoodService, QString::number(first));
        const QString shown = QStringLiteral("Record: 1 of 2     ID: %1").arg(first);
        QCOMPARE(statusText(w), shown);
        button(w, "cmdAdd")->click();
        QVERIFY(w->FoodServiceID().isEmpty());
        QCOMPARE(statusText(w), shown);
        QVERIFY(!button(w, "cmdFirst")->isEnabled());
        QVERIFY(button(w, "cmdNext")->isEnabled());
        QVERIFY(!desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
        button(w, "cmdAdd")->click();
        choose(combo(w, "FoodServiceTypeID"), "Baby supplies");
        typeInto(lineEdit(w, "NumberOfBags"), "1");
        button(w, "cmdAdd")->click();   // saves, then a new blank record
        button(w, "cmdAdd")->click();
        w->cmdFirst_Click();   // the blank one is dropped
        QCOMPARE(TestDatabase::count("FoodService"), 3);
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 3     ID: %1").arg(first));

        // An untouched new record is let go without a word on close.
        desk.prompts.clear();
        button(w, "cmdAdd")->click();
        QCOMPARE(dateEdit(w, "FoodServiceDate")->date(), QDate::currentDate());
        QPointer<frmFoodService> guard(w);
        ClientWorld::closeWindow(w);
        QVERIFY(guard.isNull());
        QCOMPARE(TestDatabase::count("FoodService"), 3);
        QVERIFY(desk.prompts.messages().isEmpty());
    }

    // The services are in date order; the keys move from any field; a change is saved before the move.
    void navigationAndKeys()
    {
        EditorDesk desk;
        const QDate today = QDate::currentDate();
        const qint64 a = addService(desk, today.addDays(-30), 1);
        const qint64 c = addService(desk, today.addDays(-10), 3);
        const qint64 b = addService(desk, today.addDays(-20), 2);
        auto *w = desk.open<frmFoodService>(RecordKind::FoodService, QString::number(b));
        const auto at = [](int n, qint64 id) { return QStringLiteral("Record: %1 of 3     ID: %2").arg(n).arg(id); };
        QCOMPARE(statusText(w), at(2, b));
        QCOMPARE(lineEdit(w, "NumberOfBags")->text(), QStringLiteral("2"));
        button(w, "cmdNext")->click();
        QCOMPARE(statusText(w), at(3, c));
        w->cmdNext_Click();   // past the end: a beep, still on the last
        QCOMPARE(statusText(w), at(3, c));
        QWidget *bags = lineEdit(w, "NumberOfBags");
        QTest::keyClick(bags, Qt::Key_PageUp, Qt::ControlModifier);
        QCOMPARE(statusText(w), at(1, a));
        QTest::keyClick(combo(w, "FoodServiceTypeID"), Qt::Key_PageDown, Qt::ControlModifier);
        QCOMPARE(statusText(w), at(3, c));

        typeInto(bags, "7");
        QTest::keyClick(bags, Qt::Key_PageUp);
        QCOMPARE(statusText(w), at(2, b));
        QCOMPARE(TestDatabase::scalar("SELECT NumberOfBags FROM FoodService WHERE FoodServiceID = ?", {c}).toInt(), 7);
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
        auto *w = desk.open<frmFoodService>(RecordKind::FoodService, QString::number(id));
        QPointer<frmFoodService> guard(w);

        typeInto(lineEdit(w, "NumberOfBags"), "5");
        desk.prompts.answer(Prompt::Cancel);
        ClientWorld::closeWindow(w);
        QVERIFY(!guard.isNull());
        QCOMPARE(desk.prompts.last(),
                 (Prompt::Message {"Save Record?", "Current record has changed. Do you want to save it?", Prompt::Icon::Question,
                                   Prompt::Yes | Prompt::No | Prompt::Cancel}));

        // Yes with a required field empty keeps the window open.
        lineEdit(w, "NumberOfBags")->clear();
        desk.prompts.answer(Prompt::Yes);
        ClientWorld::closeWindow(w);
        QVERIFY(!guard.isNull());
        QCOMPARE(desk.prompts.last().text, QStringLiteral("Number of bags is required."));

        typeInto(lineEdit(w, "NumberOfBags"), "9");
        desk.prompts.answer(Prompt::No);
        ClientWorld::closeWindow(w);
        QVERIFY(guard.isNull());
        QCOMPARE(TestDatabase::scalar("SELECT NumberOfBags FROM FoodService").toInt(), 2);

        w = desk.open<frmFoodService>(RecordKind::FoodService, QString::number(id));
        guard = w;
        typeInto(lineEdit(w, "NumberOfBags"), "4");
        desk.prompts.answer(Prompt::Yes);
        ClientWorld::closeWindow(w);
        QVERIFY(guard.isNull());
        QCOMPARE(TestDatabase::scalar("SELECT NumberOfBags FROM FoodService").toInt(), 4);
    }

    // Delete goes back to the first record; the last one gone leaves a blank record.
    void deleteGoesBackToTheFirstRecord()
    {
        EditorDesk desk;
        const QDate today = QDate::currentDate();
        const qint64 a = addService(desk, today.addDays(-30), 1);
        const qint64 b = addService(desk, today.addDays(-20), 2);
        const qint64 c = addService(desk, today.addDays(-10), 3);
        auto *stub = new ClientWindowStub(&desk.main);
        desk.main.addChild(stub);
        auto *w = desk.open<frmFoodService>(RecordKind::FoodService, QString::number(c));
        desk.prompts.answer(Prompt::Yes);
        menu(desk.main, "mnuFileDelete")->trigger();
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 2     ID: %1").arg(a));
        QCOMPARE(w->FoodServiceID(), QString::number(a));
        QCOMPARE(lineEdit(w, "NumberOfBags")->text(), QStringLiteral("1"));
        QCOMPARE(stub->refilledFor, QStringList {QString::number(desk.clientId)});

        w->setFoodServiceID(QString::number(b));
        QCOMPARE(statusText(w), QStringLiteral("Record: 2 of 2     ID: %1").arg(b));
        desk.prompts.answer(Prompt::Yes);
        w->DeleteCurrentRecord();
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: %1").arg(a));

        const QString description = today.addDays(-30).toString(QStringLiteral("MM/dd/yyyy")) + QStringLiteral(" Senior box");
        const Prompt::Message question {"Delete Food Service Item?",
                                        QStringLiteral("Are you sure you want to delete food service item '%1'?").arg(description),
                                        Prompt::Icon::Question, Prompt::Yes | Prompt::No};
        desk.prompts.clear();
        desk.prompts.answer(Prompt::No);
        menu(desk.main, "mnuFileDelete")->trigger();
        QCOMPARE(desk.prompts.messages(), QList<Prompt::Message> {question});
        QCOMPARE(TestDatabase::count("FoodService"), 1);

        // The last one goes: a blank record, the label as it was.
        desk.prompts.clear();
        desk.prompts.answer(Prompt::Yes);
        menu(desk.main, "mnuFileDelete")->trigger();
        QCOMPARE(desk.prompts.messages().size(), 2);
        QCOMPARE(desk.prompts.messages().at(0), question);
        QCOMPARE(desk.prompts.messages().at(1).title, QStringLiteral("Delete Food Service Item"));
        QCOMPARE(desk.prompts.messages().at(1).text, QStringLiteral("Food service item '%1' deleted.").arg(description));
        QCOMPARE(TestDatabase::count("FoodService"), 0);
        QVERIFY(w->FoodServiceID().isEmpty());
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: %1").arg(a));
        QCOMPARE(dateEdit(w, "FoodServiceDate")->date(), QDate::currentDate());
        QCOMPARE(combo(w, "FoodServiceTypeID")->currentIndex(), -1);
        QVERIFY(!desk.main.toolbarButton(QStringLiteral("Delete"))->isEnabled());
        QVERIFY(!w->DataChanged());
    }

    void recentVisitWarning()
    {
        EditorDesk desk;
        const QDate earlier = QDate::currentDate().addDays(-5);
        addService(desk, earlier, 2);
        basDatabase::Execute("UPDATE Options SET FoodVisitIntervalDays = 30");
        auto *w = desk.open<frmFoodService>(RecordKind::FoodService);
        choose(combo(w, "FoodServiceTypeID"), "Regular grocery visit");
        typeInto(lineEdit(w, "NumberOfBags"), "2");

        desk.prompts.answer(Prompt::No);
        QVERIFY(!w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.last(),
                 (Prompt::Message {"Recent Food Service",
                                   QStringLiteral("This client received food 5 days ago (on %1). Save this food service anyway?")
                                       .arg(earlier.toString(QStringLiteral("MM/dd/yyyy"))),
                                   Prompt::Icon::Exclamation, Prompt::Yes | Prompt::No}));
        QCOMPARE(TestDatabase::count("FoodService"), 1);
        QVERIFY(w->DataChanged());

        desk.prompts.answer(Prompt::Yes);
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(TestDatabase::count("FoodService"), 2);

        // Changing a saved service does not ask again.
        const int asked = desk.prompts.messages().size();
        typeInto(lineEdit(w, "NumberOfBags"), "4");
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.messages().size(), asked);

        // A visit longer ago than the interval, or an interval of 0, never warns.
        basDatabase::Execute("UPDATE Options SET FoodVisitIntervalDays = 0");
        button(w, "cmdAdd")->click();
        choose(combo(w, "FoodServiceTypeID"), "Senior box");
        typeInto(lineEdit(w, "NumberOfBags"), "1");
        QVERIFY(w->SaveCurrentRecord());
        QCOMPARE(desk.prompts.messages().size(), asked);
        QCOMPARE(TestDatabase::count("FoodService"), 3);
    }
};

QTEST_MAIN(tst_FoodService)
#include "tst_foodservice.moc"
