#include "WindowArrangement.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace WindowArrangement {
namespace {

QList<QMdiSubWindow *> windows(QMdiArea *area, bool minimised)
{
    QList<QMdiSubWindow *> found;
    for (QMdiSubWindow *sub : area->subWindowList(QMdiArea::CreationOrder))
        if (sub->isVisible() && sub->isMinimized() == minimised)
            found << sub;
    return found;
}

// Places the icons and answers the height they take at the bottom of the area.
int placeIcons(QMdiArea *area)
{
    const QList<QMdiSubWindow *> icons = windows(area, true);
    if (icons.isEmpty())
        return 0;
    const QRect space = area->viewport()->rect();
    int x = 0;
    int rowHeight = 0;
    int bottom = space.bottom() + 1;
    for (QMdiSubWindow *icon : icons) {
        const QSize size = icon->size();
        if (x > 0 && x + size.width() > space.width()) {
            bottom -= rowHeight;
            x = 0;
            rowHeight = 0;
        }
        rowHeight = qMax(rowHeight, size.height());
        icon->move(x, bottom - size.height());
        x += size.width();
    }
    return space.height() - (bottom - rowHeight);
}

void tile(QMdiArea *area, Qt::Orientation stacking)
{
    QRect space = area->viewport()->rect();
    space.setHeight(space.height() - placeIcons(area));
    const QList<QMdiSubWindow *> open = windows(area, false);
    const int n = int(open.size());
    for (int i = 0; i < n; ++i) {
        QMdiSubWindow *sub = open.at(i);
        if (sub->isMaximized())
            sub->showNormal();
        QRect cell;
        if (stacking == Qt::Vertical) {
            const int top = space.top() + space.height() * i / n;
            cell = QRect(space.left(), top, space.width(), space.top() + space.height() * (i + 1) / n - top);
        } else {
            const int left = space.left() + space.width() * i / n;
            cell = QRect(left, space.top(), space.left() + space.width() * (i + 1) / n - left, space.height());
        }
        sub->setGeometry(cell);
    }
}

}   // namespace

void Cascade(QMdiArea *area)
{
    QRect space = area->viewport()->rect();
    space.setHeight(space.height() - placeIcons(area));
    const QList<QMdiSubWindow *> open = windows(area, false);
    QMdiSubWindow *active = area->activeSubWindow();
    const int step = area->fontMetrics().height() + 8;
    const int fit = qMax(1, qMin(8, int(open.size())));   // steps before the cascade starts again at the top
    const QSize size = QSize(space.width() - step * (fit - 1), space.height() - step * (fit - 1)).expandedTo(space.size() * 2 / 3);
    for (int i = 0; i < open.size(); ++i) {
        QMdiSubWindow *sub = open.at(i);
        if (sub->isMaximized())
            sub->showNormal();
        const QSize own = size.expandedTo(sub->minimumSizeHint());
        QPoint at = QPoint(step, step) * (i % fit);
        at.setX(qMin(at.x(), qMax(0, space.width() - own.width())));
        at.setY(qMin(at.y(), qMax(0, space.height() - own.height())));
        sub->setGeometry(QRect(at, own));
        sub->raise();
    }
    if (active)
        active->raise();
}

void TileHorizontally(QMdiArea *area)
{
    tile(area, Qt::Vertical);
}

void TileVertically(QMdiArea *area)
{
    tile(area, Qt::Horizontal);
}

void ArrangeIcons(QMdiArea *area)
{
    placeIcons(area);
}

}   // namespace WindowArrangement
