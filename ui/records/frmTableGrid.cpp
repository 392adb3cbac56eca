#include "frmTableGrid.h"

#include "DataBinding.h"
#include "GridModel.h"
#include "Prompt.h"
#include "Recordset.h"
#include "SqlText.h"
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
#include <QScrollBar>
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

struct Reference
{
    const char *table;
    const char *column;
};

// The rows that refer to an item of each lookup table. Zip codes are copied into
// the records as text, so nothing refers to them.
QList<Reference> referencesTo(const QString &lookupTable)
{
    static const QHash<QString, QList<Reference>> references = {
        {QStringLiteral("EducationLevel"), {{"Client", "EducationLevelID"}, {"Family", "EducationLevelID"}}},
        {QStringLiteral("EthnicOrigin"), {{"Client", "EthnicOriginID"}, {"Family", "EthnicOriginID"}}},
        {QStringLiteral("ExpenseCategories"), {{"Expenses", "ExpenseCategoryID"}}},
        {QStringLiteral("FoodServiceTypes"), {{"FoodService", "FoodServiceTypeID"}}},
        {QStringLiteral("Housing"), {{"Client", "HousingID"}}},
        {QStringLiteral("IncomeSources"), {{"Income", "IncomeSourceID"}}},
        {QStringLiteral("MaritalStatus"), {{"Client", "MaritalStatusID"}}},
        {QStringLiteral("OtherAssistance"), {{"Client", "OtherAssistanceID"}}},
        {QStringLiteral("PaymentTypes"), {{"Payments", "PaymentsTypeID"}}},
        {QStringLiteral("Relationships"), {{"Family", "RelationshipID"}}},
        {QStringLiteral("ReligiousPreference"), {{"Client", "ReligiousPreferenceID"}}},
    };
    return references.value(lookupTable);
}

} // namespace

