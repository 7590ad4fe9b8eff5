#pragma once

// The cursor point, its anchor mode and the canvas pointer.

#include <cstdint>
#include <string>

#include "editing/selection.h"
#include "platform/controls.h"
#include "typography/view.h"  // GridStepH, GridStepV

namespace kelvane {

// 0 Select, 1 to 9 the anchors, 10 Bezier drawing, 11 mouse editing. Negative once a cursor point is placed:
// typing goes to it.
extern std::int16_t CursorMode;
inline constexpr std::int16_t kBezierMode = 10;
inline constexpr int kLastMode = 11;
extern float CursorX;  // points
extern float CursorY;

// Captions of the anchor buttons by mode.
extern const char* const kAnchorNames[10];
// Buttons Cur0 to Cur9; the one of the mode in force is down.
extern Button* AnchorButtons[10];
extern Button* Command6;  // "Draw Bezier"

void ResetCursor();

// The canvas pointer of a mode, whatever its sign; above 11 nothing changes.
void SetCanvasPointer(std::int16_t mode);

// The file of the mode's pointer if it could not be loaded, so that the arrow stands in; otherwise empty.
const std::string& MissingPointer();

// Puts the cursor point to the grid point nearest to (x, y) and counts it as placed. In anchor modes only.
void SetCursorPoint(float x, float y);

// The multiple of `step` nearest to a coordinate, halves upwards.
float SnapToGrid(float value, std::int16_t step);

// The mode as 1 to 9, or 0 when it is no anchor.
int AnchorOfMode(std::int16_t mode);

}  // namespace kelvane
