#pragma once

// Width tables, and the measuring and placing of runs.

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "document/page.h"
#include "platform/canvas.h"
#include "typography/typefaces.h"

namespace kelvane {

// The walk along a run, shared by measuring and drawing: position, baseline, size and typeface in force.
inline constexpr int kScriptDepth = 40;
struct RunPen {
  std::int16_t font = 0;
  float size = 0;
  float x = 0;
  float y = 0;
  int depth = 0;
  float savedX[kScriptDepth];
};

// The pen that begins a run at its origin. A number that is no typeface counts as 0.
RunPen PenAt(Point origin, std::int16_t font, float size);

// Reads <Name>.WT of every typeface that has a name from the program folder. Throws Failure "ERROR - Unknown
// typeface: <Name>" for a missing file. A short file leaves the missing widths 0.
void LoadWidthTables();

// Reads the ink boxes of the text typefaces from INK.TAB of the program folder. Characters that it lacks, all
// of them where it is missing, have no box. Throws Failure if it cannot be read.
void LoadInkBoxes();

// Reads how characters lean from LEAN.TAB of the program folder; without it nothing does. Throws Failure if
// it cannot be read.
void LoadLeans();

// Width of a run in points, starting in `font` at `size` points, with its switches and script codes.
float MeasureRun(std::string_view text, std::int16_t font, float size);

// The pen behind a run that begins at (0, 0).
RunPen FollowRun(std::string_view text, std::int16_t font, float size);

// How far a run reaches from its origin, points: its pen, from character to character, stays within the box.
struct RunReach {
  float width = 0;  // where the pen ends
  Box box;
};
RunReach ReachOfRun(std::string_view text, std::int16_t font, float size);

// From X to the nearest x guide to its right, points; 0 if there is none.
float JustificationAmount(float x);

// Advance of one character in points; 0 where the typeface has no widths.
float Advance(int code, std::int16_t font, float size);

// Acts on a code of 224 and above: typeface switch, script shift or fixed space.
void ApplyRunCode(RunPen& pen, int code);

// Takes the pen along a run, `extraSpace` points further at each blank, and returns it as it is at the end.
// Calls `character(index, pen)` with the pen at the origin of each character.
template <typename Character>
RunPen WalkRun(std::string_view text, RunPen pen, float extraSpace, Character character) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int code = static_cast<unsigned char>(text[i]);
    if (code >= kFirstSwitchCode) {
      ApplyRunCode(pen, code);
      continue;
    }
    character(i, pen);
    pen.x += Advance(code, pen.font, pen.size);
    if (code == ' ') pen.x += extraSpace;
  }
  return pen;
}

// How far a character takes the pen.
inline float StepAt(const RunPen& pen, int code, float extraSpace) {
  return Advance(code, pen.font, pen.size) + (code == ' ' ? extraSpace : 0);
}

// The cell of a character that takes the pen so far: 0.8 of its size above and 0.2 below the baseline.
Box CellAt(const RunPen& pen, float step);

// Anchors 1 to 3 lie at the left end of a run.
inline constexpr int kLastLeftAnchor = 3;

// The origin of a run of `width` points and size `size` whose `anchor` lies on `at`; y is the baseline. An
// anchor outside 1 to 9 leaves the point.
Point AlignAtAnchor(Point at, int anchor, float width, float size);

// The extra width of each blank that stretches a run of `width` points to `amount`; 0 without blanks.
float JustificationSpace(std::string_view text, float amount, float width);

// Where the run of an entry begins, and how its blanks are stretched.
struct PlacedRun {
  Point origin;
  float extraSpace = 0;
};
PlacedRun PlaceRun(const TextEntry& entry);
PlacedRun PlaceRun(const TextEntry& entry, float width);  // if its width is known

// How far a character's ink may lie from its origin, ems.
inline constexpr float kGlyphReach = 2;

// How far above and below its point an entry of that size may leave ink, points: what can be told without
// measuring its run. Scripts within scripts move the baseline by a geometric series of 0.36 ems, an anchor by
// less than an em.
inline float HeightReach(float size) {
  constexpr float kScriptReach = 1.8F;
  return (kGlyphReach + kScriptReach + 1) * std::abs(size);
}

}  // namespace kelvane
