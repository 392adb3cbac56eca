#pragma once

#include "MdiChild.h"

class QPushButton;
class QTableView;
class GridModel;

// "Client Table": every client in a read-only list, sorted by last name; the
// starting point for adding, editing and deleting clients.
class frmClientGrid : public MdiChild
{
    Q_OBJECT

public:
    explicit frmClientGrid(Workspace *main);

    Kind kind() const override { return Kind::Client; }
    bool hasSQL() const override { return true; }
    QString SQL() const override { return m_baseSql; }
    void setSQL(const QString &sql) override;
    void ExecuteSQL() override;
    int recordCount() const override;
    void SortColumn(Qt::SortOrder order) override;
    QString currentKey() const override { return m_clientId; }
    void showRecord(const QString &id) override { setClientID(id); }
    void DeleteCurrentRecord() override { cmdClientDelete_Click(); }
    void activated() override;
    Commands commands() const override;

    QString ClientID() const { return m_clientId; }
    void setClientID(const QString &id);
    bool ColumnSelected() const { return m_columnSelected; }

    // The list's query around a base query: the columns shown, sorted by last name.

private:
    void refillForClient(const QString &clientId) override;
    void OpenRecordset();
    void RefreshData();
    void refill();   // RefreshData without the notice
    void GoToRow(const QString &id);
    void selectGridRow(int row);
    void highlightRow(int row);
    int sortColumn() const;   // the column the sort buttons sort by, -1 when none
    void clearSelection();
    void grdData_HeaderClicked(int column);
    void cmdClientAdd_Click();
    void cmdClientEdit_Click();
    void cmdClientDelete_Click();

    QTableView *grdData = nullptr;
    QPushButton *cmdClientAdd = nullptr;
    QPushButton *cmdClientEdit = nullptr;
    QPushButton *cmdClientDelete = nullptr;
    QPushButton *cmdRefresh = nullptr;
    QString m_clientId;
    QString m_baseSql;
    int m_selectedRow = -1;
    int m_selectedColumn = -1;
    bool m_busy = false;
    bool m_columnSelected = false;
};
