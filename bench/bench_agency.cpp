// Times the agency report for the last twelve months, month by month: its figures beside
// the sqlite3 shell running the same statement, the whole document, and its PDF.
// Usage: bench_agency [FILE] (default: the pantry-scale database of 50,000 households,
// 200,000 family members and 1,000,000 food services, built when missing).
#include "AgencyFigures.h"
#include "BenchSupport.h"
#include "ReportDocument.h"
#include "ReportRenderer.h"
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

// The sqlite3 shell's own time for the statements, their rows written to nowhere: the
// median of five runs.
double shellMs(const QString &path, const QList<Query> &queries)
{
    QString script;
    for (const Query &q : queries)
        script += inlined(q) + QStringLiteral(";\n");
    std::vector<double> runs;
    for (int i = 0; i < 5; ++i) {
        double total = 0;
        for (const Bench::ShellTime &t : Bench::ShellTimes(path, script))
            total += t.wallMs;
        runs.push_back(total);
    }
    std::sort(runs.begin(), runs.end());
    return runs[2];
}

}   // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QString path = Bench::OpenPantryDatabase(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());

    const QDate today = QDate::currentDate();
    const QDate start = QDate(today.year(), today.month(), 1).addYears(-1);
    const QDate end = QDate(today.year(), today.month(), 1).addDays(-1);
    QList<AgeBrackets::Bracket> brackets;
    QString error;
    AgeBrackets::parse(AgeBrackets::presets().constFirst(), &brackets, &error);

    // CPU time beside the wall clock: what the work costs on a machine others share.
    AgencyFigures::Period period;
    const std::clock_t cpu = std::clock();
    const double figures = Bench::MedianMs(5, [&] { period = AgencyFigures::compute(start, end, brackets, true); });
    const double figuresCpu = double(std::clock() - cpu) * 1000.0 / CLOCKS_PER_SEC / 5;
    const double shell = shellMs(path, AgencyFigures::figuresQueries(start, end));
    Bench::Print("agency_year_figures", figures, "ms");
    Bench::Print("agency_year_sqlite3_shell", shell, "ms");
    Bench::Print("agency_year_ratio", figures / shell, "x");
    Bench::Print("agency_year_figures_cpu_mean", figuresCpu, "ms");
    Bench::Print("agency_year_households", double(period.total.households), "households");
    Bench::Print("agency_year_visits", double(period.total.visits), "visits");
    Bench::Print("agency_year_individual_visits", double(period.total.individualVisits), "person-visits");

    Report::Parameters p;
    p.name = Report::Name::Agency;
    p.startDate = start;
    p.endDate = end;
    p.ageBrackets = AgeBrackets::text(brackets);
    Report::Result result;
    Bench::Print("agency_year_document", Bench::MedianMs(3, [&] { result = Report::build(p); }), "ms");
    QTemporaryDir dir;
    QElapsedTimer timer;
    timer.start();
    if (!result.ok || !ReportRenderer::writePdf(result.document, dir.filePath(QStringLiteral("agency.pdf")), {}, &error))
        qFatal("bench_agency: %s", qPrintable(result.ok ? error : result.error));
    Bench::Print("agency_year_pdf", double(timer.elapsed()), "ms");
    basDatabase::CloseConnection();
    return 0;
}
