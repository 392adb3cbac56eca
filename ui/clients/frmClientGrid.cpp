#include "frmClientGrid.h"

#include "DataBinding.h"
#include "FilterStatement.h"
#include "GridModel.h"
#include "Prompt.h"
#include "SqlText.h"
#include "basClient.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "frmMessage.h"
#include "RecordQueries.h"

#include <QApplication>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QPushButton>
#include <QScopeGuard>
#include <QTableView>
#include <QVBoxLayout>

namespace {

const char *const kCaption = QT_TRANSLATE_NOOP("frmClientGrid", "Client Table");

// Shows the wait cursor for the lifetime of the object.
struct WaitCursor
{
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
};

// "Please Wait..." on screen while the list is read again.
struct WaitMessage
{
    explicit WaitMessage(QWidget *owner) : notice(owner)
    {
        notice.setWindowTitle(frmClientGrid::tr("Please Wait..."));
        notice.setMessage(frmClientGrid::tr("Please wait while the recordset is refreshed..."));
        notice.showNow();
    }
    ~WaitMessage() { notice.hide(); }
    frmMessage notice;
};

}   // namespace

frmClientGrid::frmClientGrid(Workspace *main) : MdiChild(main)
{
    setObjectName(QStringLiteral("frmClientGrid"));
    setWindowTitle(tr(kCaption));

    grdData = new QTableView(this);
    grdData->setObjectName(QStringLiteral("grdData"));
    grdData->setProperty(
        "ColumnSpec",
        QCoreApplication::translate("ColumnHeadings",
                                    ">ID,700|<Last Name,1400|<First Name,1200|<MI,400|^SSN,1000|^DLN,1000|^Birth Date,1000|^Gender,800|"
                                    "<Ethnic Origin,1300|<Marital Status,1400|<Address,2500|<City,1100|^State,600|<Zip Code,1000|"
                                    "<Home Phone,1300|<Work Phone,1300|<Mobile Phone,1300|<Comments,4000"));
    basTendmark::FormatDataGrid(grdData);
    basClient::FitColumns(grdData);
    grdData->horizontalHeader()->setSectionsClickable(true);

    auto button = [this](const char *name, const QString &caption, const QString &tip) {
        auto *b = new QPushButton(caption, this);
        b->setObjectName(QString::fromLatin1(name));
        b->setToolTip(tip);
        return b;
    };
    cmdClientAdd = button("cmdClientAdd", tr("&Add..."), tr("Click to add a new client."));
    cmdClientEdit = button("cmdClientEdit", tr("&Edit..."), tr("Click to edit the selected client's details."));
    cmdClientDelete = button("cmdClientDelete", tr("&Delete"), tr("Click to delete the selected client from the database."));
    cmdRefresh = button("cmdRefresh", tr("Refresh"), tr("Read the list again from the database."));

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdClientAdd);
    buttons->addWidget(cmdClientEdit);
    buttons->addWidget(cmdClientDelete);
    buttons->addStretch(1);
    buttons->addWidget(cmdRefresh);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(grdData, 1);
    layout->addLayout(buttons);

    connect(cmdClientAdd, &QPushButton::clicked, this, &frmClientGrid::cmdClientAdd_Click);
    connect(cmdClientEdit, &QPushButton::clicked, this, &frmClientGrid::cmdClientEdit_Click);
    connect(cmdClientDelete, &QPushButton::clicked, this, &frmClientGrid::cmdClientDelete_Click);
    connect(cmdRefresh, &QPushButton::clicked, this, &frmClientGrid::RefreshData);
    connect(grdData, &QTableView::pressed, this, [this](const QModelIndex &index) { selectGridRow(index.row()); });
    connect(grdData, &QTableView::doubleClicked, this, [this](const QModelIndex &index) {
        if (index.row() >= 0)
            cmdClientEdit_Click();
    });
    connect(grdData->horizontalHeader(), &QHeaderView::sectionClicked, this, &frmClientGrid::grdData_HeaderClicked);

    m_baseSql = RecordQueries::allClients();
    OpenRecordset();
    connect(grdData->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current, const QModelIndex &previous) {
                // Arrow keys move the choice; the first current cell that focus makes is not a choice.
                if (!m_busy && current.isValid() && previous.isValid() && !m_columnSelected)
                    selectGridRow(current.row());
            });
    // The current cell's column is the one the sort buttons sort by.
    connect(grdData->selectionModel(), &QItemSelectionModel::currentColumnChanged, this, [this] {
        if (!m_busy)
            Q_EMIT commandsChanged();
    });
}

