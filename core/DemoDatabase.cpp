#include "DemoDatabase.h"

#include "DemoData.h"
#include "Schema.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlDatabase>
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
    // Built under another name and renamed by CreateDatabase, so a failure never leaves half a demo
    // behind; the audit log starts empty rather than listing every made-up record.
    DemoData::Options options;
    options.clients = 500;
    options.seed = 1;
    return Schema::CreateDatabase(path, false, error,
                                  [&options](QSqlDatabase db, QString *e) { return DemoData::Generate(db, options, e); });
}

}   // namespace DemoDatabase
