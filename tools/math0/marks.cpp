#include <array>

#include "tools/math0/glyphs.h"

// Accents, dots, prime and dagger.
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

// A wedge, round and full at the top.
Outline Prime() {
  return Band(Path(3, 19.5).Line(7, 8).Curve(7.75, 6, 9.5, 6.5),
              Path(4.25, 20).Line(10.75, 9).Curve(11.5, 7.25, 9.5, 6.5));
}

// Four tapering arms; the foot is the long one.
Outline Dagger() {
  constexpr double middle = 12.5, bar = 18;
  const Outline head = Band(Path(middle, 7).Curve(10.25, 7, 10.5, 9.5).Line(11.75, 17.5),
                            Path(middle, 7).Curve(14.75, 7, 14.5, 9.5).Line(13.25, 17.5));
  const Outline foot =
      Band(Path(11.75, 17.5).Line(10.75, 25).Line(12, 46), Path(13.25, 17.5).Line(14.25, 25).Line(13, 46));
  const Outline arm = Band(Path(3, bar).Curve(3, 15.75, 5.5, 16).Line(middle, 17.375),
                           Path(3, bar).Curve(3, 20.25, 5.5, 20).Line(middle, 18.625));
  return head + foot + arm + MirrorX(arm, middle);
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
    {'\'', "minute", Prime},
    {'D', "dagger", Dagger},
});

}  // namespace

std::span<const Glyph> MarkGlyphs() {
  return kGlyphs;
}

}  // namespace kelvane::math0
