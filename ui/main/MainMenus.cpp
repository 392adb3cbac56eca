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
#include <QCoreApplication>
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
// Captions are the untranslated texts; the menus show them translated in their context.
struct Entry
{
    Entry(const QString &menu, const QString &objectName = {}, const char *text = "") : parent(menu), name(objectName), caption(text) { }
    Entry(const QString &menu, const QString &objectName, const char *text, const QKeySequence &keys, std::function<void()> action,
          const Button &asButton = {})
        : parent(menu)
        , name(objectName)
        , caption(text)
        , shortcut(keys)
        , run(std::move(action))
        , button(asButton)
    { }
    Entry(const QString &menu, const QString &objectName, const char *text, QWidget *bar)
        : parent(menu)
        , name(objectName)
        , caption(text)
        , shows(bar)
    { }
    QString parent;   // the menu it belongs to; empty: the menu bar
    QString name;
    const char *caption;
    const char *context = "MainMenus";
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
        {"", "mnuFile", QT_TRANSLATE_NOOP("MainMenus", "&File")},
        {"mnuFile", "mnuFileNew", QT_TRANSLATE_NOOP("MainMenus", "&New Database..."), K::New, [&s] { s.createNew(); }},
        {"mnuFile",
         "mnuFileOpen",
         QT_TRANSLATE_NOOP("MainMenus", "&Open..."),
         K::Open,
         [&s] { s.openChosen(); },
         {Bar::Tool, QT_TRANSLATE_NOOP("MainMenus", "Open"), "document-open", QStyle::SP_DialogOpenButton,
          QT_TRANSLATE_NOOP("MainMenus", "Open a database file")}},
        {"mnuFile", "mnuFileClose", QT_TRANSLATE_NOOP("MainMenus", "&Close"), {}, [&s] { s.close(); }},
        {"mnuFile"},
        {"mnuFile", "mnuFileBackupNow", QT_TRANSLATE_NOOP("MainMenus", "&Backup Now..."), {}, [&s] { s.backupNow(); }},
        {"mnuFile",
         "mnuFileRestore",
         QT_TRANSLATE_NOOP("MainMenus", "&Restore From Backup..."),
         {},
         [&s, &m] {
             const QString database = s.databaseToRestore();
             if (!database.isEmpty())
                 (new frmRestoreBackup(s, database, &m))->open();
         }},
        {"mnuFile"},
        {"mnuFile",
         "mnuFileSave",
         QT_TRANSLATE_NOOP("MainMenus", "&Save"),
         K::Save,
         on(&frmMain::mnuFileSave_Click),
         {Bar::Tool, QT_TRANSLATE_NOOP("MainMenus", "Save"), "document-save", QStyle::SP_DialogSaveButton,
          QT_TRANSLATE_NOOP("MainMenus", "Save the current record")}},
        {"mnuFile",
         "mnuFileDelete",
         QT_TRANSLATE_NOOP("MainMenus", "&Delete"),
         {},
         on(&frmMain::mnuFileDelete_Click),
         {Bar::Tool, QT_TRANSLATE_NOOP("MainMenus", "Delete"), "edit-delete", QStyle::SP_TrashIcon,
          QT_TRANSLATE_NOOP("MainMenus", "Delete the current record"), true}},
        {"mnuFile"},
        {"mnuFile", "mnuFilePrintLabels", QT_TRANSLATE_NOOP("MainMenus", "Print &Labels..."), K::Print,
         on(&frmMain::mnuFilePrintLabels_Click)},
        {"mnuFile"},
        {"mnuFile", "mnuFileExit", QT_TRANSLATE_NOOP("MainMenus", "E&xit"), K(Qt::ALT | Qt::Key_F4), [&m] { m.close(); }},

