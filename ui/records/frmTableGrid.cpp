#include "frmTableGrid.h"

#include "CellEditorDelegate.h"
#include "DataBinding.h"
#include "FieldRules.h"
#include "GridModel.h"
#include "LookupTables.h"
#include "Prompt.h"
#include "Recordset.h"
#include "TmError.h"
#include "Transaction.h"
#include "basDatabase.h"
#include "basErrorHandler.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardItemModel>
#include <QStatusBar>
#include <QTableView>
#include <QVBoxLayout>

namespace {

constexpr int kRowMarkRole = Qt::UserRole + 1;
constexpr int kFirstEditColumn = 2;
const QString kZipCodeTable = QStringLiteral("ZipCode");
constexpr int kZipStateColumn = 4;

}   // namespace

frmTableGrid::frmTableGrid(Workspace *main, const LookupTables::LookupTable &table)
    : MdiChild(main)
    , m_table(table)
    , m_tableName(table.name())
    , m_tableKeyName(QLatin1String(table.keyColumn))
{
    setObjectName(QStringLiteral("frmTableGrid"));
    setWindowTitle(QCoreApplication::translate("LookupTables", table.caption));
    const QString columnHeaders = QCoreApplication::translate("ColumnHeadings", table.columnSpec);
    buildControls(columnHeaders);
    basErrorHandler::Guard(QStringLiteral("frmTableGrid.Form_Load"), [&] {
        for (const FieldInfo &field : basDatabase::Fields(m_tableName))
            if (field.name.compare(m_tableKeyName, Qt::CaseInsensitive) != 0)
                m_columns << field.name;
        m_model->setColumnCount(kFirstEditColumn + int(m_columns.size()));
        const auto spec = GridModel::parseColumnSpec(columnHeaders);
        for (int c = 0; c < m_model->columnCount(); ++c) {
            const QString heading
                = c < spec.size() ? spec.at(c).heading : (c >= kFirstEditColumn ? m_columns.at(c - kFirstEditColumn) : QString());
            m_model->setHeaderData(c, Qt::Horizontal, heading);
            if (c < spec.size() && spec.at(c).widthTwips >= 0)
                m_grid->setColumnWidth(c, basTendmark::TwipsToPixels(spec.at(c).widthTwips));
            if (c >= kFirstEditColumn)
                m_captions << heading;
        }
        // The widest column (the description, or the city) takes the window's spare width.
        int widest = lastColumn();
        for (int c = kFirstEditColumn; c <= lastColumn(); ++c)
            if (m_grid->columnWidth(c) > m_grid->columnWidth(widest))
                widest = c;
        m_grid->horizontalHeader()->setSectionResizeMode(widest, QHeaderView::Stretch);
        m_statusBar->clearMessage();
        if (m_tableName == kZipCodeTable) {
            const Query states = LookupTables::choices(QStringLiteral("States"), QStringLiteral("StateID"), QStringLiteral("StateCode"));
            QSqlQuery q = basDatabase::Execute(states.sql, states.binds);
            QStringList codes;
            while (q.next())
                codes << q.value(1).toString();
            m_delegate->setChoices(kZipStateColumn, codes);
        }
        PopulateGrid();
    });
}

