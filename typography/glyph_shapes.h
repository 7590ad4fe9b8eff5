#pragma once

// The shapes of the program's own font: its glyph procedures, a reduced PostScript, executed into paths.

#include <array>
#include <cstdint>
#include <string>

#include "platform/canvas.h"

namespace kelvane {

inline constexpr int kFirstGlyph = 32;
inline constexpr int kGlyphs = 96;  // codes 32 to 127

// Glyph procedures by code - 32 and column; empty means no glyph. Filled from MATH0.PSF and by saving a
// glyph.
extern std::string CharacterDefs[kGlyphs][4];

// Glyph units, y upwards (a box's top is its lower edge), origin on the baseline.
struct GlyphShape {
  Path path;
  bool filled = false;  // printed as an area, otherwise as a line
  // The lines of the screen: edges, and threads, which run to their end and back within a stroke and are
  // drawn one way. With lines of these widths a glyph has as much ink as the printed one, with threads and
  // without. Threads are as wide as the gaps between them, and the edges beside them half as wide, since half
  // of them lies outside.
  Path edges;
  Path threads;
  float threadWidth = 0;
  float edgeWidth = 0;  // without threads
  Box ink;              // what it covers in print; of no size where it draws nothing
};

// Executes a procedure. It stops at a 21st operand or at an operator that finds too few; what was drawn
// before that stands.
GlyphShape ExecuteGlyph(const std::string& procedure);

// The shape of a character of the glyph fonts 12 to 15, executed once; null for a code that has none. Math3
// shows the glyphs of Math0: pages of old papers use it as a second name for them.
const GlyphShape* ShapeOfGlyph(int code, std::int16_t font);

// Another number after a shape has become another one.
std::uint32_t EditionOfGlyphs();

}  // namespace kelvane
