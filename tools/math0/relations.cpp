#include <array>

#include "tools/math0/glyphs.h"

// Relations, logic and small operators, of one weight and centred on the axis. Most relations are 30 units
// wide with 3 on either side.

namespace kelvane::math0 {
namespace {

constexpr double kWeight = 2.75;  // of the equals sign of Symbol
constexpr double kLeft = 3, kRight = 33, kMiddle = 18;

Outline Level(double y, double left = kLeft, double right = kRight) {
  return Box(left, y - kWeight * 0.5, right, y + kWeight * 0.5);
}

// Two waves, drawn out thin at the ends; `rise` from the middle to crest and trough.
Outline Wave(double y, double rise) {
  return Pen(kLeft + 1, y + rise + 0.5, 1.5)
      .Curve(kLeft + 1.5, y - rise, kLeft + 8, y - rise, 2.5)
      .Curve(kMiddle - 4, y - rise, kMiddle, y, 3)
      .Curve(kMiddle + 4, y + rise, kRight - 8, y + rise, 2.5)
      .Curve(kRight - 1.5, y + rise, kRight - 1, y - rise - 0.5, 1.5)
      .Ink();
}

Outline Equivalent() {
  return Level(kAxis - 7.5) + Level(kAxis) + Level(kAxis + 7.5);
}
Outline Congruent() {
  return Wave(kAxis - 7, 3) + Level(kAxis + 2) + Level(kAxis + 9.5);
}
Outline Asymptotic() {
  return Wave(kAxis - 3, 3.25) + Level(kAxis + 6.5);
}

// Each arm a curve that leaves the point level and bends away.
Outline Precedes() {
  const Outline arm = Pen(31.3125, kAxis - 13.5, 2.25).Curve(26, kAxis - 1.5, 4, kAxis, 2.75).Ink();
  return arm + MirrorY(arm, kAxis);
}
Outline Succeeds() {
  const Bounds bounds = BoundsOf(Precedes());
  return MirrorX(Precedes(), (bounds.left + bounds.right) * 0.5);
}

Outline MuchLess() {
  const Outline chevron =
      Pen(25.1875, kAxis - 12, kWeight).Line(5.1875, kAxis).Line(25.1875, kAxis + 12).Ink();
  return chevron + Shift(chevron, 14, 0);
}
Outline MuchGreater() {
  const Bounds bounds = BoundsOf(MuchLess());
  return MirrorX(MuchLess(), (bounds.left + bounds.right) * 0.5);
}

// One stroke that crosses itself.
Outline Proportional() {
  return Pen(33, kAxis - 8, 2.25)
      .Curve(27.5, kAxis - 8, 22, kAxis, 2.5)
      .Curve(17, kAxis + 8, 11.5, kAxis + 8, 2.75)
      .Curve(4.375, kAxis + 8, 4.375, kAxis, 3)
      .Curve(4.375, kAxis - 8, 11.5, kAxis - 8, 2.75)
      .Curve(17, kAxis - 8, 22, kAxis, 2.5)
      .Curve(27.5, kAxis + 8, 33, kAxis + 8, 2.25)
      .Ink();
}

Outline Horseshoe(double middle, double radius) {
  return Pen(kRight, middle - radius, kWeight)
      .Line(kLeft + kWeight * 0.5 + radius, middle - radius)
      .Curve(kLeft + kWeight * 0.5, middle - radius, kLeft + kWeight * 0.5, middle)
      .Curve(kLeft + kWeight * 0.5, middle + radius, kLeft + kWeight * 0.5 + radius, middle + radius)
      .Line(kRight, middle + radius)
      .Ink();
}
Outline Subset() {
  return Horseshoe(kAxis, 12);
}
Outline SubsetOrEqual() {
  return Horseshoe(kAxis - 4, 10) + Level(kAxis + 13.5);
}
Outline Element() {
  return Horseshoe(kAxis, 12) + Level(kAxis, kLeft + kWeight * 0.5);
}

Outline Turnstile() {
  return Box(3, kAxis - 14, 3 + kWeight, kAxis + 14) + Level(kAxis, 3, 29);
}
Outline Models() {
  return Box(3, kAxis - 14, 3 + kWeight, kAxis + 14) + Level(kAxis - 4.5, 3, 29) + Level(kAxis + 4.5, 3, 29);
}

// Takes no room: it strikes out what the pen is stepped back onto.
Outline Negation() {
  return Pen(7, kAxis - 17.5, kWeight).Line(-7, kAxis + 17.5).Ink();
}

// Level cuts at the ends of slanting strokes, as in capital letters.
Outline SlantBar(double topX, double top, double bottomX, double bottom, double width) {
  return Band(Path(topX, top).Line(bottomX, bottom), Path(topX + width, top).Line(bottomX + width, bottom));
}

Outline ForAll() {
  return SlantBar(1.5, 7, 15, 40, 3) + SlantBar(29, 7, 15.5, 40, 3) + Level(18.5, 8, 25.5);
}
Outline Exists() {
  return Box(26 - kWeight, 7, 26, 40) + Box(4, 7, 26, 7 + kWeight) + Level(23.5, 6, 26) +
         Box(4, 40 - kWeight, 26, 40);
}

// As high and wide as the plus-minus sign of Symbol, which it is turned over.
Outline MinusPlus() {
  constexpr double left = 2, right = 26, middle = (left + right) * 0.5;
  return Level(9.375, left, right) + Level(26.75, left, right) +
         Box(middle - kWeight * 0.5, 13.5, middle + kWeight * 0.5, 40);
}

// Circle and square are so wide that the shaft of an arrow, stepped back by fixed spaces, comes to lie in
// their middle, and the circle's ink takes the shaft's ends.
constexpr double kFrame = 2.5, kFrameMiddle = 17.5, kFrameReach = 14;

Outline Circle() {
  return EllipseRing({kFrameMiddle, kAxis}, kFrameReach, kFrameReach, kFrame, kFrame);
}
Outline CircledDot() {
  return Circle() + Disc({kFrameMiddle, kAxis}, 3);
}
Outline Square() {
  constexpr double left = kFrameMiddle - kFrameReach, right = kFrameMiddle + kFrameReach;
  constexpr double top = kAxis - kFrameReach, bottom = kAxis + kFrameReach;
  return Box(left, top, right, top + kFrame) + Box(left, bottom - kFrame, right, bottom) +
         Box(left, top, left + kFrame, bottom) + Box(right - kFrame, top, right, bottom);
}
Outline Triangle() {
  return Polygon({{18, 12}, {34, 40}, {2, 40}}) + Reverse(Polygon({{18, 17}, {29.75, 37.5}, {6.25, 37.5}})) +
         ThreadsBetween(Path(2, 40).Line(18, 12), Path(6.25, 37.5).Line(18, 17)) +
         ThreadsBetween(Path(18, 12).Line(34, 40), Path(18, 17).Line(29.75, 37.5)) +
         ThreadsBetween(Path(34, 40).Line(2, 40), Path(29.75, 37.5).Line(6.25, 37.5));
}

constexpr std::array kGlyphs = std::to_array<Glyph>({
    {'#', "equivalence", Equivalent},  {'@', "congruent", Congruent},
    {'?', "uni2243", Asymptotic},      {'$', "precedes", Precedes},
    {'%', "succeeds", Succeeds},       {'W', "muchless", MuchLess},
    {'X', "muchgreater", MuchGreater}, {'k', "proportional", Proportional},
    {'c', "propersubset", Subset},     {'\x7f', "reflexsubset", SubsetOrEqual},
    {'e', "element", Element},         {'T', "uni22A2", Turnstile},
    {'M', "uni22A8", Models},          {'!', "uni0338", Negation},
    {'A', "universal", ForAll},        {'E', "existential", Exists},
    {'p', "uni2213", MinusPlus},       {'o', "uni2299", CircledDot},
    {'\'', "uni25CB", Circle},         {'a', "uni25A1", Square},
    {'D', "uni25B3", Triangle},
});

}  // namespace

std::span<const Glyph> RelationGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
