#include <array>

#include "tools/math0/glyphs.h"

// Letters that are signs: blackboard bold, script, and the single letters of physics and set theory.
// Capitals reach from y 7 to the baseline at 40, small letters from 17.5.

namespace kelvane::math0 {
namespace {

constexpr double kCap = 7;
constexpr double kLine = 2;      // weight of the lines of a blackboard letter
constexpr double kRound = 2.25;  // and of their bends

// A slanting line between the top and the baseline with level ends.
Outline Diagonal(double topX, double bottomX, double width) {
  return Band(Path(topX, kCap).Line(bottomX, kBaseline),
              Path(topX + width, kCap).Line(bottomX + width, kBaseline));
}

// A level line along the top, or along the baseline.
Outline TopLine(double left, double right) {
  return Box(left, kCap, right, kCap + kLine);
}
Outline FootLine(double left, double right) {
  return Box(left, kBaseline - kLine, right, kBaseline);
}

Outline Stem(double left) {
  return Box(left, kCap, left + kLine, kBaseline);
}

// The doubled stem of a blackboard letter: two lines closed at top and foot, with a little serif to the left.
Outline DoubleStem(double left) {
  return Stem(left) + Stem(left + 7) + TopLine(left - 2.5, left + 9) + FootLine(left - 2.5, left + 9);
}

// The diagonal is doubled; the stems are single lines with serifs.
Outline BoardN() {
  constexpr double slope = 19, width = 2.5, left = 5, right = 33;
  return Stem(left) + Stem(right - kLine) + Diagonal(left, left + slope, width) +
         Diagonal(right - width - slope, right - width, width) + TopLine(3, right - slope) +
         FootLine(3, 9.5) + FootLine(left + slope, right) + TopLine(28.5, 35);
}

Outline BoardZ() {
  return TopLine(3.5, 30.5) + FootLine(3, 31) + Diagonal(28, 10.5, 2.5) + Diagonal(20.5, 3, 2.5) +
         Box(3.5, kCap, 5.5, kCap + 6) + Box(29, kBaseline - 6.5, 31, kBaseline);
}

Outline BoardQ() {
  return EllipseRing({20, 23.5}, 17, 17.25, kRound, kLine) + Box(10, 10, 12, 37) +
         Pen(18, 32, 2).Curve(24, 33, 27, 39, 2.75).Curve(30, 45.5, 36.5, 45, 1.5).Ink();
}

Outline BoardR() {
  constexpr double top = kCap + kLine * 0.5, foot = 23.5;
  return DoubleStem(5) +
         Pen(12, top, kLine)
             .Line(21, top)
             .Curve(29.5, top, 29.5, (top + foot) * 0.5, kRound)
             .Curve(29.5, foot, 21, foot, kLine)
             .Line(12, foot)
             .Ink() +
         Band(Path(17, foot).Line(30.25, kBaseline), Path(20, foot).Line(33.25, kBaseline)) +
         FootLine(27, 35.5);
}

Outline BoardC() {
  return Pen(33, 13.5, 1.5)
             .Curve(28.5, kCap + 0.75, 20.5, kCap + 0.75, 2)
             .Curve(4.375, kCap + 0.75, 4.375, 23.5, kRound)
             .Curve(4.375, kBaseline - 0.75, 20.5, kBaseline - 0.75, 2)
             .Curve(29, kBaseline - 0.75, 33.5, 32.5, 1.5)
             .Ink() +
         Box(32, kCap, 34, 15) + Box(10.5, 9.5, 12.5, 37.5);
}

// The leg stands on the arm, the arm ends in the stem.
Outline BoardK() {
  return DoubleStem(5) + Band(Path(28, kCap).Line(13, 24.25), Path(31, kCap).Line(13, 27.75)) +
         Band(Path(17.25, 20.5).Line(31, kBaseline), Path(19.5, 19.5).Line(34, kBaseline)) + TopLine(25, 34) +
         FootLine(28, 36.5);
}

// Script capitals: one pen, thin where it rises and full where it falls.
Outline ScriptL() {
  return Pen(19, 19.5, 1.25)
      .Curve(34, 19, 34, 11, 1.5)
      .Curve(34, kCap, 29.5, kCap, 1.5)
      .Curve(22, kCap, 18.5, 22, 3.5)
      .Curve(14.5, 38.75, 8, 38.75, 2)
      .Curve(3.5, 38.75, 3.5, 35.5, 1.25)
      .Curve(3.5, 32.25, 8, 32.25, 1.5)
      .Curve(14, 32.25, 20, 36.25, 3)
      .Curve(25, 39.5, 29.5, 38.25, 2.5)
      .Curve(34, 36.75, 35.5, 31, 1.25)
      .Ink();
}

Outline ScriptH() {
  return Pen(4, 15, 1.25)
             .Curve(5, 8, 11, 8, 1.75)
             .Curve(17.5, 8, 16.5, 17, 3)
             .Curve(14, 38.75, 6.5, 38.75, 2)
             .Curve(3, 38.75, 3, 35, 1.25)
             .Ink() +
         Pen(41.5, 9, 1.25)
             .Curve(33.5, 5.5, 30.5, 18, 3.25)
             .Curve(27, 38.75, 33.5, 38.75, 2.75)
             .Curve(38, 38.75, 40.5, 32.5, 1.25)
             .Ink() +
         Pen(9.5, 25.5, 1.25).Curve(14, 22.5, 30.5, 22, 1.5).Ink();
}

Outline ScriptF() {
  return Pen(5, 15.5, 1.25)
             .Curve(6, 8.25, 14, 8.25, 2)
             .Curve(22, 8.25, 27.5, 9.75, 2.75)
             .Curve(34, 11, 38, 6.5, 1.25)
             .Ink() +
         Pen(24.5, 9, 1.25)
             .Curve(22.5, 12, 20, 24, 3.5)
             .Curve(17, 38.75, 9.5, 38.75, 2.25)
             .Curve(4, 38.75, 4, 33.5, 1.25)
             .Ink() +
         Pen(14, 24, 1.25).Curve(20, 22.25, 30, 22.75, 1.5).Ink() +
         Pen(30.5, 19.5, 1.25).Line(28.5, 26.5).Ink();
}

// An italic h with a bar through its neck.
Outline HBar() {
  return Band(Path(8, 7.75).Line(8, 9).Line(9, 9.25).Line(2.75, kBaseline),
              Path(13.75, 6.5).Line(13.5, 7.75).Line(13.25, 8.75).Line(6.5, kBaseline)) +
         Pen(6.5, 31, 1.25)
             .Curve(12, 18.5, 17.5, 18.5, 2.5)
             .Curve(22, 18.5, 21, 24, 3.25)
             .Curve(20, 29, 18.75, 34, 3.25)
             .Curve(17.75, 38.75, 20, 38.75, 2.25)
             .Curve(22.5, 38.75, 24.5, 33.75, 1.25)
             .Ink() +
         Pen(4.5, 14.75, 1.5).Line(19.5, 11.25).Ink();
}

// One loop from the line up and back down.
Outline Ell() {
  return Pen(3, 33.5, 1.25)
      .Curve(13, 28, 17.5, 16.5, 1.5)
      .Curve(20.5, 7.5, 17, 7.5, 1.5)
      .Curve(12.5, 7.5, 10, 22, 3.25)
      .Curve(7, 39, 13, 39, 2.75)
      .Curve(17, 39, 20.5, 33, 1.25)
      .Ink();
}

// A delta turned over: the thick side comes first.
Outline Nabla() {
  return Polygon({{2, kCap}, {34.5, kCap}, {19.25, kBaseline}, {17.75, kBaseline}}) +
         Reverse(Polygon({{7.5, 9}, {31.25, 9}, {19.75, 33.75}})) +
         ThreadsBetween(Path(2, kCap).Line(17.75, kBaseline), Path(7.5, 9).Line(19.75, 33.75)) +
         ThreadsBetween(Path(2, kCap).Line(34.5, kCap), Path(7.5, 9).Line(31.25, 9)) +
         ThreadsBetween(Path(34.5, kCap).Line(19.25, kBaseline), Path(31.25, 9).Line(19.75, 33.75)) +
         Path(19.25, 34.5).Line(18.5, 39).Thread();
}

// A rounded d with its ascender bent over the bowl.
Outline Partial() {
  return Pen(6.5, 11, 1.25)
      .Curve(9.5, 7.5, 14, 7.5, 2)
      .Curve(23.25, 7.5, 23.25, 20, 3.75)
      .Curve(23.25, 38.75, 12, 38.75, 2.25)
      .Curve(4.25, 38.75, 4.25, 31, 3.5)
      .Curve(4.25, 20.5, 13.5, 20.5, 2.25)
      .Curve(20, 20.5, 22.75, 26.5, 2)
      .Ink();
}

// A lying eight in one stroke, thin at the crossing.
Outline Infinity() {
  return Pen(23.5, kAxis, 2)
      .Curve(28.5, kAxis - 8.5, 34.5, kAxis - 8.5, 2.25)
      .Curve(42, kAxis - 8.5, 42, kAxis, 3)
      .Curve(42, kAxis + 8.5, 34.5, kAxis + 8.5, 2.25)
      .Curve(28.5, kAxis + 8.5, 23.5, kAxis, 2)
      .Curve(18.5, kAxis - 8.5, 12.5, kAxis - 8.5, 2.25)
      .Curve(5, kAxis - 8.5, 5, kAxis, 3)
      .Curve(5, kAxis + 8.5, 12.5, kAxis + 8.5, 2.25)
      .Curve(18.5, kAxis + 8.5, 23.5, kAxis, 2)
      .Ink();
}

constexpr std::array kGlyphs = std::to_array<Glyph>({
    {'N', "uni2115", BoardN},
    {'Z', "uni2124", BoardZ},
    {'Q', "uni211A", BoardQ},
    {'R', "uni211D", BoardR},
    {'C', "uni2102", BoardC},
    {'K', "u1D542", BoardK},
    {'L', "uni2112", ScriptL},
    {'H', "uni210B", ScriptH},
    {'F', "uni2131", ScriptF},
    {'h', "hbar", HBar},
    {'l', "uni2113", Ell},
    {'G', "gradient", Nabla},
    {'d', "partialdiff", Partial},
    {'8', "infinity", Infinity},
});

}  // namespace

std::span<const Glyph> LetterGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
