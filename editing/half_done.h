#pragma once

// What is half done above the page: the run being typed, the path being drawn, and where. Taken as a value,
// so that it can be kept and taken up again.

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
  std::string run;
  std::uint32_t caret = 0;  // before this character of the run
  std::uint64_t retyped =
      0;             // number of the item among the texts of the page, from 1, whose run it is; 0: new
  std::string path;  // CurrentDrawing
  Shape shape = Shape::Bezier;
  std::int32_t placeChosen = 0;
  // Of a formula by notation, whose caret is `caret` then; and the numbers, from 1 through the texts and then
  // the drawings of the page, of the items that it takes the place of.
  std::string notation;
  std::vector<std::uint64_t> instead;
  bool operator==(const HalfDone&) const = default;

  bool Anything() const { return !run.empty() || !path.empty() || retyped != 0 || !notation.empty(); }
};

HalfDone HalfDoneNow();
// On a page that was just put into memory, in whatever mode.
void TakeUp(const HalfDone& half);

}  // namespace kelvane
