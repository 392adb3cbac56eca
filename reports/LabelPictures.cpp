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

// A measure line with arrow heads at both ends.
void measure(QPainter &p, const QPointF &from, const QPointF &to)
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
}

}   // namespace

void LabelLegendPicture::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(2, 2, -2, -2);
    const double w = area.width(), h = area.height();
    // The top-left corner of a sheet: two labels across, two down.
    const double side = 0.30 * w, top = 0.22 * h, width = 0.30 * w, height = 0.27 * h;
    const double hPitch = width + 0.06 * w, vPitch = height + 0.10 * h;
    const QPointF corner = area.topLeft();
    const auto at = [&](double x, double y) { return corner + QPointF(x, y); };
    p.fillRect(area, Qt::white);
    p.setPen(QColor(150, 150, 150));
    p.drawLine(at(0, 0), at(w, 0));
    p.drawLine(at(0, 0), at(0, h));
    p.setBrush(QColor(235, 242, 250));
    for (int row = 0; row < 2; ++row)
        for (int column = 0; column < 2; ++column)
            p.drawRoundedRect(QRectF(at(side + column * hPitch, top + row * vPitch), QSizeF(width, height)), 3, 3);
    QFont small = font();
    small.setPointSizeF(std::max(6.0, font().pointSizeF() - 1));
    p.setFont(small);
    const auto text
        = [&](const QRectF &box, int flags, const QString &words) { p.drawText(box.translated(corner), flags | Qt::TextWordWrap, words); };

    p.setPen(QColor(30, 80, 160));
    measure(p, at(side + width / 2, 0), at(side + width / 2, top));
    text(QRectF(side + width / 2 + 4, 0, w, top), Qt::AlignVCenter, tr("Top margin"));
    const double sideY = top + vPitch + height / 2;
    measure(p, at(0, sideY), at(side, sideY));
    text(QRectF(2, sideY - 30, side - 4, 28), Qt::AlignBottom | Qt::AlignLeft, tr("Side margin"));
    measure(p, at(side + 4, top + height / 2), at(side + width - 4, top + height / 2));
    text(QRectF(side, top, width, height / 2 - 2), Qt::AlignBottom | Qt::AlignHCenter, tr("Width"));
    measure(p, at(side + hPitch + 8, top + 4), at(side + hPitch + 8, top + height - 4));
    text(QRectF(side + hPitch + 12, top, width - 12, height), Qt::AlignVCenter, tr("Height"));

    p.setPen(QColor(170, 60, 40));
    const double pitchY = top + vPitch + height + 0.04 * h;
    measure(p, at(side, pitchY), at(side + hPitch, pitchY));
    text(QRectF(side, pitchY + 2, w - side, h - pitchY - 2), Qt::AlignTop | Qt::AlignLeft, tr("Horizontal pitch"));
    measure(p, at(side - 8, top), at(side - 8, top + vPitch));
    text(QRectF(2, top, side - 14, vPitch - 0.15 * h), Qt::AlignVCenter | Qt::AlignRight, tr("Vertical pitch"));
}
