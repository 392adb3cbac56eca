#include "RowStream.h"

#include "TmError.h"
#include "basDatabase.h"

#include <QSqlDriver>
#include <sqlite3.h>

namespace {

sqlite3 *connectionHandle()
{
    const QVariant handle = basDatabase::Connection().driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        throw TmError(-1, QStringLiteral("There is no current database open."));
    return *static_cast<sqlite3 *const *>(handle.constData());
}

}   // namespace

RowStream::RowStream(const Query &query)
{
    sqlite3 *db = connectionHandle();
    const QByteArray sql = query.sql.toUtf8();
    if (sqlite3_prepare_v2(db, sql.constData(), int(sql.size()), &m_statement, nullptr) != SQLITE_OK)
        throw TmError(sqlite3_errcode(db), QString::fromUtf8(sqlite3_errmsg(db)));
    for (int i = 0; i < query.binds.size(); ++i) {
        const QVariant &v = query.binds.at(i);
        int rc = SQLITE_OK;
        if (v.isNull()) {
            rc = sqlite3_bind_null(m_statement, i + 1);
        } else if (v.typeId() == QMetaType::Int || v.typeId() == QMetaType::LongLong) {
            rc = sqlite3_bind_int64(m_statement, i + 1, v.toLongLong());
        } else {
            const QByteArray text = v.toString().toUtf8();
            rc = sqlite3_bind_text(m_statement, i + 1, text.constData(), int(text.size()), SQLITE_TRANSIENT);
        }
        if (rc != SQLITE_OK) {
            const TmError error(rc, QString::fromUtf8(sqlite3_errmsg(db)));
            sqlite3_finalize(m_statement);
            throw error;
        }
    }
}

RowStream::~RowStream()
{
    sqlite3_finalize(m_statement);
}

bool RowStream::next()
{
    const int rc = sqlite3_step(m_statement);
    if (rc == SQLITE_ROW)
        return true;
    if (rc != SQLITE_DONE)
        fail();
    return false;
}

bool RowStream::isNull(int column) const
{
    return sqlite3_column_type(m_statement, column) == SQLITE_NULL;
}

qint64 RowStream::integer(int column) const
{
    return sqlite3_column_int64(m_statement, column);
}

int RowStream::date(int column) const
{
    const auto *t = sqlite3_column_text(m_statement, column);
    if (!t || sqlite3_column_bytes(m_statement, column) != 10 || t[4] != '-' || t[7] != '-')
        return 0;
    int value = 0;
    for (int i : {0, 1, 2, 3, 5, 6, 8, 9}) {
        if (t[i] < '0' || t[i] > '9')
            return 0;
        value = value * 10 + (t[i] - '0');
    }
    return value;
}

void RowStream::fail() const
{
    sqlite3 *db = sqlite3_db_handle(m_statement);
    throw TmError(sqlite3_errcode(db), QString::fromUtf8(sqlite3_errmsg(db)));
}
