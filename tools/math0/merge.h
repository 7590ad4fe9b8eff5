#pragma once

// Turns overlapping shapes into the one outline of their ink.

#include "tools/math0/outline.h"

namespace kelvane::math0 {

// The outline of everything the shapes cover: parts of outlines that lie inside other ink are dropped, what
// is left is joined into contours that cross neither themselves nor each other, holes running the other way
// round. Threads follow as they are. The points are put on the grid of sixteenths of a unit. Edges may lie on
// each other where they are straight. Throws Failure with `name` when the pieces do not join up, which means
// edges that touch without crossing.
Outline Merge(const Outline& shapes, const char* name);

}  // namespace kelvane::math0
