#include "Schema.h"

#include "AuditLog.h"
#include "FileHealth.h"
#include "FoldedText.h"
#include "PrivateFiles.h"
#include "SearchIndex.h"
#include "Transaction.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QHash>
#include <QUrl>
#include <QUuid>

namespace Schema {
namespace {

QString resourceText(const QString &name)
{
    QFile f(QStringLiteral(":/schema/") + name);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(f.readAll());
}

// The food service date index also holds the client and the bags, so that the
// grocery log reads a year of visits from the index alone.
bool widenFoodServiceDateIndex(QSqlDatabase db, QString *error)
{
    return Exec(db, QStringLiteral("DROP INDEX IF EXISTS FoodServiceByDate"), error)
        && Exec(db, QStringLiteral("CREATE INDEX FoodServiceByDate ON FoodService (FoodServiceDate, ClientID, NumberOfBags)"), error);
}

// Label templates get their paper size, and the file gets the standard Letter and A4 sheets it lacks.
bool addLabelPaperSizes(QSqlDatabase db, QString *error)
{
    return RunScript(db, resourceText(QStringLiteral("label-templates.sql")), error);
}

// The organisation's age brackets for the agency report, with its options; the date
// index also holds the food service type, so that a year of visits for the agency
// report is read from the index alone.
bool addAgeBrackets(QSqlDatabase db, QString *error)
{
    return Exec(db, QStringLiteral("ALTER TABLE Options ADD COLUMN AgeBrackets VARCHAR(100)"), error)
        && Exec(db, QStringLiteral("DROP INDEX IF EXISTS FoodServiceByDate"), error)
        && Exec(
               db,
               QStringLiteral("CREATE INDEX FoodServiceByDate ON FoodService (FoodServiceDate, ClientID, NumberOfBags, FoodServiceTypeID)"),
               error);
}

// The phone searches count their matches from an index of the numbers rather than the whole table.
bool indexPhones(QSqlDatabase db, QString *error)
{
    for (const char *column : {"HomePhone", "MobilePhone", "WorkPhone"})
        if (!Exec(db, QStringLiteral("CREATE INDEX ClientBy%1 ON Client (%1)").arg(QLatin1String(column)), error))
            return false;
    return true;
}

// Every other column the client list sorts by gets an index, so that any page of any order is one seek.
bool indexClientListOrders(QSqlDatabase db, QString *error)
{
    for (const char *column : {"MiddleInitial", "Gender", "State", "Comments"}) {
        if (!Exec(db, QStringLiteral("CREATE INDEX ClientBy%1 ON Client (%1)").arg(QLatin1String(column)), error))
            return false;
    }
    return true;
}

// Each step brings the database from version (index + 1) to (index + 2).
const QList<std::function<bool(QSqlDatabase, QString *)>> upgradeSteps = {
    AuditLog::Install, widenFoodServiceDateIndex, addLabelPaperSizes,        addAgeBrackets,       FoldedText::AddKeyColumns,
    indexPhones,       indexClientListOrders,     FoldedText::AddLookupKeys, SearchIndex::Install,
};

// A private read-only connection for looking at a file.
class ReadOnlyConnection
{
public:
    explicit ReadOnlyConnection(const QString &path)
        : m_name(QStringLiteral("tendmark-inspect-") + QUuid::createUuid().toString(QUuid::WithoutBraces))
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        // Immutable: reads the file alone and leaves no -wal or -shm beside it. A file
        // another program has open in write-ahead mode is read through its log instead.
        if (QFileInfo::exists(path + QStringLiteral("-wal"))) {
            db.setDatabaseName(path);
            db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
        } else {
            db.setDatabaseName(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()).toString(QUrl::FullyEncoded)
                               + QStringLiteral("?immutable=1"));
            db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"));
        }
        m_ok = db.open();
    }
    ~ReadOnlyConnection()
    {
        {
            QSqlDatabase db = QSqlDatabase::database(m_name, false);
            db.close();
        }
        QSqlDatabase::removeDatabase(m_name);
    }
    bool ok() const { return m_ok; }
    QSqlDatabase db() const { return QSqlDatabase::database(m_name, false); }

private:
    QString m_name;
    bool m_ok = false;
};

bool pragmaInt(QSqlDatabase db, const QString &pragma, int *value)
{
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("PRAGMA ") + pragma) || !q.next())
        return false;
    *value = q.value(0).toInt();
    return true;
}

