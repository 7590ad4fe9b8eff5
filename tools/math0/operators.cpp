#include <array>

#include "tools/math0/glyphs.h"

// Large operators: display sizes, and text sizes of the sum and the integral drawn for themselves, since a
// display sign made smaller would be too light beside text.

namespace kelvane::math0 {
namespace {

struct SumShape {
  double top, bottom, left, right;
  double thick;  // of the falling diagonal, along a level line
  double thin;   // of the rising one
  double arm;    // of the level arms
  double beak;   // how far the arms' ends reach inwards
};

// Threads of an arm and its beak. Outside it runs along the edge to a corner and the beak's end, inside from
// `inner` to `start` and along the bend.
Outline ArmThreads(Vec edge, Vec corner, Vec end, Vec inner, Vec start, const Segment& bend) {
  const Vec middle = PointOn(start, bend, 0.5);
  return ThreadsBetween(
      Path(edge.x, edge.y).Line(start.x, edge.y).Line(corner.x, corner.y).Line(end.x, end.y),
      Path(inner.x, inner.y).Line(start.x, start.y).Line(middle.x, middle.y).Line(bend.end.x, bend.end.y));
}

// An arm's end: a beak that leans outwards a little, joined to the arm by a curve.
// The rising diagonal and the falling one meet where their edges cross, so their weights may differ.
Outline Sum(const SumShape& s) {
  const Vec fallTop{s.left, s.top + s.arm * 0.75};
  const Vec riseFoot{s.left, s.bottom - s.arm * 0.75};
  const Vec knee{s.left + (s.right - s.left) * 0.41, (s.top + s.bottom) * 0.5};
  const Vec tip = LinesMeet({s.left + s.thick, fallTop.y}, knee - fallTop, {s.left + s.thin, riseFoot.y},
                            knee - riseFoot);
  const auto onFall = [&](double y) {
    return s.left + s.thick + (y - fallTop.y) * (knee - fallTop).x / (knee - fallTop).y;
  };
  const auto onRise = [&](double y) {
    return s.left + s.thin + (y - riseFoot.y) * (knee - riseFoot).x / (knee - riseFoot).y;
  };
  const double topArm = s.top + s.arm;
  const double footArm = s.bottom - s.arm * 1.3;
  const double curl = s.beak * 0.9;
  const double crook = s.right - 3 - curl;
  const double footTip = s.bottom - s.beak * 1.15;
  const Outline threads =
      ThreadsBetween(Path(fallTop.x, fallTop.y).Line(knee.x, knee.y),
                     Path(onFall(topArm), topArm).Line(tip.x, tip.y)) +
      ThreadsBetween(Path(knee.x, knee.y).Line(riseFoot.x, riseFoot.y),
                     Path(tip.x, tip.y).Line(onRise(footArm), footArm)) +
      ArmThreads({s.left, s.top}, {s.right - 1, s.top}, {s.right, s.top + s.beak}, {s.left + 1, topArm},
                 {crook, topArm}, {{s.right - 3, topArm}, {s.right - 1.5, s.top + s.beak}}) +
      ArmThreads({s.left, s.bottom}, {s.right - 0.75, s.bottom}, {s.right + 1, footTip},
                 {s.left + 1, footArm}, {crook, footArm},
                 {{s.right - 2.5, footArm}, {s.right - 0.5, footTip}});
  return Path(s.left, s.top)
             .Line(s.right - 1, s.top)
             .Line(s.right, s.top + s.beak)
             .Line(s.right - 1.5, s.top + s.beak)
             .Curve(s.right - 3, topArm, crook, topArm)
             .Line(onFall(topArm), topArm)
             .Line(tip.x, tip.y)
             .Line(onRise(footArm), footArm)
             .Line(crook, footArm)
             .Curve(s.right - 2.5, footArm, s.right - 0.5, footTip)
             .Line(s.right + 1, footTip)
             .Line(s.right - 0.75, s.bottom)
             .Line(s.left, s.bottom)
             .Line(riseFoot.x, riseFoot.y)
             .Line(knee.x, knee.y)
             .Line(fallTop.x, fallTop.y)
             .Closed() +
         threads;
}

Outline DisplaySum() {
  return Sum({-6, 61, 3, 57, 7.25, 3.25, 2.5, 12});
}
Outline TextSum() {
  return Sum({4.5, 50.5, 2.5, 39.5, 5.75, 2.5, 2, 8.5});
}

// A slab serif with its flat side at y; `inwards` is 1 when the stem hangs below it, -1 when it stands on it.
Outline Slab(double left, double right, double stemLeft, double stemRight, double y, double inwards) {
  const double edge = y + 1.75 * inwards;
  const double deep = y + 4.5 * inwards;
  return Path(left, y)
             .Line(right, y)
             .Line(right, edge)
             .Curve(stemRight, edge, stemRight, deep)
             .Line(stemLeft, deep)
             .Curve(stemLeft, edge, left, edge)
             .Closed() +
         ThreadsBetween(Path(left, y).Line(right, y), Path(left, edge).Line(right, edge)) +
         Path(stemLeft - 1.5, edge).Line(stemRight + 1.5, edge).Thread();
}

// Two stems under one bar. The bar's underside runs into the stems with the same curve as the serifs.
Outline Product() {
  constexpr double top = -6, bottom = 61, stem = 5;
  constexpr double first = 9, second = 41;
  Outline ink = Box(first, top, first + stem, bottom) + Box(second, top, second + stem, bottom) +
                Path(3, top)
                    .Line(52, top)
                    .Line(52, top + 1.75)
                    .Curve(second + stem, top + 1.75, second + stem, top + 5)
                    .Line(second, top + 5)
                    .Curve(second, top + 2.75, second - 4, top + 2.75)
                    .Line(first + stem + 4, top + 2.75)
                    .Curve(first + stem, top + 2.75, first + stem, top + 5)
                    .Line(first, top + 5)
                    .Curve(first, top + 1.75, 3, top + 1.75)
                    .Closed() +
                ThreadsBetween(Path(3, top).Line(52, top), Path(3, top + 1.75).Line(52, top + 1.75)) +
                Path(first - 1.5, top + 2.25).Line(second + stem + 1.5, top + 2.25).Thread();
  for (const double left : {first, second})
    ink = ink + Slab(left - 6, left + stem + 6, left, left + stem, bottom, -1);
  return ink;
}

// The product turned over.
Outline Coproduct() {
  return MirrorY(Product(), kAxis);
}

// The upper half of an upright integral about x = 0: a stem that thins out into a hook `reach` wide, and a
// drop at the hook's end whose outer edge goes on from the hook's.
Outline IntegralHead(double top, double stem, double reach, double ball) {
  const double dropLeft = reach - 2 * ball;
  const double dropMiddle = top + ball * 1.5;
  const double crest = reach * 0.48;
  return Pen(crest, top + 0.875, 1.75).Curve(0, top + 0.875, 0, kAxis, stem).Ink() +
         Band(Path(crest, top)
                  .Curve(reach, top, reach, dropMiddle)
                  .Curve(reach, dropMiddle + ball, reach - ball, dropMiddle + ball),
              Path(crest, top + 1.75)
                  .Curve(dropLeft, top + 1.75, dropLeft, dropMiddle)
                  .Curve(dropLeft, dropMiddle + ball, reach - ball, dropMiddle + ball));
}

// Slanted; the lower half is the upper one turned by half a turn.
Outline Integral(double top, double stem, double reach, double ball) {
  const Outline head = IntegralHead(top, stem, reach, ball);
  return Slant(head + MirrorX(MirrorY(head, kAxis), 0), kAxis, 0.17);
}

Outline DisplayIntegralAtZero() {
  return Integral(-18.5, 5, 13.5, 2.75);
}

Outline DisplayIntegral() {
  return Shift(DisplayIntegralAtZero(), 22, 0);
}

Outline DoubleIntegral() {
  return Shift(DisplayIntegralAtZero(), 22, 0) + Shift(DisplayIntegralAtZero(), 39, 0);
}

Outline ContourIntegral() {
  return DisplayIntegral() + EllipseRing({22, kAxis}, 14, 14, 2.25, 2.25);
}

Outline TextIntegral() {
  return Shift(Integral(0.5, 4.25, 9.25, 2.25), 15.5, 0);
}

// A trough with upright sides: the union; turned over, the intersection.
Outline Cup() {
  constexpr double left = 6, right = 44, top = -1, bottom = 54.375;
  constexpr double radius = (right - left) * 0.5;
  return Pen(left, top, 3.5)
      .Line(left, bottom - radius)
      .Curve(left, bottom, left + radius, bottom, 3.25)
      .Curve(right, bottom, right, bottom - radius, 3.5)
      .Line(right, top)
      .Ink();
}

Outline Cap() {
  return MirrorY(Cup(), kAxis);
}

Outline Ring() {
  return EllipseRing({31, kAxis}, 28, 28, 3.25, 3.25);
}

// The bars of the cross end inside the ring's ink.
Outline DirectSum() {
  return Ring() + Box(4.5, kAxis - 1.375, 57.5, kAxis + 1.375) + Box(31 - 1.375, 1, 31 + 1.375, 54);
}

Outline Tensor() {
  constexpr double reach = 18.75;
  return Ring() + Pen(31 - reach, kAxis - reach, 2.75).Line(31 + reach, kAxis + reach).Ink() +
         Pen(31 + reach, kAxis - reach, 2.75).Line(31 - reach, kAxis + reach).Ink();
}

constexpr std::array kGlyphs = std::to_array<Glyph>({
    {'S', "summation.display", DisplaySum},
    {'s', "summation", TextSum},
    {'P', "product.display", Product},
    {'U', "uni2210.display", Coproduct},
    {'I', "integral.display", DisplayIntegral},
    {'i', "integral", TextIntegral},
    {'J', "uni222C.display", DoubleIntegral},
    {'O', "uni222E.display", ContourIntegral},
    {'u', "uni22C3", Cup},
    {'n', "uni22C2", Cap},
    {'+', "uni2A01", DirectSum},
    {'*', "uni2A02", Tensor},
});

}  // namespace

std::span<const Glyph> OperatorGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
