#include "DataBinding.h"
#include "FormTesting.h"
#include "GridModel.h"
#include "RowValues.h"
#include "ScriptedPrompts.h"
#include "SearchQueries.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "frmClientGrid.h"
#include "frmMain.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QTableView>
#include <QTextEdit>
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

// What the window puts in front of the user for its current record: the list its chosen row's key, the
// others the name (a volunteer's first name, as both are Nguyen).
QString shownRecord(MdiChild *window)
{
    if (qobject_cast<frmClientGrid *>(window)) {
        auto *grid = window->findChild<QTableView *>(QStringLiteral("grdData"));
        const int row = grid->currentIndex().row();
        return grid->selectionModel()->isRowSelected(row, {}) ? QString::number(basTendmark::GridRowKey(grid, row)) : QString();
    }
    if (auto *block = window->findChild<QTextEdit *>(QStringLiteral("rtbClientInfo")))
        return block->toPlainText().section(QLatin1Char(','), 0, 0);
    return qobject_cast<QLineEdit *>(fieldOf(window, window->kind() == MdiChild::Kind::Volunteer ? "FirstName" : "LastName"))->text();
}

}   // namespace

// The search bar, used as a person uses it: choose the field, type, press Search.
class TestSearch : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<TestDatabase> m_db;
    std::unique_ptr<frmMain> m_main;
    QMap<QString, qint64> m_id;

    void search(const QString &on, const QString &text)
    {
        auto *cboOn = m_main->findChild<QComboBox *>(QStringLiteral("cboSearchOn"));
        auto *cboFor = m_main->findChild<QComboBox *>(QStringLiteral("cboSearchFor"));
        const int index = cboOn->findText(on);
        QVERIFY2(index >= 0, qPrintable(on));
        cboOn->setCurrentIndex(index);
        cboFor->lineEdit()->clear();
        typeText(cboFor->lineEdit(), text);
        QAction *button = m_main->toolbarButton(QStringLiteral("Search"));
        QVERIFY(button->isEnabled());
        QTest::mouseClick(m_main->findChild<QToolBar *>(QStringLiteral("tbrToolBar2"))->widgetForAction(button), Qt::LeftButton);
    }
    QStringList offeredFields() const
    {
        auto *cboOn = m_main->findChild<QComboBox *>(QStringLiteral("cboSearchOn"));
        QStringList offered;
        for (int i = 0; i < cboOn->count(); ++i)
            offered << cboOn->itemText(i);
        return offered;
    }

