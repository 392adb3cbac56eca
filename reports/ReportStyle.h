#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QPageLayout>

class QPaintDevice;

// The fonts and lengths of the printed reports, for one paint device.
namespace ReportStyle {

// Letter, half-inch margins; portrait unless asked otherwise.
QPageLayout pageLayout(QPageLayout::Orientation orientation = QPageLayout::Portrait);

// Arial, or a sans font with its metrics when Arial is not installed; chosen once.
QString family();

struct Fonts
{
    explicit Fonts(const QPaintDevice *device);

    QFont name;   // the organisation's name
    QFont address;
    QFont title;
    QFont title2;
    QFont caption;   // the date caption
    QFont groupHeading;
    QFont recordHeading;
    QFont body;
    QFont bold;   // labels, column headings, totals
    QFont footer;

    double dpi;   // device units in an inch
    double points(double pt) const { return pt * dpi / 72.0; }
    QFontMetricsF metrics(const QFont &font) const { return QFontMetricsF(font, m_device); }

private:
    const QPaintDevice *m_device;
};

}   // namespace ReportStyle