void frmTableGrid::buildControls(const QString &columnHeaders)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 0);

    m_grid = new QTableView(this);
    m_grid->setObjectName(QStringLiteral("grdData"));
    m_grid->setProperty("ColumnSpec", columnHeaders);
    m_model = new QStandardItemModel(this);
    m_grid->setModel(m_model);
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setTabKeyNavigation(false);
    m_grid->setWordWrap(false);
    m_grid->verticalHeader()->setVisible(false);
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().height() + 8);
    m_grid->horizontalHeader()->setHighlightSections(false);
    m_grid->horizontalHeader()->setDefaultAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    m_grid->installEventFilter(this);
    m_delegate = new CellEditorDelegate(m_grid);
    m_delegate->setKeyHandler([this](QWidget *, int key) { return editBoxKey(key); });
    m_grid->setItemDelegate(m_delegate);
    layout->addWidget(m_grid, 1);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    m_cmdSave = new QPushButton(tr("&Save"), this);
    m_cmdSave->setObjectName(QStringLiteral("cmdSave"));
    m_cmdDelete = new QPushButton(tr("&Delete"), this);
    m_cmdDelete->setObjectName(QStringLiteral("cmdDelete"));
    m_cmdCancel = new QPushButton(tr("&Close"), this);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    for (QPushButton *b : {m_cmdSave, m_cmdDelete, m_cmdCancel})
        buttons->addWidget(b);
    layout->addLayout(buttons);
    m_statusBar = new QStatusBar(this);
    m_statusBar->setObjectName(QStringLiteral("sbrStatusBar"));
    m_statusBar->setSizeGripEnabled(false);
    layout->addWidget(m_statusBar);
    m_cmdSave->setEnabled(false);
    m_cmdDelete->setEnabled(false);

    connect(m_cmdSave, &QPushButton::clicked, this, [this] { cmdSave_Click(); });
    connect(m_cmdDelete, &QPushButton::clicked, this, &frmTableGrid::cmdDelete_Click);
    connect(m_cmdCancel, &QPushButton::clicked, this, &QWidget::close);
    connect(m_grid->selectionModel(), &QItemSelectionModel::currentChanged, this, &frmTableGrid::grdData_CurrentChanged);
    connect(m_grid->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!m_inCellChange)
            updateDeleteButton();
    });
    connect(m_grid, &QTableView::clicked, this, [this](const QModelIndex &index) {
        if (!activeEditBox() && index.isValid())
            grdData_EnterCell(index.row(), index.column());
    });
    // A choice from a list counts at once; typed text once it passes validation.
    connect(m_delegate, &CellEditorDelegate::edited, this, [this](const QModelIndex &cell) {
        if (m_inCellChange)
            return;
        if (m_delegate->hasChoices(cell.column()))
            markRow(cell.row());
        setDataChanged(true);
    });
}

// ---- the grid ----

void frmTableGrid::PopulateGrid()
{
    hideEditBox();
    m_inCellChange = true;
    m_model->removeRows(0, m_model->rowCount());
    const auto spec = GridModel::parseColumnSpec(m_grid->property("ColumnSpec").toString());
    auto alignment = [&](int column) {
        return column < spec.size() && spec.at(column).alignment ? spec.at(column).alignment : Qt::AlignLeft | Qt::AlignVCenter;
    };
    auto addRow = [&](const QStringList &texts) {
        QList<QStandardItem *> items;
        for (int c = 0; c < m_model->columnCount(); ++c) {
            auto *item = new QStandardItem(c < texts.size() ? texts.at(c) : QString());
            item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            item->setTextAlignment(c == 0 ? Qt::AlignCenter : alignment(c));
            items << item;
        }
        items.first()->setData(0, kRowMarkRole);
        m_model->appendRow(items);
    };
    const Query items = LookupTables::items(m_table, m_columns);
    QSqlQuery q = basDatabase::Execute(items.sql, items.binds);
    while (q.next()) {
        QStringList texts {QString(), q.value(0).toString()};
        for (int i = 0; i < m_columns.size(); ++i)
            texts << q.value(i + 1).toString();
        addRow(texts);
    }
    addRow({QStringLiteral("*")});
    m_inCellChange = false;
    updateDeleteButton();
}

int frmTableGrid::newRecordRow() const
{
    return m_model->rowCount() - 1;
}

int frmTableGrid::lastColumn() const
{
    return m_model->columnCount() - 1;
}

QString frmTableGrid::cellText(int row, int column) const
{
    const QStandardItem *item = m_model->item(row, column);
    return item ? item->text() : QString();
}

void frmTableGrid::setCellText(int row, int column, const QString &text)
{
    if (QStandardItem *item = m_model->item(row, column))
        item->setText(text);
}

