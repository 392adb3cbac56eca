#include "frmMain.h"

#include "AppIcons.h"
#include "DataBinding.h"
#include "DemoDatabase.h"
#include "MdiChild.h"
#include "Prompt.h"
#include "RecordEvents.h"
#include "Schema.h"
#include "SearchQueries.h"
#include "StartPanel.h"
#include "WindowArrangement.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basRegistry.h"
#include "basClient.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"
#include "frmClientSummary.h"
#include "frmFamilyMember.h"
#include "frmFoodService.h"
#include "frmHelp.h"
#include "frmIncomeExpense.h"
#include "frmMessage.h"
#include "frmOptions.h"
#include "frmPaymentHistory.h"
#include "frmTableGrid.h"
#include "frmVolunteer.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

namespace {

const QString kNoDatabase = QStringLiteral("There is no current database open.");
const QString kDatabaseFilter = QStringLiteral("Database Files (*.%1)").arg(QLatin1String(Schema::FileSuffix));
constexpr int kRecentFilesKept = 6;

} // namespace

const std::array<frmMain::LookupTable, 12> &frmMain::lookupTables()
{
    static const std::array<LookupTable, 12> tables = {{
        {"mnuToolsTablesEducationLevel", "Education Level", "EducationLevel", "EducationLevelID", "^ID,800|^Education Level,5200", "&Education Level"},
        {"mnuToolsTablesEthnicOrigin", "Ethnic Origin", "EthnicOrigin", "EthnicOriginID", "^ID,800|^Ethnic Origin,5200", "E&thnic Origin"},
        {"mnuToolsTablesExpenseCategories", "Expense Categories", "ExpenseCategories", "ExpenseCategoryID", "^ID,800|^Expense Categories,5200", "E&xpense Categories"},
        {"mnuToolsTablesFoodServiceTypes", "Food Service Types", "FoodServiceTypes", "FoodServiceTypeID", "^ID,800|^Food Service Types,5200", "&Food Service Types"},
        {"mnuToolsTablesHousing", "Housing", "Housing", "HousingID", "^ID,800|^Housing,5200", "&Housing"},
        {"mnuToolsTablesIncomeSources", "Income Sources", "IncomeSources", "IncomeSourceID", ">ID,800|^Income Sources,5200", "&Income Sources"},
        {"mnuToolsTablesMaritalStatus", "Marital Status", "MaritalStatus", "MaritalStatusID", "^ID,800|^Marital Status,5200", "&Marital Status"},
        {"mnuToolsTablesOtherAssistance", "Other Assistance", "OtherAssistance", "OtherAssistanceID", "^ID,800|^Other Types of Assistance,5200", "&Other Assistance"},
        {"mnuToolsTablesPaymentTypes", "Payment Types", "PaymentTypes", "PaymentTypeID", "^ID,800|^Payment Types,5200", "&Payment Types"},
        {"mnuToolsTablesRelationships", "Family Relationships", "Relationships", "RelationshipID", "^ID,800|^Relationship,5000", "Family &Relationships"},
        {"mnuToolsTablesReligiousPreference", "Religious Preference", "ReligiousPreference", "ReligiousPreferenceID", "^ID,800|^Religious Preference,5200", "Re&ligious Preference"},
        {"mnuToolsTablesZipCodes", "Zip Codes", "ZipCode", "ZipCodeID", "^ID,800|^Zip Code,1100|<City,3000|^State,1100", "&Zip Codes"},
    }};
    return tables;
}

frmMain::frmMain(QWidget *parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("TendMark"));
    AppIcons::useIconTheme();
    setWindowIcon(AppIcons::application());
    m_optionFlags.fill(true);
    m_recordEvents = new RecordEvents(this);
    m_mdiArea = new QMdiArea(this);
    m_mdiArea->setObjectName(QStringLiteral("mdiArea"));
    m_mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(m_mdiArea);
    connect(m_mdiArea, &QMdiArea::subWindowActivated, this, &frmMain::subWindowActivated);
    buildToolbars();
    buildSearchBar();
    buildViewBar();
    buildMenus();
    buildStatusBar();
    m_startPanel = new StartPanel(m_mdiArea);
    connect(m_startPanel, &StartPanel::newDatabaseRequested, this, &frmMain::mnuFileNew_Click);
    connect(m_startPanel, &StartPanel::openDatabaseRequested, this, &frmMain::mnuFileOpen_Click);
    connect(m_startPanel, &StartPanel::demoRequested, this, &frmMain::openDemoDatabase);
    connect(m_startPanel, &StartPanel::recentRequested, this, [this](const QString &path) { openDatabaseFile(path, true); });
    updateStartPanel();
    showCommands({});
    resize(1100, 760);
}

frmMain::~frmMain()
{
    // The child windows outlive this object by a moment: they must not call back into it.
    disconnect(m_mdiArea, nullptr, this, nullptr);
    for (MdiChild *child : findChildren<MdiChild *>())
        child->detach();
}

QAction *frmMain::addMenuAction(QMenu *menu, const QString &name, const QString &caption, const QKeySequence &shortcut)
{
    QAction *a = menu->addAction(caption);
    a->setObjectName(name);
    if (!shortcut.isEmpty())
        a->setShortcut(shortcut);
    return a;
}

