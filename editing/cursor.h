#pragma once

// The cursor point, its anchor mode and the canvas pointer.

#include <cstdint>
#include <string>

#include "platform/controls.h"
#include "typography/view.h"  // GridStepH, GridStepV

namespace kelvane {

// 0 Select, 1 to 9 the anchors, 10 Bezier drawing, 11 mouse editing. Negative once a cursor point is placed:
// typing goes to it.
extern std::int16_t CursorMode;
extern float CursorX;  // points
extern float CursorY;

// The marked box of mouse editing, points; all 0 when nothing is marked.
extern float MarkedLeft;
extern float MarkedBottom;
extern float MarkedRight;
extern float MarkedTop;
void ClearMarkedBox();

// Captions of the anchor buttons by mode.
extern const char* const kAnchorNames[10];
// Tells what the next key or click will do: where typing goes, or what to do first.
extern Label* CursorLabel;
std::string CursorLabelText();
void ShowCursorLabel();

// Buttons Cur0 to Cur9; the one of the mode in force is down.
extern Button* AnchorButtons[10];
extern Button* Command6;  // "Draw Bezier"

void ResetCursor();

// The canvas pointer of a mode, whatever its sign; above 11 nothing changes.
void SetCanvasPointer(std::int16_t mode);

// Anchor button 0 to 9: completes the run being typed, then takes the mode, not placed.
void ChooseAnchor(std::int16_t mode);

// A release of the mouse on the page: snaps the point to the grid and places the cursor there. Does nothing
// in modes 0, 10 and 11.
void PlaceCursor(float x, float y);

// Moves the cursor point by grid steps and places it there, as a click would; the run being typed stays
// where it is. False in modes 0, 10 and 11.
bool StepCursor(int stepsX, int stepsY);

// The multiple of `step` nearest to a coordinate, halves upwards.
float SnapToGrid(float value, std::int16_t step);

// The mode as 1 to 9, or 0 when it is no anchor.
int AnchorOfMode(std::int16_t mode);

// What every command of the File and Edit menus does first: the run being typed is completed with its own
// anchor, a path being drawn is finished, then Select.
void LeaveEditing();

}  // namespace kelvane
