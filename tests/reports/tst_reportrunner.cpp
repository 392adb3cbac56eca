#include "ReportRunner.h"
#include "ScriptedPrompts.h"
#include "frmReportByClientAndDate.h"
#include "frmReportByDate.h"
#include "frmReportByGrouped.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDateEdit>
#include <QGroupBox>
#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <QtTest>

#include <memory>

using RecordScope::ActiveScope;
using RecordScope::Kind;
using Report::Name;

namespace {

QString textOf(QWidget *w)
{
    if (w->isWindow())
        return w->windowTitle();
    if (auto *box = qobject_cast<QGroupBox *>(w))
        return box->title();
    if (auto *button = qobject_cast<QAbstractButton *>(w))
        return button->text();
    if (auto *label = qobject_cast<QLabel *>(w))
        return label->text();
    return {};
}

QWidget *child(QWidget *dialog, const QString &name)
{
    return dialog->objectName() == name ? dialog : dialog->findChild<QWidget *>(name);
}

void click(QWidget *dialog, const char *name)
{
    auto *b = qobject_cast<QAbstractButton *>(child(dialog, QLatin1String(name)));
    QVERIFY2(b && b->isEnabled(), name);
    b->click();
}

bool checked(QWidget *dialog, const char *name)
{
    return qobject_cast<QAbstractButton *>(child(dialog, QLatin1String(name)))->isChecked();
}

std::unique_ptr<QDialog> makeDialog(const QString &kind, const QString &itemWord)
{
    if (kind == QLatin1String("By") || kind == QLatin1String("ByGrouped")) {
        std::unique_ptr<frmReportBy> d(kind == QLatin1String("By") ? new frmReportBy : new frmReportByGrouped);
        d->setTableName(itemWord);
        return d;
    }
    if (kind == QLatin1String("ByDate"))
        return std::make_unique<frmReportByDate>();
    return std::make_unique<frmReportByClientAndDate>();
}

// What one run of a report did: the dialog it showed, what it built, what it said.
struct Run
{
    QString dialogName;
    QMap<QString, bool> enabled;   // the "current" options
    bool built = false;
    Report::Parameters parameters;
    bool shown = false;
};

// Runs a report whose dialog is answered by `answer` as soon as it is up; the
// builder records what it was asked and answers with `result`.
Run runReport(Name name, const ActiveScope &active, std::function<void(QDialog *)> answer, Report::Result result = {})
{
    Run run;
    if (result.error.isEmpty() && !result.cancelled) {
        result.ok = true;
        result.document.caption = QStringLiteral("Built caption");
    }
    ReportRunner runner([&](const Report::Parameters &p, const Report::Progress &) {
        run.built = true;
        run.parameters = p;
        return result;
    });
    QTimer::singleShot(0, [&] {
        QPointer<QDialog> dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        run.dialogName = dialog->objectName();
        for (const char *option : {"optCurrentRecordset", "optCurrent", "optCurrentClient"})
            if (QWidget *w = dialog->findChild<QWidget *>(QLatin1String(option)))
                run.enabled[QLatin1String(option)] = w->isEnabled();
        answer(dialog);
        if (dialog && dialog->isVisible())
            dialog->reject();
    });
    run.shown = runner.run(name, active, nullptr);
    return run;
}

}   // namespace

// The parameter dialogs and the sequence every Reports menu command follows.
class TestReportRunner : public QObject
{
    Q_OBJECT

private slots:
    void dialogCaptions_data();
    void dialogCaptions();
    void dialogsSelectAndReturnChoices();
    void dateDialogsDefaultToThisMonth();
    void currentOptionsNeedAnOpenFormOfTheKind();
    void runnerStopsOrBuildsAsChosen();
};

