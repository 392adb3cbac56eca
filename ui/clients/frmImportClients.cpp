#include "frmImportClients.h"

#include "Prompt.h"
#include "TmError.h"

#include <QAbstractTableModel>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTableView>
#include <QTableWidget>
#include <QVBoxLayout>

// Every row of the file with what happens (or happened) to it and why.
class ImportResultModel : public QAbstractTableModel
{
public:
    using QAbstractTableModel::QAbstractTableModel;

    void show(const ClientImport::Plan *plan, bool addLookups, bool done)
    {
        beginResetModel();
        m_plan = plan;
        m_addLookups = addLookups;
        m_done = done;
        endResetModel();
    }
    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() || !m_plan ? 0 : int(m_plan->rows.size()); }
    int columnCount(const QModelIndex & = {}) const override { return 3; }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return {};
        return section == 0 ? frmImportClients::tr("Line") : section == 1 ? frmImportClients::tr("Result") : frmImportClients::tr("Why");
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if ((role != Qt::DisplayRole && role != Qt::ToolTipRole) || !m_plan)
            return {};
        const ClientImport::Row &row = m_plan->rows.at(index.row());
        if (index.column() == 0)
            return row.line;
        if (index.column() == 1) {
            if (!row.ok())
                return m_done ? frmImportClients::tr("Skipped") : frmImportClients::tr("Will be skipped");
            return m_done ? frmImportClients::tr("Imported") : frmImportClients::tr("Will be imported");
        }
        QStringList why = row.ok() ? row.notes : row.problems;
        if (row.ok())
            for (int field : row.unknownLookups)
                why << (m_addLookups ? frmImportClients::tr("%1 '%2' is added to its list.")
                                     : frmImportClients::tr("%1 '%2' is not in its list: left empty."))
                           .arg(ClientImport::fields()[field].name(), row.values[field].toString());
        return why.join(u' ');
    }

private:
    const ClientImport::Plan *m_plan = nullptr;
    bool m_addLookups = false;
    bool m_done = false;
};

QString frmImportClients::rows(int count)
{
    return count == 1 ? tr("1 row") : tr("%1 rows").arg(count);
}

