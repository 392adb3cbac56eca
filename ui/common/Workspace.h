#pragma once

#include "OptionsStore.h"

#include <QList>
#include <QString>

class MdiChild;
class QMdiSubWindow;
class RecordEvents;
class QWidget;

// The record editors a client window can open on one of its records.
enum class RecordKind { FamilyMember, FoodService, Payment, Income, Expenses };

// What a child window may ask of the frame it lives in. The main window
// implements it; child windows know only this, never the main window itself.
class Workspace
{
public:
    virtual ~Workspace() = default;

    // The window the child windows and their notices are centred on.
    virtual QWidget *frame() = 0;
    virtual const OptionFlags &optionFlags() const = 0;

    // Opens a record editor for one client, on the given record or on a new one when recordId is empty.
    virtual void openRecordEditor(RecordKind kind, const QString &clientId, const QString &recordId) = 0;

    virtual MdiChild *activeChild() const = 0;
    virtual QList<MdiChild *> childWindows() const = 0;
    virtual QMdiSubWindow *addChild(MdiChild *child) = 0;
    virtual void activateChild(MdiChild *child) = 0;
    virtual void centreChild(QMdiSubWindow *sub) = 0;
    virtual void childClosed(MdiChild *child) = 0;

    // Where windows announce the records they saved or deleted, and hear of the others'.
    virtual RecordEvents *recordEvents() = 0;

    template<typename T> T *findChildWindow() const
    {
        for (MdiChild *child : childWindows())
            if (auto *w = qobject_cast<T *>(child))
                return w;
        return nullptr;
    }
};
