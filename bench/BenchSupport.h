#pragma once

#include "DemoData.h"

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
// Milliseconds of the median of runs of body.
double MedianMs(int runs, const std::function<void()> &body);
void Print(const char *name, double value, const char *unit);
double PeakRssMb();

}   // namespace Bench
