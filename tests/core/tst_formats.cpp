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
        QCOMPARE(Money::parse("$1,234.50"), std::optional<qint64>(123450));
        QCOMPARE(Money::parse("1234.5"), std::optional<qint64>(123450));
        QCOMPARE(Money::parse(".5"), std::optional<qint64>(50));
        QCOMPARE(Money::parse("(12.00)"), std::optional<qint64>(-1200));
        QCOMPARE(Money::parse("0.125"), std::optional<qint64>(12));   // half to even at the cent
        QCOMPARE(Money::parse("0.135"), std::optional<qint64>(14));
        QCOMPARE(Money::parse("0.1251"), std::optional<qint64>(13));
        QVERIFY(!Money::parse("12.5.0"));
        QVERIFY(!Money::parse("1,23"));
        QVERIFY(!Money::parse(""));
        QCOMPARE(Money::format(123450), QStringLiteral("$1,234.50"));
        QCOMPARE(Money::format(5), QStringLiteral("$0.05"));
        QCOMPARE(Money::format(-120000000), QStringLiteral("($1,200,000.00)"));
        QCOMPARE(Money::plain(-5), QStringLiteral("-0.05"));
        QCOMPARE(Money::wholeUnitsHalfEven(40), 0);
        QCOMPARE(Money::wholeUnitsHalfEven(50), 0);
        QCOMPARE(Money::wholeUnitsHalfEven(60), 1);
        QCOMPARE(Money::wholeUnitsHalfEven(150), 2);
        QCOMPARE(Money::wholeUnitsHalfEven(250), 2);
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
