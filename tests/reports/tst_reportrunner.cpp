#include "FormTesting.h"
#include "PdfText.h"
#include "ReportRunner.h"
#include "ScriptedPrompts.h"
#include "basDatabase.h"
#include "frmReportByClientAndDate.h"
#include "frmReportByDate.h"
#include "frmReportByGrouped.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDateEdit>
#include <QGroupBox>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <memory>

using RecordScope::ActiveScope;
using RecordScope::Kind;
using Report::Name;

namespace {

QAbstractButton *child(QWidget *dialog, const char *name)
{
    return dialog->findChild<QAbstractButton *>(QLatin1String(name));
}

void click(QWidget *dialog, const char *name)
{
    QAbstractButton *b = child(dialog, name);
    QVERIFY2(b && b->isEnabled(), name);
    b->click();
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

// Answers the modal dialog that comes up next as soon as it is up; closes it if the answer left it open.
void whenDialogShows(const std::function<void(QDialog *)> &answer)
{
    QTimer::singleShot(0, [answer] {
        QPointer<QDialog> dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        answer(dialog);
        if (dialog && dialog->isVisible())
            dialog->reject();
    });
}

// What the Reports menu showed: the dialog, and whether its "current" options were offered.
struct Seen
{
    QString dialog;
    QString caption;
    bool currentOffered = false;
};

// Triggers a menu entry and answers its dialog by clicking the buttons named.
Seen runMenu(frmMain &main, const char *entry, const QStringList &clicks)
{
    Seen seen;
    whenDialogShows([&](QDialog *dialog) {
        seen.dialog = dialog->objectName();
        seen.caption = dialog->windowTitle();
        for (const char *option : {"optCurrent", "optCurrentClient"})
            if (auto *w = dialog->findChild<QWidget *>(QLatin1String(option)))
                seen.currentOffered = w->isEnabled();
        for (const QString &name : clicks)
            if (auto *b = dialog->findChild<QAbstractButton *>(name))
                b->click();
    });
    menu(main, entry)->trigger();
    return seen;
}

}   // namespace

// The parameter dialogs, the sequence every Reports menu command follows, and the
// Reports menu itself: each entry's dialog, the open window it reports on, the
// refusal when there is no current record, and the preview.
class TestReportRunner : public QObject
{
    Q_OBJECT

private slots:
    // The dialogs name the kind of record they report on; the date dialogs start on this month so far and
    // take and give their dates as properties.
    void dialogsNameTheirItemsAndDates()
    {
        for (const QString &kind : {QStringLiteral("By"), QStringLiteral("ByGrouped")})
            for (const QString &word : {QStringLiteral("Client"), QStringLiteral("Volunteer")}) {
                const std::unique_ptr<QDialog> dialog = makeDialog(kind, word);
                QVERIFY(dialog->isModal());
                QCOMPARE((QStringList {dialog->windowTitle(), dialog->findChild<QGroupBox *>("fraToReport")->title(),
                                       child(dialog.get(), "optAll")->text(), child(dialog.get(), "optCurrent")->text()}),
                         QStringList({"Select %1s To Report", "%1s To Report", "All %1s", "Current %1"}).replaceInStrings("%1", word));
            }
        const QDate today = QDate::currentDate();
        const QDate first(today.year(), today.month(), 1);
        for (const QString &kind : {QStringLiteral("ByDate"), QStringLiteral("ByClientAndDate")}) {
            const std::unique_ptr<QDialog> dialog = makeDialog(kind, {});
            auto *start = dialog->findChild<QDateEdit *>("dtpStartDate");
            auto *end = dialog->findChild<QDateEdit *>("dtpEndDate");
            QCOMPARE((QList<QDate> {start->date(), end->date()}), (QList<QDate> {first, today}));
            QCOMPARE(start->displayFormat(), "MM/dd/yyyy");
            dialog->setProperty("StartDate", QDate(2024, 2, 29));
            dialog->setProperty("EndDate", QDate(2025, 1, 31));
            QCOMPARE((QList<QDate> {start->date(), end->date()}), (QList<QDate> {QDate(2024, 2, 29), QDate(2025, 1, 31)}));
            end->setDate(QDate(2025, 12, 31));
            click(dialog.get(), "cmdOK");
            QCOMPARE((QList<QDate> {dialog->property("StartDate").toDate(), dialog->property("EndDate").toDate()}),
                     (QList<QDate> {QDate(2024, 2, 29), QDate(2025, 12, 31)}));
        }
    }

