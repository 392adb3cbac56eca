#include "DatabaseSession.h"

#include "Backups.h"
#include "DemoDatabase.h"
#include "FileHealth.h"
#include "PrivateFiles.h"
#include "Prompt.h"
#include "Schema.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basRegistry.h"
#include "frmConvertAccess.h"
#include "frmMessage.h"

#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFileInfo>
#include <QWidget>

namespace {

constexpr int kRecentFilesKept = 6;

QString databaseFilter()
{
    return DatabaseSession::tr("Database Files (*.%1)").arg(QLatin1String(Schema::FileSuffix));
}

QString shown(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

// Closes the shared connection; a file changed since it was opened is backed up first.
void closeConnection()
{
    const bool changed = basDatabase::HasChangesSinceOpen();
    const QString path = basDatabase::DatabasePath();
    basDatabase::CloseConnection();
    QString made;
    QString error;
    if (changed && !path.isEmpty() && !Backups::BackupNow(path, {}, &made, &error))
        basErrorHandler::ReportError(QStringLiteral("DatabaseSession.close"), -2147467259, error);
}

}   // namespace

DatabaseSession::DatabaseSession(QWidget *frame, std::function<bool()> closeWindows)
    : QObject(frame)
    , m_frame(frame)
    , m_closeWindows(std::move(closeWindows))
{
    frame->installEventFilter(this);
}

bool DatabaseSession::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_frame && event->type() == QEvent::WindowActivate)
        warnIfMovedOrDeleted();
    return QObject::eventFilter(watched, event);
}

void DatabaseSession::warnIfMovedOrDeleted()
{
    if (m_path.isEmpty() || m_movedReported || !basDatabase::OpenFileWasMovedOrDeleted())
        return;
    m_movedReported = true;
    Prompt::message(tr("Database Moved"),
                    tr("%1 was moved, renamed or deleted while it was open. Changes you save now may be lost; "
                       "close the database and open the file where it is now.")
                        .arg(shown(m_path)),
                    Prompt::Icon::Exclamation, Prompt::Ok);
}

void DatabaseSession::startUp(const QString &fileToOpen)
{
    GetSettings();
    const QString path = fileToOpen.isEmpty() ? m_path : fileToOpen;
    m_path.clear();
    if (!path.isEmpty())
        open(path, !fileToOpen.isEmpty());
    else
        setPath({});
}

void DatabaseSession::GetSettings()
{
    basRegistry::CreateKey(basRegistry::SettingsKey());
    m_path = basRegistry::GetString(basRegistry::SettingsKey(), QStringLiteral("LastOpened"));
}

void DatabaseSession::SaveSettings()
{
    basRegistry::CreateKey(basRegistry::SettingsKey());
    basRegistry::SetString(basRegistry::SettingsKey(), QStringLiteral("LastOpened"), m_path);
}

