// Opening a large database and moving through its clients.
// Usage: bench_core [--reuse] [FILE]  (default /tmp/tendmark-bench-100k.tmdb)

#include "BenchSupport.h"
#include "Recordset.h"
#include "basDatabase.h"

#include <QCoreApplication>
#include <QRandomGenerator>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    const bool reuse = args.removeAll(QStringLiteral("--reuse")) > 0;
    const QString path = args.isEmpty() ? Bench::kDefaultDatabase : args.first();
    const int clients = 100000;

    const double built = Bench::EnsureDemoDatabase(path, clients, !reuse);
    if (built >= 0)
        Bench::Print("demo_generate", built, "s");

    Bench::Print("open_database",
                 Bench::MedianMs(5,
                                 [&] {
                                     basDatabase::CloseConnection();
                                     if (!basDatabase::OpenConnection(path))
                                         qFatal("cannot open %s", qPrintable(path));
                                 }),
                 "ms");

    Recordset rs;
    Bench::Print("recordset_open_clients_by_name",
                 Bench::MedianMs(5,
                                 [&] {
                                     rs.open(QStringLiteral("Client"), QStringLiteral("ClientID"),
                                             QStringLiteral("SELECT * FROM Client ORDER BY LastName"));
                                 }),
                 "ms");
    Bench::Print("recordset_count", rs.recordCount(), "rows");
    Bench::Print("recordset_move_last",
                 Bench::MedianMs(21,
                                 [&] {
                                     rs.moveFirst();
                                     rs.moveLast();
                                 })
                     / 2,
                 "ms");
    rs.moveFirst();
    Bench::Print("recordset_move_next", Bench::MedianMs(101, [&] { rs.moveNext(); }), "ms");
    QRandomGenerator random(7);
    const int maxKey = basDatabase::ScalarValue(QStringLiteral("SELECT MAX(ClientID) FROM Client")).toInt();
    Bench::Print("recordset_find_by_key", Bench::MedianMs(101, [&] { rs.find(random.bounded(1, maxKey + 1)); }), "ms");
    Bench::Print("peak_rss", Bench::PeakRssMb(), "MB");
    rs.close();
    basDatabase::CloseConnection();
    return 0;
}
