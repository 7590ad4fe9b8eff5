#pragma once

#include "formula/formula.h"
#include "typography/view.h"

namespace kelvane {

// Paints a formula with the left end of its baseline at a point, as the page will show it.
void PaintFormula(Painter& painter, const View& view, const Formula& formula, Point at);

}  // namespace kelvane
