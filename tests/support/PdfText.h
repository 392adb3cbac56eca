#pragma once

#include <QProcess>
#include <QString>

// What pdftotext reads from a PDF file: "-raw" in reading order, "-layout" as laid out, "-bbox" each word with its box.
inline QString pdfText(const QString &path, const char *mode = "-raw")
{
    QProcess p;
    p.start(QStringLiteral("pdftotext"), {QString::fromLatin1(mode), path, QStringLiteral("-")});
    if (!p.waitForFinished(60000) || p.exitCode() != 0)
        return {};
    return QString::fromUtf8(p.readAllStandardOutput());
}
