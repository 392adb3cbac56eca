#include "CriteriaDelegate.h"

#include <QComboBox>
#include <QDateEdit>
#include <QPersistentModelIndex>
#include <QSignalBlocker>

CriteriaDelegate::CriteriaDelegate(EditorFor editorFor, QObject *parent) : CellEditorDelegate(parent), m_editorFor(std::move(editorFor)) { }

QWidget *CriteriaDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const Editor editor = m_editorFor(index);
    const QPersistentModelIndex cell(index);
    auto *self = const_cast<CriteriaDelegate *>(this);
    switch (editor.kind) {
    case Editor::None:
        return nullptr;
    case Editor::Text:
        return CellEditorDelegate::createEditor(parent, option, index);
    case Editor::List: {
        QComboBox *combo = listEditor(parent, index);
        const QSignalBlocker quiet(combo);
        for (const Choice &choice : editor.choices)
            combo->addItem(choice.text, choice.key);
        return combo;
    }
    case Editor::Date: {
        auto *picker = new QDateEdit(parent);
        picker->setObjectName(QStringLiteral("dtpEditBox"));
        picker->setDisplayFormat(QString::fromLatin1(DateFormat));
        picker->setCalendarPopup(true);
        picker->setFrame(false);
        connect(picker, &QDateEdit::dateChanged, self, [self, picker, cell] {
            Q_EMIT self->commitData(picker);
            Q_EMIT self->edited(cell);
        });
        return picker;
    }
    }
    return nullptr;
}

void CriteriaDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *combo = qobject_cast<QComboBox *>(editor)) {
        const QSignalBlocker block(combo);
        const QVariant key = index.data(Qt::UserRole);
        combo->setCurrentIndex(key.isValid() ? combo->findData(key)
                                             : combo->findText(index.data().toString(), Qt::MatchFixedString | Qt::MatchCaseSensitive));
    } else if (auto *picker = qobject_cast<QDateEdit *>(editor)) {
        // An empty cell offers today; leaving the cell writes the date shown.
        const QDate date = QDate::fromString(index.data().toString(), QString::fromLatin1(DateFormat));
        const QDate shown = date.isValid() ? date : QDate::currentDate();
        if (picker->date() != shown) {
            const QSignalBlocker block(picker);
            picker->setDate(shown);
        }
    } else {
        CellEditorDelegate::setEditorData(editor, index);
    }
}

void CriteriaDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    if (auto *combo = qobject_cast<QComboBox *>(editor)) {
        if (combo->currentIndex() < 0)
            return;
        // Each change of the cell sets the editor again from it: take both before writing either.
        const QString text = combo->currentText();
        const QVariant key = combo->currentData();
        if (key.isValid() || index.data(Qt::UserRole).isValid())
            model->setData(index, key, Qt::UserRole);
        model->setData(index, text);
    } else if (auto *picker = qobject_cast<QDateEdit *>(editor)) {
        model->setData(index, picker->date().toString(QString::fromLatin1(DateFormat)));
    } else {
        CellEditorDelegate::setModelData(editor, model, index);
    }
}
