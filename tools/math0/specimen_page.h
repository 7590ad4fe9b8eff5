#pragma once

// A page in the making, and the runs that are put on it.

#include <string>
#include <string_view>

namespace kelvane::math0 {

// Anchors of a run on its baseline.
enum Anchor { kLeft = 3, kCentre = 4, kRight = 5 };

// Text of a run in a face, from there on. Every piece of a run names its face.
std::string Roman(std::string_view text);
std::string Bold(std::string_view text);
std::string Italic(std::string_view text);
std::string Sans(std::string_view text);
std::string Greek(std::string_view text);  // upright: Symbol, with its signs + - = < >
std::string Math(std::string_view text);
// A fixed space of 0.12 of the size.
inline constexpr std::string_view kHair = "\xFE";

class Page {
 public:
  // A run of pieces with its anchor at (x, y), points.
  void Put(float x, float y, float size, const std::string& run, Anchor anchor = kLeft);
  // Writes the page as the program does, into the program folder. Throws Failure.
  void Save(const std::string& name) const;

 private:
  std::string lines;
};

// Width of a run in points.
float WidthOf(const std::string& run, float size);

}  // namespace kelvane::math0