bool frmTableGrid::rowMarked(int row) const
{
    const QStandardItem *item = m_model->item(row, 0);
    return item && item->data(kRowMarkRole).toInt() == 1;
}

void frmTableGrid::markRow(int row)
{
    if (QStandardItem *item = m_model->item(row, 0))
        item->setData(1, kRowMarkRole);
}

bool frmTableGrid::anyRowMarked() const
{
    for (int row = 0; row < m_model->rowCount(); ++row)
        if (rowMarked(row))
            return true;
    return false;
}

int frmTableGrid::ColumnsFilled(int row) const
{
    int filled = 0;
    for (int c = kFirstEditColumn; c <= lastColumn(); ++c)
        if (!cellText(row, c).trimmed().isEmpty())
            ++filled;
    return filled;
}

void frmTableGrid::grdData_CurrentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    if (m_inCellChange)
        return;
    if (activeEditBox() && !finishEdit()) {
        // The value left behind was refused: back to it.
        m_inCellChange = true;
        m_grid->setCurrentIndex(previous);
        m_inCellChange = false;
        if (QWidget *box = activeEditBox())
            box->setFocus();
        return;
    }
    updateDeleteButton();
    if (current.isValid() && current.row() != previous.row())
        grdData_SelChange(current.row());
    if (current.isValid())
        grdData_EnterCell(current.row(), current.column());
}

// A row chosen must still be in the table.
void frmTableGrid::grdData_SelChange(int row)
{
    const QString key = cellText(row, 1);
    if (key.isEmpty())
        return;
    basErrorHandler::Guard(QStringLiteral("frmTableGrid.grdData_SelChange"), [&] {
        if (!LookupTables::exists(m_table, key.toLongLong()))
            Prompt::message(tr("Application Error"), tr("Error locating record in database."), Prompt::Icon::Critical, Prompt::Ok);
    });
}

void frmTableGrid::grdData_EnterCell(int row, int column)
{
    hideEditBox();
    m_editRow = row;
    m_editColumn = column;
    if (column < kFirstEditColumn)
        return;
    m_inCellChange = true;
    m_grid->openPersistentEditor(m_model->index(row, column));
    if (QWidget *box = activeEditBox()) {
        box->setProperty("Tag", cellText(row, column));
        if (auto *text = qobject_cast<QLineEdit *>(box))
            text->selectAll();
        box->setFocus();
    }
    m_inCellChange = false;
}

QWidget *frmTableGrid::activeEditBox() const
{
    if (m_editRow < 0 || m_editColumn < kFirstEditColumn)
        return nullptr;
    return m_grid->indexWidget(m_model->index(m_editRow, m_editColumn));
}

void frmTableGrid::hideEditBox()
{
    QWidget *box = activeEditBox();
    if (!box)
        return;
    const bool hadFocus = box->hasFocus();
    m_grid->closePersistentEditor(m_model->index(m_editRow, m_editColumn));
    if (hadFocus)
        m_grid->setFocus();
}

