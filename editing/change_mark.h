#pragma once

// A frame round what undo or redo has changed, for a moment, so that the eye finds it.

#include "platform/canvas.h"

namespace kelvane {

void ResetChangeMark();

// Brings the middle of an area of the page, points, into view and frames the area for half a second.
void MarkChange(const Box& area);

void PaintChangeMark(Painter& painter);

}  // namespace kelvane
