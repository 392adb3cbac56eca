#include "DemoData.h"
#include "Schema.h"

#include <QCryptographicHash>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QtTest>

// Generated households, seen from 15 June 2024.
class TestDemoData : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QStringList m_connections;

    // A fresh database with the standard contents, open under the given connection name.
    QSqlDatabase fresh(const QString &name)
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        m_connections << name;
        db.setDatabaseName(m_dir.filePath(name + QStringLiteral(".tmdb")));
        QString error;
        if (!db.open() || !QSqlQuery(db).exec(QStringLiteral("PRAGMA foreign_keys = ON")) || !Schema::ApplyNewSchema(db, &error))
            qFatal("test database: %s", qPrintable(error));
        return db;
    }

    QSqlDatabase generated(const QString &name, DemoData::Options options)
    {
        QSqlDatabase db = fresh(name);
        options.today = QDate(2024, 6, 15);
        QString error;
        if (!DemoData::Generate(db, options, &error))
            qFatal("generation failed: %s", qPrintable(error));
        return db;
    }

    // Each statement's count lies within its bounds.
    static void expectCounts(QSqlDatabase db, const QList<std::tuple<QString, qint64, qint64>> &figures)
    {
        for (const auto &[sql, low, high] : figures) {
            QSqlQuery query(db);
            QVERIFY2(query.exec(sql) && query.next(), qPrintable(sql + query.lastError().text()));
            const qint64 n = query.value(0).toLongLong();
            QVERIFY2(n >= low && n <= high, qPrintable(QStringLiteral("%1: %2").arg(sql).arg(n)));
        }
    }

    static QByteArray checksum(QSqlDatabase db)
    {
        QCryptographicHash hash(QCryptographicHash::Sha256);
        for (const char *table : {"Client", "Family", "FoodService", "Payments", "Income", "Volunteer"}) {
            QSqlQuery query(db);
            query.exec(QStringLiteral("SELECT * FROM %1 ORDER BY rowid").arg(QLatin1String(table)));
            while (query.next())
                for (int i = 0; i < query.record().count(); ++i)
                    hash.addData(query.value(i).toString().toUtf8() + '\x1f');
        }
        return hash.result();
    }

    static QStringList indexes(QSqlDatabase db)
    {
        QStringList list;
        QSqlQuery query(db);
        query.exec(QStringLiteral("SELECT name || '|' || sql FROM sqlite_master WHERE type = 'index' ORDER BY name"));
        while (query.next())
            list << query.value(0).toString();
        return list;
    }

