// Times the conversion of an Access database into a TendMark file. Debian's tools
// cannot write an .mdb of pantry size, so the sample file is read over and over
// (through mdbtools each time) with its keys shifted, as one database of about
// CLIENTS households with twenty food services each.
// Usage: bench_mdb [CLIENTS] [SAMPLE.mdb] (default 50,000 and the shared sample).
#include "AccessFile.h"
#include "AuditLog.h"
#include "BenchSupport.h"
#include "MdbConvert.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>

namespace {

const QString kTarget = QStringLiteral("/tmp/tendmark-bench-mdb.tmdb");
constexpr qint64 kShift = 1000;   // more than any key of the sample

// The sample's households repeated; lookups and settings once.
class RepeatedSample : public MdbSource::Reader
{
public:
    RepeatedSample(AccessFile &file, int repeats) : m_file(file), m_repeats(repeats) { }

    QStringList tables() const override { return m_file.tables(); }
    bool describe(const QString &table, MdbSource::Table *out, QString *error) override
    {
        if (!m_file.describe(table, out, error))
            return false;
        out->rows *= timesRead(table);
        return true;
    }
    bool read(const QString &table, const MdbSource::RowHandler &handler, QString *error) override
    {
        MdbSource::Table shape;
        if (!m_file.describe(table, &shape, error))
            return false;
        QList<int> shifted;   // the key and the client
        for (int i = 0; i < shape.columns.size(); ++i)
            if ((i == 0 && shape.columns[i].kind == MdbSource::Kind::Integer) || shape.columns[i].name == QLatin1String("ClientID"))
                shifted << i;
        const int clientRepeats = timesRead(table) / m_repeats;
        for (int n = 0; n < timesRead(table); ++n) {
            const qint64 keyShift = n * kShift;
            const qint64 clientShift = (n / qMax(1, clientRepeats)) * kShift;
            bool go = true;
            const bool ok = m_file.read(
                table,
                [&](const QVariantList &values) {
                    QVariantList row = values;
                    for (int i : shifted)
                        if (!row[i].isNull())
                            row[i] = row[i].toLongLong() + (shape.columns[i].name == QLatin1String("ClientID") ? clientShift : keyShift);
                    go = handler(row);
                    return go;
                },
                error);
            if (!ok || !go)
                return ok;
        }
        return true;
    }

private:
    int timesRead(const QString &table) const
    {
        static const QStringList households = {QStringLiteral("Client"), QStringLiteral("Family"),   QStringLiteral("Payments"),
                                               QStringLiteral("Income"), QStringLiteral("Expenses"), QStringLiteral("Volunteer")};
        if (table == QLatin1String("FoodService"))
            return m_repeats * 7;   // 33 services of 12 households: about 20 each
        return households.contains(table) ? m_repeats : 1;
    }

    AccessFile &m_file;
    int m_repeats;
};

}   // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    AuditLog::RegisterUserFunction();
    const int clients = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 50000;
    // By default the shared sample beside the source tree, which holds the build folder.
    const QString sample = argc > 2 ? QString::fromLocal8Bit(argv[2])
                                    : QCoreApplication::applicationDirPath() + QStringLiteral("/../../../shared/fixtures/sample-jet4.mdb");
    QString error;
    const std::unique_ptr<AccessFile> file = AccessFile::Open(sample, &error);
    if (!file)
        qFatal("%s", qPrintable(error));
    RepeatedSample source(*file, qMax(1, clients / 12));
    QElapsedTimer timer;
    timer.start();
    const MdbConvert::Report report = MdbConvert::Convert(source, sample, kTarget, true);
    const double seconds = timer.elapsed() / 1000.0;
    if (!report.ok)
        qFatal("%s", qPrintable(report.error));
    qint64 rows = 0;
    for (const MdbConvert::TableCount &t : report.tables) {
        rows += t.written;
        if (t.table == QLatin1String("Client") || t.table == QLatin1String("FoodService"))
            Bench::Print(qPrintable(QStringLiteral("mdb_%1_rows").arg(t.table.toLower())), double(t.written), "rows");
    }
    Bench::Print("mdb_convert_rows", double(rows), "rows");
    Bench::Print("mdb_convert_time", seconds, "s");
    Bench::Print("mdb_convert_rate", rows / seconds, "rows/s");
    Bench::Print("mdb_convert_peak_rss", Bench::PeakRssMb(), "MB");
    QFile::remove(kTarget);
    return 0;
}
