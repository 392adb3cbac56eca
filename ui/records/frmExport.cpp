#include "frmExport.h"

#include "MdiChild.h"
#include "Prompt.h"
#include "basErrorHandler.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

// Exports of fewer rows finish before a progress window would be worth showing;
// larger ones show it at once.
constexpr qint64 kProgressFrom = 10000;

QRadioButton *option(const char *name, const QString &caption, QWidget *parent)
{
    auto *b = new QRadioButton(caption, parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}

QPushButton *commandButton(const char *name, const QString &caption, QWidget *parent)
{
    auto *b = new QPushButton(caption, parent);
    b->setObjectName(QString::fromLatin1(name));
    return b;
}

}   // namespace

frmExport::frmExport(Workspace *workspace, RecordScope::Kind kind, QWidget *parent) : QDialog(parent), m_workspace(workspace), m_kind(kind)
{
    setAttribute(Qt::WA_DeleteOnClose);
    const bool clients = kind == RecordScope::Kind::Client;
    setObjectName(clients ? QStringLiteral("frmExportClient") : QStringLiteral("frmExportVolunteer"));
    // The volunteer dialog's caption has two blanks, as it always had.
    setWindowTitle(words("Export Client Data", "Export Volunteer  Data"));

    auto *records = new QGroupBox(words("Clients To Export", "Records To Export"), this);
    records->setObjectName(QStringLiteral("Frame2"));
    m_all = clients ? option("optAllClients", tr("&All clients"), records) : option("optAllVolunteers", tr("&All volunteers"), records);
    m_recordset = option("optCurrentRecordset", tr("Current &recordset"), records);
    m_current = clients ? option("optCurrentClient", tr("Current &client"), records)
                        : option("optCurrentVolunteer", tr("&Current volunteer"), records);
    auto *recordsLayout = new QVBoxLayout(records);
    for (QRadioButton *b : {m_all, m_recordset, m_current})
        recordsLayout->addWidget(b);
    m_all->setChecked(true);
    const MdiChild *window = matchingWindow();
    m_recordset->setEnabled(window != nullptr);
    m_current->setEnabled(window != nullptr);

    auto *types = new QGroupBox(tr("File Type"), this);
    types->setObjectName(QStringLiteral("Frame1"));
    m_comma = option("optCommaSeparated", tr("Comma Separated &Values"), types);
    m_tab = option("optTabDelimited", tr("&Tab Delimited"), types);
    m_workbook = option("optWorkbook", tr("E&xcel Workbook"), types);
    m_comma->setChecked(true);
    auto *typesLayout = new QVBoxLayout(types);
    for (QRadioButton *b : {m_comma, m_tab, m_workbook}) {
        typesLayout->addWidget(b);
        connect(b, &QRadioButton::toggled, this, [this](bool on) {
            if (on)
                fileTypeChanged();
        });
    }

    auto *label = new QLabel(tr("File Name:"), this);
    label->setObjectName(QStringLiteral("Label1"));
    m_fileName = new QLineEdit(this);
    m_fileName->setObjectName(QStringLiteral("txtFileName"));
    label->setBuddy(m_fileName);
    auto *browse = commandButton("cmdBrowse", tr("&Browse..."), this);
    connect(browse, &QPushButton::clicked, this, &frmExport::cmdBrowse_Click);

    auto *fields = new QGroupBox(tr("Fields To Export"), this);
    fields->setObjectName(QStringLiteral("Frame3"));
    auto *fieldsLayout = new QGridLayout(fields);
    const QList<ExportFields::Field> &list = ExportFields::all(kind);
    const int perColumn = int((list.size() + 2) / 3);
    for (int i = 0; i < list.size(); ++i) {
        auto *box = new QCheckBox(list.at(i).caption, fields);
        box->setObjectName(QStringLiteral("chkFields"));
        box->setProperty("Index", i);
        fieldsLayout->addWidget(box, i % perColumn, i / perColumn);
        m_fields << box;
    }
    auto *checkAllButton = commandButton("cmdCheckAll", tr("C&heck All"), fields);
    auto *clearAllButton = commandButton("cmdClearAll", tr("C&lear All"), fields);
    connect(checkAllButton, &QPushButton::clicked, this, &frmExport::cmdCheckAll_Click);
    connect(clearAllButton, &QPushButton::clicked, this, &frmExport::cmdClearAll_Click);
    auto *fieldButtons = new QHBoxLayout;
    fieldButtons->addStretch();
    fieldButtons->addWidget(checkAllButton);
    fieldButtons->addWidget(clearAllButton);
    fieldsLayout->addLayout(fieldButtons, perColumn, 0, 1, 3);

    m_formulaGuard = new QCheckBox(tr("&Protect against spreadsheet formulas"), this);
    m_formulaGuard->setObjectName(QStringLiteral("chkFormulaGuard"));
    m_formulaGuard->setChecked(true);
    m_formulaGuard->setToolTip(tr("Text that begins with =, +, - or @ gets a leading apostrophe, so that a spreadsheet shows it "
                                  "rather than running it as a formula."));

    auto *ok = commandButton("cmdOK", tr("OK"), this);
    auto *cancel = commandButton("cmdCancel", tr("Cancel"), this);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &frmExport::cmdOK_Click);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto *top = new QHBoxLayout;
    top->addWidget(records, 1);
    top->addWidget(types, 1);
    auto *file = new QHBoxLayout;
    file->addWidget(label);
    file->addWidget(m_fileName, 1);
    file->addWidget(browse);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(m_formulaGuard);
    bottom->addStretch();
    bottom->addWidget(ok);
    bottom->addWidget(cancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(file);
    layout->addWidget(fields, 1);
    layout->addLayout(bottom);
}