void TestReportRunner::dialogCaptions_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("itemWord");
    QTest::addColumn<QStringList>("captions");   // objectName=text
    QTest::newRow("by client") << "By"
                               << "Client"
                               << QStringList {"frmReportBy=Select Clients To Report",
                                               "fraToReport=Clients To Report",
                                               "optAll=All Clients",
                                               "optCurrentRecordset=Current &recordset",
                                               "optCurrent=Current Client",
                                               "cmdOK=OK",
                                               "cmdCancel=Cancel"};
    QTest::newRow("by volunteer") << "By"
                                  << "Volunteer"
                                  << QStringList {"frmReportBy=Select Volunteers To Report", "fraToReport=Volunteers To Report",
                                                  "optAll=All Volunteers", "optCurrent=Current Volunteer"};
    QTest::newRow("grouped") << "ByGrouped"
                             << "Client"
                             << QStringList {"frmReportByGrouped=Select Clients To Report",
                                             "optCurrentRecordset=Current &Recordset",
                                             "fraGroupBy=Group By",
                                             "optGroupByNone=Do Not &Group",
                                             "optGroupByZipCode=&Zip Code",
                                             "optGroupByCity=C&ity",
                                             "cmdOK=OK",
                                             "cmdCancel=Cancel"};
    QTest::newRow("by date") << "ByDate"
                             << ""
                             << QStringList {"frmReportByDate=Select Report Date",
                                             "fraDatesToReport=Dates To Report",
                                             "lblStartDate=Start Date:",
                                             "lblEndDate=End Date:",
                                             "cmdOK=OK",
                                             "cmdCancel=Cancel"};
    QTest::newRow("by client and date") << "ByClientAndDate"
                                        << ""
                                        << QStringList {"frmReportByClientAndDate=Select Clients and Dates To Report",
                                                        "fraClientsToReport=Clients To Report",
                                                        "optAllClients=&All clients",
                                                        "optCurrentRecordset=Current &recordset",
                                                        "optCurrentClient=Current &client",
                                                        "fraDatesToReport=Dates To Report",
                                                        "cmdOK=OK",
                                                        "cmdCancel=Cancel"};
}

void TestReportRunner::dialogCaptions()
{
    QFETCH(QString, kind);
    QFETCH(QString, itemWord);
    QFETCH(QStringList, captions);
    const std::unique_ptr<QDialog> dialog = makeDialog(kind, itemWord);
    QVERIFY(dialog->isModal());
    for (const QString &pair : captions) {
        const QString name = pair.section(QLatin1Char('='), 0, 0);
        QWidget *w = child(dialog.get(), name);
        QVERIFY2(w, qPrintable(name));
        QCOMPARE(textOf(w), pair.section(QLatin1Char('='), 1));
    }
    for (const char *picker : {"dtpStartDate", "dtpEndDate"})
        QCOMPARE(bool(dialog->findChild<QDateEdit *>(QLatin1String(picker))), kind.contains(QLatin1String("Date")));
}

