#include "ReportRunner.h"

#include "AgeBrackets.h"
#include "CsvWriter.h"
#include "MdiChild.h"
#include "Prompt.h"
#include "ReportRenderer.h"
#include "frmAgencyReport.h"
#include "frmReportByClientAndDate.h"
#include "frmReportByDate.h"
#include "frmReportByGrouped.h"

#include <QCoreApplication>
#include <QApplication>
#include <QObject>
#include <QProgressDialog>

#include <memory>

namespace {

// A progress window that appears only when the work takes a moment; Cancel stops the work.
class ProgressWindow
{
public:
    ProgressWindow(const QString &caption, const QString &label, QWidget *parent) : m_dialog(label, QObject::tr("Cancel"), 0, 0, parent)
    {
        m_dialog.setWindowTitle(caption);
        m_dialog.setWindowModality(Qt::ApplicationModal);
        m_dialog.setMinimumDuration(500);
        m_dialog.setAutoClose(false);
        m_dialog.setAutoReset(false);
    }

    Report::Progress callback()
    {
        return [this](qint64 done, qint64 total) {
            const int scale = total > 0 ? 1000 : 0;
            m_dialog.setMaximum(scale);
            m_dialog.setValue(total > 0 ? int(done * scale / total) : 0);
            QCoreApplication::processEvents();
            return !m_dialog.wasCanceled();
        };
    }

    bool cancelled() const { return m_dialog.wasCanceled(); }

private:
    QProgressDialog m_dialog;
};

QString pdfName(const QString &caption)
{
    QString name = caption;
    name.remove(QStringLiteral("TendMark - "));
    return name + QStringLiteral(".pdf");
}

}   // namespace

ReportRunner::ReportRunner(Builder builder) : m_build(builder ? std::move(builder) : Builder(&Report::build)) { }

bool ReportRunner::askParameters(const Report::CatalogueEntry &entry, bool formFound, QWidget *parent, Report::Parameters *p)
{
    const QString itemWord = QString::fromLatin1(entry.itemWord);
    switch (entry.dialog) {
    case Report::Dialog::By: {
        frmReportBy dialog(parent);
        dialog.setTableName(itemWord);
        dialog.setReportType(0);
        dialog.setCurrentEnabled(formFound);
        dialog.exec();
        p->reportType = dialog.ReportType();
        return dialog.OKPressed();
    }
    case Report::Dialog::ByGrouped: {
        frmReportByGrouped dialog(parent);
        dialog.setTableName(itemWord);
        dialog.setReportType(0);
        dialog.setGroupBy(0);
        dialog.setCurrentEnabled(formFound);
        dialog.exec();
        p->reportType = dialog.ReportType();
        p->groupBy = dialog.GroupBy();
        return dialog.OKPressed();
    }
    case Report::Dialog::Agency: {
        const QDate today = QDate::currentDate();
        const QDate first(today.year(), today.month(), 1);
        frmAgencyReport dialog(parent);
        dialog.setStartDate(first);
        dialog.setEndDate(first.addMonths(1).addDays(-1));
        dialog.setAgeBrackets(AgeBrackets::text(AgeBrackets::stored()));
        dialog.exec();
        p->startDate = dialog.StartDate();
        p->endDate = dialog.EndDate();
        return dialog.OKPressed();
    }
    case Report::Dialog::ByDate: {
        // The statistical reports default to the current month, first day to last.
        const QDate today = QDate::currentDate();
        const QDate first(today.year(), today.month(), 1);
        frmReportByDate dialog(parent);
        dialog.setStartDate(first);
        dialog.setEndDate(first.addMonths(1).addDays(-1));
        dialog.exec();
        p->startDate = dialog.StartDate();
        p->endDate = dialog.EndDate();
        return dialog.OKPressed();
    }
    case Report::Dialog::ByClientAndDate: {
        frmReportByClientAndDate dialog(parent);
        dialog.setReportType(0);
        dialog.setPromptForReportType(formFound);
        dialog.exec();
        p->reportType = dialog.ReportType();
        p->startDate = dialog.StartDate();
        p->endDate = dialog.EndDate();
        return dialog.OKPressed();
    }
    }
    return false;
}

