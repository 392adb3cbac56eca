// Timings of the report renderer alone: a client list of 50,000 clients in 400
// city groups, laid out and written to a PDF file.
// Usage: bench_render [CLIENTS] (default 50,000).
#include "BenchSupport.h"
#include "ReportRenderer.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPdfWriter>
#include <QTemporaryDir>

namespace {

Report::Document clientList(int clients)
{
    Report::Document d;
    d.caption = QStringLiteral("TendMark - Client List");
    d.title = QStringLiteral("Client List");
    d.title2 = QStringLiteral("Grouped By City");
    d.header.organizationName = QStringLiteral("Benchmark Pantry");
    d.header.organizationAddress = QStringLiteral("1 Main Street\r\nSpringfield, IL 62701");
    d.runDate = QDate(2026, 1, 31);
    const int groups = 400;
    for (int g = 0; g < groups; ++g) {
        Report::Block heading;
        heading.kind = Report::Block::Heading;
        heading.lines = {QStringLiteral("City: Town %1").arg(g)};
        heading.keepWithNext = true;
        Report::Block table;
        table.kind = Report::Block::Table;
        table.columns
            = {{QStringLiteral("Name"), 3}, {QStringLiteral("Address"), 5}, {QStringLiteral("SSN"), 2}, {QStringLiteral("Home Phone"), 2}};
        for (int i = g; i < clients; i += groups)
            table.rows << QStringList {QStringLiteral("Lastname%1, Firstname M").arg(i),
                                       QStringLiteral("%1 Long Avenue Name Apt %2, Town %3 IL 6%4")
                                           .arg(i)
                                           .arg(i % 40)
                                           .arg(g)
                                           .arg(i % 10000, 4, 10, QLatin1Char('0')),
                                       QStringLiteral("123-45-%1").arg(i % 10000, 4, 10, QLatin1Char('0')),
                                       QStringLiteral("(217) 555-0100")};
        d.blocks << heading << table;
    }
    return d;
}

}   // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int clients = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 50000;
    const Report::Document document = clientList(clients);
    QTemporaryDir dir;

    int pages = 0;
    Bench::Print("render_layout",
                 Bench::MedianMs(1,
                                 [&] {
                                     QPdfWriter writer(dir.filePath(QStringLiteral("layout.pdf")));
                                     writer.setPageLayout(ReportRenderer::pageLayout());
                                     writer.setResolution(600);
                                     pages = int(ReportRenderer::layout(document, &writer).size());
                                 }),
                 "ms");
    Bench::Print("render_pages", pages, "pages");
    const QString path = dir.filePath(QStringLiteral("client-list.pdf"));
    QString error;
    Bench::Print("render_pdf",
                 Bench::MedianMs(1,
                                 [&] {
                                     if (!ReportRenderer::writePdf(document, path, {}, &error))
                                         qFatal("bench_render: %s", qPrintable(error));
                                 }),
                 "ms");
    Bench::Print("render_pdf_size", double(QFileInfo(path).size()) / 1e6, "MB");
    Bench::Print("render_peak_rss", Bench::PeakRssMb(), "MB");
    return 0;
}
