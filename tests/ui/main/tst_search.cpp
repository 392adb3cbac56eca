#include "ScriptedPrompts.h"
#include "SearchQueries.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "DataBinding.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"
#include "frmClientSummary.h"
#include "frmMain.h"
#include "frmVolunteer.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTableView>
#include <QTextEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QToolBar>
#include <QtTest>

Q_DECLARE_METATYPE(MdiChild::Kind)

namespace {

// A window that offers the search bar, as the client and volunteer windows do.
class SearchingWindow : public MdiChild
{
public:
    SearchingWindow(Workspace *workspace, Kind kind) : MdiChild(workspace), m_kind(kind) { }
    Kind kind() const override { return m_kind; }
    Commands commands() const override
    {
        Commands c;
        c.searchBar = true;
        return c;
    }

private:
    Kind m_kind;
};

}   // namespace

// The search bar, used as a person uses it: choose the field, type, press Search.
class TestSearch : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestDatabase> m_db;
    std::unique_ptr<frmMain> m_main;
    QPointer<MdiChild> m_window;
    qint64 m_obrien = 0, m_smith = 0, m_smithers = 0, m_volunteer = 0, m_other = 0;

    void search(const QString &on, const QString &text);
    QList<QVariantList> handOffs(const std::function<void()> &action);

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void eachClientFieldFindsItsRecord_data();
    void eachClientFieldFindsItsRecord();
    void severalMatchesOpenThePicker();
    void lastNameSearchReadsOnlyTheNameIndex();
    void clientWindowShowsTheClientFound_data();
    void clientWindowShowsTheClientFound();
    void volunteerWindowOffersItsFieldsAndShowsTheOneChosen();
};

void TestSearch::initTestCase()
{
    qRegisterMetaType<MdiChild::Kind>();
    m_db = std::make_unique<TestDatabase>();
    m_main = std::make_unique<frmMain>();
    m_main->show();
    QVERIFY(m_main->openDatabaseFile(m_db->path(), true));
    m_obrien = TestDatabase::insert("Client",
                                    {{"LastName", "O'Brien"},
                                     {"FirstName", "Kathleen"},
                                     {"MiddleInitial", "M"},
                                     {"SocialSecurityNumber", "123456789"},
                                     {"DriversLicenseNumber", "OH1234567"},
                                     {"Address", "12 Elm St\r\nApt 4"},
                                     {"BirthDate", "1961-04-23"},
                                     {"HomePhone", "9375551234"},
                                     {"MobilePhone", "9375559876"},
                                     {"WorkPhone", "9375550000"},
                                     {"EmployerName", "Kroger"},
                                     {"EmployerAddress", "100 Main St"}});
    m_smith = TestDatabase::insert("Client",
                                   {{"LastName", "Smith"},
                                    {"FirstName", "John"},
                                    {"SocialSecurityNumber", "987654321"},
                                    {"Address", "400 Oak Ave"},
                                    {"BirthDate", "1975-01-02"},
                                    {"HomePhone", "9375552222"}});
    m_smithers = TestDatabase::insert("Client", {{"LastName", "Smithers"}, {"FirstName", "Anna"}, {"Address", "7 Oak Ct"}});
    // Member ids differ from household ids, so handing over the wrong one shows.
    TestDatabase::insert("Family", {{"ClientID", m_smithers}, {"LastName", "Smithers"}, {"FirstName", "Zed"}});
    TestDatabase::insert("Family",
                         {{"ClientID", m_obrien},
                          {"LastName", "O'Brien"},
                          {"FirstName", "Sean"},
                          {"SocialSecurityNumber", "111223333"},
                          {"DriversLicenseNumber", "OH9990000"},
                          {"RelationshipID", TestDatabase::lookupId("Relationships", "Son")}});
    TestDatabase::insert("Family",
                         {{"ClientID", m_smith},
                          {"LastName", "Jones"},
                          {"FirstName", "Mary"},
                          {"RelationshipID", TestDatabase::lookupId("Relationships", "Spouse")}});
    m_volunteer = TestDatabase::insert("Volunteer",
                                       {{"LastName", "Nguyen"},
                                        {"FirstName", "Linh"},
                                        {"EMailAddress", "linh@example.org"},
                                        {"EmergencyContact", "Bao Nguyen"},
                                        {"EmergencyContactPhone", "9375557777"},
                                        {"Comments", "Saturdays\r\nonly"}});
    m_other = TestDatabase::insert("Volunteer", {{"LastName", "Nguyen"}, {"FirstName", "Tam"}});
}

