#include <array>

#include "tools/math0/glyphs.h"

// Accents and dots.
//
// An accent takes no room: its ink lies evenly about x = 0, at the height for a small letter. A glyph's
// right-hand bearing repeats its left one, so this is as far to the left as a mark can stand; the pen is
// stepped back onto the letter before the accent and forward again after it.

namespace kelvane::math0 {
namespace {

constexpr double kDot = 2.75;       // radius, that of a full stop
constexpr double kAccentDot = 2.5;  // radius

Outline Hat() {
  return Band(Path(-6.25, 13.25).Line(0, 6.25).Line(6.25, 13.25),
              Path(-4.75, 14.25).Line(0, 9.5).Line(4.75, 14.25));
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
  return Box(-8, 9.75, 8, 12);
}

// The arrow's shaft and barbs, a size smaller.
Outline VectorMark() {
  const Outline barb =
      Band(Path(10, 9.5).Curve(5.75, 10.75, 3.75, 14.25), Path(5.75, 9.5).Curve(3.5, 11, 2.25, 13.25));
  return barb + MirrorY(barb, 9.5) + Box(-10, 8.625, 7, 10.375);
}

Outline DotMark() {
  return Disc({0, 11}, kAccentDot);
}
Outline DoubleDotMark() {
  return Disc({-4.5, 11}, kAccentDot) + Disc({4.5, 11}, kAccentDot);
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

constexpr std::array kGlyphs = std::to_array<Glyph>({
    {'^', "circumflex", Hat},
    {'~', "tilde", Tilde},
    {'_', "macron", Macron},
    {'`', "uni20D7", VectorMark},
    {'0', "dotaccent", DotMark},
    {'"', "dieresis", DoubleDotMark},
    {'.', "uni22EF", DotsLevel},
    {':', "uni22EE", DotsUpright},
    {'\\', "uni22F1", DotsFalling},
    {'/', "uni22F0", DotsRising},
});

}  // namespace

std::span<const Glyph> MarkGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