bool frmTableGrid::validateCell(int row, int column, const QString &text)
{
    const QString caption = m_captions.value(column - kFirstEditColumn);
    if (text.trimmed().isEmpty()) {
        if (row == newRecordRow())
            return true;
        Prompt::message(tr("Required Field"), tr("Field cannot be empty."), Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    }
    QString message;
    if (!basDatabase::FieldIsValid(basDatabase::Field(m_tableName, m_columns.at(column - kFirstEditColumn)), FieldRules::clean(text, false),
                                   message)) {
        Prompt::message(tr("Data Entry Error"), caption + message, Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    }
    return true;
}

bool frmTableGrid::EditBox_Validate()
{
    bool valid = false;
    basErrorHandler::Guard(QStringLiteral("frmTableGrid.txtEditBox_Validate"), [&] {
        valid = validateCell(m_editRow, m_editColumn, cellText(m_editRow, m_editColumn));
        if (valid && cellText(m_editRow, m_editColumn) != activeEditBox()->property("Tag").toString())
            markRow(m_editRow);
    });
    if (!valid)
        activeEditBox()->setFocus();
    return valid;
}

bool frmTableGrid::finishEdit()
{
    if (!activeEditBox())
        return true;
    if (!EditBox_Validate())
        return false;
    hideEditBox();
    return true;
}

bool frmTableGrid::editBoxKey(int key)
{
    switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
        if (EditBox_Validate()) {
            const int row = m_editRow;
            const int column = key == Qt::Key_Tab ? std::min(m_editColumn + 1, lastColumn()) : std::max(m_editColumn - 1, kFirstEditColumn);
            m_inCellChange = true;
            m_grid->setCurrentIndex(m_model->index(row, column));
            m_inCellChange = false;
            grdData_EnterCell(row, column);
        }
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        finishEdit();
        return true;
    case Qt::Key_Escape: {
        const QString before = activeEditBox()->property("Tag").toString();
        setCellText(m_editRow, m_editColumn, before);
        hideEditBox();
        setDataChanged(anyRowMarked());
        return true;
    }
    case Qt::Key_Up:
    case Qt::Key_Down: {
        if (qobject_cast<QComboBox *>(activeEditBox()))
            return false;
        const int row = m_editRow + (key == Qt::Key_Up ? -1 : 1);
        if (row >= 0 && row < m_model->rowCount())
            m_grid->setCurrentIndex(m_model->index(row, m_editColumn));
        return true;
    }
    default:
        return false;
    }
}

bool frmTableGrid::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return MdiChild::eventFilter(watched, event);
    auto *key = static_cast<QKeyEvent *>(event);
    if (watched == m_grid && !activeEditBox()) {
        const QModelIndex current = m_grid->currentIndex();
        if (!current.isValid() || current.column() < kFirstEditColumn)
            return false;
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter || key->key() == Qt::Key_F2) {
            grdData_EnterCell(current.row(), current.column());
            return true;
        }
        if (!key->text().isEmpty() && key->text().at(0).isPrint()) {
            // Typing on a cell starts editing it with what was typed.
            grdData_EnterCell(current.row(), current.column());
            if (QWidget *box = activeEditBox()) {
                QKeyEvent copy(QEvent::KeyPress, key->key(), key->modifiers(), key->text());
                QCoreApplication::sendEvent(box, &copy);
            }
            return true;
        }
    }
    return MdiChild::eventFilter(watched, event);
}

// ---- saving ----

bool frmTableGrid::SaveCurrentRecord()
{
    return !m_dataChanged || cmdSave_Click();
}

bool frmTableGrid::cmdSave_Click()
{
    if (!finishEdit())
        return false;
    const int newRow = newRecordRow();
    const int editable = m_model->columnCount() - kFirstEditColumn;
    const int filled = ColumnsFilled(newRow);
    if (filled > 0 && filled < editable) {
        Prompt::message(tr("Required Fields Missing"), tr("Fields cannot be empty on new record."), Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    }
    // Every value is checked before anything is written.
    QList<int> rows;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (!rowMarked(row) && !(row == newRow && filled == editable))
            continue;
        if (row == newRow && filled == 0)
            continue;
        for (int c = kFirstEditColumn; c <= lastColumn(); ++c) {
            if (!validateCell(row, c, cellText(row, c))) {
                m_grid->setCurrentIndex(m_model->index(row, c));
                return false;
            }
        }
        rows << row;
    }

    bool written = false;
    QSqlDatabase db = basDatabase::Connection();
    basErrorHandler::Guard(QStringLiteral("frmTableGrid.cmdSave_Click"), [&] {
        Transaction transaction(db);
        if (!transaction.active())
            throw TmError(-1, QStringLiteral("Could not start a transaction: %1").arg(transaction.error()));
        Recordset recordset;
        recordset.open(m_tableName, m_tableKeyName, LookupTables::allRows(m_table));
        for (int row : rows)
            if (!UpdateRow(recordset, row))
                return;
        if (!transaction.commit())
            throw TmError(-1, QStringLiteral("Could not save the changes: %1").arg(transaction.error()));
        written = true;
    });
    if (!written)
        return false;
    basErrorHandler::Guard(QStringLiteral("frmTableGrid.PopulateGrid"), [&] { PopulateGrid(); });
    m_statusBar->showMessage(tr("Records updated."));
    setDataChanged(false);
    return true;
}

