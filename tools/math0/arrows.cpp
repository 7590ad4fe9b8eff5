#include <array>

#include "tools/math0/glyphs.h"

// Arrows and their joining pieces. Shafts lie on the axis, begin at x = 0 and end at the advance, so that
// tails, shafts and heads set one after the other make an arrow of any length. The single shaft is the
// fraction bar too.

namespace kelvane::math0 {
namespace {

constexpr double kShaftTop = kAxis - kRule * 0.5, kShaftBottom = kAxis + kRule * 0.5;
constexpr double kDoubleGap = 3.25;  // from the axis to the middle of each shaft of a double arrow

Outline Shaft(double left, double right, double middle) {
  return Box(left, middle - kRule * 0.5, right, middle + kRule * 0.5);
}

// A pointed head with its tip on the axis at x: two barbs that curve away from the shaft.
Outline Head(double tip) {
  return Path(tip, kAxis)
             .Curve(tip - 6.5, kAxis + 3, tip - 10, kAxis + 10)
             .Line(tip - 11.5, kAxis + 9.25)
             .Curve(tip - 9.75, kAxis + 4, tip - 6, kShaftBottom)
             .Line(tip - 6, kShaftTop)
             .Curve(tip - 9.75, kAxis - 4, tip - 11.5, kAxis - 9.25)
             .Line(tip - 10, kAxis - 10)
             .Curve(tip - 6.5, kAxis - 3, tip, kAxis)
             .Closed() +
         Path(tip - 10.75, kAxis - 9.5)
             .Curve(tip - 8, kAxis - 3.25, tip - 3, kAxis)
             .Curve(tip - 8, kAxis + 3.25, tip - 10.75, kAxis + 9.5)
             .Thread();
}

// The shaft ends inside the head, where the barbs meet.
Outline ArrowRight() {
  return Shaft(0, 38, kAxis) + Head(42);
}
Outline ArrowLeft() {
  return MirrorX(ArrowRight(), 21);
}
Outline TwoHeaded() {
  return Shaft(0, 42, kAxis) + Head(46) + Head(38);
}

// Wider barbs of even weight; the shafts are cut aslant to end within them.
Outline ArrowDoubleRight() {
  constexpr double tip = 44;
  constexpr double outer = kAxis - kDoubleGap - kRule * 0.5, inner = outer + kRule;
  const Outline upper = Path(tip, kAxis)
                            .Curve(tip - 9, kAxis - 5, tip - 13, kAxis - 13.5)
                            .Line(tip - 14.75, kAxis - 12.75)
                            .Curve(tip - 11, kAxis - 5, tip - 3.5, kAxis)
                            .Closed() +
                        Polygon({{0, outer}, {tip - 7.25, outer}, {tip - 5.25, inner}, {0, inner}}) +
                        Path(0, kAxis - kDoubleGap).Line(tip - 6.5, kAxis - kDoubleGap).Thread() +
                        Path(tip - 13.75, kAxis - 13).Curve(tip - 10, kAxis - 5, tip - 2, kAxis).Thread();
  return upper + MirrorY(upper, kAxis);
}
Outline ArrowDoubleLeft() {
  return MirrorX(ArrowDoubleRight(), 22);
}

Outline SingleShaft() {
  return Shaft(0, 25, kAxis);
}
Outline DoubleShaft() {
  return Shaft(0, 25, kAxis - kDoubleGap) + Shaft(0, 25, kAxis + kDoubleGap);
}

Outline MapTail() {
  return Box(0, kAxis - 8.5, kRule, kAxis + 8.5) + Shaft(0, 12, kAxis);
}

Outline HookTail() {
  return Pen(16, kAxis, kRule)
      .Line(7, kAxis)
      .Curve(1, kAxis, 1, kAxis - 5.75, kRule)
      .Curve(1, kAxis - 11.5, 7, kAxis - 11.5, kRule)
      .Line(9, kAxis - 11.5)
      .Ink();
}

constexpr std::array kGlyphs = std::to_array<Glyph>({
    {'y', "arrowright", ArrowRight},
    {'b', "arrowleft", ArrowLeft},
    {'2', "arrowtwoheadright", TwoHeaded},
    {'Y', "arrowdblright", ArrowDoubleRight},
    {'B', "arrowdblleft", ArrowDoubleLeft},
    {'-', "arrowhorizex", SingleShaft},
    {'=', "arrowdblhorizex", DoubleShaft},
    {'m', "mapstotail", MapTail},
    {'j', "arrowhooktail", HookTail},
});

}  // namespace

std::span<const Glyph> ArrowGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
