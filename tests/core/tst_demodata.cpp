#include "DemoData.h"

#include <QCryptographicHash>
#include <QFile>
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
    const QDate m_today{2024, 6, 15};

    QSqlDatabase createDatabase(const QString &name);
    QSqlDatabase generated(const QString &name, quint32 seed);
    QSqlDatabase main() const { return QSqlDatabase::database(QStringLiteral("main")); }
    QVariant scalar(const QString &sql, const QVariantList &values = {}, QSqlDatabase db = {});
    qint64 count(const QString &sql, const QVariantList &values = {}) { return scalar(sql, values).toLongLong(); }
    QByteArray checksum(QSqlDatabase db);
    QStringList indexes(QSqlDatabase db);

private slots:
    void initTestCase();
    void cleanupTestCase();
    void rowCountsArePlausible();
    void referencesAreIntact();
    void datesAreInRange();
    void moneyIsConsistent();
    void ssnsAreUniqueAndWellFormed();
    void householdsAreCoherent();
    void textKeepsSpecialCharacters();
    void sameSeedGivesSameData();
    void indexesAreKept();
    void failureRollsBack();
};

QSqlDatabase TestDemoData::createDatabase(const QString &name)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
    m_connections.append(name);
    db.setDatabaseName(m_dir.filePath(name + QStringLiteral(".db")));
    if (!db.open())
        qFatal("cannot open %s", qPrintable(db.lastError().text()));
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("PRAGMA foreign_keys=ON")))
        qFatal("PRAGMA failed");
    const QStringList files = {QStringLiteral(TENDMARK_SOURCE_DIR "/core/schema/schema-v1.sql"),
                               QStringLiteral(TENDMARK_SOURCE_DIR "/core/schema/standard-data.sql")};
    for (const QString &path : files) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", qPrintable(path));
        const QString text = QString::fromUtf8(file.readAll());
        for (const QString &piece : text.split(QStringLiteral(";\n"))) {
            QStringList lines;
            for (const QString &line : piece.split(QLatin1Char('\n'))) {
                if (!line.trimmed().startsWith(QStringLiteral("--")))
                    lines.append(line);
            }
            const QString statement = lines.join(QLatin1Char('\n')).trimmed();
            if (!statement.isEmpty() && !query.exec(statement))
                qFatal("schema statement failed: %s", qPrintable(query.lastError().text()));
        }
    }
    return db;
}

QSqlDatabase TestDemoData::generated(const QString &name, quint32 seed)
{
    QSqlDatabase db = createDatabase(name);
    DemoData::Options options;
    options.clients = 300;
    options.seed = seed;
    options.today = m_today;
    QString error;
    if (!DemoData::Generate(db, options, &error))
        qFatal("generation failed: %s", qPrintable(error));
    return db;
}

QVariant TestDemoData::scalar(const QString &sql, const QVariantList &values, QSqlDatabase db)
{
    QSqlQuery query(db.isValid() ? db : main());
    query.prepare(sql);
    for (const QVariant &v : values)
        query.addBindValue(v);
    if (!query.exec() || !query.next()) {
        qWarning() << sql << query.lastError().text();
        return {};
    }
    return query.value(0);
}

QByteArray TestDemoData::checksum(QSqlDatabase db)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const QStringList tables = {QStringLiteral("Client"), QStringLiteral("Family"), QStringLiteral("FoodService"),
                                QStringLiteral("Payments"), QStringLiteral("Income"), QStringLiteral("Volunteer")};
    for (const QString &table : tables) {
        QSqlQuery query(db);
        if (!query.exec(QStringLiteral("SELECT * FROM %1 ORDER BY rowid").arg(table)))
            qFatal("checksum query failed");
        while (query.next()) {
            for (int i = 0; i < query.record().count(); ++i) {
                hash.addData(query.value(i).toString().toUtf8());
                hash.addData(QByteArrayView("\x1f"));
            }
        }
    }
    return hash.result();
}

QStringList TestDemoData::indexes(QSqlDatabase db)
{
    QStringList list;
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("SELECT name, tbl_name, sql FROM sqlite_master WHERE type = 'index' ORDER BY name")))
        qFatal("index query failed");
    while (query.next())
        list.append(query.value(0).toString() + QLatin1Char('|') + query.value(1).toString() + QLatin1Char('|')
                    + query.value(2).toString());
    return list;
}

