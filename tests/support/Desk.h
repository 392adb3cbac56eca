#pragma once

#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "frmMain.h"

#include <QAction>
#include <QCoreApplication>
#include <QSize>

// The main window open on a fresh database, shown and active, answering every
// question from a script: the desk at which window tests work.
struct Desk
{
    TestDatabase db;
    ScriptedPrompts prompts;
    frmMain main;

    explicit Desk(QSize size = QSize(1100, 800));

    // Opens a window through its menu entry and returns it.
    template<typename T> T *open(const char *menu)
    {
        main.findChild<QAction *>(QString::fromLatin1(menu))->trigger();
        QCoreApplication::processEvents();
        return main.findChildWindow<T>();
    }
};
