#pragma once

// The layout: a tree in, characters and lines in their places out, by the rules of Appendix G of Knuth's "The
// TeXbook". What runs they make is another matter (formula/runs.h).

#include <cstddef>
#include <cstdint>
#include <vector>

#include "document/page.h"
#include "formula/tree.h"
#include "platform/canvas.h"

namespace kelvane::formula {

// A character, a line, or an empty place, in points from the left end of the formula's baseline.
struct Element {
  enum class What : std::uint8_t { Character, Line, Place };
  What what = What::Character;
  unsigned char code = 0;
  std::int16_t font = 0;
  float x = 0;
  float y = 0;
  float size = 0;
  std::size_t line = 0;  // index into the lines
  std::size_t at = 0;    // byte of the notation
};

// Elements that stand together in the middle, or at the right, of the room they have.
struct Group {
  std::size_t begin = 0;
  std::size_t end = 0;
  int anchor = 0;
};

struct Layout {
  std::vector<Element> elements;  // in the order in which one reads them
  std::vector<Drawing> lines;
  std::vector<Group> groups;
  float width = 0;
};

struct LayoutStyle {
  float size = 0;
  bool display = true;
  std::int16_t roman = 0;  // the upright face of the family
};

Layout LayOut(const Tree& tree, const LayoutStyle& style);

}  // namespace kelvane::formula
