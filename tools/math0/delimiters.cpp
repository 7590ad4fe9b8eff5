#include <array>
#include <cmath>

#include "tools/math0/glyphs.h"

// Tall delimiters, roots, and the bars and braces that are put together from pieces.
//
// A piece of a tall delimiter stands in a box of exactly 50 units, y 2.5 to 52.5, the axis in its middle; set
// one em below each other pieces meet. Stems are at x 5.75 to 8.75, as far from the piece's right edge on the
// right-hand side, so the one bar joins every left-hand piece at a left anchor and every right-hand piece at
// a right anchor.

namespace kelvane::math0 {
namespace {

constexpr double kTop = -10, kBottom = 65;  // of the single delimiters, one and a half ems
constexpr double kPieceTop = 2.5, kPieceBottom = 52.5;
constexpr double kStemLeft = 5.75, kStemRight = kStemLeft + kDelimiter;
constexpr double kStemMiddle = (kStemLeft + kStemRight) * 0.5;

// Mirrored so that the rightmost ink keeps the distance the leftmost had.
Outline Opposite(const Outline& outline) {
  const Bounds bounds = BoundsOf(outline);
  return MirrorX(outline, (bounds.left + bounds.right) * 0.5);
}

Outline WithLowerHalf(const Outline& upper) {
  return upper + MirrorY(upper, kAxis);
}

// Thin at the ends, full in the middle.
Outline ParenLeft() {
  return WithLowerHalf(Pen(18.0625, kTop, 1.5).Curve(6.375, 5, 6.375, kAxis, 3.75).Ink());
}
Outline ParenRight() {
  return Opposite(ParenLeft());
}

Outline BracketLeft() {
  constexpr double left = 4.75, right = 15.75, arm = 2;
  return Box(left, kTop, left + kDelimiter, kBottom) + Box(left, kTop, right, kTop + arm) +
         Box(left, kBottom - arm, right, kBottom);
}
Outline BracketRight() {
  return Opposite(BracketLeft());
}

Outline BraceLeft() {
  return WithLowerHalf(Pen(18.5, kTop + 0.75, 1.5)
                           .Curve(11, kTop + 0.75, 11, kTop + 11, 3.25)
                           .Line(11, kAxis - 9)
                           .Curve(11, kAxis, 4, kAxis, 1.25)
                           .Ink());
}
Outline BraceRight() {
  return Opposite(BraceLeft());
}

Outline AngleLeft() {
  return Pen(15, kTop, 2.25).Line(5, kAxis).Line(15, kBottom).Ink();
}
Outline AngleRight() {
  return Opposite(AngleLeft());
}

// Two ems tall: the height of a bracket made of two pieces.
Outline BigAngleLeft() {
  return Pen(19, kAxis - 50, 2.5).Line(5.5, kAxis).Line(19, kAxis + 50).Ink();
}
Outline BigAngleRight() {
  return Opposite(BigAngleLeft());
}

// Corners: floor and ceiling by themselves, ends of a tall bracket with bars between.
Outline CeilingLeft() {
  return Box(kStemLeft, kPieceTop, kStemRight, kPieceBottom) +
         Box(kStemLeft, kPieceTop, 17.25, kPieceTop + 2);
}
Outline CeilingRight() {
  return Opposite(CeilingLeft());
}
Outline FloorLeft() {
  return MirrorY(CeilingLeft(), kAxis);
}
Outline FloorRight() {
  return Opposite(FloorLeft());
}

// Hooks: ends of a tall parenthesis, or of a tall brace when its middle piece is put between. They swell
// where the bend ends, as a whole parenthesis does.
Outline HookTopLeft() {
  return Pen(19.5625, kPieceTop + 1, 1.5)
      .Curve(kStemMiddle, kPieceTop + 4, kStemMiddle, kPieceTop + 28, 3.5)
      .Line(kStemMiddle, kPieceBottom, kDelimiter)
      .Ink();
}
Outline HookTopRight() {
  return Opposite(HookTopLeft());
}
Outline HookBottomLeft() {
  return MirrorY(HookTopLeft(), kAxis);
}
Outline HookBottomRight() {
  return Opposite(HookBottomLeft());
}

// The point reaches beyond the origin, to x = -3.
Outline BraceMiddleLeft() {
  return WithLowerHalf(Pen(kStemMiddle, kPieceTop, kDelimiter)
                           .Line(kStemMiddle, kAxis - 16)
                           .Curve(kStemMiddle, kAxis, -3, kAxis, 1.25)
                           .Ink());
}
Outline BraceMiddleRight() {
  return Opposite(BraceMiddleLeft());
}

Outline Bar() {
  return Box(kStemLeft, kPieceTop, kStemRight, kPieceBottom);
}
Outline DoubleBar() {
  return Bar() + Shift(Bar(), 7, 0);
}

// All roots carry their bar at y 0 to 2, at the right edge of their advance, so the same vinculum goes on
// from each; the taller ones hang down from there. Flag, thick fall, thin rise, bar.
constexpr double kRootBar = 0;
constexpr double kRootRule = 2;  // roots are set larger than what they stand beside, so their bar is thinner

// The points of a root for each of two heights, and of those between them: `tall` goes from 0 to 1.
Outline RootOf(double tall) {
  const auto between = [tall](Vec one, Vec other) {
    const Vec at = one + (other - one) * tall;
    return Vec{std::round(at.x * 16) / 16, std::round(at.y * 16) / 16};
  };
  constexpr double foot = kRootBar + kRootRule;
  const Vec flag = between({0, 28}, {0, 59}), flagFoot = between({0.75, 29.75}, {0.75, 60.75});
  const Vec bend = between({7.25, 23.75}, {8, 54.25}), bendFoot = between({4.75, 27.5}, {5, 58.25});
  const Vec valley = between({15.75, 41}, {17.5, 87.5});
  const Vec tip = between({14.25, 47}, {15.75, 97}), tipRight = between({16, 47}, {17.75, 97});
  const Vec bar = between({30, kRootBar}, {36.5, kRootBar}), barFoot = between({31.5, foot}, {38.25, foot});
  const double end = between({36, 0}, {42, 0}).x;
  const Vec inner = between({15.5, 42}, {17.25, 89}), lowest = between({15.125, 46}, {16.75, 96});
  return Polygon({flag,
                  bend,
                  valley,
                  bar,
                  {end, kRootBar},
                  {end, foot},
                  barFoot,
                  tipRight,
                  tip,
                  bendFoot,
                  flagFoot}) +
         ThreadsBetween(Path(flag.x, flag.y).Line(bend.x, bend.y),
                        Path(flagFoot.x, flagFoot.y).Line(bendFoot.x, bendFoot.y)) +
         ThreadsBetween(Path(bend.x, bend.y).Line(valley.x, valley.y),
                        Path(bendFoot.x, bendFoot.y).Line(tip.x, tip.y)) +
         ThreadsBetween(Path(valley.x, valley.y).Line(bar.x, bar.y).Line(end, kRootBar),
                        Path(tipRight.x, tipRight.y).Line(barFoot.x, barFoot.y).Line(end, foot)) +
         Path(inner.x, inner.y).Line(lowest.x, lowest.y).Thread();
}
Outline Root() {
  return RootOf(0);
}
Outline MiddleRoot() {
  return RootOf(0.46);
}
Outline TallRoot() {
  return RootOf(1);
}
Outline Vinculum() {
  return Box(0, kRootBar, 25, kRootBar + kRootRule);
}

// Quarters of a level brace, full where the bend ends. Each has its shaft at the height and of the weight of
// the fraction bar, which joins them: an overbrace is left end, bars, end of the middle, start of the middle,
// bars, right end.
Outline LevelBraceLeftEnd() {
  return Pen(0.625, kAxis + 11.5, 1.25).Curve(0.625, kAxis, 9, kAxis, 3).Line(14, kAxis, kRule).Ink();
}
Outline LevelBraceRightEnd() {
  return MirrorX(LevelBraceLeftEnd(), 7);
}
Outline LevelBraceFromPoint() {
  return MirrorY(LevelBraceLeftEnd(), kAxis);
}
Outline LevelBraceToPoint() {
  return MirrorX(LevelBraceFromPoint(), 7);
}

constexpr std::array kGlyphs = std::to_array<Glyph>({
    {'(', "parenleft.big", ParenLeft},
    {')', "parenright.big", ParenRight},
    {'[', "bracketleft.big", BracketLeft},
    {']', "bracketright.big", BracketRight},
    {'{', "braceleft.big", BraceLeft},
    {'}', "braceright.big", BraceRight},
    {'<', "uni27E8.big", AngleLeft},
    {'>', "uni27E9.big", AngleRight},
    {',', "uni27E8.bigg", BigAngleLeft},
    {';', "uni27E9.bigg", BigAngleRight},
    {'r', "uni2308", CeilingLeft},
    {'t', "uni2309", CeilingRight},
    {'f', "uni230A", FloorLeft},
    {'g', "uni230B", FloorRight},
    {'7', "uni239B", HookTopLeft},
    {'9', "uni239E", HookTopRight},
    {'1', "uni239D", HookBottomLeft},
    {'3', "uni23A0", HookBottomRight},
    {'4', "uni23A8", BraceMiddleLeft},
    {'6', "uni23AC", BraceMiddleRight},
    {'|', "bar.ex", Bar},
    {'5', "dblverticalbar", DoubleBar},
    {'v', "radical", Root},
    {'&', "radical.big", MiddleRoot},
    {'V', "radical.bigg", TallRoot},
    {' ', "uni203E", Vinculum},
    {'q', "uni256D", LevelBraceLeftEnd},
    {'w', "uni256E", LevelBraceRightEnd},
    {'z', "uni2570", LevelBraceFromPoint},
    {'x', "uni256F", LevelBraceToPoint},
});

}  // namespace

std::span<const Glyph> DelimiterGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