void TestDemoData::initTestCase()
{
    QVERIFY(m_dir.isValid());
    generated(QStringLiteral("main"), 1);
}

void TestDemoData::cleanupTestCase()
{
    for (const QString &name : std::as_const(m_connections)) {
        QSqlDatabase::database(name, false).close();
        QSqlDatabase::removeDatabase(name);
    }
}

void TestDemoData::rowCountsArePlausible()
{
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Client")), 300);
    const qint64 family = count(QStringLiteral("SELECT COUNT(*) FROM Family"));
    QVERIFY2(family >= 300 && family <= 700, qPrintable(QString::number(family)));
    const qint64 visits = count(QStringLiteral("SELECT COUNT(*) FROM FoodService"));
    QVERIFY2(visits >= 1500 && visits <= 3500, qPrintable(QString::number(visits)));
    const qint64 payers = count(QStringLiteral("SELECT COUNT(DISTINCT ClientID) FROM Payments"));
    QVERIFY2(payers >= 45 && payers <= 110, qPrintable(QString::number(payers)));
    QVERIFY(count(QStringLiteral("SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM Payments GROUP BY ClientID)")) <= 4);
    QVERIFY(count(QStringLiteral("SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM FoodService GROUP BY ClientID)")) <= 24);
    QVERIFY(count(QStringLiteral("SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM Family GROUP BY ClientID)")) <= 6);
    QVERIFY(count(QStringLiteral("SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM Income GROUP BY ClientID)")) <= 3);
    QVERIFY(count(QStringLiteral("SELECT MAX(n) FROM (SELECT COUNT(*) AS n FROM Expenses GROUP BY ClientID)")) <= 4);
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM Income")) > 200);
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM Expenses")) > 300);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Volunteer")), 6);   // at least five, about one per fifty
    const qint64 zips = count(QStringLiteral("SELECT COUNT(*) FROM ZipCode"));
    QVERIFY(zips >= 30 && zips <= 60);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Organization")), 1);
    QCOMPARE(scalar(QStringLiteral("SELECT OrganizationName FROM Organization")).toString(),
             QStringLiteral("Riverside Community Food Pantry"));
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Organization o JOIN ZipCode z ON z.ZipCode = o.OrganizationZip "
                                  "AND z.City = o.OrganizationCity AND z.State = o.OrganizationState")),
             1);
}

void TestDemoData::referencesAreIntact()
{
    QSqlQuery query(main());
    QVERIFY(query.exec(QStringLiteral("PRAGMA foreign_key_check")));
    const bool broken = query.next();
    QVERIFY2(!broken, broken ? qPrintable(query.value(0).toString()) : "");

    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Client c LEFT JOIN ZipCode z ON z.ZipCode = c.ZipCode "
                                  "AND z.City = c.City AND z.State = c.State WHERE z.ZipCodeID IS NULL")),
             0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Volunteer v LEFT JOIN ZipCode z ON z.ZipCode = v.ZipCode "
                                  "AND z.City = v.City WHERE z.ZipCodeID IS NULL")),
             0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Client WHERE State NOT IN (SELECT StateCode FROM States)")), 0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Client WHERE Gender NOT IN (SELECT GenderCode FROM Gender) "
                                  "OR Gender IS NULL")),
             0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Client WHERE MaritalStatusID IS NULL OR HousingID IS NULL")), 0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM FoodService WHERE FoodServiceTypeID IS NULL "
                                  "OR NumberOfBags NOT BETWEEN 1 AND 6")),
             0);
    // Every household keeps its own distinct income sources and expense categories.
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM (SELECT 1 FROM Income GROUP BY ClientID, IncomeSourceID "
                                  "HAVING COUNT(*) > 1)")),
             0);
    const QString phones = QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 IS NOT NULL AND (length(%2) <> 10 "
                                          "OR %2 GLOB '*[^0-9]*')");
    for (const auto &[table, column] : {std::pair{"Client", "HomePhone"}, std::pair{"Client", "MobilePhone"},
                                        std::pair{"Client", "WorkPhone"}, std::pair{"Volunteer", "EmergencyContactPhone"},
                                        std::pair{"Organization", "OrganizationPhone"}})
        QCOMPARE(count(phones.arg(QLatin1String(table), QLatin1String(column))), 0);
}

