#pragma once

// Arranging the selected items among each other. Each is one step back. Sides and gaps are those of the ink.

#include "editing/selection.h"

namespace kelvane {

enum class Side { Left, Centre, Right, Top, Middle, Bottom, Baseline };

// Moves the items to that side of the selection's box, or the runs to the baseline of the leftmost one.
bool CanAlign(Side side);
void AlignSelected(Side side);

// Moves all but the outermost items so that the gaps between them are equal.
bool CanDistribute();
void DistributeSelected(bool horizontally);

// Scales about a point that stays. Of a run the anchor point is moved, and its size follows the lesser
// factor; lines keep their thickness.
struct Scaling {
  Point fixed;
  float x = 1;
  float y = 1;
};
Point Scaled(Point point, const Scaling& scaling);
void Scale(TextEntry& entry, const Scaling& scaling);
void ScaleSelected(const Scaling& scaling);

// Turns the drawings about a point, clockwise as seen. Runs stay, with a note.
Point Turned(Point point, Point centre, float degrees);
void TurnSelected(Point centre, float degrees);
inline constexpr char kRunsDoNotTurn[] = "Runs do not turn";

// The box around ink that scaling and turning go by: lines count without their thickness.
Box FrameOf(const SelectedItems& items);

// The percentage or the degrees are asked for. Scaling keeps the top left corner; drawings turn about the
// middle of the selection.
void AskScale();
bool CanTurn();
void AskTurn();

}  // namespace kelvane
