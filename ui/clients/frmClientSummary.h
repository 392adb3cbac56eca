#pragma once

#include "MdiChild.h"
#include "basClient.h"
#include "MdiChild.h"

#include <QList>

class QLabel;
class QPushButton;
class QTableView;
class QTextEdit;
class Recordset;

// "Client Summary": steps through the clients one at a time, showing each
// client's particulars, family members, food services and payments.
class frmClientSummary : public MdiChild
{
    Q_OBJECT

public:
    explicit frmClientSummary(Workspace *main);

    Kind kind() const override { return Kind::Client; }
    void DeleteCurrentRecord() override;
    bool hasSQL() const override { return true; }
    QString SQL() const override { return m_sql; }
    void setSQL(const QString &sql) override;
    void ExecuteSQL() override;
    QString currentKey() const override { return m_clientId; }
    void showRecord(const QString &id) override { setClientID(id); }
    Commands commands() const override;

    QString ClientID() const { return m_clientId; }
    void setClientID(const QString &id);
    Recordset *recordset() const { return m_rs; }

private:
    struct SubGrid
    {
        QTableView *grid = nullptr;
        QString table;
        QString keyColumn;
        RecordKind editor;
        QString sql;
        QPushButton *add = nullptr;
        QPushButton *edit = nullptr;
        QPushButton *remove = nullptr;
    };

    QWidget *buildGrid(int index, const QString &caption, const QString &spec, const QString &table, const QString &keyColumn,
                       RecordKind editor, const QString &sql);
    void PopulateClient();
    void DisplayClient();
    void DisplayRecordPosition();
    void PopulateGrids();
    void DisableButtons();
    void navigate(NavigationKeys::Move move);
    void refillForClient(const QString &clientId) override;
    void cmdGridDataAdd_Click(int index);
    void cmdGridDataEdit_Click(int index);
    void cmdGridDataDelete_Click(int index);

    Recordset *m_rs = nullptr;
    QString m_sql;
    QString m_clientId;
    QList<SubGrid> m_grids;

    QTextEdit *rtbClientInfo = nullptr;
    QPushButton *cmdClientAdd = nullptr;
    QPushButton *cmdClientEdit = nullptr;
    QLabel *lblStatus = nullptr;
    QPushButton *cmdFirst = nullptr;
    QPushButton *cmdPrevious = nullptr;
    QPushButton *cmdNext = nullptr;
    QPushButton *cmdLast = nullptr;
};
