#pragma once

#include "CriteriaDelegate.h"
#include "FilterFields.h"
#include "FilterStatement.h"

#include <QDialog>
#include <QHash>

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStandardItem;
class QStandardItemModel;
class QTabWidget;
class QTableView;

// Selects the records a list window shows: criteria in a grid (field,
// condition, value, joined by And or Or) turned into one SELECT statement, or a
// statement typed by hand. OK proves the statement on a read-only connection
// before the window gets it; a statement that fails keeps the dialog open.
class frmFilter : public QDialog
{
    Q_OBJECT

public:
    // What the user left in the dialog, to open it again where they were.
    struct State
    {
        QList<FilterStatement::Criterion> criteria;
        QString sqlText;
        bool handEdited = false;
    };

    enum Column { ColConjunction, ColField, ColCondition, ColValue, ColValue2, ColumnCount };

    explicit frmFilter(QWidget *parent = nullptr);

    QString TableName() const { return m_tableName; }
    // "Client" or "Volunteer": sets the captions and the field list, and starts afresh.
    void setTableName(const QString &tableName);
    QString SQL() const { return m_sql; }
    bool OKPressed() const { return m_okPressed; }

    State state() const;
    void setState(const State &state);
    // Every row of the grid, those without a field included.
    QList<FilterStatement::Criterion> criteria() const;

private:
    void FormatGrid();
    void PopulateGrid(const QList<FilterStatement::Criterion> &criteria);
    bool BuildSQL();
    bool handTyped() const;
    void setSqlText(const QString &text);
    void cmdOk_Click();
    void cmdCancel_Click();
    void cmdClear_Click();
    void SSTab_Click(int tab);
    void grdCriteria_CellChanged(QStandardItem *item);
    void updateRow(int row);
    void updateValueColumns();
    void ensureTrailingRow();
    void clearRow(int row);
    bool handleKey(int key);
    bool moveToNextCell(bool backwards);
    void closeCellEditor();
    void enterCell(const QModelIndex &index);
    void showEvent(QShowEvent *event) override;
    void showRowError(const FilterStatement::Result &result);

    const FilterFields::Field *fieldOf(int row) const;
    QString cell(int row, int column) const;
    CriteriaDelegate::Editor editorFor(const QModelIndex &index) const;
    QList<CriteriaDelegate::Choice> PopulateValues(const FilterFields::Field &field) const;
    bool eventFilter(QObject *watched, QEvent *event) override;

    QLabel *Label1 = nullptr;
    QTabWidget *SSTab = nullptr;
    QTableView *grdCriteria = nullptr;
    QStandardItemModel *m_model = nullptr;
    QPlainTextEdit *txtSQL = nullptr;
    QPushButton *cmdOk = nullptr;
    QPushButton *cmdCancel = nullptr;
    QPushButton *cmdClear = nullptr;

    QString m_tableName;
    QString m_sql;
    bool m_okPressed = false;
    bool m_handEdited = false;
    bool m_filling = false;   // the program, not the user, is changing the grid or the text
    mutable QHash<QString, QList<CriteriaDelegate::Choice>> m_lookups;
};