bool ReportRunner::run(Report::Name name, const RecordScope::ActiveScope &active, QWidget *parent)
{
    const Report::CatalogueEntry *entry = Report::find(name);
    if (!entry)
        return false;
    const bool formFound = entry->kind != RecordScope::Kind::None && active.kind == entry->kind;
    Report::Parameters parameters;
    parameters.name = name;
    if (!askParameters(*entry, formFound, parent, &parameters))
        return false;
    const QString caption = QCoreApplication::translate("Report", entry->caption);
    if (parameters.reportType == RecordScope::CurrentRecord && (!formFound || active.key.isEmpty())) {
        Prompt::message(QCoreApplication::translate("Report", entry->noRecordTitle),
                        QCoreApplication::translate("Report", entry->noRecordText), Prompt::Icon::None, Prompt::Ok);
        return false;
    }
    if (parameters.startDate.isValid() && parameters.endDate.isValid() && parameters.startDate > parameters.endDate) {
        Prompt::message(caption, QObject::tr("The start date is after the end date."), Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    }
    if (formFound)
        parameters.scope = active;

    Report::Result result;
    {
        ProgressWindow progress(caption, QObject::tr("Preparing the report..."), parent);
        result = m_build(parameters, progress.callback());
    }
    if (result.cancelled)
        return false;
    if (!result.ok) {
        Prompt::message(result.errorTitle.isEmpty() ? caption : result.errorTitle, result.error, Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    }

    // The preview draws the pages whenever it needs them, so they hold their own copy of the report.
    auto document = std::make_shared<const Report::Document>(std::move(result.document));
    Prompt::PreviewRequest request;
    request.caption = document->caption.isEmpty() ? caption : document->caption;
    request.pdfName = pdfName(request.caption);
    request.pageLayout = ReportRenderer::pageLayout(*document);
    const QString title = request.caption;
    request.paint = [document, title](QPagedPaintDevice *device) {
        ProgressWindow progress(title, QObject::tr("Drawing the pages..."), QApplication::activeWindow());
        QString error;
        if (ReportRenderer::render(*document, device, progress.callback(), &error))
            return true;
        if (!progress.cancelled())
            Prompt::message(title, error, Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    };
    request.savePdf = [document, title](const QString &path) {
        ProgressWindow progress(title, QObject::tr("Writing the PDF file..."), QApplication::activeWindow());
        QString error;
        if (ReportRenderer::writePdf(*document, path, progress.callback(), &error))
            return true;
        if (!progress.cancelled())
            Prompt::message(title, error, Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    };
    // What the command line writes as CSV can be saved from the preview too.
    if (!document->csvRows.isEmpty())
        request.saveCsv = [document, title](const QString &path) {
            QString error;
            if (CsvWriter::write(path, document->csvRows, &error))
                return true;
            Prompt::message(title, error, Prompt::Icon::Exclamation, Prompt::Ok);
            return false;
        };
    Prompt::preview(request);
    return true;
}

RecordScope::ActiveScope ReportRunner::activeForm(const Workspace &workspace, RecordScope::Kind kind)
{
    MdiChild *form = nullptr;
    if (kind == RecordScope::Kind::Client) {
        if (MdiChild *active = workspace.activeChild(); active && active->kind() == MdiChild::Kind::Client)
            form = active;
    } else if (kind == RecordScope::Kind::Volunteer) {
        for (MdiChild *child : workspace.childWindows())
            if (child->kind() == MdiChild::Kind::Volunteer) {
                form = child;
                break;
            }
    }
    if (!form)
        return {};
    return {kind, form->SQL(), form->currentKey()};
}

bool ReportRunner::runMenuCommand(const QString &menuName, const Workspace &workspace, QWidget *parent)
{
    static const QList<QPair<const char *, Report::Name>> commands = {
        {"mnuReportsClientList", Report::Name::ClientList},           {"mnuReportsClientDetail", Report::Name::ClientDetail},
        {"mnuReportsFoodServiceByClient", Report::Name::FoodService}, {"mnuReportsPaymentHistoryByClient", Report::Name::PaymentHistory},
        {"mnuReportsGroceryLog", Report::Name::GroceryLog},           {"mnuReportsGeographicSummary", Report::Name::GeographicSummary},
        {"mnuReportsDemographics", Report::Name::Demographics},       {"mnuReportsVolunteerList", Report::Name::VolunteerList},
        {"mnuReportsVolunteerDetail", Report::Name::VolunteerDetail}, {"mnuReportsAgencyReport", Report::Name::Agency},
    };
    for (const auto &[menu, name] : commands)
        if (menuName == QLatin1String(menu))
            return run(name, activeForm(workspace, Report::find(name)->kind), parent);
    return false;
}
