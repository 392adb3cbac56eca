#pragma once

#include "DemoData.h"

#include <QList>
#include <QString>
#include <functional>

// Shared pieces of the benchmark programs.
namespace Bench {

inline const QString kDefaultDatabase = QStringLiteral("/tmp/tendmark-bench-100k.tmdb");

// The 100,000-household demo database, built when missing (or always with rebuild).
// Returns the seconds the build took, or -1 when it was already there.
double EnsureDemoDatabase(const QString &path, int clients, bool rebuild);
// The same with every option of the generator.
double EnsureDemoDatabase(const QString &path, const DemoData::Options &options, bool rebuild);
// The pantry-scale demo (50,000 households, 200,000 family members, 1,000,000
// food services, 100,000 payments) at path (a default in /tmp when empty),
// built when missing, opened as the shared connection; returns its path.
QString OpenPantryDatabase(const QString &path);
// Milliseconds of the median of runs of body.
double MedianMs(int runs, const std::function<void()> &body);
void Print(const char *name, double value, const char *unit);
double PeakRssMb();
double RssMb();   // the memory in use now
// What the sqlite3 shell's timer says of each statement of a script, run read-only on the file with its
// output thrown away (setup runs first, untimed); stops the program when the shell fails.
struct ShellTime
{
    double wallMs = 0;
    double cpuMs = 0;   // user and system
};
QList<ShellTime> ShellTimes(const QString &path, const QString &script, const QString &setup = {});
// The sqlite3 shell's own time for counting the statement's rows (the best of five).
double ShellMs(const QString &path, const QString &sql);

}   // namespace Bench
