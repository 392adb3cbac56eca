#include "ReportRenderer.h"

// Placeholder until the renderer lands.
namespace ReportRenderer {

bool render(const Report::Document &, QPagedPaintDevice *, const Report::Progress &, QString *error)
{
    *error = QStringLiteral("Reports cannot be printed yet.");
    return false;
}

bool writePdf(const Report::Document &, const QString &, const Report::Progress &, QString *error)
{
    *error = QStringLiteral("Reports cannot be printed yet.");
    return false;
}

}   // namespace ReportRenderer
