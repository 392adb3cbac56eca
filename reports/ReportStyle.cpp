#include "ReportStyle.h"

#include <QFontDatabase>
#include <QPaintDevice>
#include <QStringList>

namespace ReportStyle {

QPageLayout pageLayout(QPageLayout::Orientation orientation)
{
    return QPageLayout(QPageSize(QPageSize::Letter), orientation, QMarginsF(0.5, 0.5, 0.5, 0.5), QPageLayout::Inch);
}

QString family()
{
    static const QString chosen = [] {
        const QStringList installed = QFontDatabase::families();
        // Liberation Sans and Arimo share Arial's metrics, so the pages break alike.
        for (const char *name : {"Arial", "Liberation Sans", "Arimo"})
            if (installed.contains(QLatin1String(name), Qt::CaseInsensitive))
                return QString::fromLatin1(name);
        return QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    }();
    return chosen;
}

namespace {

QFont font(double pointSize, bool bold, const QPaintDevice *device)
{
    QFont f(family());
    f.setPointSizeF(pointSize);
    f.setBold(bold);
    f.setStyleHint(QFont::SansSerif);
    // Laid out in the device's own units, so that what is measured is what is drawn.
    QFont forDevice(f, device);
    // Any letter spacing at all turns ligatures off, so that "fi" in a PDF stays two
    // letters that a search finds; this much is far below what the eye can see.
    forDevice.setLetterSpacing(QFont::AbsoluteSpacing, 1.0 / 64);
    return forDevice;
}

}   // namespace

Fonts::Fonts(const QPaintDevice *device)
    : name(font(14, true, device))
    , address(font(9.5, false, device))
    , title(font(13, true, device))
    , title2(font(11, true, device))
    , caption(font(10, false, device))
    , groupHeading(font(11, true, device))
    , recordHeading(font(10, true, device))
    , body(font(9, false, device))
    , bold(font(9, true, device))
    , footer(font(8, false, device))
    , dpi(device->logicalDpiY())
    , m_device(device)
{ }

}   // namespace ReportStyle