void TestSearch::cleanupTestCase()
{
    m_main.reset();
    m_db.reset();
}

void TestSearch::init()
{
    m_window = new SearchingWindow(m_main.get(), MdiChild::Kind::Other);
    m_main->mdiArea()->setActiveSubWindow(m_main->addChild(m_window));
}

void TestSearch::cleanup()
{
    if (m_window)
        m_window->parentWidget()->close();
}

void TestSearch::search(const QString &on, const QString &text)
{
    auto *cboOn = m_main->findChild<QComboBox *>(QStringLiteral("cboSearchOn"));
    auto *cboFor = m_main->findChild<QComboBox *>(QStringLiteral("cboSearchFor"));
    const int index = cboOn->findText(on);
    QVERIFY2(index >= 0, qPrintable(on));
    cboOn->setCurrentIndex(index);
    cboFor->lineEdit()->clear();
    QTest::keyClicks(cboFor->lineEdit(), text);
    QAction *button = m_main->toolbarButton(QStringLiteral("Search"));
    QVERIFY(button->isEnabled());
    auto *bar = m_main->findChild<QToolBar *>(QStringLiteral("tbrToolBar2"));
    QTest::mouseClick(bar->widgetForAction(button), Qt::LeftButton);
}

QList<QVariantList> TestSearch::handOffs(const std::function<void()> &action)
{
    QSignalSpy spy(m_main.get(), &frmMain::recordRequested);
    action();
    return spy;
}

// Each field finds its client (a member's field gives the household), or says there is none.
void TestSearch::eachClientFieldFindsItsRecord_data()
{
    QTest::addColumn<QString>("on");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("who");   // empty: nobody is found
    const char *const rows[][4] = {
        {"last name with a quote", "Last Name", "o'brien", "obrien"},
        {"first name, part", "First Name", "athle", "obrien"},
        {"ssn typed with dashes", "Social Security Number", "123-45", "obrien"},
        {"licence, from the start", "Driver's License Number", "oh123", "obrien"},
        {"address", "Address", "elm st", "obrien"},
        {"birth date", "Birth Date", "4/23/1961", "obrien"},
        {"home phone as formatted", "Home Phone", "(937) 555-1234", "obrien"},
        {"mobile phone, part", "Mobile Phone", "555-9876", "obrien"},
        {"work phone", "Work Phone", "5550000", "obrien"},
        {"employer name", "Employer Name", "KROGER", "obrien"},
        {"employer address", "Employer Address", "100 main", "obrien"},
        {"family last name gives the household", "Family Member Last Name", "jones", "smith"},
        {"family first name", "Family Member First Name", "sean", "obrien"},
        {"family member's household", "Family Member First Name", "zed", "smithers"},
        {"family ssn", "Family Member Social Security Number", "111-22", "obrien"},
        {"family licence", "Family Member Driver's License Number", "OH999", "obrien"},
        {"unknown name", "Last Name", "Zyx", ""},
        {"wildcard typed is literal", "Last Name", "%", ""},
        {"underscore typed is literal", "First Name", "J_hn", ""},
        {"ssn matches from the start only", "Social Security Number", "456", ""},
        {"licence matches from the start only", "Driver's License Number", "1234", ""},
        {"other birth date", "Birth Date", "04/24/1961", ""},
        {"impossible birth date", "Birth Date", "13/45/1961", ""},
    };
    for (const auto &r : rows)
        QTest::newRow(r[0]) << QString::fromUtf8(r[1]) << QString::fromUtf8(r[2]) << QString::fromUtf8(r[3]);
}

