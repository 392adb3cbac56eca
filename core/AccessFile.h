#pragma once

#include "MdbSource.h"

#include <QHash>
#include <memory>

// An Access 2000-2003 (Jet 4) database file, opened read-only through mdbtools.
class AccessFile : public MdbSource::Reader
{
public:
    ~AccessFile() override;
    AccessFile(const AccessFile &) = delete;
    AccessFile &operator=(const AccessFile &) = delete;

    // Opens the file for reading; null with *error saying why it cannot be read
    // (not an Access file, a Jet 3 or .accdb file, empty, cut short).
    static std::unique_ptr<AccessFile> Open(const QString &path, QString *error);
    // Why the first bytes of a file are not those of a Jet 4 database; empty when they are.
    static QString HeaderProblem(const QByteArray &firstPage, qint64 size);

    QStringList tables() const override;
    bool describe(const QString &table, MdbSource::Table *out, QString *error) override;
    bool read(const QString &table, const MdbSource::RowHandler &handler, QString *error) override;

private:
    struct Handle;
    explicit AccessFile(std::unique_ptr<Handle> handle);
    bool readCatalog();
    std::unique_ptr<Handle> m_handle;
};
