#include "ReportLayout.h"

#include <QObject>
#include <QPaintDevice>

#include <algorithm>

using Report::Block;

namespace ReportLayout {

Geometry::Geometry(const Report::Document &document, const QPaintDevice *device)
    : m_document(document)
    , m_fonts(device)
    , m_page(0, 0, device->width(), device->height())
{
    const double headerBottom = headerHeight();
    const double footerHeight = m_fonts.points(6) + m_fonts.metrics(m_fonts.footer).height();
    m_header = QRectF(m_page.left(), m_page.top(), m_page.width(), headerBottom);
    m_footer = QRectF(m_page.left(), m_page.bottom() - footerHeight, m_page.width(), footerHeight);
    m_body = QRectF(m_page.left(), m_header.bottom(), m_page.width(), m_footer.top() - m_header.bottom() - m_fonts.points(6));
}

double Geometry::logoSpace() const
{
    return m_document.header.logoPath.isEmpty() ? 0.0 : m_fonts.dpi * 1.7;
}

double Geometry::headerHeight() const
{
    const Report::PageHeader &h = m_document.header;
    const double width = m_page.width() - 2 * logoSpace();
    double organisation = 0;
    if (!h.organizationName.isEmpty())
        organisation += textHeight(m_fonts.name, h.organizationName, width);
    if (!h.organizationAddress.isEmpty())
        organisation
            += textHeight(m_fonts.address, QString(h.organizationAddress).replace(QLatin1String("\r\n"), QLatin1String("\n")), width);
    double y = std::max(organisation, h.logoPath.isEmpty() ? 0.0 : logoHeight()) + m_fonts.points(8);
    y += textHeight(m_fonts.title, m_document.title, m_page.width());
    if (!m_document.title2.isEmpty())
        y += textHeight(m_fonts.title2, m_document.title2, m_page.width());
    if (!m_document.dateCaption.isEmpty())
        y += textHeight(m_fonts.caption, m_document.dateCaption, m_page.width());
    return y + m_fonts.points(10);   // the rule under it, with room either side
}

double Geometry::textHeight(const QFont &font, const QString &text, double width) const
{
    const QFontMetricsF fm = m_fonts.metrics(font);
    if (!text.contains(QLatin1Char('\n')) && fm.horizontalAdvance(text) <= width)
        return fm.height();
    return fm.boundingRect(QRectF(0, 0, width, 1e9), Qt::TextWordWrap, text).height();
}

int Geometry::units(const Block &block) const
{
    switch (block.kind) {
    case Block::Heading:
    case Block::Chart:
    case Block::Totals:   // totals are read together: never parted by a page break
        return 1;
    case Block::Fields:
        return (int(block.fields.size()) + std::max(1, block.fieldColumns) - 1) / std::max(1, block.fieldColumns);
    case Block::Table:
        return int(block.rows.size());
    case Block::Text:
        return int(block.lines.size());
    case Block::PageBreak:
        break;
    }
    return 0;
}

double Geometry::fieldColumnWidth(const Block &block) const
{
    return m_body.width() / std::max(1, block.fieldColumns);
}

double Geometry::fieldLabelWidth(const Block &block) const
{
    const QFontMetricsF fm = m_fonts.metrics(m_fonts.bold);
    double widest = 0;
    for (const auto &field : block.fields)
        widest = std::max(widest, fm.horizontalAdvance(field.first));
    return std::min(widest + m_fonts.points(6), fieldColumnWidth(block) * 0.45);
}

QList<double> Geometry::columnEdges(const Block &block) const
{
    int total = 0;
    for (const Report::Column &c : block.columns)
        total += std::max(1, c.weight);
    QList<double> edges {m_body.left()};
    int sum = 0;
    for (const Report::Column &c : block.columns) {
        sum += std::max(1, c.weight);
        edges << m_body.left() + m_body.width() * sum / std::max(1, total);
    }
    return edges;
}

double Geometry::chartWidth(const Block &block) const
{
    return block.pie ? std::min(m_body.width(), m_fonts.dpi * 6.5) : m_body.width();
}

double Geometry::repeatedHeight(const Block &block) const
{
    if (block.kind != Block::Table)
        return 0;
    const QList<double> edges = columnEdges(block);
    double tallest = 0;
    for (int c = 0; c < block.columns.size(); ++c)
        tallest = std::max(tallest, textHeight(m_fonts.bold, block.columns[c].heading, edges[c + 1] - edges[c] - 2 * cellPadding()));
    return tallest + m_fonts.points(5);
}

double Geometry::unitHeight(const Block &block, int unit) const
{
    switch (block.kind) {
    case Block::Heading:
        return headingHeight(block, false);
    case Block::Fields: {
        const int columns = std::max(1, block.fieldColumns);
        const double labelWidth = fieldLabelWidth(block);
        const double valueWidth = fieldColumnWidth(block) - labelWidth - m_fonts.points(8);
        double tallest = 0;
        for (int i = unit * columns; i < std::min<int>(block.fields.size(), (unit + 1) * columns); ++i) {
            const auto &field = block.fields[i];
            tallest = std::max(
                {tallest, textHeight(m_fonts.bold, field.first, labelWidth), textHeight(m_fonts.body, field.second, valueWidth)});
        }
        return tallest + m_fonts.points(2);
    }
    case Block::Table: {
        const QList<double> edges = columnEdges(block);
        const QStringList &row = block.rows[unit];
        double tallest = m_fonts.metrics(m_fonts.body).height();
        for (int c = 0; c < std::min<int>(row.size(), block.columns.size()); ++c)
            tallest = std::max(tallest, textHeight(m_fonts.body, row[c], edges[c + 1] - edges[c] - 2 * cellPadding()));
        return tallest + m_fonts.points(3);
    }
    case Block::Totals:
        return block.fields.size() * totalsLineHeight() + m_fonts.points(2);
    case Block::Text:
        return textHeight(m_fonts.body, block.lines[unit], m_body.width()) + m_fonts.points(2);
    case Block::Chart: {
        const double inch = m_fonts.dpi;
        if (block.pie)
            return std::min(m_body.height(), 3.0 * inch);
        // Bars lie on their side: one line each, so that long names stay readable.
        return std::min(m_body.height(), std::max(2.2 * inch, 0.9 * inch + 0.26 * inch * block.chartItems.size()));
    }
    case Block::PageBreak:
        break;
    }
    return 0;
}

QString Geometry::headingText(const Block &block, bool continued)
{
    const QString text = block.lines.join(QLatin1Char('\n'));
    return continued ? QObject::tr("%1 (continued)").arg(text) : text;
}

double Geometry::headingHeight(const Block &block, bool continued) const
{
    const QFont &font = block.level == 0 ? m_fonts.groupHeading : m_fonts.recordHeading;
    return textHeight(font, headingText(block, continued), m_body.width()) + m_fonts.points(3);
}

double Geometry::spaceBefore(const Block &block) const
{
    switch (block.kind) {
    case Block::Heading:
        return m_fonts.points(block.level == 0 ? 12 : 8);
    case Block::Totals:
        return m_fonts.points(2);
    case Block::Chart:
        return m_fonts.points(10);
    default:
        return m_fonts.points(5);
    }
}

namespace {

class Paginator
{
public:
    Paginator(const Report::Document &document, const Geometry &geometry)
        : m_blocks(document.blocks)
        , m_g(geometry)
        , m_room(geometry.body().height())
    { }