void TestSearch::eachClientFieldFindsItsRecord()
{
    QFETCH(QString, on);
    QFETCH(QString, text);
    QFETCH(QString, who);
    ScriptedPrompts prompts;
    const auto spy = handOffs([&] { search(on, text); });
    QVERIFY(prompts.pickRequests().isEmpty());
    if (who.isEmpty()) {
        QCOMPARE(spy.size(), 0);
        QCOMPARE(prompts.messages().size(), 1);
        if (text.startsWith(QLatin1String("13/"))) {
            QCOMPARE(prompts.last().title, QStringLiteral("Data Entry Error"));
            QCOMPARE(prompts.last().icon, Prompt::Icon::Exclamation);
        } else {
            QCOMPARE(prompts.last(),
                     (Prompt::Message {"No Record Found", "No record was found matching the specified criteria.", Prompt::Icon::None,
                                       Prompt::Ok}));
        }
        return;
    }
    const qint64 expected = who == QLatin1String("obrien") ? m_obrien : who == QLatin1String("smith") ? m_smith : m_smithers;
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.first().at(0).value<MdiChild::Kind>(), MdiChild::Kind::Client);
    QCOMPARE(spy.first().at(1).toString(), QString::number(expected));
    QVERIFY(prompts.messages().isEmpty());
}

void TestSearch::severalMatchesOpenThePicker()
{
    ScriptedPrompts prompts;
    prompts.answerPick(QString::number(m_smithers));
    const auto spy = handOffs([&] { search(QStringLiteral("Last Name"), QStringLiteral("smith")); });
    QCOMPARE(prompts.pickRequests().size(), 1);
    const Prompt::PickRequest request = prompts.pickRequests().first();
    QCOMPARE(request.caption, QStringLiteral("Select Client"));
    QCOMPARE(request.label,
             QStringLiteral("2 entries were found that match the specified criteria. \r\n"
                            "Select an entry from the list, then click 'OK'."));
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.first().at(1).toString(), QString::number(m_smithers));

    // A cancelled picker hands nothing over.
    prompts.answerPick(std::nullopt);
    QCOMPARE(handOffs([&] { search(QStringLiteral("Address"), QStringLiteral("oak")); }).size(), 0);
    QCOMPARE(prompts.pickRequests().size(), 2);
}

void TestSearch::lastNameSearchReadsOnlyTheNameIndex()
{
    const SearchQueries::Query query = SearchQueries::client(QStringLiteral("Last Name"), QStringLiteral("son"));
    for (const QString &sql : {query.sql, query.countSql}) {
        QSqlQuery plan = basDatabase::Execute(QStringLiteral("EXPLAIN QUERY PLAN ") + sql, query.binds);
        QStringList steps;
        while (plan.next())
            steps << plan.value(3).toString();
        QCOMPARE(steps.join(QLatin1Char('|')), QStringLiteral("SCAN Client USING COVERING INDEX ClientByName"));
    }
}

namespace {

QString fieldText(QWidget *window, const QString &column)
{
    for (auto *edit : window->findChildren<QLineEdit *>())
        if (basTendmark::DataField(edit) == column)
            return edit->text();
    return QStringLiteral("<no %1>").arg(column);
}

// What the window puts in front of the user for its current client.
QString shownClient(MdiChild *window)
{
    if (auto *list = qobject_cast<frmClientGrid *>(window)) {
        auto *grid = list->findChild<QTableView *>(QStringLiteral("grdData"));
        return QString::number(basTendmark::GridRowKey(grid, grid->currentIndex().row())) + QLatin1Char(' ')
            + QString::number(grid->selectionModel()->isRowSelected(grid->currentIndex().row(), {}));
    }
    if (qobject_cast<frmClientDetails *>(window))
        return fieldText(window, QStringLiteral("LastName")) + QLatin1Char(',') + fieldText(window, QStringLiteral("FirstName"));
    return window->findChild<QTextEdit *>(QStringLiteral("rtbClientInfo"))->toPlainText();
}

}   // namespace

void TestSearch::clientWindowShowsTheClientFound_data()
{
    QTest::addColumn<QString>("menu");
    QTest::newRow("client list") << "mnuDataClientTable";
    QTest::newRow("client details") << "mnuDataClientDetails";
    QTest::newRow("client summary") << "mnuDataClientSummary";
}

