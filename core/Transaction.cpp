#include "Transaction.h"

#include <QSqlError>

Transaction::Transaction(QSqlDatabase db) : m_db(db)
{
    m_active = m_db.transaction();
    if (!m_active)
        m_error = m_db.lastError().text();
}

Transaction::~Transaction()
{
    rollback();
}

bool Transaction::commit()
{
    if (!m_active)
        return false;
    if (m_db.commit()) {
        m_active = false;
        return true;
    }
    m_error = m_db.lastError().text();
    rollback();
    return false;
}

void Transaction::rollback()
{
    if (m_active)
        m_db.rollback();
    m_active = false;
}
