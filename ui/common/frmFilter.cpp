#include "frmFilter.h"

#include "LookupTables.h"
#include "Prompt.h"
#include "RecordScope.h"
#include "basDatabase.h"
#include "basErrorHandler.h"

#include <QFontDatabase>
#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QStandardItemModel>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

using FilterFields::Field;
using FilterStatement::Criterion;

namespace {

const QString kWhere = QStringLiteral("Where");
const QString kAnd = QStringLiteral("And");
const QString kOr = QStringLiteral("Or");

}   // namespace

frmFilter::frmFilter(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmFilter"));
    setModal(true);

    Label1 = new QLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));

    m_model = new QStandardItemModel(0, ColumnCount, this);
    grdCriteria = new QTableView(this);
    grdCriteria->setObjectName(QStringLiteral("grdCriteria"));
    grdCriteria->setModel(m_model);
    grdCriteria->setSelectionMode(QAbstractItemView::SingleSelection);
    grdCriteria->setEditTriggers(QAbstractItemView::AllEditTriggers);
    grdCriteria->verticalHeader()->hide();
    grdCriteria->horizontalHeader()->setStretchLastSection(true);
    grdCriteria->installEventFilter(this);
    auto *delegate = new CriteriaDelegate([this](const QModelIndex &index) { return editorFor(index); }, grdCriteria);
    delegate->setKeyHandler([this](QWidget *, int key) { return handleKey(key); });
    grdCriteria->setItemDelegate(delegate);
    FormatGrid();

    txtSQL = new QPlainTextEdit(this);
    txtSQL->setObjectName(QStringLiteral("txtSQL"));
    txtSQL->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    txtSQL->setTabChangesFocus(true);

    SSTab = new QTabWidget(this);
    SSTab->setObjectName(QStringLiteral("SSTab"));
    SSTab->addTab(grdCriteria, tr("Criteria"));
    SSTab->addTab(txtSQL, tr("SQL"));

    cmdClear = new QPushButton(tr("Clear"), this);
    cmdClear->setObjectName(QStringLiteral("cmdClear"));
    cmdCancel = new QPushButton(tr("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdOk = new QPushButton(tr("OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);

    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdClear);
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Label1);
    layout->addWidget(SSTab, 1);
    layout->addLayout(buttons);
    resize(760, 360);

    connect(m_model, &QStandardItemModel::itemChanged, this, &frmFilter::grdCriteria_CellChanged);
    connect(txtSQL, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_filling)
            m_handEdited = true;
    });
    connect(SSTab, &QTabWidget::currentChanged, this, &frmFilter::SSTab_Click);
    connect(cmdOk, &QPushButton::clicked, this, &frmFilter::cmdOk_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmFilter::cmdCancel_Click);
    connect(cmdClear, &QPushButton::clicked, this, &frmFilter::cmdClear_Click);
    setTableName(QStringLiteral("Client"));
}

void frmFilter::setTableName(const QString &tableName)
{
    m_tableName = tableName;
    const bool volunteers = tableName == QLatin1String("Volunteer");
    setWindowTitle(volunteers ? tr("Volunteer Filter") : tr("Client Filter"));
    Label1->setText(volunteers ? tr("Select Volunteer records that meet the following criteria:")
                               : tr("Select Client records that meet the following criteria:"));
    cmdClear_Click();
}

void frmFilter::FormatGrid()
{
    m_model->setHorizontalHeaderLabels({QString(), tr("Field"), tr("Condition"), tr("Value"), tr("Value")});
    for (int c = 0; c < ColumnCount; ++c)
        m_model->horizontalHeaderItem(c)->setTextAlignment(Qt::AlignCenter);
    const int widths[] = {60, 190, 200, 130, 130};
    for (int c = 0; c < ColumnCount; ++c)
        grdCriteria->setColumnWidth(c, widths[c]);
}

