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
    QString folder() const;
    // Start-up: reopens the remembered database, or the given file.
    void startUp(const QString &fileToOpen);
    // reportFailure: tell the user when the file does not open (else quiet).
    bool open(const QString &path, bool reportFailure);
    bool close();
    // Closes the file when the program ends, keeping it as the one reopened next time.
    void closeAtExit();
    void createNew();
    void openChosen();
    void openDemo();
    // Creates the demo database on first use (with a notice while it is built); its path, or empty after telling why not.
    QString prepareDemoDatabase();
    QStringList recentFiles() const;
    void GetSettings();
    void SaveSettings();

    // File, Backup Now...: a checked copy of the open file, and where it went.
    void backupNow();
    // The database whose backups File, Restore From Backup... lists: the open one,
    // else one the user chooses (say, a file that no longer opens); empty on Cancel.
    QString databaseToRestore();
    // Puts a backup in place of database (backing that up first, closing it when
    // open) and opens the result.
    bool restore(const QString &backup, const QString &database);

    // True when a database is open; otherwise says so and returns false.
    static bool requireDatabase();

Q_SIGNALS:
    // A file was opened (its path) or closed (empty).
    void pathChanged(const QString &path);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setPath(const QString &path);
    // Inspects the file before it is opened; false when it must not be opened as it is.
    bool examine(const QString &path, bool reportFailure);
    // A damaged or incomplete file: offers the latest backup or a copy of what can be read.
    void offerRescue(const QString &path, const QString &what);
    void backupOnOpen();
    void warnIfMovedOrDeleted();

    QWidget *m_frame;
    std::function<bool()> m_closeWindows;
    QString m_path;
    bool m_movedReported = false;
};
