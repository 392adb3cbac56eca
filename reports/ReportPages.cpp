#include "ReportPages.h"

#include "ReportChart.h"

#include <QPainter>

using Report::Block;
using ReportLayout::Piece;

ReportPages::ReportPages(const Report::Document &document, const ReportLayout::Geometry &geometry) : m_document(document), m_g(geometry)
{
    // A logo file that is missing or unreadable leaves its space empty.
    if (!document.header.logoPath.isEmpty())
        m_logo.load(document.header.logoPath);
}

void ReportPages::draw(QPainter &painter, const ReportLayout::Page &page, int number, int count) const
{
    drawHeader(painter);
    for (const Piece &piece : page.pieces)
        drawPiece(painter, piece);
    drawFooter(painter, number, count);
}

void ReportPages::drawHeader(QPainter &painter) const
{
    const ReportStyle::Fonts &f = m_g.fonts();
    const QRectF header = m_g.header();
    if (!m_logo.isNull()) {
        QSizeF size = QSizeF(m_logo.size()).scaled(QSizeF(m_g.logoSpace() - f.points(8), m_g.logoHeight()), Qt::KeepAspectRatio);
        painter.drawImage(QRectF(header.topLeft(), size), m_logo);
    }
    const double width = header.width() - 2 * m_g.logoSpace();
    double y = header.top();
    auto line = [&](const QFont &font, const QString &text, double left, double w) {
        if (text.isEmpty())
            return;
        const double h = m_g.textHeight(font, text, w);
        painter.setFont(font);
        painter.drawText(QRectF(left, y, w, h), Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, text);
        y += h;
    };
    const double left = header.left() + m_g.logoSpace();
    line(f.name, m_document.header.organizationName, left, width);
    line(f.address, QString(m_document.header.organizationAddress).replace(QLatin1String("\r\n"), QLatin1String("\n")), left, width);
    if (!m_document.header.logoPath.isEmpty())
        y = std::max(y, header.top() + m_g.logoHeight());
    y += f.points(8);
    line(f.title, m_document.title, header.left(), header.width());
    line(f.title2, m_document.title2, header.left(), header.width());
    line(f.caption, m_document.dateCaption, header.left(), header.width());
    const double rule = header.bottom() - f.points(5);
    painter.setPen(QPen(Qt::black, f.points(1)));
    painter.drawLine(QPointF(header.left(), rule), QPointF(header.right(), rule));
}

void ReportPages::drawFooter(QPainter &painter, int number, int count) const
{
    const ReportStyle::Fonts &f = m_g.fonts();
    const QRectF footer = m_g.footer();
    painter.setPen(QPen(Qt::black, f.points(0.5)));
    painter.drawLine(QPointF(footer.left(), footer.top()), QPointF(footer.right(), footer.top()));
    painter.setFont(f.footer);
    const QRectF text = footer.adjusted(0, f.points(4), 0, 0);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignTop, m_document.runDate.toString(QStringLiteral("MM/dd/yyyy")));
    painter.drawText(text, Qt::AlignRight | Qt::AlignTop, QObject::tr("Page %1 of %2").arg(number).arg(count));
}

void ReportPages::drawPiece(QPainter &painter, const Piece &piece) const
{
    const Block &block = m_document.blocks[piece.block];
    const ReportStyle::Fonts &f = m_g.fonts();
    const QRectF body = m_g.body();
    const double y = body.top() + piece.top;
    painter.save();
    // Whatever is taller than a page is cut at the foot of the body.
    painter.setClipRect(QRectF(body.left(), y, body.width(), std::min(piece.height, body.bottom() - y)));
    painter.setPen(Qt::black);
    switch (block.kind) {
    case Block::Heading:
        painter.setFont(block.level == 0 ? f.groupHeading : f.recordHeading);
        painter.drawText(QRectF(body.left(), y, body.width(), piece.height), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                         ReportLayout::Geometry::headingText(block, piece.continued));
        break;
    case Block::Fields:
        drawFields(painter, block, piece, y);
        break;
    case Block::Table:
        drawTable(painter, block, piece, y);
        break;
    case Block::Totals:
        drawTotals(painter, block, y);
        break;
    case Block::Text: {
        painter.setFont(f.body);
        double top = y;
        for (int i = 0; i < piece.count; ++i) {
            painter.drawText(QRectF(body.left(), top, body.width(), piece.unitHeights[i]), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                             block.lines[piece.first + i]);
            top += piece.unitHeights[i];
        }
        break;
    }
    case Block::Chart: {
        const double width = m_g.chartWidth(block);
        ReportChart::draw(painter, QRectF(body.left() + (body.width() - width) / 2, y, width, piece.height), block, f.dpi);
        break;
    }
    case Block::PageBreak:
        break;
    }
    painter.restore();
}

