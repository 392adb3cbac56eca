#include "ReportDocument.h"

namespace Report {

// Placeholder until the report builders land.
Result build(const Parameters &, const Progress &)
{
    Result r;
    r.error = QStringLiteral("This report is not available yet.");
    return r;
}

}   // namespace Report
