#include "DemoData.h"
#include "Schema.h"

#include <QCryptographicHash>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QtTest>

class TestDemoData : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QStringList m_connections;
    const QDate m_today {2024, 6, 15};

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

    QSqlDatabase generated(const QString &name, quint32 seed)
    {
        QSqlDatabase db = fresh(name);
        DemoData::Options options;
        options.clients = 300;
        options.seed = seed;
        options.today = m_today;
        QString error;
        if (!DemoData::Generate(db, options, &error))
            qFatal("generation failed: %s", qPrintable(error));
        return db;
    }

    static qint64 count(const QString &sql, const QVariantList &values = {},
                        QSqlDatabase db = QSqlDatabase::database(QStringLiteral("main")))
    {
        QSqlQuery query(db);
        query.prepare(sql);
        for (const QVariant &v : values)
            query.addBindValue(v);
        if (!query.exec() || !query.next())
            qFatal("%s: %s", qPrintable(sql), qPrintable(query.lastError().text()));
        return query.value(0).toLongLong();
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
    void initTestCase() { generated(QStringLiteral("main"), 1); }

    void cleanupTestCase()
    {
        for (const QString &name : std::as_const(m_connections)) {
            QSqlDatabase::database(name, false).close();
            QSqlDatabase::removeDatabase(name);
        }
    }

    void householdsArePlausible()
    {
        QCOMPARE(count("SELECT COUNT(*) FROM Client"), 300);
        const qint64 family = count("SELECT COUNT(*) FROM Family");
        QVERIFY2(family >= 300 && family <= 700, qPrintable(QString::number(family)));
        const qint64 visits = count("SELECT COUNT(*) FROM FoodService");
        QVERIFY2(visits >= 1500 && visits <= 3500, qPrintable(QString::number(visits)));
        QVERIFY(count("SELECT COUNT(DISTINCT ClientID) FROM Payments") >= 45);
        QVERIFY(count("SELECT COUNT(*) FROM Volunteer") >= 5);
        QCOMPARE(count("SELECT COUNT(*) FROM Organization WHERE OrganizationName = 'Riverside Community Food Pantry'"), 1);
        // At most one spouse or partner; sons are M and daughters F.
        QCOMPARE(count("SELECT COUNT(*) FROM (SELECT f.ClientID FROM Family f JOIN Relationships r USING (RelationshipID) "
                       "WHERE r.RelationshipDescription IN ('Spouse', 'Partner') GROUP BY f.ClientID HAVING COUNT(*) > 1)"),
                 0);
        QCOMPARE(count("SELECT COUNT(*) FROM Family f JOIN Relationships r USING (RelationshipID) "
                       "WHERE (r.RelationshipDescription = 'Son' AND f.Gender <> 'M') "
                       "OR (r.RelationshipDescription = 'Daughter' AND f.Gender <> 'F')"),
                 0);
    }

    void dataKeepsTheRulesOfTheDatabase()
    {
        QSqlQuery check(QSqlDatabase::database(QStringLiteral("main")));
        QVERIFY(check.exec(QStringLiteral("PRAGMA foreign_key_check")));
        QVERIFY(!check.next());
        // Every address's zip code is in the directory with the same city and state.
        QCOMPARE(count("SELECT COUNT(*) FROM Client c LEFT JOIN ZipCode z ON z.ZipCode = c.ZipCode AND z.City = c.City "
                       "AND z.State = c.State WHERE z.ZipCodeID IS NULL"),
                 0);
        // Nothing dated after today or before two years ago; adults of 18 to 90.
        const QString today = m_today.toString(Qt::ISODate);
        QCOMPARE(count("SELECT COUNT(*) FROM FoodService WHERE FoodServiceDate > ? OR FoodServiceDate < ?",
                       {today, m_today.addYears(-2).toString(Qt::ISODate)}),
                 0);
        QCOMPARE(count("SELECT COUNT(*) FROM Payments WHERE PaymentDate > ?", {today}), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM Client WHERE BirthDate > ? OR BirthDate < ?",
                       {m_today.addYears(-18).toString(Qt::ISODate), m_today.addYears(-91).toString(Qt::ISODate)}),
                 0);
        // Money is whole cents; nobody is paid more than asked.
        QCOMPARE(count("SELECT COUNT(*) FROM Payments WHERE AmountPaid > AmountRequested OR typeof(AmountPaid) <> 'integer'"), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM Income WHERE typeof(Amount) <> 'integer'"), 0);
        // Phones are ten digits; social security numbers nine, and never shared.
        QCOMPARE(count("SELECT COUNT(*) FROM Client WHERE length(HomePhone) <> 10 OR HomePhone GLOB '*[^0-9]*'"), 0);
        const QString ssns = QStringLiteral("SELECT SocialSecurityNumber AS s FROM Client WHERE SocialSecurityNumber IS NOT NULL "
                                            "UNION ALL SELECT SocialSecurityNumber FROM Family WHERE SocialSecurityNumber IS NOT NULL");
        QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM (%1)").arg(ssns)),
                 count(QStringLiteral("SELECT COUNT(DISTINCT s) FROM (%1)").arg(ssns)));
        QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM (%1) WHERE length(s) <> 9 OR s GLOB '*[^0-9]*'").arg(ssns)), 0);
    }

    void namesAndNotesKeepTheirCharacters()
    {
        QVERIFY(count("SELECT COUNT(*) FROM Client WHERE instr(LastName, '''') > 0") > 0);
        QVERIFY(count("SELECT COUNT(*) FROM (SELECT LastName FROM Client UNION ALL SELECT LastName FROM Family) "
                      "WHERE LastName IN (?, ?, ?)",
                      {QStringLiteral("Muñoz"), QStringLiteral("Nguyễn"), QStringLiteral("Peña")})
                > 0);
        QVERIFY(count("SELECT COUNT(*) FROM Client WHERE instr(Comments, char(10)) > 0 OR instr(MedicalProblems, char(10)) > 0") > 0);
    }

    void sameSeedGivesSameData()
    {
        const QByteArray first = checksum(QSqlDatabase::database(QStringLiteral("main")));
        QCOMPARE(checksum(generated(QStringLiteral("again"), 1)), first);
        QVERIFY(checksum(generated(QStringLiteral("other"), 2)) != first);
    }

    void totalsSpreadOverEveryHousehold()
    {
        QSqlDatabase db = fresh(QStringLiteral("totals"));
        DemoData::Options options;
        options.clients = 200;
        options.familyMembers = 800;
        options.foodServices = 4000;
        options.payments = 400;
        options.today = m_today;
        QString error;
        QVERIFY2(DemoData::Generate(db, options, &error), qPrintable(error));
        // Within half a household's share of the totals.
        const qint64 family = count("SELECT COUNT(*) FROM Family", {}, db);
        QVERIFY2(family >= 798 && family <= 802, qPrintable(QString::number(family)));
        const qint64 visits = count("SELECT COUNT(*) FROM FoodService", {}, db);
        QVERIFY2(visits >= 3990 && visits <= 4010, qPrintable(QString::number(visits)));
        const qint64 payments = count("SELECT COUNT(*) FROM Payments", {}, db);
        QVERIFY2(payments >= 399 && payments <= 401, qPrintable(QString::number(payments)));
        // No household takes much more than twice its share.
        QVERIFY(count("SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM Family GROUP BY ClientID)", {}, db) <= 9);
        QVERIFY(count("SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM FoodService GROUP BY ClientID)", {}, db) <= 41);
        QCOMPARE(count("SELECT COUNT(*) FROM FoodService WHERE FoodServiceDate NOT BETWEEN ? AND ?",
                       {m_today.addDays(-729).toString(Qt::ISODate), m_today.toString(Qt::ISODate)}, db),
                 0);
    }

    void indexesSurviveSuccessAndFailure()
    {
        const QStringList expected = indexes(fresh(QStringLiteral("plain")));
        QVERIFY(expected.size() > 30);
        QCOMPARE(indexes(QSqlDatabase::database(QStringLiteral("main"))), expected);

        QSqlDatabase db = fresh(QStringLiteral("broken"));
        // The eleventh household fails, after zip codes, the organization and ten households are written.
        QVERIFY(QSqlQuery(db).exec(QStringLiteral("CREATE TRIGGER StopGenerating BEFORE INSERT ON Client "
                                                  "WHEN (SELECT COUNT(*) FROM Client) >= 10 "
                                                  "BEGIN SELECT RAISE(ABORT, 'disk is full'); END")));
        DemoData::Options options;
        options.clients = 20;
        options.today = m_today;
        QString error;
        QVERIFY(!DemoData::Generate(db, options, &error));
        QVERIFY2(error.contains(QStringLiteral("disk is full")), qPrintable(error));
        QCOMPARE(count("SELECT COUNT(*) FROM Client", {}, db), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM ZipCode", {}, db), 0);
        QCOMPARE(count("SELECT COUNT(*) FROM Organization WHERE OrganizationName IS NOT NULL", {}, db), 0);
        QVERIFY(!db.rollback());   // no transaction is left open
        QCOMPARE(indexes(db), expected);
    }
};

QTEST_GUILESS_MAIN(TestDemoData)
#include "tst_demodata.moc"
