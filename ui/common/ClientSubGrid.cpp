#include "ClientSubGrid.h"

#include "DataBinding.h"
#include "GridModel.h"
#include "Prompt.h"
#include "basDatabase.h"
#include "basErrorHandler.h"

#include <QBoxLayout>
#include <QEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <algorithm>

ClientSubGrid::ClientSubGrid(Workspace *workspace, const Look &look, QWidget *parent)
    : QWidget(parent)
    , m_workspace(workspace)
    , m_look(look)
{
    auto button = [this](const char *name, const QString &caption) {
        auto *b = new QPushButton(caption, this);
        b->setObjectName(QString::fromLatin1(name));
        b->setAutoDefault(false);
        return b;
    };
    cmdAdd = button("cmdGridDataAdd", look.add);
    cmdEdit = button("cmdGridDataEdit", look.edit);
    cmdDelete = button("cmdGridDataDelete", look.remove);
    nameButtons(m_look.noun);
    connect(cmdAdd, &QPushButton::clicked, this, &ClientSubGrid::addRow);
    connect(cmdEdit, &QPushButton::clicked, this, &ClientSubGrid::editRow);
    connect(cmdDelete, &QPushButton::clicked, this, &ClientSubGrid::deleteRow);

    m_gridArea = new QWidget(this);
    auto *grids = new QHBoxLayout(m_gridArea);
    grids->setContentsMargins(0, 0, 0, 0);
    auto *buttons = new QBoxLayout(look.buttonsBeside ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    for (QPushButton *b : {cmdAdd, cmdEdit, cmdDelete})
        buttons->addWidget(b);
    buttons->addStretch(1);
    auto *layout = new QBoxLayout(look.buttonsBeside ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_gridArea, 1);
    layout->addLayout(buttons);
}

void ClientSubGrid::nameButtons(const QString &noun)
{
    if (noun.isEmpty())
        return;
    cmdAdd->setToolTip(tr("Click to add a new %1.").arg(noun));
    cmdEdit->setToolTip(tr("Click to edit the selected %1's details.").arg(noun));
    cmdDelete->setToolTip(tr("Click to delete the selected %1.").arg(noun));
}

QTableView *ClientSubGrid::addGrid(RecordKind editor, const QString &columnSpec, const QString &caption, const QString &noun,
                                   const QString &addCaption)
{
    // The editors and the queries know the same kinds of record, in the same order.
    static_assert(int(RecordKind::Expenses) == int(ClientRecordQueries::Kind::Expenses));
    const auto kind = ClientRecordQueries::Kind(int(editor));
    auto *grid = new QTableView(m_gridArea);
    grid->setObjectName(QStringLiteral("grdData"));
    grid->setProperty("ColumnSpec", columnSpec);
    grid->setProperty("Table", ClientRecordQueries::source(kind).table);
    basTendmark::FormatDataGrid(grid);
    grid->installEventFilter(this);
    const int list = int(m_lists.size());
    QLabel *label = caption.isEmpty() ? nullptr : new QLabel(caption, m_gridArea);
    m_lists << List {grid, editor, kind, label, noun, addCaption};
    connect(grid, &QTableView::pressed, this, [this, list] { use(list); });
    connect(grid, &QTableView::doubleClicked, this, [this](const QModelIndex &index) {
        if (index.isValid())
            editRow();
    });
    if (caption.isEmpty()) {
        m_gridArea->layout()->addWidget(grid);
    } else {
        auto *column = new QVBoxLayout;
        column->addWidget(label);
        column->addWidget(grid, 1);
        static_cast<QHBoxLayout *>(m_gridArea->layout())->addLayout(column, 1);
    }
    use(m_active);
    return grid;
}

bool ClientSubGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn)
        for (int i = 0; i < m_lists.size(); ++i)
            if (m_lists.at(i).grid == watched)
                use(i);
    return QWidget::eventFilter(watched, event);
}

