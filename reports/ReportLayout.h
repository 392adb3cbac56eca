#pragma once

#include "ReportDocument.h"
#include "ReportStyle.h"

#include <QList>
#include <QRectF>

class QPaintDevice;

// Where each part of a report lands: which blocks, and which of their rows, go
// on which page, measured in the device's own units. Drawing follows it exactly.
namespace ReportLayout {

// One block, or the part of it that fits on a page.
struct Piece
{
    int block = -1;   // index in the document's blocks
    int first = 0;   // first unit on this page: a table row, a line of fields, a paragraph
    int count = 0;   // units on this page
    double top = 0;   // from the top of the page's body
    double height = 0;   // the repeated part and the units together
    QList<double> unitHeights;
    bool continued = false;   // a heading repeated above the rest of what it heads
};

struct Page
{
    QList<Piece> pieces;
};

// The page's regions and how the blocks are measured, for one device.
class Geometry
{
public:
    Geometry(const Report::Document &document, const QPaintDevice *device);

    const ReportStyle::Fonts &fonts() const { return m_fonts; }
    QRectF page() const { return m_page; }
    QRectF header() const { return m_header; }
    QRectF body() const { return m_body; }
    QRectF footer() const { return m_footer; }
    double logoHeight() const { return m_fonts.dpi * 0.8; }
    // Room kept for the logo at each side of the organisation's name; 0 without a logo.
    double logoSpace() const;

    // The parts a block splits into, the height of each, and what repeats above
    // the block's part on every page (a table's column headings).
    int units(const Report::Block &block) const;
    double unitHeight(const Report::Block &block, int unit) const;
    double repeatedHeight(const Report::Block &block) const;
    double spaceBefore(const Report::Block &block) const;

    // A heading's text, marked when it is repeated on a page where its table goes on.
    static QString headingText(const Report::Block &block, bool continued);
    double headingHeight(const Report::Block &block, bool continued) const;

    // Tables: the left edges of the columns and the right edge of the last.
    QList<double> columnEdges(const Report::Block &block) const;
    double cellPadding() const { return m_fonts.points(4.5); }
    double totalsLineHeight() const { return m_fonts.metrics(m_fonts.bold).height() + m_fonts.points(2); }
    // Fields: the width given to the labels.
    double fieldLabelWidth(const Report::Block &block) const;
    double fieldColumnWidth(const Report::Block &block) const;
    double chartWidth(const Report::Block &block) const;
    // Height of text wrapped at the width.
    double textHeight(const QFont &font, const QString &text, double width) const;

private:
    double headerHeight() const;

    const Report::Document &m_document;
    ReportStyle::Fonts m_fonts;
    QRectF m_page, m_header, m_body, m_footer;
};

// Lays the blocks out top to bottom: a table that runs past the foot of a page
// goes on with its headings repeated; a block marked keepWithNext moves to the
// next page rather than end one; a page break starts a new page. The headings
// right above a block that goes on onto a new page are repeated there, "(continued)".
QList<Page> paginate(const Report::Document &document, const Geometry &geometry);

}   // namespace ReportLayout