void TestReportRunner::dialogsSelectAndReturnChoices()
{
    // The option matching the property is selected when the dialog comes up; OK
    // reads the options back; Cancel leaves OKPressed false.
    struct Case
    {
        const char *name;
        QString kind;
        std::function<void(QDialog *)> prepare;
        QStringList checkedAtLoad;
        const char *option;   // clicked before the button
        const char *button;
        bool okPressed;
        int reportType;
        int groupBy;   // -1: not a grouped dialog
    };
    const auto setType = [](int type) { return [type](QDialog *d) { d->setProperty("ReportType", type); }; };
    const QList<Case> cases = {
        {"current record selected, recordset chosen", "By", setType(2), {"optCurrent"}, "optCurrentRecordset", "cmdOK", true, 1, -1},
        {"all chosen", "By", setType(1), {"optCurrentRecordset"}, "optAll", "cmdOK", true, 0, -1},
        {"cancelled", "By", setType(0), {"optAll"}, "optCurrent", "cmdCancel", false, 0, -1},
        {"group by city", "ByGrouped", setType(0), {"optAll", "optGroupByNone"}, "optGroupByCity", "cmdOK", true, 0, 1},
        {"group by zip", "ByGrouped", setType(0), {"optGroupByNone"}, "optGroupByZipCode", "cmdOK", true, 0, 2},
        {"any other group is the zip code",
         "ByGrouped",
         [](QDialog *d) { d->setProperty("GroupBy", 7); },
         {"optGroupByZipCode"},
         "optCurrent",
         "cmdOK",
         true,
         2,
         2},
        {"ungrouped again",
         "ByGrouped",
         [](QDialog *d) { d->setProperty("GroupBy", 1); },
         {"optGroupByCity"},
         "optGroupByNone",
         "cmdOK",
         true,
         0,
         0},
        {"current client", "ByClientAndDate", setType(0), {"optAllClients"}, "optCurrentClient", "cmdOK", true, 2, -1},
        {"other types select the recordset", "ByClientAndDate", setType(5), {"optCurrentRecordset"}, "optAllClients", "cmdOK", true, 0, -1},
        {"not prompted: all clients, frame disabled",
         "ByClientAndDate",
         [](QDialog *d) {
             d->setProperty("ReportType", 2);
             d->setProperty("PromptForReportType", false);
         },
         {"optAllClients"},
         nullptr,
         "cmdOK",
         true,
         0,
         -1},
    };
    for (const Case &c : cases) {
        const std::unique_ptr<QDialog> dialog = makeDialog(c.kind, QStringLiteral("Client"));
        c.prepare(dialog.get());
        dialog->show();
        QVERIFY(!dialog->property("OKPressed").toBool());
        for (const QString &name : c.checkedAtLoad)
            QVERIFY2(checked(dialog.get(), qPrintable(name)), c.name);
        if (c.option)
            click(dialog.get(), c.option);
        click(dialog.get(), c.button);
        QVERIFY2(!dialog->isVisible(), c.name);
        QVERIFY2(dialog->property("OKPressed").toBool() == c.okPressed, c.name);
        if (c.okPressed)
            QVERIFY2(dialog->property("ReportType").toInt() == c.reportType, c.name);
        if (c.groupBy >= 0)
            QVERIFY2(dialog->property("GroupBy").toInt() == c.groupBy, c.name);
    }
    frmReportByClientAndDate unprompted;
    unprompted.setPromptForReportType(false);
    QVERIFY(!unprompted.findChild<QGroupBox *>(QStringLiteral("fraClientsToReport"))->isEnabled());
    QVERIFY(!unprompted.findChild<QWidget *>(QStringLiteral("optCurrentClient"))->isEnabled());
}

void TestReportRunner::dateDialogsDefaultToThisMonth()
{
    const QDate today = QDate::currentDate();
    const QDate first(today.year(), today.month(), 1);
    for (const QString &kind : {QStringLiteral("ByDate"), QStringLiteral("ByClientAndDate")}) {
        const std::unique_ptr<QDialog> dialog = makeDialog(kind, {});
        auto *start = dialog->findChild<QDateEdit *>(QStringLiteral("dtpStartDate"));
        auto *end = dialog->findChild<QDateEdit *>(QStringLiteral("dtpEndDate"));
        QCOMPARE(start->date(), first);
        QCOMPARE(end->date(), today);
        QCOMPARE(start->displayFormat(), QStringLiteral("MM/dd/yyyy"));
        dialog->setProperty("StartDate", QDate(2024, 2, 29));
        dialog->setProperty("EndDate", QDate(2025, 1, 31));
        QCOMPARE(start->date(), QDate(2024, 2, 29));
        QCOMPARE(end->date(), QDate(2025, 1, 31));
        end->setDate(QDate(2025, 12, 31));
        click(dialog.get(), "cmdOK");
        QCOMPARE(dialog->property("StartDate").toDate(), QDate(2024, 2, 29));
        QCOMPARE(dialog->property("EndDate").toDate(), QDate(2025, 12, 31));
    }
}

