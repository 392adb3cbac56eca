#include "PrivateFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace PrivateFiles {

void RestrictNewFiles()
{
    ::umask(077);
}

bool IsReadableByOthers(const QString &path)
{
    struct stat st
    { };
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return false;
    return (st.st_mode & (S_IRWXG | S_IRWXO)) != 0;
}

bool MakePrivate(const QString &path)
{
    struct stat st
    { };
    const QByteArray name = QFile::encodeName(path);
    if (::stat(name.constData(), &st) != 0)
        return false;
    return ::chmod(name.constData(), S_ISDIR(st.st_mode) ? 0700 : 0600) == 0;
}

bool OwnedByMe(const QString &path)
{
    struct stat st
    { };
    return ::lstat(QFile::encodeName(path).constData(), &st) == 0 && st.st_uid == ::getuid();
}

bool MakePrivateFolder(const QString &path)
{
    return QDir().mkpath(path) && MakePrivate(path);
}

bool MoveIntoPlace(const QString &finished, const QString &target, QString *error)
{
    if (std::rename(QFile::encodeName(finished).constData(), QFile::encodeName(target).constData()) == 0)
        return true;
    if (error)
        *error = QStringLiteral("The file '%1' could not be put in place.").arg(QDir::toNativeSeparators(target));
    return false;
}

}   // namespace PrivateFiles

FileIdentity FileIdentity::Of(const QString &path)
{
    struct stat st
    { };
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return {true, quint64(st.st_dev), quint64(st.st_ino)};
}
