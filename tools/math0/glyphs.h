#pragma once

// The characters of Math0: what stands on which key, under which PostScript name, and how it is drawn.

#include <span>
#include <string>
#include <vector>

#include "tools/math0/outline.h"

namespace kelvane::math0 {

struct Glyph {
  char key;          // character code 32 to 127
  const char* name;  // PostScript name
  Outline (*draw)();
};

// Heights that several drawings share, design units.
inline constexpr double kAxis = 27.5;  // middle of operators, relations, arrows and fraction bars
inline constexpr double kBaseline = 40;
inline constexpr double kRule = 2;       // weight of fraction bars, arrows, relations and root bars
inline constexpr double kHair = 1.75;    // thin strokes of letters and operators
inline constexpr double kStem = 4;       // thick strokes of letters and operators
inline constexpr double kDelimiter = 3;  // stems of tall delimiters

// The 96 characters in the order of their codes.
std::vector<Glyph> AllGlyphs();

std::span<const Glyph> OperatorGlyphs();
std::span<const Glyph> DelimiterGlyphs();
std::span<const Glyph> ArrowGlyphs();
std::span<const Glyph> RelationGlyphs();
std::span<const Glyph> LetterGlyphs();
std::span<const Glyph> MarkGlyphs();

// A glyph's outline, each contour one stroke line of the character designer.
std::vector<std::string> Strokes(const Glyph& glyph);

}  // namespace kelvane::math0
