#include "OptionsStore.h"
#include "TestDatabase.h"
#include "basDatabase.h"
#include "basRegistry.h"

#include <QTest>

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registryWrapper()
    {
        basRegistry::DeleteKey(basRegistry::SettingsKey());
        QVERIFY(!basRegistry::KeyExists(basRegistry::SettingsKey()));
        QCOMPARE(basRegistry::GetString(basRegistry::SettingsKey(), "LastOpened", "none"), QStringLiteral("none"));
        basRegistry::CreateKey(basRegistry::SettingsKey());
        QVERIFY(basRegistry::KeyExists(basRegistry::SettingsKey()));
        QVERIFY(basRegistry::EnumValues(basRegistry::SettingsKey()).isEmpty());
        basRegistry::SetString(basRegistry::SettingsKey(), "LastOpened", "/data/pantry.tmdb");
        basRegistry::SetString(basRegistry::SettingsKey(), "frmClientGrid", "10,20,800,600");
        QCOMPARE(basRegistry::GetString(basRegistry::SettingsKey(), "LastOpened"), QStringLiteral("/data/pantry.tmdb"));
        QCOMPARE(basRegistry::EnumValues(basRegistry::SettingsKey()).size(), 2);
        basRegistry::DeleteValue(basRegistry::SettingsKey(), "frmClientGrid");
        QCOMPARE(basRegistry::EnumValues(basRegistry::SettingsKey()), QStringList {"LastOpened"});
        basRegistry::SetString("Settings\\Windows", "x", "1");
        QCOMPARE(basRegistry::GetString("Settings\\Windows", "x"), QStringLiteral("1"));
        basRegistry::DeleteKey("Settings\\Windows");
        QCOMPARE(basRegistry::GetString("Settings\\Windows", "x", "gone"), QStringLiteral("gone"));
        QVERIFY(!basRegistry::GetUserName().isEmpty());
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
