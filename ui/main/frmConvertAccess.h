#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

// Opening an Access (.mdb) file: asks, copies it into a new TendMark file beside
// it with a window showing the table being copied (with Cancel), then shows the report.
class frmConvertAccess : public QWidget
{
    Q_OBJECT

public:
    // The new file's path when it was made, else empty (after saying why when it failed).
    static QString Convert(QWidget *parent, const QString &accessFile);
    // Open dialogs' filter for Access files, and whether a path names one.
    static QString Filter();
    static bool IsAccessFile(const QString &path);

private:
    explicit frmConvertAccess(QWidget *parent);
    // Shows the table being copied and lets the window answer Cancel; false once cancelled.
    bool step(int table, int tables, const QString &name, qint64 rows);

    QLabel *lblTable;
    QProgressBar *prgTables;
    QPushButton *cmdCancel;
    bool m_cancelled = false;
};