        {"", "mnuData", QT_TRANSLATE_NOOP("MainMenus", "&Data")},
        {"mnuData",
         "mnuDataClientSummary",
         QT_TRANSLATE_NOOP("MainMenus", "Client &Summary"),
         K(Qt::CTRL | Qt::Key_1),
         on(&frmMain::mnuDataClientSummary_Click),
         {Bar::View, QT_TRANSLATE_NOOP("MainMenus", "Client\nSummary"), "x-office-address-book", QStyle::SP_FileDialogInfoView}},
        {"mnuData",
         "mnuDataClientDetails",
         QT_TRANSLATE_NOOP("MainMenus", "Client &Details"),
         K(Qt::CTRL | Qt::Key_2),
         on(&frmMain::mnuDataClientDetails_Click),
         {Bar::View, QT_TRANSLATE_NOOP("MainMenus", "Client\nDetails"), "contact-new", QStyle::SP_FileDialogDetailedView}},
        {"mnuData",
         "mnuDataClientTable",
         QT_TRANSLATE_NOOP("MainMenus", "Client &Table"),
         K(Qt::CTRL | Qt::Key_3),
         on(&frmMain::mnuDataClientTable_Click),
         {Bar::View, QT_TRANSLATE_NOOP("MainMenus", "Client\nTable"), "x-office-spreadsheet", QStyle::SP_FileDialogListView}},
        {"mnuData",
         "mnuDataVolunteers",
         QT_TRANSLATE_NOOP("MainMenus", "&Volunteers"),
         K(Qt::CTRL | Qt::Key_4),
         on(&frmMain::mnuDataVolunteers_Click),
         {Bar::View, QT_TRANSLATE_NOOP("MainMenus", "Volunteers"), "system-users", QStyle::SP_DirHomeIcon}},
        {"mnuData"},
        {"mnuData", "mnuDataExport", QT_TRANSLATE_NOOP("MainMenus", "&Export")},
        {"mnuDataExport",
         "mnuDataExportClients",
         QT_TRANSLATE_NOOP("MainMenus", "&Clients..."),
         {},
         on(&frmMain::mnuDataExportClients_Click)},
        {"mnuDataExport",
         "mnuDataExportVolunteers",
         QT_TRANSLATE_NOOP("MainMenus", "&Volunteers..."),
         {},
         on(&frmMain::mnuDataExportVolunteers_Click)},
        {"mnuData", "mnuDataImport", QT_TRANSLATE_NOOP("MainMenus", "&Import")},
        {"mnuDataImport",
         "mnuDataImportClients",
         QT_TRANSLATE_NOOP("MainMenus", "Clients from &CSV..."),
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
         QT_TRANSLATE_NOOP("MainMenus", "&Filter..."),
         K(Qt::CTRL | Qt::Key_L),
         on(&frmMain::mnuDataFilter_Click),
         {Bar::Tool, QT_TRANSLATE_NOOP("MainMenus", "Filter"), "edit-find-replace", QStyle::SP_FileDialogContentsView,
          QT_TRANSLATE_NOOP("MainMenus", "Filter the current list"), true}},
        {"mnuData", "mnuDataSort", QT_TRANSLATE_NOOP("MainMenus", "S&ort")},
        {"mnuDataSort",
         "mnuDataSortSortAscending",
         QT_TRANSLATE_NOOP("MainMenus", "Sort &Ascending"),
         {},
         on(&frmMain::mnuDataSortSortAscending_Click),
         {Bar::Tool, QT_TRANSLATE_NOOP("MainMenus", "Sort Ascending"), "view-sort-ascending", QStyle::SP_ArrowUp,
          QT_TRANSLATE_NOOP("MainMenus", "Sort the selected column, A to Z")}},
        {"mnuDataSort",
         "mnuDataSortSortDescending",
         QT_TRANSLATE_NOOP("MainMenus", "Sort &Descending"),
         {},
         on(&frmMain::mnuDataSortSortDescending_Click),
         {Bar::Tool, QT_TRANSLATE_NOOP("MainMenus", "Sort Descending"), "view-sort-descending", QStyle::SP_ArrowDown,
          QT_TRANSLATE_NOOP("MainMenus", "Sort the selected column, Z to A")}},

