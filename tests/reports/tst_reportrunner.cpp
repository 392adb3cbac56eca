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

// What one run of a report did: what it built, whether it showed a preview.
struct Run
{
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
    // reads the options back; Cancel leaves OKPressed false. A property of -1 is left unset.
    struct Case
    {
        const char *kind;
        int typeIn, groupIn;
        const char *checkedAtLoad;   // blank-separated
        const char *clicks;   // blank-separated
        bool okPressed;
        int typeOut, groupOut;
    };
    const Case cases[] = {
        {"By", 2, -1, "optCurrent", "optCurrentRecordset cmdOK", true, 1, -1},
        {"By", 1, -1, "optCurrentRecordset", "optAll cmdOK", true, 0, -1},
        {"By", 0, -1, "optAll", "optCurrent cmdCancel", false, 0, -1},
        {"ByGrouped", 0, -1, "optAll optGroupByNone", "optGroupByCity cmdOK", true, 0, 1},
        {"ByGrouped", 0, -1, "optGroupByNone", "optGroupByZipCode cmdOK", true, 0, 2},
        {"ByGrouped", -1, 7, "optGroupByZipCode", "optCurrent cmdOK", true, 2, 2},   // any other group is the zip code
        {"ByGrouped", -1, 1, "optGroupByCity", "optGroupByNone cmdOK", true, 0, 0},
        {"ByClientAndDate", 0, -1, "optAllClients", "optCurrentClient cmdOK", true, 2, -1},
        {"ByClientAndDate", 5, -1, "optCurrentRecordset", "optAllClients cmdOK", true, 0, -1},   // other types: the recordset
    };
    for (const Case &c : cases) {
        const QString tag = QStringLiteral("%1 %2").arg(QLatin1String(c.kind), QLatin1String(c.clicks));
        const std::unique_ptr<QDialog> dialog = makeDialog(QLatin1String(c.kind), QStringLiteral("Client"));
        if (c.typeIn >= 0)
            dialog->setProperty("ReportType", c.typeIn);
        if (c.groupIn >= 0)
            dialog->setProperty("GroupBy", c.groupIn);
        dialog->show();
        QVERIFY(!dialog->property("OKPressed").toBool());
        for (const QString &name : QString::fromLatin1(c.checkedAtLoad).split(QLatin1Char(' ')))
            QVERIFY2(checked(dialog.get(), qPrintable(name)), qPrintable(tag));
        for (const QString &name : QString::fromLatin1(c.clicks).split(QLatin1Char(' ')))
            click(dialog.get(), qPrintable(name));
        QVERIFY2(!dialog->isVisible(), qPrintable(tag));
        QVERIFY2(dialog->property("OKPressed").toBool() == c.okPressed, qPrintable(tag));
        if (c.okPressed)
            QVERIFY2(dialog->property("ReportType").toInt() == c.typeOut, qPrintable(tag));
        if (c.groupOut >= 0)
            QVERIFY2(dialog->property("GroupBy").toInt() == c.groupOut, qPrintable(tag));
    }
    // Not prompted for the clients: the frame is off and OK reports all clients.
    frmReportByClientAndDate unprompted;
    unprompted.setProperty("ReportType", 2);
    unprompted.setPromptForReportType(false);
    unprompted.show();
    QVERIFY(checked(&unprompted, "optAllClients"));
    QVERIFY(!unprompted.findChild<QGroupBox *>(QStringLiteral("fraClientsToReport"))->isEnabled());
    QVERIFY(!unprompted.findChild<QWidget *>(QStringLiteral("optCurrentClient"))->isEnabled());
    click(&unprompted, "cmdOK");
    QCOMPARE(unprompted.property("ReportType").toInt(), 0);
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

void TestReportRunner::runnerStopsOrBuildsAsChosen()
{
    const ActiveScope clientList {Kind::Client, QStringLiteral("SELECT * FROM Client WHERE City='Springfield'"), QStringLiteral("12")};
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
    // A window of the other kind makes no record current (the main window hands over only its own kind, too).
    bool offered = true;
    runReport(Name::ClientDetail, {Kind::Volunteer, QStringLiteral("SELECT * FROM Volunteer"), QStringLiteral("3")},
              [&](QDialog *d) { offered = d->findChild<QWidget *>(QStringLiteral("optCurrent"))->isEnabled(); });
    QVERIFY(!offered);
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
