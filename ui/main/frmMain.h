#pragma once

#include "MdiChild.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <array>

class QAction;
class QComboBox;
class QLabel;
class QMenu;
class QToolBar;
class RecordEvents;
class StartPanel;
class frmHelp;
namespace SearchQueries { struct Query; }

// The frame window: menus, toolbars, view bar, search bar and status bar around
// the area in which every other window opens. Owns the open database's path.
class frmMain : public QMainWindow, public Workspace
{
    Q_OBJECT

public:
    struct LookupTable
    {
        const char *menuName;
        const char *caption;
        const char *table;
        const char *keyColumn;
        const char *columnSpec;
        const char *menuCaption;   // the caption with its access key
    };
    static const std::array<LookupTable, 12> &lookupTables();

    explicit frmMain(QWidget *parent = nullptr);
    ~frmMain() override;

    // Start-up: reads the settings and opens the remembered database, or the given file.
    void startUp(const QString &fileToOpen = {});

    QString databasePath() const { return m_databasePath; }
    const std::array<bool, 9> &optionFlags() const override { return m_optionFlags; }
    QWidget *frame() override { return this; }
    void refreshOptionFlags();

    // Opens a database file. reportFailure: tell the user when it fails (else quiet).
    bool openDatabaseFile(const QString &path, bool reportFailure);
    bool closeDatabase();
    // True when a database is open; otherwise says so and returns false.
    bool requireDatabase();

    void DisplayOrganizationName();
    bool GetClientFormOpen() const;
    void AddSearchForItem();
    void SearchForClient();
    void SearchForVolunteer();
    void GetSettings();
    void SaveSettings();
    QStringList recentFiles() const;

    QAction *toolbarButton(const QString &key) const;
    QMdiArea *mdiArea() const { return m_mdiArea; }
    MdiChild *activeChild() const override;
    QList<MdiChild *> childWindows() const override;
    int openChildCount() const { return m_childCount; }
    QMdiSubWindow *addChild(MdiChild *child) override;
    void activateChild(MdiChild *child) override;
    void centreChild(QMdiSubWindow *sub) override;
    // The frame's own place on the screen, kept between runs.
    void restoreWindowGeometry();
    void saveWindowGeometry() const;
    RecordEvents *recordEvents() override { return m_recordEvents; }
    void openRecordEditor(RecordKind editor, const QString &clientId, const QString &recordId) override;
    // The search bar's hand-off: show this client (or volunteer) in the active window of its kind.
    void showClient(const QString &clientId);
    void showVolunteer(const QString &volunteerId);
    // Creates the demo database on first use (with a notice while it is built); its path, or empty after telling why not.
    QString prepareDemoDatabase();
    frmHelp *helpWindow();

Q_SIGNALS:
    // The search bar hands a record over to the client or volunteer window.
    void recordRequested(MdiChild::Kind kind, const QString &id);

public Q_SLOTS:
    void mnuFileNew_Click();
    void openDemoDatabase();
    void mnuFileOpen_Click();
    void mnuFileClose_Click();
    void mnuFileSave_Click();
    void mnuFileDelete_Click();
    void mnuFilePrintLabels_Click();
    void mnuDataClientSummary_Click();
    void mnuDataClientDetails_Click();
    void mnuDataClientTable_Click();
    void mnuDataVolunteers_Click();
    void mnuDataExportClients_Click();
    void mnuDataExportVolunteers_Click();
    void mnuDataFilter_Click();
    void mnuDataSortSortAscending_Click();
    void mnuDataSortSortDescending_Click();
    void mnuToolsOptions_Click();
    void openLookupTable(int index);
    void openReport(const QString &menuName);
    void mnuHelpContents_Click();
    void mnuHelpIndex_Click();
    void mnuHelpAbout_Click();
    void cmdSearch_Click();

protected:
    void childClosed(MdiChild *child) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void buildMenus();
    void buildToolbars();
    void buildSearchBar();
    void buildStatusBar();
    void buildViewBar();
    void updateStartPanel();
    void runSearch(const SearchQueries::Query &query, MdiChild::Kind kind);
    QAction *addMenuAction(QMenu *menu, const QString &name, const QString &caption, const QKeySequence &shortcut = {});
    void notAvailableYet();
    void updateWindowMenu();
    void subWindowActivated(QMdiSubWindow *window);
    // The toolbar, the search bar and the menus follow the commands of the current window.
    void showCommands(const MdiChild::Commands &commands);
    void childCommandsChanged();
    void updateSearchButton();
    void setDatabasePath(const QString &path);

    QMdiArea *m_mdiArea = nullptr;
    QToolBar *m_toolBar = nullptr;
    QToolBar *m_searchBar = nullptr;
    QToolBar *m_viewBar = nullptr;
    StartPanel *m_startPanel = nullptr;
    frmHelp *m_help = nullptr;
    QLabel *m_statusPanel = nullptr;
    QComboBox *m_cboSearchOn = nullptr;
    QComboBox *m_cboSearchFor = nullptr;
    QMenu *m_windowMenu = nullptr;
    RecordEvents *m_recordEvents = nullptr;
    QString m_databasePath;
    std::array<bool, 9> m_optionFlags{};
    int m_childCount = 0;
};
