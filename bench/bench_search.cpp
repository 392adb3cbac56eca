// Times the search bar's queries on a database of 100,000 households.
// Prints lines "name value unit".
#include "DemoData.h"
#include "Schema.h"
#include "SearchQueries.h"
#include "basDatabase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <vector>

namespace {

bool createDatabase(const QString &path, int clients, QString *error)
{
    if (!Schema::CreateDatabase(path, true, error))
        return false;
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench"));
        db.setDatabaseName(path);
        ok = db.open();
        if (ok) {
            DemoData::Options options;
            options.clients = clients;
            options.seed = 7;
            options.volunteers = 50;
            ok = DemoData::Generate(db, options, error);
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bench"));
    return ok;
}

// The median time of a search from the typed text to knowing none, one or many.
double medianMs(const QString &field, const QString &text, int runs = 15)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        SearchQueries::run(SearchQueries::client(field, text));
        times.push_back(t.nsecsElapsed() / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    // Optional argument: a database to search instead of building one (building 100,000 households takes minutes).
    const QString given = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    QTemporaryDir dir;
    const QString path = given.isEmpty() ? dir.filePath(QStringLiteral("bench.tmdb")) : given;
    QString error;
    if (given.isEmpty()) {
        QElapsedTimer build;
        build.start();
        if (!createDatabase(path, 100000, &error)) {
            QTextStream(stderr) << "bench_search: " << error << '\n';
            return 1;
        }
        out << "demo_database_100000_clients_s " << QString::number(build.elapsed() / 1000.0, 'f', 1) << " s\n";
    }
    if (!basDatabase::OpenConnection(path, &error)) {
        QTextStream(stderr) << "bench_search: " << error << '\n';
        return 1;
    }
    out << "search_last_name_ms " << QString::number(medianMs(QStringLiteral("Last Name"), QStringLiteral("son")), 'f', 2) << " ms\n";
    out << "search_first_name_ms " << QString::number(medianMs(QStringLiteral("First Name"), QStringLiteral("mar")), 'f', 2) << " ms\n";
    out << "search_ssn_ms " << QString::number(medianMs(QStringLiteral("Social Security Number"), QStringLiteral("123-4")), 'f', 2) << " ms\n";
    out << "search_birth_date_ms " << QString::number(medianMs(QStringLiteral("Birth Date"), QStringLiteral("04/23/1961")), 'f', 2) << " ms\n";
    out << "search_family_last_name_ms " << QString::number(medianMs(QStringLiteral("Family Member Last Name"), QStringLiteral("son")), 'f', 2) << " ms\n";
    basDatabase::CloseConnection();
    return 0;
}