void frmFilter::PopulateGrid(const QList<Criterion> &criteria)
{
    closeCellEditor();
    {
        m_filling = true;
        const auto done = qScopeGuard([this] { m_filling = false; });
        m_model->setRowCount(0);
        for (const Criterion &c : criteria) {
            const Field *field = FilterFields::find(m_tableName, c.field);
            if (!field)
                continue;
            QList<QStandardItem *> items;
            for (const QString &text : {c.conjunction, c.field, c.condition, c.value, c.value2})
                items << new QStandardItem(text);
            if (field->type == FilterFields::Type::IDNumber) {
                // A list value is kept by its key and shown by its description.
                for (const CriteriaDelegate::Choice &choice : PopulateValues(*field))
                    if (choice.key.toString() == c.value)
                        items[ColValue]->setText(choice.text);
                items[ColValue]->setData(c.value, Qt::UserRole);
            }
            m_model->appendRow(items);
        }
        if (m_model->rowCount() > 0)
            m_model->item(0, ColConjunction)->setText(kWhere);
        ensureTrailingRow();
        for (int row = 0; row < m_model->rowCount(); ++row)
            updateRow(row);
    }
    updateValueColumns();
    enterCell(m_model->index(0, ColField));
}

QList<Criterion> frmFilter::criteria() const
{
    QList<Criterion> result;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        auto value = [this, row](int column) {
            const QVariant key = m_model->index(row, column).data(Qt::UserRole);
            return key.isValid() ? key.toString() : cell(row, column);
        };
        result.append({row == 0 ? kWhere : cell(row, ColConjunction), cell(row, ColField), cell(row, ColCondition), value(ColValue),
                       value(ColValue2)});
    }
    return result;
}

frmFilter::State frmFilter::state() const
{
    State s;
    for (const Criterion &c : criteria())
        if (!c.field.isEmpty())
            s.criteria << c;
    s.sqlText = txtSQL->toPlainText();
    s.handEdited = m_handEdited;
    return s;
}

void frmFilter::setState(const State &state)
{
    PopulateGrid(state.criteria);
    setSqlText(state.sqlText);
    m_handEdited = state.handEdited;
}

QString frmFilter::cell(int row, int column) const
{
    return m_model->index(row, column).data().toString();
}

const Field *frmFilter::fieldOf(int row) const
{
    return FilterFields::find(m_tableName, cell(row, ColField));
}

QList<CriteriaDelegate::Choice> frmFilter::PopulateValues(const Field &field) const
{
    const QString table = QString::fromLatin1(field.lookupTable);
    if (!m_lookups.contains(table)) {
        QList<CriteriaDelegate::Choice> choices;
        basErrorHandler::Guard(QStringLiteral("frmFilter.PopulateValues"), [&] {
            const Query query
                = LookupTables::choices(table, QString::fromLatin1(field.lookupKey), QString::fromLatin1(field.lookupDescription));
            QSqlQuery q = basDatabase::Execute(query.sql, query.binds);
            while (q.next())
                choices.append({q.value(1).toString(), q.value(0).toString()});
        });
        m_lookups.insert(table, choices);
    }
    return m_lookups.value(table);
}

CriteriaDelegate::Editor frmFilter::editorFor(const QModelIndex &index) const
{
    using Editor = CriteriaDelegate::Editor;
    const int row = index.row();
    auto list = [](const QStringList &texts) {
        Editor e {Editor::List, {}};
        for (const QString &text : texts)
            e.choices.append({text, {}});
        return e;
    };
    const Field *field = fieldOf(row);
    switch (index.column()) {
    case ColConjunction:
        return row == 0 ? Editor {} : list({kAnd, kOr});
    case ColField: {
        QStringList captions;
        for (const Field &f : FilterFields::forTable(m_tableName))
            captions << QString::fromLatin1(f.caption);
        return list(captions);
    }
    case ColCondition:
        return field ? list(FilterFields::conditions(field->type)) : Editor {};
    default:
        break;
    }
    const QString condition = cell(row, ColCondition);
    if (!field || !FilterFields::conditions(field->type).contains(condition) || !FilterFields::needsValue(condition)
        || (index.column() == ColValue2 && !FilterFields::isRange(condition)))
        return {};
    switch (field->type) {
    case FilterFields::Type::Date:
        return {Editor::Date, {}};
    case FilterFields::Type::IDNumber:
        return {Editor::List, PopulateValues(*field)};
    default:
        return {Editor::Text, {}};
    }
}

