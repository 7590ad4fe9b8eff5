#pragma once

// Width tables and the measuring of runs.

#include <cstdint>
#include <string_view>

#include "platform/canvas.h"

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

// Reads <Name>.WT of every typeface that has a name from the program folder. Throws Failure "ERROR - Unknown
// typeface: <Name>" for a missing file. A short file leaves the missing widths 0.
void LoadWidthTables();

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

}  // namespace kelvane
