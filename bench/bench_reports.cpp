// Times the statistical reports' figures for one year beside the sqlite3 shell running
// the same statements, and the client list of every household from query to PDF.
// Usage: bench_reports [FILE] (default: a pantry-scale database of 50,000 households,
// about 200,000 family members, 1,000,000 food services and 100,000 payments, built when missing).
#include "BenchSupport.h"
#include "ReportDocument.h"
#include "ReportRenderer.h"
#include "ReportSummaries.h"
#include "basDatabase.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <ctime>

namespace {

// The statement with its values written in, for the shell.
QString inlined(const Query &query)
{
    QString sql;
    qsizetype next = 0;
    for (const QChar c : query.sql) {
        if (c != u'?') {
            sql += c;
            continue;
        }
        const QVariant v = query.binds.at(next++);
        sql += v.typeId() == QMetaType::Int ? v.toString() : QLatin1Char('\'') + v.toString().replace(u'\'', QStringLiteral("''")) + u'\'';
    }
    return sql;
}

struct Times
{
    double wallMs = 0;
    double cpuMs = 0;   // user and system: what the work costs on a machine others share
};

// What the sqlite3 shell takes for the statements, by its own timer (medians of five runs).
Times shellTimes(const QString &path, const QList<Query> &queries)
{
    QString script;
    for (const Query &q : queries)
        script += inlined(q) + QStringLiteral(";\n");
    std::vector<double> wall, cpu;
    for (int i = 0; i < 5; ++i) {
        double w = 0, c = 0;
        for (const Bench::ShellTime &t : Bench::ShellTimes(path, script)) {
            w += t.wallMs;
            c += t.cpuMs;
        }
        wall.push_back(w);
        cpu.push_back(c);
    }
    std::sort(wall.begin(), wall.end());
    std::sort(cpu.begin(), cpu.end());
    return {wall[2], cpu[2]};
}

Times ourTimes(const std::function<void()> &body)
{
    std::vector<double> wall, cpu;
    for (int i = 0; i < 5; ++i) {
        const std::clock_t c = std::clock();
        wall.push_back(Bench::MedianMs(1, body));
        cpu.push_back(double(std::clock() - c) * 1000.0 / CLOCKS_PER_SEC);
    }
    std::sort(wall.begin(), wall.end());
    std::sort(cpu.begin(), cpu.end());
    return {wall[2], cpu[2]};
}

void compare(const QString &name, const QString &path, const QList<Query> &queries, const std::function<void()> &figures)
{
    const Times ours = ourTimes(figures);
    const Times shell = shellTimes(path, queries);
    Bench::Print(qPrintable(name + QStringLiteral("_figures")), ours.wallMs, "ms");
    Bench::Print(qPrintable(name + QStringLiteral("_sqlite3_shell")), shell.wallMs, "ms");
    Bench::Print(qPrintable(name + QStringLiteral("_ratio")), ours.wallMs / shell.wallMs, "x");
    Bench::Print(qPrintable(name + QStringLiteral("_figures_cpu")), ours.cpuMs, "ms");
    Bench::Print(qPrintable(name + QStringLiteral("_sqlite3_shell_cpu")), shell.cpuMs, "ms");
    Bench::Print(qPrintable(name + QStringLiteral("_ratio_cpu")), ours.cpuMs / shell.cpuMs, "x");
}

}   // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QString error;
    const QString path = Bench::OpenPantryDatabase(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());

    // The last twelve months.
    const QDate today = QDate::currentDate();
    const QDate start = today.addYears(-1).addDays(1);
    using namespace ReportSummaries;
    compare(QStringLiteral("geographic_summary"), path, {geographicQuery(start, today)}, [&] { geographic(start, today); });
    compare(QStringLiteral("demographics"), path, {demographicsQuery(start, today, today)}, [&] { demographics(start, today, today); });
    compare(QStringLiteral("grocery_log"), path, {groceryTotalsQuery(start, today, today)}, [&] { groceryTotals(start, today, today); });

    // The client list of every household, as pages, first: the peak memory is its own.
    Report::Parameters list;
    list.name = Report::Name::ClientList;
    QElapsedTimer timer;
    timer.start();
    const Report::Result clients = Report::build(list);
    Bench::Print("client_list_document", timer.elapsed() / 1000.0, "s");
    Bench::Print("client_list_peak_rss_after_document", Bench::PeakRssMb(), "MB");
    QTemporaryDir dir;
    timer.restart();
    if (ReportRenderer::writePdf(clients.document, dir.filePath(QStringLiteral("clients.pdf")), {}, &error))
        Bench::Print("client_list_pdf", timer.elapsed() / 1000.0, "s");
    else
        std::printf("client_list_pdf not written: %s\n", qPrintable(error));
    Bench::Print("client_list_peak_rss", Bench::PeakRssMb(), "MB");

    // The grocery log's whole document: a line per service of the year.
    Report::Parameters grocery;
    grocery.name = Report::Name::GroceryLog;
    grocery.startDate = start;
    grocery.endDate = today;
    timer.restart();
    const Report::Result log = Report::build(grocery);
    Bench::Print("grocery_log_document", timer.elapsed() / 1000.0, "s");
    qint64 lines = 0;
    for (const Report::Block &b : log.document.blocks)
        lines += b.rows.size();
    Bench::Print("grocery_log_lines", double(lines), "rows");
    basDatabase::CloseConnection();
    return 0;
}
