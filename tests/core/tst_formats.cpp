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
    void dates()
    {
        QCOMPARE(ParseDate("1/5/2026"), QDate(2026, 1, 5));
        QCOMPARE(ParseDate("2026-01-05"), QDate(2026, 1, 5));
        QVERIFY(!ParseDate("13/01/2026").isValid());
        QVERIFY(!ParseDate("01/05/26").isValid());
        QCOMPARE(StripPhoneNumber("(555) 123-4567"), QStringLiteral("5551234567"));
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
        // Each stored value shown alike by the program and its SQL; what fits no form is shown as stored.
        const std::pair<QString, QString> phones[]
            = {{"5551234567", "(555) 123-4567"}, {"1234567", "(   ) 123-4567"}, {"12345678", "12345678"}},
            ssns[] = {{"123456789", "123-45-6789"}, {"1234", "1234"}};
        for (const auto &[stored, shown] : phones)
            QVERIFY2(FormatPhone(stored) == shown && eval(SqlText::phone("v"), stored) == shown, qPrintable(stored));
        for (const auto &[stored, shown] : ssns)
            QVERIFY2(FormatSSN(stored) == shown && eval(SqlText::ssn("v"), stored) == shown, qPrintable(stored));
        QVERIFY(FormatIsoDate("2026-01-05") == "01/05/2026" && eval(SqlText::date("v"), "2026-01-05") == "01/05/2026");
        QCOMPARE(FormatIsoDate(""), QString());
        for (qint64 c : {0LL, 5LL, 123450LL, 100000000LL, -1200LL})
            QCOMPARE(eval(SqlText::currency("v"), c), Money::format(c));
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
