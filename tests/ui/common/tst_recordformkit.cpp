#include "AmountBox.h"
#include "BoundFields.h"
#include "NavigationStrip.h"
#include "Recordset.h"
#include "TestDatabase.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class TestRecordFormKit : public QObject
{
    Q_OBJECT

private:
    // The enabled navigation buttons as "FPNL", a blank for each disabled one.
    static QString enabledButtons(const QWidget &window)
    {
        QString s;
        for (const char *name : {"cmdFirst", "cmdPrevious", "cmdNext", "cmdLast"})
            s += window.findChild<QPushButton *>(QString::fromLatin1(name))->isEnabled() ? QChar::fromLatin1(name[3]) : QLatin1Char(' ');
        return s;
    }

private Q_SLOTS:
    void stripShowsThePosition_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("buttons");
        QTest::newRow("first of three") << 1 << 3 << QStringLiteral("Record: 1 of 3     ID: 42") << QStringLiteral("  NL");
        QTest::newRow("middle") << 2 << 3 << QStringLiteral("Record: 2 of 3     ID: 42") << QStringLiteral("FPNL");
        QTest::newRow("last") << 3 << 3 << QStringLiteral("Record: 3 of 3     ID: 42") << QStringLiteral("FP  ");
        QTest::newRow("the only one") << 1 << 1 << QStringLiteral("Record: 1 of 1     ID: 42") << QStringLiteral("    ");
        QTest::newRow("none") << 0 << 0 << QStringLiteral("Record: 0 of 0") << QStringLiteral("    ");
        // A new record keeps the text and buttons shown before it.
        QTest::newRow("new beside others") << 0 << 3 << QStringLiteral("Record: 1 of 3     ID: 7") << QStringLiteral("  NL");
        QTest::newRow("new, none saved") << -1 << 0 << QStringLiteral("Record: 0 of 0") << QStringLiteral("    ");
        QTest::newRow("adding beside others") << -1 << 3 << QStringLiteral("Record: 1 of 3     ID: 7") << QStringLiteral("FPNL");
    }

    void stripShowsThePosition()
    {
        QFETCH(int, position);
        QFETCH(int, count);
        QFETCH(QString, label);
        QFETCH(QString, buttons);
        QWidget window;
        NavigationStrip strip(&window, false);
        strip.showPosition(1, 3, QStringLiteral("7"));
        strip.showPosition(position, count, QStringLiteral("42"));
        QCOMPARE(window.findChild<QLabel *>(QStringLiteral("lblStatus"))->text(), label);
        QCOMPARE(enabledButtons(window), buttons);
        QVERIFY(!window.findChild<QPushButton *>(QStringLiteral("cmdAdd")));
    }

    void stepStopsAtTheEnds()
    {
        TestDatabase db;
        for (const char *name : {"Ann", "Bob", "Cy"})
            TestDatabase::insert("Relationships", {{"RelationshipDescription", QString::fromLatin1(name)}});
        Recordset rs;
        rs.open("Relationships", "RelationshipID", "SELECT * FROM Relationships ORDER BY RelationshipID");
        const int count = rs.recordCount();
        QVERIFY(count >= 3);
        using M = NavigationStrip::Move;
        const struct
        {
            M move;
            int position;
        } steps[] = {{M::Previous, 1}, {M::Next, 2}, {M::Last, count}, {M::Next, count}, {M::Previous, count - 1}, {M::First, 1}};
        for (const auto &s : steps) {
            NavigationStrip::step(rs, s.move);
            QCOMPARE(rs.absolutePosition(), s.position);
        }
    }

    void amountBoxTakesMoneyOnly_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("value");
        QTest::newRow("whole") << QStringLiteral("1234") << QStringLiteral("$1,234.00") << QStringLiteral("1234.00");
        QTest::newRow("one point only") << QStringLiteral("12.5.7") << QStringLiteral("$12.57") << QStringLiteral("12.57");
        QTest::newRow("letters and signs dropped") << QStringLiteral("a1-b2,c") << QStringLiteral("$12.00") << QStringLiteral("12.00");
        QTest::newRow("empty") << QString() << QString() << QString();
    }

    void amountBoxTakesMoneyOnly()
    {
        QFETCH(QString, typed);
        QFETCH(QString, shown);
        QFETCH(QString, value);
        QWidget window;
        auto *box = new AmountBox(&window);
        auto *other = new QLineEdit(&window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QSignalSpy changes(box, &QLineEdit::textChanged);
        box->setFocus();
        QTest::keyClicks(box, typed);
        const auto edits = changes.size();
        QCOMPARE(box->value(), value);
        box->showFormatted();
        other->setFocus();
        QCOMPARE(box->text(), shown);
        QCOMPARE(changes.size(), edits);   // reformatting is no edit
        box->setFocus();   // back in the box, the dollar sign goes
        QVERIFY(!box->text().contains(QLatin1Char('$')));
        QCOMPARE(box->value(), value);
    }

    void boundFieldsTellEditsAndLeaving()
    {
        QWidget window;
        auto *first = new QLineEdit(&window);
        first->setProperty("DataField", QStringLiteral("LastName"));
        auto *second = new QLineEdit(&window);
        auto *label = new QLabel(QStringLiteral("Last Name:"), &window);
        BoundFields fields(&window);
        fields.add(first, label);
        QStringList left;
        fields.setLeaveCheck([&](QWidget *c) { left << c->property("DataField").toString(); });
        QSignalSpy edits(&fields, &BoundFields::edited);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        fields.setLoading(true);
        first->setText(QStringLiteral("filled by the program"));
        fields.setLoading(false);
        QCOMPARE(edits.size(), 0);
        first->setFocus();
        QTest::keyClicks(first, QStringLiteral("Doe"));
        QCOMPARE(edits.size(), 3);
        second->setFocus();
        QCOMPARE(left, QStringList {QStringLiteral("LastName")});
        QCOMPARE(fields.caption(first), QStringLiteral("Last Name"));
        QCOMPARE(fields.control(QStringLiteral("lastname")), first);
    }
};

QTEST_MAIN(TestRecordFormKit)
#include "tst_recordformkit.moc"
