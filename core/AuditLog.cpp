#include "AuditLog.h"

#include "Schema.h"
#include "SqlText.h"
#include "basRegistry.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <cstring>
#include <sqlite3.h>

namespace AuditLog {
namespace {

QByteArray userName;

void userFunction(sqlite3_context *context, int, sqlite3_value **)
{
    sqlite3_result_text(context, userName.constData(), int(userName.size()), SQLITE_STATIC);
}

QJsonValue jsonOf(sqlite3_value *v)
{
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER:
        return QJsonValue(qint64(sqlite3_value_int64(v)));
    case SQLITE_FLOAT:
        return sqlite3_value_double(v);
    case SQLITE_NULL:
        return QJsonValue::Null;
    default:
        return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(v)), sqlite3_value_bytes(v));
    }
}

// tendmark_changes(side, name, old, new, ...): a JSON object of the columns whose
// value changed, with their old (side 0) or new (side 1) values.
void changesFunction(sqlite3_context *context, int argc, sqlite3_value **argv)
{
    const int side = sqlite3_value_int(argv[0]);
    QJsonObject changed;
    for (int i = 1; i + 2 < argc; i += 3) {
        sqlite3_value *before = argv[i + 1];
        sqlite3_value *after = argv[i + 2];
        const bool same = sqlite3_value_type(before) == sqlite3_value_type(after)
            && (sqlite3_value_type(before) == SQLITE_NULL
                || (sqlite3_value_bytes(before) == sqlite3_value_bytes(after)
                    && std::memcmp(sqlite3_value_blob(before), sqlite3_value_blob(after), size_t(sqlite3_value_bytes(before))) == 0));
        if (!same)
            changed.insert(QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_value_text(argv[i]))),
                           jsonOf(side == 0 ? before : after));
    }
    const QByteArray json = QJsonDocument(changed).toJson(QJsonDocument::Compact);
    sqlite3_result_text(context, json.constData(), int(json.size()), SQLITE_TRANSIENT);
}

int registerOnConnection(sqlite3 *db, const char **, const sqlite3_api_routines *)
{
    sqlite3_create_function(db, "tendmark_os_user", 0, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, userFunction, nullptr, nullptr);
    sqlite3_create_function(db, "tendmark_changes", -1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, changesFunction, nullptr, nullptr);
    return SQLITE_OK;
}

// A name the program itself supplies, as an SQL string.
QString quoted(QString text)
{
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("''")) + QLatin1Char('\'');
}

const char *const kTable = R"(CREATE TABLE AuditLog (
    AuditID INTEGER PRIMARY KEY,
    ChangedAt TEXT NOT NULL,
    UserName TEXT NOT NULL,
    TableName TEXT NOT NULL,
    RecordKey INTEGER,
    ClientID INTEGER,
    Operation TEXT NOT NULL,
    OldValues TEXT,
    NewValues TEXT
))";

// A JSON object of the columns; for an update only of those that changed.
QString valuesObject(const QStringList &columns, const QString &row, bool changedOnly)
{
    if (!changedOnly) {
        QStringList pairs;
        for (const QString &c : columns)
            pairs << quoted(c) + QStringLiteral(", ") + row + QLatin1Char('.') + SqlText::id(c);
        return QStringLiteral("json_object(") + pairs.join(QStringLiteral(", ")) + QLatin1Char(')');
    }
    QStringList triples;
    for (const QString &c : columns)
        triples << QStringLiteral("%1, OLD.%2, NEW.%2").arg(quoted(c), SqlText::id(c));
    return QStringLiteral("tendmark_changes(%1, ").arg(row == QLatin1String("OLD") ? 0 : 1) + triples.join(QStringLiteral(", "))
        + QLatin1Char(')');
}

