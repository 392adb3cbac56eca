#include "FormTesting.h"
#include "basDatabase.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

namespace {

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
    QTimer::singleShot(0, [&] {
        QPointer<QDialog> dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        seen.dialog = dialog->objectName();
        seen.caption = dialog->windowTitle();
        for (const char *option : {"optCurrent", "optCurrentClient"})
            if (auto *w = dialog->findChild<QWidget *>(QLatin1String(option)))
                seen.currentOffered = w->isEnabled();
        for (const QString &name : clicks)
            if (auto *b = dialog ? dialog->findChild<QAbstractButton *>(name) : nullptr)
                b->click();
        if (dialog && dialog->isVisible())
            dialog->reject();
    });
    menu(main, entry)->trigger();
    return seen;
}

}   // namespace

// The Reports menu: each entry's dialog, the open window it reports on, and the
// refusal when there is no current record.
class TestReportMenu : public QObject
{
    Q_OBJECT

private slots:
    void entriesAskAndRefuseWithoutARecord();
    void entriesReachThePreview();
    void agencyReportShowsTheBracketsAndSavesCsv();
};

void TestReportMenu::entriesAskAndRefuseWithoutARecord()
{
    // Each "current" option offered and chosen with no record in the window is refused.
    struct Case
    {
        const char *entry;
        const char *window;   // opened first, or null
        const char *dialog;
        const char *caption;
        bool currentOffered;
        const char *refusal;   // the title of the refusal, or null: cancelled
        const char *text;
    };
    const char *noClient = "No client has been selected.";
    const Case cases[] = {
        {"mnuReportsClientList", nullptr, "frmReportByGrouped", "Select Clients To Report", false, nullptr, nullptr},
        {"mnuReportsClientDetail", "mnuDataClientTable", "frmReportBy", "Select Clients To Report", true, "Client Detail Report", noClient},
        {"mnuReportsClientList", "mnuDataClientSummary", "frmReportByGrouped", "Select Clients To Report", true, "Client List Report",
         noClient},
        {"mnuReportsFoodServiceByClient", "mnuDataClientDetails", "frmReportByClientAndDate", "Select Clients and Dates To Report", true,
         "Food Service History By Client Report", noClient},
        {"mnuReportsPaymentHistoryByClient", nullptr, "frmReportByClientAndDate", "Select Clients and Dates To Report", false, nullptr,
         nullptr},
        {"mnuReportsVolunteerDetail", "mnuDataVolunteers", "frmReportBy", "Select Volunteers To Report", true, "Volunteer Detail Report",
         "No Volunteer has been selected."},
        {"mnuReportsVolunteerList", "mnuDataVolunteers", "frmReportByGrouped", "Select Volunteers To Report", true, "Volunteer List Report",
         "No volunteer has been selected."},
        // A client window does not make a volunteer current, nor the other way round.
        {"mnuReportsVolunteerDetail", "mnuDataClientTable", "frmReportBy", "Select Volunteers To Report", false, nullptr, nullptr},
        {"mnuReportsClientDetail", "mnuDataVolunteers", "frmReportBy", "Select Clients To Report", false, nullptr, nullptr},
        {"mnuReportsGroceryLog", nullptr, "frmReportByDate", "Select Report Date", false, nullptr, nullptr},
        {"mnuReportsGeographicSummary", nullptr, "frmReportByDate", "Select Report Date", false, nullptr, nullptr},
        {"mnuReportsDemographics", "mnuDataClientTable", "frmReportByDate", "Select Report Date", false, nullptr, nullptr},
        {"mnuReportsAgencyReport", "mnuDataClientTable", "frmAgencyReport", "Agency Report", false, nullptr, nullptr},
    };
    for (const Case &c : cases) {
        ClientWorld world;
        if (c.window)
            menu(world.main, c.window)->trigger();
        const QString current = QLatin1String(qstrcmp(c.dialog, "frmReportByClientAndDate") ? "optCurrent" : "optCurrentClient");
        const Seen seen = runMenu(world.main, c.entry, c.refusal ? QStringList {current, "cmdOK"} : QStringList {"cmdCancel"});
        QVERIFY2(seen.dialog == QLatin1String(c.dialog), c.entry);
        QCOMPARE(seen.caption, QLatin1String(c.caption));
        QVERIFY2(seen.currentOffered == c.currentOffered, c.entry);
        if (!c.refusal) {
            QVERIFY2(world.prompts.messages().isEmpty(), qPrintable(world.prompts.last().text));
        } else {
            QCOMPARE(world.prompts.messages().size(), 1);
            QCOMPARE(world.prompts.last(), (Prompt::Message {c.refusal, c.text}));
        }
        QVERIFY(world.prompts.previews().isEmpty());
    }
}

