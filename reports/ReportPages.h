#pragma once

#include "ReportLayout.h"

#include <QImage>

class QPainter;

// Draws laid-out pages: the organisation header and the titles, the pieces of
// the blocks where the layout put them, the run date and "Page N of M".
class ReportPages
{
public:
    ReportPages(const Report::Document &document, const ReportLayout::Geometry &geometry);

    void draw(QPainter &painter, const ReportLayout::Page &page, int number, int count) const;

private:
    void drawHeader(QPainter &painter) const;
    void drawFooter(QPainter &painter, int number, int count) const;
    void drawPiece(QPainter &painter, const ReportLayout::Piece &piece) const;
    void drawTable(QPainter &painter, const Report::Block &block, const ReportLayout::Piece &piece, double y) const;
    void drawFields(QPainter &painter, const Report::Block &block, const ReportLayout::Piece &piece, double y) const;
    void drawTotals(QPainter &painter, const Report::Block &block, double y) const;

    const Report::Document &m_document;
    const ReportLayout::Geometry &m_g;
    QImage m_logo;
};
