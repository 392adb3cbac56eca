#include "Backups.h"

#include "FileHealth.h"
#include "PrivateFiles.h"
#include "Schema.h"
#include "basRegistry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <QUuid>

namespace Backups {
namespace {

const QString kStamp = QStringLiteral("yyyyMMdd-HHmmss-zzz");

QString prefix(const QString &database)
{
    return QFileInfo(database).completeBaseName() + QLatin1Char('-');
}

// Runs body on a private connection to path: to a copy, read-only and immutable;
// to the database, read-write, so that closing it leaves no -wal or -shm behind.
template<typename F> bool withConnection(const QString &path, bool immutable, F &&body)
{
    const QString name = QStringLiteral("tendmark-backup-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        if (immutable) {
            db.setDatabaseName(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toString(QUrl::FullyEncoded)
                               + QStringLiteral("?immutable=1"));
            db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"));
        } else {
            db.setDatabaseName(path);
            db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
        }
        ok = db.open() && body(db);
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return ok;
}

QDateTime takenFrom(const QString &fileName, const QString &database)
{
    const QString stamp = QFileInfo(fileName).completeBaseName().mid(prefix(database).size());
    return QDateTime::fromString(stamp, kStamp);
}

}   // namespace

QString Folder(const QString &database)
{
    const QString chosen = basRegistry::GetString(basRegistry::SettingsKey(), QStringLiteral("BackupFolder"));
    return chosen.isEmpty() ? QFileInfo(database).absoluteDir().filePath(QStringLiteral("backups")) : chosen;
}

int KeepLast()
{
    const int n = basRegistry::GetString(basRegistry::SettingsKey(), QStringLiteral("BackupsToKeep")).toInt();
    return n > 0 ? n : 10;
}

QList<QDateTime> ToDelete(QList<QDateTime> taken, const QDateTime &now, int keepLast)
{
    std::sort(taken.begin(), taken.end(), std::greater<>());
    QSet<QString> days, months;
    QList<QDateTime> doomed;
    for (int i = 0; i < taken.size(); ++i) {
        const QDateTime &t = taken.at(i);
        const qint64 age = t.daysTo(now);
        const QString day = t.toString(QStringLiteral("yyyyMMdd"));
        const QString month = day.left(6);
        bool keep = i < keepLast;
        if (age <= 30 && !days.contains(day))
            keep = true;
        if (age <= 365 && !months.contains(month))
            keep = true;
        days.insert(day);
        months.insert(month);
        if (!keep)
            doomed << t;
    }
    return doomed;
}

QList<Info> List(const QString &database, const QString &folder)
{
    const QDir dir(folder.isEmpty() ? Folder(database) : folder);
    QList<Info> list;
    const QString pattern = prefix(database) + QStringLiteral("*.") + QLatin1String(Schema::FileSuffix);
    for (const QFileInfo &f : dir.entryInfoList({pattern}, QDir::Files, QDir::Name | QDir::Reversed)) {
        Info info {f.absoluteFilePath(), takenFrom(f.fileName(), database), f.size(), -1};
        if (!info.taken.isValid())
            continue;
        withConnection(info.path, true, [&](QSqlDatabase db) {
            QSqlQuery q(db);
            if (q.exec(QStringLiteral("SELECT count(*) FROM Client")) && q.next())
                info.clients = q.value(0).toInt();
            return true;
        });
        list << info;
    }
    return list;
}

QString Latest(const QString &database, const QString &folder)
{
    const QList<Info> list = List(database, folder);
    return list.isEmpty() ? QString() : list.constFirst().path;
}

bool BackupNow(const QString &database, const QString &folderIn, QString *made, QString *error)
{
    const QString folder = folderIn.isEmpty() ? Folder(database) : folderIn;
    if (!PrivateFiles::MakePrivateFolder(folder)) {
        *error = QStringLiteral("The backup folder %1 cannot be created.").arg(QDir::toNativeSeparators(folder));
        return false;
    }
    bool recovered = false;
    if (!FileHealth::FinishInterruptedSave(database, &recovered, error))
        return false;
    const QDateTime now = QDateTime::currentDateTime();
    const QString target
        = QDir(folder).filePath(prefix(database) + now.toString(kStamp) + QLatin1Char('.') + QLatin1String(Schema::FileSuffix));
    const QString building = target + QStringLiteral(".part");
    QFile::remove(building);
    QString sqlError;
    const bool copied = withConnection(database, false, [&](QSqlDatabase db) {
        QSqlQuery q(db);
        q.prepare(QStringLiteral("VACUUM INTO ?"));
        q.addBindValue(building);
        if (q.exec())
            return true;
        sqlError = q.lastError().text();
        return false;
    });
    PrivateFiles::MakePrivate(building);
    if (!copied || Schema::ExamineForOpening(building).state != Schema::FileState::Ok
        || !PrivateFiles::MoveIntoPlace(building, target, error)) {
        QFile::remove(building);
        *error = QStringLiteral("The backup of %1 could not be made in %2. %3")
                     .arg(QFileInfo(database).fileName(), QDir::toNativeSeparators(folder), sqlError)
                     .trimmed();
        return false;
    }
    if (made)
        *made = target;
    QList<QDateTime> times;
    const QList<Info> all = List(database, folder);
    for (const Info &i : all)
        times << i.taken;
    const QList<QDateTime> doomed = ToDelete(times, now, KeepLast());
    for (const Info &i : all)
        if (doomed.contains(i.taken) && i.path != target)
            QFile::remove(i.path);
    return true;
}

bool BackupOnOpen(const QString &database, QString *made, QString *error)
{
    const QList<Info> list = List(database);
    if (!list.isEmpty() && list.constFirst().taken.date() == QDate::currentDate())
        return true;
    return BackupNow(database, {}, made, error);
}

namespace {

// A damaged or incomplete file cannot be backed up with a check; it is kept as it is.
bool keepAsItIs(const QString &database, QString *error)
{
    const QString folder = Folder(database);
    const QString target = QDir(folder).filePath(QFileInfo(database).fileName() + QLatin1Char('.')
                                                 + QDateTime::currentDateTime().toString(kStamp) + QStringLiteral(".kept"));
    const QString building = target + QStringLiteral(".part");
    QFile::remove(building);
    if (PrivateFiles::MakePrivateFolder(folder) && QFile::copy(database, building) && PrivateFiles::MakePrivate(building)
        && PrivateFiles::MoveIntoPlace(building, target, error))
        return true;
    QFile::remove(building);
    *error = QStringLiteral("%1 could not be kept in %2 before the backup was put in its place.")
                 .arg(QFileInfo(database).fileName(), QDir::toNativeSeparators(folder));
    return false;
}

}   // namespace

bool Restore(const QString &backup, const QString &database, QString *error)
{
    const Schema::FileCheck check = Schema::ExamineForOpening(backup);
    if (check.state != Schema::FileState::Ok && check.state != Schema::FileState::ReadOnly) {
        *error = check.reason;
        return false;
    }
    if (QFileInfo::exists(database)) {
        QString made;
        if (!BackupNow(database, {}, &made, error) && !keepAsItIs(database, error))
            return false;
        if (QFileInfo::exists(database + QStringLiteral("-wal"))) {
            *error = QStringLiteral("%1 is open in a program; close it first.").arg(QDir::toNativeSeparators(database));
            return false;
        }
    }
    const QFileInfo target(database);
    const QString building = target.absoluteDir().filePath(QStringLiteral(".%1.restoring").arg(target.fileName()));
    QFile::remove(building);
    if (!QFile::copy(backup, building)) {
        *error = QStringLiteral("The backup could not be copied beside %1.").arg(QDir::toNativeSeparators(database));
        return false;
    }
    PrivateFiles::MakePrivate(building);
    QFile::remove(database + QStringLiteral("-shm"));
    if (!PrivateFiles::MoveIntoPlace(building, database, error)) {
        QFile::remove(building);
        return false;
    }
    return true;
}

}   // namespace Backups
