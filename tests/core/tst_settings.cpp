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
};

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
