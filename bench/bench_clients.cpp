// Timings of the client windows on a database of 100,000 clients.
// Usage: bench_clients [FILE] (default: the shared 100,000-household database, built when missing).
#include "BenchSupport.h"
#include "SearchQueries.h"
#include "basDatabase.h"
#include "frmClientDetails.h"
#include "frmClientGrid.h"
#include "frmMain.h"
#include "frmSelect.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_CONFIG_HOME", "/tmp/tendmark-bench-config");   // window positions stay out of the user's settings
    QApplication app(argc, argv);
    const QString path = argc > 1 ? QString::fromLocal8Bit(argv[1]) : Bench::kDefaultDatabase;
    Bench::EnsureDemoDatabase(path, 100000, false);
    if (!basDatabase::OpenConnection(path))
        qFatal("bench_clients: cannot open %s", qPrintable(path));

    frmMain main;
    main.resize(1280, 900);
    main.show();
    QCoreApplication::processEvents();

    frmClientGrid *list = nullptr;
    Bench::Print("client_list_open",
                 Bench::MedianMs(1,
                                 [&] {
                                     main.findChild<QAction *>(QStringLiteral("mnuDataClientTable"))->trigger();
                                     list = main.findChildWindow<frmClientGrid>();
                                     list->grab();   // the first screen, painted
                                 }),
                 "ms");
    auto *grid = list->findChild<QTableView *>(QStringLiteral("grdData"));
    Bench::Print("client_list_scroll_end",
                 Bench::MedianMs(1,
                                 [&] {
                                     grid->scrollToBottom();
                                     grid->viewport()->grab();
                                 }),
                 "ms");
    double worstStep = 0;
    for (int i = 0; i < 40; ++i) {
        const int value = grid->verticalScrollBar()->maximum() * i / 40;
        worstStep = qMax(worstStep, Bench::MedianMs(1, [&] {
                             grid->verticalScrollBar()->setValue(value);
                             grid->viewport()->grab();
                         }));
    }
    Bench::Print("client_list_scroll_jump_worst", worstStep, "ms");

    main.findChild<QAction *>(QStringLiteral("mnuDataClientDetails"))->trigger();
    auto *details = main.findChildWindow<frmClientDetails>();
    auto *next = details->findChild<QPushButton *>(QStringLiteral("cmdNext"));
    auto *last = details->findChild<QPushButton *>(QStringLiteral("cmdLast"));
    constexpr int kMoves = 50;
    double total = 0;
    for (int i = 0; i < kMoves; ++i)
        total += Bench::MedianMs(1, [&] {
            next->click();
            details->grab();
        });
    Bench::Print("details_move_next", total / kMoves, "ms");
    Bench::Print("details_move_next_unpainted", Bench::MedianMs(kMoves, [&] { next->click(); }), "ms");
    Bench::Print("details_paint", Bench::MedianMs(kMoves, [&] { details->grab(); }), "ms");
    Bench::Print("details_move_last",
                 Bench::MedianMs(1,
                                 [&] {
                                     last->click();
                                     details->grab();
                                 }),
                 "ms");
    // From the typed name to the picker filled and sized, as the search bar does it.
    const SearchQueries::Query search = SearchQueries::client(QStringLiteral("Last Name"), QStringLiteral("son"));
    Bench::Print("search_to_picker",
                 Bench::MedianMs(9,
                                 [&] {
                                     frmSelect picker;
                                     picker.setRecordset(SearchQueries::run(search).shown);
                                 }),
                 "ms");
    Bench::Print("peak_rss", Bench::PeakRssMb(), "MB");
    main.mdiArea()->closeAllSubWindows();
    basDatabase::CloseConnection();
    return 0;
}
