#include <array>

#include "tools/math0/glyphs.h"

// Letters that are signs: blackboard bold, script, and the single letters of physics and set theory.
// Capitals reach from y 7 to the baseline at 40, small letters from 17.5.

namespace kelvane::math0 {
namespace {

constexpr double kCap = 7;
constexpr double kLine = 1.5;  // weight of the lines of a blackboard letter

// A slanting line between the top and the baseline with level ends.
Outline Diagonal(double topX, double bottomX, double width) {
  return Polygon({{topX, kCap}, {topX + width, kCap}, {bottomX + width, kBaseline}, {bottomX, kBaseline}});
}

// The doubled stem of a blackboard letter: two lines closed at top and foot, with a little serif to the left.
Outline DoubleStem(double left) {
  return Box(left, kCap, left + kLine, kBaseline) + Box(left + 7, kCap, left + 7 + kLine, kBaseline) +
         Box(left - 2.5, kCap, left + 9, kCap + kLine) +
         Box(left - 2.5, kBaseline - kLine, left + 9, kBaseline);
}

Outline BoardN() {
  return Box(3, kCap, 5, kBaseline) + Box(33, kCap, 35, kBaseline) + Diagonal(3, 25.5, 2.5) +
         Diagonal(10, 32.5, 2.5) + Box(3, kCap, 12.5, kCap + kLine) +
         Box(25.5, kBaseline - kLine, 35, kBaseline);
}

Outline BoardZ() {
  return Box(3.5, kCap, 30.5, kCap + kLine) + Box(3, kBaseline - kLine, 31, kBaseline) +
         Diagonal(28, 10.5, 2.5) + Diagonal(20.5, 3, 2.5) + Box(3.5, kCap, 5.5, kCap + 6) +
         Box(29, kBaseline - 6.5, 31, kBaseline);
}

Outline BoardQ() {
  return EllipseRing({20, 23.5}, 17, 17.25, 2.25, 2) + Box(10, 10, 12, 37) +
         Pen(18, 32, 2).Curve(24, 33, 27, 39, 2.75).Curve(30, 45.5, 36.5, 45, 1.5).Ink();
}

Outline BoardR() {
  return DoubleStem(5) +
         Pen(12, kCap + 1, kLine)
             .Line(21, kCap + 1)
             .Curve(29.5, kCap + 1, 29.5, 15.75, 2)
             .Curve(29.5, 23.5, 21, 23.5, kLine)
             .Line(12, 23.5)
             .Ink() +
         Polygon({{17, 23.5}, {19.75, 23.5}, {33, kBaseline}, {30.25, kBaseline}}) +
         Box(27, kBaseline - kLine, 35.5, kBaseline);
}

Outline BoardC() {
  return Pen(33, 13.5, 1.5)
             .Curve(28.5, kCap + 0.75, 20.5, kCap + 0.75, 2)
             .Curve(4.25, kCap + 0.75, 4.25, 23.5, 2)
             .Curve(4.25, kBaseline - 0.75, 20.5, kBaseline - 0.75, 2)
             .Curve(29, kBaseline - 0.75, 33.5, 32.5, 1.5)
             .Ink() +
         Box(32, kCap, 34, 15) + Box(10.5, 9.5, 12.5, 37.5);
}

Outline BoardK() {
  return DoubleStem(5) + Polygon({{28, kCap}, {31, kCap}, {14, 26.5}, {12, 25.5}}) +
         Polygon({{17.5, 20}, {20, 20.5}, {34, kBaseline}, {31, kBaseline}}) +
         Box(25, kCap, 34, kCap + kLine) + Box(28, kBaseline - kLine, 36.5, kBaseline);
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
  return Polygon({{8, 7.75}, {13.75, 6.5}, {6.5, kBaseline}, {2.75, kBaseline}, {9, 9.25}, {8, 9}}) +
         Path(11, 8.5).Line(4.75, 39).Thread() +
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

// A loop on the left, then a bowl with a tail below the line.
Outline WeierstrassP() {
  return Pen(9.5, 36.5, 1.25)
      .Curve(3.25, 35.5, 3.25, 28, 2.75)
      .Curve(3.25, 18.5, 10, 18.5, 1.75)
      .Curve(15.5, 18.5, 15, 29, 3)
      .Curve(14.5, 42, 9.5, 50, 1.75)
      .Curve(6.5, 54, 4.5, 51.5, 1.25)
      .Curve(3, 48.5, 8, 44, 1.25)
      .Curve(13.5, 38.75, 18, 38.75, 1.75)
      .Curve(27.25, 38.75, 27.25, 28, 3.25)
      .Curve(27.25, 18.5, 21, 18.5, 1.75)
      .Curve(16.5, 18.5, 14.5, 25, 1.25)
      .Ink();
}

// A thick falling diagonal with an arm above and a leg below, each with a bent end.
Outline Aleph() {
  const Outline arm =
      Pen(24.5, 28.5, 1.75).Curve(29.5, 25, 29.5, 17.5, 3.75).Curve(29.5, 13, 26.75, 8, 1.5).Ink();
  const Outline leg =
      Pen(12, 19.5, 1.75).Curve(4.5, 24, 6.75, 33, 3.75).Curve(7.5, 36, 7.75, kBaseline - 0.5, 3.75).Ink();
  return Polygon(
             {{3.5, 7.5}, {5, 7.5}, {8.5, 11.5}, {31, 33}, {31.5, 40}, {30, 40}, {27, 35.75}, {4, 13.25}}) +
         Path(6.25, 12).Line(29.5, 35).Thread() + arm + leg +
         Polygon({{3.5, 38.25}, {10, 38.25}, {10, 40}, {3.5, 40}});
}

// A delta turned over: the thick side comes first.
Outline Nabla() {
  return Polygon({{2, kCap}, {34.5, kCap}, {19.25, kBaseline}, {17.75, kBaseline}}) +
         Reverse(Polygon({{7.5, 9}, {31.25, 9}, {19.75, 33.75}})) + Path(4.75, 8).Line(17.5, 34.5).Thread();
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
    {'N', "Nblackboard", BoardN},
    {'Z', "Zblackboard", BoardZ},
    {'Q', "Qblackboard", BoardQ},
    {'R', "Rblackboard", BoardR},
    {'C', "Cblackboard", BoardC},
    {'K', "Kblackboard", BoardK},
    {'L', "Lscript", ScriptL},
    {'H', "Hscript", ScriptH},
    {'F', "Fscript", ScriptF},
    {'h', "hbar", HBar},
    {'l', "ell", Ell},
    {'p', "weierstrass", WeierstrassP},
    {'a', "aleph", Aleph},
    {'G', "gradient", Nabla},
    {'d', "partialdiff", Partial},
    {'8', "infinity", Infinity},
});

}  // namespace

std::span<const Glyph> LetterGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
