#pragma once

// Drawing whole shapes with one drag of the mouse (mode 10): lines, arrows, rectangles, ellipses.

#include "editing/tool.h"

namespace kelvane {

// The tool of mode 10 for the shape in force.
Tool& DrawingTool();

}  // namespace kelvane
