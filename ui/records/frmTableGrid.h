#pragma once

#include "LookupTables.h"
#include "MdiChild.h"

#include <QStringList>

class CellEditorDelegate;
class QModelIndex;
class QPushButton;
class QStandardItemModel;
class QStatusBar;
class QTableView;
class QWidget;
class Recordset;

// Edits one small lookup table in place, several rows at a time. Column 0 marks
// the new-record row ("*"), column 1 is the key, the rest are edited in place
// (the zip codes' state from a drop-down).
// Changed rows are marked and written together by Save.
class frmTableGrid : public MdiChild
{
    Q_OBJECT

public:
    frmTableGrid(Workspace *main, const LookupTables::LookupTable &table);

    const QString &TableName() const { return m_tableName; }
    const QString &TableKeyName() const { return m_tableKeyName; }

    bool DataChanged() const override { return m_dataChanged; }
    bool SaveCurrentRecord() override;
    void DeleteCurrentRecord() override;
    Commands commands() const override;

protected:
    bool queryUnload() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildControls(const QString &columnHeaders);
    void PopulateGrid();
    int newRecordRow() const;
    int lastColumn() const;
    QString cellText(int row, int column) const;
    void setCellText(int row, int column, const QString &text);
    bool rowMarked(int row) const;
    void markRow(int row);
    bool anyRowMarked() const;
    int ColumnsFilled(int row) const;

    void grdData_CurrentChanged(const QModelIndex &current, const QModelIndex &previous);
    void grdData_SelChange(int row);
    void grdData_EnterCell(int row, int column);
    QWidget *activeEditBox() const;
    void hideEditBox();
    bool EditBox_Validate();
    bool validateCell(int row, int column, const QString &text);
    bool finishEdit();   // validates and closes the open edit box; false leaves it open
    bool editBoxKey(int key);

    bool cmdSave_Click();
    bool UpdateRow(Recordset &recordset, int row);
    void cmdDelete_Click();
    bool TableInUse(const QString &key, bool &inUse);
    void setDataChanged(bool changed);
    void updateDeleteButton();
    void setDeleteEnabled(bool enabled);

    const LookupTables::LookupTable &m_table;
    QString m_tableName;
    QString m_tableKeyName;
    QStringList m_columns;   // the editable columns, grid columns 2..
    QStringList m_captions;   // their headings, for messages
    QTableView *m_grid = nullptr;
    QStandardItemModel *m_model = nullptr;
    CellEditorDelegate *m_delegate = nullptr;
    QPushButton *m_cmdSave = nullptr;
    QPushButton *m_cmdDelete = nullptr;
    QPushButton *m_cmdCancel = nullptr;
    QStatusBar *m_statusBar = nullptr;
    int m_editRow = -1;
    int m_editColumn = -1;
    bool m_inCellChange = false;
    bool m_dataChanged = false;
};
