#pragma once

// Signs that no typeface has: put together of characters and lines. Only formulas have them.

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "formula/tree.h"
#include "platform/canvas.h"

namespace kelvane::formula {

struct DrawnSign {
  std::string_view names;  // with blanks between them
  char32_t character = 0;  // 0: it can only be named
  Atom atom = Atom::Ordinary;
  float width = 0;  // ems
  // Its parts, with ";" between them: letters and numbers, in ems from the left end of the baseline, y
  // upwards.
  //   l x y x y ...        a line from corner to corner, which may go back over itself; behind
  //   b x y x y ...        it is a curve: a control point and an end for each piece
  //   f x y x y ...        an area
  //   o x y r              a circle
  //   c font code x y size a character
  // One line is one drawing of the page, so what hangs together is best one.
  std::string_view parts;
};

// A line, an area or, with a code, a character at its only point; ems, y upwards.
struct DrawnPart {
  std::vector<Point> points;  // as drawings have them; the control point of a straight piece is its end
  bool area = false;
  std::int16_t font = 0;
  int code = 0;
  float size = 0;
};
std::vector<DrawnPart> PartsOf(const DrawnSign& sign);

std::span<const DrawnSign> DrawnSigns();
// Null if there is none.
const DrawnSign* DrawnSignNamed(std::string_view name);
const DrawnSign* DrawnSignOf(char32_t character);
// The double-struck letters that Math0 does not have.
const DrawnSign* DrawnLetter(char32_t letter);

}  // namespace kelvane::formula
