#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

// Copies of a database kept in a private folder (by default "backups" beside the
// database; the setting BackupFolder moves it, e.g. to a USB stick). Each copy is
// made with VACUUM INTO, so it is consistent even while the file is in use, and
// is checked before it counts. Kept: the newest BackupsToKeep (setting, 10), plus
// the newest of each day for 30 days and of each month for a year.
namespace Backups {

struct Info
{
    QString path;
    QDateTime taken;
    qint64 size = 0;
    int clients = -1;   // -1 when the copy cannot be read
};

QString Folder(const QString &database);
int KeepLast();

// Writes a checked copy of the database into folder (Folder() when empty), then
// thins out the old copies. *made names the new copy.
bool BackupNow(const QString &database, const QString &folder, QString *made, QString *error);
// At most one copy a day when a file is opened; *made stays empty when today's exists.
bool BackupOnOpen(const QString &database, QString *made, QString *error);

// The copies of the database, newest first.
QList<Info> List(const QString &database, const QString &folder = {});
QString Latest(const QString &database, const QString &folder = {});

// Of copies taken at these times, those rotation deletes.
QList<QDateTime> ToDelete(QList<QDateTime> taken, const QDateTime &now, int keepLast);

// Puts a copy back: checks it, backs up the current file (a file too damaged for
// a checked copy is kept byte for byte as "<name>.<time>.kept" in the backups
// folder), then writes the copy under a temporary name and renames it over the
// database. The database must not be open in the program.
bool Restore(const QString &backup, const QString &database, QString *error);

}   // namespace Backups
