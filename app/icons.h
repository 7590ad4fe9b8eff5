#pragma once

// Drawings of the main window's buttons, on the 24 by 24 grid of IconDrawing.

#include "editing/cursor.h"
#include "platform/controls.h"

namespace kelvane {

IconDrawing AnchorIcon(int mode);   // 0 to 9
IconDrawing ScriptIcon(int index);  // 0 to 11
IconDrawing ShapeIcon(Shape shape);
IconDrawing ShapingIcon();

}  // namespace kelvane
