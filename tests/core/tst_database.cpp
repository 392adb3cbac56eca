#include "AuditLog.h"
#include "FieldRules.h"
#include "Recordset.h"
#include "ScriptedPrompts.h"
#include "TestDatabase.h"
#include "TmError.h"
#include "Transaction.h"
#include "basDatabase.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <stdexcept>
#include <tuple>

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

class TestDatabaseServices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // What each value of a column is told: nothing when valid, else the message's end.
    void fieldIsValidDecidesByTheDeclaredColumn()
    {
        TestDatabase db;
        const QString size = QStringLiteral(" must be 11 characters."), numeric = QStringLiteral(" must be numeric."),
                      date = QStringLiteral(" is not a valid date.");
        const struct
        {
            const char *table, *column;
            QString value, message;
        } cases[] = {
            {"Client", "SocialSecurityNumber", "123456789", {}},
            {"Client", "SocialSecurityNumber", "123-45-6789", size},
            {"Client", "SocialSecurityNumber", "12345", size},
            {"Client", "SocialSecurityNumber", "12345678x", size},
            {"Client", "LastName", QString(49, 'x') + QString::fromUtf8("\xF0\x9F\x98\x80"), {}},   // one character, two UTF-16 units
            {"Client", "LastName", QString(50, 'x'), {}},
            {"Client", "LastName", QString(51, 'x'), " cannot exceed 50 characters."},
            {"Client", "LastName", "O'Brien", {}},
            {"Client", "Comments", QString(5000, 'x'), {}},   // memo: no length test
            {"Client", "EmployerDurationYears", "", numeric},
            {"Client", "EmployerDurationYears", "ten", numeric},
            {"Client", "EmployerDurationYears", "12", {}},
            {"Client", "EmployerDurationYears", "-5", " cannot be negative."},
            {"Client", "EmployerDurationYears", "1.5", " must be a whole number."},
            {"Client", "HomePhone", "555124567", " must have all ten digits, area code first."},
            {"Volunteer", "EmergencyContactPhone", "5551234567", {}},
            {"Organization", "OrganizationPhone", "5551234", {}},
            {"Organization", "OrganizationPhone", "55512345", " must have 7 or 10 digits."},
            {"Payments", "AmountPaid", "$1,234.50", {}},
            {"Payments", "AmountPaid", "1234.5", {}},
            {"Payments", "AmountPaid", "12.5.0", numeric},
            {"Payments", "AmountPaid", "(20.00)", " cannot be negative."},
            {"Payments", "AmountPaid", "0.005", " can have at most two decimals."},
            {"Payments", "AmountPaid", "9999999999999.99", {}},
            {"Payments", "AmountPaid", "10000000000000", " cannot be more than $9,999,999,999,999.99."},
            {"Client", "BirthDate", "", date},
            {"Client", "BirthDate", "02/30/2001", date},
            {"Client", "BirthDate", "12/3/", date},
            {"Client", "BirthDate", "12/31/1980", {}},
            {"Client", "BirthDate", "1/5/1980", {}},
            {"Client", "BirthDate", "12/31/1899", " must be 01/01/1900 or later."},
            {"EthnicOrigin", "EthnicOriginDescription", "   ", " cannot be empty."},
            {"Client", "FEMAContacted", "True", {}},
        };
        for (const auto &c : cases) {
            QString message;
            const bool ok = basDatabase::FieldIsValid(basDatabase::Field(c.table, c.column), c.value, message);
            QVERIFY2(ok == c.message.isEmpty(), qPrintable(QStringLiteral("%1 = %2").arg(QLatin1String(c.column), c.value)));
            QCOMPARE(message, c.message);
        }
    }

    // Text as stored: composed, no control characters, blanks trimmed on one line, breaks kept on several.
    void cleanTextKeepsWhatPeopleSee()
    {
        const QString bell(QChar(7)), nul(QChar(0));
        const struct
        {
            QString in;
            bool multiLine;
            QString out;
        } cases[] = {
            {QString::fromUtf8("  Jose\xCC\x81 "), false, QString::fromUtf8("Jos\xC3\xA9")},
            {"Ann\tMarie" + bell + nul, false, "Ann Marie"},
            {"one\r\ntwo\rthree" + bell, false, "one two three"},
            {"one\r\ntwo\rthree\t" + bell, true, "one\ntwo\nthree"},
            {QString::fromUtf8(" \xF0\x9F\x98\x80 "), true, QString::fromUtf8(" \xF0\x9F\x98\x80 ")},
        };
        for (const auto &c : cases)
            QCOMPARE(FieldRules::clean(c.in, c.multiLine), c.out);
    }

    void updateDataFieldStoresByTheColumnsType()
    {
        TestDatabase db;
        const qint64 client = TestDatabase::insert("Client", {{"LastName", "Doe"}});
        Recordset rs;
        rs.open("Payments", "PaymentID", "SELECT * FROM Payments WHERE ClientID = ?", {client});
        rs.addNew();
        QVERIFY(basDatabase::UpdateDataField(rs, "ClientID", QString::number(client)));
        QVERIFY(basDatabase::UpdateDataField(rs, "PaymentDate", "03/07/2026"));
        QVERIFY(basDatabase::UpdateDataField(rs, "AmountPaid", "$1,234.5"));
        QVERIFY(basDatabase::UpdateDataField(rs, "AmountRequested", ""));
        QVERIFY(basDatabase::UpdateDataField(rs, "Comments", "Paid the gas bill, \"final notice\""));
        rs.update();
        QCOMPARE(TestDatabase::scalar("SELECT PaymentDate FROM Payments").toString(), QStringLiteral("2026-03-07"));
        QCOMPARE(TestDatabase::scalar("SELECT AmountPaid FROM Payments").toLongLong(), 123450);
        QCOMPARE(TestDatabase::scalar("SELECT typeof(AmountRequested) FROM Payments").toString(), QStringLiteral("null"));
        QCOMPARE(basDatabase::DisplayText(rs.field("AmountPaid"), rs.value("AmountPaid")), QStringLiteral("1234.50"));
        QCOMPARE(basDatabase::DisplayText(rs.field("PaymentDate"), rs.value("PaymentDate")), QStringLiteral("03/07/2026"));

        Recordset clients;
        clients.open("Client", "ClientID", "SELECT * FROM Client");
        QVERIFY(basDatabase::UpdateDataField(clients, "FEMAContacted", "True"));
        QVERIFY(basDatabase::UpdateDataField(clients, "EmployerDurationYears", "3"));
        clients.update();
        QCOMPARE(TestDatabase::scalar("SELECT FEMAContacted FROM Client").toInt(), 1);
        QCOMPARE(TestDatabase::scalar("SELECT typeof(EmployerDurationYears) FROM Client").toString(), QStringLiteral("integer"));

        ScriptedPrompts prompts;
        QVERIFY(!basDatabase::UpdateDataField(clients, "NoSuchColumn", "x"));
        QCOMPARE(prompts.last().title, QStringLiteral("Application Error"));
        QVERIFY(prompts.last().text.contains("basDatabase.UpdateDataField"));
    }

    void lookups()
    {
        TestDatabase db;
        TestDatabase::insert("ZipCode", {{"ZipCode", "78701"}, {"City", "Austin"}, {"State", "TX"}});
        QString city = "old", state = "old";
        QVERIFY(basDatabase::GetCityStateFromZip("78701", city, state));
        QCOMPARE(city, QStringLiteral("Austin"));
        QCOMPARE(state, QStringLiteral("TX"));
        QVERIFY(basDatabase::GetCityStateFromZip("99999", city, state));
        QVERIFY(city.isEmpty() && state.isEmpty());
        QVERIFY(basDatabase::GetCityStateFromZip("' OR 1=1 --", city, state));
        QVERIFY(city.isEmpty());

        const qint64 id = TestDatabase::insert(
            "Client", {{"LastName", "O'Brien"}, {"FirstName", "Pat"}, {"MiddleInitial", "J"}, {"SocialSecurityNumber", "123456789"}});
        QStringList info;
        QVERIFY(basDatabase::GetClientInfo(QString::number(id), info));
        QCOMPARE(info, (QStringList {"O'Brien, Pat J", "123-45-6789", ""}));
    }

    void duplicateSearches()
    {
        TestDatabase db;
        const qint64 a = TestDatabase::insert("Client",
                                              {{"LastName", "O'Brien"},
                                               {"Address", "12 O'Neil St"},
                                               {"City", "Austin"},
                                               {"State", "TX"},
                                               {"SocialSecurityNumber", "123456789"}});
        const qint64 b = TestDatabase::insert(
            "Client",
            {{"LastName", "Doe"}, {"Address", "12 o'neil st"}, {"City", "AUSTIN"}, {"State", "TX"}, {"SocialSecurityNumber", "987654321"}});
        Prompt::PickRequest r;
        QVERIFY(basDatabase::MatchAddress("", "12 O'NEIL ST", "austin", "TX", r));
        QCOMPARE(TestDatabase::scalar("SELECT COUNT(*) FROM (" + r.query.sql + ")", r.query.binds).toInt(), 2);
        QVERIFY(basDatabase::MatchAddress(QString::number(a), "12 O'Neil St", "Austin", "TX", r));
        QCOMPARE(TestDatabase::scalar("SELECT ClientID FROM (" + r.query.sql + ")", r.query.binds).toLongLong(), b);
        QVERIFY(!basDatabase::MatchAddress("", "12 O'Neil St", "Austin", "tx", r));   // the state keeps its case
        QVERIFY(!basDatabase::MatchAddress("", "12 O'Neil St", "", "TX", r));
        QVERIFY(!basDatabase::MatchAddress(QString::number(b), "1 Other Rd", "Austin", "TX", r));
        // Accents, blanks and street words aside: the near matches are offered and the user decides.
        const qint64 c = TestDatabase::insert("Client", {{"Address", "12 CALLE PEÑA ST #4"}, {"City", "CAÑON CITY"}, {"State", "CO"}});
        for (const auto &[address, city, found] :
             {std::tuple {"12 Calle Peña Street Apt 4", "Cañon City", true}, std::tuple {" 12  calle pena st. apt 4 ", "canon  city", true},
              std::tuple {"12 Calle Peña Ave #4", "Cañon City", false}, std::tuple {"12 Calle Peña St #4", "Canon", false}}) {
            QCOMPARE(basDatabase::MatchAddress("", address, city, "CO", r), found);
            if (found)
                QCOMPARE(TestDatabase::scalar("SELECT ClientID FROM (" + r.query.sql + ")", r.query.binds).toLongLong(), c);
        }

        QVERIFY(basDatabase::MatchSSN("", "123456789", r));
        QCOMPARE(TestDatabase::scalar("SELECT LastName FROM (" + r.query.sql + ")", r.query.binds).toString(), QStringLiteral("O'Brien"));
        QVERIFY(!basDatabase::MatchSSN(QString::number(a), "123456789", r));
        QVERIFY(basDatabase::MatchSSN(QString::number(b), "123456789", r));
    }

    void deleteItemFromTableTakesNumbersOnly()
    {
        TestDatabase db;
        ScriptedPrompts prompts;
        const qint64 a = TestDatabase::insert("Volunteer", {{"LastName", "Ames"}});
        TestDatabase::insert("Volunteer", {{"LastName", "Bond"}});
        QVERIFY(!basDatabase::DeleteItemFromTable("Volunteer", "VolunteerID", "1 OR 1=1"));
        QCOMPARE(TestDatabase::count("Volunteer"), 2);
        QCOMPARE(prompts.messages().size(), 1);
        QVERIFY(basDatabase::DeleteItemFromTable("Volunteer", "VolunteerID", QString::number(a)));
        QCOMPARE(TestDatabase::count("Volunteer"), 1);
    }

    void transactionsEndAsTheirOwnerSays_data()
    {
        QTest::addColumn<QString>("ending");
        QTest::addColumn<int>("kept");
        QTest::newRow("committed") << "commit" << 1;
        QTest::newRow("left without commit") << "scope" << 0;
        QTest::newRow("exception") << "throw" << 0;
        QTest::newRow("rolled back") << "rollback" << 0;
    }

    void transactionsEndAsTheirOwnerSays()
    {
        QFETCH(QString, ending);
        QFETCH(int, kept);
        TestDatabase db;
        try {
            Transaction transaction(basDatabase::Connection());
            QVERIFY(transaction.active());
            {   // an inner guard leaves the outcome to the outer one
                Transaction inner(basDatabase::Connection());
                QVERIFY(!inner.active());
                TestDatabase::insert("Client", {{"LastName", "Doe"}});
            }
            if (ending == "commit")
                QVERIFY(transaction.commit());
            else if (ending == "throw")
                throw std::runtime_error("failed half way");
            else if (ending == "rollback")
                transaction.rollback();
            QCOMPARE(transaction.active(), ending == "scope");
        } catch (const std::runtime_error &) { }
        QCOMPARE(TestDatabase::count("Client"), kept);
        QVERIFY(basDatabase::Connection().transaction());   // nothing was left open
        QVERIFY(basDatabase::Connection().rollback());
    }

    // The audit log: every change to an audited table, kept whole and unchangeable.
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

QTEST_GUILESS_MAIN(TestDatabaseServices)
#include "tst_database.moc"
