// Times the export of every client with every field, as comma-separated text
// and as a workbook, beside the sqlite3 shell's own CSV export of the same rows.
// Usage: bench_export [FILE] (default: the pantry-scale database of 50,000
// households that bench_reports uses, built when missing).
#include "BenchSupport.h"
#include "ExportFile.h"
#include "basDatabase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <sys/resource.h>

namespace {

ExportFile::Result run(ExportFile::FileType type, const QString &path)
{
    ExportFile::Request request;
    request.kind = RecordScope::Kind::Client;
    request.fields = ExportFields::all(RecordScope::Kind::Client);
    request.type = type;
    request.path = path;
    const ExportFile::Result result = ExportFile::ExportFile(request);
    if (!result.ok)
        qFatal("bench_export: %s", qPrintable(result.error));
    return result;
}

// CPU milliseconds used so far by this process, or by its finished children.
double cpuMs(int who)
{
    rusage use {};
    getrusage(who, &use);
    return (use.ru_utime.tv_sec + use.ru_stime.tv_sec) * 1e3 + (use.ru_utime.tv_usec + use.ru_stime.tv_usec) / 1e3;
}

// Wall and CPU milliseconds of one run of body, the median of three by wall time.
// On a shared machine the CPU time is the fairer figure.
std::pair<double, double> timed(int who, const std::function<void()> &body)
{
    std::vector<std::pair<double, double>> runs;
    for (int i = 0; i < 3; ++i) {
        const double cpu = cpuMs(who);
        QElapsedTimer wall;
        wall.start();
        body();
        runs.emplace_back(wall.nsecsElapsed() / 1e6, cpuMs(who) - cpu);
    }
    std::sort(runs.begin(), runs.end());
    return runs[1];
}

void print(const char *name, std::pair<double, double> times)
{
    Bench::Print(name, times.first, "ms");
    Bench::Print(qPrintable(QStringLiteral("%1_cpu").arg(QLatin1String(name))), times.second, "ms");
}

// The shell writing the same statement's rows with .mode csv.
std::pair<double, double> shell(const QString &database, const QString &sql, const QString &out)
{
    return timed(RUSAGE_CHILDREN, [&] {
        QProcess shell;
        shell.start(QStringLiteral("sqlite3"), {QStringLiteral("-readonly"), database});
        shell.write(QStringLiteral(".headers on\n.mode csv\n.once %1\n%2;\n").arg(out, sql).toUtf8());
        shell.closeWriteChannel();
        if (!shell.waitForFinished(120000) || shell.exitCode() != 0)
            qFatal("bench_export: the sqlite3 shell failed: %s", shell.readAllStandardError().constData());
    });
}

}   // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QString error;
    const QString path = Bench::OpenPantryDatabase(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());

    QTemporaryDir dir;
    const QString csv = dir.filePath(QStringLiteral("clients.csv"));
    const QString xlsx = dir.filePath(QStringLiteral("clients.xlsx"));
    qint64 rows = 0;
    print("export_clients_csv", timed(RUSAGE_SELF, [&] { rows = run(ExportFile::FileType::CommaSeparated, csv).rows; }));
    Bench::Print("export_clients_rows", double(rows), "rows");
    Bench::Print("export_clients_csv_size", QFileInfo(csv).size() / 1e6, "MB");
    print("export_clients_xlsx", timed(RUSAGE_SELF, [&] { run(ExportFile::FileType::Workbook, xlsx); }));
    Bench::Print("export_clients_xlsx_size", QFileInfo(xlsx).size() / 1e6, "MB");

    ExportFile::Request request;
    request.fields = ExportFields::all(RecordScope::Kind::Client);
    Query statement;
    if (!ExportFile::CreateSQL(request, &statement, &error))
        qFatal("bench_export: %s", qPrintable(error));
    print("export_clients_sqlite3_shell_csv", shell(path, statement.sql, dir.filePath(QStringLiteral("shell.csv"))));
    Bench::Print("export_peak_rss", Bench::PeakRssMb(), "MB");
    basDatabase::CloseConnection();
    return 0;
}
