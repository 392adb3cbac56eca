#include "LabelPictures.h"

#include "LabelLayout.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

LabelSheetPicture::LabelSheetPicture(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picPreview"));
    setMinimumSize(140, 180);
    setCursor(Qt::PointingHandCursor);
    setToolTip(tr("Click the label to start printing on."));
}

void LabelSheetPicture::LoadLabelPreview(const Labels::Template &sheet)
{
    m_sheet = sheet;
    m_loaded = Labels::validate(sheet).ok();
    update();
}

void LabelSheetPicture::setStartPosition(int position)
{
    m_start = position;
    update();
}

QRectF LabelSheetPicture::paperRect() const
{
    const QSizeF paper = Labels::paperInches(m_sheet.paper);
    const QRectF area = QRectF(rect()).adjusted(4, 4, -4, -4);
    const double scale = std::min(area.width() / paper.width(), area.height() / paper.height());
    const QSizeF size = paper * scale;
    return QRectF(area.center() - QPointF(size.width() / 2, size.height() / 2), size);
}

QRectF LabelSheetPicture::shapeOf(int position) const
{
    const QRectF paper = paperRect();
    const double scale = paper.width() / (Labels::paperInches(m_sheet.paper).width() * Labels::PointsPerInch);
    const QRectF label = Labels::labelRect(m_sheet, position);
    return QRectF(paper.topLeft() + label.topLeft() * scale, label.size() * scale);
}

int LabelSheetPicture::positionAt(const QPointF &point) const
{
    if (!m_loaded)
        return 0;
    for (int position = 1; position <= m_sheet.perSheet(); ++position)
        if (shapeOf(position).contains(point))
            return position;
    return 0;
}

void LabelSheetPicture::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF paper = paperRect();
    p.fillRect(paper, Qt::white);
    p.setPen(palette().color(QPalette::Mid));
    p.drawRect(paper);
    if (!m_loaded)
        return;
    QFont small = font();
    small.setPixelSize(std::max(6, int(shapeOf(1).height() * 0.55)));
    p.setFont(small);
    for (int position = 1; position <= m_sheet.perSheet(); ++position) {
        const QRectF shape = shapeOf(position);
        const QColor fill = position < m_start ? QColor(190, 190, 190)
            : position == m_start              ? palette().color(QPalette::Highlight)
                                               : QColor(235, 242, 250);
        p.setPen(QPen(QColor(120, 130, 140), 0.5));
        p.setBrush(fill);
        p.drawRoundedRect(shape, 1.5, 1.5);
        if (shape.height() >= 7 && shape.width() >= 12) {
            p.setPen(position == m_start ? palette().color(QPalette::HighlightedText) : QColor(60, 60, 60));
            p.drawText(shape, Qt::AlignCenter, QString::number(position));
        }
    }
}

void LabelSheetPicture::mousePressEvent(QMouseEvent *event)
{
    if (const int position = positionAt(event->position()); position > 0 && event->button() == Qt::LeftButton)
        Q_EMIT positionClicked(position);
}

LabelLegendPicture::LabelLegendPicture(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picLegend"));
    setMinimumSize(240, 210);
}

namespace {

// A measure line with arrow heads at both ends and its name beside it.
void measure(QPainter &p, const QPointF &from, const QPointF &to, const QString &text, const QPointF &textAt)
{
    p.drawLine(from, to);
    const QPointF d = to - from;
    const double length = std::hypot(d.x(), d.y());
    if (length < 1)
        return;
    const QPointF u = d / length, n(-u.y(), u.x());
    for (const auto &[tip, dir] : {std::pair {from, u}, std::pair {to, -u}}) {
        QPainterPath head;
        head.moveTo(tip);
        head.lineTo(tip + dir * 6 + n * 3);
        head.lineTo(tip + dir * 6 - n * 3);
        head.closeSubpath();
        p.fillPath(head, p.pen().color());
    }
    p.drawText(textAt, text);
}

}   // namespace

void LabelLegendPicture::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(2, 2, -2, -2);
    // The corner of a sheet: two labels across, two down.
    const double side = area.width() * 0.22, top = area.height() * 0.2;
    const double width = area.width() * 0.34, height = area.height() * 0.26;
    const double hPitch = width + area.width() * 0.06, vPitch = height + area.height() * 0.07;
    const QPointF corner = area.topLeft();
    p.fillRect(area, Qt::white);
    p.setPen(QColor(150, 150, 150));
    p.drawLine(corner, corner + QPointF(area.width(), 0));
    p.drawLine(corner, corner + QPointF(0, area.height()));
    p.setBrush(QColor(235, 242, 250));
    for (int row = 0; row < 2; ++row)
        for (int column = 0; column < 2; ++column)
            p.drawRoundedRect(QRectF(corner + QPointF(side + column * hPitch, top + row * vPitch), QSizeF(width, height)), 3, 3);
    QFont small = font();
    small.setPointSizeF(std::max(6.0, font().pointSizeF() - 1));
    p.setFont(small);
    p.setPen(QColor(30, 80, 160));
    const QPointF first = corner + QPointF(side, top);
    measure(p, corner + QPointF(side + width * 0.5, 0), first + QPointF(width * 0.5, 0), tr("Top margin"),
            corner + QPointF(side + width * 0.5 + 4, top * 0.6));
    measure(p, corner + QPointF(0, top + height * 0.3), first + QPointF(0, height * 0.3), tr("Side margin"),
            corner + QPointF(2, top + height * 0.3 - 4));
    measure(p, first + QPointF(width + 8, 0), first + QPointF(width + 8, height), tr("Height"), first + QPointF(width + 11, height * 0.55));
    measure(p, first + QPointF(0, height + 8), first + QPointF(width, height + 8), tr("Width"), first + QPointF(width * 0.35, height + 20));
    p.setPen(QColor(170, 60, 40));
    measure(p, first + QPointF(0, -8), first + QPointF(hPitch, -8), tr("Horizontal pitch"), first + QPointF(hPitch * 0.3, -11));
    measure(p, first + QPointF(-8, height * 0.7 + vPitch * 0), first + QPointF(-8, height * 0.7 + vPitch), tr("Vertical pitch"),
            corner + QPointF(2, top + height * 0.7 + vPitch * 0.6));
}
