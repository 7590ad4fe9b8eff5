#pragma once

// A frame round what undo or redo has changed, for a moment, so that the eye finds it.

#include "typography/view.h"

namespace kelvane {

void ResetChangeMark();

// Brings the middle of an area of the page, points, into view and frames the area for half a second.
void MarkChange(const Box& area);

void PaintChangeMark(Painter& painter, const View& view);

// A frame a few pixels outside of an area of the page.
void PaintFrame(Painter& painter, const View& view, const Box& area, const Pen& pen);

}  // namespace kelvane