frmTableGrid::frmTableGrid(Workspace *main, const QString &tableName, const QString &tableKeyName, const QString &tableCaption,
                           const QString &columnHeaders)
    : MdiChild(main), m_tableName(tableName), m_tableKeyName(tableKeyName)
{
    setObjectName(QStringLiteral("frmTableGrid"));
    setWindowTitle(tableCaption);
    buildControls(columnHeaders);
    basErrorHandler::Guard(QStringLiteral("frmTableGrid.Form_Load"), [&] {
        for (const FieldInfo &field : basDatabase::Fields(m_tableName))
            if (field.name.compare(m_tableKeyName, Qt::CaseInsensitive) != 0)
                m_columns << field.name;
        m_model->setColumnCount(kFirstEditColumn + int(m_columns.size()));
        const auto spec = GridModel::parseColumnSpec(columnHeaders);
        for (int c = 0; c < m_model->columnCount(); ++c) {
            const QString heading = c < spec.size() ? spec.at(c).heading : (c >= kFirstEditColumn ? m_columns.at(c - kFirstEditColumn) : QString());
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
        if (m_tableName == kZipCodeTable)
            basTendmark::PopulateDataCombo(m_cboEditBox, QStringLiteral("States"), QStringLiteral("StateID"), QStringLiteral("StateCode"));
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
    layout->addWidget(m_grid, 1);

    m_txtEditBox = new QLineEdit(m_grid->viewport());
    m_txtEditBox->setObjectName(QStringLiteral("txtEditBox"));
    m_txtEditBox->setFrame(false);
    m_txtEditBox->hide();
    m_txtEditBox->installEventFilter(this);
    m_cboEditBox = new QComboBox(m_grid->viewport());
    m_cboEditBox->setObjectName(QStringLiteral("cboEditBox"));
    m_cboEditBox->hide();
    m_cboEditBox->installEventFilter(this);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    m_cmdSave = new QPushButton(QStringLiteral("&Save"), this);
    m_cmdSave->setObjectName(QStringLiteral("cmdSave"));
    m_cmdDelete = new QPushButton(QStringLiteral("&Delete"), this);
    m_cmdDelete->setObjectName(QStringLiteral("cmdDelete"));
    m_cmdCancel = new QPushButton(QStringLiteral("&Close"), this);
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
    connect(m_grid, &QTableView::clicked, this, [this](const QModelIndex &index) {
        if (!activeEditBox() && index.isValid())
            grdData_EnterCell(index.row(), index.column());
    });
    connect(m_txtEditBox, &QLineEdit::textEdited, this, [this](const QString &text) {
        setCellText(m_editRow, m_editColumn, text);
        setDataChanged(true);
    });
    connect(m_cboEditBox, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (m_inCellChange || index < 0)
            return;
        setCellText(m_editRow, m_editColumn, m_cboEditBox->currentText());
        markRow(m_editRow);
        setDataChanged(true);
    });
    for (QHeaderView *header : {m_grid->horizontalHeader(), m_grid->verticalHeader()})
        connect(header, &QHeaderView::sectionResized, this, &frmTableGrid::placeEditBox);
    for (QScrollBar *bar : {m_grid->horizontalScrollBar(), m_grid->verticalScrollBar()})
        connect(bar, &QScrollBar::valueChanged, this, &frmTableGrid::placeEditBox);
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
    QStringList select;
    for (const QString &column : m_columns)
        select << SqlText::id(column);
    QSqlQuery q = basDatabase::Execute(QStringLiteral("SELECT %1, %2 FROM %3 ORDER BY %1")
                                           .arg(SqlText::id(m_tableKeyName), select.join(QStringLiteral(", ")), SqlText::id(m_tableName)));
    while (q.next()) {
        QStringList texts{QString(), q.value(0).toString()};
        for (int i = 0; i < m_columns.size(); ++i)
            texts << q.value(i + 1).toString();
        addRow(texts);
    }
    addRow({QStringLiteral("*")});
    m_inCellChange = false;
    updateDeleteButton();
}

int frmTableGrid::newRecordRow() const { return m_model->rowCount() - 1; }

int frmTableGrid::lastColumn() const { return m_model->columnCount() - 1; }

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
        const QString sql = QStringLiteral("SELECT 1 FROM %1 WHERE %2 = ?").arg(SqlText::id(m_tableName), SqlText::id(m_tableKeyName));
        if (!basDatabase::Execute(sql, {key.toLongLong()}).next())
            Prompt::message(QStringLiteral("Application Error"), QStringLiteral("Error locating record in database."),
                            Prompt::Icon::Critical, Prompt::Ok);
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
    const QString text = cellText(row, column);
    QWidget *box = nullptr;
    if (m_tableName == kZipCodeTable && column == kZipStateColumn) {
        m_cboEditBox->setCurrentIndex(m_cboEditBox->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive));
        box = m_cboEditBox;
    } else {
        m_txtEditBox->setAlignment(Qt::Alignment(m_model->item(row, column)->textAlignment()) & Qt::AlignHorizontal_Mask);
        m_txtEditBox->setText(text);
        m_txtEditBox->selectAll();
        box = m_txtEditBox;
    }
    box->setProperty("Tag", text);
    placeEditBox();
    box->show();
    box->raise();
    box->setFocus();
    m_inCellChange = false;
}

QWidget *frmTableGrid::activeEditBox() const
{
    if (m_txtEditBox->isVisibleTo(m_grid))
        return m_txtEditBox;
    if (m_cboEditBox->isVisibleTo(m_grid))
        return m_cboEditBox;
    return nullptr;
}

void frmTableGrid::placeEditBox()
{
    if (m_editRow < 0 || m_editColumn < kFirstEditColumn)
        return;
    const QRect cell = m_grid->visualRect(m_model->index(m_editRow, m_editColumn));
    m_txtEditBox->setGeometry(cell);
    m_cboEditBox->setGeometry(cell);
}

void frmTableGrid::hideEditBox()
{
    const bool hadFocus = activeEditBox() && activeEditBox()->hasFocus();
    m_txtEditBox->hide();
    m_cboEditBox->hide();
    if (hadFocus)
        m_grid->setFocus();
}

