#pragma once

#include "frmFilter.h"

#include <QHash>
#include <QObject>

class MdiChild;
class QAction;
class QLabel;
class QMenu;
class QPushButton;
class QStatusBar;
class Workspace;

// Data, Filter: opens the filter dialog on the active list window's table and
// hands the statement to the window. Each window keeps what was last chosen for
// it, so the dialog reopens there; the status bar says while a window's list is
// filtered, how many records it holds, and offers to remove the filter, as
// does the View menu.
class FilterCommand : public QObject
{
    Q_OBJECT

public:
    FilterCommand(Workspace *workspace, QStatusBar *statusBar, QMenu *viewMenu);

    void run();
    void removeFilter();
    // Follows the active window: called when it changes or its records do.
    void showStatus();

private:
    void apply(MdiChild *child, const QString &sql);

    struct Saved
    {
        frmFilter::State state;
        bool filtered = false;
    };
    Workspace *m_workspace;
    QHash<QObject *, Saved> m_saved;
    frmFilter *m_dialog = nullptr;
    QLabel *lblFilter = nullptr;
    QPushButton *cmdRemoveFilter = nullptr;
    QAction *mnuViewRemoveFilter = nullptr;
};