void TestReportRunner::currentOptionsNeedAnOpenFormOfTheKind()
{
    const ActiveScope clientForm {Kind::Client, QStringLiteral("SELECT * FROM Client"), QStringLiteral("7")};
    const ActiveScope volunteerForm {Kind::Volunteer, QStringLiteral("SELECT * FROM Volunteer"), QStringLiteral("3")};
    struct Case
    {
        Name name;
        const char *dialog;
        QStringList options;
    };
    const QList<Case> cases = {
        {Name::ClientList, "frmReportByGrouped", {"optCurrentRecordset", "optCurrent"}},
        {Name::ClientDetail, "frmReportBy", {"optCurrentRecordset", "optCurrent"}},
        {Name::FoodService, "frmReportByClientAndDate", {"optCurrentRecordset", "optCurrentClient"}},
        {Name::PaymentHistory, "frmReportByClientAndDate", {"optCurrentRecordset", "optCurrentClient"}},
        {Name::VolunteerList, "frmReportByGrouped", {"optCurrentRecordset", "optCurrent"}},
        {Name::VolunteerDetail, "frmReportBy", {"optCurrentRecordset", "optCurrent"}},
    };
    ScriptedPrompts prompts;
    for (const Case &c : cases) {
        const bool clients = Report::find(c.name)->kind == Kind::Client;
        for (const ActiveScope &active : {ActiveScope {}, clientForm, volunteerForm}) {
            const Run run = runReport(c.name, active, [](QDialog *) {});
            QCOMPARE(run.dialogName, QLatin1String(c.dialog));
            const bool expected = active.kind == (clients ? Kind::Client : Kind::Volunteer);
            for (const QString &option : c.options)
                QVERIFY2(run.enabled.value(option) == expected, qPrintable(QStringLiteral("%1 %2").arg(c.dialog, option)));
            QVERIFY(!run.built && !run.shown);   // cancelled
        }
    }
    QVERIFY(prompts.messages().isEmpty());
    QVERIFY(prompts.previews().isEmpty());
}

