// What the audit log adds to a save: the same client saves (an update of its
// details and a new food service, one transaction each) on a file with the
// audit triggers and on a copy without them. The folder of the files may be
// given (the default temporary folder is on disk; a RAM disk shows the CPU cost alone).
#include "BenchSupport.h"
#include "Schema.h"
#include "Transaction.h"
#include "basDatabase.h"

#include <QCoreApplication>
#include <algorithm>
#include <QSqlQuery>
#include <QTemporaryDir>

namespace {

enum class Triggers { Keep, Drop };

double medianSaveMs(const QString &path, Triggers triggers)
{
    QString error;
    if (!basDatabase::OpenConnection(path, &error))
        qFatal("%s", qPrintable(error));
    if (triggers == Triggers::Drop)
        for (const char *table : {"Client", "FoodService"})
            for (const char *kind : {"Insert", "Update", "Delete"})
                basDatabase::Execute(QStringLiteral("DROP TRIGGER Audit%1%2").arg(QLatin1String(table), QLatin1String(kind)));
    basDatabase::Execute(QStringLiteral("INSERT INTO Client (ClientID, LastName, FirstName) VALUES (1, 'Ames', 'Ann')"));
    int n = 0;
    const double ms = Bench::MedianMs(400, [&] {
        ++n;
        Transaction t(basDatabase::Connection());
        basDatabase::Execute(QStringLiteral("UPDATE Client SET Address = ?, City = ?, HomePhone = ?, Comments = ? WHERE ClientID = 1"),
                             {QStringLiteral("%1 Main St").arg(n), QStringLiteral("Dayton"), QStringLiteral("555-%1").arg(n),
                              QStringLiteral("visit %1").arg(n)});
        basDatabase::Execute(
            QStringLiteral("INSERT INTO FoodService (ClientID, FoodServiceDate, NumberOfBags) VALUES (1, '2026-11-23', ?)"), {n % 5});
        t.commit();
    });
    basDatabase::CloseConnection();
    return ms;
}

}   // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir(argc > 1 ? QString::fromLocal8Bit(argv[1]) + QStringLiteral("/bench-XXXXXX") : QString());
    QString error;
    // Rounds taken in turn, the best of each kept: the disk's flush time drifts.
    double without = 1e9;
    double with = 1e9;
    for (int round = 0; round < 3; ++round) {
        const QString audited = dir.filePath(QStringLiteral("audited%1.tmdb").arg(round));
        const QString plain = dir.filePath(QStringLiteral("plain%1.tmdb").arg(round));
        if (!Schema::CreateDatabase(audited, false, &error) || !Schema::CreateDatabase(plain, false, &error))
            qFatal("%s", qPrintable(error));
        without = std::min(without, medianSaveMs(plain, Triggers::Drop));
        with = std::min(with, medianSaveMs(audited, Triggers::Keep));
    }
    Bench::Print("save_without_audit", without, "ms");
    Bench::Print("save_with_audit", with, "ms");
    Bench::Print("audit_added", with - without, "ms");
    Bench::Print("audit_overhead", 100.0 * (with - without) / without, "%");
    return 0;
}
