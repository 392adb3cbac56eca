#pragma once

#include "Query.h"

#include <QString>

struct sqlite3_stmt;

// The rows of a bound statement on the shared connection, read straight from SQLite:
// for the hundreds of thousands of rows a year of visits gives, where a row object
// each would cost more than the query. Throws TmError when the database refuses.
class RowStream
{
public:
    explicit RowStream(const Query &query);
    ~RowStream();
    RowStream(const RowStream &) = delete;
    RowStream &operator=(const RowStream &) = delete;

    bool next();
    bool isNull(int column) const;
    qint64 integer(int column) const;
    // An ISO date as the number yyyymmdd; 0 for null or anything else.
    int date(int column) const;

private:
    [[noreturn]] void fail() const;

    sqlite3_stmt *m_statement = nullptr;
};
