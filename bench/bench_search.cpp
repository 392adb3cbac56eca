// Times the search bar's queries on a database of 100,000 households, from the typed
// text to knowing none, one or many; beside each, the sqlite3 shell's time for the same count.
// Usage: bench_search [FILE] (default: the shared 100,000-household database, built when missing).
#include "BenchSupport.h"
#include "SearchQueries.h"
#include "basDatabase.h"

#include <QCoreApplication>

namespace {

// The statement with its values written in, for the shell.
QString withValues(QString sql, const QVariantList &binds)
{
    for (const QVariant &value : binds) {
        const qsizetype mark = sql.indexOf(QLatin1Char('?'));
        sql.replace(mark, 1, QLatin1Char('\'') + value.toString().replace(QLatin1Char('\''), QStringLiteral("''")) + QLatin1Char('\''));
    }
    return sql;
}

void search(const QString &path, const char *name, const QString &field, const QString &text)
{
    const SearchQueries::Query query = SearchQueries::client(field, text);
    const double ms = Bench::MedianMs(15, [&] { SearchQueries::run(query); });
    const double shell = Bench::ShellMs(path, withValues(query.countSql, query.binds));
    Bench::Print(name, ms, "ms");
    Bench::Print(qPrintable(QStringLiteral("%1_sqlite3_shell").arg(QLatin1String(name))), shell, "ms");
    Bench::Print(qPrintable(QStringLiteral("%1_ratio_to_shell").arg(QLatin1String(name))), shell > 0 ? ms / shell : -1, "x");
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
    search(path, "search_last_name", QStringLiteral("Last Name"), QStringLiteral("son"));
    search(path, "search_last_name_accented", QStringLiteral("Last Name"), QStringLiteral("NGUYỄN"));
    search(path, "search_first_name", QStringLiteral("First Name"), QStringLiteral("mar"));
    search(path, "search_address", QStringLiteral("Address"), QStringLiteral("Main Street"));
    search(path, "search_home_phone_last_four", QStringLiteral("Home Phone"), QStringLiteral("1234"));
    search(path, "search_mobile_phone", QStringLiteral("Mobile Phone"), QStringLiteral("(555) 555-01"));
    search(path, "search_ssn", QStringLiteral("Social Security Number"), QStringLiteral("123-4"));
    search(path, "search_birth_date", QStringLiteral("Birth Date"), QStringLiteral("04/23/1961"));
    search(path, "search_family_last_name", QStringLiteral("Family Member Last Name"), QStringLiteral("son"));
    basDatabase::CloseConnection();
    return 0;
}
