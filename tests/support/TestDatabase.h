#pragma once

#include <QString>
#include <QTemporaryDir>
#include <QVariant>
#include <QVariantMap>

// A fresh database with the standard contents in a temporary folder, opened as
// the shared connection; closed and removed at the end of the test.
class TestDatabase
{
public:
    explicit TestDatabase(bool open = true);
    ~TestDatabase();

    QString path() const { return m_path; }
    QString folder() const { return m_dir.path(); }

    // Inserts a row and returns its new key. Values are bound.
    static qint64 insert(const QString &table, const QVariantMap &values);
    static QVariant scalar(const QString &sql, const QVariantList &binds = {});
    static int count(const QString &table, const QString &where = {}, const QVariantList &binds = {});
    static qint64 lookupId(const QString &table, const QString &description);
    // The SHA-256 of a file's bytes: equal before and after means the file was not touched.
    static QByteArray fileHash(const QString &path);

private:
    QTemporaryDir m_dir;
    QString m_path;
};