void ClientSubGrid::use(int list)
{
    m_active = list;
    if (m_lists.size() > 1) {
        // The list Add adds to stands out, and the buttons say which it is.
        for (int i = 0; i < m_lists.size(); ++i) {
            const List &l = m_lists.at(i);
            const bool chosen = i == list;
            l.grid->setStyleSheet(chosen ? QStringLiteral("QTableView { border: 2px solid palette(highlight); }")
                                         : QStringLiteral("QTableView { border: 1px solid palette(mid); margin: 1px; }"));
            if (l.caption) {
                QFont font = l.caption->font();
                font.setBold(chosen);
                l.caption->setFont(font);
            }
        }
        const List &chosen = m_lists.at(list);
        cmdAdd->setText(chosen.addCaption.isEmpty() ? m_look.add : chosen.addCaption);
        nameButtons(chosen.noun.isEmpty() ? m_look.noun : chosen.noun);
    }
    updateButtons();
}

void ClientSubGrid::showClient(const QString &clientId)
{
    m_clientId = clientId;
    m_later = false;
    for (const List &l : std::as_const(m_lists)) {
        basTendmark::PopulateDataGrid(
            l.grid, clientId.isEmpty() ? Query {} : ClientRecordQueries::rowsOf(l.kind, clientId.toLongLong(), m_look.form));
        l.grid->selectionModel()->clear();
    }
    updateButtons();
}

void ClientSubGrid::showClientLater(const QString &clientId, const QList<ClientRecordQueries::Kind> &withRows)
{
    m_clientId = clientId;
    m_later = true;
    m_laterHasRows = std::any_of(m_lists.cbegin(), m_lists.cend(), [&](const List &l) { return withRows.contains(l.kind); });
    for (const List &l : std::as_const(m_lists))
        basTendmark::Model(l.grid)->clear();
    updateButtons();
}

void ClientSubGrid::fillIfLater()
{
    if (m_later)
        showClient(m_clientId);
}

bool ClientSubGrid::hasRows() const
{
    if (m_later)
        return m_laterHasRows;
    for (const List &l : m_lists)
        if (basTendmark::Model(l.grid)->dataRowCount() > 0)
            return true;
    return false;
}

qint64 ClientSubGrid::currentKey() const
{
    QTableView *grid = m_lists.at(m_active).grid;
    if (!grid->selectionModel()->hasSelection())
        return 0;
    return basTendmark::GridRowKey(grid, grid->currentIndex().row());
}

void ClientSubGrid::updateButtons()
{
    const bool onRow = !m_lists.isEmpty() && currentKey() > 0;
    cmdEdit->setEnabled(onRow);
    cmdDelete->setEnabled(onRow);
}

void ClientSubGrid::addRow()
{
    basErrorHandler::Guard(m_look.window + QStringLiteral(".cmdGridDataAdd_Click"), [&] {
        if (m_clientId.isEmpty()) {
            Prompt::message(tr("Required Client Data Not Entered"),
                            tr("Please enter the required client information before entering any supporting details."),
                            Prompt::Icon::Exclamation, Prompt::Ok);
            return;
        }
        m_workspace->openRecordEditor(m_lists.at(m_active).editor, m_clientId, {});
    });
}

void ClientSubGrid::editRow()
{
    basErrorHandler::Guard(m_look.window + QStringLiteral(".cmdGridDataEdit_Click"), [&] {
        const qint64 key = currentKey();
        if (key > 0 && !m_clientId.isEmpty())
            m_workspace->openRecordEditor(m_lists.at(m_active).editor, m_clientId, QString::number(key));
    });
}

void ClientSubGrid::deleteRow()
{
    basErrorHandler::Guard(m_look.window + QStringLiteral(".cmdGridDataDelete_Click"), [&] {
        const List &l = m_lists.at(m_active);
        const int row = l.grid->currentIndex().row();
        const qint64 key = currentKey();
        if (key <= 0)
            return;
        const QString what = basTendmark::GridText(l.grid, row, 1) + m_look.deleteJoin + basTendmark::GridText(l.grid, row, 2);
        if (Prompt::message(tr("Delete Record?"), tr("Are you sure you want to delete '%1'?").arg(what), Prompt::Icon::Question,
                            Prompt::Yes | Prompt::No)
            != Prompt::Yes)
            return;
        const ClientRecordQueries::Source source = ClientRecordQueries::source(l.kind);
        if (!basDatabase::DeleteItemFromTable(source.table, source.keyColumn, QString::number(key)))
            return;
        basTendmark::RemoveGridRow(l.grid, row);
        l.grid->selectionModel()->clear();
        updateButtons();
        emit rowDeleted();
    });
}