QString frmExport::words(const char *client, const char *volunteer) const
{
    return m_kind == RecordScope::Kind::Volunteer ? tr(volunteer) : tr(client);
}

MdiChild *frmExport::matchingWindow() const
{
    if (!m_workspace)
        return nullptr;
    const MdiChild::Kind wanted = m_kind == RecordScope::Kind::Volunteer ? MdiChild::Kind::Volunteer : MdiChild::Kind::Client;
    MdiChild *active = m_workspace->activeChild();
    if (active && active->kind() == wanted && active->hasSQL())
        return active;
    for (MdiChild *child : m_workspace->childWindows())
        if (child->kind() == wanted && child->hasSQL())
            return child;
    return nullptr;
}

ExportFile::FileType frmExport::fileType() const
{
    if (m_tab->isChecked())
        return ExportFile::FileType::TabDelimited;
    return m_workbook->isChecked() ? ExportFile::FileType::Workbook : ExportFile::FileType::CommaSeparated;
}

QString frmExport::suffix() const
{
    switch (fileType()) {
    case ExportFile::FileType::TabDelimited:
        return QStringLiteral("txt");
    case ExportFile::FileType::Workbook:
        return QStringLiteral("xlsx");
    case ExportFile::FileType::CommaSeparated:
        break;
    }
    return QStringLiteral("csv");
}

// A file name that ends in another type's extension follows the type chosen.
void frmExport::fileTypeChanged()
{
    m_formulaGuard->setEnabled(fileType() != ExportFile::FileType::Workbook);
    const QString name = m_fileName->text().trimmed();
    const QString old = QFileInfo(name).suffix().toLower();
    if (old == QLatin1String("csv") || old == QLatin1String("txt") || old == QLatin1String("xlsx"))
        m_fileName->setText(name.left(name.size() - old.size()) + suffix());
}

void frmExport::checkAll(bool checked)
{
    for (QCheckBox *box : std::as_const(m_fields))
        box->setChecked(checked);
}

// A name typed without a folder goes to the home folder; one without an extension gets the type's.
QString frmExport::targetPath() const
{
    QString name = m_fileName->text().trimmed();
    if (QFileInfo(name).suffix().isEmpty())
        name += QLatin1Char('.') + suffix();
    return QDir::cleanPath(QDir::home().absoluteFilePath(name));
}

