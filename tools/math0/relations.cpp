#include <array>

#include "tools/math0/glyphs.h"

// Relations and logic, of one weight and centred on the axis. Most relations are 30 units wide with 3 on
// either side.

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
Outline Wedge() {
  return SlantBar(14.5, 13, 3, 42, 3) + SlantBar(15.5, 13, 27, 42, 3);
}
Outline Vee() {
  return MirrorY(Wedge(), kAxis);
}

constexpr std::array kGlyphs = std::to_array<Glyph>({
    {'#', "equivalence", Equivalent},
    {'@', "congruent", Congruent},
    {'?', "uni2243", Asymptotic},
    {'$', "precedes", Precedes},
    {'%', "succeeds", Succeeds},
    {'W', "muchless", MuchLess},
    {'X', "muchgreater", MuchGreater},
    {'k', "proportional", Proportional},
    {'c', "propersubset", Subset},
    {'\x7f', "reflexsubset", SubsetOrEqual},
    {'e', "element", Element},
    {'T', "uni22A2", Turnstile},
    {'M', "uni22A8", Models},
    {'!', "uni0338", Negation},
    {'A', "universal", ForAll},
    {'E', "existential", Exists},
    {'&', "logicaland", Wedge},
    {'o', "logicalor", Vee},
});

}  // namespace

std::span<const Glyph> RelationGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