void frmMain::buildToolbars()
{
    m_toolBar = addToolBar(QStringLiteral("Toolbar"));
    m_toolBar->setObjectName(QStringLiteral("tbrToolBar1"));
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    m_toolBar->setMovable(false);
    m_toolBar->setIconSize(QSize(24, 24));
    struct Button { const char *key; const char *themeIcon; QStyle::StandardPixmap icon; const char *tip; };
    const Button buttons[] = {
        {"Open", "document-open", QStyle::SP_DialogOpenButton, "Open a database file"},
        {"Save", "document-save", QStyle::SP_DialogSaveButton, "Save the current record"},
        {"Delete", "edit-delete", QStyle::SP_TrashIcon, "Delete the current record"},
        {"Filter", "edit-find-replace", QStyle::SP_FileDialogContentsView, "Filter the current list"},
        {"Sort Ascending", "view-sort-ascending", QStyle::SP_ArrowUp, "Sort the selected column, A to Z"},
        {"Sort Descending", "view-sort-descending", QStyle::SP_ArrowDown, "Sort the selected column, Z to A"},
    };
    for (const Button &b : buttons) {
        QAction *a = m_toolBar->addAction(AppIcons::icon(b.themeIcon, b.icon), QString::fromLatin1(b.key));
        a->setObjectName(QStringLiteral("tbr") + QString::fromLatin1(b.key).remove(QLatin1Char(' ')));
        a->setProperty("Key", QString::fromLatin1(b.key));
        a->setToolTip(QString::fromLatin1(b.tip));
        if (QLatin1String(b.key) == QLatin1String("Delete") || QLatin1String(b.key) == QLatin1String("Filter"))
            m_toolBar->insertSeparator(a);
    }
    connect(toolbarButton(QStringLiteral("Open")), &QAction::triggered, this, &frmMain::mnuFileOpen_Click);
    connect(toolbarButton(QStringLiteral("Save")), &QAction::triggered, this, &frmMain::mnuFileSave_Click);
    connect(toolbarButton(QStringLiteral("Delete")), &QAction::triggered, this, &frmMain::mnuFileDelete_Click);
    connect(toolbarButton(QStringLiteral("Filter")), &QAction::triggered, this, &frmMain::mnuDataFilter_Click);
    connect(toolbarButton(QStringLiteral("Sort Ascending")), &QAction::triggered, this, &frmMain::mnuDataSortSortAscending_Click);
    connect(toolbarButton(QStringLiteral("Sort Descending")), &QAction::triggered, this, &frmMain::mnuDataSortSortDescending_Click);
}

void frmMain::buildSearchBar()
{
    m_searchBar = new QToolBar(QStringLiteral("Search Bar"), this);
    m_searchBar->setObjectName(QStringLiteral("tbrToolBar2"));
    m_searchBar->setMovable(false);
    addToolBarBreak();
    addToolBar(m_searchBar);
    auto *searchOnCaption = new QLabel(QStringLiteral(" Search on: "), m_searchBar);
    searchOnCaption->setObjectName(QStringLiteral("txtSearchOnCaption"));
    m_cboSearchOn = new QComboBox(m_searchBar);
    m_cboSearchOn->setObjectName(QStringLiteral("cboSearchOn"));
    m_cboSearchOn->setMinimumContentsLength(24);
    auto *searchForCaption = new QLabel(QStringLiteral("  Search for: "), m_searchBar);
    searchForCaption->setObjectName(QStringLiteral("txtSearchForCaption"));
    m_cboSearchFor = new QComboBox(m_searchBar);
    m_cboSearchFor->setObjectName(QStringLiteral("cboSearchFor"));
    m_cboSearchFor->setEditable(true);
    m_cboSearchFor->setInsertPolicy(QComboBox::NoInsert);
    m_cboSearchFor->setMinimumContentsLength(24);
    m_searchBar->addWidget(searchOnCaption);
    m_searchBar->addWidget(m_cboSearchOn);
    m_searchBar->addWidget(searchForCaption);
    m_searchBar->addWidget(m_cboSearchFor);
    m_searchBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    QAction *search = m_searchBar->addAction(AppIcons::icon("edit-find", QStyle::SP_FileDialogContentsView), QStringLiteral("Search"));
    search->setObjectName(QStringLiteral("tbrSearch"));
    search->setProperty("Key", QStringLiteral("Search"));
    search->setToolTip(QStringLiteral("Find the records that match"));
    connect(search, &QAction::triggered, this, &frmMain::cmdSearch_Click);
    connect(m_cboSearchOn, &QComboBox::currentTextChanged, this, &frmMain::updateSearchButton);
    connect(m_cboSearchFor, &QComboBox::editTextChanged, this, &frmMain::updateSearchButton);
    connect(m_cboSearchFor->lineEdit(), &QLineEdit::returnPressed, this, [this] {
        if (QAction *s = toolbarButton(QStringLiteral("Search")); s && s->isEnabled())
            cmdSearch_Click();
    });
}

void frmMain::buildStatusBar()
{
    statusBar()->setObjectName(QStringLiteral("sbrStatusBar"));
    m_statusPanel = new QLabel(this);
    m_statusPanel->setObjectName(QStringLiteral("Status"));
    statusBar()->addWidget(m_statusPanel, 1);
}

