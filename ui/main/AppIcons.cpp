#include "AppIcons.h"

#include <QApplication>

namespace AppIcons {

void useIconTheme()
{
    QIcon::setFallbackThemeName(QStringLiteral("Adwaita"));
    if (QIcon::themeName().isEmpty() || QIcon::themeName() == QLatin1String("hicolor"))
        QIcon::setThemeName(QStringLiteral("Adwaita"));
}

QIcon application()
{
    return QIcon(QStringLiteral(":/icons/tendmark.svg"));
}

QIcon icon(const char *themeName, QStyle::StandardPixmap fallback)
{
    const QString name = QString::fromLatin1(themeName);
    if (QIcon::hasThemeIcon(name))
        return QIcon::fromTheme(name);
    return QApplication::style()->standardIcon(fallback);
}

}   // namespace AppIcons