void ReportPages::drawTable(QPainter &painter, const Block &block, const Piece &piece, double y) const
{
    const ReportStyle::Fonts &f = m_g.fonts();
    const QList<double> edges = m_g.columnEdges(block);
    const double pad = m_g.cellPadding();
    const QRectF body = m_g.body();
    const double headings = m_g.repeatedHeight(block);
    // The column headings, on a shaded band with a rule beneath, on every page the table reaches.
    painter.fillRect(QRectF(body.left(), y, body.width(), headings - f.points(1)), QColor(225, 225, 225));
    painter.setPen(QPen(Qt::black, f.points(0.75)));
    painter.drawLine(QPointF(body.left(), y + headings - f.points(1)), QPointF(body.right(), y + headings - f.points(1)));
    painter.setFont(f.bold);
    for (int c = 0; c < block.columns.size(); ++c) {
        const QRectF cell(edges[c] + pad, y + f.points(2), edges[c + 1] - edges[c] - 2 * pad, headings - f.points(3));
        painter.drawText(cell, int(block.columns[c].alignment) | Qt::AlignTop | Qt::TextWordWrap, block.columns[c].heading);
    }
    painter.setFont(f.body);
    double top = y + headings;
    for (int i = 0; i < piece.count; ++i) {
        const QStringList &row = block.rows[piece.first + i];
        // Every other row lightly shaded, so that the eye stays on its line across a wide page.
        const bool total = block.lastRowIsTotal && piece.first + i == block.rows.size() - 1;
        if ((piece.first + i) % 2 == 1 && !total)
            painter.fillRect(QRectF(body.left(), top, body.width(), piece.unitHeights[i]), QColor(244, 244, 244));
        if (total) {
            painter.drawLine(QPointF(body.left(), top), QPointF(body.right(), top));
            painter.setFont(f.bold);
        }
        for (int c = 0; c < std::min<int>(row.size(), block.columns.size()); ++c) {
            const QRectF cell(edges[c] + pad, top + f.points(1.5), edges[c + 1] - edges[c] - 2 * pad, piece.unitHeights[i] - f.points(1.5));
            painter.drawText(cell, int(block.columns[c].alignment) | Qt::AlignTop | Qt::TextWordWrap, row[c]);
        }
        top += piece.unitHeights[i];
    }
    painter.setFont(f.body);
}

void ReportPages::drawFields(QPainter &painter, const Block &block, const Piece &piece, double y) const
{
    const ReportStyle::Fonts &f = m_g.fonts();
    const int columns = std::max(1, block.fieldColumns);
    const double columnWidth = m_g.fieldColumnWidth(block);
    const double labelWidth = m_g.fieldLabelWidth(block);
    const double valueLeft = labelWidth + f.points(4);
    double top = y;
    for (int i = 0; i < piece.count; ++i) {
        const int line = piece.first + i;
        for (int c = 0; c < columns && line * columns + c < block.fields.size(); ++c) {
            const auto &field = block.fields[line * columns + c];
            const double left = m_g.body().left() + c * columnWidth;
            painter.setFont(f.bold);
            painter.drawText(QRectF(left, top, labelWidth, piece.unitHeights[i]), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                             field.first);
            painter.setFont(f.body);
            painter.drawText(QRectF(left + valueLeft, top, columnWidth - valueLeft - f.points(4), piece.unitHeights[i]),
                             Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, field.second);
        }
        top += piece.unitHeights[i];
    }
}

void ReportPages::drawTotals(QPainter &painter, const Block &block, double y) const
{
    const ReportStyle::Fonts &f = m_g.fonts();
    const QFontMetricsF fm = f.metrics(f.bold);
    double valueWidth = 0;
    for (const auto &field : block.fields)
        valueWidth = std::max(valueWidth, fm.horizontalAdvance(field.second));
    const QRectF body = m_g.body();
    const double valueLeft = body.right() - m_g.cellPadding() - valueWidth;
    painter.setFont(f.bold);
    painter.setPen(QPen(Qt::black, f.points(0.5)));
    painter.drawLine(QPointF(body.left() + body.width() / 2, y), QPointF(body.right(), y));
    double top = y + f.points(1);
    for (const auto &field : block.fields) {
        painter.drawText(QRectF(body.left(), top, valueLeft - body.left() - f.points(8), fm.height()), Qt::AlignRight | Qt::AlignTop,
                         field.first);
        painter.drawText(QRectF(valueLeft, top, valueWidth, fm.height()), Qt::AlignRight | Qt::AlignTop, field.second);
        top += m_g.totalsLineHeight();
    }
}