void frmClientGrid::setSQL(const QString &sql)
{
    if (sql.isEmpty()) {
        m_baseSql = RecordQueries::allClients();
        setWindowTitle(tr(kCaption));
    } else {
        m_baseSql = FilterStatement::matching(QStringLiteral("Client"), sql);
        setWindowTitle(tr("%1 (Filter Applied)").arg(tr(kCaption)));
    }
}

void frmClientGrid::OpenRecordset()
{
    m_selectedRow = -1;
    m_columnSelected = false;
    m_selectedColumn = -1;
    cmdClientEdit->setEnabled(false);
    cmdClientDelete->setEnabled(false);
    const WaitCursor wait;
    // The count runs over the base query alone: the list opens at once however long it is.
    // A column the user sorted on stays the order when a filter changes the rows.
    GridModel *model = basTendmark::Model(grdData);
    const int sortColumn = model->sortColumn();
    const Qt::SortOrder sortOrder = model->sortOrder();
    basTendmark::PopulateDataGrid(grdData, RecordQueries::clientList(m_baseSql));
    if (sortColumn > 0)
        model->sortByColumn(sortColumn, sortOrder);
}

void frmClientGrid::ExecuteSQL()
{
    basErrorHandler::Guard(QStringLiteral("frmClientGrid.ExecuteSQL"), [&] {
        {
            const WaitMessage wait(workspace()->frame());
            m_clientId.clear();
            m_busy = true;
            const auto done = qScopeGuard([this] { m_busy = false; });
            OpenRecordset();
        }
        Q_EMIT commandsChanged();
        if (basTendmark::Model(grdData)->dataRowCount() == 0)
            basClient::TellNoClientRecordsFound();
    });
}

void frmClientGrid::RefreshData()
{
    basErrorHandler::Guard(QStringLiteral("frmClientGrid.RefreshData"), [&] {
        const WaitMessage notice(workspace()->frame());
        refill();
    });
}

void frmClientGrid::refill()
{
    const WaitCursor wait;
    m_busy = true;
    const auto done = qScopeGuard([this] { m_busy = false; });
    basTendmark::Model(grdData)->refresh();
    grdData->scrollToTop();
    clearSelection();
    m_busy = false;
    Q_EMIT commandsChanged();
}

void frmClientGrid::clearSelection()
{
    grdData->selectionModel()->clear();
    m_selectedRow = -1;
    m_columnSelected = false;
    m_clientId.clear();
    cmdClientEdit->setEnabled(false);
    cmdClientDelete->setEnabled(false);
}

void frmClientGrid::selectGridRow(int row)
{
    if (m_busy)
        return;
    basErrorHandler::Guard(QStringLiteral("frmClientGrid.grdData_SelChange"), [&] {
        m_busy = true;
        const auto done = qScopeGuard([this] { m_busy = false; });
        m_columnSelected = false;
        m_selectedRow = row;
        const qint64 id = basTendmark::GridText(grdData, row, 1).toLongLong();
        if (id > 0) {
            highlightRow(row);
            m_clientId = QString::number(id);
        } else {
            grdData->selectionModel()->clear();
            m_clientId.clear();
        }
        cmdClientEdit->setEnabled(id > 0);
        cmdClientDelete->setEnabled(id > 0);
        m_busy = false;
        Q_EMIT commandsChanged();
    });
}

void frmClientGrid::grdData_HeaderClicked(int column)
{
    m_busy = true;
    const auto done = qScopeGuard([this] { m_busy = false; });
    QAbstractItemModel *model = grdData->model();
    grdData->setCurrentIndex(model->index(0, column));
    grdData->selectionModel()->select(QItemSelection(model->index(0, column), model->index(model->rowCount() - 1, column)),
                                      QItemSelectionModel::ClearAndSelect);
    m_columnSelected = true;
    m_selectedColumn = column;
    m_selectedRow = -1;
    m_clientId.clear();
    cmdClientEdit->setEnabled(false);
    cmdClientDelete->setEnabled(false);
    m_busy = false;
    Q_EMIT commandsChanged();
}

// The whole row shows as chosen; the current cell keeps its column.
void frmClientGrid::highlightRow(int row)
{
    const int column = grdData->currentIndex().column();
    basTendmark::SelectRow(grdData, row);
    if (column > 0)
        grdData->selectionModel()->setCurrentIndex(grdData->model()->index(row, column), QItemSelectionModel::NoUpdate);
}

