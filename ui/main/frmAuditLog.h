#pragma once

#include "MdiChild.h"

class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QTableWidget;

// The record of every change made to the pantry's records, newest last,
// filtered by client, table, user and date. It only shows the log: nothing in
// it can be changed.
class frmAuditLog : public MdiChild
{
    Q_OBJECT

public:
    explicit frmAuditLog(Workspace *workspace, QWidget *parent = nullptr);

    // Reads the log again with the current filters.
    void refill();
    QTableWidget *grid() const { return m_grid; }

private:
    QLineEdit *m_client;
    QComboBox *m_table;
    QLineEdit *m_user;
    QCheckBox *m_useSince;
    QDateEdit *m_since;
    QCheckBox *m_useUntil;
    QDateEdit *m_until;
    QTableWidget *m_grid;
    QLabel *m_count;
};