    QList<Page> run()
    {
        m_pages = {Page {}};
        for (int i = 0; i < m_blocks.size(); ++i)
            place(i);
        return m_pages;
    }

private:
    // A page with nothing but repeated headings still takes the next unit, however tall.
    bool pageEmpty() const
    {
        for (const Piece &p : m_pages.last().pieces)
            if (!p.continued)
                return false;
        return true;
    }
    void newPage()
    {
        m_pages.append(Page {});
        m_y = 0;
    }

    // Whether block i stays on the page of what follows it: blocks marked so, and a
    // table with the chart drawn from it.
    bool kept(int i) const
    {
        const Block &b = m_blocks[i];
        return b.keepWithNext || (b.kind == Block::Table && i + 1 < m_blocks.size() && m_blocks[i + 1].kind == Block::Chart);
    }

    double wholeHeight(const Block &b) const
    {
        double h = m_g.repeatedHeight(b);
        for (int u = 0; u < m_g.units(b); ++u)
            h += m_g.unitHeight(b, u);
        return h;
    }

    double firstPartHeight(const Block &b) const { return m_g.repeatedHeight(b) + (m_g.units(b) > 0 ? m_g.unitHeight(b, 0) : 0.0); }

    // The height from block i down to the first part of the first block not kept
    // with it. whole: every kept block entire; else only what may never be parted,
    // a heading and the first part of what it heads.
    double keptHeight(int i, bool whole, int depth = 0) const
    {
        const Block &b = m_blocks[i];
        const bool entire = whole || b.kind == Block::Heading;
        double h = entire ? wholeHeight(b) : firstPartHeight(b);
        if (!entire || !kept(i) || i + 1 >= m_blocks.size() || m_blocks[i + 1].kind == Block::PageBreak)
            return h;
        const Block &next = m_blocks[i + 1];
        h += m_g.spaceBefore(next);
        if (kept(i + 1) && depth < 8)
            return h + keptHeight(i + 1, whole, depth + 1);
        return h + firstPartHeight(next);
    }