void frmExport::cmdBrowse_Click()
{
    Prompt::FileRequest request;
    request.title = words("Export Client Data To ...", "Export Volunteer Data To ...");
    request.filter = tr("CSV (comma delimited) (*.csv);;Text (tab delimited) (*.txt);;Excel Workbook (*.xlsx);;All files (*)");
    request.defaultSuffix = suffix();
    request.defaultName = QStringLiteral("export.") + suffix();
    if (!m_fileName->text().trimmed().isEmpty()) {
        const QFileInfo typed(targetPath());
        request.directory = typed.absolutePath();
        request.defaultName = typed.fileName();
    }
    const QString chosen
        = Prompt::saveFileName(request.title, request.filter, request.defaultSuffix, request.defaultName, request.directory);
    if (chosen.isEmpty())
        return;
    m_fileName->setText(QDir::toNativeSeparators(chosen));
    const QString chosenSuffix = QFileInfo(chosen).suffix().toLower();
    if (chosenSuffix == QLatin1String("txt"))
        m_tab->setChecked(true);
    else if (chosenSuffix == QLatin1String("xlsx"))
        m_workbook->setChecked(true);
    else if (chosenSuffix == QLatin1String("csv"))
        m_comma->setChecked(true);
}

void frmExport::cmdOK_Click()
{
    const QString required = tr("Required Field Missing");
    if (m_fileName->text().trimmed().isEmpty()) {
        Prompt::message(required, tr("An export file name is required."), Prompt::Icon::Exclamation);
        m_fileName->setFocus();
        return;
    }
    ExportFile::Request request;
    request.kind = m_kind;
    for (int i = 0; i < m_fields.size(); ++i)
        if (m_fields.at(i)->isChecked())
            request.fields << ExportFields::all(m_kind).at(i);
    if (request.fields.isEmpty()) {
        Prompt::message(required, tr("At least one field must be checked."), Prompt::Icon::Exclamation);
        return;
    }
    // The "current" options read the window as it is now.
    const MdiChild *window = matchingWindow();
    if (m_recordset->isChecked()) {
        if (!window) {
            Prompt::message(tr("Export Data"), words("No client list is open.", "No volunteer list is open."), Prompt::Icon::Exclamation);
            return;
        }
        // A list without a filter of its own shows every record.
        request.scope.sql = window->SQL();
        if (!request.scope.sql.trimmed().isEmpty())
            request.reportType = RecordScope::CurrentRecordset;
    } else if (m_current->isChecked()) {
        request.scope.key = window ? window->currentKey() : QString();
        if (request.scope.key.isEmpty()) {
            Prompt::message(tr("Export Data"), words("No client has been selected.", "No volunteer has been selected."),
                            Prompt::Icon::Exclamation);
            return;
        }
        request.reportType = RecordScope::CurrentRecord;
    }
    request.scope.kind = m_kind;
    request.type = fileType();
    request.formulaGuard = m_formulaGuard->isChecked();
    request.path = targetPath();
    if (exportFile(request))
        accept();
}

bool frmExport::exportFile(const ExportFile::Request &request)
{
    QProgressDialog *progress = nullptr;
    const auto step = [this, &progress](qint64 done, qint64 total) {
        if (total < kProgressFrom)
            return true;
        if (!progress) {
            progress = new QProgressDialog(tr("Exporting records..."), tr("Cancel"), 0, int(total), this);
            progress->setWindowTitle(windowTitle());
            progress->setWindowModality(Qt::WindowModal);
            progress->setMinimumDuration(0);
        }
        progress->setValue(int(done));
        return !progress->wasCanceled();
    };
    const ExportFile::Result result = ExportFile::ExportFile(request, step);
    delete progress;
    if (result.cancelled)
        return false;
    if (!result.ok) {
        if (result.errorTitle.isEmpty())
            basErrorHandler::ReportError(objectName() + QStringLiteral(".ExportFile"), -2147467259, result.error);
        else
            Prompt::message(result.errorTitle, result.error, Prompt::Icon::Exclamation);
        return false;
    }
    Prompt::message(ExportFile::title(m_kind), tr("Export file created."), Prompt::Icon::Information);
    return true;
}
