#pragma once

// Signs that no typeface has: put together of characters and lines. Only formulas have them.

#include <span>
#include <string_view>

#include "formula/tree.h"

namespace kelvane::formula {

struct DrawnSign {
  std::string_view names;  // with blanks between them
  char32_t character = 0;  // 0: it can only be named
  Atom atom = Atom::Ordinary;
  float width = 0;  // ems
  // Its parts, with ";" between them: a letter and numbers, in ems from the left end of the baseline, y
  // upwards.
  //   l x y x y ...  a line from corner to corner          f the same as an area
  //   b x y  x y x y ...  a curve: where it begins, then a control point and an end for each piece
  //   o x y r  a circle                                    c font code x y size  a character
  std::string_view parts;
};

std::span<const DrawnSign> DrawnSigns();
// Null if there is none.
const DrawnSign* DrawnSignNamed(std::string_view name);
const DrawnSign* DrawnSignOf(char32_t character);
// The double-struck letters that Math0 does not have.
const DrawnSign* DrawnLetter(char32_t letter);

}  // namespace kelvane::formula