void TestReportRunner::runnerStopsOrBuildsAsChosen()
{
    const ActiveScope emptyClientList {Kind::Client, QStringLiteral("SELECT * FROM Client WHERE City='Nowhere'"), {}};
    const ActiveScope clientList {Kind::Client, QStringLiteral("SELECT * FROM Client WHERE City='Springfield'"), QStringLiteral("12")};
    const ActiveScope emptyVolunteers {Kind::Volunteer, QStringLiteral("SELECT * FROM Volunteer"), {}};
    const QDate today = QDate::currentDate();
    const QDate first(today.year(), today.month(), 1);
    const auto choose = [](std::initializer_list<const char *> buttons) {
        const QList<const char *> names(buttons);
        return [names](QDialog *d) {
            for (const char *b : names)
                click(d, b);
        };
    };
    Report::Result failed;
    failed.error = QStringLiteral("The statement could not be run.");
    Report::Result badSql = failed;
    badSql.errorTitle = QStringLiteral("SQL Error");
    Report::Result cancelled;
    cancelled.cancelled = true;
    struct Case
    {
        const char *name;
        Name report;
        ActiveScope active;
        std::function<void(QDialog *)> answer;
        Report::Result result;
        Prompt::Message message;   // empty title: none expected
        bool built;
        std::function<bool(const Report::Parameters &)> parameters;
    };
    const QList<Case> cases = {
        {"no client in the list",
         Name::ClientDetail,
         emptyClientList,
         choose({"optCurrent", "cmdOK"}),
         {},
         {"Client Detail Report", "No client has been selected."},
         false,
         {}},
        {"no client for the food services",
         Name::FoodService,
         emptyClientList,
         choose({"optCurrentClient", "cmdOK"}),
         {},
         {"Food Service History By Client Report", "No client has been selected."},
         false,
         {}},
        {"no volunteer, detail",
         Name::VolunteerDetail,
         emptyVolunteers,
         choose({"optCurrent", "cmdOK"}),
         {},
         {"Volunteer Detail Report", "No Volunteer has been selected."},
         false,
         {}},
        {"no volunteer, list",
         Name::VolunteerList,
         emptyVolunteers,
         choose({"optCurrent", "cmdOK"}),
         {},
         {"Volunteer List Report", "No volunteer has been selected."},
         false,
         {}},
        {"cancelled dialog", Name::ClientList, clientList, choose({"optCurrent", "cmdCancel"}), {}, {}, false, {}},
        {"current recordset grouped by city",
         Name::ClientList,
         clientList,
         choose({"optCurrentRecordset", "optGroupByCity", "cmdOK"}),
         {},
         {},
         true,
         [&](const Report::Parameters &p) {
             return p.name == Name::ClientList && p.reportType == 1 && p.groupBy == 1 && p.scope.sql == clientList.sql
                 && p.scope.key == QLatin1String("12");
         }},
        {"all clients ignore no form",
         Name::ClientDetail,
         {},
         choose({"cmdOK"}),
         {},
         {},
         true,
         [](const Report::Parameters &p) { return p.reportType == 0 && p.scope.kind == Kind::None; }},
        {"statistics over this month",
         Name::Demographics,
         clientList,
         choose({"cmdOK"}),
         {},
         {},
         true,
         [&](const Report::Parameters &p) {
             return p.startDate == first && p.endDate == first.addMonths(1).addDays(-1) && p.scope.sql.isEmpty();
         }},
        {"start after end",
         Name::GroceryLog,
         {},
         [](QDialog *d) {
             d->findChild<QDateEdit *>(QStringLiteral("dtpStartDate"))->setDate(QDate(2025, 5, 2));
             d->findChild<QDateEdit *>(QStringLiteral("dtpEndDate"))->setDate(QDate(2025, 5, 1));
             click(d, "cmdOK");
         },
         {},
         {"TendMark - Grocery Log", "The start date is after the end date.", Prompt::Icon::Exclamation},
         false,
         {}},
        {"build fails",
         Name::VolunteerDetail,
         {},
         choose({"cmdOK"}),
         failed,
         {"TendMark - Volunteer Detail Report", "The statement could not be run.", Prompt::Icon::Exclamation},
         true,
         {}},
        {"hand-typed statement refused",
         Name::ClientList,
         clientList,
         choose({"optCurrentRecordset", "cmdOK"}),
         badSql,
         {"SQL Error", "The statement could not be run.", Prompt::Icon::Exclamation},
         true,
         {}},
        {"build cancelled", Name::GeographicSummary, {}, choose({"cmdOK"}), cancelled, {}, true, {}},
    };
    for (const Case &c : cases) {
        ScriptedPrompts prompts;
        const Run run = runReport(c.report, c.active, c.answer, c.result);
        QVERIFY2(run.built == c.built, c.name);
        if (c.message.title.isEmpty()) {
            QVERIFY2(prompts.messages().isEmpty(), qPrintable(prompts.last().text));
        } else {
            QCOMPARE(prompts.messages().size(), 1);
            QCOMPARE(prompts.last(), c.message);
        }
        if (c.parameters)
            QVERIFY2(c.parameters(run.parameters), c.name);
        // A preview comes only of a report that was built.
        const bool preview = c.built && c.result.error.isEmpty() && !c.result.cancelled;
        QCOMPARE(run.shown, preview);
        QCOMPARE(prompts.previews().size(), preview ? 1 : 0);
        if (preview) {
            QCOMPARE(prompts.previews().first().caption, QStringLiteral("Built caption"));
            QCOMPARE(prompts.previews().first().pdfName, QStringLiteral("Built caption.pdf"));
        }
    }
}

QTEST_MAIN(TestReportRunner)
#include "tst_reportrunner.moc"