int frmClientGrid::sortColumn() const
{
    if (m_columnSelected)
        return m_selectedColumn;
    const int current = grdData->currentIndex().column();
    return current > 0 && current < grdData->model()->columnCount() ? current : -1;
}

void frmClientGrid::SortColumn(Qt::SortOrder order)
{
    const int column = sortColumn();
    if (column < 1)
        return;
    basErrorHandler::Guard(QStringLiteral("frmClientGrid.SortColumn"), [&] {
        const WaitCursor wait;
        const QString chosen = m_clientId;
        basTendmark::Model(grdData)->sortByColumn(column, order);
        grdData->scrollToTop();
        if (m_columnSelected) {
            grdData_HeaderClicked(column);
            return;
        }
        // The chosen client stays chosen wherever the order puts it.
        m_busy = true;
        clearSelection();
        grdData->selectionModel()->setCurrentIndex(grdData->model()->index(0, column), QItemSelectionModel::NoUpdate);
        m_busy = false;
        if (!chosen.isEmpty())
            GoToRow(chosen);
        Q_EMIT commandsChanged();
    });
}

void frmClientGrid::setClientID(const QString &id)
{
    m_clientId = id;
    GoToRow(id);
}

void frmClientGrid::GoToRow(const QString &id)
{
    basErrorHandler::Guard(QStringLiteral("frmClientGrid.GoToRow"), [&] {
        bool ok = false;
        const qint64 key = id.toLongLong(&ok);
        const int row = ok ? basTendmark::Model(grdData)->findKey(key) : -1;
        if (row < 0)
            return;
        grdData->scrollTo(grdData->model()->index(row, 1), QAbstractItemView::PositionAtCenter);
        selectGridRow(row);
    });
}

void frmClientGrid::cmdClientAdd_Click()
{
    basErrorHandler::Guard(QStringLiteral("frmClientGrid.cmdClientAdd_Click"),
                           [&] { basClient::OpenDetails(workspace(), QStringLiteral("ADD")); });
}

void frmClientGrid::cmdClientEdit_Click()
{
    basErrorHandler::Guard(QStringLiteral("frmClientGrid.cmdClientEdit_Click"), [&] {
        const int row = grdData->currentIndex().row();
        const qint64 id = basTendmark::GridText(grdData, row, 1).toLongLong();
        if (id > 0)
            basClient::OpenDetails(workspace(), QString::number(id));
    });
}

void frmClientGrid::cmdClientDelete_Click()
{
    basErrorHandler::Guard(QStringLiteral("frmClientGrid.cmdClientDelete_Click"), [&] {
        const int row = m_selectedRow;
        const qint64 id = row >= 0 ? basTendmark::GridText(grdData, row, 1).toLongLong() : 0;
        if (id <= 0)
            return;
        const QString name = basClient::DeleteName(basTendmark::GridText(grdData, row, 2), basTendmark::GridText(grdData, row, 3),
                                                   basTendmark::GridText(grdData, row, 4), true);
        if (!basClient::ConfirmDelete(name))
            return;
        if (!basDatabase::DeleteItemFromTable(QStringLiteral("Client"), QStringLiteral("ClientID"), QString::number(id)))
            return;
        m_busy = true;
        const auto done = qScopeGuard([this] { m_busy = false; });
        basTendmark::RemoveGridRow(grdData, row);
        clearSelection();
        m_busy = false;
        Q_EMIT commandsChanged();
        announceClientRecordsChanged(QString::number(id));
    });
}

MdiChild::Commands frmClientGrid::commands() const
{
    Commands c;
    c.del = !m_clientId.isEmpty();
    c.filter = true;
    c.sortAscending = sortColumn() > 0;
    c.sortDescending = c.sortAscending;
    c.searchBar = true;
    return c;
}

void frmClientGrid::refillForClient(const QString &)
{
    const QString id = m_clientId;
    basErrorHandler::Guard(QStringLiteral("frmClientGrid.Form_Activate"), [&] { refill(); });
    if (!id.isEmpty())
        GoToRow(id);
}

void frmClientGrid::activated()
{
    if (m_selectedRow >= 0 && !m_columnSelected)
        highlightRow(m_selectedRow);
    m_busy = true;   // taking the focus makes a current cell, which is not a choice of client
    grdData->setFocus();
    m_busy = false;
}

int frmClientGrid::recordCount() const
{
    return basTendmark::Model(grdData)->dataRowCount();
}