    void dialogsSelectAndReturnChoices()
    {
        // The option matching the property is selected when the dialog comes up; OK
        // reads the options back; Cancel leaves OKPressed false. A property of -1 is left unset.
        // dialog, type and group given, options checked when it comes up, buttons clicked (blank-separated), OK pressed,
        // type and group read back
        const std::tuple<const char *, int, int, const char *, const char *, bool, int, int> cases[] = {
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
        for (const auto &[kind, typeIn, groupIn, checkedAtLoad, clicks, okPressed, typeOut, groupOut] : cases) {
            const QString tag = QStringLiteral("%1 %2").arg(QLatin1String(kind), QLatin1String(clicks));
            const std::unique_ptr<QDialog> dialog = makeDialog(QLatin1String(kind), "Client");
            if (typeIn >= 0)
                dialog->setProperty("ReportType", typeIn);
            if (groupIn >= 0)
                dialog->setProperty("GroupBy", groupIn);
            dialog->show();
            QVERIFY(!dialog->property("OKPressed").toBool());
            for (const QString &name : QString::fromLatin1(checkedAtLoad).split(QLatin1Char(' ')))
                QVERIFY2(child(dialog.get(), qPrintable(name))->isChecked(), qPrintable(tag));
            for (const QString &name : QString::fromLatin1(clicks).split(QLatin1Char(' ')))
                click(dialog.get(), qPrintable(name));
            QVERIFY2(!dialog->isVisible(), qPrintable(tag));
            QVERIFY2(dialog->property("OKPressed").toBool() == okPressed, qPrintable(tag));
            if (okPressed)
                QVERIFY2(dialog->property("ReportType").toInt() == typeOut, qPrintable(tag));
            if (groupOut >= 0)
                QVERIFY2(dialog->property("GroupBy").toInt() == groupOut, qPrintable(tag));
        }
        // Not prompted for the clients: the frame is off and OK reports all clients.
        frmReportByClientAndDate unprompted;
        unprompted.setProperty("ReportType", 2);
        unprompted.setPromptForReportType(false);
        unprompted.show();
        QVERIFY(child(&unprompted, "optAllClients")->isChecked());
        QVERIFY(!unprompted.findChild<QGroupBox *>("fraClientsToReport")->isEnabled());
        QVERIFY(!unprompted.findChild<QWidget *>("optCurrentClient")->isEnabled());
        click(&unprompted, "cmdOK");
        QCOMPARE(unprompted.property("ReportType").toInt(), 0);
    }

    void runnerStopsOrBuildsAsChosen()
    {
        const ActiveScope clientList {Kind::Client, QStringLiteral("SELECT * FROM Client WHERE City='Springfield'"), QStringLiteral("12")};
        const QDate today = QDate::currentDate();
        const QDate first(today.year(), today.month(), 1);
        const auto choose = [](const char *buttons) {   // blank-separated
            return [names = QString::fromLatin1(buttons).split(QLatin1Char(' '))](QDialog *d) {
                for (const QString &b : names)
                    click(d, qPrintable(b));
            };
        };
        Report::Result failed;
        failed.error = QStringLiteral("The statement could not be run.");
        Report::Result badSql = failed;
        badSql.errorTitle = QStringLiteral("SQL Error");
        Report::Result cancelled;
        cancelled.cancelled = true;
        // Runs one report, its dialog answered by `answer` as soon as it is up and its builder answering with `result`;
        // message: what the user is told (empty title: nothing); built: whether the builder was reached, with the
        // parameters it was given.
        const auto expect = [](const char *name, Name report, const ActiveScope &active, const std::function<void(QDialog *)> &answer,
                               Report::Result result, const Prompt::Message &message, bool built,
                               const std::function<bool(const Report::Parameters &)> &parameters = {}) {
            ScriptedPrompts prompts;
            // A preview comes only of a report that was built.
            const bool preview = built && result.error.isEmpty() && !result.cancelled;
            result.ok = preview;
            result.document.caption = QStringLiteral("Built caption");
            std::optional<Report::Parameters> asked;
            ReportRunner runner([&](const Report::Parameters &p, const Report::Progress &) {
                asked = p;
                return result;
            });
            whenDialogShows(answer);
            const bool shown = runner.run(report, active, nullptr);
            QVERIFY2(asked.has_value() == built, name);
            QCOMPARE(prompts.messages(), message.title.isEmpty() ? QList<Prompt::Message> {} : QList<Prompt::Message> {message});
            if (parameters)
                QVERIFY2(parameters(*asked), name);
            QCOMPARE(shown, preview);
            QCOMPARE(prompts.previews().size(), preview ? 1 : 0);
            if (preview)
                QCOMPARE(prompts.previews().first().caption + '|' + prompts.previews().first().pdfName, "Built caption|Built caption.pdf");
        };
        expect("current recordset grouped by city", Name::ClientList, clientList, choose("optCurrentRecordset optGroupByCity cmdOK"), {},
               {}, true, [&](const Report::Parameters &p) {
                   return p.name == Name::ClientList && p.reportType == 1 && p.groupBy == 1 && p.scope.sql == clientList.sql
                       && p.scope.key == QLatin1String("12");
               });
        expect("all clients ignore no form", Name::ClientDetail, {}, choose("cmdOK"), {}, {}, true,
               [](const Report::Parameters &p) { return p.reportType == 0 && p.scope.kind == Kind::None; });
        expect("statistics over this month", Name::Demographics, clientList, choose("cmdOK"), {}, {}, true,
               [&](const Report::Parameters &p) {
                   return p.startDate == first && p.endDate == first.addMonths(1).addDays(-1) && p.scope.sql.isEmpty();
               });
        expect(
            "start after end", Name::GroceryLog, {},
            [](QDialog *d) {
                d->findChild<QDateEdit *>("dtpStartDate")->setDate(QDate(2025, 5, 2));
                d->findChild<QDateEdit *>("dtpEndDate")->setDate(QDate(2025, 5, 1));
                click(d, "cmdOK");
            },
            {}, {"TendMark - Grocery Log", "The start date is after the end date.", Prompt::Icon::Exclamation}, false);
        expect("build fails", Name::VolunteerDetail, {}, choose("cmdOK"), failed,
               {"TendMark - Volunteer Detail Report", "The statement could not be run.", Prompt::Icon::Exclamation}, true);
        expect("hand-typed statement refused", Name::ClientList, clientList, choose("optCurrentRecordset cmdOK"), badSql,
               {"SQL Error", "The statement could not be run.", Prompt::Icon::Exclamation}, true);
        expect("build cancelled", Name::GeographicSummary, {}, choose("cmdOK"), cancelled, {}, true);
    }

    void entriesAskAndRefuseWithoutARecord()
    {
        // The "current" option is offered exactly when a refusal is expected: chosen with no record in the window, it is refused.
        // entry, window opened first, dialog, its caption, the title of the refusal (null: not offered, cancelled), its text
        const char *noClient = "No client has been selected.";
        const char *clients = "Select Clients To Report", *volunteers = "Select Volunteers To Report", *dates = "Select Report Date";
        const char *clientsAndDates = "Select Clients and Dates To Report";
        const char *const cases[][6] = {
            {"mnuReportsClientList", nullptr, "frmReportByGrouped", clients, nullptr, nullptr},
            {"mnuReportsClientDetail", "mnuDataClientTable", "frmReportBy", clients, "Client Detail Report", noClient},
            {"mnuReportsClientList", "mnuDataClientSummary", "frmReportByGrouped", clients, "Client List Report", noClient},
            {"mnuReportsFoodServiceByClient", "mnuDataClientDetails", "frmReportByClientAndDate", clientsAndDates,
             "Food Service History By Client Report", noClient},
            {"mnuReportsPaymentHistoryByClient", nullptr, "frmReportByClientAndDate", clientsAndDates, nullptr, nullptr},
            {"mnuReportsVolunteerDetail", "mnuDataVolunteers", "frmReportBy", volunteers, "Volunteer Detail Report",
             "No Volunteer has been selected."},
            {"mnuReportsVolunteerList", "mnuDataVolunteers", "frmReportByGrouped", volunteers, "Volunteer List Report",
             "No volunteer has been selected."},
            // A client window does not make a volunteer current, nor the other way round.
            {"mnuReportsVolunteerDetail", "mnuDataClientTable", "frmReportBy", volunteers, nullptr, nullptr},
            {"mnuReportsClientDetail", "mnuDataVolunteers", "frmReportBy", clients, nullptr, nullptr},
            {"mnuReportsGroceryLog", nullptr, "frmReportByDate", dates, nullptr, nullptr},
            {"mnuReportsGeographicSummary", nullptr, "frmReportByDate", dates, nullptr, nullptr},
            {"mnuReportsDemographics", "mnuDataClientTable", "frmReportByDate", dates, nullptr, nullptr},
            {"mnuReportsAgencyReport", "mnuDataClientTable", "frmAgencyReport", "Agency Report", nullptr, nullptr},
            {"mnuFilePrintLabels", nullptr, "frmLabelPrint", "Print Labels", nullptr, nullptr},
        };
        for (const auto &[entry, window, dialog, caption, refusal, text] : cases) {
            ClientWorld world;
            if (window)
                menu(world.main, window)->trigger();
            const QString current = QLatin1String(qstrcmp(dialog, "frmReportByClientAndDate") ? "optCurrent" : "optCurrentClient");
            const Seen seen = runMenu(world.main, entry, refusal ? QStringList {current, "cmdOK"} : QStringList {"cmdCancel"});
            QVERIFY2(seen.dialog == QLatin1String(dialog), entry);
            QCOMPARE(seen.caption, QLatin1String(caption));
            QVERIFY2(seen.currentOffered == (refusal != nullptr), entry);
            QCOMPARE(world.prompts.messages(), (refusal ? QList<Prompt::Message> {{refusal, text}} : QList<Prompt::Message> {}));
            QVERIFY(world.prompts.previews().isEmpty());
        }
    }

    void entriesReachThePreview()
    {
        // entry, window opened first, buttons clicked, preview's caption, what the PDF saved from it prints ('|' between)
        const char *const cases[][5] = {
            {"mnuReportsClientList", "mnuDataClientTable", "optCurrentRecordset optGroupByCity cmdOK", "TendMark - Client List",
             "Client List|Grouped By City|Testville|O'Brien, Mary Q|Page 1 of 1"},
            {"mnuReportsClientDetail", "mnuDataClientTable", "optCurrent cmdOK", "TendMark - Client Detail Report", "Client Detail Report"},
            {"mnuReportsVolunteerList", nullptr, "optGroupByZipCode cmdOK", "TendMark - VolunteerList", "Grouped By Zip Code"},
            {"mnuReportsFoodServiceByClient", nullptr, "cmdOK", "TendMark - Food Service By Client", "For Dates: "},
            {"mnuReportsDemographics", nullptr, "cmdOK", "TendMark - Demographics Report", "Ethnic Breakdown|For Dates: "},
        };
        QTemporaryDir dir;
        for (const auto &[entry, window, clicks, caption, texts] : cases) {
            ClientWorld world;
            const qint64 id = ClientWorld::addClient(QStringLiteral("O'Brien"), QStringLiteral("Mary"), "Q");
            if (window) {
                menu(world.main, window)->trigger();
                world.main.activeChild()->showRecord(QString::number(id));   // the client chosen in the list
            }
            runMenu(world.main, entry, QString::fromLatin1(clicks).split(QLatin1Char(' ')));
            QVERIFY2(world.prompts.messages().isEmpty(), qPrintable(world.prompts.last().text));
            QCOMPARE(world.prompts.previews().size(), 1);
            const Prompt::PreviewRequest preview = world.prompts.previews().first();
            QCOMPARE(preview.caption, QLatin1String(caption));
            const QString pdf = dir.filePath(QStringLiteral("%1.pdf").arg(QLatin1String(entry)));
            QVERIFY(preview.savePdf(pdf));
            const QString printed = pdfText(pdf);
            for (const QString &expected : QString::fromUtf8(texts).split(QLatin1Char('|')))
                QVERIFY2(printed.contains(expected), qPrintable(expected + QLatin1String(" in ") + printed));
        }
    }

    // The dialog shows the organisation's brackets; this month's visit is counted, and the
    // preview saves the figures as CSV beside the PDF.
    void agencyReportShowsTheBracketsAndSavesCsv()
    {
        ClientWorld world;
        basDatabase::Execute(QStringLiteral("UPDATE Options SET AgeBrackets = '0-17,18-64,65+'"));
        const qint64 id = ClientWorld::addClient(QStringLiteral("O'Brien"), QStringLiteral("Mary"), QStringLiteral("Q"),
                                                 {{QStringLiteral("BirthDate"), QStringLiteral("1950-01-01")}});
        TestDatabase::insert(QStringLiteral("FoodService"),
                             {{"ClientID", id}, {"FoodServiceDate", QDate::currentDate().toString(Qt::ISODate)}, {"NumberOfBags", 3}});
        QString brackets;
        QTimer::singleShot(0, [&] {
            if (auto *dialog = QApplication::activeModalWidget())
                if (auto *label = dialog->findChild<QLabel *>("lblAgeBrackets"))
                    brackets = label->text();
        });
        runMenu(world.main, "mnuReportsAgencyReport", {"cmdOK"});
        QCOMPARE(brackets, "0-17,18-64,65+");
        QVERIFY2(world.prompts.messages().isEmpty(), qPrintable(world.prompts.last().text));
        QCOMPARE(world.prompts.previews().size(), 1);
        const Prompt::PreviewRequest preview = world.prompts.previews().first();
        QCOMPARE(preview.caption, "TendMark - Agency Report");
        QTemporaryDir dir;
        const QString csv = dir.filePath(QStringLiteral("agency.csv"));
        QVERIFY(preview.saveCsv && preview.saveCsv(csv));
        QFile file(csv);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        for (const char *row : {"Section,Item,Value\r\n", "Households,\"Households, unduplicated\",1\r\n",
                                "\"Individuals, Unduplicated\",Ages 65+,1\r\n", "Bags Given,Total bags,3\r\n"})
            QVERIFY2(text.contains(QLatin1String(row)), row);
    }
};

QTEST_MAIN(TestReportRunner)
#include "tst_reportrunner.moc"
