#include <array>

#include "tools/math0/glyphs.h"

// Arrows and their joining pieces. Shafts lie on the axis, begin at x = 0 and end at the advance, so that
// tails, shafts and heads set one after the other make an arrow of any length. The single shaft is the
// fraction bar too.

namespace kelvane::math0 {
namespace {

constexpr double kDoubleGap = 3.25;  // from the axis to the middle of each shaft of a double arrow

Outline Shaft(double left, double right, double middle) {
  return Box(left, middle - kRule * 0.5, right, middle + kRule * 0.5);
}

// A pointed head with its tip on the axis at x: two barbs that curve away from the shaft.
Outline Head(double tip) {
  const Outline barb = Band(Path(tip, kAxis).Curve(tip - 6.5, kAxis + 3, tip - 10, kAxis + 10),
                            Path(tip - 6.5, kAxis).Curve(tip - 10, kAxis + 4, tip - 11.75, kAxis + 9));
  return barb + MirrorY(barb, kAxis);
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
  const Outline upper = Band(Path(tip, kAxis).Curve(tip - 9, kAxis - 5, tip - 13, kAxis - 13.75),
                             Path(tip - 4.25, kAxis).Curve(tip - 11.5, kAxis - 5, tip - 15, kAxis - 12.75)) +
                        Band(Path(0, outer).Line(tip - 8, outer), Path(0, inner).Line(tip - 5.5, inner));
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
  constexpr double left = kRule * 0.5, high = kAxis - 11.5;
  return Pen(16, kAxis, kRule)
      .Line(7, kAxis)
      .Curve(left, kAxis, left, kAxis - 5.75)
      .Curve(left, high, 7, high)
      .Line(9, high)
      .Ink();
}

constexpr std::array kGlyphs = std::to_array<Glyph>({
    {'y', "arrowright", ArrowRight},
    {'b', "arrowleft", ArrowLeft},
    {'2', "uni21A0", TwoHeaded},
    {'Y', "arrowdblright", ArrowDoubleRight},
    {'B', "arrowdblleft", ArrowDoubleLeft},
    {'-', "uni23AF", SingleShaft},
    {'=', "uni2550", DoubleShaft},
    {'m', "uni21A6.tail", MapTail},
    {'j', "uni21AA.tail", HookTail},
});

}  // namespace

std::span<const Glyph> ArrowGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
