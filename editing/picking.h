#pragma once

// Which items the person means: those under a point or in a box, the next one in reading order.

#include <cstdint>
#include <vector>

#include "platform/canvas.h"

namespace kelvane {

// Items whose ink is at a point or a few pixels beside it, the topmost first: runs lie above drawings, later
// ones above earlier ones.
std::vector<std::uint64_t> ItemsAt(Point at);
// Whether a point lies so near to the box of the selection, or in it.
bool IsAtMarkedBox(Point at);

bool Touch(const Box& a, const Box& b);

// Selects by a box: dragged to the right it takes what lies in it, to the left what it touches. With
// `andSelected` the selection stays.
void SelectInBox(Point from, Point to, bool andSelected);

// Selects the next item in reading order, or the one before; false behind the last.
bool SelectNext(bool forwards);

// Whether a point lies on a selected item or in the marked box. An item that is not selected yet is selected
// first.
bool SelectUnder(Point at);

}  // namespace kelvane
