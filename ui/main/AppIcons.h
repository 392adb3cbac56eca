#pragma once

#include <QIcon>
#include <QStyle>

// The program's icons: its own, and the desktop's icon theme (Adwaita when the
// desktop names none) with the widget style's icons as the last resort.
namespace AppIcons {

void useIconTheme();
QIcon application();
QIcon icon(const char *themeName, QStyle::StandardPixmap fallback);

}   // namespace AppIcons