QStringList DatabaseSession::recentFiles() const
{
    return basRegistry::GetString(basRegistry::SettingsKey(), QStringLiteral("RecentFiles")).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void DatabaseSession::setPath(const QString &path)
{
    m_path = path;
    m_movedReported = false;
    if (!path.isEmpty()) {
        QStringList recent = recentFiles();
        recent.removeAll(path);
        recent.prepend(path);
        basRegistry::SetString(basRegistry::SettingsKey(), QStringLiteral("RecentFiles"),
                               recent.mid(0, kRecentFilesKept).join(QLatin1Char('\n')));
    }
    SaveSettings();
    Q_EMIT pathChanged(path);
}

bool DatabaseSession::open(const QString &path, bool reportFailure)
{
    if (!m_closeWindows())
        return false;
    const QString absolute = QFileInfo(path).absoluteFilePath();
    closeConnection();
    if (!examine(absolute, reportFailure)) {
        if (!basDatabase::IsOpen())
            setPath({});
        return false;
    }
    QString reason;
    const bool ok = basDatabase::OpenConnection(absolute, &reason);
    if (!ok)
        basDatabase::CloseConnection();
    setPath(ok ? absolute : QString());
    if (ok)
        backupOnOpen();
    if (!ok && reportFailure) {
        Prompt::message(tr("Database Open Error"),
                        tr("The selected database file may not be a valid TendMark database.\r\n"
                           "Please make sure that you are selecting the correct database file."),
                        Prompt::Icon::Exclamation, Prompt::Ok);
        basErrorHandler::ReportError(QStringLiteral("frmMain.mnuFileOpen_Click"), -2147467259, reason);
    }
    return ok;
}

bool DatabaseSession::examine(const QString &path, bool reportFailure)
{
    const Schema::FileCheck check = Schema::ExamineForOpening(path);
    if (check.state == Schema::FileState::Damaged || check.state == Schema::FileState::Incomplete) {
        offerRescue(path, check.reason);
        return false;
    }
    if (check.state == Schema::FileState::Newer || check.state == Schema::FileState::ReadOnly) {
        // Nothing is wrong with the file: the message says what stands in the way.
        if (reportFailure)
            Prompt::message(tr("Database Open Error"), check.reason, Prompt::Icon::Exclamation, Prompt::Ok);
        return false;
    }
    if (check.state != Schema::FileState::Ok)
        return true;   // opening fails and says why
    if (check.notPrivate
        && Prompt::message(tr("Private File"),
                           tr("Other users of this computer can read %1, which holds your clients' personal "
                              "details.\r\nDo you want to make it readable by you only?")
                               .arg(shown(path)),
                           Prompt::Icon::Question, Prompt::Yes | Prompt::No)
            == Prompt::Yes
        && !PrivateFiles::MakePrivate(path) && reportFailure)
        Prompt::message(tr("Private File"), tr("The permissions of %1 could not be changed.").arg(shown(path)), Prompt::Icon::Exclamation,
                        Prompt::Ok);
    return true;
}

void DatabaseSession::offerRescue(const QString &path, const QString &what)
{
    const QString latest = Backups::Latest(path);
    QString text = tr("%1 cannot be used as it is: %2\r\nTendMark will not change this file.\r\n\r\n").arg(shown(path), what);
    Prompt::Buttons buttons = Prompt::No | Prompt::Cancel;
    if (!latest.isEmpty()) {
        text += tr("Press Yes to open a copy of the latest backup (%1).\r\n")
                    .arg(QFileInfo(latest).lastModified().toString(QStringLiteral("yyyy-MM-dd hh:mm")));
        buttons |= Prompt::Yes;
    }
    text += tr("Press No to copy what can still be read into a new file.");
    const int answer = Prompt::message(tr("Damaged Database"), text, Prompt::Icon::Critical, buttons);
    if (answer == Prompt::Cancel)
        return;
    const QString target = Prompt::saveFileName(
        answer == Prompt::Yes ? tr("Open Latest Backup") : tr("Copy Readable Data"), databaseFilter(), QLatin1String(Schema::FileSuffix),
        QFileInfo(path).completeBaseName() + QStringLiteral(" (rescued).") + QLatin1String(Schema::FileSuffix),
        QFileInfo(path).absolutePath());
    if (target.isEmpty())
        return;
    if (QFileInfo(target).absoluteFilePath() == QFileInfo(path).absoluteFilePath() || QFileInfo::exists(target)) {
        Prompt::message(tr("Damaged Database"), tr("Please choose a file that does not exist yet."), Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    QString error;
    bool ok = false;
    QString done;
    if (answer == Prompt::Yes) {
        ok = QFile::copy(latest, target) && PrivateFiles::MakePrivate(target);
        if (!ok)
            error = tr("The backup could not be copied to %1.").arg(shown(target));
    } else {
        FileHealth::CopyReport report;
        ok = FileHealth::CopyReadable(path, target, &report, &error);
        done = tr("%1 rows were copied to %2; %3 could not be read.").arg(report.rowsCopied).arg(shown(target)).arg(report.rowsLost);
    }
    if (!ok) {
        Prompt::message(tr("Damaged Database"), error, Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    if (!done.isEmpty())
        Prompt::message(tr("Damaged Database"), done, Prompt::Icon::Information, Prompt::Ok);
    open(target, true);
}

void DatabaseSession::backupOnOpen()
{
    QString made;
    QString error;
    if (!Backups::BackupOnOpen(m_path, &made, &error))
        basErrorHandler::ReportError(QStringLiteral("DatabaseSession.open"), -2147467259, error);
}

void DatabaseSession::backupNow()
{
    if (!requireDatabase())
        return;
    QString made;
    QString error;
    if (Backups::BackupNow(basDatabase::DatabasePath(), {}, &made, &error))
        Prompt::message(tr("Backup Now"), tr("A checked copy of the database was saved as %1.").arg(shown(made)), Prompt::Icon::Information,
                        Prompt::Ok);
    else
        Prompt::message(tr("Backup Now"), tr("No backup was made.\r\n%1").arg(error), Prompt::Icon::Exclamation, Prompt::Ok);
}

QString DatabaseSession::databaseToRestore()
{
    if (!m_path.isEmpty())
        return m_path;
    const QStringList recent = recentFiles();
    return Prompt::openFileName(tr("Restore From Backup"), databaseFilter(),
                                recent.isEmpty() ? QString() : QFileInfo(recent.constFirst()).absolutePath());
}

bool DatabaseSession::restore(const QString &backup, const QString &database)
{
    const QString path = QFileInfo(database).absoluteFilePath();
    if (!m_path.isEmpty() && QFileInfo(m_path).absoluteFilePath() == path && !close())
        return false;
    QString error;
    const bool ok = Backups::Restore(backup, path, &error);
    if (!ok)
        Prompt::message(tr("Restore From Backup"), tr("The backup was not restored; the database is as it was.\r\n%1").arg(error),
                        Prompt::Icon::Exclamation, Prompt::Ok);
    open(path, true);
    return ok;
}

bool DatabaseSession::close()
{
    if (!m_closeWindows())
        return false;
    closeConnection();
    setPath({});
    return true;
}

void DatabaseSession::closeAtExit()
{
    closeConnection();
}

void DatabaseSession::createNew()
{
    const QString path = Prompt::saveFileName(tr("New Database"), databaseFilter(), QLatin1String(Schema::FileSuffix),
                                              QStringLiteral("pantry.%1").arg(QLatin1String(Schema::FileSuffix)), folder());
    if (path.isEmpty())
        return;
    if (!close())
        return;
    QString error;
    if (!Schema::CreateDatabase(path, true, &error)) {
        Prompt::message(tr("New Database"), tr("The database could not be created.\r\n%1").arg(error), Prompt::Icon::Exclamation,
                        Prompt::Ok);
        return;
    }
    open(path, true);
}

// The open database's folder, where the file dialogs start.
QString DatabaseSession::folder() const
{
    return m_path.isEmpty() ? QString() : QFileInfo(m_path).absolutePath();
}

void DatabaseSession::openChosen()
{
    const QString path
        = Prompt::openFileName(tr("Open Database"),
                               tr("TendMark or Access Databases (*.%1 *.mdb)").arg(QLatin1String(Schema::FileSuffix)) + QStringLiteral(";;")
                                   + databaseFilter() + QStringLiteral(";;") + frmConvertAccess::Filter(),
                               folder());
    if (path.isEmpty())
        return;
    const QString converted = frmConvertAccess::IsAccessFile(path) ? frmConvertAccess::Convert(m_frame, path) : path;
    if (!converted.isEmpty())
        open(converted, true);
}

QString DatabaseSession::prepareDemoDatabase()
{
    QString error;
    bool ok = true;
    if (!QFileInfo::exists(DemoDatabase::Path())) {
        frmMessage notice(m_frame);
        notice.setMessage(tr("Please wait while the demo database is created..."));
        notice.showNow();
        ok = DemoDatabase::Ensure(&error);
    }
    if (!ok) {
        Prompt::message(tr("Demo Database"), tr("The demo database could not be created.\r\n%1").arg(error), Prompt::Icon::Exclamation,
                        Prompt::Ok);
        return {};
    }
    return DemoDatabase::Path();
}

void DatabaseSession::openDemo()
{
    const QString path = prepareDemoDatabase();
    if (!path.isEmpty())
        open(path, true);
}

bool DatabaseSession::requireDatabase()
{
    if (basDatabase::IsOpen())
        return true;
    Prompt::message(tr("No Database open"), tr("There is no current database open."), Prompt::Icon::Exclamation, Prompt::Ok);
    return false;
}
