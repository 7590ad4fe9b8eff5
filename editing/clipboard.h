#pragma once

// Cut, copy, paste, delete and duplicate. They act on the run being typed while one is open, else on the
// selected items; what has to do with items ends in Select.

#include <optional>

#include "platform/canvas.h"

namespace kelvane {

// Whether there is something to cut or copy; to delete.
bool CanCopy();
bool CanDelete();

void Cut();
void Copy();
void Delete();

// Text goes into the run where a cursor point is placed. Items of another page, and lines of a page as text,
// come as items whose first one has its point at `at`, snapped to the grid, or, without, in the middle of the
// view; other text as one run a line. Throws Failure, and changes nothing, for lines that no page could hold.
void Paste(std::optional<Point> at);

// A copy of the selected items beside them; repeated, at the distance to which the last copy was moved.
void DuplicateSelected();

}  // namespace kelvane
