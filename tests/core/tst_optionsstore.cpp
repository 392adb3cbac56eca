#include "OptionsStore.h"
#include "TestDatabase.h"
#include "basDatabase.h"

#include <QTest>

class TestOptionsStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Each flag is written to its own column and read back into its own member.
    void eachFlagRoundTripsThroughItsColumn_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < OptionsStore::flagColumns().size(); ++i)
            QTest::addRow("%s", OptionsStore::flagColumns().at(i).column) << i;
    }

    void eachFlagRoundTripsThroughItsColumn()
    {
        QFETCH(int, index);
        TestDatabase db;
        const OptionsStore::FlagColumn &flag = OptionsStore::flagColumns().at(index);
        DatabaseOptions options;
        options.flags.*flag.member = false;
        options.foodVisitIntervalDays = 14;
        OptionsStore::save({}, options);
        QCOMPARE(OptionsStore::readOptions(), options);
        QCOMPARE(TestDatabase::count("Options", QStringLiteral("%1 = 0").arg(QLatin1String(flag.column))), 1);
        QCOMPARE(TestDatabase::count("Options"), 1);
    }

    void missingRowsReadAsDefaultsAndAreAddedOnSave()
    {
        TestDatabase db;
        basDatabase::Execute("DELETE FROM Options");
        basDatabase::Execute("DELETE FROM Organization");
        QCOMPARE(OptionsStore::readOptions(), DatabaseOptions {});
        QCOMPARE(OptionsStore::readOrganization(), Organization {});

        const Organization organization {"St. Mary's Pantry", "1 Main St", "Austin", "TX", "78701", "5125551234", ""};
        OptionsStore::save(organization, {});
        QCOMPARE(OptionsStore::readOrganization(), organization);
        QCOMPARE(TestDatabase::count("Organization", "OrganizationLogo IS NULL AND OrganizationCity = 'Austin'"), 1);
        QCOMPARE(TestDatabase::count("Options"), 1);
    }
};

QTEST_GUILESS_MAIN(TestOptionsStore)
#include "tst_optionsstore.moc"