void frmMain::buildViewBar()
{
    m_viewBar = new QToolBar(QStringLiteral("View Bar"), this);
    m_viewBar->setObjectName(QStringLiteral("picViewBar"));
    m_viewBar->setMovable(false);
    m_viewBar->setOrientation(Qt::Vertical);
    m_viewBar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    m_viewBar->setIconSize(QSize(48, 48));
    addToolBar(Qt::LeftToolBarArea, m_viewBar);
    struct Shortcut { const char *name; const char *caption; const char *themeIcon; QStyle::StandardPixmap icon; const char *menu; };
    const Shortcut shortcuts[] = {
        {"ViewBarClientSummary", "Client\nSummary", "x-office-address-book", QStyle::SP_FileDialogInfoView, "mnuDataClientSummary"},
        {"ViewBarClientDetails", "Client\nDetails", "contact-new", QStyle::SP_FileDialogDetailedView, "mnuDataClientDetails"},
        {"ViewBarClientTable", "Client\nTable", "x-office-spreadsheet", QStyle::SP_FileDialogListView, "mnuDataClientTable"},
        {"ViewBarVolunteers", "Volunteers", "system-users", QStyle::SP_DirHomeIcon, "mnuDataVolunteers"},
    };
    for (const Shortcut &s : shortcuts) {
        QAction *a = m_viewBar->addAction(AppIcons::icon(s.themeIcon, s.icon), QString::fromLatin1(s.caption));
        a->setObjectName(QString::fromLatin1(s.name));
        a->setToolTip(QString::fromLatin1(s.caption).replace(QLatin1Char('\n'), QLatin1Char(' ')));
        const QString menuName = QString::fromLatin1(s.menu);
        connect(a, &QAction::triggered, this, [this, menuName] {
            if (QAction *menuAction = findChild<QAction *>(menuName))
                menuAction->trigger();
        });
    }
}

