#pragma once

// What is half done above the page: the run or the formula being typed, the path being drawn, and where.
// Taken as a value, so that it can be kept and taken up again.

#include <cstdint>
#include <string>
#include <vector>

#include "editing/cursor.h"
#include "platform/canvas.h"

namespace kelvane {

struct HalfDone {
  std::int16_t mode = 0;  // as CursorMode has it
  Point cursor;
  float size = 0;  // of the typeface, points
  std::int16_t font = 0;
  std::string run;          // or what goes on behind the formula
  std::string notation;     // of the formula being typed, UTF-8
  std::uint32_t caret = 0;  // before this byte of the run, or of the notation
  std::uint64_t retyped =
      0;  // number of the item among the texts of the page, from 1, whose run it is; 0: new
  // Numbers of the items that the formula takes the place of, from 1 through the texts and on through the
  // drawings.
  std::vector<std::uint64_t> replaced;
  std::string path;  // CurrentDrawing
  Shape shape = Shape::Bezier;
  std::int32_t placeChosen = 0;
  bool operator==(const HalfDone&) const = default;

  bool Anything() const { return !run.empty() || !notation.empty() || !path.empty() || retyped != 0; }
};

HalfDone HalfDoneNow();
// On a page that was just put into memory, in whatever mode.
void TakeUp(const HalfDone& half);

}  // namespace kelvane
