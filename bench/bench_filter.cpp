// Times the filter on a pantry-scale database: 50,000 households, 1,000,000 food
// services, 100,000 payments. Each figure runs the real dialog's OK (the statement
// proved read-only) and opens the filtered client list to its first painted
// screen; beside it, the sqlite3 shell's time for the same statement.
// Usage: bench_filter [FILE] (default: built on first use with plain inserts).
#include "BenchSupport.h"
#include "DemoData.h"
#include "Schema.h"
#include "basDatabase.h"
#include "frmClientGrid.h"
#include "frmFilter.h"
#include "frmMain.h"

#include <QAction>
#include <QApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSqlDatabase>
#include <QSqlQuery>

namespace {

const QString kDatabase = QStringLiteral("/tmp/tendmark-bench-filter.tmdb");
constexpr int kClients = 50000;
constexpr int kFoodServices = 1000000;
constexpr int kPayments = 100000;

// Demo households, then food services and payments added with plain inserts up to the totals.
void ensureDatabase(const QString &path)
{
    if (Schema::InspectFile(path).state == Schema::FileState::Ok)
        return;
    QElapsedTimer timer;
    timer.start();
    Bench::EnsureDemoDatabase(path, kClients, true);
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench-filter"));
        db.setDatabaseName(path);
        if (!db.open())
            qFatal("bench_filter: cannot open %s", qPrintable(path));
        QSqlQuery q(db);
        auto count = [&q](const char *table) {
            q.exec(QStringLiteral("SELECT COUNT(*) FROM %1").arg(QLatin1String(table)));
            q.next();
            return q.value(0).toLongLong();
        };
        auto ids = [&q](const char *sql) {
            QList<qint64> result;
            q.exec(QLatin1String(sql));
            while (q.next())
                result << q.value(0).toLongLong();
            return result;
        };
        const QList<qint64> clients = ids("SELECT ClientID FROM Client");
        const QList<qint64> serviceTypes = ids("SELECT FoodServiceTypeID FROM FoodServiceTypes");
        const QList<qint64> paymentTypes = ids("SELECT PaymentTypeID FROM PaymentTypes");
        QRandomGenerator rng(7);
        auto any = [&rng](const QList<qint64> &list) { return list.at(rng.bounded(int(list.size()))); };
        const QDate today = QDate::currentDate();
        db.transaction();
        QSqlQuery insert(db);
        insert.prepare(
            QStringLiteral("INSERT INTO FoodService (ClientID, FoodServiceDate, FoodServiceTypeID, NumberOfBags) VALUES (?, ?, ?, ?)"));
        for (qint64 n = count("FoodService"); n < kFoodServices; ++n) {
            insert.addBindValue(any(clients));
            insert.addBindValue(today.addDays(-rng.bounded(730)).toString(Qt::ISODate));
            insert.addBindValue(any(serviceTypes));
            insert.addBindValue(rng.bounded(1, 6));
            if (!insert.exec())
                qFatal("bench_filter: cannot add food services");
        }
        insert.prepare(QStringLiteral("INSERT INTO Payments (ClientID, PaymentDate, PaymentsTypeID, AmountPaid) VALUES (?, ?, ?, ?)"));
        for (qint64 n = count("Payments"); n < kPayments; ++n) {
            insert.addBindValue(any(clients));
            insert.addBindValue(today.addDays(-rng.bounded(730)).toString(Qt::ISODate));
            insert.addBindValue(any(paymentTypes));
            insert.addBindValue(rng.bounded(1000, 50000));
            if (!insert.exec())
                qFatal("bench_filter: cannot add payments");
        }
        db.commit();
        q.exec(QStringLiteral("ANALYZE"));
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("bench-filter"));
    Bench::Print("database_build", timer.elapsed() / 1000.0, "s");
}

struct Timing
{
    double ms = 0;
    QString sql;
    int records = 0;
};

// Filter, criteria, OK, through to the list's first screen painted.
Timing filterList(frmMain &main, frmClientGrid *list, const QList<FilterStatement::Criterion> &criteria)
{
    Timing t;
    QElapsedTimer timer;
    main.toolbarButton(QStringLiteral("Filter"))->trigger();
    auto *dialog = main.findChild<frmFilter *>();
    if (!dialog)
        qFatal("bench_filter: the Filter command opened no dialog");
    dialog->setState({criteria, {}, false});
    timer.start();
    dialog->findChild<QPushButton *>(QStringLiteral("cmdOk"))->click();
    list->grab();
    t.ms = double(timer.nsecsElapsed()) / 1e6;
    t.sql = FilterStatement::build(QStringLiteral("Client"), criteria).sql;   // what the dialog showed; it has closed itself
    t.records = list->recordCount();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return t;
}

void report(const char *name, const Timing &t, const QString &path)
{
    const double shell = Bench::ShellMs(path, t.sql);
    Bench::Print(qPrintable(QStringLiteral("%1_open_list").arg(QLatin1String(name))), t.ms, "ms");
    Bench::Print(qPrintable(QStringLiteral("%1_records").arg(QLatin1String(name))), t.records, "clients");
    Bench::Print(qPrintable(QStringLiteral("%1_sqlite3_shell").arg(QLatin1String(name))), shell, "ms");
    Bench::Print(qPrintable(QStringLiteral("%1_ratio_to_shell").arg(QLatin1String(name))), shell > 0 ? t.ms / shell : -1, "x");
}

}   // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", "/tmp/tendmark-bench-config");   // window positions stay out of the user's settings
    QApplication app(argc, argv);
    const QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : kDatabase;
    ensureDatabase(path);
    if (!basDatabase::OpenConnection(path))
        qFatal("bench_filter: cannot open %s", qPrintable(path));

    frmMain main;
    main.resize(1280, 900);
    main.show();
    main.activateWindow();
    QCoreApplication::processEvents();
    main.findChild<QAction *>(QStringLiteral("mnuDataClientTable"))->trigger();
    auto *list = main.findChildWindow<frmClientGrid>();
    main.activateChild(list);
    QCoreApplication::processEvents();

    // The last quarter's food services of one type, and a utility payment.
    const QDate today = QDate::currentDate();
    const QString from = today.addMonths(-3).toString(QStringLiteral("MM/dd/yyyy"));
    const QString to = today.toString(QStringLiteral("MM/dd/yyyy"));
    const QString utilities
        = basDatabase::ScalarValue(QStringLiteral("SELECT PaymentTypeID FROM PaymentTypes WHERE PaymentTypeDescription = 'Utilities'"))
              .toString();
    report("services_and_payment",
           filterList(main, list,
                      {{QStringLiteral("Where"), QStringLiteral("Food Service Date"), QStringLiteral("is between"), from, to},
                       {QStringLiteral("And"), QStringLiteral("Payment Type"), QStringLiteral("is equal to"), utilities, {}}}),
           path);

    // The most common last name.
    const QString name
        = basDatabase::ScalarValue(QStringLiteral("SELECT LastName FROM Client GROUP BY LastName ORDER BY COUNT(*) DESC LIMIT 1"))
              .toString();
    report("last_name",
           filterList(main, list, {{QStringLiteral("Where"), QStringLiteral("Last Name"), QStringLiteral("is equal to"), name, {}}}), path);
    Bench::Print("peak_rss", Bench::PeakRssMb(), "MB");
    main.close();
    basDatabase::CloseConnection();
    return 0;
}
