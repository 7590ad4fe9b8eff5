#pragma once

// What the designer's grid looks like.

#include <cstdint>

#include "designer/stroke_editor.h"
#include "platform/canvas.h"

namespace kelvane {

// A character that is shown faintly behind the grid, to draw against. A blank of the text faces shows none.
struct BackgroundCharacter {
  std::int16_t font = 0;
  char code = ' ';
};

// The grid and the glyph with its handles, in design units; `unit` is the pixels of one, `area` what is
// shown.
void PaintDesign(Painter& painter, const StrokeEditor& design, const BackgroundCharacter& background,
                 float unit, const Box& area);

// What comes and goes above it: the rectangle that selects points, the pen with its arms' length, and the
// segment that the next click would draw.
void PaintRubber(Painter& painter, const Box& box);
void PaintPen(Painter& painter, Point at, float arm);
void PaintNextSegment(Painter& painter, Point from, Point to);

}  // namespace kelvane
