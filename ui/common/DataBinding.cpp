#include "DataBinding.h"

#include "FieldRules.h"
#include "GridModel.h"
#include "LookupTables.h"
#include "PhoneBox.h"
#include "Recordset.h"
#include "TmError.h"
#include "basDatabase.h"
#include "basRegistry.h"
#include "basTendmark.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateEdit>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QSqlQuery>
#include <QTableView>
#include <QTextEdit>

namespace basTendmark {

GridModel *Model(QTableView *grid)
{
    auto *model = qobject_cast<GridModel *>(grid->model());
    if (!model) {
        model = new GridModel(grid);
        grid->setModel(model);
    }
    return model;
}

void FormatDataGrid(QTableView *grid)
{
    GridModel *model = Model(grid);
    grid->setUpdatesEnabled(false);
    grid->horizontalHeader()->setMinimumSectionSize(12);
    model->setColumnSpec(grid->property("ColumnSpec").toString());
    const auto &columns = model->columns();
    for (int i = 0; i < columns.size(); ++i)
        if (columns.at(i).widthTwips >= 0)
            grid->setColumnWidth(i, TwipsToPixels(columns.at(i).widthTwips));
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setSelectionMode(QAbstractItemView::SingleSelection);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setAlternatingRowColors(true);
    grid->setWordWrap(false);
    grid->verticalHeader()->setVisible(false);
    grid->verticalHeader()->setDefaultSectionSize(grid->fontMetrics().height() + 6);
    grid->horizontalHeader()->setHighlightSections(false);
    grid->horizontalHeader()->setDefaultAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    grid->setUpdatesEnabled(true);
}

void PopulateDataGrid(QTableView *grid, const Query &query)
{
    GridModel *model = Model(grid);
    if (query.sql.isEmpty()) {
        model->clear();
        return;
    }
    model->setQuery(query);
}

void RemoveGridRow(QTableView *grid, int row)
{
    Model(grid)->removeDataRow(row);
}

void SelectRow(QTableView *grid, int row)
{
    QAbstractItemModel *model = grid->model();
    if (!model || row < 0 || row >= model->rowCount())
        return;
    grid->setUpdatesEnabled(false);
    grid->setCurrentIndex(model->index(row, 0));
    grid->selectionModel()->select(QItemSelection(model->index(row, 0), model->index(row, model->columnCount() - 1)),
                                   QItemSelectionModel::ClearAndSelect);
    grid->setUpdatesEnabled(true);
}

qint64 GridRowKey(QTableView *grid, int row)
{
    return Model(grid)->rowKey(row);
}

QString GridText(QTableView *grid, int row, int column)
{
    return Model(grid)->text(row, column);
}

void PopulateDataCombo(QComboBox *combo, const QString &table, const QString &keyColumn, const QString &displayColumn)
{
    const Query choices = LookupTables::choices(table, keyColumn, displayColumn);
    QSqlQuery q = basDatabase::Execute(choices.sql, choices.binds);
    const QSignalBlocker block(combo);
    combo->clear();
    while (q.next())
        combo->addItem(q.value(1).toString(), q.value(0).toLongLong());
    combo->setCurrentIndex(-1);
}

void PopulateLookupCombos(const QList<QWidget *> &controls, const QString &table)
{
    for (QWidget *control : controls)
        if (auto *combo = qobject_cast<QComboBox *>(control))
            if (const LookupTables::LookupTable *t = LookupTables::referencedBy(table, DataField(combo)))
                PopulateDataCombo(combo, t->name(), QLatin1String(t->keyColumn), QLatin1String(t->descriptionColumn));
}

void PopulateZipCombo(QComboBox *combo)
{
    if (const LookupTables::LookupTable *t = LookupTables::byName(QStringLiteral("ZipCode")))
        PopulateDataCombo(combo, t->name(), QLatin1String(t->keyColumn), QLatin1String(t->descriptionColumn));
}

int GetComboItemIndex(QComboBox *combo, const FieldInfo &field, const QString &value)
{
    if (value.isEmpty())
        return -1;
    if (field.type == FieldInfo::Type::Integer) {
        bool ok = false;
        const qint64 n = value.toLongLong(&ok);
        if (!ok)
            return -1;
        for (int i = 0; i < combo->count(); ++i)
            if (combo->itemData(i).toLongLong() == n)
                return i;
        return -1;
    }
    for (int i = 0; i < combo->count(); ++i)
        if (combo->itemText(i) == value)
            return i;
    return -1;
}

QString DataField(const QWidget *control)
{
    return control->property("DataField").toString();
}

bool IsRequired(const QWidget *control)
{
    return control->property("Tag").toString().startsWith(QLatin1Char('R'));
}

QString GetFieldValue(const Recordset &recordset, const QString &column)
{
    return basDatabase::DisplayText(recordset.field(column), recordset.value(column));
}

QString GetControlValue(const QWidget *control, const FieldInfo &field)
{
    if (const auto *combo = qobject_cast<const QComboBox *>(control)) {
        if (combo->isEditable())
            return FieldRules::clean(combo->currentText(), false);
        if (combo->currentIndex() < 0)
            return {};
        if (field.type == FieldInfo::Type::Integer)
            return combo->currentData().toString();
        return combo->currentText();
    }
    if (const auto *check = qobject_cast<const QAbstractButton *>(control))
        return check->isChecked() ? QStringLiteral("True") : QStringLiteral("False");
    if (const auto *date = qobject_cast<const QDateEdit *>(control))
        return FormatDate(date->date());
    if (const auto *phone = qobject_cast<const PhoneBox *>(control))
        return phone->digits();
    if (const auto *edit = qobject_cast<const QLineEdit *>(control)) {
        if (edit->inputMask().isEmpty())
            return FieldRules::clean(edit->text(), false);
        // A masked box: nothing typed leaves only the mask's punctuation.
        const QString text = edit->text();
        bool typed = false;
        for (QChar c : text)
            typed = typed || c.isLetterOrNumber();
        if (!typed)
            return {};
        return edit->inputMask().contains(QLatin1Char('/')) ? text.trimmed() : StripPhoneNumber(text);
    }
    if (const auto *plain = qobject_cast<const QPlainTextEdit *>(control))
        return FieldRules::clean(plain->toPlainText(), true);
    if (const auto *rich = qobject_cast<const QTextEdit *>(control))
        return FieldRules::clean(rich->toPlainText(), true);
    return {};
}

void SetControlValue(QWidget *control, const FieldInfo &field, const QString &text)
{
    if (auto *combo = qobject_cast<QComboBox *>(control)) {
        if (combo->isEditable())
            combo->setEditText(text);
        else
            combo->setCurrentIndex(GetComboItemIndex(combo, field, text));
    } else if (auto *check = qobject_cast<QAbstractButton *>(control)) {
        check->setChecked(text == QLatin1String("True"));
    } else if (auto *date = qobject_cast<QDateEdit *>(control)) {
        const QDate d = ParseDate(text);
        if (d.isValid())
            date->setDate(d);
    } else if (auto *edit = qobject_cast<QLineEdit *>(control)) {
        edit->setText(text);
    } else if (auto *plain = qobject_cast<QPlainTextEdit *>(control)) {
        plain->setPlainText(text);
    } else if (auto *rich = qobject_cast<QTextEdit *>(control)) {
        rich->setPlainText(text);
    }
}

void PopulateDataControls(const QList<QWidget *> &controls, const Recordset &recordset)
{
    for (QWidget *control : controls) {
        const QString column = DataField(control);
        SetControlValue(control, recordset.field(column), GetFieldValue(recordset, column));
    }
}

namespace {
QWidget *frameOf(QWidget *window)
{
    auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget());
    return sub ? static_cast<QWidget *>(sub) : window;
}
}   // namespace