FileCheck damaged(const QString &path, FileCheck check, const QStringList &problems)
{
    check.state = FileState::Damaged;
    check.reason = QCoreApplication::translate("Schema", "The file '%1' is damaged: %2").arg(path, problems.value(0));
    check.problems = problems;
    return check;
}

// A file's tables, columns, indexes and triggers, as "table X", "column X.Y", ...
QStringList schemaItems(QSqlDatabase db)
{
    QStringList items;
    QSqlQuery q(db);
    q.exec(QStringLiteral("SELECT type, name FROM sqlite_master WHERE name NOT LIKE 'sqlite_%' ORDER BY rowid"));
    QStringList tables;
    while (q.next()) {
        items << q.value(0).toString() + QLatin1Char(' ') + q.value(1).toString();
        if (q.value(0).toString() == QLatin1String("table"))
            tables << q.value(1).toString();
    }
    for (const QString &table : tables) {
        QSqlQuery c(db);
        c.prepare(QStringLiteral("SELECT name FROM pragma_table_info(?)"));
        c.addBindValue(table);
        c.exec();
        while (c.next())
            items << QStringLiteral("column ") + table + QLatin1Char('.') + c.value(0).toString();
    }
    return items;
}

// What a database of the version holds, built once in memory from the program's own schema.
QStringList referenceItems(int version)
{
    static QHash<int, QStringList> cache;
    if (cache.contains(version))
        return cache.value(version);
    const QString name = QStringLiteral("tendmark-reference-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    QStringList items;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(QStringLiteral(":memory:"));
        QString error;
        if (db.open() && RunScript(db, resourceText(QStringLiteral("schema-v1.sql")), &error)) {
            bool ok = true;
            for (int v = 1; ok && v < version && v - 1 < upgradeSteps.size(); ++v)
                ok = upgradeSteps.at(v - 1)(db, &error);
            if (ok)
                items = schemaItems(db);
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    cache.insert(version, items);
    return items;
}

QString describeMissing(const QString &item)
{
    const QString kind = item.section(QLatin1Char(' '), 0, 0);
    const QString name = item.section(QLatin1Char(' '), 1);
    if (kind == QLatin1String("table"))
        return QCoreApplication::translate("Schema", "The table %1 is missing.").arg(name);
    if (kind == QLatin1String("column"))
        return QCoreApplication::translate("Schema", "The column %1 of the table %2 is missing.")
            .arg(name.section(QLatin1Char('.'), 1), name.section(QLatin1Char('.'), 0, 0));
    return QCoreApplication::translate("Schema", "The %1 %2 is missing.").arg(kind, name);
}

}   // namespace

bool Exec(QSqlDatabase db, const QString &sql, QString *error)
{
    QSqlQuery q(db);
    if (q.exec(sql))
        return true;
    if (error)
        *error = q.lastError().text();
    return false;
}

QStringList MissingSchemaItems(QSqlDatabase db, int version)
{
    const QStringList present = schemaItems(db);
    QStringList missing;
    for (const QString &item : referenceItems(version))
        if (!present.contains(item, Qt::CaseInsensitive))
            missing << describeMissing(item);
    return missing;
}

bool PrepareForWriting(QSqlDatabase db, QString *error)
{
    QSqlQuery q(db);
    if (!q.exec(QStringLiteral("PRAGMA journal_mode = WAL")) || !q.next()
        || q.value(0).toString().compare(QLatin1String("wal"), Qt::CaseInsensitive) != 0) {
        if (error)
            *error = QCoreApplication::translate("Schema", "The file cannot keep a write-ahead log (%1).").arg(q.lastError().text());
        return false;
    }
    return Exec(db, QStringLiteral("PRAGMA synchronous = FULL"), error) && Exec(db, QStringLiteral("PRAGMA foreign_keys = ON"), error);
}

bool RunScript(QSqlDatabase db, const QString &script, QString *error)
{
    const QStringList statements = script.split(QStringLiteral(";\n"), Qt::SkipEmptyParts);
    for (QString s : statements) {
        QStringList lines;
        for (const QString &line : s.split(QLatin1Char('\n')))
            if (!line.trimmed().startsWith(QLatin1String("--")))
                lines << line;
        s = lines.join(QLatin1Char('\n')).trimmed();
        if (s.endsWith(QLatin1Char(';')))
            s.chop(1);
        if (s.isEmpty())
            continue;
        if (!Exec(db, s, error))
            return false;
    }
    return true;
}

FileCheck InspectFile(const QString &path)
{
    FileCheck check;
    const QFileInfo info(path);
    if (path.isEmpty() || !info.exists() || !info.isFile()) {
        check.reason = QCoreApplication::translate("Schema", "The file '%1' does not exist.").arg(path);
        return check;
    }
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) {
        check.state = FileState::Damaged;
        check.reason = QCoreApplication::translate("Schema", "The file '%1' cannot be read.").arg(path);
        return check;
    }
    const QByteArray header = f.read(16);
    f.close();
    if (header != QByteArray("SQLite format 3", 16)) {
        check.state = FileState::NotSqlite;
        check.reason = QCoreApplication::translate("Schema", "The file '%1' is not a TendMark database.").arg(path);
        return check;
    }
    QString recoveryError;
    if (!FileHealth::FinishInterruptedSave(path, &check.recovered, &recoveryError))
        return damaged(path, check, {recoveryError});
    check.notPrivate = PrivateFiles::IsReadableByOthers(path);
    ReadOnlyConnection conn(path);
    int appId = 0;
    int version = 0;
    int tables = 0;
    if (!conn.ok() || !pragmaInt(conn.db(), QStringLiteral("application_id"), &appId)
        || !pragmaInt(conn.db(), QStringLiteral("user_version"), &version)) {
        check.state = FileState::Damaged;
        check.reason = QCoreApplication::translate("Schema", "The file '%1' is damaged and cannot be read.").arg(path);
        return check;
    }
    {
        QSqlQuery q(conn.db());
        if (!q.exec(QStringLiteral("SELECT COUNT(*) FROM sqlite_master")) || !q.next()) {
            check.state = FileState::Damaged;
            check.reason = QCoreApplication::translate("Schema", "The file '%1' is damaged and cannot be read.").arg(path);
            return check;
        }
        tables = q.value(0).toInt();
    }
    check.version = version;
    if (appId != ApplicationId || version < 1 || tables == 0) {
        check.state = FileState::Foreign;
        check.reason = QCoreApplication::translate("Schema", "The file '%1' is a database of another program, not of TendMark.").arg(path);
        return check;
    }
    if (version > CurrentVersion) {
        check.state = FileState::Newer;
        check.reason = QCoreApplication::translate("Schema", "The file '%1' was made by a newer version of TendMark (database version %2).")
                           .arg(path)
                           .arg(version);
        return check;
    }
    if (!info.isWritable() || !QFileInfo(info.absolutePath()).isWritable()) {
        check.state = FileState::ReadOnly;
        check.reason
            = QCoreApplication::translate("Schema", "The file '%1' or its folder is read-only; TendMark must be able to save to it.")
                  .arg(path);
        return check;
    }
    check.state = FileState::Ok;
    return check;
}

