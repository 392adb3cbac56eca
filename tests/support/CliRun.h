#pragma once

#include <QProcess>
#include <QStringList>

// Runs tendmark-cli (TENDMARK_CLI, set by the test's build) and keeps what it said.
struct CliRun
{
    int exitCode = -1;   // -1: it crashed or did not finish within two minutes
    QString out;
    QString err;
};

inline CliRun cli(const QStringList &arguments)
{
    QProcess p;
    p.start(QStringLiteral(TENDMARK_CLI), arguments);
    CliRun r;
    if (!p.waitForFinished(120000))
        return r;
    r.exitCode = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
}