void TestDemoData::datesAreInRange()
{
    const QString today = m_today.toString(Qt::ISODate);
    const QString twoYearsAgo = m_today.addYears(-2).toString(Qt::ISODate);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM FoodService WHERE FoodServiceDate > ? OR FoodServiceDate < ? "
                                  "OR FoodServiceDate IS NULL"),
                   {today, twoYearsAgo}),
             0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Payments WHERE PaymentDate > ? OR PaymentDate < ? "
                                  "OR PaymentDate IS NULL"),
                   {today, twoYearsAgo}),
             0);
    QCOMPARE(scalar(QStringLiteral("SELECT MAX(FoodServiceDate) FROM FoodService")).toString().size(), 10);
    // Heads of household are adults no older than 90; a few birth dates are unknown.
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Client WHERE BirthDate > ? OR BirthDate < ?"),
                   {m_today.addYears(-18).toString(Qt::ISODate), m_today.addYears(-91).toString(Qt::ISODate)}),
             0);
    const qint64 unknown = count(QStringLiteral("SELECT COUNT(*) FROM Client WHERE BirthDate IS NULL"));
    QVERIFY(unknown <= 20);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Family WHERE BirthDate > ?"), {today}), 0);
    QVERIFY(QDate::fromString(scalar(QStringLiteral("SELECT MIN(BirthDate) FROM Family")).toString(), Qt::ISODate).isValid());
}

void TestDemoData::moneyIsConsistent()
{
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Payments WHERE AmountPaid > AmountRequested "
                                  "OR AmountPaid < 0 OR AmountRequested <= 0")),
             0);
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM Payments WHERE AmountPaid = 0")) > 0);
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM Payments WHERE AmountPaid = AmountRequested")) > 0);
    for (const char *table : {"Payments", "Income", "Expenses"}) {
        const QString column = QLatin1String(table) == QLatin1String("Payments") ? QStringLiteral("AmountPaid")
                                                                               : QStringLiteral("Amount");
        QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE typeof(%2) <> 'integer'")
                           .arg(QLatin1String(table), column)),
                 0);
    }
    // Monthly amounts stay within what a pantry household would report.
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Income WHERE Amount < 1000 OR Amount > 500000")), 0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Expenses WHERE Amount < 1000 OR Amount > 500000")), 0);
}

void TestDemoData::ssnsAreUniqueAndWellFormed()
{
    const QString all = QStringLiteral("SELECT SocialSecurityNumber AS s FROM Client WHERE SocialSecurityNumber IS NOT NULL "
                                       "UNION ALL SELECT SocialSecurityNumber FROM Family WHERE SocialSecurityNumber "
                                       "IS NOT NULL");
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM (%1)").arg(all)),
             count(QStringLiteral("SELECT COUNT(DISTINCT s) FROM (%1)").arg(all)));
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM (%1) WHERE length(s) <> 9 OR s GLOB '*[^0-9]*' "
                                  "OR substr(s, 1, 3) IN ('000', '666')")
                       .arg(all)),
             0);
    const qint64 without = count(QStringLiteral("SELECT COUNT(*) FROM Client WHERE SocialSecurityNumber IS NULL"));
    QVERIFY2(without >= 1 && without <= 25, qPrintable(QString::number(without)));
}

