#include "BenchSupport.h"

#include "DemoData.h"
#include "basDatabase.h"
#include "Schema.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTextStream>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace Bench {

double EnsureDemoDatabase(const QString &path, int clients, bool rebuild)
{
    DemoData::Options options;
    options.clients = clients;
    return EnsureDemoDatabase(path, options, rebuild);
}

double EnsureDemoDatabase(const QString &path, const DemoData::Options &options, bool rebuild)
{
    if (!rebuild && Schema::InspectFile(path).state == Schema::FileState::Ok)
        return -1;
    QElapsedTimer timer;
    timer.start();
    QString error;
    if (!Schema::CreateDatabase(path, true, &error))
        qFatal("benchmark database: %s", qPrintable(error));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench-demo"));
        db.setDatabaseName(path);
        if (!db.open())
            qFatal("benchmark database: cannot open %s", qPrintable(path));
        QSqlQuery(db).exec(QStringLiteral("PRAGMA foreign_keys = ON"));
        if (!DemoData::Generate(db, options, &error))
            qFatal("benchmark database: %s", qPrintable(error));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bench-demo"));
    return timer.elapsed() / 1000.0;
}

QString OpenPantryDatabase(const QString &path)
{
    const QString file = path.isEmpty() ? QStringLiteral("/tmp/tendmark-bench-pantry.tmdb") : path;
    DemoData::Options options;
    options.clients = 50000;
    options.familyMembers = 200000;
    options.foodServices = 1000000;
    options.payments = 100000;
    const double built = EnsureDemoDatabase(file, options, false);
    if (built >= 0)
        Print("pantry_demo_build", built, "s");
    QString error;
    if (!basDatabase::OpenConnection(file, &error))
        qFatal("%s: %s", qPrintable(file), qPrintable(error));
    return file;
}

double MedianMs(int runs, const std::function<void()> &body)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        body();
        times.push_back(t.nsecsElapsed() / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

void Print(const char *name, double value, const char *unit)
{
    std::printf("%s %.3f %s\n", name, value, unit);
    std::fflush(stdout);
}

namespace {
double statusMb(const QByteArray &field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith(field))
            return line.mid(field.size()).trimmed().split(' ').first().toDouble() / 1024.0;
    return -1;
}
}   // namespace

double PeakRssMb()
{
    return statusMb("VmHWM:");
}

double RssMb()
{
    return statusMb("VmRSS:");
}

QList<ShellTime> ShellTimes(const QString &path, const QString &script, const QString &setup)
{
    QProcess shell;
    shell.start(QStringLiteral("sqlite3"), {QStringLiteral("-readonly"), path});
    shell.write((setup + QStringLiteral(".output /dev/null\n.timer on\n") + script).toUtf8());
    shell.closeWriteChannel();
    if (!shell.waitForFinished(600000) || shell.exitCode() != 0)
        qFatal("the sqlite3 shell failed: %s", shell.readAllStandardError().constData());
    QList<ShellTime> times;
    const QRegularExpression timer(QStringLiteral("Run Time: real ([0-9.]+) user ([0-9.]+) sys ([0-9.]+)"));
    for (const QRegularExpressionMatch &m : timer.globalMatch(QString::fromUtf8(shell.readAllStandardOutput())))
        times.append({m.captured(1).toDouble() * 1000, (m.captured(2).toDouble() + m.captured(3).toDouble()) * 1000});
    return times;
}

double ShellMs(const QString &path, const QString &sql)
{
    // Five runs, the best kept: the shell's page cache is as warm as the program's.
    double best = -1;
    for (const ShellTime &t : ShellTimes(path, QStringLiteral("SELECT COUNT(*) FROM (%1);\n").arg(sql).repeated(5)))
        best = best < 0 ? t.wallMs : qMin(best, t.wallMs);
    return best;
}

}   // namespace Bench