void frmFilter::grdCriteria_CellChanged(QStandardItem *item)
{
    if (m_filling)
        return;
    const int row = item->row();
    {
        m_filling = true;
        const auto done = qScopeGuard([this] { m_filling = false; });
        if (item->column() == ColField) {
            // A new field starts with its first condition and no value.
            const Field *field = fieldOf(row);
            const QStringList conditions = field ? FilterFields::conditions(field->type) : QStringList();
            if (!conditions.contains(cell(row, ColCondition)))
                m_model->item(row, ColCondition)->setText(conditions.value(0));
            for (int c : {ColValue, ColValue2}) {
                m_model->item(row, c)->setText(QString());
                m_model->item(row, c)->setData(QVariant(), Qt::UserRole);
            }
        }
        updateRow(row);
        ensureTrailingRow();
    }
    updateValueColumns();
}

// Cells that take no value are emptied and closed to editing.
void frmFilter::updateRow(int row)
{
    for (int c = 0; c < ColumnCount; ++c) {
        QStandardItem *item = m_model->item(row, c);
        const bool editable = editorFor(item->index()).kind != CriteriaDelegate::Editor::None;
        if (!editable && c >= ColValue && !item->text().isEmpty()) {
            item->setText(QString());
            item->setData(QVariant(), Qt::UserRole);
        }
        item->setFlags(editable ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable : Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        // A value the condition does not take is shaded.
        item->setBackground(!editable && c >= ColValue ? grdCriteria->palette().window() : QBrush());
    }
}

// The second value column shows only while some row's condition is a range.
void frmFilter::updateValueColumns()
{
    bool range = false;
    for (int row = 0; row < m_model->rowCount(); ++row)
        range = range || FilterFields::isRange(cell(row, ColCondition));
    grdCriteria->setColumnHidden(ColValue2, !range);
}

// The grid always ends with an empty "And" row for the next criterion.
void frmFilter::ensureTrailingRow()
{
    const int last = m_model->rowCount() - 1;
    if (last >= 0 && cell(last, ColField).isEmpty())
        return;
    QList<QStandardItem *> items;
    items << new QStandardItem(last < 0 ? kWhere : kAnd);
    for (int c = 1; c < ColumnCount; ++c)
        items << new QStandardItem;
    m_model->appendRow(items);
    updateRow(m_model->rowCount() - 1);
}

void frmFilter::clearRow(int row)
{
    if (row < 0 || row >= m_model->rowCount())
        return;
    closeCellEditor();
    {
        m_filling = true;
        const auto done = qScopeGuard([this] { m_filling = false; });
        if (row < m_model->rowCount() - 1) {
            m_model->removeRow(row);
        } else {
            for (int c = ColField; c < ColumnCount; ++c) {
                m_model->item(row, c)->setText(QString());
                m_model->item(row, c)->setData(QVariant(), Qt::UserRole);
            }
        }
        m_model->item(0, ColConjunction)->setText(kWhere);
        for (int r = 0; r < m_model->rowCount(); ++r)
            updateRow(r);
    }
    updateValueColumns();
    enterCell(m_model->index(qMin(row, m_model->rowCount() - 1), ColField));
}

// Places the cell's editor over it, even when the cell was already the current one.
void frmFilter::enterCell(const QModelIndex &index)
{
    closeCellEditor();
    grdCriteria->setCurrentIndex(index);
}

void frmFilter::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    grdCriteria->setFocus();
    const QModelIndex current = grdCriteria->currentIndex();
    enterCell(current.isValid() ? current : m_model->index(0, ColField));
}

void frmFilter::closeCellEditor()
{
    // Every change is already in the grid: leaving the cell closes its editor.
    grdCriteria->setCurrentIndex(QModelIndex());
}

// Tab and Enter move on through the cells that take a value, Shift+Tab back;
// Delete clears the row's criterion unless a text is being typed; Escape
// closes a cell's editor (what it holds is kept), and then the dialog.
bool frmFilter::handleKey(int key)
{
    switch (key) {
    case Qt::Key_Escape: {
        if (QApplication::focusWidget() == grdCriteria)
            return false;
        const QModelIndex current = grdCriteria->currentIndex();
        grdCriteria->setEditTriggers(QAbstractItemView::NoEditTriggers);
        closeCellEditor();
        grdCriteria->setCurrentIndex(current);
        grdCriteria->setEditTriggers(QAbstractItemView::AllEditTriggers);
        grdCriteria->setFocus();
        return true;
    }
    case Qt::Key_Tab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return moveToNextCell(false);
    case Qt::Key_Backtab:
        return moveToNextCell(true);
    case Qt::Key_Delete: {
        const QModelIndex current = grdCriteria->currentIndex();
        const auto kind = current.isValid() ? editorFor(current).kind : CriteriaDelegate::Editor::None;
        if (kind == CriteriaDelegate::Editor::Text || kind == CriteriaDelegate::Editor::Date) {
            if (QApplication::focusWidget() != grdCriteria)
                return false;
        }
        clearRow(current.row());
        return true;
    }
    default:
        return false;
    }
}