frmImportClients::frmImportClients(QWidget *parent) : QDialog(parent), m_pages(new QStackedWidget(this))
{
    setObjectName(QStringLiteral("frmImportClients"));
    setWindowTitle(tr("Import Clients"));
    m_pages->addWidget(buildColumnsPage());
    m_pages->addWidget(buildCheckPage());

    cmdBack = new QPushButton(tr("< &Back"), this);
    cmdBack->setObjectName(QStringLiteral("cmdBack"));
    cmdNext = new QPushButton(tr("&Next >"), this);
    cmdNext->setObjectName(QStringLiteral("cmdNext"));
    cmdImport = new QPushButton(tr("&Import"), this);
    cmdImport->setObjectName(QStringLiteral("cmdImport"));
    cmdCancel = new QPushButton(tr("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    connect(cmdBack, &QPushButton::clicked, this, &frmImportClients::cmdBack_Click);
    connect(cmdNext, &QPushButton::clicked, this, &frmImportClients::cmdNext_Click);
    connect(cmdImport, &QPushButton::clicked, this, &frmImportClients::cmdImport_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmImportClients::reject);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (QPushButton *b : {cmdBack, cmdNext, cmdImport, cmdCancel})
        buttons->addWidget(b);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_pages, 1);
    layout->addLayout(buttons);
    resize(900, 620);
    updateButtons();
}

QWidget *frmImportClients::buildColumnsPage()
{
    auto *page = new QWidget(this);
    txtFileName = new QLineEdit(page);
    txtFileName->setObjectName(QStringLiteral("txtFileName"));
    txtFileName->setReadOnly(true);
    auto *browse = new QPushButton(tr("&Browse..."), page);
    browse->setObjectName(QStringLiteral("cmdBrowse"));
    connect(browse, &QPushButton::clicked, this, &frmImportClients::cmdBrowse_Click);
    lblFileInfo = new QLabel(tr("Choose a CSV or tab-delimited file whose first line names its columns."), page);
    lblFileInfo->setObjectName(QStringLiteral("lblFileInfo"));

    grdMapping = new QTableWidget(0, 3, page);
    grdMapping->setObjectName(QStringLiteral("grdMapping"));
    grdMapping->setHorizontalHeaderLabels({tr("Column in the file"), tr("Client field"), tr("First value")});
    grdMapping->horizontalHeader()->setStretchLastSection(true);
    grdMapping->verticalHeader()->hide();
    grdMapping->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grdMapping->resizeColumnsToContents();
    grdPreview = new QTableWidget(page);
    grdPreview->setObjectName(QStringLiteral("grdPreview"));
    grdPreview->setEditTriggers(QAbstractItemView::NoEditTriggers);

    auto *file = new QHBoxLayout;
    file->addWidget(new QLabel(tr("File:"), page));
    file->addWidget(txtFileName, 1);
    file->addWidget(browse);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(file);
    layout->addWidget(lblFileInfo);
    layout->addWidget(new QLabel(tr("Columns (those named like the export's columns are chosen already):"), page));
    layout->addWidget(grdMapping, 3);
    layout->addWidget(new QLabel(tr("The first rows:"), page));
    layout->addWidget(grdPreview, 2);
    return page;
}

QWidget *frmImportClients::buildCheckPage()
{
    auto *page = new QWidget(this);
    lblSummary = new QLabel(page);
    lblSummary->setObjectName(QStringLiteral("lblSummary"));
    m_results = new ImportResultModel(this);
    grdResults = new QTableView(page);
    grdResults->setObjectName(QStringLiteral("grdResults"));
    grdResults->setModel(m_results);
    grdResults->verticalHeader()->hide();
    grdResults->horizontalHeader()->setStretchLastSection(true);
    grdResults->setWordWrap(false);

    fraLookups = new QGroupBox(tr("Descriptions that are not in their lists"), page);
    fraLookups->setObjectName(QStringLiteral("fraLookups"));
    lstUnknown = new QListWidget(fraLookups);
    lstUnknown->setObjectName(QStringLiteral("lstUnknown"));
    optAddLookups = new QRadioButton(tr("&Add them to their lists"), fraLookups);
    optAddLookups->setObjectName(QStringLiteral("optAddLookups"));
    optLeaveEmpty = new QRadioButton(tr("&Leave those fields empty"), fraLookups);
    optLeaveEmpty->setObjectName(QStringLiteral("optLeaveEmpty"));
    optLeaveEmpty->setChecked(true);
    connect(optAddLookups, &QRadioButton::toggled, this, [this] { m_results->show(&m_plan, optAddLookups->isChecked(), m_done); });
    auto *choice = new QVBoxLayout;
    choice->addWidget(optAddLookups);
    choice->addWidget(optLeaveEmpty);
    choice->addStretch(1);
    auto *lookups = new QHBoxLayout(fraLookups);
    lookups->addWidget(lstUnknown, 1);
    lookups->addLayout(choice);

    prgImport = new QProgressBar(page);
    prgImport->setObjectName(QStringLiteral("prgImport"));
    prgImport->hide();
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(lblSummary);
    layout->addWidget(grdResults, 3);
    layout->addWidget(fraLookups, 1);
    layout->addWidget(prgImport);
    return page;
}

bool frmImportClients::loadFile(const QString &path)
{
    CsvReader::Table table;
    QString error;
    if (!CsvReader::read(path, &table, &error)) {
        Prompt::message(tr("Import Clients"), error, Prompt::Icon::Critical, Prompt::Ok);
        return false;
    }
    if (table.records.isEmpty()) {
        Prompt::message(tr("Import Clients"), tr("The file has no rows below its header."), Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    }
    m_table = std::move(table);
    txtFileName->setText(QDir::toNativeSeparators(path));
    lblFileInfo->setText(tr("%1, %2, %3.")
                             .arg(rows(int(m_table.records.size())),
                                  m_table.separator == u'\t' ? tr("tab-delimited") : tr("comma-separated"), m_table.encoding));
    showMapping();
    showPreview();
    updateButtons();
    return true;
}

void frmImportClients::showMapping()
{
    const QList<int> automatic = ClientImport::automaticMapping(m_table.header);
    grdMapping->setRowCount(int(m_table.header.size()));
    m_fieldCombos.clear();
    for (int c = 0; c < m_table.header.size(); ++c) {
        grdMapping->setItem(c, 0, new QTableWidgetItem(m_table.header.at(c)));
        auto *combo = new QComboBox(grdMapping);
        combo->setObjectName(QStringLiteral("cboField%1").arg(c));
        combo->addItem(tr("(not imported)"), -1);
        for (int f = 0; f < ClientImport::fields().size(); ++f)
            combo->addItem(ClientImport::fields()[f].name(), f);
        combo->setCurrentIndex(combo->findData(automatic.at(c)));
        grdMapping->setCellWidget(c, 1, combo);
        m_fieldCombos << combo;
        const QString first = m_table.records.constFirst().fields.value(c);
        grdMapping->setItem(c, 2, new QTableWidgetItem(first.simplified()));
    }
    grdMapping->resizeColumnsToContents();
    grdMapping->setColumnWidth(1, qMax(grdMapping->columnWidth(1), 240));
}

void frmImportClients::showPreview()
{
    const int shown = int(qMin<qsizetype>(m_table.records.size(), 10));
    grdPreview->clear();
    grdPreview->setColumnCount(int(m_table.header.size()));
    grdPreview->setHorizontalHeaderLabels(m_table.header);
    grdPreview->setRowCount(shown);
    QStringList lines;
    for (int r = 0; r < shown; ++r) {
        const CsvReader::Record &record = m_table.records.at(r);
        lines << QString::number(record.line);
        for (int c = 0; c < record.fields.size() && c < m_table.header.size(); ++c)
            grdPreview->setItem(r, c, new QTableWidgetItem(record.fields.at(c).simplified()));
    }
    grdPreview->setVerticalHeaderLabels(lines);
    grdPreview->resizeColumnsToContents();
}

QList<int> frmImportClients::mapping() const
{
    QList<int> fields;
    for (const QComboBox *combo : m_fieldCombos)
        fields << combo->currentData().toInt();
    return fields;
}

void frmImportClients::cmdBrowse_Click()
{
    const QString path
        = Prompt::openFileName(tr("Import Clients From"), tr("CSV (comma delimited) (*.csv);;Text (tab delimited) (*.txt);;All files (*)"));
    if (!path.isEmpty())
        loadFile(path);
}

void frmImportClients::cmdNext_Click()
{
    const QList<int> fields = mapping();
    QStringList twice;
    for (int f = 0; f < ClientImport::fields().size(); ++f)
        if (fields.count(f) > 1)
            twice << ClientImport::fields()[f].name();
    if (!twice.isEmpty()) {
        Prompt::message(tr("Import Clients"), tr("More than one column fills %1: choose one.").arg(twice.join(QStringLiteral(", "))),
                        Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    if (const QStringList missing = ClientImport::unmappedRequired(fields); !missing.isEmpty()) {
        Prompt::message(tr("Import Clients"),
                        tr("Every client needs %1: choose the columns that hold them.").arg(missing.join(QStringLiteral(", "))),
                        Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    try {
        m_plan = ClientImport::check(m_table, fields);
    } catch (const TmError &e) {
        Prompt::message(tr("Import Clients"), e.plainWords().isEmpty() ? e.description() : e.plainWords(), Prompt::Icon::Critical,
                        Prompt::Ok);
        return;
    }
    m_done = false;
    m_results->show(&m_plan, optAddLookups->isChecked(), false);
    grdResults->resizeColumnToContents(0);
    grdResults->resizeColumnToContents(1);
    lblSummary->setText(ClientImport::summary(m_plan, false));
    showUnknowns();
    m_pages->setCurrentIndex(1);
    updateButtons();
}

void frmImportClients::showUnknowns()
{
    lstUnknown->clear();
    for (const ClientImport::Unknown &u : std::as_const(m_plan.unknowns))
        lstUnknown->addItem(tr("%1: %2 (%3)").arg(ClientImport::fields()[u.field].name(), u.description, rows(u.rows)));
    fraLookups->setVisible(!m_plan.unknowns.isEmpty());
}

void frmImportClients::cmdBack_Click()
{
    m_pages->setCurrentIndex(0);
    updateButtons();
}

void frmImportClients::cmdImport_Click()
{
    const int count = m_plan.importable();
    const int skipped = int(m_plan.rows.size()) - count;
    QString question = count == 1 ? tr("Import 1 client?") : tr("Import %1 clients?").arg(count);
    if (skipped > 0)
        question += u' ' + tr("%1 will be skipped.").arg(rows(skipped));
    if (Prompt::message(tr("Import Clients"), question, Prompt::Icon::Question, Prompt::Yes | Prompt::No) != Prompt::Yes)
        return;
    m_importing = true;
    m_cancelRequested = false;
    prgImport->setRange(0, count);
    prgImport->setValue(0);
    prgImport->show();
    updateButtons();
    const bool add = optAddLookups->isChecked();
    const ClientImport::Outcome outcome = ClientImport::run(m_plan, add, [this](int done, int total) { return progress(done, total); });
    m_importing = false;
    prgImport->hide();
    if (outcome.committed) {
        m_done = true;
        m_results->show(&m_plan, add, true);
        lblSummary->setText(ClientImport::summary(m_plan, true));
        Prompt::message(tr("Import Clients"), ClientImport::summary(m_plan, true), Prompt::Icon::Information, Prompt::Ok);
    } else if (outcome.cancelled) {
        Prompt::message(tr("Import Clients"), tr("The import was cancelled: no client was added."), Prompt::Icon::Information, Prompt::Ok);
    } else {
        Prompt::message(tr("Import Clients"), tr("No client was added: %1").arg(outcome.error), Prompt::Icon::Critical, Prompt::Ok);
    }
    updateButtons();
}

bool frmImportClients::progress(int done, int total)
{
    prgImport->setMaximum(total);
    prgImport->setValue(done);
    QCoreApplication::processEvents();
    return !m_cancelRequested;
}

void frmImportClients::updateButtons()
{
    const bool checkPage = m_pages->currentIndex() == 1;
    cmdBack->setEnabled(checkPage && !m_importing && !m_done);
    cmdNext->setEnabled(!checkPage && !m_table.header.isEmpty());
    cmdImport->setEnabled(checkPage && !m_importing && !m_done && m_plan.importable() > 0);
    fraLookups->setEnabled(!m_importing && !m_done);
    cmdCancel->setText(m_done ? tr("Close") : tr("Cancel"));
}

void frmImportClients::reject()
{
    if (m_importing) {
        m_cancelRequested = true;   // the import stops at its next step and adds nothing
        return;
    }
    QDialog::reject();
}

void frmImportClients::closeEvent(QCloseEvent *event)
{
    if (m_importing) {
        m_cancelRequested = true;
        event->ignore();
        return;
    }
    QDialog::closeEvent(event);
}