void frmMain::buildMenus()
{
    QMenu *file = menuBar()->addMenu(QStringLiteral("&File"));
    file->setObjectName(QStringLiteral("mnuFile"));
    connect(addMenuAction(file, QStringLiteral("mnuFileNew"), QStringLiteral("&New Database..."), QKeySequence::New),
            &QAction::triggered, this, &frmMain::mnuFileNew_Click);
    connect(addMenuAction(file, QStringLiteral("mnuFileOpen"), QStringLiteral("&Open..."), QKeySequence::Open),
            &QAction::triggered, this, &frmMain::mnuFileOpen_Click);
    connect(addMenuAction(file, QStringLiteral("mnuFileClose"), QStringLiteral("&Close")), &QAction::triggered, this,
            &frmMain::mnuFileClose_Click);
    file->addSeparator();
    connect(addMenuAction(file, QStringLiteral("mnuFileSave"), QStringLiteral("&Save"), QKeySequence::Save),
            &QAction::triggered, this, &frmMain::mnuFileSave_Click);
    connect(addMenuAction(file, QStringLiteral("mnuFileDelete"), QStringLiteral("&Delete")), &QAction::triggered, this,
            &frmMain::mnuFileDelete_Click);
    file->addSeparator();
    connect(addMenuAction(file, QStringLiteral("mnuFilePrintLabels"), QStringLiteral("Print &Labels..."), QKeySequence::Print),
            &QAction::triggered, this, &frmMain::mnuFilePrintLabels_Click);
    file->addSeparator();
    connect(addMenuAction(file, QStringLiteral("mnuFileExit"), QStringLiteral("E&xit"), QKeySequence(Qt::ALT | Qt::Key_F4)),
            &QAction::triggered, this, &QWidget::close);

    QMenu *data = menuBar()->addMenu(QStringLiteral("&Data"));
    data->setObjectName(QStringLiteral("mnuData"));
    connect(addMenuAction(data, QStringLiteral("mnuDataClientSummary"), QStringLiteral("Client &Summary"), QKeySequence(Qt::CTRL | Qt::Key_1)),
            &QAction::triggered, this, &frmMain::mnuDataClientSummary_Click);
    connect(addMenuAction(data, QStringLiteral("mnuDataClientDetails"), QStringLiteral("Client &Details"), QKeySequence(Qt::CTRL | Qt::Key_2)),
            &QAction::triggered, this, &frmMain::mnuDataClientDetails_Click);
    connect(addMenuAction(data, QStringLiteral("mnuDataClientTable"), QStringLiteral("Client &Table"), QKeySequence(Qt::CTRL | Qt::Key_3)),
            &QAction::triggered, this, &frmMain::mnuDataClientTable_Click);
    connect(addMenuAction(data, QStringLiteral("mnuDataVolunteers"), QStringLiteral("&Volunteers"), QKeySequence(Qt::CTRL | Qt::Key_4)),
            &QAction::triggered, this, &frmMain::mnuDataVolunteers_Click);
    data->addSeparator();
    QMenu *exportMenu = data->addMenu(QStringLiteral("&Export"));
    exportMenu->menuAction()->setObjectName(QStringLiteral("mnuDataExport"));
    connect(addMenuAction(exportMenu, QStringLiteral("mnuDataExportClients"), QStringLiteral("&Clients...")), &QAction::triggered,
            this, &frmMain::mnuDataExportClients_Click);
    connect(addMenuAction(exportMenu, QStringLiteral("mnuDataExportVolunteers"), QStringLiteral("&Volunteers...")),
            &QAction::triggered, this, &frmMain::mnuDataExportVolunteers_Click);
    data->addSeparator();
    connect(addMenuAction(data, QStringLiteral("mnuDataFilter"), QStringLiteral("&Filter..."), QKeySequence(Qt::CTRL | Qt::Key_L)),
            &QAction::triggered, this, &frmMain::mnuDataFilter_Click);
    QMenu *sort = data->addMenu(QStringLiteral("S&ort"));
    sort->menuAction()->setObjectName(QStringLiteral("mnuDataSort"));
    connect(addMenuAction(sort, QStringLiteral("mnuDataSortSortAscending"), QStringLiteral("Sort &Ascending")),
            &QAction::triggered, this, &frmMain::mnuDataSortSortAscending_Click);
    connect(addMenuAction(sort, QStringLiteral("mnuDataSortSortDescending"), QStringLiteral("Sort &Descending")),
            &QAction::triggered, this, &frmMain::mnuDataSortSortDescending_Click);

    QMenu *view = menuBar()->addMenu(QStringLiteral("&View"));
    view->setObjectName(QStringLiteral("mnuView"));
    auto addToggle = [&](const QString &name, const QString &caption, QWidget *bar) {
        QAction *a = addMenuAction(view, name, caption);
        a->setCheckable(true);
        a->setChecked(true);
        connect(a, &QAction::toggled, bar, &QWidget::setVisible);
        return a;
    };
    addToggle(QStringLiteral("mnuViewToolbar"), QStringLiteral("&Toolbar"), m_toolBar);
    addToggle(QStringLiteral("mnuViewSearchbar"), QStringLiteral("&Search Bar"), m_searchBar);
    addToggle(QStringLiteral("mnuViewViewbar"), QStringLiteral("&View Bar"), m_viewBar);
    addToggle(QStringLiteral("mnuViewStatusbar"), QStringLiteral("Status &Bar"), statusBar());

    QMenu *reports = menuBar()->addMenu(QStringLiteral("&Reports"));
    reports->setObjectName(QStringLiteral("mnuReports"));
    const std::pair<const char *, const char *> reportEntries[] = {
        {"mnuReportsClientDetail", "Client &Detail..."},
        {"mnuReportsClientList", "Client &List..."},
        {"mnuReportsDemographics", "D&emographics..."},
        {"mnuReportsFoodServiceByClient", "&Food Service History By Client..."},
        {"mnuReportsGeographicSummary", "&Geographic Summary..."},
        {"mnuReportsGroceryLog", "G&rocery Log..."},
        {"mnuReportsPaymentHistoryByClient", "&Payment History By Client..."},
        {"mnuReportsVolunteerDetail", "&Volunteer Detail..."},
        {"mnuReportsVolunteerList", "Volunteer L&ist..."},
    };
    for (const auto &[name, caption] : reportEntries) {
        const QString menuName = QString::fromLatin1(name);
        connect(addMenuAction(reports, menuName, QString::fromLatin1(caption)), &QAction::triggered, this,
                [this, menuName] { openReport(menuName); });
    }

    QMenu *tools = menuBar()->addMenu(QStringLiteral("&Tools"));
    tools->setObjectName(QStringLiteral("mnuTools"));
    QMenu *tables = tools->addMenu(QStringLiteral("&Tables"));
    tables->menuAction()->setObjectName(QStringLiteral("mnuToolsTables"));
    for (int i = 0; i < int(lookupTables().size()); ++i) {
        const LookupTable &t = lookupTables()[i];
        connect(addMenuAction(tables, QString::fromLatin1(t.menuName), QString::fromLatin1(t.menuCaption)), &QAction::triggered,
                this, [this, i] { openLookupTable(i); });
    }
    tools->addSeparator();
    connect(addMenuAction(tools, QStringLiteral("mnuToolsOptions"), QStringLiteral("&Options...")), &QAction::triggered, this,
            &frmMain::mnuToolsOptions_Click);

    m_windowMenu = menuBar()->addMenu(QStringLiteral("&Window"));
    m_windowMenu->setObjectName(QStringLiteral("mnuWindow"));
    connect(m_windowMenu, &QMenu::aboutToShow, this, &frmMain::updateWindowMenu);
    updateWindowMenu();

    QMenu *help = menuBar()->addMenu(QStringLiteral("&Help"));
    help->setObjectName(QStringLiteral("mnuHelp"));
    connect(addMenuAction(help, QStringLiteral("mnuHelpContents"), QStringLiteral("&Contents"), QKeySequence::HelpContents),
            &QAction::triggered, this, &frmMain::mnuHelpContents_Click);
    connect(addMenuAction(help, QStringLiteral("mnuHelpIndex"), QStringLiteral("&Index")), &QAction::triggered, this,
            &frmMain::mnuHelpIndex_Click);
    help->addSeparator();
    connect(addMenuAction(help, QStringLiteral("mnuHelpAbout"), QStringLiteral("&About TendMark...")), &QAction::triggered,
            this, &frmMain::mnuHelpAbout_Click);
}

void frmMain::updateWindowMenu()
{
    m_windowMenu->clear();
    connect(addMenuAction(m_windowMenu, QStringLiteral("mnuWindowCascade"), QStringLiteral("&Cascade")), &QAction::triggered,
            m_mdiArea, &QMdiArea::cascadeSubWindows);
    connect(addMenuAction(m_windowMenu, QStringLiteral("mnuWindowTileHorizontal"), QStringLiteral("Tile &Horizontally")),
            &QAction::triggered, this, [this] { WindowArrangement::TileHorizontally(m_mdiArea); });
    connect(addMenuAction(m_windowMenu, QStringLiteral("mnuWindowTileVertical"), QStringLiteral("Tile &Vertically")),
            &QAction::triggered, this, [this] { WindowArrangement::TileVertically(m_mdiArea); });
    connect(addMenuAction(m_windowMenu, QStringLiteral("mnuWindowArrangeIcons"), QStringLiteral("&Arrange Icons")),
            &QAction::triggered, this, [this] { WindowArrangement::ArrangeIcons(m_mdiArea); });
    const QList<QMdiSubWindow *> windows = m_mdiArea->subWindowList();
    if (!windows.isEmpty())
        m_windowMenu->addSeparator();
    int n = 1;
    for (QMdiSubWindow *sub : windows) {
        QAction *a = m_windowMenu->addAction(QStringLiteral("&%1 %2").arg(n++).arg(sub->windowTitle()));
        a->setCheckable(true);
        a->setChecked(sub == m_mdiArea->activeSubWindow());
        connect(a, &QAction::triggered, this, [this, sub] { m_mdiArea->setActiveSubWindow(sub); });
    }
}

