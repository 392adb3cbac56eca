#pragma once

#include "CellEditorDelegate.h"

#include <QList>
#include <QVariant>

#include <functional>

// The criteria grid's in-cell editors: a drop-down ("cboEditBox") for the
// conjunction, the field, the condition and list values, a date picker
// ("dtpEditBox", "mm/dd/yyyy") for dates, and the shared text box for the rest.
// A list item may carry a key: the cell then shows the item's text and keeps
// the key under Qt::UserRole.
class CriteriaDelegate : public CellEditorDelegate
{
    Q_OBJECT

public:
    struct Choice
    {
        QString text;
        QVariant key;   // invalid: the text is the value
    };
    struct Editor
    {
        enum Kind { None, List, Date, Text } kind = None;
        QList<Choice> choices;
    };
    // Which editor a cell takes, asked each time one opens.
    using EditorFor = std::function<Editor(const QModelIndex &index)>;

    static constexpr const char *DateFormat = "MM/dd/yyyy";

    explicit CriteriaDelegate(EditorFor editorFor, QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;

private:
    EditorFor m_editorFor;
};
