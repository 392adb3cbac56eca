#include "LabelSheets.h"

#include "PdfFile.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QObject>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>

namespace LabelSheets {

namespace {

constexpr double InsetPoints = Labels::PointsPerInch / 16;

// Points on the paper to the device's own units, from the paper's corner.
class PaperScale
{
public:
    explicit PaperScale(QPagedPaintDevice *device)
        : m_x(device->logicalDpiX() / Labels::PointsPerInch)
        , m_y(device->logicalDpiY() / Labels::PointsPerInch)
        , m_origin(device->pageLayout().paintRect(QPageLayout::Point).topLeft())
    { }
    QRectF map(const QRectF &points) const
    {
        return QRectF((points.x() - m_origin.x()) * m_x, (points.y() - m_origin.y()) * m_y, points.width() * m_x, points.height() * m_y);
    }

private:
    double m_x;
    double m_y;
    QPointF m_origin;
};

// One label's lines, centred down the label; returns true when one was cut short or left out.
bool drawLabel(QPainter &painter, const QRectF &label, const QStringList &lines, const QFontMetricsF &metrics, double inset)
{
    const QRectF inner = label.adjusted(inset, inset, -inset, -inset);
    const double lineHeight = metrics.lineSpacing();
    const int fit = std::max(1, int(inner.height() / lineHeight));
    const int count = std::min(int(lines.size()), fit);
    bool shortened = count < lines.size();
    const double blockHeight = count * lineHeight - metrics.leading();
    double baseline = inner.top() + std::max(0.0, (inner.height() - blockHeight) / 2) + metrics.ascent();
    painter.save();
    painter.setClipRect(label);
    for (int i = 0; i < count; ++i, baseline += lineHeight) {
        const QString text = metrics.elidedText(lines.at(i), Qt::ElideRight, inner.width());
        shortened = shortened || text != lines.at(i);
        painter.drawText(QPointF(inner.left(), baseline), text);
    }
    painter.restore();
    return shortened;
}

}   // namespace

QPageLayout pageLayout(const Labels::Template &sheet)
{
    return QPageLayout(Labels::pageSize(sheet.paper), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0), QPageLayout::Point);
}

Result render(const Sheets &sheets, QPagedPaintDevice *device)
{
    Result result;
    if (auto *printer = dynamic_cast<QPrinter *>(device))
        printer->setFullPage(true);
    QPainter painter;
    if (!painter.begin(device)) {
        result.error = QObject::tr("The printer or file could not be opened for the labels.");
        return result;
    }
    const PaperScale scale(device);
    painter.setFont(sheets.font);
    const QFontMetricsF metrics(sheets.font, device);
    const double inset = InsetPoints * device->logicalDpiX() / Labels::PointsPerInch;
    for (int i = 0; i < sheets.pages.size(); ++i) {
        if (i > 0 && !device->newPage()) {
            painter.end();
            result.error = QObject::tr("The printer or file refused a new page.");
            return result;
        }
        if (sheets.outlines) {
            painter.save();
            painter.setPen(QPen(Qt::gray, 0));
            for (int position = 1; position <= sheets.sheet.perSheet(); ++position)
                painter.drawRect(scale.map(Labels::labelRect(sheets.sheet, position)));
            painter.restore();
        }
        for (const Labels::PlacedLabel &label : sheets.pages.at(i))
            if (drawLabel(painter, scale.map(label.rect), label.lines, metrics, inset))
                ++result.shortened;
    }
    if (!painter.end()) {
        result.error = QObject::tr("The label sheets could not be finished.");
        return result;
    }
    result.ok = true;
    return result;
}

Result writePdf(const Sheets &sheets, const QString &path)
{
    Result result;
    result.ok = PdfFile::write(
        path, pageLayout(sheets.sheet), QObject::tr("Labels"),
        [&](QPdfWriter &writer, QString *error) {
            result = render(sheets, &writer);
            *error = result.error;
            return result.ok;
        },
        &result.error);
    return result;
}

QString fontText(const QFont &font)
{
    return QStringLiteral("%1, %2").arg(font.family()).arg(font.pointSizeF());
}

bool fontInstalled(const QFont &font)
{
    return QFontDatabase::families().contains(font.family(), Qt::CaseInsensitive);
}

}   // namespace LabelSheets