QAction *frmMain::toolbarButton(const QString &key) const
{
    for (QToolBar *bar : {m_toolBar, m_searchBar})
        for (QAction *a : bar->actions())
            if (a->property("Key").toString() == key)
                return a;
    return nullptr;
}

void frmMain::startUp(const QString &fileToOpen)
{
    GetSettings();
    const QString path = fileToOpen.isEmpty() ? m_databasePath : fileToOpen;
    m_databasePath.clear();
    if (!path.isEmpty())
        openDatabaseFile(path, !fileToOpen.isEmpty());
    else
        setDatabasePath({});
    refreshOptionFlags();
}

void frmMain::restoreWindowGeometry()
{
    const QStringList parts = basRegistry::GetString(basRegistry::SettingsKey(), objectName()).split(QLatin1Char(','));
    QList<int> v;
    for (const QString &p : parts) {
        bool ok = false;
        v << p.toInt(&ok);
        if (!ok)
            v.clear();
    }
    const QRect screen = this->screen()->availableGeometry();
    if (v.size() == 4 && v[2] > 200 && v[3] > 150 && screen.intersects(QRect(v[0], v[1], v[2], v[3]))) {
        setGeometry(v[0], v[1], v[2], v[3]);
        return;
    }
    // First start: most of the screen, centred.
    const QSize size(qMax(900, screen.width() * 9 / 10), qMax(640, screen.height() * 9 / 10));
    setGeometry(QStyle::alignedRect(Qt::LeftToRight, Qt::AlignCenter, size.boundedTo(screen.size()), screen));
}

void frmMain::saveWindowGeometry() const
{
    if (isMinimized() || isMaximized() || isFullScreen())
        return;
    const QRect g = geometry();
    basRegistry::SetString(basRegistry::SettingsKey(), objectName(),
                           QStringLiteral("%1,%2,%3,%4").arg(g.left()).arg(g.top()).arg(g.width()).arg(g.height()));
}

void frmMain::GetSettings()
{
    basRegistry::CreateKey(basRegistry::SettingsKey());
    m_databasePath = basRegistry::GetString(basRegistry::SettingsKey(), QStringLiteral("LastOpened"));
}

void frmMain::SaveSettings()
{
    basRegistry::CreateKey(basRegistry::SettingsKey());
    basRegistry::SetString(basRegistry::SettingsKey(), QStringLiteral("LastOpened"), m_databasePath);
}

