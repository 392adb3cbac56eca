#include "Transaction.h"

#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <stdexcept>

class tst_transaction : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QSqlDatabase m_db;

    int rows()
    {
        QSqlQuery q(m_db);
        return q.exec(QStringLiteral("SELECT COUNT(*) FROM t")) && q.next() ? q.value(0).toInt() : -1;
    }
    void insert() { QVERIFY(QSqlQuery(m_db).exec(QStringLiteral("INSERT INTO t VALUES (1)"))); }

private slots:
    void initTestCase()
    {
        m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("tx"));
        m_db.setDatabaseName(m_dir.filePath(QStringLiteral("tx.db")));
        QVERIFY(m_db.open());
        QVERIFY(QSqlQuery(m_db).exec(QStringLiteral("CREATE TABLE t (x INTEGER)")));
    }
    void init() { QVERIFY(QSqlQuery(m_db).exec(QStringLiteral("DELETE FROM t"))); }

    void endings_data()
    {
        QTest::addColumn<QString>("ending");
        QTest::addColumn<int>("kept");
        QTest::newRow("committed") << "commit" << 1;
        QTest::newRow("left without commit") << "scope" << 0;
        QTest::newRow("exception") << "throw" << 0;
        QTest::newRow("rolled back") << "rollback" << 0;
    }
    void endings()
    {
        QFETCH(QString, ending);
        QFETCH(int, kept);
        try {
            Transaction transaction(m_db);
            QVERIFY(transaction.active());
            insert();
            if (ending == QLatin1String("commit"))
                QVERIFY(transaction.commit());
            else if (ending == QLatin1String("throw"))
                throw std::runtime_error("failed half way");
            else if (ending == QLatin1String("rollback"))
                transaction.rollback();
            QCOMPARE(transaction.active(), ending == QLatin1String("scope"));
        } catch (const std::runtime_error &) { }
        QCOMPARE(rows(), kept);
        QVERIFY(m_db.transaction());   // nothing was left open
        QVERIFY(m_db.rollback());
    }

    // An inner guard inside an outer one leaves the outcome to the outer one.
    void nested()
    {
        {
            Transaction outer(m_db);
            {
                Transaction inner(m_db);
                QVERIFY(!inner.active());
                insert();
            }
            QVERIFY(outer.active());
            QVERIFY(outer.commit());
        }
        QCOMPARE(rows(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_transaction)
#include "tst_transaction.moc"
