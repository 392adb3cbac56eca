#include "DatabaseSession.h"

#include "DemoDatabase.h"
#include "Prompt.h"
#include "Schema.h"
#include "basDatabase.h"
#include "basErrorHandler.h"
#include "basRegistry.h"
#include "frmMessage.h"

#include <QFileInfo>

namespace {

const QString kDatabaseFilter = QStringLiteral("Database Files (*.%1)").arg(QLatin1String(Schema::FileSuffix));
constexpr int kRecentFilesKept = 6;

} // namespace

DatabaseSession::DatabaseSession(QWidget *frame, std::function<bool()> closeWindows)
    : QObject(frame), m_frame(frame), m_closeWindows(std::move(closeWindows))
{
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
    QString reason;
    const bool ok = basDatabase::OpenConnection(absolute, &reason);
    if (!ok)
        basDatabase::CloseConnection();
    setPath(ok ? absolute : QString());
    if (!ok && reportFailure) {
        Prompt::message(QStringLiteral("Database Open Error"),
                        QStringLiteral("The selected database file may not be a valid TendMark database.\r\n"
                                       "Please make sure that you are selecting the correct database file."),
                        Prompt::Icon::Exclamation, Prompt::Ok);
        basErrorHandler::ReportError(QStringLiteral("frmMain.mnuFileOpen_Click"), -2147467259, reason);
    }
    return ok;
}

bool DatabaseSession::close()
{
    if (!m_closeWindows())
        return false;
    basDatabase::CloseConnection();
    setPath({});
    return true;
}

void DatabaseSession::createNew()
{
    const QString path = Prompt::saveFileName(QStringLiteral("New Database"), kDatabaseFilter, QLatin1String(Schema::FileSuffix),
                                              QStringLiteral("pantry.%1").arg(QLatin1String(Schema::FileSuffix)));
    if (path.isEmpty())
        return;
    if (!close())
        return;
    QString error;
    if (!Schema::CreateDatabase(path, true, &error)) {
        Prompt::message(QStringLiteral("New Database"), QStringLiteral("The database could not be created.\r\n") + error,
                        Prompt::Icon::Exclamation, Prompt::Ok);
        return;
    }
    open(path, true);
}

void DatabaseSession::openChosen()
{
    const QString path = Prompt::openFileName(QStringLiteral("Open Database"), kDatabaseFilter);
    if (!path.isEmpty())
        open(path, true);
}

QString DatabaseSession::prepareDemoDatabase()
{
    QString error;
    bool ok = true;
    if (!QFileInfo::exists(DemoDatabase::Path())) {
        frmMessage notice(m_frame);
        notice.setMessage(QStringLiteral("Please wait while the demo database is created..."));
        notice.showNow();
        ok = DemoDatabase::Ensure(&error);
    }
    if (!ok) {
        Prompt::message(QStringLiteral("Demo Database"), QStringLiteral("The demo database could not be created.\r\n") + error,
                        Prompt::Icon::Exclamation, Prompt::Ok);
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
    Prompt::message(QStringLiteral("No Database open"), QStringLiteral("There is no current database open."), Prompt::Icon::Exclamation,
                    Prompt::Ok);
    return false;
}
