#pragma once

// Choosing what the mouse and the keys do: the anchor buttons, those of the drawing tools, and leaving both.

#include <cstdint>
#include <functional>

#include "editing/tool.h"

namespace kelvane {

// Fills the table of tools.
void ResetModes();

// Anchor button 0 to 9: completes the run being typed and the path being drawn, then takes the mode, not
// placed. Text that waits in the control-code box for a place goes on waiting.
void ChooseAnchor(std::int16_t mode);
// The buttons from "Draw Bezier" on: the same for mode 10.
void ChooseShape(Shape shape);
// The same for mode 11, with a drawing of the page by the identity of its item; 0 for none yet.
void ShapeDrawing(std::uint64_t id);

// Completes what is half done: an open run with its own anchor, a path being drawn.
void FinishEditing();
// What every command of the File and Edit menus does first: that, then Select.
void LeaveEditing();

// Filled at start-up: the marks of what a search found, which are on every tool's overlay.
extern std::function<void(Painter&, const View&)> PaintFinds;

// What the canvas shows above the page.
void PaintOverlay(Painter& painter, const View& view);
// Paints a layer of the page canvas; its OnPaint.
void PaintLayer(Layer layer, const Box& area);

}  // namespace kelvane
