#pragma once

// The selected items on their way to another place: what attracts them, and where they are put down.

#include <cstdint>
#include <string>

#include "editing/tool.h"

namespace kelvane {

// Whether the foot of the window tells how far items are being moved.
extern bool ShowDistance;

// Takes the selected items at a point; the item that is held, if it is a selected run, is the one whose point
// goes to the grid and whose baseline is attracted.
void BeginDrag(Point from, std::uint64_t held);
void DragTo(const Pointer& pointer);
// Makes the way an edit of the page: the items move, or copies of them come.
void PutDown(bool copying);

// The items where they would come, and the lines that attract them.
void PaintDrag(Painter& painter, const View& view);
// How far they have come.
std::string DragHint();

}  // namespace kelvane
