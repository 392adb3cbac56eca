#pragma once

#include <QString>
#include <QStringList>

// Per-user settings in the platform's native store (on Windows the registry,
// under HKEY_CURRENT_USER\Software\TendMark). Keys are paths below that root,
// such as "Settings".
namespace basRegistry {

void CreateKey(const QString &key);
QString GetString(const QString &key, const QString &valueName, const QString &defaultValue = {});
void SetString(const QString &key, const QString &valueName, const QString &value);
QStringList EnumValues(const QString &key);
void DeleteValue(const QString &key, const QString &valueName);
void DeleteKey(const QString &key);
bool KeyExists(const QString &key);
QString GetUserName();

// The key under which TendMark keeps its settings.
inline QString SettingsKey()
{
    return QStringLiteral("Settings");
}

}   // namespace basRegistry