private slots:
    void initTestCase()
    {
        qRegisterMetaType<MdiChild::Kind>();
        m_db = std::make_unique<TestDatabase>();
        m_main = std::make_unique<frmMain>();
        m_main->show();
        QVERIFY(m_main->openDatabaseFile(m_db->path(), true));
        // One household with a value in every field searched; the others differ where a search must tell them apart.
        m_id["obrien"] = TestDatabase::insert(
            "Client",
            rowValues("LastName=O'Brien;FirstName=Kathleen;SocialSecurityNumber=123456789;DriversLicenseNumber=OH1234567;"
                      "Address=12 Elm St\r\nApt 4;BirthDate=1961-04-23;HomePhone=9375551234;MobilePhone=9375559876;"
                      "WorkPhone=9375550000;EmployerName=Kroger;EmployerAddress=100 Main St"));
        m_id["smith"] = TestDatabase::insert("Client", {{"LastName", "Smith"}, {"FirstName", "John"}, {"Address", "400 Oak Ave"}});
        m_id["smithers"] = TestDatabase::insert("Client", {{"LastName", "Smithers"}, {"FirstName", "Anna"}, {"Address", "7 Oak Ct"}});
        m_id["nguyen"] = TestDatabase::insert(
            "Client", {{"LastName", "Nguyễn"}, {"FirstName", "Thị"}, {"Address", "12 CALLE PEÑA"}, {"City", "CAÑON CITY"}});
        for (const char *name : {"Ávila", "baker", "ångström"})
            TestDatabase::insert("Client", {{"LastName", QString::fromUtf8(name)}});
        // Member ids differ from household ids, so handing over the wrong one shows.
        const std::pair<qint64, const char *> members[]
            = {{m_id["smithers"], "LastName=Smithers;FirstName=Zed"},
               {m_id["obrien"], "FirstName=Sean;SocialSecurityNumber=111223333;DriversLicenseNumber=OH9990000"},
               {m_id["smith"], "LastName=Jones;FirstName=Mary"},
               {m_id["smith"], "LastName=Đặng;FirstName=Bảo"}};
        for (const auto &[client, values] : members)
            TestDatabase::insert("Family", rowValues(QString::fromUtf8(values) + ";ClientID=" + QString::number(client)));
        m_id["linh"] = TestDatabase::insert("Volunteer",
                                            rowValues("LastName=Nguyen;FirstName=Linh;EMailAddress=linh@example.org;"
                                                      "EmergencyContactPhone=9375557777;Comments=Saturdays\r\nonly"));
        m_id["tam"] = TestDatabase::insert("Volunteer", {{"LastName", "Nguyen"}, {"FirstName", "Tam"}});
    }
    void cleanupTestCase()
    {
        m_main.reset();
        m_db.reset();
    }

    // Each field finds its record (a member's field gives the household), through the picker when several match,
    // or says there is none; what is found is handed over by kind and key.
    void eachFieldFindsItsRecord_data()
    {
        QTest::addColumn<MdiChild::Kind>("kind");
        QTest::addColumn<QString>("on");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("who");   // empty: nobody is found; "?" before it: chosen in the picker
        const auto C = MdiChild::Kind::Client, V = MdiChild::Kind::Volunteer;
        const std::tuple<MdiChild::Kind, const char *, const char *, const char *, const char *> rows[] = {
            {C, "last name with a quote", "Last Name", "o'brien", "obrien"},
            {C, "first name, part", "First Name", "athle", "obrien"},
            {C, "ssn typed with dashes", "Social Security Number", "123-45", "obrien"},
            {C, "licence, from the start", "Driver's License Number", "oh123", "obrien"},
            {C, "address", "Address", "elm st", "obrien"},
            {C, "birth date", "Birth Date", "4/23/1961", "obrien"},
            {C, "home phone as formatted", "Home Phone", "(937) 555-1234", "obrien"},
            {C, "mobile phone, part", "Mobile Phone", "555-9876", "obrien"},
            {C, "work phone", "Work Phone", "5550000", "obrien"},
            {C, "employer name", "Employer Name", "KROGER", "obrien"},
            {C, "employer address", "Employer Address", "100 main", "obrien"},
            {C, "family last name gives the household", "Family Member Last Name", "jones", "smith"},
            {C, "family first name", "Family Member First Name", "sean", "obrien"},
            {C, "family name with a letter of its own", "Family Member Last Name", "DANG", "smith"},
            {C, "family member's household", "Family Member First Name", "zed", "smithers"},
            {C, "family ssn", "Family Member Social Security Number", "111-22", "obrien"},
            {C, "family licence", "Family Member Driver's License Number", "OH999", "obrien"},
            {C, "accents and case aside", "Last Name", "nguyen", "nguyen"},
            {C, "capitals with accents", "Last Name", "NGUYỄN", "nguyen"},
            {C, "first name without its accent", "First Name", "thi", "nguyen"},
            {C, "address in other case", "Address", "12 Calle Peña", "nguyen"},
            {C, "address without accents", "Address", "calle  pena", "nguyen"},
            {C, "street word written out", "Address", "12 Elm Street", "obrien"},
            {C, "several, chosen in the picker", "Last Name", "smith", "?smithers"},
            {C, "several, picker cancelled", "Address", "oak", "?"},
            {C, "unknown name", "Last Name", "Zyx", ""},
            {C, "wildcard typed is literal", "Last Name", "%", ""},
            {C, "underscore typed is literal", "First Name", "J_hn", ""},
            {C, "ssn matches from the start only", "Social Security Number", "456", ""},
            {C, "licence matches from the start only", "Driver's License Number", "1234", ""},
            {C, "other birth date", "Birth Date", "04/24/1961", ""},
            {C, "impossible birth date", "Birth Date", "13/45/1961", ""},
            {V, "volunteer e-mail", "E-Mail Address", "EXAMPLE.ORG", "linh"},
            {V, "volunteer emergency phone", "Emergency Contact Phone", "(937) 555-7777", "linh"},
            {V, "volunteer comments", "Comments", "saturdays", "linh"},
            {V, "volunteers, several", "Last Name", "NGUYỄN", "?tam"},
            {V, "volunteer affiliation", "Affiliation", "church", ""},
        };
        for (const auto &[kind, name, on, text, who] : rows)
            QTest::newRow(name) << kind << QString::fromUtf8(on) << QString::fromUtf8(text) << QString::fromUtf8(who);
    }

    void eachFieldFindsItsRecord()
    {
        QFETCH(MdiChild::Kind, kind);
        QFETCH(QString, on);
        QFETCH(QString, text);
        QFETCH(QString, who);
        QPointer<MdiChild> window = new SearchingWindow(m_main.get(), kind);
        m_main->mdiArea()->setActiveSubWindow(m_main->addChild(window));
        const auto closeWindow = qScopeGuard([&window] { window->parentWidget()->close(); });
        ScriptedPrompts prompts;
        const bool picked = who.startsWith(QLatin1Char('?'));
        if (picked) {
            who.remove(0, 1);
            prompts.answerPick(who.isEmpty() ? std::nullopt : std::optional<QString>(QString::number(m_id.value(who))));
        }
        QSignalSpy handOffs(m_main.get(), &frmMain::recordRequested);
        search(on, text);
        QCOMPARE(prompts.pickRequests().size(), picked ? 1 : 0);
        if (picked)
            QCOMPARE(prompts.pickRequests().first().caption, kind == MdiChild::Kind::Client ? "Select Client" : "Select Volunteer");
        if (who.isEmpty()) {
            QCOMPARE(handOffs.size(), 0);
            if (picked)
                QVERIFY(prompts.messages().isEmpty());
            else if (text.startsWith(QLatin1String("13/")))
                QCOMPARE(prompts.titles(), QStringList {"Data Entry Error"});
            else
                QCOMPARE(prompts.messages(),
                         (QList<Prompt::Message> {{"No Record Found", "No record was found matching the specified criteria."}}));
            return;
        }
        QCOMPARE(handOffs.size(), 1);
        QCOMPARE(handOffs.first().at(0).value<MdiChild::Kind>(), kind);
        QCOMPARE(handOffs.first().at(1).toString(), QString::number(m_id.value(who)));
        QVERIFY(prompts.messages().isEmpty());
    }

    // The searches count their matches from an index, not the whole table: three characters or more
    // on a trigram index, fewer on the searched column's own index.
    void searchesCountFromAnIndex_data()
    {
        QTest::addColumn<QString>("on");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("step");
        const QString trigrams = QStringLiteral("SCAN ClientText VIRTUAL TABLE"), own = QStringLiteral("SCAN Client USING COVERING INDEX ");
        for (const auto &[on, text, step] : {std::tuple {"Last Name", "son", trigrams},
                                             {"Last Name", "so", own + "ClientByNameKey"},
                                             {"First Name", "so", own + "ClientByFirstNameKey"},
                                             {"Address", "so", own + "ClientByAddressKey"},
                                             {"Home Phone", "1234", trigrams},
                                             {"Mobile Phone", "12", own + "ClientByMobilePhone"},
                                             {"Family Member Last Name", "son", QStringLiteral("SCAN FamilyText VIRTUAL TABLE")}})
            QTest::addRow("%s, %s", on, text) << on << text << step;
    }
    void searchesCountFromAnIndex()
    {
        QFETCH(QString, on);
        QFETCH(QString, text);
        QFETCH(QString, step);
        const SearchQueries::Query query = SearchQueries::client(on, text);
        QStringList steps;
        for (QSqlQuery plan = basDatabase::Execute(QStringLiteral("EXPLAIN QUERY PLAN ") + query.countSql, query.binds); plan.next();)
            steps << plan.value(3).toString();
        QVERIFY2(steps.join(u'|').contains(step), qPrintable(steps.join(u'|')));
    }

    // Each real window offers its kind's fields and shows what is found, or chosen in the picker, itself.
    void windowShowsTheRecordFound_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::addColumn<QStringList>("one");   // field, text, the record found
        QTest::addColumn<QStringList>("several");   // field, text, the record chosen
        const QStringList obrien {"Last Name", "o'brien", "obrien"}, smithers {"Address", "oak", "smithers"};
        QTest::newRow("client list") << "mnuDataClientTable" << obrien << smithers;
        QTest::newRow("client details") << "mnuDataClientDetails" << obrien << smithers;
        QTest::newRow("client summary") << "mnuDataClientSummary" << obrien << smithers;
        QTest::newRow("volunteers") << "mnuDataVolunteers" << QStringList {"Comments", "saturdays", "linh"}
                                    << QStringList {"Last Name", "nguyen", "tam"};
    }

    void windowShowsTheRecordFound()
    {
        QFETCH(QString, menu);
        QFETCH(QStringList, one);
        QFETCH(QStringList, several);
        const QMap<QString, QString> shown {{"obrien", "O'Brien"}, {"smithers", "Smithers"}, {"linh", "Linh"}, {"tam", "Tam"}};
        ScriptedPrompts prompts;
        m_main->mdiArea()->closeAllSubWindows();
        QTRY_VERIFY(m_main->mdiArea()->subWindowList().isEmpty());
        m_main->findChild<QAction *>(menu)->trigger();
        MdiChild *window = m_main->activeChild();
        const bool volunteers = window->kind() == MdiChild::Kind::Volunteer;
        QCOMPARE(offeredFields(), volunteers ? SearchQueries::volunteerFields() : SearchQueries::clientFields());
        const bool list = menu == QLatin1String("mnuDataClientTable");
        if (list) {   // the list reads names as people do: case and accents aside
            QStringList names;
            for (int row = 0; row < window->recordCount(); ++row)
                names << window->findChild<QTableView *>(QStringLiteral("grdData"))->model()->index(row, 2).data().toString();
            QCOMPARE(names, QString::fromUtf8("ångström Ávila baker Nguyễn O'Brien Smith Smithers").split(QLatin1Char(' ')));
        }
        for (const QStringList &s : {one, several}) {
            if (s == several)
                prompts.answerPick(QString::number(m_id.value(s.at(2))));
            search(s.at(0), s.at(1));
            QCOMPARE(m_main->activeChild(), window);
            QCOMPARE(m_main->mdiArea()->subWindowList().size(), 1);
            QCOMPARE(window->currentKey(), QString::number(m_id.value(s.at(2))));
            QCOMPARE(shownRecord(window), list ? QString::number(m_id.value(s.at(2))) : shown.value(s.at(2)));
        }
        QCOMPARE(prompts.pickRequests().size(), 1);
        QCOMPARE(prompts.pickRequests().first().label,
                 QStringLiteral("2 entries were found that match the specified criteria. \r\n"
                                "Select an entry from the list, then click 'OK'."));
        QVERIFY(prompts.messages().isEmpty());
        if (volunteers) {
            // A client window brings the client fields back, and the volunteers theirs.
            m_main->findChild<QAction *>(QStringLiteral("mnuDataClientTable"))->trigger();
            QCOMPARE(offeredFields(), SearchQueries::clientFields());
            m_main->activateChild(window);
            QCOMPARE(offeredFields(), SearchQueries::volunteerFields());
        }
        m_main->mdiArea()->closeAllSubWindows();
        QTRY_VERIFY(m_main->mdiArea()->subWindowList().isEmpty());
    }
};

QTEST_MAIN(TestSearch)
#include "tst_search.moc"
