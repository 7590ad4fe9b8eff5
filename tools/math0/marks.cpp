#include <array>

#include "tools/math0/glyphs.h"

// Accents, dots, prime and dagger.
//
// An accent takes no room: its ink lies evenly about x = 0, at the height for a small letter. A glyph's
// right-hand bearing repeats its left one, so this is as far to the left as a mark can stand; the pen is
// stepped back onto the letter before the accent and forward again after it.

namespace kelvane::math0 {
namespace {

constexpr double kDot = 2.5;  // radius

Outline Hat() {
  return Polygon({{0, 6.5}, {7, 13.25}, {5.5, 14.25}, {0, 9.5}, {-5.5, 14.25}, {-7, 13.25}}) +
         Path(-6, 13.5).Line(0, 8).Line(6, 13.5).Thread();
}

Outline Tilde() {
  return Pen(-6.75, 13.75, 1.25)
      .Curve(-6.25, 9.25, -3, 9.25, 2)
      .Curve(-1.5, 9.25, 0, 10.75, 2.25)
      .Curve(1.5, 12.25, 3, 12.25, 2)
      .Curve(6.25, 12.25, 6.75, 7.75, 1.25)
      .Ink();
}

Outline Macron() {
  return Box(-8, 10, 8, 11.75);
}

// The arrow's shaft and barbs, a size smaller.
Outline VectorMark() {
  return Path(10, 9.5)
             .Curve(5.75, 10.75, 3.75, 14.25)
             .Line(2.5, 13.5)
             .Curve(3.5, 11.5, 5.25, 10.25)
             .Line(-10, 10.25)
             .Line(-10, 8.75)
             .Line(5.25, 8.75)
             .Curve(3.5, 7.5, 2.5, 5.5)
             .Line(3.75, 4.75)
             .Curve(5.75, 8.25, 10, 9.5)
             .Closed() +
         Path(3.25, 5.25).Curve(4.75, 8.25, 7.5, 9.5).Curve(4.75, 10.75, 3.25, 13.75).Thread();
}

Outline DotMark() {
  return Disc({0, 11}, kDot);
}
Outline DoubleDotMark() {
  return Disc({-4.5, 11}, kDot) + Disc({4.5, 11}, kDot);
}

Outline DotsLevel() {
  return Disc({9, kAxis}, kDot) + Disc({25, kAxis}, kDot) + Disc({41, kAxis}, kDot);
}
Outline DotsUpright() {
  return Disc({7, kAxis - 15}, kDot) + Disc({7, kAxis}, kDot) + Disc({7, kAxis + 15}, kDot);
}
Outline DotsFalling() {
  return Disc({9, kAxis - 12.5}, kDot) + Disc({25, kAxis}, kDot) + Disc({41, kAxis + 12.5}, kDot);
}
Outline DotsRising() {
  return MirrorY(DotsFalling(), kAxis);
}

// A wedge, round and full at the top.
Outline Prime() {
  return Path(3, 19.5)
             .Line(7, 8)
             .Curve(7.75, 6, 9.5, 6.5)
             .Curve(11.5, 7.25, 10.75, 9)
             .Line(4.25, 20)
             .Closed() +
         Path(4.25, 18.5).Line(9, 8.5).Thread();
}

// Four tapering arms; the foot is the long one.
Outline Dagger() {
  return Path(12.5, 7)
             .Curve(14.75, 7, 14.5, 9.5)
             .Line(13.25, 17.25)
             .Line(19.5, 16)
             .Curve(22, 15.75, 22, 18)
             .Curve(22, 20.25, 19.5, 20)
             .Line(13.25, 18.75)
             .Line(14.25, 25)
             .Line(13, 46)
             .Line(12, 46)
             .Line(10.75, 25)
             .Line(11.75, 18.75)
             .Line(5.5, 20)
             .Curve(3, 20.25, 3, 18)
             .Curve(3, 15.75, 5.5, 16)
             .Line(11.75, 17.25)
             .Line(10.5, 9.5)
             .Curve(10.25, 7, 12.5, 7)
             .Closed() +
         Path(12.5, 9).Line(12.5, 32).Thread() + Path(5, 18).Line(20, 18).Thread();
}

constexpr std::array kGlyphs = std::to_array<Glyph>({
    {'^', "circumflex", Hat},
    {'~', "tilde", Tilde},
    {'_', "macron", Macron},
    {'`', "vector", VectorMark},
    {'0', "dotaccent", DotMark},
    {'"', "dieresis", DoubleDotMark},
    {'.', "dotscentered", DotsLevel},
    {':', "dotsvertical", DotsUpright},
    {'\\', "dotsdiagonaldown", DotsFalling},
    {'/', "dotsdiagonalup", DotsRising},
    {'\'', "minute", Prime},
    {'D', "dagger", Dagger},
});

}  // namespace

std::span<const Glyph> MarkGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