bool ApplyNewSchema(QSqlDatabase db, QString *error)
{
    const QString schema = resourceText(QStringLiteral("schema-v1.sql"));
    const QString data = resourceText(QStringLiteral("standard-data.sql"));
    if (schema.isEmpty() || data.isEmpty()) {
        if (error)
            *error = QCoreApplication::translate("Schema", "The schema resources are missing from the program.");
        return false;
    }
    Transaction transaction(db);
    if (!transaction.active()) {
        if (error)
            *error = transaction.error();
        return false;
    }
    const bool ok = RunScript(db, schema, error) && RunScript(db, data, error) && (CurrentVersion == 1 || Upgrade(db, 1, error))
        && Exec(db, QStringLiteral("PRAGMA application_id = %1").arg(ApplicationId), error)
        && Exec(db, QStringLiteral("PRAGMA user_version = %1").arg(CurrentVersion), error);
    if (!ok)
        return false;
    if (!transaction.commit()) {
        if (error)
            *error = transaction.error();
        return false;
    }
    return true;
}

void RegisterTriggerFunctions()
{
    AuditLog::RegisterUserFunction();
    FoldedText::RegisterSqlFunctions();
}

bool CreateDatabase(const QString &path, bool overwrite, QString *error, const std::function<bool(QSqlDatabase, QString *)> &fill)
{
    if (QFileInfo::exists(path) && !overwrite) {
        if (error)
            *error = QCoreApplication::translate("Schema", "The file '%1' already exists.").arg(path);
        return false;
    }
    RegisterTriggerFunctions();
    // A fixed name beside the target, so that a run killed half-way is cleared by the next.
    const QFileInfo target(path);
    const QString building = target.absoluteDir().filePath(QStringLiteral(".%1.creating").arg(target.fileName()));
    for (const QString &suffix : {QString(), QStringLiteral("-journal"), QStringLiteral("-wal"), QStringLiteral("-shm")})
        QFile::remove(building + suffix);
    const QString name = QStringLiteral("tendmark-create-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(building);
        if (!db.open()) {
            if (error)
                *error = db.lastError().text();
        } else {
            PrivateFiles::MakePrivate(building);
            // The rows are filled in with temporary data (each insert's statement journal) in memory;
            // VACUUM's copy of the whole file goes to disk.
            ok = Exec(db, QStringLiteral("PRAGMA foreign_keys = ON"), error) && ApplyNewSchema(db, error)
                && (!fill
                    || (Exec(db, QStringLiteral("PRAGMA temp_store = MEMORY"), error) && fill(db, error)
                        && Exec(db, QStringLiteral("PRAGMA temp_store = DEFAULT"), error) && AuditLog::StartAfresh(db, error)
                        && Exec(db, QStringLiteral("VACUUM"), error)))
                && PrepareForWriting(db, error);
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(name);
    ok = ok && PrivateFiles::MoveIntoPlace(building, path, error);
    if (!ok)
        QFile::remove(building);
    return ok;
}

bool Upgrade(QSqlDatabase db, int fromVersion, QString *error)
{
    if (fromVersion >= CurrentVersion)
        return true;
    Transaction transaction(db);   // inactive when the caller already holds one
    for (int v = fromVersion; v < CurrentVersion; ++v) {
        const int step = v - 1;
        if (step < 0 || step >= upgradeSteps.size() || !upgradeSteps.at(step)(db, error)) {
            if (error && error->isEmpty())
                *error = QCoreApplication::translate("Schema", "No upgrade from database version %1.").arg(v);
            return false;
        }
    }
    if (!Exec(db, QStringLiteral("PRAGMA user_version = %1").arg(CurrentVersion), error))
        return false;
    return !transaction.active() || transaction.commit();
}

FileCheck ExamineForOpening(const QString &path)
{
    FileCheck check = InspectFile(path);
    if (check.state != FileState::Ok && check.state != FileState::ReadOnly)
        return check;
    ReadOnlyConnection conn(path);
    QSqlQuery q(conn.db());
    QStringList problems;
    if (!q.exec(QStringLiteral("PRAGMA quick_check"))) {
        problems << q.lastError().text();
    } else {
        while (q.next())
            if (q.value(0).toString() != QLatin1String("ok"))
                problems << q.value(0).toString();
    }
    if (!problems.isEmpty())
        return damaged(path, check, problems);
    check.problems = MissingSchemaItems(conn.db(), check.version);
    if (!check.problems.isEmpty()) {
        check.state = FileState::Incomplete;
        check.reason = QCoreApplication::translate("Schema", "The file '%1' is incomplete: %2").arg(path, check.problems.constFirst());
    }
    return check;
}

QStringList CheckFile(const QString &path)
{
    const FileCheck check = InspectFile(path);
    if (check.state != FileState::Ok && check.state != FileState::ReadOnly)
        return check.problems.size() > 1 ? check.problems : QStringList {check.reason};
    QStringList problems;
    ReadOnlyConnection conn(path);
    QSqlQuery q(conn.db());
    if (!q.exec(QStringLiteral("PRAGMA integrity_check"))) {
        problems << QCoreApplication::translate("Schema", "The integrity check could not run: %1").arg(q.lastError().text());
    } else {
        while (q.next()) {
            const QString line = q.value(0).toString();
            if (line != QLatin1String("ok"))
                problems << QCoreApplication::translate("Schema", "Integrity: %1").arg(line);
        }
    }
    if (!q.exec(QStringLiteral("PRAGMA foreign_key_check"))) {
        problems << QCoreApplication::translate("Schema", "The foreign key check could not run: %1").arg(q.lastError().text());
    } else {
        while (q.next())
            problems << QCoreApplication::translate("Schema", "Table %1, row %2 refers to a missing row of %3.")
                            .arg(q.value(0).toString(), q.value(1).toString(), q.value(2).toString());
    }
    problems << MissingSchemaItems(conn.db(), check.version);
    if (check.version < CurrentVersion)
        problems << QCoreApplication::translate(
                        "Schema", "The database is version %1; this program uses version %2 and upgrades it when the file is opened.")
                        .arg(check.version)
                        .arg(CurrentVersion);
    return problems;
}

}   // namespace Schema