bool frmFilter::moveToNextCell(bool backwards)
{
    const QModelIndex current = grdCriteria->currentIndex();
    int row = current.isValid() ? current.row() : 0;
    int column = current.isValid() ? current.column() : -1;
    const int step = backwards ? -1 : 1;
    while (true) {
        column += step;
        if (column >= ColumnCount) {
            column = 0;
            ++row;
        } else if (column < 0) {
            column = ColumnCount - 1;
            --row;
        }
        if (row < 0 || row >= m_model->rowCount())
            return false;
        const QModelIndex next = m_model->index(row, column);
        if (!grdCriteria->isColumnHidden(column) && editorFor(next).kind != CriteriaDelegate::Editor::None) {
            grdCriteria->setFocus();
            grdCriteria->setCurrentIndex(next);
            return true;
        }
    }
}

bool frmFilter::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == grdCriteria && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (!(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) && handleKey(key->key()))
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void frmFilter::setSqlText(const QString &text)
{
    m_filling = true;
    const auto done = qScopeGuard([this] { m_filling = false; });
    txtSQL->setPlainText(text);
}

bool frmFilter::handTyped() const
{
    return m_handEdited && !txtSQL->toPlainText().trimmed().isEmpty();
}

bool frmFilter::BuildSQL()
{
    const FilterStatement::Result result = FilterStatement::build(m_tableName, criteria());
    if (!result.ok) {
        showRowError(result);
        return false;
    }
    setSqlText(result.sql);
    m_handEdited = false;
    return true;
}

void frmFilter::showRowError(const FilterStatement::Result &result)
{
    Prompt::message(windowTitle(), result.error, Prompt::Icon::Exclamation, Prompt::Ok);
    SSTab->setCurrentIndex(0);
    const int row = qBound(0, result.row, m_model->rowCount() - 1);
    const bool value = editorFor(m_model->index(row, ColValue)).kind != CriteriaDelegate::Editor::None;
    grdCriteria->setFocus();
    grdCriteria->selectionModel()->setCurrentIndex(m_model->index(row, value ? ColValue : ColCondition), QItemSelectionModel::NoUpdate);
    grdCriteria->selectionModel()->select(QItemSelection(m_model->index(row, 0), m_model->index(row, ColumnCount - 1)),
                                          QItemSelectionModel::ClearAndSelect);
}

void frmFilter::SSTab_Click(int tab)
{
    if (tab != 1 || handTyped())
        return;
    closeCellEditor();
    BuildSQL();
}

void frmFilter::cmdOk_Click()
{
    closeCellEditor();
    if (!handTyped() && !BuildSQL())
        return;
    const QString sql = txtSQL->toPlainText().trimmed();
    if (!sql.isEmpty()) {
        // Proved on the read-only connection in the very query the windows will run, which then
        // reads its rows once: compiling it finds every fault but a rare one while rows are read.
        QList<QVariantList> rows;
        QString reason;
        const QString key = m_tableName + QStringLiteral("ID");
        const QString wrapper = FilterStatement::matching(m_tableName, QStringLiteral("%1")) + QStringLiteral(" LIMIT 0");
        if (!RecordScope::runReadOnly(sql, m_tableName, {key}, wrapper, &rows, &reason)) {
            Prompt::message(tr("SQL Error"),
                            tr("Error in SQL syntax:") + QStringLiteral("\r\n") + reason + QStringLiteral("\r\n")
                                + tr("Correct syntax and try again."),
                            Prompt::Icon::Exclamation, Prompt::Ok);
            SSTab->setCurrentIndex(1);
            txtSQL->setFocus();
            return;
        }
    }
    m_sql = sql;
    m_okPressed = true;
    grdCriteria->setCurrentIndex(m_model->index(0, 0));
    accept();
}

void frmFilter::cmdCancel_Click()
{
    m_okPressed = false;
    reject();
}

void frmFilter::cmdClear_Click()
{
    PopulateGrid({});
    setSqlText(QString());
    m_handEdited = false;
    grdCriteria->setFocus();
}
