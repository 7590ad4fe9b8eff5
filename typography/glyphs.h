#pragma once

// Drawing on the page canvas at once, by character, run and curve: for what stands outside the page's items.

#include <cstdint>
#include <string_view>

#include "platform/canvas.h"
#include "typography/curves.h"
#include "typography/glyph_shapes.h"
#include "typography/view.h"

namespace kelvane {

extern Canvas* DesignerCanvas;  // target 2 of DrawCurve; null until that window exists

void ResetGlyphs();

// Draws one character with its origin on the baseline at (x, y), points, and advances x. `colour` is a
// colour number; `frame` adds the glyph's box. Throws Failure for a code outside 0 to 255.
void DrawChar(int code, std::int16_t font, float size, float& x, float y, std::int16_t colour, bool frame);

// Draws a run from (x, y) and leaves its end there. CurrentFont and the font label follow the run.
// `extraSpace` points are added after each blank while JustificationOn is true.
void DrawRun(float extraSpace, std::string_view text, std::int16_t font, float size, float& x, float& y,
             std::int16_t colour, bool frame);
extern bool JustificationOn;

// A quadratic curve in canvas units as one line of 16 pieces, `lineWidth` pixels wide. Target 1 is the page
// canvas, 2 the designer's, any other draws nothing.
void DrawCurve(float x0, float y0, float x1, float y1, float x2, float y2, float lineWidth,
               std::int16_t colour, std::int16_t target);

}  // namespace kelvane
