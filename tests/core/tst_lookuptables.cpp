#include "LookupTables.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QTest>

class TestLookupTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Every foreign key to a lookup table is listed, and nothing else is: a missing one
    // would let the lookup editor delete an item that records still refer to.
    void referencesMatchTheForeignKeys()
    {
        TestDatabase db;
        QSet<QString> keys;
        QSqlQuery tables = basDatabase::Execute(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"));
        while (tables.next()) {
            QSqlQuery fk
                = basDatabase::Execute(QStringLiteral("SELECT \"table\", \"from\" FROM pragma_foreign_key_list(?)"), {tables.value(0)});
            while (fk.next())
                if (LookupTables::byName(fk.value(0).toString()))
                    keys << tables.value(0).toString() + u'.' + fk.value(1).toString() + u'>' + fk.value(0).toString();
        }
        QSet<QString> listed;
        for (const LookupTables::LookupTable &t : LookupTables::all())
            for (const LookupTables::Reference &r : t.references)
                listed << QLatin1String(r.table) + u'.' + QLatin1String(r.column) + u'>' + t.name();
        QCOMPARE(listed, keys);
    }

    void anItemIsInUseOnceAnyReferringColumnHoldsIt_data()
    {
        QTest::addColumn<QString>("lookup");
        QTest::addColumn<QString>("table");
        QTest::addColumn<QString>("column");
        for (const LookupTables::LookupTable &t : LookupTables::all())
            for (const LookupTables::Reference &r : t.references)
                QTest::addRow("%s.%s", r.table, r.column) << t.name() << QString::fromLatin1(r.table) << QString::fromLatin1(r.column);
    }

    void anItemIsInUseOnceAnyReferringColumnHoldsIt()
    {
        QFETCH(QString, lookup);
        QFETCH(QString, table);
        QFETCH(QString, column);
        TestDatabase db;
        const LookupTables::LookupTable &t = *LookupTables::byName(lookup);
        const qint64 item = TestDatabase::insert(lookup, {{QLatin1String(t.descriptionColumn), QStringLiteral("Unused so far")}});
        QVERIFY(!LookupTables::inUse(t, item));
        QVariantMap row {{column, item}};
        if (table != QLatin1String("Client"))
            row.insert(QStringLiteral("ClientID"), TestDatabase::insert(QStringLiteral("Client"), {{"LastName", "Doe"}}));
        TestDatabase::insert(table, row);
        QVERIFY(LookupTables::inUse(t, item));
        QVERIFY(!LookupTables::inUse(t, item + 1));
    }
};

QTEST_GUILESS_MAIN(TestLookupTables)
#include "tst_lookuptables.moc"
