#include "CellEditorDelegate.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPersistentModelIndex>
#include <QSignalBlocker>

CellEditorDelegate::CellEditorDelegate(QObject *parent) : QStyledItemDelegate(parent) { }

void CellEditorDelegate::setChoices(int column, const QStringList &choices)
{
    m_choices.insert(column, choices);
}

QComboBox *CellEditorDelegate::listEditor(QWidget *parent, const QModelIndex &index) const
{
    const QPersistentModelIndex cell(index);
    auto *self = const_cast<CellEditorDelegate *>(this);
    auto *combo = new QComboBox(parent);
    combo->setObjectName(QStringLiteral("cboEditBox"));
    connect(combo, &QComboBox::currentIndexChanged, self, [self, combo, cell](int chosen) {
        if (chosen < 0)
            return;
        Q_EMIT self->commitData(combo);
        Q_EMIT self->edited(cell);
    });
    return combo;
}

QWidget *CellEditorDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &index) const
{
    const QPersistentModelIndex cell(index);
    auto *self = const_cast<CellEditorDelegate *>(this);
    if (hasChoices(index.column())) {
        QComboBox *combo = listEditor(parent, index);
        const QSignalBlocker quiet(combo);
        combo->addItems(m_choices.value(index.column()));
        return combo;
    }
    auto *box = new QLineEdit(parent);
    box->setObjectName(QStringLiteral("txtEditBox"));
    box->setFrame(false);
    box->setAlignment(Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt()) & Qt::AlignHorizontal_Mask);
    connect(box, &QLineEdit::textEdited, self, [self, box, cell] {
        Q_EMIT self->commitData(box);
        Q_EMIT self->edited(cell);
    });
    return box;
}

// Also called whenever the cell changes under an open editor: it only follows
// a text that differs, so typing keeps its cursor.
void CellEditorDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    const QString text = index.data().toString();
    if (auto *combo = qobject_cast<QComboBox *>(editor)) {
        const QSignalBlocker block(combo);
        combo->setCurrentIndex(combo->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive));
    } else if (auto *box = qobject_cast<QLineEdit *>(editor); box && box->text() != text) {
        box->setText(text);
    }
}

void CellEditorDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (auto *combo = qobject_cast<QComboBox *>(editor))
        model->setData(index, combo->currentText());
    else if (auto *box = qobject_cast<QLineEdit *>(editor))
        model->setData(index, box->text());
}

void CellEditorDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &) const
{
    editor->setGeometry(option.rect);
}

bool CellEditorDelegate::eventFilter(QObject *watched, QEvent *event)
{
    auto *editor = qobject_cast<QWidget *>(watched);
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
            return false;
        return m_keyHandler && editor && m_keyHandler(editor, key->key());
    }
    // The owner closes editors; leaving one for a button or a prompt keeps it open.
    if (event->type() == QEvent::FocusOut)
        return false;
    return QStyledItemDelegate::eventFilter(watched, event);
}
