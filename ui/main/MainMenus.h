#pragma once

class DatabaseSession;
class QToolBar;
class frmMain;

// The main window's menus, toolbar and view bar, built from one table of commands.
namespace MainMenus {

// Adds them to main around searchBar: the toolbar above it, the view bar on the left. Returns the toolbar.
QToolBar *build(frmMain &main, DatabaseSession &session, QToolBar *searchBar);

}   // namespace MainMenus
