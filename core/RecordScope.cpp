#include "RecordScope.h"

#include "basDatabase.h"

#include <QAtomicInt>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <sqlite3.h>

namespace RecordScope {
namespace {

// Tables the statement reads, gathered by the authorizer while it is compiled.
struct Reads
{
    QSet<QString> tables;
};

// Reading, selecting and calling functions pass; everything else (writes,
// ATTACH, PRAGMA, transactions, schema changes) is refused.
int authorize(void *context, int action, const char *arg1, const char *, const char *, const char *)
{
    switch (action) {
    case SQLITE_READ:
        static_cast<Reads *>(context)->tables.insert(QString::fromUtf8(arg1).toLower());
        return SQLITE_OK;
    case SQLITE_SELECT:
    case SQLITE_FUNCTION:
    case SQLITE_RECURSIVE:
        return SQLITE_OK;
    default:
        return SQLITE_DENY;
    }
}

// A read-only connection to the open database for the life of one statement.
class ReadOnlyConnection
{
public:
    ReadOnlyConnection() : m_name(QStringLiteral("tendmark-readonly-%1").arg(counter.fetchAndAddRelaxed(1)))
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        db.setDatabaseName(basDatabase::DatabasePath());
        db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=5000"));
        if (!db.open()) {
            m_error = db.lastError().databaseText();
            return;
        }
        const QVariant handle = db.driver()->handle();
        if (qstrcmp(handle.typeName(), "sqlite3*") == 0)
            m_handle = *static_cast<sqlite3 *const *>(handle.constData());
        if (!m_handle)
            m_error = QCoreApplication::translate("RecordScope", "The database driver gives no access to its connection.");
        else
            sqlite3_set_authorizer(m_handle, authorize, &m_reads);
    }

    ~ReadOnlyConnection()
    {
        if (m_handle)
            sqlite3_set_authorizer(m_handle, nullptr, nullptr);
        QSqlDatabase::database(m_name, false).close();
        QSqlDatabase::removeDatabase(m_name);
    }

    bool ok() const { return m_handle != nullptr; }
    QString error() const { return m_error; }
    QSqlDatabase database() const { return QSqlDatabase::database(m_name, false); }

    // Compiles the statement alone to learn its columns and the tables it reads;
    // a second statement after it is refused.
    bool inspect(const QString &sql, QStringList *columns, QSet<QString> *tables, QString *error)
    {
        m_reads.tables.clear();
        const QByteArray text = sql.toUtf8();
        sqlite3_stmt *statement = nullptr;
        const char *tail = nullptr;
        if (sqlite3_prepare_v2(m_handle, text.constData(), int(text.size()), &statement, &tail) != SQLITE_OK) {
            *error = QString::fromUtf8(sqlite3_errmsg(m_handle));
            return false;
        }
        if (!statement) {
            *error = QCoreApplication::translate("RecordScope", "The statement is empty.");
            return false;
        }
        for (int i = 0; i < sqlite3_column_count(statement); ++i)
            columns->append(QString::fromUtf8(sqlite3_column_name(statement, i)));
        const bool readOnly = sqlite3_stmt_readonly(statement) != 0;
        sqlite3_finalize(statement);
        *tables = m_reads.tables;

        sqlite3_stmt *next = nullptr;
        const int rc = sqlite3_prepare_v2(m_handle, tail, -1, &next, nullptr);
        sqlite3_finalize(next);
        if (rc != SQLITE_OK || next) {
            *error = QCoreApplication::translate("RecordScope", "Only one statement can be run at a time.");
            return false;
        }
        if (!readOnly) {
            *error = QCoreApplication::translate("RecordScope", "The statement would change the database.");
            return false;
        }
        return true;
    }

private:
    static inline QAtomicInt counter;
    QString m_name;
    QString m_error;
    sqlite3 *m_handle = nullptr;
    Reads m_reads;
};

bool fail(QString *error, const QString &text)
{
    if (error)
        *error = text;
    return false;
}

}   // namespace

QString tableName(Kind kind)
{
    return kind == Kind::Volunteer ? QStringLiteral("Volunteer") : QStringLiteral("Client");
}

QString keyColumn(Kind kind)
{
    return kind == Kind::Volunteer ? QStringLiteral("VolunteerID") : QStringLiteral("ClientID");
}

bool runReadOnly(const QString &sql, const QString &table, const QStringList &requiredColumns, const QString &wrapper,
                 QList<QVariantList> *rows, QString *error)
{
    if (!basDatabase::IsOpen())
        return fail(error, QCoreApplication::translate("RecordScope", "No database is open."));
    ReadOnlyConnection connection;
    if (!connection.ok())
        return fail(error, connection.error());
    QStringList columns;
    QSet<QString> tables;
    QString reason;
    if (!connection.inspect(sql, &columns, &tables, &reason))
        return fail(error, reason);
    if (!table.isEmpty() && !tables.contains(table.toLower()))
        return fail(error, QCoreApplication::translate("RecordScope", "The statement must select from the %1 table.").arg(table));
    for (const QString &column : requiredColumns) {
        if (!columns.contains(column, Qt::CaseInsensitive))
            return fail(error, QCoreApplication::translate("RecordScope", "The statement must return the column %1.").arg(column));
    }

    // The statement is known to be single; a closing semicolon would end the wrapper early.
    QString body = sql;
    while (!body.isEmpty() && (body.back().isSpace() || body.back() == u';'))
        body.chop(1);
    QSqlQuery query(connection.database());
    query.setForwardOnly(true);
    if (!query.exec(wrapper.arg(body)))
        return fail(error, query.lastError().databaseText());
    while (query.next()) {
        QVariantList row;
        for (int i = 0; i < query.record().count(); ++i)
            row.append(query.value(i));
        rows->append(row);
    }
    if (query.lastError().isValid())
        return fail(error, query.lastError().databaseText());
    return true;
}

Selection select(Kind kind, int reportType, const ActiveScope &scope, const QString &alias)
{
    Selection result;
    const QString key = alias + QLatin1Char('.') + keyColumn(kind);
    if (reportType == CurrentRecord) {
        result.where = QStringLiteral(" WHERE %1 = ?").arg(key);
        result.binds = {scope.key};
        result.count = 1;
        result.ok = true;
        return result;
    }
    if (reportType != CurrentRecordset) {
        result.ok = true;
        return result;
    }
    if (scope.sql.trimmed().isEmpty()) {
        result.error = QCoreApplication::translate("RecordScope", "There is no current recordset.");
        return result;
    }
    QList<QVariantList> rows;
    // The list's own filter applies; the order is always by last name.
    const QString wrapper = QStringLiteral("SELECT %1 FROM (%2\n) ORDER BY LastName").arg(keyColumn(kind));
    if (!runReadOnly(scope.sql, tableName(kind), {keyColumn(kind), QStringLiteral("LastName")}, wrapper, &rows, &result.error))
        return result;
    QJsonArray keys;
    for (const QVariantList &row : rows)
        keys.append(row.value(0).toLongLong());
    result.where = QStringLiteral(" WHERE %1 IN (SELECT value FROM json_each(?))").arg(key);
    result.binds = {QString::fromUtf8(QJsonDocument(keys).toJson(QJsonDocument::Compact))};
    result.count = int(keys.size());
    result.ok = true;
    return result;
}

}   // namespace RecordScope
