#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>

// An export read back by Python's csv and zipfile modules, as another program
// reads it: {"rows": [...]} for text files, the cells, parts and sheet view of a workbook.
inline QJsonObject readExport(const QString &path, const QString &kind, QString *error)
{
    const QString python = QStandardPaths::findExecutable(QStringLiteral("python3"));
    if (python.isEmpty()) {
        *error = QStringLiteral("python3 is not installed");
        return {};
    }
    QProcess p;
    p.start(python, {QStringLiteral(TENDMARK_SOURCE_DIR "/tests/support/read_export.py"), path, kind});
    if (!p.waitForFinished(60000) || p.exitCode() != 0) {
        *error = QString::fromUtf8(p.readAllStandardError());
        return {};
    }
    return QJsonDocument::fromJson(p.readAllStandardOutput()).object();
}

// The rows of a text export as lists of texts.
inline QList<QStringList> exportRows(const QJsonObject &file)
{
    QList<QStringList> rows;
    for (const QJsonValue &row : file.value(QStringLiteral("rows")).toArray()) {
        QStringList fields;
        for (const QJsonValue &f : row.toArray())
            fields << f.toString();
        rows << fields;
    }
    return rows;
}
