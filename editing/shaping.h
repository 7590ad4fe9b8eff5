#pragma once

// Shaping a drawing by its points and control points (mode 11).

#include <cstdint>

#include "editing/tool.h"

namespace kelvane {

void ResetShaping();

// The tool of mode 11.
Tool& ShapingTool();

// Takes a drawing of the page to be shaped from here on; 0 for none yet, the next click takes one. The mode
// is the caller's.
void TakeToShape(std::uint64_t id);

// Whether the drawing being shaped looks closed, and whether it is filled then. SetFilled makes an area or an
// outline of it.
bool ShapedLooksClosed();
bool ShapedIsFilled();
void SetShapedFilled(bool filled);

// Adds a point in the middle of the piece that follows each chosen point.
bool CanAddPoints();
void AddPoints();
// Removes the chosen points, and straightens the pieces whose control points are chosen. A drawing of which
// no piece is left goes off the page.
bool CanRemovePoints();
void RemovePoints();
// Takes the drawing apart at the chosen points; a closed one is opened there.
bool CanSplit();
void SplitShaped();
// Joins the drawing with the one that has an end near an end of it, or its own ends. Throws Failure if no end
// lies near.
bool CanJoin();
void JoinShaped();

}  // namespace kelvane
