#pragma once

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

// The sample Access database of the old program and the description of its contents beside it.
namespace AccessSample {

inline QString path()
{
    return QDir(QStringLiteral(TENDMARK_SOURCE_DIR "/../shared/fixtures")).absoluteFilePath(QStringLiteral("sample-jet4.mdb"));
}

inline QJsonObject description()
{
    QFile f(QString(path()).replace(QStringLiteral(".mdb"), QStringLiteral(".json")));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(f.readAll()).object();
}

}   // namespace AccessSample
