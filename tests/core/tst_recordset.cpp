#include "Recordset.h"
#include "TestDatabase.h"
#include "TmError.h"
#include "basDatabase.h"

#include <QSignalSpy>
#include <QTest>

class TestRecordset : public QObject
{
    Q_OBJECT

private:
    static void addClients(const QStringList &names)
    {
        for (const QString &n : names)
            TestDatabase::insert("Client", {{"LastName", n}, {"FirstName", "F"}});
    }
    static QStringList walk(Recordset &rs)
    {
        QStringList names;
        for (rs.moveFirst(); !rs.eof(); rs.moveNext())
            names << rs.value("LastName").toString();
        return names;
    }

private Q_SLOTS:
    void keepsTheQuerysOrderPositionsAndEnds()
    {
        TestDatabase db;
        Recordset rs;
        rs.open("Client", "ClientID", "SELECT * FROM Client ORDER BY LastName");
        QVERIFY(rs.bof() && rs.eof());
        QCOMPARE(rs.absolutePosition(), 0);
        QVERIFY(!rs.key().isValid());

        addClients({"smith", "Adams", "O'Brien", "baker", "Zane"});
        rs.requery();
        QCOMPARE(rs.recordCount(), 5);
        QCOMPARE(walk(rs), (QStringList {"Adams", "baker", "O'Brien", "smith", "Zane"}));   // case ignored, as people expect
        rs.open("Client", "ClientID", "SELECT * FROM Client WHERE LastName LIKE ? ORDER BY LastName DESC", {"%a%"});
        QCOMPARE(walk(rs), (QStringList {"Zane", "baker", "Adams"}));

        basDatabase::Execute("DELETE FROM Client");
        addClients({"A", "B", "C"});
        rs.open("Client", "ClientID", "SELECT * FROM Client ORDER BY LastName");
        QCOMPARE(rs.absolutePosition(), 1);
        QSignalSpy moves(&rs, &Recordset::moveComplete);
        rs.moveLast();
        QCOMPARE(rs.absolutePosition(), 3);
        rs.moveNext();
        QVERIFY(rs.eof() && !rs.bof());
        QCOMPARE(rs.absolutePosition(), 0);
        rs.moveFirst();
        rs.movePrevious();
        QVERIFY(rs.bof());
        rs.moveTo(2);
        QCOMPARE(rs.value("LastName").toString(), QStringLiteral("B"));
        QCOMPARE(moves.count(), 5);
        const QVariant keyOfC = TestDatabase::scalar("SELECT ClientID FROM Client WHERE LastName = 'C'");
        QVERIFY(rs.find(keyOfC));
        QCOMPARE(rs.absolutePosition(), 3);
        QVERIFY(!rs.find(987654));
        QCOMPARE(rs.absolutePosition(), 3);
        QVERIFY(rs.findFirst("LastName", "A"));
        QCOMPARE(rs.absolutePosition(), 1);
        QVERIFY(basDatabase::FindRecord(rs, "LastName", "B"));
        QCOMPARE(rs.absolutePosition(), 2);
    }

    void addUpdateAndCancel()
    {
        TestDatabase db;
        addClients({"A", "B"});
        Recordset rs;
        rs.open("Client", "ClientID", "SELECT * FROM Client ORDER BY LastName");
        rs.moveLast();
        rs.addNew();
        QCOMPARE(rs.editMode(), Recordset::EditMode::Adding);
        QCOMPARE(rs.absolutePosition(), -1);
        rs.setValue("LastName", "O'Brien");
        rs.cancelUpdate();
        QCOMPARE(rs.value("LastName").toString(), QStringLiteral("B"));   // back where it was
        QCOMPARE(TestDatabase::count("Client"), 2);

        rs.addNew();
        rs.setValue("LastName", "O'Brien");
        rs.update();
        QCOMPARE(TestDatabase::count("Client", "LastName = ?", {"O'Brien"}), 1);
        QCOMPARE(rs.recordCount(), 3);
        QCOMPARE(rs.absolutePosition(), 3);   // a new row joins the end until the next requery
        QCOMPARE(rs.key().toLongLong(), TestDatabase::scalar("SELECT ClientID FROM Client WHERE LastName = ?", {"O'Brien"}).toLongLong());

        rs.moveFirst();
        rs.setValue("FirstName", "Ann");
        QCOMPARE(rs.value("FirstName").toString(), QStringLiteral("Ann"));
        rs.cancelUpdate();
        QCOMPARE(rs.value("FirstName").toString(), QStringLiteral("F"));
        rs.setValue("FirstName", "Ann");
        rs.update();
        QCOMPARE(TestDatabase::scalar("SELECT FirstName FROM Client WHERE LastName = 'A'").toString(), QStringLiteral("Ann"));
    }

