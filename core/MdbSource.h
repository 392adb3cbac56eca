#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>

// The tables of an Access database as the conversion reads them: names, column
// types and raw row values, without any formatting that could lose exactness.
namespace MdbSource {

enum class Kind {
    Text,   // QString
    Memo,   // QString
    Integer,   // qint64 (Byte, Integer, Long Integer)
    Money,   // qint64 in ten-thousandths, as Currency stores it
    Float,   // double (Single, Double)
    DateTime,   // double: days since 1899-12-30, the time of day as the fraction
    YesNo,   // bool
    Other,   // binary, OLE, replication IDs: not read
};

struct Column
{
    QString name;
    Kind kind = Kind::Other;
};

struct Table
{
    QString name;
    QList<Column> columns;
    qint64 rows = 0;   // as the table's definition counts them
};

// A row's values, one per column in the table's column order; a null QVariant is NULL.
using RowHandler = std::function<bool(const QVariantList &values)>;

class Reader
{
public:
    virtual ~Reader() = default;
    // The names of the user tables.
    virtual QStringList tables() const = 0;
    // The columns and row count of a table; false with *error set when it cannot be read.
    virtual bool describe(const QString &table, Table *out, QString *error) = 0;
    // Hands every row to the handler; stops when it returns false. False with *error set on a read failure.
    virtual bool read(const QString &table, const RowHandler &handler, QString *error) = 0;
};

}   // namespace MdbSource
