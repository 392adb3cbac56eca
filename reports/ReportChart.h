#pragma once

#include "ReportDocument.h"

#include <QRectF>

class QPainter;

// Charts of a report's breakdowns, drawn as vectors onto the page.
namespace ReportChart {

// Draws the block's items as a bar chart (a pie when block.pie) filling `target`;
// dpi is the device's, so that the chart's lettering prints at its point size.
void draw(QPainter &painter, const QRectF &target, const Report::Block &block, double dpi);

}   // namespace ReportChart