    void aRefusedUpdateChangesNothing()
    {
        TestDatabase db;
        const qint64 client = TestDatabase::insert("Client", {{"LastName", "A"}});
        TestDatabase::insert("FoodService", {{"ClientID", client}, {"NumberOfBags", 2}});
        Recordset rs;
        rs.open("FoodService", "FoodServiceID", "SELECT * FROM FoodService WHERE ClientID = ?", {client});
        rs.setValue("NumberOfBags", 5);
        rs.setValue("FoodServiceTypeID", 999);   // no such type
        QVERIFY_THROWS_EXCEPTION(TmError, rs.update());
        QCOMPARE(TestDatabase::scalar("SELECT NumberOfBags FROM FoodService").toInt(), 2);
        QCOMPARE(rs.editMode(), Recordset::EditMode::Editing);   // the user can correct and save again
        rs.setValue("FoodServiceTypeID", QVariant());
        rs.update();
        QCOMPARE(TestDatabase::scalar("SELECT NumberOfBags FROM FoodService").toInt(), 5);

        rs.addNew();
        rs.setValue("NumberOfBags", 1);   // no ClientID
        QVERIFY_THROWS_EXCEPTION(TmError, rs.update());
        QCOMPARE(TestDatabase::count("FoodService"), 1);
    }

    void deleteAndRequery()
    {
        TestDatabase db;
        addClients({"A", "B", "C"});
        Recordset rs;
        rs.open("Client", "ClientID", "SELECT * FROM Client ORDER BY LastName");
        rs.moveTo(2);
        rs.deleteCurrent();
        QCOMPARE(rs.recordCount(), 2);
        QCOMPARE(rs.value("LastName").toString(), QStringLiteral("C"));
        rs.deleteCurrent();
        QVERIFY(rs.eof());
        QCOMPARE(TestDatabase::count("Client"), 1);
        TestDatabase::insert("Client", {{"LastName", "0-first"}});
        rs.requery();
        QCOMPARE(rs.recordCount(), 2);
        QCOMPARE(rs.value("LastName").toString(), QStringLiteral("0-first"));
        // A row deleted elsewhere reads empty until the next requery.
        basDatabase::Execute("DELETE FROM Client WHERE LastName = 'A'");
        rs.moveLast();
        QVERIFY(rs.value("LastName").isNull());
        QCOMPARE(rs.recordCount(), 2);
    }

    void holdsManyRows()
    {
        TestDatabase db;
        basDatabase::Execute("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 50000) "
                             "INSERT INTO Client (LastName) SELECT printf('L%05d', 50001 - i) FROM n");
        Recordset rs;
        rs.open("Client", "ClientID", "SELECT * FROM Client ORDER BY LastName");
        QCOMPARE(rs.recordCount(), 50000);
        QCOMPARE(rs.value("LastName").toString(), QStringLiteral("L00001"));
        rs.moveLast();
        QCOMPARE(rs.value("LastName").toString(), QStringLiteral("L50000"));
        QVERIFY(rs.find(25000));
        QCOMPARE(rs.value("LastName").toString(), QStringLiteral("L25001"));
    }
};

QTEST_GUILESS_MAIN(TestRecordset)
#include "tst_recordset.moc"
