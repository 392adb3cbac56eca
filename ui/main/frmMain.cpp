#include "frmMain.h"

#include "AppIcons.h"
#include "DataBinding.h"
#include "DatabaseSession.h"
#include "FilterCommand.h"
#include "LookupTables.h"
#include "MainMenus.h"
#include "OptionsStore.h"
#include "Prompt.h"
#include "RecordEvents.h"
#include "ReportRunner.h"
#include "SearchBar.h"
#include "StartPanel.h"
#include "basClient.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basRegistry.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"
#include "frmClientSummary.h"
#include "frmExport.h"
#include "frmFamilyMember.h"
#include "frmFoodService.h"
#include "frmHelp.h"
#include "frmLabelPrint.h"
#include "frmIncomeExpense.h"
#include "frmOptions.h"
#include "frmPaymentHistory.h"
#include "frmTableGrid.h"
#include "frmVolunteer.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

frmMain::frmMain(QWidget *parent) : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(tr("TendMark"));
    AppIcons::useIconTheme();
    setWindowIcon(AppIcons::application());
    m_recordEvents = new RecordEvents(this);
    m_mdiArea = new QMdiArea(this);
    m_mdiArea->setObjectName(QStringLiteral("mdiArea"));
    m_mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(m_mdiArea);
    connect(m_mdiArea, &QMdiArea::subWindowActivated, this, &frmMain::subWindowActivated);
    m_session = new DatabaseSession(this, [this] { return closeAllWindows(); });
    connect(m_session, &DatabaseSession::pathChanged, this, &frmMain::databaseChanged);
    m_searchBar = new SearchBar(this);
    connect(m_searchBar, &SearchBar::recordFound, this, [this](MdiChild::Kind kind, const QString &id) {
        Q_EMIT recordRequested(kind, id);
        if (kind == MdiChild::Kind::Volunteer)
            showVolunteer(id);
        else
            showClient(id);
    });
    m_toolBar = MainMenus::build(*this, *m_session, m_searchBar);
    statusBar()->setObjectName(QStringLiteral("sbrStatusBar"));
    m_statusPanel = new QLabel(this);
    m_statusPanel->setObjectName(QStringLiteral("Status"));
    statusBar()->addWidget(m_statusPanel, 1);
    m_filter = new FilterCommand(this, statusBar(), menuBar()->findChild<QMenu *>(QStringLiteral("mnuView")));
    m_startPanel = new StartPanel(m_mdiArea);
    connect(m_startPanel, &StartPanel::newDatabaseRequested, m_session, &DatabaseSession::createNew);
    connect(m_startPanel, &StartPanel::openDatabaseRequested, m_session, &DatabaseSession::openChosen);
    connect(m_startPanel, &StartPanel::demoRequested, m_session, &DatabaseSession::openDemo);
    connect(m_startPanel, &StartPanel::recentRequested, this, [this](const QString &path) { m_session->open(path, true); });
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

QAction *frmMain::toolbarButton(const QString &key) const
{
    for (QToolBar *bar : {m_toolBar, static_cast<QToolBar *>(m_searchBar)})
        for (QAction *a : bar->actions())
            if (a->property("Key").toString() == key)
                return a;
    return nullptr;
}

void frmMain::startUp(const QString &fileToOpen)
{
    m_session->startUp(fileToOpen);
    refreshOptionFlags();
}

QString frmMain::databasePath() const
{
    return m_session->path();
}

bool frmMain::openDatabaseFile(const QString &path, bool reportFailure)
{
    return m_session->open(path, reportFailure);
}

bool frmMain::closeDatabase()
{
    return m_session->close();
}

QStringList frmMain::recentFiles() const
{
    return m_session->recentFiles();
}

QString frmMain::prepareDemoDatabase()
{
    return m_session->prepareDemoDatabase();
}

