#pragma once

#include "MdiChild.h"
#include "Prompt.h"
#include "basClient.h"

#include <QHash>
#include <QList>

class QLabel;
class QPushButton;
class QTabWidget;
class QTableView;
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
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct SubGrid
    {
        QTableView *grid = nullptr;
        Tab tab;
        QString table;
        QString keyColumn;
        RecordKind editor;
        QString sql;
    };
    struct GridButtons
    {
        QPushButton *add = nullptr;
        QPushButton *edit = nullptr;
        QPushButton *remove = nullptr;
    };

    void buildForm();
    QWidget *buildTopPane();
    QWidget *buildTabs();
    QWidget *buildGridPage(Tab tab, const QString &noun);
    QWidget *bind(QWidget *control, const char *arrayName, const QString &field, const QString &caption, bool required,
                  const QString &tip);
    QLabel *labelOf(QWidget *control) const;
    QWidget *control(const QString &field) const;
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
    void navigate(NavigationKeys::Move move);
    void cmdAdd_Click();
    void markChanged();
    void PopulateCityState(QWidget *zip);
    bool validateOnLeave(QWidget *control);
    void focusControl(QWidget *control);
    bool askToSave();
    void refillForClient(const QString &clientId) override;

    SubGrid *gridOfTab(Tab tab);
    void updateGridButtons(Tab tab);
    void cmdGridDataAdd_Click(Tab tab);
    void cmdGridDataEdit_Click(Tab tab);
    void cmdGridDataDelete_Click(Tab tab);

    Recordset *m_rs = nullptr;
    QString m_sql;
    QString m_clientId;
    bool m_dataChanged = false;
    bool m_loading = false;
    bool m_validating = false;
    int m_nextIndex = 0;
    QList<QWidget *> m_controls;
    QHash<QWidget *, QLabel *> m_labels;
    QList<SubGrid> m_grids;
    QHash<int, GridButtons> m_gridButtons;
    bool m_expensesActive = false;

    QLabel *lblClientName = nullptr;
    QLabel *lblHousehold = nullptr;
    QLabel *lblStatus = nullptr;
    QPushButton *cmdFirst = nullptr;
    QPushButton *cmdPrevious = nullptr;
    QPushButton *cmdNext = nullptr;
    QPushButton *cmdLast = nullptr;
    QPushButton *cmdAdd = nullptr;
    QTabWidget *tabData = nullptr;
    QList<QString> m_tabCaptions;
};
