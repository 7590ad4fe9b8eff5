#pragma once

// The path being drawn (mode 10), and drawing it point by point: click for each point, or drag the first
// piece; pull before letting go of a later point to bend the piece that ends there. The path is
// CurrentDrawing until it is finished. Points snap to the grid; a path that comes back to its start is
// closed.

#include "editing/paths.h"
#include "editing/tool.h"

namespace kelvane {

void ResetBezier();

// Whether closed paths of the shape in force become areas, or else lines that come back to their start. At
// first paths drawn piece by piece are areas, since they are closed on purpose, and the other shapes lines.
bool& FillClosed();
// Whether open ones get an arrowhead.
extern bool ArrowAtEnd;

// The tool of mode 10 for the shapes that are drawn point by point.
Tool& PathTool();

// Whether a path is being drawn; the path, and another one in its place, in LineColour and LineWidth.
bool PathIsOpen();
const Points& OpenPath();
void KeepPath(const Points& path);

// Backspace takes the last point back.
void TakeBackPoint();
// Enter, a right click, a second click on the last point: the path joins the page's drawings in LineColour
// and LineWidth, with its arrowhead as one edit. A path of no extent is dropped. True if there was one to
// join. Throws Failure if the page can hold no more drawings.
bool FinishDrawing();
// Escape drops the path.
void DropDrawing();

// Paints the path as it would be if it were finished.
void PaintFinished(Painter& painter, const View& view);

}  // namespace kelvane
