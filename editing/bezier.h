#pragma once

// Drawing lines and curves with the mouse (mode 10): click for each point, or drag the first piece; pull
// before letting go of a later point to bend the piece that ends there. The path is CurrentDrawing until it
// is finished. Points snap to the grid; a path that comes back to its start is an area.

#include <cstdint>

namespace kelvane {

inline constexpr std::int16_t kBezierMode = 10;

void ResetBezier();

// Button "Draw Bezier": completes the run being typed, then takes the mode.
void ChooseBezier();

// Mouse on the page, in points. They do nothing outside the mode.
void BezierPress(float x, float y);
void BezierMove(float x, float y);
void BezierRelease(float x, float y);

// Backspace takes the last point back.
void TakeBackPoint();
// Enter, a right click, a second click on the last point: the path joins the page's drawings in LineColour
// and LineWidth. A path of one point is dropped. Throws Failure if the page can hold no more drawings.
void FinishDrawing();
// Escape drops the path.
void DropDrawing();

// The path so far, for the overlay.
void PaintCurrentDrawing();

}  // namespace kelvane
