// Times the import of 50,000 clients from a CSV file written as the export writes
// it, beside the sqlite3 shell's .import of the same file into a scratch table.
// Usage: bench_import [ROWS] (default 50,000).
#include "BenchSupport.h"
#include "ClientImport.h"
#include "CsvWriter.h"
#include "Schema.h"
#include "basDatabase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

namespace {

const QString kDatabase = QStringLiteral("/tmp/tendmark-bench-import.tmdb");
const QString kCsv = QStringLiteral("/tmp/tendmark-bench-import.csv");

// Households with every field, formatted and quoted as the export writes them.
void writeCsv(int rows)
{
    QList<QStringList> lines;
    QStringList header;
    for (const ClientImport::Field &f : ClientImport::fields())
        header << f.name();
    lines << header;
    const QStringList housing = {"Renting", "Own home", "Shelter", "Homeless"};
    const QStringList months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    for (int i = 0; i < rows; ++i) {
        const QString n = QString::number(i);
        const QString ssn = QStringLiteral("%1").arg(100000000 + i);
        const QString phone = QStringLiteral("(937) %1-%2").arg(200 + i % 700).arg(1000 + i % 9000);
        QStringList row;
        for (const ClientImport::Field &f : ClientImport::fields()) {
            const QString column = QString::fromLatin1(f.column);
            switch (f.kind) {
            case ClientImport::Kind::Ssn:
                row << ssn.left(3) + u'-' + ssn.mid(3, 2) + u'-' + ssn.mid(5);
                break;
            case ClientImport::Kind::Phone:
                row << phone;
                break;
            case ClientImport::Kind::Date:
                row << QStringLiteral("%1-%2-%3").arg(1 + i % 28, 2, 10, QLatin1Char('0')).arg(months[i % 12]).arg(40 + i % 60);
                break;
            case ClientImport::Kind::Code:
                row << (column == QLatin1String("Gender") ? (i % 2 ? "F" : "M") : "OH");
                break;
            case ClientImport::Kind::Lookup:
                row << (column == QLatin1String("HousingID") ? housing[i % housing.size()] : QString());
                break;
            case ClientImport::Kind::Number:
                row << QString::number(i % 20);
                break;
            case ClientImport::Kind::YesNo:
                row << (i % 3 ? "No" : "Yes");
                break;
            case ClientImport::Kind::Text:
                row << (column == QLatin1String("MiddleInitial") ? QStringLiteral("Q") : column.left(3) + n);
                break;
            }
        }
        lines << row;
    }
    CsvWriter::Format format;
    format.quoteEverything = true;
    QString error;
    if (!CsvWriter::write(kCsv, lines, &error, format))
        qFatal("bench_import: %s", qPrintable(error));
}

}   // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int rows = argc > 1 ? QByteArray(argv[1]).toInt() : 50000;
    writeCsv(rows);
    QString error;
    if (!Schema::CreateDatabase(kDatabase, true, &error) || !basDatabase::OpenConnection(kDatabase, &error))
        qFatal("bench_import: %s", qPrintable(error));

    CsvReader::Table table;
    ClientImport::Plan plan;
    ClientImport::Outcome outcome;
    const double readMs = Bench::MedianMs(1, [&] {
        if (!CsvReader::read(kCsv, &table, &error))
            qFatal("bench_import: %s", qPrintable(error));
    });
    const double checkMs = Bench::MedianMs(1, [&] { plan = ClientImport::check(table, ClientImport::automaticMapping(table.header)); });
    const double runMs = Bench::MedianMs(1, [&] { outcome = ClientImport::run(plan, false); });
    if (!outcome.committed || outcome.imported != rows)
        qFatal("bench_import: %d of %d rows imported: %s", outcome.imported, rows, qPrintable(outcome.error));
    basDatabase::CloseConnection();
    Bench::Print("import_csv_read", readMs, "ms");
    Bench::Print("import_csv_check", checkMs, "ms");
    Bench::Print("import_csv_insert", runMs, "ms");
    Bench::Print("import_csv_total", (readMs + checkMs + runMs) / 1000.0, "s");

    QFile::remove(kDatabase + QStringLiteral(".scratch"));
    QProcess shell;
    QElapsedTimer timer;
    timer.start();
    shell.start(QStringLiteral("sqlite3"), {kDatabase + QStringLiteral(".scratch"), QStringLiteral(".import --csv %1 clients").arg(kCsv)});
    if (!shell.waitForFinished(600000) || shell.exitCode() != 0)
        qFatal("bench_import: the sqlite3 shell failed: %s", shell.readAllStandardError().constData());
    Bench::Print("import_csv_sqlite3_shell", double(timer.nsecsElapsed()) / 1e6, "ms");
    Bench::Print("import_csv_rows", rows, "rows");
    QFile::remove(kDatabase + QStringLiteral(".scratch"));
    return 0;
}
