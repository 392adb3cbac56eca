#include "FileHealth.h"

#include "PrivateFiles.h"
#include "Schema.h"
#include "Transaction.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QUuid>
#include <sqlite3.h>

namespace FileHealth {
namespace {

qint64 sizeOf(const QString &path)
{
    return QFileInfo(path).size();
}

}   // namespace

bool FinishInterruptedSave(const QString &path, bool *recovered, QString *error)
{
    const bool pending = sizeOf(path + QStringLiteral("-journal")) > 0 || sizeOf(path + QStringLiteral("-wal")) > 0;
    *recovered = false;
    if (!pending)
        return true;
    if (!PrivateFiles::OwnedByMe(path)) {
        *error
            = QCoreApplication::translate("FileHealth", "A save to it was cut short, and only the user who owns the file can finish it.");
        return false;
    }
    sqlite3 *db = nullptr;
    int rc = sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr);
    if (rc == SQLITE_OK) {
        sqlite3_busy_timeout(db, 5000);
        // Reading the schema replays or rolls back whatever the crash left.
        rc = sqlite3_exec(db, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr);
        if (rc == SQLITE_OK && sizeOf(path + QStringLiteral("-wal")) > 0)
            rc = sqlite3_exec(db, "PRAGMA wal_checkpoint(TRUNCATE)", nullptr, nullptr, nullptr);
    }
    if (rc != SQLITE_OK)
        *error = QCoreApplication::translate("FileHealth", "A save to it was cut short and could not be finished (%1).")
                     .arg(QString::fromUtf8(sqlite3_errstr(rc)));
    sqlite3_close(db);
    *recovered = rc == SQLITE_OK;
    return rc == SQLITE_OK;
}

bool CopyReadable(const QString &damaged, const QString &newFile, CopyReport *report, QString *error)
{
    *report = {};
    const QString source = QStringLiteral("tendmark-rescue-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    auto copyRows = [&](QSqlDatabase target, QString *fillError) {
        Transaction transaction(target);
        QSqlDatabase from = QSqlDatabase::database(source, false);
        QSqlQuery tables(target);
        // Search indexes (virtual tables and the tables behind them) are built afresh from the rows copied.
        tables.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%' "
                                   "AND name IN (SELECT name FROM pragma_table_list WHERE type = 'table') ORDER BY rowid"));
        QStringList names;
        while (tables.next())
            names << tables.value(0).toString();
        for (const QString &table : names) {
            QSqlQuery(target).exec(QStringLiteral("DELETE FROM \"%1\"").arg(table));   // the standard rows give way to the file's
            qlonglong after = -1;
            int failures = 0;
            int copied = 0;
            while (failures < 100) {
                QSqlQuery read(from);
                read.setForwardOnly(true);
                read.prepare(QStringLiteral("SELECT rowid, * FROM \"%1\" WHERE rowid > ? ORDER BY rowid").arg(table));
                read.addBindValue(after);
                if (!read.exec()) {
                    ++failures;
                    ++after;
                    continue;
                }
                bool more = false;
                while ((more = read.next())) {
                    after = read.value(0).toLongLong();
                    const QSqlRecord r = read.record();
                    QStringList columns, marks;
                    for (int i = 1; i < r.count(); ++i) {
                        columns << QStringLiteral("\"%1\"").arg(r.fieldName(i));
                        marks << QStringLiteral("?");
                    }
                    QSqlQuery write(target);
                    write.prepare(QStringLiteral("INSERT OR REPLACE INTO \"%1\" (%2) VALUES (%3)")
                                      .arg(table, columns.join(QLatin1Char(',')), marks.join(QLatin1Char(','))));
                    for (int i = 1; i < r.count(); ++i)
                        write.addBindValue(r.value(i));
                    if (write.exec()) {
                        ++report->rowsCopied;
                        ++copied;
                    } else {
                        ++report->rowsLost;
                    }
                }
                if (read.lastError().type() == QSqlError::NoError)
                    break;
                ++failures;
                ++report->rowsLost;
                ++after;
            }
            if (copied == 0 && failures > 0)
                report->lostTables << table;
        }
        QStringList indexes;
        for (QSqlQuery q(QStringLiteral("SELECT name FROM pragma_table_list WHERE type = 'virtual'"), target); q.next();)
            indexes << q.value(0).toString();
        for (const QString &index : std::as_const(indexes)) {
            QSqlQuery rebuild(target);
            if (!rebuild.exec(QStringLiteral("INSERT INTO \"%1\" (\"%1\") VALUES ('rebuild')").arg(index))) {
                *fillError = rebuild.lastError().text();
                return false;
            }
        }
        if (!transaction.commit()) {
            *fillError = transaction.error();
            return false;
        }
        return true;
    };
    bool ok = false;
    {
        QSqlDatabase from = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), source);
        from.setDatabaseName(damaged);
        from.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        if (!from.open()) {
            *error
                = QCoreApplication::translate("FileHealth", "The file '%1' cannot be read at all.").arg(QDir::toNativeSeparators(damaged));
        } else {
            ok = Schema::CreateDatabase(newFile, false, error, copyRows);
        }
        from.close();
    }
    QSqlDatabase::removeDatabase(source);
    return ok;
}

}   // namespace FileHealth
