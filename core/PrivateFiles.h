#pragma once

#include <QString>

// Client records are personal: every file and folder TendMark makes is readable
// by its owner only: 0600 files and 0700 folders on Unix, an access list naming
// only the user on Windows.
namespace PrivateFiles {

// Makes every file and folder the process creates from now on owner-only (umask 077).
void RestrictNewFiles();

// True when another local user may read the file or list the folder.
bool IsReadableByOthers(const QString &path);
// Takes away all access of other users: 0600 for a file, 0700 for a folder.
bool MakePrivate(const QString &path);
// Creates the folder (and its parents) when missing and makes it owner-only.
bool MakePrivateFolder(const QString &path);
// True when the file belongs to the user running the program.
bool OwnedByMe(const QString &path);

// Puts a finished file in place of target in one step (replacing any file there).
bool MoveIntoPlace(const QString &finished, const QString &target, QString *error);

}   // namespace PrivateFiles

// Which file a path names: a file moved, deleted or replaced by another gets another identity.
struct FileIdentity
{
    bool exists = false;
    quint64 device = 0;
    quint64 inode = 0;

    static FileIdentity Of(const QString &path);
    bool operator==(const FileIdentity &) const = default;
};
