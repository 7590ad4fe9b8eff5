#pragma once

// The grid on which the designer's glyph is drawn: DesignerCanvas, its mouse and its keys.

#include <functional>

#include "designer/grid_painting.h"
#include "designer/stroke_editor.h"
#include "platform/canvas.h"

namespace kelvane {

// The glyph that is drawn. Changed by the grid and by the designer's commands.
extern StrokeEditor Design;

// What the mouse does on the grid: draws strokes, or selects and moves their points.
extern bool DrawTool;
// Points snap to quarters of a unit instead of whole ones.
extern bool QuarterSteps;

// What is shown behind the grid.
extern BackgroundCharacter Background;

// Called after whatever changes the glyph or the selection, and when only the pen has moved.
extern std::function<void()> DesignChanged;
extern std::function<void()> PenMoved;

void ResetDesignGrid();

// Takes the canvas over.
void ConnectDesignGrid(Canvas& canvas);

// Shows the glyph anew, and calls DesignChanged.
void ShowDesign();

void ChooseTool(bool draw);
// The place of the pen, which the mouse and the arrow keys move, in design units.
Point PenPlace();

// Fits grid and glyph into the canvas; keeps the middle and zooms.
void FitDesign();
void ZoomDesign(float factor);
// After the canvas got another size: what was fitted stays fitted.
void DesignGridResized();

}  // namespace kelvane