void TestDemoData::householdsAreCoherent()
{
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM (SELECT f.ClientID FROM Family f JOIN Relationships r "
                                  "USING (RelationshipID) WHERE r.RelationshipDescription IN ('Spouse', 'Partner') "
                                  "GROUP BY f.ClientID HAVING COUNT(*) > 1)")),
             0);
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM Family JOIN Relationships USING (RelationshipID) "
                                 "WHERE RelationshipDescription = 'Spouse'")) > 0);
    // Children are born at least sixteen years after the head of household.
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Family f JOIN Relationships r USING (RelationshipID) "
                                  "JOIN Client c ON c.ClientID = f.ClientID "
                                  "WHERE r.RelationshipDescription IN ('Son', 'Daughter') "
                                  "AND f.BirthDate < date(c.BirthDate, '+15 years')")),
             0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Family f JOIN Relationships r USING (RelationshipID) "
                                  "WHERE (r.RelationshipDescription = 'Son' AND f.Gender <> 'M') "
                                  "OR (r.RelationshipDescription = 'Daughter' AND f.Gender <> 'F')")),
             0);
    const double sameName = scalar(QStringLiteral("SELECT AVG(f.LastName = c.LastName) FROM Family f "
                                                  "JOIN Client c USING (ClientID)")).toDouble();
    QVERIFY(sameName > 0.6);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Volunteer WHERE NumberInParty NOT BETWEEN 1 AND 4 "
                                  "OR EmergencyContact IS NULL")),
             0);
    QCOMPARE(count(QStringLiteral("SELECT COUNT(*) FROM Volunteer WHERE EMailAddress IS NOT NULL AND "
                                  "EMailAddress NOT GLOB '[a-z]*.[a-z]*@example.org'")),
             0);
}

void TestDemoData::textKeepsSpecialCharacters()
{
    const QString names = QStringLiteral("SELECT LastName FROM Client UNION ALL SELECT LastName FROM Family");
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM (%1) WHERE instr(LastName, ?) > 0").arg(names),
                  {QStringLiteral("'")}) > 0);
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM (%1) WHERE LastName IN (?, ?, ?)").arg(names),
                  {QStringLiteral("Muñoz"), QStringLiteral("Nguyễn"), QStringLiteral("Peña")}) > 0);
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM Client WHERE instr(Comments, char(10)) > 0 "
                                 "OR instr(MedicalProblems, char(10)) > 0")) > 0);
    QVERIFY(count(QStringLiteral("SELECT COUNT(*) FROM Client WHERE Address LIKE '% Apt %'")) > 0);
}

void TestDemoData::sameSeedGivesSameData()
{
    const QByteArray first = checksum(main());
    QCOMPARE(checksum(generated(QStringLiteral("again"), 1)), first);
    QVERIFY(checksum(generated(QStringLiteral("other"), 2)) != first);
}

void TestDemoData::indexesAreKept()
{
    const QStringList expected = indexes(createDatabase(QStringLiteral("plain")));
    QVERIFY(expected.size() > 30);
    QCOMPARE(indexes(main()), expected);
    QSqlQuery query(main());
    QVERIFY(query.exec(QStringLiteral("PRAGMA integrity_check")));
    QVERIFY(query.next());
    QCOMPARE(query.value(0).toString(), QStringLiteral("ok"));
}

void TestDemoData::failureRollsBack()
{
    QSqlDatabase db = createDatabase(QStringLiteral("broken"));
    QSqlQuery query(db);
    // The eleventh household fails, after zip codes, the organization and ten households are written.
    QVERIFY(query.exec(QStringLiteral("CREATE TRIGGER StopGenerating BEFORE INSERT ON Client "
                                      "WHEN (SELECT COUNT(*) FROM Client) >= 10 "
                                      "BEGIN SELECT RAISE(ABORT, 'disk is full'); END")));
    DemoData::Options options;
    options.clients = 20;
    options.today = m_today;
    QString error;
    QVERIFY(!DemoData::Generate(db, options, &error));
    QVERIFY2(error.contains(QStringLiteral("disk is full")), qPrintable(error));
    QCOMPARE(scalar(QStringLiteral("SELECT COUNT(*) FROM Client"), {}, db).toInt(), 0);
    QCOMPARE(scalar(QStringLiteral("SELECT COUNT(*) FROM ZipCode"), {}, db).toInt(), 0);
    QVERIFY(scalar(QStringLiteral("SELECT OrganizationName FROM Organization"), {}, db).isNull());
    QVERIFY(!db.rollback());   // no transaction is left open
    QCOMPARE(indexes(db), indexes(main()));
}

QTEST_GUILESS_MAIN(TestDemoData)
#include "tst_demodata.moc"
