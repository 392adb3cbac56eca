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
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

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

// Milliseconds the sqlite3 shell takes for the statements, by its own timer (median of runs).
double shellMs(const QString &path, const QList<Query> &queries)
{
    QString script = QStringLiteral(".timer on\n");
    for (const Query &q : queries)
        script += inlined(q) + QStringLiteral(";\n");
    const QRegularExpression time(QStringLiteral("Run Time: real ([0-9.]+)"));
    std::vector<double> runs;
    for (int i = 0; i < 5; ++i) {
        QProcess shell;
        shell.start(QStringLiteral("sqlite3"), {QStringLiteral("-readonly"), path});
        shell.write(script.toUtf8());
        shell.closeWriteChannel();
        if (!shell.waitForFinished(120000) || shell.exitCode() != 0)
            qFatal("bench_reports: the sqlite3 shell failed: %s", shell.readAllStandardError().constData());
        double total = 0;
        for (auto it = time.globalMatch(QString::fromUtf8(shell.readAllStandardOutput())); it.hasNext();)
            total += it.next().captured(1).toDouble() * 1000.0;
        runs.push_back(total);
    }
    std::sort(runs.begin(), runs.end());
    return runs[runs.size() / 2];
}

void compare(const char *name, const QString &path, const QList<Query> &queries, const std::function<void()> &figures)
{
    const double ours = Bench::MedianMs(5, figures);
    const double shell = shellMs(path, queries);
    Bench::Print(qPrintable(QStringLiteral("%1_figures").arg(QLatin1String(name))), ours, "ms");
    Bench::Print(qPrintable(QStringLiteral("%1_sqlite3_shell").arg(QLatin1String(name))), shell, "ms");
    Bench::Print(qPrintable(QStringLiteral("%1_ratio").arg(QLatin1String(name))), ours / shell, "x");
}

}   // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("/tmp/tendmark-bench-pantry.tmdb");
    DemoData::Options options;
    options.clients = 50000;
    options.familyMembers = 200000;
    options.foodServices = 1000000;
    options.payments = 100000;
    const double built = Bench::EnsureDemoDatabase(path, options, false);
    if (built >= 0)
        Bench::Print("pantry_demo_build", built, "s");
    QString error;
    if (!basDatabase::OpenConnection(path, &error))
        qFatal("bench_reports: %s", qPrintable(error));

    // The last twelve months.
    const QDate today = QDate::currentDate();
    const QDate start = today.addYears(-1).addDays(1);
    using namespace ReportSummaries;
    compare("geographic_summary", path, {clientsByCity(start, today), clientsByZipCode(start, today)}, [&] { geographic(start, today); });
    compare("demographics", path,
            {clientsByEthnicGroup(start, today), clientsByGender(start, today), clientsByAgeGroup(start, today, today)},
            [&] { demographics(start, today, today); });
    compare("grocery_log", path, {groceryTotalsQuery(start, today, today)}, [&] { groceryTotals(start, today, today); });

    // The grocery log's whole document: a line per service of the year.
    Report::Parameters grocery;
    grocery.name = Report::Name::GroceryLog;
    grocery.startDate = start;
    grocery.endDate = today;
    QElapsedTimer timer;
    timer.start();
    const Report::Result log = Report::build(grocery);
    Bench::Print("grocery_log_document", timer.elapsed() / 1000.0, "s");
    qint64 lines = 0;
    for (const Report::Block &b : log.document.blocks)
        lines += b.rows.size();
    Bench::Print("grocery_log_lines", double(lines), "rows");

    // The client list of every household, as pages.
    Report::Parameters list;
    list.name = Report::Name::ClientList;
    timer.restart();
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
    basDatabase::CloseConnection();
    return 0;
}
