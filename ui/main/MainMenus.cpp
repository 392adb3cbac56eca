#include "MainMenus.h"

#include "AppIcons.h"
#include "DatabaseSession.h"
#include "LookupTables.h"
#include "WindowArrangement.h"
#include "frmAuditLog.h"
#include "frmImportClients.h"
#include "frmMain.h"
#include "frmRestoreBackup.h"

#include <QAction>
#include <QHash>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <functional>
#include <vector>

namespace {

enum class Bar { None, Tool, View };

// The same command as a button: on the toolbar (caption = its key) or on the view bar.
struct Button
{
    Button() = default;
    Button(Bar onBar, const char *text, const char *iconName, QStyle::StandardPixmap fallbackIcon, const char *toolTip = "",
           bool separated = false)
        : bar(onBar)
        , caption(text)
        , themeIcon(iconName)
        , icon(fallbackIcon)
        , tip(toolTip)
        , separatorBefore(separated)
    { }
    Bar bar = Bar::None;
    const char *caption = "";
    const char *themeIcon = "";
    QStyle::StandardPixmap icon = QStyle::SP_CustomBase;
    const char *tip = "";
    bool separatorBefore = false;
};

// One row: a menu (no action), a separator (no name), a command, or a bar's show/hide switch.
struct Entry
{
    Entry(const QString &menu, const QString &objectName = {}, const QString &text = {}) : parent(menu), name(objectName), caption(text) { }
    Entry(const QString &menu, const QString &objectName, const QString &text, const QKeySequence &keys, std::function<void()> action,
          const Button &asButton = {})
        : parent(menu)
        , name(objectName)
        , caption(text)
        , shortcut(keys)
        , run(std::move(action))
        , button(asButton)
    { }
    Entry(const QString &menu, const QString &objectName, const QString &text, QWidget *bar)
        : parent(menu)
        , name(objectName)
        , caption(text)
        , shows(bar)
    { }
    QString parent;   // the menu it belongs to; empty: the menu bar
    QString name;
    QString caption;
    QKeySequence shortcut;
    std::function<void()> run;
    Button button;
    QWidget *shows = nullptr;
};

std::vector<Entry> entries(frmMain &m, DatabaseSession &s, QToolBar *toolBar, QToolBar *searchBar, QToolBar *viewBar)
{
    using K = QKeySequence;
    const auto on = [&m](void (frmMain::*slot)()) { return [&m, slot] { (m.*slot)(); }; };
    std::vector<Entry> e = {
        {"", "mnuFile", "&File"},
        {"mnuFile", "mnuFileNew", "&New Database...", K::New, [&s] { s.createNew(); }},
        {"mnuFile",
         "mnuFileOpen",
         "&Open...",
         K::Open,
         [&s] { s.openChosen(); },
         {Bar::Tool, "Open", "document-open", QStyle::SP_DialogOpenButton, "Open a database file"}},
        {"mnuFile", "mnuFileClose", "&Close", {}, [&s] { s.close(); }},
        {"mnuFile"},
        {"mnuFile", "mnuFileBackupNow", "&Backup Now...", {}, [&s] { s.backupNow(); }},
        {"mnuFile",
         "mnuFileRestore",
         "&Restore From Backup...",
         {},
         [&s, &m] {
             const QString database = s.databaseToRestore();
             if (!database.isEmpty())
                 (new frmRestoreBackup(s, database, &m))->open();
         }},
        {"mnuFile"},
        {"mnuFile",
         "mnuFileSave",
         "&Save",
         K::Save,
         on(&frmMain::mnuFileSave_Click),
         {Bar::Tool, "Save", "document-save", QStyle::SP_DialogSaveButton, "Save the current record"}},
        {"mnuFile",
         "mnuFileDelete",
         "&Delete",
         {},
         on(&frmMain::mnuFileDelete_Click),
         {Bar::Tool, "Delete", "edit-delete", QStyle::SP_TrashIcon, "Delete the current record", true}},
        {"mnuFile"},
        {"mnuFile", "mnuFilePrintLabels", "Print &Labels...", K::Print, on(&frmMain::mnuFilePrintLabels_Click)},
        {"mnuFile"},
        {"mnuFile", "mnuFileExit", "E&xit", K(Qt::ALT | Qt::Key_F4), [&m] { m.close(); }},

        {"", "mnuData", "&Data"},
        {"mnuData",
         "mnuDataClientSummary",
         "Client &Summary",
         K(Qt::CTRL | Qt::Key_1),
         on(&frmMain::mnuDataClientSummary_Click),
         {Bar::View, "Client\nSummary", "x-office-address-book", QStyle::SP_FileDialogInfoView}},
        {"mnuData",
         "mnuDataClientDetails",
         "Client &Details",
         K(Qt::CTRL | Qt::Key_2),
         on(&frmMain::mnuDataClientDetails_Click),
         {Bar::View, "Client\nDetails", "contact-new", QStyle::SP_FileDialogDetailedView}},
        {"mnuData",
         "mnuDataClientTable",
         "Client &Table",
         K(Qt::CTRL | Qt::Key_3),
         on(&frmMain::mnuDataClientTable_Click),
         {Bar::View, "Client\nTable", "x-office-spreadsheet", QStyle::SP_FileDialogListView}},
        {"mnuData",
         "mnuDataVolunteers",
         "&Volunteers",
         K(Qt::CTRL | Qt::Key_4),
         on(&frmMain::mnuDataVolunteers_Click),
         {Bar::View, "Volunteers", "system-users", QStyle::SP_DirHomeIcon}},
        {"mnuData"},
        {"mnuData", "mnuDataExport", "&Export"},
        {"mnuDataExport", "mnuDataExportClients", "&Clients...", {}, on(&frmMain::mnuDataExportClients_Click)},
        {"mnuDataExport", "mnuDataExportVolunteers", "&Volunteers...", {}, on(&frmMain::mnuDataExportVolunteers_Click)},
        {"mnuData", "mnuDataImport", "&Import"},
        {"mnuDataImport",
         "mnuDataImportClients",
         "Clients from &CSV...",
         {},
         [&m] {
             if (!DatabaseSession::requireDatabase())
                 return;
             auto *dialog = new frmImportClients(&m);
             dialog->setAttribute(Qt::WA_DeleteOnClose);
             dialog->open();
         }},
        {"mnuData"},
        {"mnuData",
         "mnuDataFilter",
         "&Filter...",
         K(Qt::CTRL | Qt::Key_L),
         on(&frmMain::mnuDataFilter_Click),
         {Bar::Tool, "Filter", "edit-find-replace", QStyle::SP_FileDialogContentsView, "Filter the current list", true}},
        {"mnuData", "mnuDataSort", "S&ort"},
        {"mnuDataSort",
         "mnuDataSortSortAscending",
         "Sort &Ascending",
         {},
         on(&frmMain::mnuDataSortSortAscending_Click),
         {Bar::Tool, "Sort Ascending", "view-sort-ascending", QStyle::SP_ArrowUp, "Sort the selected column, A to Z"}},
        {"mnuDataSort",
         "mnuDataSortSortDescending",
         "Sort &Descending",
         {},
         on(&frmMain::mnuDataSortSortDescending_Click),
         {Bar::Tool, "Sort Descending", "view-sort-descending", QStyle::SP_ArrowDown, "Sort the selected column, Z to A"}},

        {"", "mnuView", "&View"},
        {"mnuView", "mnuViewToolbar", "&Toolbar", toolBar},
        {"mnuView", "mnuViewSearchbar", "&Search Bar", searchBar},
        {"mnuView", "mnuViewViewbar", "&View Bar", viewBar},
        {"mnuView", "mnuViewStatusbar", "Status &Bar", m.statusBar()},

        {"", "mnuReports", "&Reports"},
    };
    const std::pair<const char *, const char *> reports[] = {
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
    for (const auto &[name, caption] : reports) {
        const QString menuName = QString::fromLatin1(name);
        e.push_back({"mnuReports", menuName, QString::fromLatin1(caption), {}, [&m, menuName] { m.openReport(menuName); }});
    }
    e.push_back({"", "mnuTools", "&Tools"});
    e.push_back({"mnuTools", "mnuToolsTables", "&Tables"});
    for (int i = 0; i < int(LookupTables::all().size()); ++i) {
        const LookupTables::LookupTable &t = LookupTables::all()[size_t(i)];
        e.push_back(
            {"mnuToolsTables", QString::fromLatin1(t.menuName), QString::fromLatin1(t.menuCaption), {}, [&m, i] { m.openLookupTable(i); }});
    }
    e.push_back({"mnuTools", "mnuToolsAuditLog", "&Audit Log", {}, [&m] {
                     if (!DatabaseSession::requireDatabase())
                         return;
                     auto *window = m.findChildWindow<frmAuditLog>();
                     if (!window) {
                         window = new frmAuditLog(&m);
                         m.addChild(window);
                     }
                     m.activateChild(window);
                 }});
    e.push_back({"mnuTools"});
    e.push_back({"mnuTools", "mnuToolsOptions", "&Options...", {}, on(&frmMain::mnuToolsOptions_Click)});
    e.push_back({"", "mnuWindow", "&Window"});
    e.push_back({"", "mnuHelp", "&Help"});
    e.push_back({"mnuHelp", "mnuHelpContents", "&Contents", K::HelpContents, on(&frmMain::mnuHelpContents_Click)});
    e.push_back({"mnuHelp", "mnuHelpIndex", "&Index", {}, on(&frmMain::mnuHelpIndex_Click)});
    e.push_back({"mnuHelp"});
    e.push_back({"mnuHelp", "mnuHelpAbout", "&About TendMark...", {}, on(&frmMain::mnuHelpAbout_Click)});
    return e;
}

QAction *addMenuAction(QMenu *menu, const QString &name, const QString &caption, const QKeySequence &shortcut = {})
{
    QAction *a = menu->addAction(caption);
    a->setObjectName(name);
    if (!shortcut.isEmpty())
        a->setShortcut(shortcut);
    return a;
}

// The arrangements, then one entry per open window with the active one checked.
void fillWindowMenu(QMenu *menu, QMdiArea *area)
{
    menu->clear();
    QObject::connect(addMenuAction(menu, QStringLiteral("mnuWindowCascade"), QStringLiteral("&Cascade")), &QAction::triggered, area,
                     &QMdiArea::cascadeSubWindows);
    QObject::connect(addMenuAction(menu, QStringLiteral("mnuWindowTileHorizontal"), QStringLiteral("Tile &Horizontally")),
                     &QAction::triggered, area, [area] { WindowArrangement::TileHorizontally(area); });
    QObject::connect(addMenuAction(menu, QStringLiteral("mnuWindowTileVertical"), QStringLiteral("Tile &Vertically")), &QAction::triggered,
                     area, [area] { WindowArrangement::TileVertically(area); });
    QObject::connect(addMenuAction(menu, QStringLiteral("mnuWindowArrangeIcons"), QStringLiteral("&Arrange Icons")), &QAction::triggered,
                     area, [area] { WindowArrangement::ArrangeIcons(area); });
    const QList<QMdiSubWindow *> windows = area->subWindowList();
    if (!windows.isEmpty())
        menu->addSeparator();
    int n = 1;
    for (QMdiSubWindow *sub : windows) {
        QAction *a = menu->addAction(QStringLiteral("&%1 %2").arg(n++).arg(sub->windowTitle()));
        a->setCheckable(true);
        a->setChecked(sub == area->activeSubWindow());
        QObject::connect(a, &QAction::triggered, area, [area, sub] { area->setActiveSubWindow(sub); });
    }
}

QToolBar *makeBar(frmMain &main, const QString &title, const char *name, Qt::ToolButtonStyle style, int iconSize)
{
    auto *bar = new QToolBar(title, &main);
    bar->setObjectName(QLatin1String(name));
    bar->setMovable(false);
    bar->setToolButtonStyle(style);
    bar->setIconSize(QSize(iconSize, iconSize));
    return bar;
}

}   // namespace

QToolBar *MainMenus::build(frmMain &main, DatabaseSession &session, QToolBar *searchBar)
{
    QToolBar *toolBar = makeBar(main, QStringLiteral("Toolbar"), "tbrToolBar1", Qt::ToolButtonTextUnderIcon, 24);
    main.addToolBar(toolBar);
    main.addToolBarBreak();
    main.addToolBar(searchBar);
    QToolBar *viewBar = makeBar(main, QStringLiteral("View Bar"), "picViewBar", Qt::ToolButtonTextUnderIcon, 48);
    viewBar->setOrientation(Qt::Vertical);
    main.addToolBar(Qt::LeftToolBarArea, viewBar);

    QHash<QString, QMenu *> menus;
    for (const Entry &e : entries(main, session, toolBar, searchBar, viewBar)) {
        QMenu *parent = menus.value(e.parent);
        if (e.name.isEmpty()) {
            parent->addSeparator();
        } else if (!e.run && !e.shows) {
            QMenu *menu = parent ? parent->addMenu(e.caption) : main.menuBar()->addMenu(e.caption);
            (parent ? static_cast<QObject *>(menu->menuAction()) : menu)->setObjectName(e.name);
            menus.insert(e.name, menu);
        } else if (e.shows) {
            QAction *a = addMenuAction(parent, e.name, e.caption);
            a->setCheckable(true);
            a->setChecked(true);
            QObject::connect(a, &QAction::toggled, e.shows, &QWidget::setVisible);
        } else {
            QObject::connect(addMenuAction(parent, e.name, e.caption, e.shortcut), &QAction::triggered, &main, e.run);
        }
        if (e.button.bar == Bar::None)
            continue;
        const Button &b = e.button;
        const QString caption = QString::fromLatin1(b.caption);
        QToolBar *bar = b.bar == Bar::Tool ? toolBar : viewBar;
        QAction *a = bar->addAction(AppIcons::icon(b.themeIcon, b.icon), caption);
        if (b.bar == Bar::Tool) {
            a->setObjectName(QStringLiteral("tbr") + QString(caption).remove(QLatin1Char(' ')));
            a->setProperty("Key", caption);
            a->setToolTip(QString::fromLatin1(b.tip));
        } else {
            a->setObjectName(QStringLiteral("ViewBar") + e.name.mid(int(qstrlen("mnuData"))));
            a->setToolTip(QString(caption).replace(QLatin1Char('\n'), QLatin1Char(' ')));
        }
        if (b.separatorBefore)
            bar->insertSeparator(a);
        QObject::connect(a, &QAction::triggered, &main, e.run);
    }
    QMenu *window = menus.value(QStringLiteral("mnuWindow"));
    QObject::connect(window, &QMenu::aboutToShow, &main, [window, &main] { fillWindowMenu(window, main.mdiArea()); });
    fillWindowMenu(window, main.mdiArea());
    return toolBar;
}
