#include "ReportRenderer.h"

#include "ReportLayout.h"
#include "PdfFile.h"
#include "ReportPages.h"

#include <QApplication>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>

namespace ReportRenderer {

namespace {

bool hasCharts(const Report::Document &document)
{
    for (const Report::Block &b : document.blocks)
        if (b.kind == Report::Block::Chart)
            return true;
    return false;
}

}   // namespace

QPageLayout pageLayout()
{
    return ReportStyle::pageLayout();
}

QPageLayout pageLayout(const Report::Document &document)
{
    return ReportStyle::pageLayout(document.landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
}

QList<ReportLayout::Page> layout(const Report::Document &document, const QPaintDevice *device)
{
    return ReportLayout::paginate(document, ReportLayout::Geometry(document, device));
}

bool render(const Report::Document &document, QPagedPaintDevice *device, const Report::Progress &progress, QString *error)
{
    // Charts are graphics items: they need the widgets' application object.
    if (hasCharts(document) && !qobject_cast<QApplication *>(QCoreApplication::instance())) {
        *error = QObject::tr("Charts can be drawn only by a program started with a graphical application object.");
        return false;
    }
    QPainter painter;
    if (!painter.begin(device)) {
        *error = QObject::tr("The printer or file could not be opened for the report's pages.");
        return false;
    }
    const ReportLayout::Geometry geometry(document, device);
    const QList<ReportLayout::Page> pages = ReportLayout::paginate(document, geometry);
    const ReportPages drawer(document, geometry);
    for (int i = 0; i < pages.size(); ++i) {
        if (progress && !progress(i, pages.size())) {
            painter.end();
            *error = QObject::tr("The report was cancelled.");
            return false;
        }
        if (i > 0 && !device->newPage()) {
            painter.end();
            *error = QObject::tr("The printer or file refused a new page.");
            return false;
        }
        drawer.draw(painter, pages[i], i + 1, int(pages.size()));
    }
    if (progress)
        progress(pages.size(), pages.size());
    if (!painter.end()) {
        *error = QObject::tr("The report's pages could not be finished.");
        return false;
    }
    return true;
}

bool writePdf(const Report::Document &document, const QString &path, const Report::Progress &progress, QString *error)
{
    return PdfFile::write(
        path, pageLayout(document), document.caption,
        [&](QPdfWriter &writer, QString *reason) { return render(document, &writer, progress, reason); }, error);
}

}   // namespace ReportRenderer
