#include "SingleInstance.h"
#include "basRegistry.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

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

    void secondCopyHandsOverAndIsRefused()
    {
        const QString name = QStringLiteral("tendmark-test-%1").arg(QCoreApplication::applicationPid());
        SingleInstance first(name);
        QVERIFY(!first.anotherIsRunning({}));
        QVERIFY(first.listen());
        QSignalSpy activated(&first, &SingleInstance::activated);
        SingleInstance second(name);
        bool running = false;
        // The second copy waits for the first to answer, so let the first run meanwhile.
        QTimer::singleShot(0, [&] { running = second.anotherIsRunning({"pantry.tmdb"}); });
        QTRY_COMPARE(activated.count(), 1);
        QTRY_VERIFY(running);
        QCOMPARE(activated.first().first().toStringList(), QStringList {"pantry.tmdb"});
    }
};

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
