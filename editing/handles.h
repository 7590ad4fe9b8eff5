#pragma once

// The handles on the box of the selection: those at its corners scale, the one above it turns drawings.

#include <string>

#include "editing/tool.h"

namespace kelvane {

enum class Handle { None, TopLeft, TopRight, BottomRight, BottomLeft, Turn };

// The handle that a press at a point takes.
Handle HandleAt(Point at);
PointerShape ShapeOf(Handle handle);
void PaintHandles(Painter& painter);

// A drag of a handle. Corners go to the grid, with Alt between its points; with Shift, and for runs alone,
// both sides grow alike. Turning goes by 15 degrees with Shift.
void TakeHandle(Handle handle, Point at);
void DragHandle(const Pointer& pointer);
// What the drag makes of an item, and of any point.
bool ChangeByHandle(TextEntry& entry);
bool ChangeByHandle(Drawing& drawing);
// The box that is being dragged, as lines.
void PaintFrame(Painter& painter);
std::string HandleHint();
// Makes the drag an edit of the page.
void ReleaseHandle();

}  // namespace kelvane