bool frmMain::closeAllWindows()
{
    m_mdiArea->closeAllSubWindows();
    return m_mdiArea->subWindowList().isEmpty();
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

void frmMain::databaseChanged(const QString &path)
{
    if (path.isEmpty()) {
        setWindowTitle(tr("TendMark"));
        m_statusPanel->setText(tr("No database open"));
    } else {
        DisplayOrganizationName();
        m_statusPanel->setText(QDir::toNativeSeparators(path));
    }
    toolbarButton(QStringLiteral("Open"))->setEnabled(path.isEmpty());
    updateStartPanel();
    refreshOptionFlags();
}

void frmMain::refreshOptionFlags()
{
    m_optionFlags = {};
    basErrorHandler::Guard(QStringLiteral("frmMain.refreshOptionFlags"), [&] { m_optionFlags = OptionsStore::readOptions().flags; });
}

void frmMain::DisplayOrganizationName()
{
    QString name;
    basErrorHandler::Guard(QStringLiteral("frmMain.DisplayOrganizationName"), [&] { name = OptionsStore::readOrganization().name; });
    setWindowTitle(name.isEmpty() ? tr("TendMark - [No Organization Name]") : tr("TendMark - %1").arg(name));
}

void frmMain::showCommands(const MdiChild::Commands &commands)
{
    // The toolbar button and its menu entry offer the same command.
    const struct
    {
        const char *key;
        const char *menuEntry;
        bool enabled;
    } states[] = {{"Save", "mnuFileSave", commands.save},
                  {"Delete", "mnuFileDelete", commands.del},
                  {"Filter", "mnuDataFilter", commands.filter},
                  {"Sort Ascending", "mnuDataSortSortAscending", commands.sortAscending},
                  {"Sort Descending", "mnuDataSortSortDescending", commands.sortDescending}};
    for (const auto &state : states) {
        toolbarButton(QString::fromLatin1(state.key))->setEnabled(state.enabled);
        // Looked up in the menus only: a window being destroyed may call this from its destructor.
        menuBar()->findChild<QAction *>(QLatin1String(state.menuEntry))->setEnabled(state.enabled);
    }
    m_searchBar->offer(commands.searchBar);
}

void frmMain::childCommandsChanged()
{
    auto *child = qobject_cast<MdiChild *>(sender());
    QMdiSubWindow *current = m_mdiArea->currentSubWindow();
    if (child && current && current->widget() == child)
        showCommands(child->commands());
    m_filter->showStatus();
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
    QMdiSubWindow *sub = m_mdiArea->addSubWindow(child);
    sub->setWindowIcon(windowIcon());
    basTendmark::SetMDIChildDimensions(child, m_mdiArea);
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
    m_filter->showStatus();
    if (!window)
        return;
    if (auto *child = qobject_cast<MdiChild *>(window->widget())) {
        m_searchBar->setKind(child->kind());
        child->activated();
        showCommands(child->commands());
    }
}

void frmMain::openRecordEditor(RecordKind editor, const QString &clientId, const QString &recordId)
{
    if (!DatabaseSession::requireDatabase())
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
            || (qobject_cast<frmIncomeExpense *>(open) && (editor == RecordKind::Income || editor == RecordKind::Expenses)
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

void frmMain::updateStartPanel()
{
    const bool none = m_session->path().isEmpty();
    m_startPanel->setVisible(none);
    if (none) {
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

void frmMain::mnuFileSave_Click()
{
    if (!DatabaseSession::requireDatabase())
        return;
    if (MdiChild *child = activeChild(); child && child->DataChanged())
        child->SaveCurrentRecord();
}

void frmMain::mnuFileDelete_Click()
{
    if (!DatabaseSession::requireDatabase())
        return;
    if (MdiChild *child = activeChild())
        child->DeleteCurrentRecord();
}

void frmMain::mnuFilePrintLabels_Click()
{
    if (!DatabaseSession::requireDatabase())
        return;
    frmLabelPrint dialog(ReportRunner::activeForm(*this, RecordScope::Kind::Client), this);
    dialog.exec();
}

template<typename T> void frmMain::openSingle()
{
    if (!DatabaseSession::requireDatabase())
        return;
    auto *window = findChildWindow<T>();
    if (!window) {
        window = new T(this);
        addChild(window);
    }
    activateChild(window);
}

void frmMain::mnuDataClientSummary_Click()
{
    openSingle<frmClientSummary>();
}

void frmMain::mnuDataClientDetails_Click()
{
    openSingle<frmClientDetails>();
}

void frmMain::mnuDataClientTable_Click()
{
    openSingle<frmClientGrid>();
}

void frmMain::mnuDataVolunteers_Click()
{
    if (!DatabaseSession::requireDatabase())
        return;
    if (auto *volunteers = findChildWindow<frmVolunteer>())
        activateChild(volunteers);
    else
        showVolunteer({});
}

void frmMain::mnuDataExportClients_Click()
{
    if (DatabaseSession::requireDatabase())
        (new frmExportClient(this, this))->open();
}

void frmMain::mnuDataExportVolunteers_Click()
{
    if (DatabaseSession::requireDatabase())
        (new frmExportVolunteer(this, this))->open();
}

void frmMain::mnuDataFilter_Click()
{
    if (DatabaseSession::requireDatabase())
        m_filter->run();
}

void frmMain::mnuDataSortSortAscending_Click()
{
    if (!DatabaseSession::requireDatabase())
        return;
    if (MdiChild *child = activeChild())
        child->SortColumn(Qt::AscendingOrder);
}

void frmMain::mnuDataSortSortDescending_Click()
{
    if (!DatabaseSession::requireDatabase())
        return;
    if (MdiChild *child = activeChild())
        child->SortColumn(Qt::DescendingOrder);
}

void frmMain::mnuToolsOptions_Click()
{
    if (!DatabaseSession::requireDatabase())
        return;
    auto *dialog = new frmOptions(this);
    dialog->open();
}

void frmMain::openLookupTable(int index)
{
    if (!DatabaseSession::requireDatabase() || index < 0 || index >= int(LookupTables::all().size()))
        return;
    const LookupTables::LookupTable &t = LookupTables::all()[index];
    const QString table = t.name();
    for (QMdiSubWindow *sub : m_mdiArea->subWindowList()) {
        if (auto *open = qobject_cast<frmTableGrid *>(sub->widget()); open && open->TableName() == table) {
            activateChild(open);
            return;
        }
    }
    addChild(new frmTableGrid(this, t));
}

void frmMain::openReport(const QString &menuName)
{
    if (DatabaseSession::requireDatabase())
        basErrorHandler::Guard(QStringLiteral("frmMain.%1_Click").arg(menuName),
                               [&] { ReportRunner().runMenuCommand(menuName, *this, this); });
}

void frmMain::mnuHelpContents_Click()
{
    helpWindow()->showContents();
}

void frmMain::mnuHelpIndex_Click()
{
    helpWindow()->showIndex();
}

void frmMain::mnuHelpAbout_Click()
{
    Prompt::message(
        tr("About TendMark"),
        tr("TendMark %1\r\nClient records for food pantries and assistance organizations.").arg(QStringLiteral(TENDMARK_VERSION)),
        Prompt::Icon::Information, Prompt::Ok);
}

void frmMain::closeEvent(QCloseEvent *event)
{
    m_mdiArea->closeAllSubWindows();
    if (!m_mdiArea->subWindowList().isEmpty()) {
        event->ignore();
        return;
    }
    m_session->SaveSettings();
    saveWindowGeometry();
    m_session->closeAtExit();
    event->accept();
}