        {"", "mnuView", QT_TRANSLATE_NOOP("MainMenus", "&View")},
        {"mnuView", "mnuViewToolbar", QT_TRANSLATE_NOOP("MainMenus", "&Toolbar"), toolBar},
        {"mnuView", "mnuViewSearchbar", QT_TRANSLATE_NOOP("MainMenus", "&Search Bar"), searchBar},
        {"mnuView", "mnuViewViewbar", QT_TRANSLATE_NOOP("MainMenus", "&View Bar"), viewBar},
        {"mnuView", "mnuViewStatusbar", QT_TRANSLATE_NOOP("MainMenus", "Status &Bar"), m.statusBar()},

        {"", "mnuReports", QT_TRANSLATE_NOOP("MainMenus", "&Reports")},
    };
    const std::pair<const char *, const char *> reports[] = {
        {"mnuReportsClientDetail", QT_TRANSLATE_NOOP("MainMenus", "Client &Detail...")},
        {"mnuReportsClientList", QT_TRANSLATE_NOOP("MainMenus", "Client &List...")},
        {"mnuReportsDemographics", QT_TRANSLATE_NOOP("MainMenus", "D&emographics...")},
        {"mnuReportsFoodServiceByClient", QT_TRANSLATE_NOOP("MainMenus", "&Food Service History By Client...")},
        {"mnuReportsGeographicSummary", QT_TRANSLATE_NOOP("MainMenus", "&Geographic Summary...")},
        {"mnuReportsGroceryLog", QT_TRANSLATE_NOOP("MainMenus", "G&rocery Log...")},
        {"mnuReportsPaymentHistoryByClient", QT_TRANSLATE_NOOP("MainMenus", "&Payment History By Client...")},
        {"mnuReportsVolunteerDetail", QT_TRANSLATE_NOOP("MainMenus", "&Volunteer Detail...")},
        {"mnuReportsVolunteerList", QT_TRANSLATE_NOOP("MainMenus", "Volunteer L&ist...")},
        {"mnuReportsAgencyReport", QT_TRANSLATE_NOOP("MainMenus", "&Agency Report...")},
    };
    for (const auto &[name, caption] : reports) {
        const QString menuName = QString::fromLatin1(name);
        e.push_back({"mnuReports", menuName, caption, {}, [&m, menuName] { m.openReport(menuName); }});
    }
    e.push_back({"", "mnuTools", QT_TRANSLATE_NOOP("MainMenus", "&Tools")});
    e.push_back({"mnuTools", "mnuToolsTables", QT_TRANSLATE_NOOP("MainMenus", "&Tables")});
    for (int i = 0; i < int(LookupTables::all().size()); ++i) {
        const LookupTables::LookupTable &t = LookupTables::all()[size_t(i)];
        Entry table {"mnuToolsTables", QString::fromLatin1(t.menuName), t.menuCaption, {}, [&m, i] { m.openLookupTable(i); }};
        table.context = "LookupTables";
        e.push_back(table);
    }
    e.push_back({"mnuTools", "mnuToolsAuditLog", QT_TRANSLATE_NOOP("MainMenus", "&Audit Log"), {}, [&m] {
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
    e.push_back({"mnuTools", "mnuToolsOptions", QT_TRANSLATE_NOOP("MainMenus", "&Options..."), {}, on(&frmMain::mnuToolsOptions_Click)});
    e.push_back({"", "mnuWindow", QT_TRANSLATE_NOOP("MainMenus", "&Window")});
    e.push_back({"", "mnuHelp", QT_TRANSLATE_NOOP("MainMenus", "&Help")});
    e.push_back(
        {"mnuHelp", "mnuHelpContents", QT_TRANSLATE_NOOP("MainMenus", "&Contents"), K::HelpContents, on(&frmMain::mnuHelpContents_Click)});
    e.push_back({"mnuHelp", "mnuHelpIndex", QT_TRANSLATE_NOOP("MainMenus", "&Index"), {}, on(&frmMain::mnuHelpIndex_Click)});
    e.push_back({"mnuHelp"});
    e.push_back({"mnuHelp", "mnuHelpAbout", QT_TRANSLATE_NOOP("MainMenus", "&About TendMark..."), {}, on(&frmMain::mnuHelpAbout_Click)});
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
    QObject::connect(addMenuAction(menu, QStringLiteral("mnuWindowCascade"), QCoreApplication::translate("MainMenus", "&Cascade")),
                     &QAction::triggered, area, [area] { WindowArrangement::Cascade(area); });
    QObject::connect(
        addMenuAction(menu, QStringLiteral("mnuWindowTileHorizontal"), QCoreApplication::translate("MainMenus", "Tile &Horizontally")),
        &QAction::triggered, area, [area] { WindowArrangement::TileHorizontally(area); });
    QObject::connect(
        addMenuAction(menu, QStringLiteral("mnuWindowTileVertical"), QCoreApplication::translate("MainMenus", "Tile &Vertically")),
        &QAction::triggered, area, [area] { WindowArrangement::TileVertically(area); });
    QObject::connect(
        addMenuAction(menu, QStringLiteral("mnuWindowArrangeIcons"), QCoreApplication::translate("MainMenus", "&Arrange Icons")),
        &QAction::triggered, area, [area] { WindowArrangement::ArrangeIcons(area); });
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
    QToolBar *toolBar = makeBar(main, QCoreApplication::translate("MainMenus", "Toolbar"), "tbrToolBar1", Qt::ToolButtonTextUnderIcon, 24);
    main.addToolBar(toolBar);
    main.addToolBarBreak();
    main.addToolBar(searchBar);
    QToolBar *viewBar = makeBar(main, QCoreApplication::translate("MainMenus", "View Bar"), "picViewBar", Qt::ToolButtonTextUnderIcon, 48);
    viewBar->setOrientation(Qt::Vertical);
    main.addToolBar(Qt::LeftToolBarArea, viewBar);

    QHash<QString, QMenu *> menus;
    for (const Entry &e : entries(main, session, toolBar, searchBar, viewBar)) {
        QMenu *parent = menus.value(e.parent);
        const QString caption = QCoreApplication::translate(e.context, e.caption);
        if (e.name.isEmpty()) {
            parent->addSeparator();
        } else if (!e.run && !e.shows) {
            QMenu *menu = parent ? parent->addMenu(caption) : main.menuBar()->addMenu(caption);
            (parent ? static_cast<QObject *>(menu->menuAction()) : menu)->setObjectName(e.name);
            menus.insert(e.name, menu);
        } else if (e.shows) {
            QAction *a = addMenuAction(parent, e.name, caption);
            a->setCheckable(true);
            a->setChecked(true);
            QObject::connect(a, &QAction::toggled, e.shows, &QWidget::setVisible);
        } else {
            QObject::connect(addMenuAction(parent, e.name, caption, e.shortcut), &QAction::triggered, &main, e.run);
        }
        if (e.button.bar == Bar::None)
            continue;
        const Button &b = e.button;
        // The untranslated caption names the button; the bar shows the translation.
        const QString key = QString::fromLatin1(b.caption);
        const QString shown = QCoreApplication::translate("MainMenus", b.caption);
        QToolBar *bar = b.bar == Bar::Tool ? toolBar : viewBar;
        QAction *a = bar->addAction(AppIcons::icon(b.themeIcon, b.icon), shown);
        if (b.bar == Bar::Tool) {
            a->setObjectName(QStringLiteral("tbr") + QString(key).remove(QLatin1Char(' ')));
            a->setProperty("Key", key);
            a->setToolTip(QCoreApplication::translate("MainMenus", b.tip));
        } else {
            a->setObjectName(QStringLiteral("ViewBar") + e.name.mid(int(qstrlen("mnuData"))));
            a->setToolTip(QString(shown).replace(QLatin1Char('\n'), QLatin1Char(' ')));
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
