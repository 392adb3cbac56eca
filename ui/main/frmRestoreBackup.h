#pragma once

#include "Backups.h"

#include <QDialog>

class DatabaseSession;
class QTableWidget;

// File, Restore From Backup...: the copies of a database, newest first, with
// when each was taken, its size and how many clients it holds. Restoring one
// backs up the current file first and then opens the database.
class frmRestoreBackup : public QDialog
{
    Q_OBJECT

public:
    frmRestoreBackup(DatabaseSession &session, const QString &database, QWidget *parent);

    QTableWidget *grid() const { return m_grid; }
    // Restores the selected copy after asking; true when it was put back.
    bool restoreSelected();

private:
    DatabaseSession &m_session;
    QString m_database;
    QList<Backups::Info> m_backups;
    QTableWidget *m_grid;
};
