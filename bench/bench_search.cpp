// Times the search bar's queries on a database of 100,000 households.
// Usage: bench_search [FILE] (default: the shared 100,000-household database, built when missing).
#include "BenchSupport.h"
#include "SearchQueries.h"
#include "basDatabase.h"

#include <QCoreApplication>

namespace {

// The median time of a search from the typed text to knowing none, one or many.
double searchMs(const QString &field, const QString &text)
{
    return Bench::MedianMs(15, [&] { SearchQueries::run(SearchQueries::client(field, text)); });
}

}   // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : Bench::kDefaultDatabase;
    Bench::EnsureDemoDatabase(path, 100000, false);
    QString error;
    if (!basDatabase::OpenConnection(path, &error))
        qFatal("bench_search: %s", qPrintable(error));
    Bench::Print("search_last_name", searchMs(QStringLiteral("Last Name"), QStringLiteral("son")), "ms");
    Bench::Print("search_first_name", searchMs(QStringLiteral("First Name"), QStringLiteral("mar")), "ms");
    Bench::Print("search_ssn", searchMs(QStringLiteral("Social Security Number"), QStringLiteral("123-4")), "ms");
    Bench::Print("search_birth_date", searchMs(QStringLiteral("Birth Date"), QStringLiteral("04/23/1961")), "ms");
    Bench::Print("search_family_last_name", searchMs(QStringLiteral("Family Member Last Name"), QStringLiteral("son")), "ms");
    basDatabase::CloseConnection();
    return 0;
}
