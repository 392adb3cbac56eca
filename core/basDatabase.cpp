#include "basDatabase.h"

#include "Backups.h"
#include "FaultText.h"
#include "FieldRules.h"
#include "FoldedText.h"
#include "PrivateFiles.h"
#include "Money.h"
#include "Recordset.h"
#include "Schema.h"
#include "SqlText.h"
#include "TmError.h"
#include "basErrorHandler.h"
#include "basTendmark.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSqlDriver>
#include <QSqlError>
#include <sqlite3.h>

namespace basDatabase {
namespace {

const QString kConnection = QStringLiteral("tendmark");
QHash<QString, QList<FieldInfo>> fieldCache;
QHash<QString, QSqlQuery> preparedChanges;

QString openPath;
FileIdentity openIdentity;

TmError sqlError(const QSqlError &e)
{
    bool ok = false;
    const int native = e.nativeErrorCode().toInt(&ok);
    TmError error(ok ? native : -1, e.text());
    if (ok)
        error.setPlainWords(FaultText::ForDatabaseError(native, openPath, OpenFileWasMovedOrDeleted()));
    return error;
}

const QString kMatchColumns = QStringLiteral(
    "SELECT ClientID, LastName, FirstName, MiddleInitial, SocialSecurityNumber, Address, City, State, ZipCode FROM Client WHERE ");

bool hasRows(const QString &sql, const QVariantList &binds)
{
    QSqlQuery q = Execute(QStringLiteral("SELECT EXISTS (") + sql + QLatin1Char(')'), binds);
    return q.next() && q.value(0).toBool();
}

}   // namespace

QSqlDatabase Connection()
{
    return QSqlDatabase::database(kConnection, false);
}

bool IsOpen()
{
    return QSqlDatabase::contains(kConnection) && Connection().isOpen();
}

QString DatabasePath()
{
    return IsOpen() ? openPath : QString();
}

bool OpenFileWasMovedOrDeleted()
{
    return IsOpen() && !(FileIdentity::Of(openPath) == openIdentity);
}

bool OpenConnection(const QString &path, QString *reason)
{
    const Schema::FileCheck check = Schema::ExamineForOpening(path);
    if (check.state != Schema::FileState::Ok) {
        if (reason)
            *reason = check.reason;
        return false;
    }
    CloseConnection();
    QString error;
    if (check.version < Schema::CurrentVersion && !Backups::BackupNow(path, {}, nullptr, &error)) {
        if (reason)
            *reason = QCoreApplication::translate("basDatabase", "'%1' was not upgraded because no backup could be made first. %2")
                          .arg(path, error);
        return false;
    }
    Schema::RegisterTriggerFunctions();
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), kConnection);
        db.setDatabaseName(path);
        db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
        if (!db.open())
            error = db.lastError().text();
        else if (Schema::PrepareForWriting(db, &error) && !Schema::Upgrade(db, check.version, &error) && error.isEmpty())
            error = QCoreApplication::translate("basDatabase", "The database could not be upgraded.");
        // A 64 MB page cache (taken only as pages are read) keeps the indexes of half a million
        // clients in memory: counting the list misses the default 2 MB cache and reads the disk.
        // Temporary data stays in memory too: each insert of an import would otherwise copy the
        // pages it touches into a temporary file (client data on disk outside the database).
        if (error.isEmpty())
            Schema::Exec(db, QStringLiteral("PRAGMA cache_size = -65536"), &error)
                && Schema::Exec(db, QStringLiteral("PRAGMA temp_store = MEMORY"), &error);
    }
    if (!error.isEmpty()) {
        CloseConnection();
        if (reason)
            *reason = error;
        return false;
    }
    openPath = QFileInfo(path).absoluteFilePath();
    openIdentity = FileIdentity::Of(openPath);
    fieldCache.clear();
    return true;
}

bool HasChangesSinceOpen()
{
    if (!IsOpen())
        return false;
    const QVariant handle = Connection().driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return false;
    sqlite3 *raw = *static_cast<sqlite3 *const *>(handle.constData());
    return raw && sqlite3_total_changes(raw) > 0;
}

