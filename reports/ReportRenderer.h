#pragma once

#include "ReportDocument.h"
#include "ReportLayout.h"

#include <QPageLayout>

class QPagedPaintDevice;
class QPaintDevice;

// Turns a report document into pages: the organisation header on every page,
// tables continued with their headings, "Page N of M" and the run date below.
namespace ReportRenderer {

// Letter, portrait: the page every report is laid out for.
QPageLayout pageLayout();
// The document's page: on its side when the document asks for it.
QPageLayout pageLayout(const Report::Document &document);

// Which blocks, and which of their rows, land on which page of the device.
QList<ReportLayout::Page> layout(const Report::Document &document, const QPaintDevice *device);

// Draws every page onto the device (a QPrinter or a QPdfWriter), calling progress
// before each page. False when cancelled through progress or when the device
// cannot be painted on (*error says why).
bool render(const Report::Document &document, QPagedPaintDevice *device, const Report::Progress &progress, QString *error);

// Writes the pages to a PDF file; the file appears whole or not at all.
bool writePdf(const Report::Document &document, const QString &path, const Report::Progress &progress, QString *error);

}   // namespace ReportRenderer
