#pragma once

// The second text at the foot of the main window: where the pointer is on the page, and notes in its place
// until the pointer moves.

#include <optional>
#include <string>

#include "editing/notes.h"
#include "platform/canvas.h"

namespace kelvane {

void ResetFoot();

// The pointer is over this canvas pixel.
void PointerMoved(float pixelX, float pixelY);
void PointerLeft();
// The place of the resting pointer, which changes when the page moves below it.
void ShowPointerPlace();

// Where the pointer is on the paper, points; nothing while it is elsewhere.
std::optional<Point> PointerOnPaper();

// A note that holds as long as something is amiss: an empty one takes away what the last one said.
void ShowWarning(const std::string& text);

}  // namespace kelvane
