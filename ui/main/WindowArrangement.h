#pragma once

class QMdiArea;

// The Window menu's arrangements of the child windows. Minimised windows stay
// icons in a row along the bottom; the others share the space above that row.
namespace WindowArrangement {

// Each a step down and right from the one before, all large enough to use.
void Cascade(QMdiArea *area);
// One above the other, each the full width of the area.
void TileHorizontally(QMdiArea *area);
// Side by side, each the full height of the area.
void TileVertically(QMdiArea *area);
// Lines the minimised windows up along the bottom, left to right.
void ArrangeIcons(QMdiArea *area);

}   // namespace WindowArrangement