QStringList triggersFor(QSqlDatabase db, const QString &table)
{
    QStringList columns;
    QString key;
    QSqlQuery q(db);
    q.prepare(QStringLiteral("SELECT name, pk FROM pragma_table_info(?) ORDER BY cid"));
    q.addBindValue(table);
    q.exec();
    while (q.next()) {
        columns << q.value(0).toString();
        if (q.value(1).toInt() == 1)
            key = columns.constLast();
    }
    const bool hasClient = columns.contains(QStringLiteral("ClientID"));
    QStringList changed;
    for (const QString &c : columns)
        changed << QStringLiteral("OLD.%1 IS NOT NEW.%1").arg(SqlText::id(c));
    struct Kind
    {
        const char *operation;
        const char *row;
        QString oldValues;
        QString newValues;
        QString when;
    };
    const QList<Kind> kinds = {
        {"insert", "NEW", QStringLiteral("NULL"), valuesObject(columns, QStringLiteral("NEW"), false), {}},
        {"update", "NEW", valuesObject(columns, QStringLiteral("OLD"), true), valuesObject(columns, QStringLiteral("NEW"), true),
         QStringLiteral(" WHEN ") + changed.join(QStringLiteral(" OR "))},
        {"delete", "OLD", valuesObject(columns, QStringLiteral("OLD"), false), QStringLiteral("NULL"), {}},
    };
    QStringList statements;
    for (const Kind &k : kinds) {
        const QString row = QLatin1String(k.row);
        const QString name = QStringLiteral("Audit%1%2")
                                 .arg(table, QString::fromLatin1(k.operation).toUpper().left(1) + QString::fromLatin1(k.operation).mid(1));
        statements << QStringLiteral("CREATE TRIGGER %1 AFTER %2 ON %3 FOR EACH ROW%4 BEGIN "
                                     "INSERT INTO AuditLog (ChangedAt, UserName, TableName, RecordKey, ClientID, Operation, "
                                     "OldValues, NewValues) VALUES (strftime('%Y-%m-%d %H:%M:%f', 'now', 'localtime'), "
                                     "tendmark_os_user(), %5, %6, %7, '%8', %9, %10); END")
                          .arg(SqlText::id(name), QString::fromLatin1(k.operation).toUpper(), SqlText::id(table), k.when, quoted(table),
                               key.isEmpty() ? QStringLiteral("NULL") : row + QLatin1Char('.') + SqlText::id(key),
                               hasClient ? row + QStringLiteral(".ClientID") : QStringLiteral("NULL"), QLatin1String(k.operation),
                               k.oldValues, k.newValues);
    }
    return statements;
}

QString refusal(const QString &operation)
{
    return QStringLiteral("CREATE TRIGGER AuditLogRefuses%1 BEFORE %2 ON AuditLog BEGIN "
                          "SELECT RAISE(ABORT, 'The audit log cannot be changed.'); END")
        .arg(operation.left(1) + operation.mid(1).toLower(), operation);
}

}   // namespace

bool StartAfresh(QSqlDatabase db, QString *error)
{
    return Schema::Exec(db, QStringLiteral("DROP TRIGGER AuditLogRefusesDelete"), error)
        && Schema::Exec(db, QStringLiteral("DELETE FROM AuditLog"), error) && Schema::Exec(db, refusal(QStringLiteral("DELETE")), error);
}

QStringList AuditedTables()
{
    return {QStringLiteral("Client"),
            QStringLiteral("Family"),
            QStringLiteral("FoodService"),
            QStringLiteral("Payments"),
            QStringLiteral("Income"),
            QStringLiteral("Expenses"),
            QStringLiteral("Volunteer"),
            QStringLiteral("States"),
            QStringLiteral("Gender"),
            QStringLiteral("ZipCode"),
            QStringLiteral("EducationLevel"),
            QStringLiteral("EthnicOrigin"),
            QStringLiteral("ExpenseCategories"),
            QStringLiteral("FoodServiceTypes"),
            QStringLiteral("Housing"),
            QStringLiteral("IncomeSources"),
            QStringLiteral("MaritalStatus"),
            QStringLiteral("OtherAssistance"),
            QStringLiteral("PaymentTypes"),
            QStringLiteral("Relationships"),
            QStringLiteral("ReligiousPreference")};
}

