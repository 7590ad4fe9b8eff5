#pragma once

// The designer's pictures beside the grid: the table of the 96 codes, and the glyph being drawn as the page
// and print will show it.

#include <cstdint>
#include <optional>

#include "designer/strokes.h"
#include "platform/canvas.h"

namespace kelvane {

inline constexpr int kTableColumns = 16;

// Puts the procedure and the width of strokes into memory while it lives, so that runs show a glyph which is
// not saved.
class TriedGlyph {
 public:
  TriedGlyph(std::int16_t code, const GlyphStrokes& strokes);
  ~TriedGlyph();
  TriedGlyph(const TriedGlyph&) = delete;
  TriedGlyph& operator=(const TriedGlyph&) = delete;

 private:
  std::int16_t code;
  std::string procedure;
  float width;
};

// The codes in rows of kTableColumns; coordinates are pixels. The chosen code is marked, and the one that the
// keys have reached is framed.
void PaintCodeTable(Canvas& canvas, const Box& area, std::int16_t chosen, std::int16_t reached);
std::optional<std::int16_t> CodeInTable(const Box& area, Point at);

// The character among others, as on the screen and as in print, at the size in force and at 48 points; and
// with the pieces that it joins, if it is one of them.
void PaintPreview(Canvas& canvas, const Box& area, std::int16_t code);

}  // namespace kelvane
