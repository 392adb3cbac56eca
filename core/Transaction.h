#pragma once

#include <QSqlDatabase>
#include <QString>

// A database transaction that rolls back by itself when it goes out of scope
// without commit(), including when an exception unwinds past it.
// If the connection is already inside a transaction, begins nothing:
// active() is false, and commit() and the rollback are left to the outer owner.
class Transaction
{
public:
    explicit Transaction(QSqlDatabase db);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    bool active() const { return m_active; }
    // Commits; on failure rolls back and returns false (error() says why).
    bool commit();
    void rollback();
    QString error() const { return m_error; }

private:
    QSqlDatabase m_db;
    bool m_active = false;
    QString m_error;
};
