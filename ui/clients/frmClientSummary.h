#pragma once

#include "MdiChild.h"
#include "NavigationStrip.h"

#include <QList>

class ClientSubGrid;
class QPushButton;
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
    int recordCount() const override;
    QString currentKey() const override { return m_clientId; }
    void showRecord(const QString &id) override { setClientID(id); }
    Commands commands() const override;

    QString ClientID() const { return m_clientId; }
    void setClientID(const QString &id);
    Recordset *recordset() const { return m_rs; }

private:
    QWidget *buildGrid(const QString &caption, RecordKind kind, const QString &spec);
    void PopulateClient();
    void DisplayClient();
    void DisplayRecordPosition();
    void PopulateGrids();
    void navigate(NavigationStrip::Move move);
    void refillForClient(const QString &clientId) override;

    Recordset *m_rs = nullptr;
    QString m_sql;
    QString m_clientId;
    QList<ClientSubGrid *> m_grids;

    QTextEdit *rtbClientInfo = nullptr;
    QPushButton *cmdClientAdd = nullptr;
    QPushButton *cmdClientEdit = nullptr;
    NavigationStrip *m_strip = nullptr;
};
