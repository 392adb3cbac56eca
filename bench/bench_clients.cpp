// Timings of the client windows on a database of 100,000 clients.
// Prints one line per measure: "name value unit".
#include "DemoData.h"
#include "Schema.h"
#include "basDatabase.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"
#include "frmMain.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTextStream>
#include <cstdio>

namespace {

constexpr int kClients = 100000;

void report(const char *name, double value, const char *unit)
{
    std::printf("%s %.1f %s\n", name, value, unit);
    std::fflush(stdout);
}

double peakRssMb()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return 0;
}

bool prepareDatabase(const QString &path)
{
    if (QFile::exists(path))
        return basDatabase::OpenConnection(path);
    QString error;
    if (!Schema::CreateDatabase(path, true, &error) || !basDatabase::OpenConnection(path, &error)) {
        std::fprintf(stderr, "bench_clients: %s\n", qPrintable(error));
        return false;
    }
    DemoData::Options options;
    options.clients = kClients;
    if (!DemoData::Generate(basDatabase::Connection(), options, &error)) {
        std::fprintf(stderr, "bench_clients: %s\n", qPrintable(error));
        basDatabase::CloseConnection();
        QFile::remove(path);
        return false;
    }
    return true;
}

template<typename F>
double timeMs(F &&body)
{
    QElapsedTimer timer;
    timer.start();
    body();
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", "/tmp/tendmark-bench-config");   // window positions stay out of the user's settings
    QApplication app(argc, argv);
    const QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("/tmp/tendmark-bench-clients-100k.tmdb");
    if (!prepareDatabase(path))
        return 1;

    frmMain main;
    main.resize(1280, 900);
    main.show();
    QCoreApplication::processEvents();

    frmClientGrid *list = nullptr;
    report("client_list_open_ms", timeMs([&] {
               main.findChild<QAction *>(QStringLiteral("mnuDataClientTable"))->trigger();
               list = main.findChildWindow<frmClientGrid>();
               list->grab();   // the first screen, painted
           }),
           "ms");
    auto *grid = list->findChild<QTableView *>(QStringLiteral("grdData"));
    report("client_list_scroll_end_ms", timeMs([&] {
               grid->scrollToBottom();
               grid->viewport()->grab();
           }),
           "ms");
    double worstStep = 0;
    for (int i = 0; i < 40; ++i) {
        const int value = grid->verticalScrollBar()->maximum() * i / 40;
        worstStep = qMax(worstStep, timeMs([&] {
                             grid->verticalScrollBar()->setValue(value);
                             grid->viewport()->grab();
                         }));
    }
    report("client_list_scroll_jump_worst_ms", worstStep, "ms");

    main.findChild<QAction *>(QStringLiteral("mnuDataClientDetails"))->trigger();
    auto *details = main.findChildWindow<frmClientDetails>();
    auto *next = details->findChild<QPushButton *>(QStringLiteral("cmdNext"));
    auto *last = details->findChild<QPushButton *>(QStringLiteral("cmdLast"));
    constexpr int kMoves = 50;
    double total = 0;
    for (int i = 0; i < kMoves; ++i)
        total += timeMs([&] {
            next->click();
            details->grab();
        });
    report("details_move_next_ms", total / kMoves, "ms");
    report("details_move_last_ms", timeMs([&] {
               last->click();
               details->grab();
           }),
           "ms");
    report("peak_rss_mb", peakRssMb(), "MB");
    main.mdiArea()->closeAllSubWindows();
    basDatabase::CloseConnection();
    return 0;
}