// A window opens where it was last time, or one step down and right from the
// windows already open; either way it is pulled back wholly inside the area,
// never smaller than its fields need (the area scrolls to those).
void SetMDIChildDimensions(QWidget *window, QMdiArea *area)
{
    QWidget *frame = frameOf(window);
    const QSize inner = area ? area->viewport()->size() : QSize(1024, 700);
    const QString fallback = QStringLiteral(",,%1,%2").arg(int(inner.width() * 0.85)).arg(int(inner.height() * 0.75));
    const QStringList parts = basRegistry::GetString(basRegistry::SettingsKey(), window->objectName(), fallback).split(QLatin1Char(','));
    auto item = [&](int i, bool *ok) {
        *ok = false;
        return i < parts.size() ? parts.at(i).trimmed().toInt(ok) : 0;
    };
    bool hasLeft = false, hasTop = false, hasWidth = false, hasHeight = false;
    const int left = item(0, &hasLeft), top = item(1, &hasTop), width = item(2, &hasWidth), height = item(3, &hasHeight);
    QSize size = frame->size();
    if (hasWidth && width > 50)
        size.setWidth(width);
    if (hasHeight && height > 50)
        size.setHeight(height);
    size = size.boundedTo(inner).expandedTo(frame->minimumSizeHint());
    QPoint at;
    if (hasLeft && hasTop) {
        at = QPoint(left, top);
    } else {
        const int others = area ? int(area->subWindowList().size()) - 1 : 0;
        const int step = window->fontMetrics().height() + 8;
        at = QPoint(step, step) * (qMax(0, others) % 8);
    }
    at.setX(qBound(0, at.x(), qMax(0, inner.width() - size.width())));
    at.setY(qBound(0, at.y(), qMax(0, inner.height() - size.height())));
    frame->setGeometry(QRect(at, size));
}

void SaveMDIChildDimensions(const QWidget *window)
{
    auto *sub = qobject_cast<QMdiSubWindow *>(window->parentWidget());
    const QWidget *frame = sub ? static_cast<const QWidget *>(sub) : window;
    if (frame->isMinimized() || frame->isMaximized() || window->objectName().isEmpty())
        return;
    const QRect g = frame->geometry();
    basRegistry::SetString(basRegistry::SettingsKey(), window->objectName(),
                           QStringLiteral("%1,%2,%3,%4").arg(g.left()).arg(g.top()).arg(g.width()).arg(g.height()));
}

}   // namespace basTendmark
