#pragma once

#include <QHash>
#include <QStringList>
#include <QStyledItemDelegate>

#include <functional>

// Edits grid cells in place: a text box ("txtEditBox") over the cell, or a
// drop-down ("cboEditBox") for columns given a list of choices. Every change is
// written to the cell as it is typed or chosen. The owner decides what the
// editing keys (Tab, Enter, Escape, arrows) do, and when editors close.
class QComboBox;

class CellEditorDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // Returns true when it has handled the key pressed in the editor.
    using KeyHandler = std::function<bool(QWidget *editor, int key)>;

    explicit CellEditorDelegate(QObject *parent = nullptr);

    void setChoices(int column, const QStringList &choices);
    bool hasChoices(int column) const { return m_choices.contains(column); }
    void setKeyHandler(KeyHandler handler) { m_keyHandler = std::move(handler); }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &index) const override;

Q_SIGNALS:
    // The user changed the cell's text through its editor.
    void edited(const QModelIndex &index);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    // The drop-down list editor ("cboEditBox"): choosing an item writes it to the cell at once.
    QComboBox *listEditor(QWidget *parent, const QModelIndex &index) const;

private:
    QHash<int, QStringList> m_choices;
    KeyHandler m_keyHandler;
};
