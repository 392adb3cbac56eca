#include "FilterFields.h"
#include "FilterStatement.h"
#include "RecordScope.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QTest>

using FilterStatement::Criterion;
using RecordScope::Kind;

Q_DECLARE_METATYPE(QList<Criterion>)

namespace {

Criterion where(const QString &field, const QString &condition, const QString &value = {}, const QString &value2 = {})
{
    return {QStringLiteral("Where"), field, condition, value, value2};
}

Criterion also(const QString &conjunction, Criterion c)
{
    c.conjunction = conjunction;
    return c;
}

}   // namespace

// Which records a run takes: the statement the filter builds, one typed by hand, and the scope chosen.
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

    void fieldListsAndConditions()
    {
        // Every field names a real column: a misspelt one would fail only when a user picks it.
        TestDatabase db;
        for (const char *table : {"Client", "Volunteer"})
            for (const FilterFields::Field &f : FilterFields::forTable(table)) {
                const QString column = f.qualified();
                QVERIFY2(basDatabase::Field(column.section('.', 0, 0), column.section('.', 1)).isValid(), qPrintable(column));
            }
        QCOMPARE(FilterFields::find("Client", "Employment Duration Years")->qualified(), QString("Client.EmployerDurationYears"));
        QVERIFY(FilterFields::forTable("Family").isEmpty());
    }

    void statementText_data()
    {
        QTest::addColumn<QString>("table");
        QTest::addColumn<QList<Criterion>>("criteria");
        QTest::addColumn<QString>("sql");
        QTest::newRow("no criteria") << "Client" << QList<Criterion> {{"Where", {}, {}, {}, {}}} << "";
        QTest::newRow("quotes doubled") << "Client" << QList<Criterion> {where("Last Name", "is equal to", "O'Brien")}
                                        << "SELECT * FROM Client WHERE (Client.LastName COLLATE NOCASE = 'O''Brien')";
        QTest::newRow("two joins, two parentheses")
            << "Client"
            << QList<Criterion> {where("Food Service Date", "is between", "03/01/2026", "03/31/2026"),
                                 also("And", where("Payment Type", "is equal to", "2"))}
            << "SELECT DISTINCT Client.* FROM ((Client INNER JOIN FoodService ON Client.ClientID=FoodService.ClientID) "
               "INNER JOIN Payments ON Client.ClientID=Payments.ClientID) WHERE (FoodService.FoodServiceDate BETWEEN "
               "'2026-03-01' AND '2026-03-31') AND (Payments.PaymentsTypeID = 2)";
        QTest::newRow("same join once, left to right")
            << "Client"
            << QList<Criterion> {where("Food Service Bags", "is greater than", "2"), also("Or", where("Food Service Comments", "is empty")),
                                 also("And", where("Eligible for FEMA?", "is True"))}
            << "SELECT DISTINCT Client.* FROM (Client INNER JOIN FoodService ON Client.ClientID=FoodService.ClientID) WHERE "
               "(FoodService.NumberOfBags > 2) OR ((FoodService.Comments IS NULL OR FoodService.Comments = '')) AND "
               "(Client.FEMAEligible = 1)";
        QTest::newRow("begins with counts characters")
            << "Client" << QList<Criterion> {where("First Name", "does not begin with", "José")}
            << "SELECT * FROM Client WHERE (NOT (substr(Client.FirstName, 1, 4) = 'José' COLLATE NOCASE))";
        QTest::newRow("begins with counts characters beyond two bytes")
            << "Client" << QList<Criterion> {where("Last Name", "begins with", "𝔘n")}
            << "SELECT * FROM Client WHERE (substr(Client.LastName, 1, 2) = '𝔘n' COLLATE NOCASE)";
        QTest::newRow("money in cents, dates ISO, lists by key")
            << "Client"
            << QList<Criterion> {where("Payment Amount", "is not less than", "$12.50"),
                                 also("And", where("Birth Date", "is less than", "12/31/1950")),
                                 also("And", where("Gender", "is equal to", "F"))}
            << "SELECT DISTINCT Client.* FROM (Client INNER JOIN Payments ON Client.ClientID=Payments.ClientID) WHERE "
               "(NOT (Payments.AmountPaid < 1250)) AND (Client.BirthDate < '1950-12-31') AND (Client.Gender = 'F')";
        QTest::newRow("volunteers") << "Volunteer" << QList<Criterion> {where("Number In Party", "is not between", "2", "4")}
                                    << "SELECT * FROM Volunteer WHERE (NOT (Volunteer.NumberInParty BETWEEN 2 AND 4))";
        // A bad value is refused with the row it is on.
        const auto bad = [](const char *tag, const Criterion &second, const char *error) {
            QTest::newRow(tag) << "Client" << QList<Criterion> {where("Last Name", "is not empty"), also("And", second)}
                               << QString::fromLatin1(error);
        };
        bad("empty", where("City", "contains", " "), "Row 2: enter a value for City.");
        bad("not a number", where("Zip Code", "is equal to", "80A03"), "Row 2: 80A03 is not a whole number.");
        bad("impossible date", where("Birth Date", "is equal to", "02/30/2026"),
            "Row 2: 02/30/2026 is not a date; enter it as mm/dd/yyyy.");
        bad("money", where("Income Amount", "is equal to", "ten"), "Row 2: ten is not an amount of money.");
        bad("between without end", where("Payment Date", "is between", "01/01/2026"), "Row 2: enter the second value of \"is between\".");
        bad("no condition", where("City", ""), "Row 2: choose a condition for City.");
    }

    void statementText()
    {
        QFETCH(QString, table);
        QFETCH(QList<Criterion>, criteria);
        QFETCH(QString, sql);
        const FilterStatement::Result r = FilterStatement::build(table, criteria);
        QCOMPARE(r.ok ? r.sql : r.error, sql);
        if (!r.ok)   // the row named in the message is the row pointed at
            QCOMPARE(QStringLiteral("Row %1:").arg(r.row + 1), sql.section(u' ', 0, 1));
    }

    // The built statements select the rows a person would expect, and hostile values match only themselves.
    void statementsSelectTheRightClients()
    {
        TestDatabase db;
        const qint64 obrien = TestDatabase::insert("Client", {{"LastName", "O'Brien"}, {"City", "boston"}, {"ZipCode", "02134"}});
        const QString hostile = "x'); DROP TABLE Client; --";
        TestDatabase::insert("Client", {{"LastName", hostile}, {"City", ""}});
        TestDatabase::insert("Client", {{"LastName", "Nguyễn"}, {"ZipCode", "80203"}});
        const qint64 type = TestDatabase::lookupId(
            "FoodServiceTypes", TestDatabase::scalar("SELECT FoodServiceTypeDescription FROM FoodServiceTypes LIMIT 1").toString());
        for (const char *date : {"2026-03-04", "2026-03-09", "2026-05-01"})
            TestDatabase::insert("FoodService",
                                 {{"ClientID", obrien}, {"FoodServiceDate", date}, {"FoodServiceTypeID", type}, {"NumberOfBags", 2}});
        const QByteArray before = TestDatabase::fileHash(db.path());

        const struct
        {
            QList<Criterion> criteria;
            QStringList names;
        } cases[] = {
            {{where("Last Name", "is equal to", "o'brien")}, {"O'Brien"}},
            {{where("Last Name", "is equal to", hostile)}, {hostile}},
            {{where("Last Name", "contains", "'); drop")}, {hostile}},
            {{where("City", "is empty")}, {hostile, "Nguyễn"}},
            {{where("Zip Code", "is equal to", "2134")}, {"O'Brien"}},
            {{where("Zip Code", "is between", "80000", "80999")}, {"Nguyễn"}},
            {{where("Last Name", "is like", "ng*")}, {"Nguyễn"}},
            {{where("Food Service Date", "is between", "03/01/2026", "03/31/2026")}, {"O'Brien"}},   // two services, one row
            {{where("Food Service Date", "is greater than", "12/31/2026"), also("Or", where("Last Name", "begins with", "o'b"))},
             {"O'Brien"}},
            // the join keeps out clients without food services, whatever the Or says
            {{where("Food Service Bags", "is greater than", "0"), also("Or", where("Last Name", "begins with", "Ngu"))}, {"O'Brien"}},
        };
        for (const auto &c : cases) {
            const FilterStatement::Result r = FilterStatement::build("Client", c.criteria);
            QVERIFY2(r.ok, qPrintable(r.error));
            QList<QVariantList> rows;
            QString error;
            QVERIFY2(RecordScope::runReadOnly(r.sql + " ORDER BY Client.ClientID", "Client", {"ClientID", "LastName"},
                                              "SELECT LastName FROM (%1)", &rows, &error),
                     qPrintable(r.sql + ": " + error));
            QStringList names;
            for (const QVariantList &row : rows)
                names << row.value(0).toString();
            QVERIFY2(names == c.names, qPrintable(r.sql + " -> " + names.join("|")));
        }
        QCOMPARE(TestDatabase::fileHash(db.path()), before);
    }
};

QTEST_GUILESS_MAIN(TestRecordScope)
#include "tst_recordscope.moc"