void TestSearch::clientWindowShowsTheClientFound()
{
    QFETCH(QString, menu);
    ScriptedPrompts prompts;
    m_main->mdiArea()->closeAllSubWindows();
    m_main->findChild<QAction *>(menu)->trigger();
    MdiChild *window = m_main->activeChild();
    QVERIFY(window && window->kind() == MdiChild::Kind::Client);
    QCOMPARE(m_main->findChild<QComboBox *>(QStringLiteral("cboSearchOn"))->itemText(2), QStringLiteral("Social Security Number"));

    // one match: shown at once, in this same window
    search(QStringLiteral("Last Name"), QStringLiteral("o'brien"));
    QCOMPARE(m_main->activeChild(), window);
    QCOMPARE(m_main->mdiArea()->subWindowList().size(), 1);
    QCOMPARE(window->currentKey(), QString::number(m_obrien));
    const QString obrien = shownClient(window);
    QVERIFY2(obrien == QString::number(m_obrien) + QStringLiteral(" 1") || obrien.contains(QStringLiteral("O'Brien")), qPrintable(obrien));

    // several: the one chosen in the picker
    prompts.answerPick(QString::number(m_smithers));
    search(QStringLiteral("Address"), QStringLiteral("oak"));
    QCOMPARE(prompts.pickRequests().size(), 1);
    QCOMPARE(window->currentKey(), QString::number(m_smithers));
    const QString smithers = shownClient(window);
    QVERIFY2(smithers == QString::number(m_smithers) + QStringLiteral(" 1") || smithers.contains(QStringLiteral("Smithers")),
             qPrintable(smithers));
    QVERIFY(!smithers.contains(QStringLiteral("O'Brien")));
    QVERIFY(!prompts.titles().contains(QStringLiteral("Application Error")));
    m_main->mdiArea()->closeAllSubWindows();
    QTRY_VERIFY(m_main->mdiArea()->subWindowList().isEmpty());
}

void TestSearch::volunteerWindowOffersItsFieldsAndShowsTheOneChosen()
{
    ScriptedPrompts prompts;
    m_main->mdiArea()->closeAllSubWindows();
    m_main->findChild<QAction *>(QStringLiteral("mnuDataVolunteers"))->trigger();
    auto *volunteers = qobject_cast<frmVolunteer *>(m_main->activeChild());
    QVERIFY(volunteers);
    auto *cboOn = m_main->findChild<QComboBox *>(QStringLiteral("cboSearchOn"));
    QStringList offered;
    for (int i = 0; i < cboOn->count(); ++i)
        offered << cboOn->itemText(i);
    QCOMPARE(offered, SearchQueries::volunteerFields());
    QVERIFY(cboOn->isEnabled());

    // Each field finds its volunteer, shown in this window; several go through the picker.
    const struct
    {
        const char *on, *text;
        int found;
    } searches[] = {{"Last Name", "nguyen", 2},
                    {"E-Mail Address", "EXAMPLE.ORG", 1},
                    {"Emergency Contact Phone", "(937) 555-7777", 1},
                    {"Comments", "saturdays", 1},
                    {"Affiliation", "church", 0}};
    for (const auto &f : searches) {
        m_main->showVolunteer(QString::number(m_other));
        prompts.clear();
        if (f.found > 1)
            prompts.answerPick(QString::number(m_volunteer));
        search(QString::fromUtf8(f.on), QString::fromUtf8(f.text));
        QCOMPARE(prompts.pickRequests().size(), f.found > 1 ? 1 : 0);
        if (f.found > 1)
            QCOMPARE(prompts.pickRequests().first().caption, QStringLiteral("Select Volunteer"));
        QCOMPARE(prompts.titles(), f.found ? QStringList() : QStringList {"No Record Found"});
        QCOMPARE(m_main->activeChild(), volunteers);
        QCOMPARE(volunteers->VolunteerID(), QString::number(f.found ? m_volunteer : m_other));
        QCOMPARE(fieldText(volunteers, QStringLiteral("FirstName")), f.found ? QStringLiteral("Linh") : QStringLiteral("Tam"));
    }

    // a client window brings the client fields back
    m_main->findChild<QAction *>(QStringLiteral("mnuDataClientTable"))->trigger();
    QCOMPARE(cboOn->count(), SearchQueries::clientFields().size());
    m_main->activateChild(volunteers);
    QCOMPARE(cboOn->count(), SearchQueries::volunteerFields().size());
    QVERIFY(!prompts.titles().contains(QStringLiteral("Application Error")));
    m_main->mdiArea()->closeAllSubWindows();
    QTRY_VERIFY(m_main->mdiArea()->subWindowList().isEmpty());
}

QTEST_MAIN(TestSearch)
#include "tst_search.moc"
