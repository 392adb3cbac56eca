// The record editors (family members, food services, payments, income,
// expenses, volunteers) worked as a user works them: typing, the toolbar's
// Save and Delete, and closing.
#include "FormTesting.h"
#include "basDatabase.h"
#include "frmFamilyMember.h"

#include <QPointer>

namespace {

const QMap<QString, RecordKind> kinds {{"FamilyMember", RecordKind::FamilyMember},
                                       {"FoodService", RecordKind::FoodService},
                                       {"Payment", RecordKind::Payment},
                                       {"Income", RecordKind::Income},
                                       {"Expenses", RecordKind::Expenses}};

// Opens an editor as the user does: a client's records by kind, the volunteers from the Data menu.
RecordEditor *openEditor(EditorDesk &desk, const QString &kind, const QString &recordId = {})
{
    if (kind != QLatin1String("Volunteer"))
        return desk.open<RecordEditor>(kinds.value(kind), recordId);
    menu(desk.main, "mnuDataVolunteers")->trigger();
    if (!recordId.isEmpty())
        desk.main.showVolunteer(recordId);
    return qobject_cast<RecordEditor *>(desk.main.activeChild());
}

// Fills fields from "Field=value;Field=value": a value {+n} is the date n days from today.
void fill(RecordEditor *w, const QString &assignments)
{
    for (const QString &pair : assignments.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString field = pair.section(QLatin1Char('='), 0, 0);
        QString value = pair.section(QLatin1Char('='), 1);
        if (value.startsWith(QLatin1String("{+"))) {
            const QDate date = QDate::currentDate().addDays(value.mid(2).chopped(1).toInt());
            if (auto *edit = qobject_cast<QDateEdit *>(w->boundControl(field))) {
                edit->setDate(date);
                continue;
            }
            value = date.toString(QStringLiteral("MMddyyyy"));
        }
        typeInto(w, field, value);
    }
}

}   // namespace

