#include "AuditLog.h"
#include "TestDatabase.h"
#include "TmError.h"
#include "basDatabase.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

namespace {

QList<AuditLog::Entry> entries(const AuditLog::Filter &filter = {})
{
    QList<AuditLog::Entry> list;
    QString error;
    if (!AuditLog::Read(basDatabase::Connection(), filter, &list, &error))
        qFatal("%s", qPrintable(error));
    return list;
}

QVariantMap json(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8()).object().toVariantMap();
}

}   // namespace

class TestAuditLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyAuditedTableRecordsItsChanges()
    {
        TestDatabase db;
        const qint64 client = TestDatabase::insert("Client", {{"LastName", "Ames"}, {"FirstName", "Ann"}});
        // One row of each kind of record, then an update and a delete of each.
        const QList<std::pair<QString, QVariantMap>> rows = {
            {"Family", {{"ClientID", client}, {"LastName", "Ames"}}},
            {"FoodService", {{"ClientID", client}, {"FoodServiceDate", "2026-11-20"}}},
            {"Payments", {{"ClientID", client}, {"AmountRequested", 1250}}},
            {"Income", {{"ClientID", client}, {"Amount", 50000}}},
            {"Expenses", {{"ClientID", client}, {"Amount", 20000}}},
            {"Volunteer", {{"LastName", "Vale"}}},
            {"Housing", {{"HousingDescription", "Tent"}}},
        };
        for (const auto &[table, values] : rows) {
            const qint64 key = TestDatabase::insert(table, values);
            const QString keyColumn = basDatabase::Fields(table).constFirst().name;
            basDatabase::Execute(QStringLiteral("UPDATE %1 SET %2 = %2 WHERE %2 = ?").arg(table, keyColumn),
                                 {key});   // no change: no entry
            const QList<AuditLog::Entry> all = entries({0, {}, {}, table, {}});
            QCOMPARE(all.size(), 1);
            QCOMPARE(all.at(0).operation, QStringLiteral("insert"));
            QCOMPARE(all.at(0).key, key);
            QCOMPARE(all.at(0).user, AuditLog::OperatingSystemUser());
            for (auto it = values.constBegin(); it != values.constEnd(); ++it)
                QCOMPARE(json(all.at(0).newValues).value(it.key()).toString(), it.value().toString());
        }
        QCOMPARE(entries({client, {}, {}, {}, {}}).size(), 6);   // the client and its five kinds of rows

        // Deleting the client takes its rows with it, each delete logged; another client's rows stay.
        const qint64 other = TestDatabase::insert("Client", {{"LastName", "Roe"}});
        for (auto [table, values] : rows)
            if (values.contains("ClientID")) {
                values["ClientID"] = other;
                TestDatabase::insert(table, values);
            }
        QVERIFY(basDatabase::DeleteItemFromTable("Client", "ClientID", QString::number(client)));
        for (const auto &[table, values] : rows)
            if (values.contains("ClientID")) {
                QCOMPARE(TestDatabase::count(table, "ClientID = ?", {client}), 0);
                QCOMPARE(TestDatabase::count(table, "ClientID = ?", {other}), 1);
                QCOMPARE(entries({client, {}, {}, table, {}}).constLast().operation, QStringLiteral("delete"));
            }
    }

    void updatesKeepOnlyTheChangedColumnsAndDeletesKeepTheRecord()
    {
        TestDatabase db;
        const qint64 client = TestDatabase::insert("Client", {{"LastName", "Ames"}, {"FirstName", "Ann"}, {"City", "Dayton"}});
        TestDatabase::insert("Family", {{"ClientID", client}, {"LastName", "Ames"}, {"FirstName", "Bo"}});
        basDatabase::Execute(QStringLiteral("UPDATE Client SET FirstName = 'Anne', City = 'Dayton' WHERE ClientID = ?"), {client});
        basDatabase::Execute(QStringLiteral("DELETE FROM Client WHERE ClientID = ?"), {client});
        const QList<AuditLog::Entry> log = entries({client, {}, {}, {}, {}});
        QStringList kinds;
        for (const AuditLog::Entry &e : log)
            kinds << e.table + QLatin1Char(' ') + e.operation;
        QCOMPARE(kinds, (QStringList {"Client insert", "Family insert", "Client update", "Family delete", "Client delete"}));
        QCOMPARE(json(log.at(2).oldValues), (QVariantMap {{"FirstName", "Ann"}}));
        QCOMPARE(json(log.at(2).newValues), (QVariantMap {{"FirstName", "Anne"}}));
        QCOMPARE(json(log.at(4).oldValues).value("LastName").toString(), QStringLiteral("Ames"));   // the deleted record can be read
        QCOMPARE(json(log.at(3).oldValues).value("FirstName").toString(), QStringLiteral("Bo"));
        QVERIFY(AuditLog::Describe(log.at(2)).contains(QStringLiteral("update Client %1").arg(client)));

        QCOMPARE(entries({client, QDate::currentDate().addDays(1), {}, {}, {}}).size(), 0);
        QCOMPARE(entries({client, QDate::currentDate(), {}, {}, AuditLog::OperatingSystemUser()}).size(), 5);

        // The log itself cannot be changed.
        for (const char *sql : {"UPDATE AuditLog SET UserName = 'someone'", "DELETE FROM AuditLog"})
            QVERIFY_THROWS_EXCEPTION(TmError, basDatabase::Execute(QLatin1String(sql)));
        QCOMPARE(entries({client, {}, {}, {}, {}}).size(), 5);
    }
};

QTEST_GUILESS_MAIN(TestAuditLog)
#include "tst_auditlog.moc"