    // A kept block moves to a new page when all it is kept with fits there but not
    // here; when that is more than a page, when at least its first parts do not fit here.
    bool breakBefore(int i, double gap) const
    {
        if (!kept(i) || pageEmpty())
            return false;
        const double whole = keptHeight(i, true);
        if (whole <= m_room)
            return m_y + gap + whole > m_room;
        const double least = keptHeight(i, false);
        return least <= m_room && m_y + gap + least > m_room;
    }

    void place(int i)
    {
        const Block &b = m_blocks[i];
        if (b.kind == Block::PageBreak) {
            if (!pageEmpty())
                newPage();
            return;
        }
        double gap = pageEmpty() ? 0.0 : m_g.spaceBefore(b);
        if (breakBefore(i, gap)) {
            newPage();
            gap = 0;
        }
        const int n = m_g.units(b);
        const double repeated = m_g.repeatedHeight(b);
        if (n == 0) {
            if (repeated > 0 && m_y + gap + repeated > m_room && !pageEmpty()) {
                newPage();
                gap = 0;
            }
            m_pages.last().pieces.append({i, 0, 0, m_y + gap, repeated, {}});
            m_y += gap + repeated;
            return;
        }
        int u = 0;
        double next = m_g.unitHeight(b, 0);
        while (u < n) {
            Piece piece {i, u, 0, m_y + gap, repeated, {}};
            while (u < n && m_y + gap + piece.height + next <= m_room) {
                piece.height += next;
                piece.unitHeights << next;
                ++u;
                next = u < n ? m_g.unitHeight(b, u) : 0.0;
            }
            if (piece.unitHeights.isEmpty()) {
                if (!pageEmpty()) {
                    newPage();
                    gap = 0;
                    continue;
                }
                // Taller than a whole page: it goes alone and is cut at the foot.
                piece.height += next;
                piece.unitHeights << next;
                ++u;
                next = u < n ? m_g.unitHeight(b, u) : 0.0;
            }
            piece.count = int(piece.unitHeights.size());
            m_pages.last().pieces.append(piece);
            m_y += gap + piece.height;
            if (u < n) {
                newPage();
                repeatHeadings(i);
                gap = pageEmpty() && m_y == 0 ? 0.0 : m_g.spaceBefore(b);
            }
        }
    }

    // The run of kept headings right above block i, repeated at the top of a new page.
    void repeatHeadings(int i)
    {
        int first = i;
        while (first > 0 && m_blocks[first - 1].kind == Block::Heading && m_blocks[first - 1].keepWithNext)
            --first;
        for (int h = first; h < i; ++h) {
            const double top = m_y + (h == first ? 0.0 : m_g.spaceBefore(m_blocks[h]));
            const double height = m_g.headingHeight(m_blocks[h], true);
            m_pages.last().pieces.append({h, 0, 1, top, height, {height}, true});
            m_y = top + height;
        }
    }

    const QList<Block> &m_blocks;
    const Geometry &m_g;
    const double m_room;
    QList<Page> m_pages;
    double m_y = 0;
};

}   // namespace

QList<Page> paginate(const Report::Document &document, const Geometry &geometry)
{
    return Paginator(document, geometry).run();
}

}   // namespace ReportLayout
