#pragma once

// What comes of a notation: entries and drawings of a page, or what is wrong with it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "document/page.h"
#include "platform/canvas.h"

namespace kelvane {

// Why nothing can be set: the bytes of the notation that are meant, and one short sentence without a full
// stop, such as "no closing brace" or "unknown name \foo".
struct FormulaError {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::string message;
};

// A text entry of a formula. All points are relative to the left end of the formula's baseline, y downwards.
struct FormulaEntry {
  std::string run;
  std::int16_t font = 0;
  float size = 0;
  Point at;
  int anchor = 0;
};

// Where a place of the notation is on paper: the baseline point and the size of what stands there.
struct FormulaPlace {
  std::size_t offset = 0;  // byte of the notation
  Point at;
  float size = 0;  // points
};

struct Formula {
  std::vector<FormulaEntry> entries;
  std::vector<Drawing> drawings;
  Box ink;           // of no size without any
  float width = 0;   // to where the line goes on, points
  float height = 0;  // above the baseline
  float depth = 0;   // below it
  // The empty places of the notation, in its order: "\frac{}{}" has them at 6 and 8. Each takes room on
  // paper, half an em, and has no ink.
  std::vector<FormulaPlace> empty;
  // Where each sign of the notation begins, and a last one for its end; in the order of the notation.
  std::vector<FormulaPlace> signs;
};

inline constexpr std::size_t kLongestNotation = 16384;  // bytes

}  // namespace kelvane