bool frmTableGrid::validateCell(int row, int column, const QString &text)
{
    const QString caption = m_captions.value(column - kFirstEditColumn);
    if (text.trimmed().isEmpty()) {
        if (row == newRecordRow())
            return true;
        Prompt::message(QStringLiteral("Required Field"), QStringLiteral("Field cannot be empty."), Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    }
    QString message;
    if (!basDatabase::FieldIsValid(basDatabase::Field(m_tableName, m_columns.at(column - kFirstEditColumn)), text.trimmed(), message)) {
        Prompt::message(QStringLiteral("Data Entry Error"), caption + message, Prompt::Icon::Exclamation, Prompt::Ok);
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
        if (activeEditBox() == m_cboEditBox)
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
    if (watched == m_txtEditBox || watched == m_cboEditBox)
        return (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) ? false : editBoxKey(key->key());
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

bool frmTableGrid::SaveCurrentRecord() { return !m_dataChanged || cmdSave_Click(); }

bool frmTableGrid::cmdSave_Click()
{
    if (!finishEdit())
        return false;
    const int newRow = newRecordRow();
    const int editable = m_model->columnCount() - kFirstEditColumn;
    const int filled = ColumnsFilled(newRow);
    if (filled > 0 && filled < editable) {
        Prompt::message(QStringLiteral("Required Fields Missing"), QStringLiteral("Fields cannot be empty on new record."),
                        Prompt::Icon::Exclamation, Prompt::Ok);
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
        recordset.open(m_tableName, m_tableKeyName,
                       QStringLiteral("SELECT * FROM %1 ORDER BY %2").arg(SqlText::id(m_tableName), SqlText::id(m_tableKeyName)));
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
    m_statusBar->showMessage(QStringLiteral("Records updated."));
    setDataChanged(false);
    return true;
}

bool frmTableGrid::UpdateRow(Recordset &recordset, int row)
{
    const QString key = cellText(row, 1);
    if (key.isEmpty())
        recordset.addNew();
    else if (!recordset.find(key.toLongLong())) {
        Prompt::message(QStringLiteral("Application Error"), QStringLiteral("Error locating record in database."),
                        Prompt::Icon::Critical, Prompt::Ok);
        return false;
    }
    for (int i = 0; i < m_columns.size(); ++i)
        if (!basDatabase::UpdateDataField(recordset, m_columns.at(i), cellText(row, kFirstEditColumn + i).trimmed()))
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
    return basErrorHandler::Guard(QStringLiteral("frmTableGrid.TableInUse"), [&] {
        for (const Reference &r : referencesTo(m_tableName)) {
            const QString sql = QStringLiteral("SELECT 1 FROM %1 WHERE %2 = ? LIMIT 1")
                                    .arg(SqlText::id(QString::fromLatin1(r.table)), SqlText::id(QString::fromLatin1(r.column)));
            if (basDatabase::Execute(sql, {key.toLongLong()}).next())
                inUse = true;
        }
    });
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
        Prompt::message(QStringLiteral("Delete Record"),
                        QStringLiteral("This item is currently in use in the database.\r\n"
                                       "You must change all references to this item before it can be deleted."),
                        Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    if (Prompt::message(QStringLiteral("Delete Record"), QStringLiteral("Are you sure you want to delete '%1'?").arg(description),
                        Prompt::Icon::Question, Prompt::Yes | Prompt::No)
            == Prompt::Yes
        && basDatabase::DeleteItemFromTable(m_tableName, m_tableKeyName, key)) {
        hideEditBox();
        m_inCellChange = true;
        m_model->removeRow(row);
        m_inCellChange = false;
        m_editRow = -1;
        m_statusBar->showMessage(QStringLiteral("Record number %1 deleted.").arg(key));
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
    const QModelIndex current = m_grid->currentIndex();
    setDeleteEnabled(current.isValid() && !cellText(current.row(), 1).isEmpty());
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
    return Prompt::message(QStringLiteral("Discard Changes?"),
                           QStringLiteral("The changes you made to %1 have not been saved.\r\n"
                                          "Do you want to close and discard them?").arg(windowTitle()),
                           Prompt::Icon::Question, Prompt::Yes | Prompt::No) == Prompt::Yes;
}