private Q_SLOTS:
    void initTestCase() { generated(QStringLiteral("main"), {300, 1}); }

    void cleanupTestCase()
    {
        for (const QString &name : std::as_const(m_connections)) {
            QSqlDatabase::database(name, false).close();
            QSqlDatabase::removeDatabase(name);
        }
    }

    void householdsArePlausibleAndKeepTheRules()
    {
        const QString ssns = QStringLiteral("SELECT SocialSecurityNumber AS s FROM Client WHERE SocialSecurityNumber IS NOT NULL "
                                            "UNION ALL SELECT SocialSecurityNumber FROM Family WHERE SocialSecurityNumber IS NOT NULL");
        const qint64 any = std::numeric_limits<qint64>::max();
        expectCounts(QSqlDatabase::database(QStringLiteral("main")),
                     {{"SELECT COUNT(*) FROM Client", 300, 300},
                      {"SELECT COUNT(*) FROM Family", 300, 700},
                      {"SELECT COUNT(*) FROM FoodService", 1500, 3500},
                      {"SELECT COUNT(DISTINCT ClientID) FROM Payments", 45, any},
                      {"SELECT COUNT(*) FROM Volunteer", 5, any},
                      {"SELECT COUNT(*) FROM Organization WHERE OrganizationName = 'Riverside Community Food Pantry'", 1, 1},
                      // at most one spouse or partner; sons are M and daughters F
                      {"SELECT COUNT(*) FROM (SELECT f.ClientID FROM Family f JOIN Relationships r USING (RelationshipID) "
                       "WHERE r.RelationshipDescription IN ('Spouse', 'Partner') GROUP BY f.ClientID HAVING COUNT(*) > 1)",
                       0, 0},
                      {"SELECT COUNT(*) FROM Family f JOIN Relationships r USING (RelationshipID) WHERE (r.RelationshipDescription = 'Son' "
                       "AND f.Gender <> 'M') OR (r.RelationshipDescription = 'Daughter' AND f.Gender <> 'F')",
                       0, 0},
                      // every zip code is in the directory with the same city and state
                      {"SELECT COUNT(*) FROM Client c LEFT JOIN ZipCode z ON z.ZipCode = c.ZipCode AND z.City = c.City "
                       "AND z.State = c.State WHERE z.ZipCodeID IS NULL",
                       0, 0},
                      // nothing after today or before two years ago; adults of 18 to 90
                      {"SELECT COUNT(*) FROM FoodService WHERE FoodServiceDate > '2024-06-15' OR FoodServiceDate < '2022-06-15'", 0, 0},
                      {"SELECT COUNT(*) FROM Payments WHERE PaymentDate > '2024-06-15'", 0, 0},
                      {"SELECT COUNT(*) FROM Client WHERE BirthDate > '2006-06-15' OR BirthDate < '1933-06-15'", 0, 0},
                      // never more paid than asked
                      {"SELECT COUNT(*) FROM Payments WHERE AmountPaid > AmountRequested", 0, 0},
                      // phones of ten digits; social security numbers of nine, never shared
                      {"SELECT COUNT(*) FROM Client WHERE length(HomePhone) <> 10 OR HomePhone GLOB '*[^0-9]*'", 0, 0},
                      {QStringLiteral("SELECT COUNT(*) FROM (%1) WHERE length(s) <> 9 OR s GLOB '*[^0-9]*'").arg(ssns), 0, 0},
                      {QStringLiteral("SELECT COUNT(*) - COUNT(DISTINCT s) FROM (%1)").arg(ssns), 0, 0},
                      // names and notes keep their characters: apostrophes, accents, line breaks
                      {"SELECT COUNT(*) FROM Client WHERE instr(LastName, '''') > 0", 1, any},
                      {"SELECT COUNT(*) FROM (SELECT LastName FROM Client UNION ALL SELECT LastName FROM Family) "
                       "WHERE LastName IN ('Muñoz', 'Nguyễn', 'Peña')",
                       1, any},
                      {"SELECT COUNT(*) FROM Client WHERE instr(Comments, char(10)) > 0 OR instr(MedicalProblems, char(10)) > 0", 1, any}});
    }

    void sameSeedGivesSameData()
    {
        const QByteArray first = checksum(QSqlDatabase::database(QStringLiteral("main")));
        QCOMPARE(checksum(generated(QStringLiteral("again"), {300, 1})), first);
        QVERIFY(checksum(generated(QStringLiteral("other"), {300, 2})) != first);
    }

    void totalsSpreadOverEveryHousehold()
    {
        DemoData::Options options;
        options.clients = 200;
        options.familyMembers = 800;
        options.foodServices = 4000;
        options.payments = 400;
        // Within half a household's share of the totals; no household takes much more than twice its share.
        expectCounts(generated(QStringLiteral("totals"), options),
                     {{"SELECT COUNT(*) FROM Family", 798, 802},
                      {"SELECT COUNT(*) FROM FoodService", 3990, 4010},
                      {"SELECT COUNT(*) FROM Payments", 399, 401},
                      {"SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM Family GROUP BY ClientID)", 1, 9},
                      {"SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM FoodService GROUP BY ClientID)", 1, 41},
                      {"SELECT COUNT(*) FROM FoodService WHERE FoodServiceDate NOT BETWEEN '2022-06-17' AND '2024-06-15'", 0, 0}});
    }

    void indexesSurviveSuccessAndFailure()
    {
        const QStringList expected = indexes(fresh(QStringLiteral("plain")));
        QVERIFY(expected.size() > 30);
        QCOMPARE(indexes(QSqlDatabase::database(QStringLiteral("main"))), expected);

        QSqlDatabase db = fresh(QStringLiteral("broken"));
        // The eleventh household fails, after zip codes, the organization and ten households are written.
        QVERIFY(QSqlQuery(db).exec(QStringLiteral("CREATE TRIGGER StopGenerating BEFORE INSERT ON Client WHEN (SELECT COUNT(*) "
                                                  "FROM Client) >= 10 BEGIN SELECT RAISE(ABORT, 'disk is full'); END")));
        DemoData::Options options;
        options.clients = 20;
        options.today = QDate(2024, 6, 15);
        QString error;
        QVERIFY(!DemoData::Generate(db, options, &error));
        QVERIFY2(error.contains(QStringLiteral("disk is full")), qPrintable(error));
        expectCounts(db,
                     {{"SELECT COUNT(*) FROM Client", 0, 0},
                      {"SELECT COUNT(*) FROM ZipCode", 0, 0},
                      {"SELECT COUNT(*) FROM Organization WHERE OrganizationName IS NOT NULL", 0, 0}});
        QVERIFY(!db.rollback());   // no transaction is left open
        QCOMPARE(indexes(db), expected);
    }
};

QTEST_GUILESS_MAIN(TestDemoData)
#include "tst_demodata.moc"
