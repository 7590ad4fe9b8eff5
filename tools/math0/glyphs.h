#pragma once

// The characters of Math0: what stands on which key, under which PostScript name, and how it is drawn.
//
// Symbol has Greek, most relations and small arrows; this font has what it lacks, what it has only small, and
// the signs of a formula that should be of one hand. The key resembles the sign (N, n for an intersection, 8
// lying down), begins its name (e element, f floor), or stands where the piece does: 7 4 1 and 9 6 3 on the
// number pad are the tops, middles and bottoms of tall parentheses and braces, r t over f g the corners of
// brackets.
//
//   large operators    S P U sum, product, coproduct; I J O integral, double, contour; u n union,
//   intersection
//                      + * direct sum, tensor. In text size: s sum, i integral
//   delimiters         ( ) [ ] { } < >  one and a half ems tall; , ; angles two ems tall
//   pieces, one em     7 1 9 3 hooks, ends of parentheses and, with 4 6 middles, of braces; r f t g corners,
//                      ends of brackets and by themselves ceilings and floors; | bar for all of them
//                      5 double bar
//   roots              v root, V tall root, space the bar that goes on from either
//   level pieces       - bar of fractions and shaft of arrows, = double shaft, q z x w quarters of braces
//   arrows             y b single, Y B double, 2 two-headed; m j tails of mapping and hooked arrows
//   relations          # equivalent, @ congruent, ? asymptotic, $ % precedes, succeeds, W X much less,
//   greater
//                      k proportional, c subset, 127 subset or equal, e element, T turnstile, M models
//                      ! stroke of a negation
//   logic              A for all, E exists, & and, o or
//   letters            N Z Q R C K blackboard; L H F script; h hbar, l ell, p Weierstrass, a aleph, G nabla
//                      d partial, 8 infinity, D dagger
//   marks              ^ hat, ~ tilde, _ bar, ` vector, 0 dot, " two dots, ' prime
//                      . : \ / rows of three dots
//
// A sign that Symbol has too is here when formulas need it beside its neighbours. A negation is the stroke
// over the relation; a two-sided arrow is two arrows back to back; a longer one has shafts between.
//
// What joins:
//   piece      box in which it joins                              weight
//   7 4 1 r f  y 2.5 to 52.5, exactly one em; stem x 5.75 to 8.75   3
//   9 6 3 t g  the same, measured from the right edge               3
//   | 5        the same, from either edge (5: from the left)        3
//   - q z x w  from x 0 to the advance (25; quarters 14)            2.5, middle at y 27.5
//   =          from x 0 to 25                                       2.5 each, middles at y 24.25 and 30.75
//   space v & V  from x 0 to the advance (space 25)                   2, y 0 to 2

#include <span>
#include <string>
#include <vector>

#include "tools/math0/outline.h"

namespace kelvane::math0 {

struct Glyph {
  char key;          // character code 32 to 127
  const char* name;  // PostScript name; from it a PDF reader knows the sign that a search is to find
  Outline (*draw)();
};

// Heights that several drawings share, design units.
inline constexpr double kAxis = 27.5;  // middle of operators, relations, arrows and fraction bars
inline constexpr double kBaseline = 40;
inline constexpr double kRule = 2.5;     // weight of fraction bars, arrows and level braces
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
