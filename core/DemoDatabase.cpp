#include "DemoDatabase.h"

#include "DemoData.h"
#include "Schema.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QStandardPaths>

namespace DemoDatabase {

QString Path()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation))
        .filePath(QStringLiteral("demo.%1").arg(QLatin1String(Schema::FileSuffix)));
}

bool Ensure(QString *error)
{
    const QString path = Path();
    if (QFileInfo::exists(path))
        return true;
    if (!QDir().mkpath(QFileInfo(path).absolutePath())) {
        *error = QStringLiteral("The folder %1 could not be created.").arg(QDir::toNativeSeparators(QFileInfo(path).absolutePath()));
        return false;
    }
    // Built under another name and renamed, so that a failure never leaves half a demo behind.
    const QString building = path + QStringLiteral(".part");
    QFile::remove(building);
    if (!Schema::CreateDatabase(building, true, error))
        return false;
    const QString connection = QStringLiteral("demo-create");
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connection);
        db.setDatabaseName(building);
        ok = db.open();
        if (ok) {
            QSqlQuery(db).exec(QStringLiteral("PRAGMA foreign_keys = ON"));
            DemoData::Options options;
            options.clients = 500;
            options.seed = 1;
            ok = DemoData::Generate(db, options, error);
        } else {
            *error = QStringLiteral("The new demo database could not be opened.");
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(connection);
    if (ok && !QFile::rename(building, path)) {
        *error = QStringLiteral("The demo database could not be stored as %1.").arg(QDir::toNativeSeparators(path));
        ok = false;
    }
    if (!ok)
        QFile::remove(building);
    return ok;
}

}   // namespace DemoDatabase
