#include "FaultText.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace FaultText {

QString ForDatabaseError(int sqliteCode, const QString &databasePath, bool fileGone)
{
    const QString name = QFileInfo(databasePath).fileName();
    const int primary = sqliteCode & 0xff;
    const bool moved = sqliteCode == 1032;   // SQLITE_READONLY_DBMOVED
    if (fileGone || moved)
        return QCoreApplication::translate("FaultText",
                                           "%1 was moved or deleted while it was open. Nothing was saved; close the file, open it from "
                                           "where it is now (or restore a backup), and enter the change again.")
            .arg(name);
    switch (primary) {
    case 13:   // SQLITE_FULL
        return QCoreApplication::translate("FaultText",
                                           "The disk holding %1 is full. Nothing was saved; free some space and press Save again.")
            .arg(name);
    case 8:   // SQLITE_READONLY
        return QCoreApplication::translate("FaultText",
                                           "%1 or its folder is read-only. Nothing was saved; ask for permission to write there, or save "
                                           "a copy in a folder of your own, then press Save again.")
            .arg(name);
    case 5:   // SQLITE_BUSY
    case 6:   // SQLITE_LOCKED
        return QCoreApplication::translate("FaultText",
                                           "%1 is in use by another program. Nothing was saved; close that program or wait a moment, "
                                           "then press Save again.")
            .arg(name);
    case 10:   // SQLITE_IOERR
    case 14:   // SQLITE_CANTOPEN
        return QCoreApplication::translate("FaultText",
                                           "%1 could not be written: the disk or network drive holding it did not answer. Nothing was "
                                           "saved; check that the drive is there and press Save again.")
            .arg(name);
    case 11:   // SQLITE_CORRUPT
    case 26:   // SQLITE_NOTADB
        return QCoreApplication::translate("FaultText",
                                           "%1 is damaged. Nothing was saved; close the file and open it again, and TendMark offers to "
                                           "open a backup or to copy out what can be read.")
            .arg(name);
    default:
        return {};
    }
}

}   // namespace FaultText