void CloseConnection()
{
    fieldCache.clear();
    preparedChanges.clear();
    openPath.clear();
    if (!QSqlDatabase::contains(kConnection))
        return;
    {
        QSqlDatabase db = QSqlDatabase::database(kConnection, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(kConnection);
}

QSqlQuery Execute(const QString &sql, const QVariantList &binds)
{
    if (!IsOpen())
        throw TmError(-1, QStringLiteral("No database is open."));
    const QString verb = sql.trimmed().section(QLatin1Char(' '), 0, 0).toUpper();
    if (verb != QLatin1String("SELECT") && verb != QLatin1String("PRAGMA") && OpenFileWasMovedOrDeleted()) {
        // SQLite would go on writing to the file where it was: the change would be lost.
        TmError gone(14, QStringLiteral("The database file %1 is no longer there.").arg(openPath));
        gone.setPlainWords(FaultText::ForDatabaseError(14, openPath, true));
        throw gone;
    }
    // Changes reuse their prepared statement: preparing one compiles the audit
    // triggers into it, which would cost more than the save itself.
    const bool reusable = verb == QLatin1String("INSERT") || verb == QLatin1String("UPDATE") || verb == QLatin1String("DELETE");
    QSqlQuery q = reusable ? preparedChanges.value(sql, QSqlQuery(Connection())) : QSqlQuery(Connection());
    if (q.lastQuery() != sql) {
        q.setForwardOnly(true);
        if (!q.prepare(sql))
            throw sqlError(q.lastError());
        if (reusable)
            preparedChanges.insert(sql, q);
    }
    for (int i = 0; i < binds.size(); ++i)
        q.bindValue(i, binds.at(i));
    if (!q.exec())
        throw sqlError(q.lastError());
    return q;
}

QVariant ScalarValue(const QString &sql, const QVariantList &binds)
{
    QSqlQuery q = Execute(sql, binds);
    return q.next() ? q.value(0) : QVariant();
}

QList<FieldInfo> Fields(const QString &table)
{
    const QString key = table.toLower();
    auto it = fieldCache.constFind(key);
    if (it != fieldCache.constEnd())
        return *it;
    QList<FieldInfo> fields;
    QSqlQuery q = Execute(QStringLiteral("SELECT name, type, \"notnull\", pk FROM pragma_table_info(?)"), {table});
    while (q.next()) {
        FieldInfo f;
        f.table = table;
        f.name = q.value(0).toString();
        f.type = FieldInfo::typeFromDeclaration(q.value(1).toString(), &f.size);
        f.required = q.value(2).toInt() != 0;
        f.isKey = q.value(3).toInt() != 0;
        fields << f;
    }
    fieldCache.insert(key, fields);
    return fields;
}

FieldInfo Field(const QString &table, const QString &column)
{
    for (const FieldInfo &f : Fields(table))
        if (f.name.compare(column, Qt::CaseInsensitive) == 0)
            return f;
    return {};
}

bool DeleteItemFromTable(const QString &table, const QString &keyColumn, const QString &keyValue)
{
    return basErrorHandler::Guard(QStringLiteral("basDatabase.DeleteItemFromTable"), [&] {
        bool ok = false;
        const qlonglong key = keyValue.toLongLong(&ok);
        if (!ok)
            throw TmError(13, QStringLiteral("Type mismatch: '%1' is not a record number.").arg(keyValue));
        Execute(QStringLiteral("DELETE FROM %1 WHERE %2 = ?").arg(SqlText::id(table), SqlText::id(keyColumn)), {key});
    });
}

bool FieldIsValid(const FieldInfo &field, const QVariant &value, QString &message)
{
    return FieldRules::valueIsValid(field, value, message);
}

QVariant StorageValue(const FieldInfo &field, const QVariant &value)
{
    const QString text = value.typeId() == QMetaType::QDate ? value.toDate().toString(Qt::ISODate) : value.toString();
    const bool empty = value.isNull() || text.trimmed().isEmpty();
    switch (field.type) {
    case FieldInfo::Type::Integer: {
        if (empty)
            return QVariant(QMetaType(QMetaType::LongLong));
        const auto cents = Money::parse(text);
        if (!cents)
            throw TmError(13, QStringLiteral("Type mismatch: '%1' is not a number.").arg(text));
        return Money::wholeUnitsHalfEven(*cents);
    }
    case FieldInfo::Type::Currency: {
        if (empty)
            return QVariant(QMetaType(QMetaType::LongLong));
        const auto cents = Money::parse(text);
        if (!cents)
            throw TmError(13, QStringLiteral("Type mismatch: '%1' is not an amount.").arg(text));
        return *cents;
    }
    case FieldInfo::Type::Double: {
        if (empty)
            return QVariant(QMetaType(QMetaType::Double));
        bool ok = false;
        QString plain = text;
        const double d = plain.remove(QLatin1Char(',')).remove(QLatin1Char('$')).toDouble(&ok);
        if (!ok)
            throw TmError(13, QStringLiteral("Type mismatch: '%1' is not a number.").arg(text));
        return d;
    }
    case FieldInfo::Type::Date: {
        if (empty)
            return QVariant(QMetaType(QMetaType::QString));
        const QDate d = value.typeId() == QMetaType::QDate ? value.toDate() : basTendmark::ParseDate(text);
        if (!d.isValid())
            throw TmError(13, QStringLiteral("Type mismatch: '%1' is not a date.").arg(text));
        return d.toString(Qt::ISODate);
    }
    case FieldInfo::Type::Boolean:
        if (value.typeId() == QMetaType::Bool)
            return value.toBool() ? 1 : 0;
        return (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0 || text == QLatin1String("1")
                || text.compare(QLatin1String("Yes"), Qt::CaseInsensitive) == 0)
            ? 1
            : 0;
    case FieldInfo::Type::Text:
    case FieldInfo::Type::Memo:
        return empty ? QVariant(QMetaType(QMetaType::QString)) : QVariant(text);
    case FieldInfo::Type::Unknown:
        break;
    }
    return value;
}

bool UpdateDataField(Recordset &recordset, const QString &column, const QVariant &value)
{
    return basErrorHandler::Guard(QStringLiteral("basDatabase.UpdateDataField"), [&] {
        const FieldInfo field = recordset.field(column);
        if (!field.isValid())
            throw TmError(3265, QStringLiteral("Item cannot be found in the collection: no column '%1'.").arg(column));
        recordset.setValue(column, StorageValue(field, value));
    });
}

QString DisplayText(const FieldInfo &field, const QVariant &stored)
{
    if (stored.isNull() || !stored.isValid())
        return {};
    switch (field.type) {
    case FieldInfo::Type::Date:
        return basTendmark::FormatIsoDate(stored.toString());
    case FieldInfo::Type::Currency:
        return Money::plain(stored.toLongLong());
    case FieldInfo::Type::Boolean:
        return stored.toInt() != 0 ? QStringLiteral("True") : QStringLiteral("False");
    default:
        return stored.toString();
    }
}

bool GetCityStateFromZip(const QString &zip, QString &city, QString &state)
{
    return basErrorHandler::Guard(QStringLiteral("basDatabase.GetCityStateFromZip"), [&] {
        QSqlQuery q
            = Execute(QStringLiteral("SELECT City, State FROM ZipCode WHERE ZipCode = ? ORDER BY ZipCodeID LIMIT 1"), {zip.trimmed()});
        if (q.next()) {
            city = q.value(0).toString();
            state = q.value(1).toString();
        } else {
            city.clear();
            state.clear();
        }
    });
}

bool GetClientInfo(const QString &clientId, QStringList &result)
{
    return basErrorHandler::Guard(QStringLiteral("basDatabase.GetClientInfo"), [&] {
        QSqlQuery q = Execute(QStringLiteral("SELECT LastName, FirstName, MiddleInitial, SocialSecurityNumber, "
                                             "DriversLicenseNumber FROM Client WHERE ClientID = ?"),
                              {clientId.toLongLong()});
        if (!q.next())
            throw TmError(3021, QStringLiteral("Either BOF or EOF is True: no client %1.").arg(clientId));
        result = {q.value(0).toString() + QStringLiteral(", ") + q.value(1).toString() + QLatin1Char(' ') + q.value(2).toString(),
                  basTendmark::FormatSSN(q.value(3).toString()), q.value(4).toString()};
    });
}

bool MatchAddress(const QString &clientId, const QString &address, const QString &city, const QString &state, Prompt::PickRequest &result)
{
    if (address.isEmpty() || city.isEmpty() || state.isEmpty())
        return false;
    bool found = false;
    basErrorHandler::Guard(QStringLiteral("basDatabase.MatchAddress"), [&] {
        QString sql = kMatchColumns;
        QVariantList binds;
        if (!clientId.isEmpty()) {
            sql += QStringLiteral("ClientID <> ? AND ");
            binds << clientId.toLongLong();
        }
        // Addresses as people write them: case, accents, blanks and street abbreviations aside.
        sql += QStringLiteral("AddressKey = ? AND CityKey = ? AND State = ? ORDER BY ClientID");
        binds << FoldedText::address(address) << FoldedText::name(city) << state;
        if (hasRows(sql, binds)) {
            result.query = {sql, binds, {}};
            found = true;
        }
    });
    return found;
}

bool MatchSSN(const QString &clientId, const QString &ssn, Prompt::PickRequest &result)
{
    bool found = false;
    basErrorHandler::Guard(QStringLiteral("basDatabase.MatchSSN"), [&] {
        QString sql = kMatchColumns;
        QVariantList binds;
        if (!clientId.isEmpty()) {
            sql += QStringLiteral("ClientID <> ? AND ");
            binds << clientId.toLongLong();
        }
        sql += QStringLiteral("SocialSecurityNumber = ? ORDER BY ClientID");
        binds << ssn;
        if (hasRows(sql, binds)) {
            result.query = {sql, binds, {}};
            found = true;
        }
    });
    return found;
}

bool FindRecord(Recordset &recordset, const QString &column, const QString &value)
{
    bool found = false;
    basErrorHandler::Guard(QStringLiteral("basDatabase.FindRecord"), [&] { found = recordset.findFirst(column, value); });
    return found;
}

}   // namespace basDatabase
