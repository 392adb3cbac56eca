// The client list at scale: the first and the last page of every order both ways, going to a client,
// the row count and the list window's memory, each beside the sqlite3 shell's time for the same rows.
// Usage: bench_clientlist [CLIENTS [FILE]] (default 50,000 clients in /tmp/tendmark-bench-clients-CLIENTS.tmdb,
// built when missing).
#include "BenchSupport.h"
#include "GridModel.h"
#include "KeysetPages.h"
#include "QueryPages.h"
#include "RecordQueries.h"
#include "basDatabase.h"
#include "frmClientGrid.h"
#include "frmMain.h"

#include <QAction>
#include <QApplication>
#include <QScrollBar>
#include <QTableView>
#include <sqlite3.h>

namespace {

constexpr int kShellRuns = 20;

QString literal(const QVariant &v)
{
    if (v.isNull())
        return QStringLiteral("NULL");
    if (v.typeId() == QMetaType::LongLong || v.typeId() == QMetaType::Int || v.typeId() == QMetaType::Double)
        return v.toString();
    return QLatin1Char('\'') + v.toString().replace(u'\'', QStringLiteral("''")) + QLatin1Char('\'');
}

// By the terms' places, which the statements select first.
QString orderBy(const QStringList &terms, bool descending)
{
    QStringList sorted;
    for (qsizetype i = 0; i < terms.size(); ++i)
        sorted << QString::number(i + 1) + (descending ? QStringLiteral(" DESC") : QString());
    return QStringLiteral(" ORDER BY ") + sorted.join(QStringLiteral(", "));
}

// The shell's own time for each statement, with the program's page cache: the mean of kShellRuns runs
// after one that warms the cache.
QList<double> shellMs(const QString &path, const QStringList &statements)
{
    QString script;
    for (const QString &s : statements)
        script += (s + QStringLiteral(";\n")).repeated(kShellRuns + 1);
    const QList<Bench::ShellTime> runs = Bench::ShellTimes(path, script, QStringLiteral("PRAGMA cache_size = -65536;\n"));
    QList<double> result;
    for (qsizetype i = 0; i < statements.size(); ++i) {
        double total = 0;
        for (int r = 1; r <= kShellRuns; ++r)
            total += runs.value(i * (kShellRuns + 1) + r).wallMs;
        result << total / kShellRuns;
    }
    return result;
}

void printBeside(const QString &name, double ours, double shell)
{
    Bench::Print(qPrintable(name), ours, "ms");
    Bench::Print(qPrintable(name + QStringLiteral("_sqlite3_shell")), shell, "ms");
    Bench::Print(qPrintable(name + QStringLiteral("_ratio")), shell > 0 ? ours / shell : 0, "x");
}

}   // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", "/tmp/tendmark-bench-config");
    QApplication app(argc, argv);
    const int clients = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 50000;
    const QString path = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral("/tmp/tendmark-bench-clients-%1.tmdb").arg(clients);
    const double built = Bench::EnsureDemoDatabase(path, clients, false);
    if (built >= 0)
        Bench::Print("demo_build", built, "s");
    QString error;
    if (!basDatabase::OpenConnection(path, &error))
        qFatal("bench_clientlist: %s: %s", qPrintable(path), qPrintable(error));

    const Query query = RecordQueries::clientList(RecordQueries::allClients());
    const QStringList fields = QueryPages::fieldNames(query);
    GridModel model;
    model.setQuery(query);
    const int count = model.dataRowCount();
    Bench::Print("clients", count, "rows");

    // The first and the last page of each order, both ways: the slower of the four beside the shell's.
    QStringList statements;
    QList<double> ours;
    for (int column = 0; column < query.orders.size(); ++column) {
        const QStringList &terms = query.orders.at(column);
        double worst = 0;
        for (const bool descending : {false, true}) {
            for (const int row : {0, count - 1}) {
                worst = qMax(worst, Bench::MedianMs(5, [&] {
                                 model.sortByColumn(column, descending ? Qt::DescendingOrder : Qt::AscendingOrder);
                                 model.rowKey(row);
                             }));
            }
        }
        ours << worst;
        for (const bool descending : {false, true})
            statements << QStringLiteral("SELECT %1, %2 FROM %3%4 LIMIT 200")
                              .arg(terms.join(QStringLiteral(", ")), query.columns, query.source, orderBy(terms, descending));
    }
    QList<double> shell = shellMs(path, statements);
    for (int column = 0; column < query.orders.size(); ++column)
        printBeside(
            QStringLiteral("list_page_worst_%1").arg(column == 0 ? QStringLiteral("NameOrder") : fields.at(column).section(u':', 0, 0)),
            ours.at(column), qMax(shell.at(2 * column), shell.at(2 * column + 1)));

    // Going to a client in the name order: its row found and its page read, for clients spread over the list.
    statements.clear();
    double worstGoTo = 0;
    const QStringList &name = query.orders.first();
    for (const int at : {count / 10, count / 2, count - count / 10}) {
        model.sortByColumn(0, Qt::AscendingOrder);
        const qint64 key = model.rowKey(at);
        worstGoTo = qMax(worstGoTo, Bench::MedianMs(5, [&] {
                             model.sortByColumn(0, Qt::AscendingOrder);
                             model.rowKey(model.findKey(key));
                         }));
        QStringList values;
        for (const QVariant &v : KeysetPages::valuesOf(query, {name, false}, key))
            values << literal(v);
        const QString row = QStringLiteral("(%1)").arg(name.join(QStringLiteral(", ")));
        const QString bound = QStringLiteral("(%1)").arg(values.join(QStringLiteral(", ")));
        statements << QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 < %3").arg(query.source, row, bound)
                   << QStringLiteral("SELECT %1, %2 FROM %3 WHERE %4 >= %5%6 LIMIT 200")
                          .arg(name.join(QStringLiteral(", ")), query.columns, query.source, row, bound, orderBy(name, false));
    }
    shell = shellMs(path, statements);
    printBeside(QStringLiteral("go_to_client_worst"), worstGoTo,
                qMax(qMax(shell.at(0) + shell.at(1), shell.at(2) + shell.at(3)), shell.at(4) + shell.at(5)));

    // The count that sizes the scroll bar.
    printBeside(QStringLiteral("list_count"), Bench::MedianMs(5, [&] { QueryPages::count(query); }),
                shellMs(path, {QStringLiteral("SELECT COUNT(*) FROM (%1)").arg(query.countSql)}).first());

    // The list window's memory: opened, scrolled to the end and through the list; apart, what SQLite holds
    // (its page cache grows with the pages read, up to the cache size the connection sets).
    const double before = Bench::RssMb();
    const double sqliteBefore = double(sqlite3_memory_used()) / (1024 * 1024);
    {
        frmMain main;
        main.resize(1280, 900);
        main.show();
        QCoreApplication::processEvents();
        main.findChild<QAction *>(QStringLiteral("mnuDataClientTable"))->trigger();
        auto *grid = main.findChildWindow<frmClientGrid>()->findChild<QTableView *>(QStringLiteral("grdData"));
        grid->grab();
        grid->scrollToBottom();
        grid->viewport()->grab();
        for (int i = 0; i < 40; ++i) {
            grid->verticalScrollBar()->setValue(grid->verticalScrollBar()->maximum() * i / 40);
            grid->viewport()->grab();
        }
        const double grown = Bench::RssMb() - before;
        const double sqlite = double(sqlite3_memory_used()) / (1024 * 1024) - sqliteBefore;
        Bench::Print("list_window_memory", grown, "MB");
        Bench::Print("list_window_memory_sqlite", sqlite, "MB");
        Bench::Print("list_window_memory_besides_sqlite", grown - sqlite, "MB");
        Bench::Print("sqlite_memory_in_use", double(sqlite3_memory_used()) / (1024 * 1024), "MB");
        main.mdiArea()->closeAllSubWindows();
    }
    basDatabase::CloseConnection();
    return 0;
}
