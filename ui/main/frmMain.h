#pragma once

#include "MdiChild.h"

#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>

class DatabaseSession;
class FilterCommand;
class QLabel;
class RecordEvents;
class SearchBar;
class StartPanel;
class frmHelp;

// The frame window: menus, toolbars, view bar, search bar and status bar around
// the area in which every other window opens. It keeps the register of those
// windows and follows the commands of the active one.
class frmMain : public QMainWindow, public Workspace
{
    Q_OBJECT

public:
    explicit frmMain(QWidget *parent = nullptr);
    ~frmMain() override;

    // Start-up: reads the settings and opens the remembered database, or the given file.
    void startUp(const QString &fileToOpen = {});

    QString databasePath() const;
    // Opens a database file. reportFailure: tell the user when it fails (else quiet).
    bool openDatabaseFile(const QString &path, bool reportFailure);
    bool closeDatabase();
    QStringList recentFiles() const;
    // Creates the demo database on first use (with a notice while it is built); its path, or empty after telling why not.
    QString prepareDemoDatabase();

    const OptionFlags &optionFlags() const override { return m_optionFlags; }
    QWidget *frame() override { return this; }
    void refreshOptionFlags();
    void DisplayOrganizationName();

    QAction *toolbarButton(const QString &key) const;
    QMdiArea *mdiArea() const { return m_mdiArea; }
    MdiChild *activeChild() const override;
    QList<MdiChild *> childWindows() const override;
    int openChildCount() const { return m_childCount; }
    QMdiSubWindow *addChild(MdiChild *child) override;
    void activateChild(MdiChild *child) override;
    void centreChild(QMdiSubWindow *sub) override;
    RecordEvents *recordEvents() override { return m_recordEvents; }
    void openRecordEditor(RecordKind editor, const QString &clientId, const QString &recordId) override;
    // The frame's own place on the screen, kept between runs.
    void restoreWindowGeometry();
    void saveWindowGeometry() const;
    // The search bar's hand-off: show this client (or volunteer) in the active window of its kind.
    void showClient(const QString &clientId);
    void showVolunteer(const QString &volunteerId);

Q_SIGNALS:
    // The search bar hands a record over to the client or volunteer window.
    void recordRequested(MdiChild::Kind kind, const QString &id);

public Q_SLOTS:
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

protected:
    void childClosed(MdiChild *child) override;
    void closeEvent(QCloseEvent *event) override;

private:
    // Opens the one window of type T, or brings it forward.
    template<typename T> void openSingle();
    bool closeAllWindows();
    void databaseChanged(const QString &path);
    void updateStartPanel();
    frmHelp *helpWindow();
    void subWindowActivated(QMdiSubWindow *window);
    // The toolbar and the search bar follow the commands of the current window.
    void showCommands(const MdiChild::Commands &commands);
    void childCommandsChanged();

    QMdiArea *m_mdiArea = nullptr;
    DatabaseSession *m_session = nullptr;
    QToolBar *m_toolBar = nullptr;
    SearchBar *m_searchBar = nullptr;
    StartPanel *m_startPanel = nullptr;
    frmHelp *m_help = nullptr;
    QLabel *m_statusPanel = nullptr;
    FilterCommand *m_filter = nullptr;
    RecordEvents *m_recordEvents = nullptr;
    OptionFlags m_optionFlags;
    int m_childCount = 0;
};
