#pragma once

#include "BoundFields.h"
#include "MdiChild.h"
#include "NavigationStrip.h"
#include "Prompt.h"

#include <QHash>
#include <QList>

class ClientSubGrid;
class QLabel;
class QTabWidget;
class Recordset;

// "Client Details": one client's record with its supporting lists in tabs.
class frmClientDetails : public MdiChild
{
    Q_OBJECT

public:
    // clientId: a client's ID, "ADD" for a new client, or empty for the first client.
    frmClientDetails(Workspace *main, const QString &clientId = {});

    Kind kind() const override { return Kind::Client; }
    bool DataChanged() const override { return m_dataChanged; }
    bool SaveCurrentRecord() override;
    void DeleteCurrentRecord() override;
    bool hasSQL() const override { return true; }
    QString SQL() const override { return m_sql; }
    void setSQL(const QString &sql) override;
    void ExecuteSQL() override;
    bool leaveCurrentRecord() override { return askToSave(); }
    int recordCount() const override;
    QString currentKey() const override { return m_clientId; }
    void showRecord(const QString &id) override;
    void activated() override;
    Commands commands() const override;

    QString ClientID() const { return m_clientId; }
    // "ADD" starts a new client; an ID moves to that client.
    void setClientID(const QString &id);
    Recordset *recordset() const { return m_rs; }

    enum Tab { NotesTab, EmployerTab, FamilyTab, FoodServiceTab, PaymentTab, IncomeExpensesTab, HealthTab, FEMATab, FormerAddressTab };

protected:
    bool queryUnload() override;

private:
    void buildForm();
    QWidget *buildTopPane();
    QWidget *buildTabs();
    QWidget *buildGridPage(Tab tab, const QString &noun);
    QWidget *bind(QWidget *control, const char *arrayName, const QString &field, const QString &caption, bool required, const QString &tip);
    QLabel *labelOf(QWidget *control) const { return m_fields->labelOf(control); }
    QWidget *control(const QString &field) const { return m_fields->control(field); }
    void fillCombos();

    void displayCurrent();
    void DisplayClient();
    void DisplayRecordPosition();
    void PopulateGrids();
    void FlagTabs();
    void ShowTabs();
    void showHousehold();
    void AddRecord();
    bool UpdateRecord();
    bool saveBody();
    bool UpdateFields();
    bool checkValue(QWidget *control, const QString &value, QString &message) const;
    bool AddressIsOnFile();
    bool SSNIsOnFile();
    bool offerDuplicates(bool found, const Prompt::PickRequest &request);
    void discardPendingValues();
    void goToClient(const QString &id);
    void navigate(NavigationStrip::Move move);
    void cmdAdd_Click();
    void markChanged();
    void PopulateCityState(QWidget *zip);
    bool validateOnLeave(QWidget *control);
    void focusControl(QWidget *control);
    bool askToSave();
    void refillForClient(const QString &clientId) override;

    Recordset *m_rs = nullptr;
    QString m_sql;
    QString m_clientId;
    bool m_dataChanged = false;
    int m_nextIndex = 0;
    BoundFields *m_fields;
    QHash<Tab, ClientSubGrid *> m_grids;

    QLabel *lblClientName = nullptr;
    QLabel *lblHousehold = nullptr;
    NavigationStrip *m_strip = nullptr;
    QTabWidget *tabData = nullptr;
    QList<QString> m_tabCaptions;
};
