#include "TestDatabase.h"

#include "LookupTables.h"
#include "Schema.h"
#include "SqlText.h"
#include "basDatabase.h"
#include "basErrorHandler.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>
#include <sys/stat.h>

TestDatabase::TestDatabase(bool open)
{
    m_path = QDir(m_dir.path()).filePath(QStringLiteral("test.tmdb"));
    basErrorHandler::setLogFilePathForTesting(QDir(m_dir.path()).filePath(QStringLiteral("error.log")));
    QString error;
    if (!Schema::CreateDatabase(m_path, false, &error))
        qFatal("test database: %s", qPrintable(error));
    if (open && !basDatabase::OpenConnection(m_path, &error))
        qFatal("test database: %s", qPrintable(error));
}

TestDatabase::~TestDatabase()
{
    basDatabase::CloseConnection();
}

qint64 TestDatabase::insert(const QString &table, const QVariantMap &values)
{
    QStringList columns;
    QStringList marks;
    QVariantList binds;
    for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
        columns << SqlText::id(it.key());
        marks << QStringLiteral("?");
        binds << it.value();
    }
    const QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(SqlText::id(table), columns.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
    return basDatabase::Execute(sql, binds).lastInsertId().toLongLong();
}

QVariant TestDatabase::scalar(const QString &sql, const QVariantList &binds)
{
    return basDatabase::ScalarValue(sql, binds);
}

int TestDatabase::count(const QString &table, const QString &where, const QVariantList &binds)
{
    QString sql = QStringLiteral("SELECT COUNT(*) FROM %1").arg(SqlText::id(table));
    if (!where.isEmpty())
        sql += QStringLiteral(" WHERE ") + where;
    return scalar(sql, binds).toInt();
}

qint64 TestDatabase::lookupId(const QString &table, const QString &description)
{
    const LookupTables::LookupTable *t = LookupTables::byName(table);
    if (!t)
        qFatal("%s is not a lookup table", qPrintable(table));
    return scalar(QStringLiteral("SELECT %1 FROM %2 WHERE %3 = ?")
                      .arg(SqlText::id(QLatin1String(t->keyColumn)), SqlText::id(table), SqlText::id(QLatin1String(t->descriptionColumn))),
                  {description})
        .toLongLong();
}

QByteArray TestDatabase::fileHash(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256);
}

bool TestDatabase::writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

int TestDatabase::fileMode(const QString &path)
{
    struct stat st
    { };
    ::stat(QFile::encodeName(path).constData(), &st);
    return int(st.st_mode & 0777);
}

void TestDatabase::scribble(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadWrite))
        qFatal("cannot damage %s", qPrintable(path));
    for (qint64 page = f.size() / 4096 / 2; page * 4096 < f.size(); page += 8) {
        f.seek(page * 4096);
        f.write(QByteArray(64, '\xA5'));
    }
}

QVariant TestDatabase::onFile(const QString &path, const QStringList &statements)
{
    const QString name = QStringLiteral("test-on-file");
    QVariant result;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        bool ok = db.open();
        for (const QString &statement : statements) {
            QSqlQuery q(db);
            ok = ok && q.exec(statement);
            if (!ok)
                qWarning("%s: %s", qPrintable(statement), qPrintable(q.lastError().text()));
            result = ok && q.next() ? q.value(0) : QVariant();
        }
        if (!ok)
            result = QVariant();
        else if (!result.isValid())
            result = true;
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return result;
}

QString TestDatabase::filledFile(const QString &path)
{
    QString error;
    if (!Schema::CreateDatabase(path, false, &error) || !basDatabase::OpenConnection(path, &error))
        qFatal("%s", qPrintable(error));
    basDatabase::Execute(QStringLiteral("BEGIN"));
    for (int i = 0; i < 300; ++i)
        basDatabase::Execute(QStringLiteral("INSERT INTO Client (LastName, FirstName, Comments) VALUES (?, 'Ann', ?)"),
                             {QStringLiteral("Row%1").arg(i), QString(1500, QLatin1Char('c'))});
    basDatabase::Execute(QStringLiteral("COMMIT"));
    basDatabase::CloseConnection();
    return path;
}
