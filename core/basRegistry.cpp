#include "basRegistry.h"

#include "PrivateFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace basRegistry {
namespace {

// Native format: HKCU\Software\TendMark\Settings on Windows, ~/.config/TendMark/Settings.conf elsewhere.
// A key is a path below HKCU\Software\TendMark; "Settings" is the store's root.
QSettings store()
{
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("TendMark"), QStringLiteral("Settings"));
}

QString groupFor(const QString &key)
{
    QString k = key;
    k.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (k.compare(SettingsKey(), Qt::CaseInsensitive) == 0)
        return {};
    if (k.startsWith(SettingsKey() + QLatin1Char('/'), Qt::CaseInsensitive))
        return k.mid(SettingsKey().size() + 1);
    return QStringLiteral("Other/") + k;
}

const QString kMarker = QStringLiteral("_created");

}   // namespace

void CreateKey(const QString &key)
{
    QSettings s = store();
    s.beginGroup(groupFor(key));
    if (s.allKeys().isEmpty())
        s.setValue(kMarker, QStringLiteral("1"));
}

bool KeyExists(const QString &key)
{
    QSettings s = store();
    s.beginGroup(groupFor(key));
    return !s.allKeys().isEmpty();
}

QString GetString(const QString &key, const QString &valueName, const QString &defaultValue)
{
    QSettings s = store();
    s.beginGroup(groupFor(key));
    return s.contains(valueName) ? s.value(valueName).toString() : defaultValue;
}

void SetString(const QString &key, const QString &valueName, const QString &value)
{
    QSettings s = store();
    s.beginGroup(groupFor(key));
    s.remove(kMarker);
    s.setValue(valueName, value);
    s.sync();
    // The settings name the pantry's files: the user's alone.
    PrivateFiles::MakePrivate(QFileInfo(s.fileName()).absolutePath());
    PrivateFiles::MakePrivate(s.fileName());
}

QStringList EnumValues(const QString &key)
{
    QSettings s = store();
    s.beginGroup(groupFor(key));
    QStringList names = s.childKeys();
    names.removeAll(kMarker);
    return names;
}

void DeleteValue(const QString &key, const QString &valueName)
{
    QSettings s = store();
    s.beginGroup(groupFor(key));
    s.remove(valueName);
}

void DeleteKey(const QString &key)
{
    QSettings s = store();
    const QString group = groupFor(key);
    if (group.isEmpty())
        s.clear();
    else
        s.remove(group);
}

QString GetUserName()
{
    QString name = qEnvironmentVariable("USERNAME");
    if (name.isEmpty())
        name = qEnvironmentVariable("USER");
    if (name.isEmpty())
        name = QDir::home().dirName();
    return name;
}

}   // namespace basRegistry
