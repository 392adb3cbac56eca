#pragma once

#include <QWidget>

class QVBoxLayout;

// What the empty main window shows while no database is open: start a new
// database, open one, try the demo, or reopen a recent file.
class StartPanel : public QWidget
{
    Q_OBJECT

public:
    // Covers area (the main window's work area) and follows its size.
    explicit StartPanel(QWidget *area);

    void setRecentFiles(const QStringList &paths);

Q_SIGNALS:
    void newDatabaseRequested();
    void openDatabaseRequested();
    void demoRequested();
    void recentRequested(const QString &path);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_area;
    QWidget *m_recentTitle;
    QVBoxLayout *m_recentList;
};
