#pragma once

#include <QPageLayout>
#include <QString>
#include <functional>

class QPdfWriter;

// Writes a PDF file the way every printed output does: at 600 dpi, owner-only,
// through a file beside the target that takes its name in one step, so the file
// appears whole or not at all.
namespace PdfFile {

// draw paints the pages on the writer; false (with *error set) abandons the file.
bool write(const QString &path, const QPageLayout &layout, const QString &title, const std::function<bool(QPdfWriter &, QString *)> &draw,
           QString *error);

}   // namespace PdfFile