void TestReportMenu::entriesReachThePreview()
{
    struct Case
    {
        const char *entry;
        const char *window;
        QStringList clicks;
        const char *caption;
        QStringList printed;   // in the PDF saved from the preview
    };
    const QList<Case> cases = {
        {"mnuReportsClientList",
         "mnuDataClientTable",
         {"optCurrentRecordset", "optGroupByCity", "cmdOK"},
         "TendMark - Client List",
         {"Client List", "Grouped By City", "Testville", "O'Brien, Mary Q", "Page 1 of 1"}},
        {"mnuReportsClientDetail",
         "mnuDataClientTable",
         {"optCurrent", "cmdOK"},
         "TendMark - Client Detail Report",
         {"Client Detail Report"}},
        {"mnuReportsVolunteerList", nullptr, {"optGroupByZipCode", "cmdOK"}, "TendMark - VolunteerList", {"Grouped By Zip Code"}},
        {"mnuReportsFoodServiceByClient", nullptr, {"cmdOK"}, "TendMark - Food Service By Client", {"For Dates: "}},
        {"mnuReportsDemographics", nullptr, {"cmdOK"}, "TendMark - Demographics Report", {"Ethnic Breakdown", "For Dates: "}},
    };
    QTemporaryDir dir;
    for (const Case &c : cases) {
        ClientWorld world;
        const qint64 id = ClientWorld::addClient(QStringLiteral("O'Brien"), QStringLiteral("Mary"), QStringLiteral("Q"));
        if (c.window) {
            menu(world.main, c.window)->trigger();
            world.main.activeChild()->showRecord(QString::number(id));   // the client chosen in the list
        }
        runMenu(world.main, c.entry, c.clicks);
        QVERIFY2(world.prompts.messages().isEmpty(), qPrintable(world.prompts.last().text));
        QCOMPARE(world.prompts.previews().size(), 1);
        const Prompt::PreviewRequest preview = world.prompts.previews().first();
        QCOMPARE(preview.caption, QLatin1String(c.caption));
        const QString pdf = dir.filePath(QStringLiteral("%1.pdf").arg(QLatin1String(c.entry)));
        QVERIFY(preview.savePdf(pdf));
        QProcess text;
        text.start(QStringLiteral("pdftotext"), {QStringLiteral("-raw"), pdf, QStringLiteral("-")});
        QVERIFY(text.waitForFinished(30000));
        const QString printed = QString::fromUtf8(text.readAllStandardOutput());
        for (const QString &expected : c.printed)
            QVERIFY2(printed.contains(expected), qPrintable(expected + QLatin1String(" in ") + printed));
    }
}

// The dialog shows the organisation's brackets; this month's visit is counted, and the
// preview saves the figures as CSV beside the PDF.
void TestReportMenu::agencyReportShowsTheBracketsAndSavesCsv()
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
            if (auto *label = dialog->findChild<QLabel *>(QStringLiteral("lblAgeBrackets")))
                brackets = label->text();
    });
    runMenu(world.main, "mnuReportsAgencyReport", {"cmdOK"});
    QCOMPARE(brackets, QStringLiteral("0-17,18-64,65+"));
    QVERIFY2(world.prompts.messages().isEmpty(), qPrintable(world.prompts.last().text));
    QCOMPARE(world.prompts.previews().size(), 1);
    const Prompt::PreviewRequest preview = world.prompts.previews().first();
    QCOMPARE(preview.caption, QStringLiteral("TendMark - Agency Report"));
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

QTEST_MAIN(TestReportMenu)
#include "tst_reportmenu.moc"
