#include "Money.h"
#include "SqlText.h"
#include "TestDatabase.h"
#include "basTendmark.h"

#include <QTest>

using namespace basTendmark;

class TestFormats : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void phonesAndSocialSecurityNumbers()
    {
        QCOMPARE(StripPhoneNumber("(555) 123-4567"), QStringLiteral("5551234567"));
        QCOMPARE(FormatPhone("5551234567"), QStringLiteral("(555) 123-4567"));
        QCOMPARE(FormatPhone("1234567"), QStringLiteral("(   ) 123-4567"));
        QCOMPARE(FormatPhone("12345678"), QStringLiteral("12345678"));
        QCOMPARE(FormatSSN("123456789"), QStringLiteral("123-45-6789"));
        QCOMPARE(FormatSSN("1234"), QStringLiteral("1234"));
    }

    void dates()
    {
        QCOMPARE(ParseDate("1/5/2026"), QDate(2026, 1, 5));
        QCOMPARE(ParseDate("2026-01-05"), QDate(2026, 1, 5));
        QVERIFY(!ParseDate("13/01/2026").isValid());
        QVERIFY(!ParseDate("01/05/26").isValid());
        QCOMPARE(FormatIsoDate("2026-01-05"), QStringLiteral("01/05/2026"));
        QCOMPARE(FormatIsoDate(""), QString());
    }

    void money()
    {
        // Read as cents, half to even at the cent, or refused.
        const std::pair<const char *, std::optional<qint64>> read[]
            = {{"$1,234.50", 123450}, {"1234.5", 123450}, {".5", 50},     {"(12.00)", -1200}, {"0.125", 12},
               {"0.135", 14},         {"0.1251", 13},     {"12.5.0", {}}, {"1,23", {}},       {"", {}}};
        for (const auto &[text, cents] : read)
            QVERIFY2(Money::parse(text) == cents, text);
        const std::pair<qint64, const char *> shown[] = {{123450, "$1,234.50"}, {5, "$0.05"}, {-120000000, "($1,200,000.00)"}};
        for (const auto &[cents, text] : shown)
            QCOMPARE(Money::format(cents), QString::fromLatin1(text));
        QCOMPARE(Money::plain(-5), QStringLiteral("-0.05"));
        const std::pair<qint64, int> units[] = {{40, 0}, {50, 0}, {60, 1}, {150, 2}, {250, 2}};   // half to even
        for (const auto &[cents, whole] : units)
            QCOMPARE(Money::wholeUnitsHalfEven(cents), whole);
    }

    void sqlExpressionsMatchTheProgramsFormats()
    {
        TestDatabase db;
        auto eval = [](const QString &expression, const QVariant &v) {
            return TestDatabase::scalar("SELECT " + expression + " FROM (SELECT ? AS v)", {v}).toString();
        };
        for (const QString &p : {QStringLiteral("5551234567"), QStringLiteral("1234567"), QStringLiteral("12345678")})
            QCOMPARE(eval(SqlText::phone("v"), p), FormatPhone(p));
        QCOMPARE(eval(SqlText::ssn("v"), "123456789"), FormatSSN("123456789"));
        for (qint64 c : {0LL, 5LL, 123450LL, 100000000LL, -1200LL})
            QCOMPARE(eval(SqlText::currency("v"), c), Money::format(c));
        QCOMPARE(eval(SqlText::date("v"), "2026-01-05"), QStringLiteral("01/05/2026"));
        const int year = QDate::currentDate().year();
        QCOMPARE(eval(SqlText::yearsSince("v"), QString("%1-12-31").arg(year - 1)).toInt(), 1);   // calendar years, not birthdays
        QVERIFY(eval(SqlText::yearsSince("v"), QVariant()).isEmpty());
        const auto fullName = [](const char *row) {
            return TestDatabase::scalar("SELECT " + SqlText::fullName() + " FROM (SELECT " + row + ")").toString();
        };
        QCOMPARE(fullName("'Doe' AS LastName, 'Jane' AS FirstName, NULL AS MiddleInitial"), QStringLiteral("Doe, Jane "));
        QCOMPARE(fullName("NULL AS LastName, 'Jane' AS FirstName, 'Q' AS MiddleInitial"), QStringLiteral("Jane Q"));
        QCOMPARE(TestDatabase::count("Client", "LastName LIKE ? ESCAPE '\\'", {SqlText::likeContains("100%")}), 0);
        TestDatabase::insert("Client", {{"LastName", "100% Smith"}});
        TestDatabase::insert("Client", {{"LastName", "1000 Smith"}});
        QCOMPARE(TestDatabase::count("Client", "LastName LIKE ? ESCAPE '\\'", {SqlText::likeContains("100%")}), 1);
    }
};

QTEST_GUILESS_MAIN(TestFormats)
#include "tst_formats.moc"