bool frmTableGrid::UpdateRow(Recordset &recordset, int row)
{
    const QString key = cellText(row, 1);
    if (key.isEmpty())
        recordset.addNew();
    else if (!recordset.find(key.toLongLong())) {
        Prompt::message(tr("Application Error"), tr("Error locating record in database."), Prompt::Icon::Critical, Prompt::Ok);
        return false;
    }
    for (int i = 0; i < m_columns.size(); ++i)
        if (!basDatabase::UpdateDataField(recordset, m_columns.at(i), FieldRules::clean(cellText(row, kFirstEditColumn + i), false)))
            return false;
    recordset.update();
    return true;
}

// ---- deleting ----

void frmTableGrid::DeleteCurrentRecord()
{
    if (m_cmdDelete->isEnabled())
        cmdDelete_Click();
}

bool frmTableGrid::TableInUse(const QString &key, bool &inUse)
{
    inUse = false;
    return basErrorHandler::Guard(QStringLiteral("frmTableGrid.TableInUse"),
                                  [&] { inUse = LookupTables::inUse(m_table, key.toLongLong()); });
}

void frmTableGrid::cmdDelete_Click()
{
    if (!finishEdit())
        return;
    const int row = m_grid->currentIndex().row();
    const QString key = cellText(row, 1);
    if (row < 0 || key.isEmpty())
        return;
    const QString description = cellText(row, kFirstEditColumn);
    bool inUse = false;
    if (!TableInUse(key, inUse))
        return;
    if (inUse) {
        Prompt::message(tr("Delete Record"),
                        tr("This item is currently in use in the database.\r\n"
                           "You must change all references to this item before it can be deleted."),
                        Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    if (Prompt::message(tr("Delete Record"), tr("Are you sure you want to delete '%1'?").arg(description), Prompt::Icon::Question,
                        Prompt::Yes | Prompt::No)
            == Prompt::Yes
        && basDatabase::DeleteItemFromTable(m_tableName, m_tableKeyName, key)) {
        hideEditBox();
        m_inCellChange = true;
        m_model->removeRow(row);
        m_inCellChange = false;
        m_editRow = -1;
        m_statusBar->showMessage(tr("Record number %1 deleted.").arg(key));
    }
    // Whatever the answer, Delete waits for the next row chosen. Edits waiting on other rows stay waiting.
    setDeleteEnabled(false);
    setDataChanged(anyRowMarked());
}

// ---- state ----

void frmTableGrid::setDataChanged(bool changed)
{
    m_dataChanged = changed;
    m_cmdSave->setEnabled(changed);
    Q_EMIT commandsChanged();
}

void frmTableGrid::updateDeleteButton()
{
    // A row the user chose, not the cell the grid makes current when it takes the focus.
    const QModelIndex current = m_grid->currentIndex();
    setDeleteEnabled(current.isValid() && m_grid->selectionModel()->isRowSelected(current.row()) && !cellText(current.row(), 1).isEmpty());
}

void frmTableGrid::setDeleteEnabled(bool enabled)
{
    m_cmdDelete->setEnabled(enabled);
    Q_EMIT commandsChanged();
}

MdiChild::Commands frmTableGrid::commands() const
{
    Commands c;
    c.save = m_dataChanged;
    c.del = m_cmdDelete->isEnabled();
    return c;
}

bool frmTableGrid::queryUnload()
{
    if (!m_dataChanged)
        return true;
    return Prompt::message(tr("Discard Changes?"),
                           tr("The changes you made to %1 have not been saved.\r\n"
                              "Do you want to close and discard them?")
                               .arg(windowTitle()),
                           Prompt::Icon::Question, Prompt::Yes | Prompt::No, Prompt::No)
        == Prompt::Yes;
}
