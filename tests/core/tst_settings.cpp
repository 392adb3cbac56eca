#include "OptionsStore.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "basRegistry.h"

#include <QTest>

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Values are kept per key: a missing one reads as its default, deleting one leaves the others.
    void registryKeepsValuesByKey()
    {
        const QString key = basRegistry::SettingsKey();
        basRegistry::DeleteKey(key);
        QVERIFY(!basRegistry::KeyExists(key));
        QCOMPARE(basRegistry::GetString(key, "LastOpened", "none"), QStringLiteral("none"));
        basRegistry::SetString(key, "LastOpened", "/data/pantry.tmdb");
        basRegistry::SetString(key, "frmClientGrid", "10,20,800,600");
        basRegistry::SetString("Settings\\Windows", "x", "1");
        basRegistry::DeleteValue(key, "frmClientGrid");
        QCOMPARE(basRegistry::EnumValues(key), QStringList {"LastOpened"});
        QCOMPARE(basRegistry::GetString(key, "LastOpened"), QStringLiteral("/data/pantry.tmdb"));
        basRegistry::DeleteKey("Settings\\Windows");
        QCOMPARE(basRegistry::GetString("Settings\\Windows", "x", "gone"), QStringLiteral("gone"));
        QCOMPARE(basRegistry::GetString(key, "LastOpened"), QStringLiteral("/data/pantry.tmdb"));
    }

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

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
