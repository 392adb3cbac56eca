// Test helper: saves households to a database as fast as it can, printing the
// number of each client once its save is acknowledged, until it is killed.
#include "Transaction.h"
#include "basDatabase.h"

#include <QCoreApplication>
#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QString error;
    if (argc < 2 || !basDatabase::OpenConnection(QString::fromLocal8Bit(argv[1]), &error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    for (int n = 0;; ++n) {
        Transaction t(basDatabase::Connection());
        basDatabase::Execute(QStringLiteral("INSERT INTO Client (LastName, FirstName, Address, City, State, Comments) "
                                            "VALUES (?, ?, ?, 'Dayton', 'OH', ?)"),
                             {QStringLiteral("Crash%1").arg(n), QStringLiteral("Test"), QStringLiteral("%1 Main St").arg(n),
                              QString(2000, QLatin1Char('x'))});
        const qlonglong id = basDatabase::ScalarValue(QStringLiteral("SELECT last_insert_rowid()")).toLongLong();
        basDatabase::Execute(QStringLiteral("INSERT INTO FoodService (ClientID, FoodServiceDate) VALUES (?, '2026-11-23')"), {id});
        basDatabase::Execute(QStringLiteral("UPDATE Client SET Comments = ? WHERE ClientID = ?"), {QString(n % 500, QLatin1Char('y')), id});
        if (!t.commit())
            return 2;
        std::printf("%lld\n", id);
        std::fflush(stdout);
    }
}
