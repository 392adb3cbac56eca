#include "RecordScope.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QTest>

using RecordScope::Kind;

class TestRecordScope : public QObject
{
    Q_OBJECT

private:
    static QStringList names(Kind kind, const RecordScope::Selection &s)
    {
        const QString table = RecordScope::tableName(kind);
        QSqlQuery q
            = basDatabase::Execute(QStringLiteral("SELECT t.LastName FROM %1 t%2 ORDER BY t.LastName").arg(table, s.where), s.binds);
        QStringList result;
        while (q.next())
            result << q.value(0).toString();
        return result;
    }

private Q_SLOTS:
    void handTypedStatementsThatWriteOrFailChangeNothing_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<QString>("error");
        const char *const denied = "not authorized";
        const char *const one = "Only one statement can be run at a time.";
        const char *const rows[][3] = {
            {"delete", "DELETE FROM Client", denied},
            {"update", "UPDATE Client SET LastName = 'X'", denied},
            {"insert", "INSERT INTO Client (LastName) VALUES ('X')", denied},
            {"cte delete", "WITH a AS (SELECT 1) DELETE FROM Client", denied},
            {"drop", "DROP TABLE Family", denied},
            {"temp table", "CREATE TEMP TABLE t AS SELECT * FROM Client", denied},
            {"pragma write", "PRAGMA user_version = 99", denied},
            {"pragma read", "PRAGMA foreign_keys", denied},
            {"attach", "ATTACH DATABASE 'ATTACHED' AS other", denied},
            {"begin", "BEGIN IMMEDIATE", denied},
            {"second statement", "SELECT * FROM Client; DELETE FROM Client", one},
            {"second select", "SELECT * FROM Client; SELECT * FROM Client", one},
            {"empty", "  -- nothing", "The statement is empty."},
            {"syntax", "SELEC * FROM Client", "near \"SELEC\": syntax error"},
            {"no table", "SELECT * FROM Clients", "no such table: Clients"},
            {"no key", "SELECT LastName FROM Client", "The statement must return the column ClientID."},
            {"no last name", "SELECT ClientID FROM Client", "The statement must return the column LastName."},
            {"other table", "SELECT VolunteerID AS ClientID, LastName FROM Volunteer", "The statement must select from the Client table."},
        };
        for (const auto &r : rows)
            QTest::newRow(r[0]) << QString::fromLatin1(r[1]) << QString::fromLatin1(r[2]);
    }

    void handTypedStatementsThatWriteOrFailChangeNothing()
    {
        QFETCH(QString, sql);
        QFETCH(QString, error);
        TestDatabase db;
        TestDatabase::insert("Client", {{"LastName", "Doe"}});
        const QString attached = db.folder() + QStringLiteral("/ATTACHED");
        sql.replace(QStringLiteral("ATTACHED"), attached);
        const QByteArray before = TestDatabase::fileHash(db.path());

        const RecordScope::Selection s = RecordScope::select(Kind::Client, RecordScope::CurrentRecordset, {Kind::Client, sql, {}}, "c");
        QVERIFY(!s.ok);
        QCOMPARE(s.error, error);
        QCOMPARE(TestDatabase::fileHash(db.path()), before);
        QVERIFY(!QFile::exists(attached));
        QCOMPARE(TestDatabase::count("Client"), 1);
    }

    void scopeChoosesTheRecords()
    {
        TestDatabase db;
        for (const char *name : {"Zed", "moore", "O'Brien", "adams", "Ng"})
            TestDatabase::insert("Client", {{"LastName", name}});
        const qint64 moore = TestDatabase::scalar("SELECT ClientID FROM Client WHERE LastName = 'moore'").toLongLong();
        TestDatabase::insert("Volunteer", {{"LastName", "Vance"}});
        TestDatabase::insert("Volunteer", {{"LastName", "Ames"}});

        // The records a scope chooses, by last name, and how many it counts (-1: not counted).
        const auto expect = [](Kind kind, int type, const QString &sql, const QString &key, const QStringList &expected, int count) {
            const RecordScope::Selection s = RecordScope::select(kind, type, {kind, sql, key}, "t");
            QVERIFY2(s.ok, qPrintable(sql + ": " + s.error));
            QCOMPARE(s.count, count);
            QCOMPARE(names(kind, s), expected);
        };
        expect(Kind::Client, 0, {}, {}, {"adams", "moore", "Ng", "O'Brien", "Zed"}, -1);
        // the list's own filter and order are kept out: the report sorts by last name
        expect(Kind::Client, 1, "SELECT * FROM Client WHERE LastName <> 'Ng' ORDER BY ClientID DESC", {},
               {"adams", "moore", "O'Brien", "Zed"}, 4);
        expect(Kind::Client, 1, "SELECT ClientID, LastName FROM Client WHERE upper(LastName) LIKE 'O''%'", {}, {"O'Brien"}, 1);
        expect(Kind::Client, 1, "SELECT * FROM Client WHERE 0", {}, {}, 0);
        expect(Kind::Client, 2, {}, QString::number(moore), {"moore"}, 1);
        expect(Kind::Client, 2, {}, "999", {}, 1);
        expect(Kind::Volunteer, 1, "SELECT * FROM Volunteer;  ", {}, {"Ames", "Vance"}, 2);

        const RecordScope::Selection sorted = RecordScope::select(Kind::Client, 1, {Kind::Client, "SELECT * FROM Client", {}}, "t");
        QCOMPARE(sorted.binds.value(0).toString().count(','), 4);
        const QString firstKey = TestDatabase::scalar("SELECT ClientID FROM Client WHERE LastName = 'adams'").toString();
        QVERIFY(sorted.binds.value(0).toString().startsWith("[" + firstKey + ","));
    }
};

QTEST_GUILESS_MAIN(TestRecordScope)
#include "tst_recordscope.moc"
