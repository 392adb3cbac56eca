#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>

class QWidget;

// The open database file: creating, opening and closing it, the demo, the
// recent files, and the file reopened at the next start (LastOpened).
class DatabaseSession : public QObject
{
    Q_OBJECT

public:
    // closeWindows closes every window working on the open file; false when one stays open.
    DatabaseSession(QWidget *frame, std::function<bool()> closeWindows);

    QString path() const { return m_path; }
    // Start-up: reopens the remembered database, or the given file.
    void startUp(const QString &fileToOpen);
    // reportFailure: tell the user when the file does not open (else quiet).
    bool open(const QString &path, bool reportFailure);
    bool close();
    void createNew();
    void openChosen();
    void openDemo();
    // Creates the demo database on first use (with a notice while it is built); its path, or empty after telling why not.
    QString prepareDemoDatabase();
    QStringList recentFiles() const;
    void GetSettings();
    void SaveSettings();

    // True when a database is open; otherwise says so and returns false.
    static bool requireDatabase();

Q_SIGNALS:
    // A file was opened (its path) or closed (empty).
    void pathChanged(const QString &path);

private:
    void setPath(const QString &path);

    QWidget *m_frame;
    std::function<bool()> m_closeWindows;
    QString m_path;
};
