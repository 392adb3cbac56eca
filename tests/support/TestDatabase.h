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
    static bool writeFile(const QString &path, const QByteArray &bytes);
    // Creates a closed database at path holding 300 clients with long comments: pages enough to damage.
    static QString filledFile(const QString &path);
    // The permission bits of a file or folder (0600, 0700...).
    static int fileMode(const QString &path);
    // Overwrites some pages of the records (the second half of the file) with noise, as a failing disk would.
    static void scribble(const QString &path);
    // Runs statements on a database file through a connection of the test's own, apart from the
    // program's; returns the first value the last one gave, or an invalid value when one failed.
    static QVariant onFile(const QString &path, const QStringList &statements);

private:
    QTemporaryDir m_dir;
    QString m_path;
};
