#pragma once

#include "Workspace.h"

#include <QWidget>

// What the workspace asks of every child window. A window that lists or edits
// records overrides what applies to it; the rest answer "nothing to do".
class MdiChild : public QWidget
{
    Q_OBJECT

public:
    enum class Kind { Other, Client, Volunteer };

    // The commands the window offers now; the frame enables its toolbar, search bar and menus from them.
    struct Commands
    {
        bool save = false;
        bool del = false;
        bool filter = false;
        bool sortAscending = false;
        bool sortDescending = false;
        bool searchBar = false;
        bool operator==(const Commands &) const = default;
    };

    explicit MdiChild(Workspace *workspace, QWidget *parent = nullptr);
    ~MdiChild() override;

    Workspace *workspace() const { return m_workspace; }

    virtual Kind kind() const { return Kind::Other; }
    virtual Commands commands() const { return {}; }
    virtual bool DataChanged() const { return false; }
    virtual bool SaveCurrentRecord() { return true; }
    virtual void DeleteCurrentRecord() { }

    // List windows: the current query, its re-reading, and the current key.
    virtual bool hasSQL() const { return false; }
    virtual QString SQL() const { return {}; }
    virtual void setSQL(const QString &) { }
    virtual void ExecuteSQL() { }
    // Before other records are shown: a changed record is saved or dropped as the
    // user says; false when it stays on screen and the records with it.
    virtual bool leaveCurrentRecord() { return true; }
    virtual void SortColumn(Qt::SortOrder) { }
    virtual int recordCount() const { return -1; }   // the records the current query holds
    virtual QString currentKey() const { return {}; }
    // The search bar's choice for this window.
    virtual void showRecord(const QString &) { }

    // Called by the workspace when this window becomes the active one.
    virtual void activated() { }

    // The workspace counts the windows it shows, and lets go of them when it closes first.
    void setCounted(bool counted) { m_counted = counted; }
    void detach()
    {
        m_counted = false;
        m_workspace = nullptr;
    }

    // Closes the window through its frame, so that the next window becomes the active one.
    void closeWindow();

Q_SIGNALS:
    // What commands() answers has changed.
    void commandsChanged();

protected:
    // Tells the other open windows that records of this client were saved or deleted.
    void announceClientRecordsChanged(const QString &clientId);
    // Another window saved or deleted records of this client: windows that show them refill.
    virtual void refillForClient(const QString &) { }

    // Asked before the window closes; false keeps it open.
    virtual bool queryUnload() { return true; }
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    Workspace *m_workspace;
    bool m_counted = false;
};