QStringList frmMain::recentFiles() const
{
    return basRegistry::GetString(basRegistry::SettingsKey(), QStringLiteral("RecentFiles")).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void frmMain::setDatabasePath(const QString &path)
{
    m_databasePath = path;
    if (path.isEmpty()) {
        setWindowTitle(QStringLiteral("TendMark"));
        m_statusPanel->setText(QStringLiteral("No database open"));
    } else {
        DisplayOrganizationName();
        m_statusPanel->setText(QDir::toNativeSeparators(path));
        QStringList recent = recentFiles();
        recent.removeAll(path);
        recent.prepend(path);
        basRegistry::SetString(basRegistry::SettingsKey(), QStringLiteral("RecentFiles"),
                               recent.mid(0, kRecentFilesKept).join(QLatin1Char('\n')));
    }
    if (QAction *open = toolbarButton(QStringLiteral("Open")))
        open->setEnabled(path.isEmpty());
    SaveSettings();
    updateStartPanel();
}

bool frmMain::openDatabaseFile(const QString &path, bool reportFailure)
{
    m_mdiArea->closeAllSubWindows();
    if (!m_mdiArea->subWindowList().isEmpty())
        return false;
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QString reason;
    const bool ok = basDatabase::OpenConnection(absolute, &reason);
    if (!ok)
        basDatabase::CloseConnection();
    setDatabasePath(ok ? absolute : QString());
    refreshOptionFlags();
    if (!ok && reportFailure) {
        Prompt::message(QStringLiteral("Database Open Error"),
                        QStringLiteral("The selected database file may not be a valid TendMark database.\r\n"
                                       "Please make sure that you are selecting the correct database file."),
                        Prompt::Icon::Exclamation, Prompt::Ok);
        basErrorHandler::ReportError(QStringLiteral("frmMain.mnuFileOpen_Click"), -2147467259, reason);
    }
    return ok;
}

bool frmMain::closeDatabase()
{
    m_mdiArea->closeAllSubWindows();
    if (!m_mdiArea->subWindowList().isEmpty())
        return false;
    basDatabase::CloseConnection();
    setDatabasePath({});
    refreshOptionFlags();
    return true;
}

void frmMain::refreshOptionFlags() { basDatabase::GetDatabaseOptions(m_optionFlags); }

bool frmMain::requireDatabase()
{
    if (basDatabase::IsOpen())
        return true;
    Prompt::message(QStringLiteral("No Database open"), kNoDatabase, Prompt::Icon::Exclamation, Prompt::Ok);
    return false;
}

void frmMain::DisplayOrganizationName()
{
    std::array<QString, 7> org;
    basDatabase::GetOrganizationNameAddress(org);
    setWindowTitle(org[0].isEmpty() ? QStringLiteral("TendMark - [No Organization Name]") : QStringLiteral("TendMark - ") + org[0]);
}

void frmMain::showCommands(const MdiChild::Commands &commands)
{
    const std::pair<const char *, bool> states[] = {{"Save", commands.save},
                                                    {"Delete", commands.del},
                                                    {"Filter", commands.filter},
                                                    {"Sort Ascending", commands.sortAscending},
                                                    {"Sort Descending", commands.sortDescending}};
    for (const auto &[key, enabled] : states)
        toolbarButton(QString::fromLatin1(key))->setEnabled(enabled);
    m_cboSearchOn->setEnabled(commands.searchBar);
    m_cboSearchFor->setEnabled(commands.searchBar);
    updateSearchButton();
}

void frmMain::updateSearchButton()
{
    toolbarButton(QStringLiteral("Search"))
        ->setEnabled(m_cboSearchOn->isEnabled() && !m_cboSearchOn->currentText().isEmpty() && !m_cboSearchFor->currentText().isEmpty());
}

void frmMain::childCommandsChanged()
{
    auto *child = qobject_cast<MdiChild *>(sender());
    QMdiSubWindow *current = m_mdiArea->currentSubWindow();
    if (child && current && current->widget() == child)
        showCommands(child->commands());
}

bool frmMain::GetClientFormOpen() const
{
    for (QMdiSubWindow *sub : m_mdiArea->subWindowList()) {
        const QString name = sub->widget() ? sub->widget()->objectName() : QString();
        if (name == QLatin1String("frmClientDetails") || name == QLatin1String("frmClientSummary") || name == QLatin1String("frmClientGrid"))
            return true;
    }
    return false;
}

void frmMain::AddSearchForItem()
{
    const MdiChild *child = activeChild();
    const QStringList fields = child && child->kind() == MdiChild::Kind::Volunteer ? SearchQueries::volunteerFields()
                                                                                   : SearchQueries::clientFields();
    QStringList current;
    for (int i = 0; i < m_cboSearchOn->count(); ++i)
        current << m_cboSearchOn->itemText(i);
    if (current == fields)
        return;
    m_cboSearchOn->clear();
    m_cboSearchOn->addItems(fields);
}

void frmMain::SearchForClient()
{
    basErrorHandler::Guard(QStringLiteral("frmMain.SearchForClient"), [this] {
        runSearch(SearchQueries::client(m_cboSearchOn->currentText(), m_cboSearchFor->currentText()), MdiChild::Kind::Client);
    });
}

void frmMain::SearchForVolunteer()
{
    basErrorHandler::Guard(QStringLiteral("frmMain.SearchForVolunteer"), [this] {
        runSearch(SearchQueries::volunteer(m_cboSearchOn->currentText(), m_cboSearchFor->currentText()), MdiChild::Kind::Volunteer);
    });
}

void frmMain::runSearch(const SearchQueries::Query &query, MdiChild::Kind kind)
{
    if (!query.problem.isEmpty()) {
        Prompt::message(QStringLiteral("Data Entry Error"), query.problem, Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    const QString typed = m_cboSearchFor->currentText();
    if (m_cboSearchFor->findText(typed) < 0) {
        m_cboSearchFor->insertItem(0, typed);
        while (m_cboSearchFor->count() > 10)
            m_cboSearchFor->removeItem(m_cboSearchFor->count() - 1);
        m_cboSearchFor->setCurrentText(typed);
    }
    const SearchQueries::Outcome outcome = SearchQueries::run(query);
    if (outcome.count == 0) {
        Prompt::message(QStringLiteral("No Record Found"), QStringLiteral("No record was found matching the specified criteria."),
                        Prompt::Icon::None, Prompt::Ok);
        return;
    }
    QString key = outcome.onlyKey;
    if (outcome.count > 1) {
        Prompt::PickRequest request;
        request.caption = kind == MdiChild::Kind::Volunteer ? QStringLiteral("Select Volunteer") : QStringLiteral("Select Client");
        request.label = QString::number(outcome.count) + QStringLiteral(" entries were found that match the specified criteria. ")
                        + QStringLiteral("\r\n") + QStringLiteral("Select an entry from the list, then click 'OK'.");
        request.sql = query.sql;
        request.binds = query.binds;
        request.countSql = query.countSql;
        const std::optional<QString> chosen = Prompt::pick(request);
        if (!chosen)
            return;
        key = *chosen;
    }
    Q_EMIT recordRequested(kind, key);
    if (kind == MdiChild::Kind::Volunteer)
        showVolunteer(key);
    else
        showClient(key);
}

void frmMain::cmdSearch_Click()
{
    if (!requireDatabase())
        return;
    const MdiChild *child = activeChild();
    if (child && child->kind() == MdiChild::Kind::Volunteer)
        SearchForVolunteer();
    else
        SearchForClient();
}

MdiChild *frmMain::activeChild() const
{
    QMdiSubWindow *sub = m_mdiArea->activeSubWindow();
    return sub ? qobject_cast<MdiChild *>(sub->widget()) : nullptr;
}

QList<MdiChild *> frmMain::childWindows() const
{
    QList<MdiChild *> children;
    for (QMdiSubWindow *sub : m_mdiArea->subWindowList())
        if (auto *child = qobject_cast<MdiChild *>(sub->widget()))
            children.append(child);
    return children;
}

QMdiSubWindow *frmMain::addChild(MdiChild *child)
{
    const bool first = m_childCount == 0;
    QMdiSubWindow *sub = m_mdiArea->addSubWindow(child);
    sub->setWindowIcon(windowIcon());
    basTendmark::SetMDIChildDimensions(child, m_mdiArea);
    if (first && basRegistry::GetString(basRegistry::SettingsKey(), child->objectName()).isEmpty())
        sub->move(0, 0);
    child->setCounted(true);
    connect(child, &MdiChild::commandsChanged, this, &frmMain::childCommandsChanged);
    ++m_childCount;
    child->show();
    return sub;
}

void frmMain::centreChild(QMdiSubWindow *sub)
{
    const QSize area = m_mdiArea->viewport()->size();
    sub->move(qMax(0, (area.width() - sub->width()) / 2), qMax(0, (area.height() - sub->height()) / 2));
}

void frmMain::activateChild(MdiChild *child)
{
    if (auto *sub = qobject_cast<QMdiSubWindow *>(child->parentWidget())) {
        if (sub->isMinimized())
            sub->showNormal();
        m_mdiArea->setActiveSubWindow(sub);
    }
}

void frmMain::childClosed(MdiChild *)
{
    if (--m_childCount <= 0) {
        m_childCount = 0;
        showCommands({});
    }
}

void frmMain::subWindowActivated(QMdiSubWindow *window)
{
    if (!window)
        return;
    if (auto *child = qobject_cast<MdiChild *>(window->widget())) {
        AddSearchForItem();
        child->activated();
        showCommands(child->commands());
    }
}

void frmMain::openRecordEditor(RecordKind editor, const QString &clientId, const QString &recordId)
{
    if (!requireDatabase())
        return;
    const QString table = editor == RecordKind::Income ? QStringLiteral("Income") : QStringLiteral("Expenses");
    // One editor per client and table: an open one moves to the record instead.
    for (QMdiSubWindow *sub : m_mdiArea->subWindowList()) {
        auto *open = qobject_cast<RecordEditor *>(sub->widget());
        if (!open || open->ClientID() != clientId)
            continue;
        const bool same = (editor == RecordKind::FamilyMember && qobject_cast<frmFamilyMember *>(open))
                          || (editor == RecordKind::FoodService && qobject_cast<frmFoodService *>(open))
                          || (editor == RecordKind::Payment && qobject_cast<frmPaymentHistory *>(open))
                          || (qobject_cast<frmIncomeExpense *>(open)
                              && (editor == RecordKind::Income || editor == RecordKind::Expenses)
                              && static_cast<frmIncomeExpense *>(open)->TableName() == table);
        if (same) {
            activateChild(open);
            open->setRecordId(recordId);
            return;
        }
    }
    RecordEditor *window = nullptr;
    switch (editor) {
    case RecordKind::FamilyMember:
        window = new frmFamilyMember(this);
        break;
    case RecordKind::FoodService:
        window = new frmFoodService(this);
        break;
    case RecordKind::Payment:
        window = new frmPaymentHistory(this);
        break;
    case RecordKind::Income:
    case RecordKind::Expenses: {
        auto *items = new frmIncomeExpense(this);
        items->setTableName(table);
        window = items;
        break;
    }
    }
    window->setClientID(clientId);
    window->setRecordId(recordId);
    if (!window->load()) {
        delete window;
        return;
    }
    centreChild(addChild(window));
    activateChild(window);
}

void frmMain::showClient(const QString &clientId)
{
    MdiChild *child = activeChild();
    if (child && child->kind() == MdiChild::Kind::Client)
        child->showRecord(clientId);
    else
        basClient::OpenDetails(this, clientId);
}

void frmMain::showVolunteer(const QString &volunteerId)
{
    if (auto *volunteers = findChildWindow<frmVolunteer>()) {
        activateChild(volunteers);
        volunteers->setVolunteerID(volunteerId);
        return;
    }
    auto *volunteers = new frmVolunteer(this);
    volunteers->setVolunteerID(volunteerId);
    if (!volunteers->load()) {
        delete volunteers;
        return;
    }
    centreChild(addChild(volunteers));
    activateChild(volunteers);
}

QString frmMain::prepareDemoDatabase()
{
    QString error;
    bool ok = true;
    if (!QFileInfo::exists(DemoDatabase::Path())) {
        frmMessage notice(this);
        notice.setMessage(QStringLiteral("Please wait while the demo database is created..."));
        notice.showNow();
        ok = DemoDatabase::Ensure(&error);
    }
    if (!ok) {
        Prompt::message(QStringLiteral("Demo Database"), QStringLiteral("The demo database could not be created.\r\n") + error,
                        Prompt::Icon::Exclamation, Prompt::Ok);
        return {};
    }
    return DemoDatabase::Path();
}

void frmMain::openDemoDatabase()
{
    const QString path = prepareDemoDatabase();
    if (!path.isEmpty())
        openDatabaseFile(path, true);
}

void frmMain::updateStartPanel()
{
    if (!m_startPanel)
        return;
    m_startPanel->setVisible(m_databasePath.isEmpty());
    if (m_databasePath.isEmpty()) {
        m_startPanel->setRecentFiles(recentFiles());
        m_startPanel->raise();
    }
}

frmHelp *frmMain::helpWindow()
{
    if (!m_help)
        m_help = new frmHelp(this);
    return m_help;
}

void frmMain::notAvailableYet()
{
    Prompt::message(QStringLiteral("TendMark"), QStringLiteral("This part of TendMark is not available yet."),
                    Prompt::Icon::Information, Prompt::Ok);
}

void frmMain::mnuFileNew_Click()
{
    const QString path = Prompt::saveFileName(QStringLiteral("New Database"), kDatabaseFilter, QLatin1String(Schema::FileSuffix),
                                              QStringLiteral("pantry.%1").arg(QLatin1String(Schema::FileSuffix)));
    if (path.isEmpty())
        return;
    if (!closeDatabase())
        return;
    QString error;
    if (!Schema::CreateDatabase(path, true, &error)) {
        Prompt::message(QStringLiteral("New Database"), QStringLiteral("The database could not be created.\r\n") + error,
                        Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    openDatabaseFile(path, true);
}

void frmMain::mnuFileOpen_Click()
{
    const QString path = Prompt::openFileName(QStringLiteral("Open Database"), kDatabaseFilter);
    if (path.isEmpty())
        return;
    openDatabaseFile(path, true);
}

void frmMain::mnuFileClose_Click() { closeDatabase(); }

void frmMain::mnuFileSave_Click()
{
    if (!requireDatabase())
        return;
    if (MdiChild *child = activeChild(); child && child->DataChanged())
        child->SaveCurrentRecord();
}

void frmMain::mnuFileDelete_Click()
{
    if (!requireDatabase())
        return;
    if (MdiChild *child = activeChild())
        child->DeleteCurrentRecord();
}

void frmMain::mnuFilePrintLabels_Click()
{
    if (requireDatabase())
        notAvailableYet();
}

void frmMain::mnuDataClientSummary_Click()
{
    if (!requireDatabase())
        return;
    auto *summary = findChildWindow<frmClientSummary>();
    if (!summary) {
        summary = new frmClientSummary(this);
        addChild(summary);
    }
    activateChild(summary);
}

void frmMain::mnuDataClientDetails_Click()
{
    if (!requireDatabase())
        return;
    auto *details = findChildWindow<frmClientDetails>();
    if (!details) {
        details = new frmClientDetails(this);
        addChild(details);
    }
    activateChild(details);
}

void frmMain::mnuDataClientTable_Click()
{
    if (!requireDatabase())
        return;
    auto *list = findChildWindow<frmClientGrid>();
    if (!list) {
        list = new frmClientGrid(this);
        addChild(list);
    }
    activateChild(list);
}

void frmMain::mnuDataVolunteers_Click()
{
    if (!requireDatabase())
        return;
    if (auto *volunteers = findChildWindow<frmVolunteer>())
        activateChild(volunteers);
    else
        showVolunteer({});
}

void frmMain::mnuDataExportClients_Click()
{
    if (requireDatabase())
        notAvailableYet();
}

void frmMain::mnuDataExportVolunteers_Click()
{
    if (requireDatabase())
        notAvailableYet();
}

void frmMain::mnuDataFilter_Click()
{
    if (requireDatabase())
        notAvailableYet();
}

void frmMain::mnuDataSortSortAscending_Click()
{
    if (!requireDatabase())
        return;
    if (MdiChild *child = activeChild())
        child->SortColumn(Qt::AscendingOrder);
}

void frmMain::mnuDataSortSortDescending_Click()
{
    if (!requireDatabase())
        return;
    if (MdiChild *child = activeChild())
        child->SortColumn(Qt::DescendingOrder);
}

void frmMain::mnuToolsOptions_Click()
{
    if (!requireDatabase())
        return;
    auto *dialog = new frmOptions(this);
    dialog->open();
}

void frmMain::openLookupTable(int index)
{
    if (!requireDatabase() || index < 0 || index >= int(lookupTables().size()))
        return;
    const LookupTable &t = lookupTables()[index];
    const QString table = QString::fromLatin1(t.table);
    for (QMdiSubWindow *sub : m_mdiArea->subWindowList()) {
        if (auto *open = qobject_cast<frmTableGrid *>(sub->widget()); open && open->TableName() == table) {
            activateChild(open);
            return;
        }
    }
    addChild(new frmTableGrid(this, table, QString::fromLatin1(t.keyColumn), QString::fromLatin1(t.caption),
                              QString::fromLatin1(t.columnSpec)));
}

void frmMain::openReport(const QString &)
{
    if (requireDatabase())
        notAvailableYet();
}

void frmMain::mnuHelpContents_Click() { helpWindow()->showContents(); }

void frmMain::mnuHelpIndex_Click() { helpWindow()->showIndex(); }

void frmMain::mnuHelpAbout_Click()
{
    Prompt::message(QStringLiteral("About TendMark"),
                    QStringLiteral("TendMark %1\r\nClient records for food pantries and assistance organizations.")
                        .arg(QStringLiteral(TENDMARK_VERSION)),
                    Prompt::Icon::Information, Prompt::Ok);
}

void frmMain::closeEvent(QCloseEvent *event)
{
    m_mdiArea->closeAllSubWindows();
    if (!m_mdiArea->subWindowList().isEmpty()) {
        event->ignore();
        return;
    }
    SaveSettings();
    saveWindowGeometry();
    basDatabase::CloseConnection();
    event->accept();
}
