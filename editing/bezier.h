#pragma once

// Drawing lines and curves with the mouse (mode 10): click for each point, or drag the first piece; pull
// before letting go of a later point to bend the piece that ends there. The path is CurrentDrawing until it
// is finished. Points snap to the grid; a path that comes back to its start is an area.

#include "editing/tool.h"

namespace kelvane {

void ResetBezier();

// The tool of mode 10.
Tool& DrawingTool();

// Whether a path is being drawn.
bool PathIsOpen();

// Backspace takes the last point back.
void TakeBackPoint();
// Enter, a right click, a second click on the last point: the path joins the page's drawings in LineColour
// and LineWidth. A path of one point is dropped. True if there was one to join. Throws Failure if the page
// can hold no more drawings.
bool FinishDrawing();
// Escape drops the path.
void DropDrawing();

}  // namespace kelvane