QString OperatingSystemUser()
{
    return basRegistry::GetUserName();
}

void RegisterUserFunction()
{
    static const bool registered = [] {
        userName = OperatingSystemUser().toUtf8();
        return sqlite3_auto_extension(reinterpret_cast<void (*)()>(registerOnConnection)) == SQLITE_OK;
    }();
    Q_UNUSED(registered);
}

bool Install(QSqlDatabase db, QString *error)
{
    RegisterUserFunction();
    // The connection may have been opened before the function was known to new ones.
    const QVariant handle = db.driver()->handle();
    if (handle.isValid() && qstrcmp(handle.typeName(), "sqlite3*") == 0)
        if (sqlite3 *raw = *static_cast<sqlite3 *const *>(handle.constData()))
            registerOnConnection(raw, nullptr, nullptr);
    if (!Schema::Exec(db, QString::fromLatin1(kTable), error)
        || !Schema::Exec(db, QStringLiteral("CREATE INDEX AuditLogByClient ON AuditLog (ClientID) WHERE ClientID IS NOT NULL"), error))
        return false;
    for (const char *operation : {"UPDATE", "DELETE"})
        if (!Schema::Exec(db, refusal(QLatin1String(operation)), error))
            return false;
    for (const QString &table : AuditedTables())
        for (const QString &statement : triggersFor(db, table))
            if (!Schema::Exec(db, statement, error))
                return false;
    return true;
}

bool Read(QSqlDatabase db, const Filter &filter, QList<Entry> *entries, QString *error)
{
    QString sql = QStringLiteral("SELECT AuditID, ChangedAt, UserName, TableName, RecordKey, Operation, OldValues, NewValues "
                                 "FROM AuditLog WHERE 1 = 1");
    QVariantList binds;
    if (filter.clientId != 0) {
        sql += QStringLiteral(" AND ClientID = ?");
        binds << filter.clientId;
    }
    if (filter.since.isValid()) {
        sql += QStringLiteral(" AND ChangedAt >= ?");
        binds << filter.since.toString(Qt::ISODate);
    }
    if (filter.until.isValid()) {
        sql += QStringLiteral(" AND ChangedAt < ?");
        binds << filter.until.addDays(1).toString(Qt::ISODate);
    }
    if (!filter.table.isEmpty()) {
        sql += QStringLiteral(" AND TableName = ?");
        binds << filter.table;
    }
    if (!filter.user.isEmpty()) {
        sql += QStringLiteral(" AND UserName = ?");
        binds << filter.user;
    }
    QSqlQuery q(db);
    q.setForwardOnly(true);
    if (!q.prepare(sql + QStringLiteral(" ORDER BY AuditID"))) {
        if (error)
            *error = q.lastError().text();
        return false;
    }
    for (const QVariant &b : binds)
        q.addBindValue(b);
    if (!q.exec()) {
        if (error)
            *error = q.lastError().text();
        return false;
    }
    entries->clear();
    while (q.next())
        entries->append({q.value(0).toLongLong(), q.value(1).toString(), q.value(2).toString(), q.value(3).toString(),
                         q.value(4).toLongLong(), q.value(5).toString(), q.value(6).toString(), q.value(7).toString()});
    return true;
}

QString Describe(const Entry &e)
{
    QString line = QStringLiteral("%1\t%2\t%3 %4 %5").arg(e.time.left(19), e.user, e.operation, e.table).arg(e.key);
    if (!e.oldValues.isEmpty())
        line += QStringLiteral("\twas ") + e.oldValues;
    if (!e.newValues.isEmpty())
        line += QStringLiteral("\tnow ") + e.newValues;
    return line;
}

}   // namespace AuditLog