class tst_RecordEditors : public QObject
{
    Q_OBJECT

private slots:
    // A new record: each Save from the toolbar refuses the first field still wrong, writing nothing;
    // then the record lands as typed, and opening it again brings the same window forward on it.
    void saveChecksEachFieldThenStoresTheRecord_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QStringList>("steps");   // "typing => the refusal's title|text", the last one saved
        QTest::addColumn<QString>("stored");   // "a query of the saved row => its answer"
        const auto row = [](const char *name, const char *kind, const QStringList &steps, const char *stored) {
            QTest::newRow(name) << kind << steps << stored;
        };
        row("food service", "FoodService",
            {"NumberOfBags=0 => Required Field Empty|Food Service Type is required.",
             "FoodServiceTypeID=Holiday basket => Data Entry Error|Number of bags cannot be zero.",
             "NumberOfBags= => Required Field Empty|Number of bags is required.",
             "NumberOfBags=3;FoodServiceDate={+1} => Data Entry Error|Future date not allowed.", "FoodServiceDate={+0}"},
            "SELECT ClientID || '|' || FoodServiceDate || '|' || FoodServiceTypeDescription || '|' || NumberOfBags"
            " || '|' || ifnull(Comments, 'null') FROM FoodService JOIN FoodServiceTypes USING (FoodServiceTypeID)"
            " => {client}|{today}|Holiday basket|3|null");
        // Amounts are rounded half to even before the zero check; an empty Amount Requested is none.
        row("payment", "Payment",
            {"PaymentsTypeID=Utilities => Required Field Empty|Amount Paid is required.",
             "AmountPaid=0.40 => Data Entry Error|Amount Paid cannot be zero.",
             "AmountPaid=0.50 => Data Entry Error|Amount Paid cannot be zero.",
             "AmountRequested=0.2;AmountPaid=0.60 => Data Entry Error|Amount Requested cannot be zero.",
             "AmountRequested=;AmountPaid=1234.5"},
            "SELECT ClientID || '|' || PaymentDate || '|' || PaymentTypeDescription || '|' || AmountPaid || '|'"
            " || ifnull(AmountRequested, 'null') FROM Payments JOIN PaymentTypes ON PaymentTypeID = PaymentsTypeID"
            " => {client}|{today}|Utilities|123450|null");
        // Income offers the income sources, not the expense categories.
        row("income", "Income",
            {"IncomeSourceID=Utilities;Amount=5 => Required Field Empty|Income Source is required.",
             "IncomeSourceID=Pension;Amount=0 => Data Entry Error|Amount cannot be zero.", "Amount=812.25"},
            "SELECT ClientID || '|' || IncomeSourceDescription || '|' || Amount FROM Income JOIN IncomeSources"
            " USING (IncomeSourceID) => {client}|Pension|81225");
        row("expenses", "Expenses", {"ExpenseCategoryID=Utilities => Required Field Empty|Amount is required.", "Amount=95"},
            "SELECT ClientID || '|' || ExpenseCategoryDescription || '|' || Amount FROM Expenses"
            " JOIN ExpenseCategories USING (ExpenseCategoryID) => {client}|Utilities|9500");
        // A known employer zip code fills the employer's city and state.
        row("family member", "FamilyMember",
            {"Comments=new member => Required Field Empty|Relationship is required.",
             "RelationshipID=Daughter => Required Field Empty|Last Name is required.",
             "LastName=Adams => Required Field Empty|First Name is required.",
             "FirstName=Beth;MobilePhone=5551234 => Data Entry Error|Mobile Phone must have all ten digits, area code first.",
             "MobilePhone=3095551234;BirthDate={+1} => Data Entry Error|Birth Date cannot be in the future.",
             "BirthDate=13452001 => Data Entry Error|Birth Date is not a valid date.",
             "BirthDate=02292012;SocialSecurityNumber=987654321;EmployerZip=61602"},
            "SELECT ClientID || '|' || RelationshipDescription || '|' || LastName || '|' || FirstName || '|' || MobilePhone || '|'"
            " || BirthDate || '|' || SocialSecurityNumber || '|' || EmployerCity || EmployerState || '|' || Comments FROM Family"
            " JOIN Relationships USING (RelationshipID)"
            " => {client}|Daughter|Adams|Beth|3095551234|2012-02-29|987654321|PeoriaIL|new member");
        row("volunteer", "Volunteer",
            {"LastName=O'Neil => Required Field Empty|First Name is required.", "FirstName=Pat;ZipCode=97201;HomePhone=5035551212"},
            "SELECT LastName || '|' || City || State || ZipCode || '|' || HomePhone FROM Volunteer"
            " => O'Neil|PortlandOR97201|5035551212");
    }

    void saveChecksEachFieldThenStoresTheRecord()
    {
        QFETCH(QString, kind);
        QFETCH(QStringList, steps);
        QFETCH(QString, stored);
        EditorDesk desk;
        TestDatabase::insert("ZipCode", {{"ZipCode", "97201"}, {"City", "Portland"}, {"State", "OR"}});
        TestDatabase::insert("ZipCode", {{"ZipCode", "61602"}, {"City", "Peoria"}, {"State", "IL"}});
        RecordEditor *w = openEditor(desk, kind);
        QVERIFY(w && w->recordId().isEmpty());
        if (kind != QLatin1String("Volunteer")) {
            QCOMPARE(w->findChild<QLineEdit *>("txtClientName")->text(), "O'Brien, Mary K");
            QCOMPARE(w->findChild<QLineEdit *>("txtClientSSN")->text(), "123-45-6789");
        }
        const auto [query, expected] = std::pair {stored.section(" => ", 0, 0), stored.section(" => ", 1)};
        for (const QString &step : steps) {
            fill(w, step.section(" => ", 0, 0));
            desk.prompts.clear();
            desk.toolbar("Save");
            const QString refusal = step.section(" => ", 1);
            if (refusal.isEmpty())
                break;
            const Prompt::Message refused {refusal.section('|', 0, 0), refusal.section('|', 1), Prompt::Icon::Exclamation};
            QCOMPARE(desk.prompts.messages(), QList<Prompt::Message> {refused});
            QVERIFY(w->DataChanged());
            QVERIFY(TestDatabase::scalar(query).isNull());
        }
        QVERIFY2(desk.prompts.messages().isEmpty(), qPrintable(desk.prompts.last().text));
        QVERIFY(!w->DataChanged());
        QCOMPARE(TestDatabase::scalar(query).toString(),
                 QString(expected)
                     .replace("{client}", QString::number(desk.clientId))
                     .replace("{today}", QDate::currentDate().toString(Qt::ISODate)));
        const QString id = w->recordId();
        QVERIFY(!id.isEmpty());
        QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: ") + id);
        QVERIFY(desk.main.toolbarButton("Delete")->isEnabled());
        QCOMPARE(openEditor(desk, kind, id), w);
        QCOMPARE(desk.main.openChildCount(), 1);
    }

    // Delete asks first and says what went; the editor moves to the record left, the last one gone leaves a blank
    // new record, and a record no longer on file is not opened.
    void deleteAsksThenTellsAndMovesOn_data()
    {
        QTest::addColumn<QString>("insert");   // a row of the editor's table, ? the client; the keys are those of the standard entries
        QTest::addColumn<QString>("item");   // what the titles name
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("answer");
        const char *const rows[][5] = {
            {"FoodService",
             "INSERT INTO FoodService (ClientID, FoodServiceDate, NumberOfBags, FoodServiceTypeID) VALUES (?, '2026-01-05', 2, 5)",
             "Food Service Item", "Are you sure you want to delete food service item '01/05/2026 Senior box'?",
             "Food service item '01/05/2026 Senior box' deleted."},
            {"Payment", "INSERT INTO Payments (ClientID, PaymentDate, AmountPaid, PaymentsTypeID) VALUES (?, '2025-12-01', 500, 2)",
             "Payment Item", "Are you sure you want to delete payment item '12/01/2025 Utilities'?",
             "Payment item '12/01/2025 Utilities' deleted."},
            {"Income", "INSERT INTO Income (ClientID, Amount, IncomeSourceID) VALUES (?, 500, 6)", "Income Item",
             "Are you sure you want to delete 'Pension'?", "'Pension' deleted."},
            {"Expenses", "INSERT INTO Expenses (ClientID, Amount, ExpenseCategoryID) VALUES (?, 500, 2)", "Expenses Item",
             "Are you sure you want to delete 'Utilities'?", "'Utilities' deleted."},
            {"FamilyMember", "INSERT INTO Family (ClientID, LastName, FirstName, RelationshipID) VALUES (?, 'Adams', 'Tim', 3)",
             "Family Member", "Are you sure you want to delete family member 'Adams, Tim '?", "Family member 'Adams, Tim ' deleted."},
            {"Volunteer", "INSERT INTO Volunteer (LastName, FirstName) VALUES ('O''Neil', 'Pat')", "Volunteer",
             "Are you sure you want to delete volunteer 'O'Neil, Pat'?", "Volunteer 'O'Neil, Pat' deleted."},
        };
        for (const auto &r : rows)
            QTest::newRow(r[0]) << r[1] << r[2] << r[3] << r[4];
    }

    void deleteAsksThenTellsAndMovesOn()
    {
        QFETCH(QString, insert);
        QFETCH(QString, item);
        QFETCH(QString, question);
        QFETCH(QString, answer);
        const QString kind = QString::fromLatin1(QTest::currentDataTag());
        EditorDesk desk;
        const QVariantList binds = insert.contains('?') ? QVariantList {desk.clientId} : QVariantList {};
        const QString first = basDatabase::Execute(insert, binds).lastInsertId().toString();
        const QString second = basDatabase::Execute(insert, binds).lastInsertId().toString();
        const QString table = insert.section(' ', 2, 2);
        RecordEditor *w = openEditor(desk, kind, second);
        QVERIFY(w);
        QCOMPARE(w->recordId(), second);
        const Prompt::Message asked {"Delete " + item + "?", question, Prompt::Icon::Question, Prompt::Yes | Prompt::No};
        const Prompt::Message done {"Delete " + item, answer};

        desk.prompts.answer(Prompt::No);
        desk.toolbar("Delete");
        QCOMPARE(desk.prompts.messages(), QList<Prompt::Message> {asked});
        QCOMPARE(TestDatabase::count(table), 2);
        for (int left : {1, 0}) {
            desk.prompts.clear();
            desk.prompts.answer(Prompt::Yes);
            desk.toolbar("Delete");
            QCOMPARE(desk.prompts.messages(), (QList<Prompt::Message> {asked, done}));
            QCOMPARE(TestDatabase::count(table), left);
            QCOMPARE(w->recordId(), left ? first : QString());
            QCOMPARE(statusText(w), QStringLiteral("Record: 1 of 1     ID: ") + first);   // a new record keeps what was shown
            QCOMPARE(desk.main.toolbarButton("Delete")->isEnabled(), left > 0);
            QVERIFY(!w->DataChanged());
        }
        if (kind == QLatin1String("Volunteer"))
            return;
        ClientWorld::closeWindow(w);
        QVERIFY(!openEditor(desk, kind, first));
        QCOMPARE(desk.prompts.last(), (Prompt::Message {"Application Error", "Error retrieving record.", Prompt::Icon::Exclamation}));
        QCOMPARE(desk.main.openChildCount(), 0);
    }

    // Closing a changed record asks, in a record editor as in the client details (each its own code); Cancel, or
    // Yes with a required field emptied, keeps the window; No drops the change; Yes saves it.
    void closingAChangedRecordAsks()
    {
        EditorDesk desk;
        const qint64 id = TestDatabase::insert("FoodService", {{"ClientID", desk.clientId}, {"NumberOfBags", 2}, {"FoodServiceTypeID", 1}});
        const Prompt::Message question {"Save Record?", "Current record has changed. Do you want to save it?", Prompt::Icon::Question,
                                        Prompt::Yes | Prompt::No | Prompt::Cancel};
        const std::tuple<const char *, Prompt::Button, bool, bool> closings[] = {{"5", Prompt::Cancel, false, false},
                                                                                 {"", Prompt::Yes, true, false},
                                                                                 {"9", Prompt::No, false, false},
                                                                                 {"4", Prompt::Yes, false, true}};
        // menu (none: the food service editor), field, the refusal of it emptied
        const char *const windows[][3]
            = {{nullptr, "NumberOfBags", "Number of bags is required."}, {"mnuDataClientDetails", "FirstName", "First Name is required."}};
        for (const auto &[menu, field, required] : windows) {
            const QString stored = QStringLiteral("SELECT %1 FROM FoodService JOIN Client USING (ClientID)").arg(QLatin1String(field));
            const QString before = TestDatabase::scalar(stored).toString();
            QPointer<MdiChild> w;
            for (const auto &[typed, answer, told, saved] : closings) {
                if (!w && !menu)
                    w = openEditor(desk, "FoodService", QString::number(id));
                else if (!w) {
                    desk.main.findChild<QAction *>(menu)->trigger();
                    w = desk.main.activeChild();
                }
                typeInto(w, field, typed);
                desk.prompts.clear();
                desk.prompts.answer(answer);
                ClientWorld::closeWindow(w);
                QCOMPARE(desk.prompts.messages().value(0), question);
                QCOMPARE(desk.prompts.last().text, told ? required : question.text);
                QCOMPARE(w.isNull(), answer != Prompt::Cancel && !told);
                QCOMPARE(TestDatabase::scalar(stored).toString(), saved ? QString(typed) : before);
            }
        }
    }

    // A second visit within the interval asks before it is saved; a new record that was not touched is let go.
    void foodServiceWarnsOfARecentVisit()
    {
        EditorDesk desk;
        const QDate earlier = QDate::currentDate().addDays(-5);
        const qint64 recent = TestDatabase::insert(
            "FoodService", {{"ClientID", desk.clientId}, {"FoodServiceDate", earlier.toString(Qt::ISODate)}, {"NumberOfBags", 2}});
        TestDatabase::insert("FoodService", {{"ClientID", desk.clientId}, {"FoodServiceDate", "2020-01-01"}, {"NumberOfBags", 1}});
        basDatabase::Execute("UPDATE Options SET FoodVisitIntervalDays = 30");
        RecordEditor *w = openEditor(desk, "FoodService", QString::number(recent));
        QCOMPARE(statusText(w), QStringLiteral("Record: 2 of 2     ID: %1").arg(recent));   // in date order

        button(w, "cmdAdd")->click();
        fill(w, "FoodServiceTypeID=Senior box;NumberOfBags=2;FoodServiceDate={+1}");
        // Leaving the date field with a future date is refused at once, and the focus stays.
        desk.prompts.clear();
        fieldOf(w, "FoodServiceDate")->setFocus();
        fieldOf(w, "Comments")->setFocus();
        QCOMPARE(desk.prompts.messages(),
                 (QList<Prompt::Message> {{"Data Entry Error", "Future date not allowed.", Prompt::Icon::Exclamation}}));
        QCoreApplication::processEvents();
        QCOMPARE(QApplication::focusWidget(), fieldOf(w, "FoodServiceDate"));
        fill(w, "FoodServiceDate={+0}");

        desk.prompts.clear();
        desk.prompts.answer(Prompt::No);
        desk.toolbar("Save");
        const Prompt::Message warning {"Recent Food Service",
                                       QStringLiteral("This client received food 5 days ago (on %1). Save this food service anyway?")
                                           .arg(earlier.toString("MM/dd/yyyy")),
                                       Prompt::Icon::Exclamation, Prompt::Yes | Prompt::No};
        QCOMPARE(desk.prompts.messages(), QList<Prompt::Message> {warning});
        QCOMPARE(TestDatabase::count("FoodService"), 2);
        QVERIFY(w->DataChanged());
        desk.prompts.answer(Prompt::Yes);
        desk.toolbar("Save");
        QCOMPARE(TestDatabase::count("FoodService"), 3);
        // Changing a saved service does not ask again; another the same day is "today"; none asks once the interval is 0.
        fill(w, "NumberOfBags=4");
        desk.toolbar("Save");
        button(w, "cmdAdd")->click();
        fill(w, "FoodServiceTypeID=Senior box;NumberOfBags=1");
        desk.prompts.answer(Prompt::No);
        desk.toolbar("Save");
        QCOMPARE(desk.prompts.last().text,
                 QStringLiteral("This client received food today (on %1). Save this food service anyway?")
                     .arg(QDate::currentDate().toString("MM/dd/yyyy")));
        basDatabase::Execute("UPDATE Options SET FoodVisitIntervalDays = 0");
        desk.toolbar("Save");
        QCOMPARE(TestDatabase::count("FoodService", "NumberOfBags = 4"), 1);
        QCOMPARE(TestDatabase::count("FoodService"), 4);
        QCOMPARE(desk.prompts.messages().size(), 3);

        // An untouched new record is dropped on Add and on close, without a word.
        button(w, "cmdAdd")->click();
        button(w, "cmdAdd")->click();
        ClientWorld::closeWindow(w);
        QVERIFY(!desk.main.activeChild());
        QCOMPARE(TestDatabase::count("FoodService"), 4);
        QCOMPARE(desk.prompts.messages().size(), 3);
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

QTEST_MAIN(tst_RecordEditors)
#include "tst_recordeditors.moc"
