#pragma once

// Drawing of characters, runs and curves on the page canvas.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/canvas.h"
#include "typography/metrics.h"

namespace kelvane {

inline constexpr int kFirstGlyph = 32;
inline constexpr int kGlyphs = 96;  // codes 32 to 127
// Control points of the cubic that stands for a quadratic lie this far from its ends towards the control
// point. Not the exact 2/3: pages and the printed `rp` and `rb` have always used this flatter curve, so the
// screen keeps it too.
inline constexpr double kCurveFactor = 0.556;
inline constexpr float kGlyphUnit = 0.02F;  // ems

// Glyph procedures by code - 32 and column; empty means no glyph. Filled from MATH0.PSF and by saving a
// glyph.
extern std::string CharacterDefs[kGlyphs][4];

extern Canvas* Picture1;
// Whether there is a page canvas and it has a size.
bool CanvasIsLaidOut();
extern Canvas* DesignerCanvas;  // target 2 of DrawCurve; null until that window exists

void ResetGlyphs();

// Draws one character with its origin on the baseline at (x, y), points, and advances x. `colour` is a
// colour number; `frame` adds the glyph's box. Throws Failure for a code outside 0 to 255.
void DrawChar(int code, std::int16_t font, float size, float& x, float y, std::int16_t colour, bool frame);

// Draws a run from (x, y) and leaves its end there. CurrentFont and the font label follow the run.
// `extraSpace` points are added after each blank while JustificationOn is true.
void DrawRun(float extraSpace, std::string_view text, std::int16_t font, float size, float& x, float& y,
             std::int16_t colour, bool frame);
// The same without touching CurrentFont and the label: what redraws use. Returns the pen at the run's end.
RunPen PaintRun(float extraSpace, std::string_view text, std::int16_t font, float size, Point at,
                std::int16_t colour, bool frame);

// The program's justification flag: on while a run of the "a" form is drawn. The renderer sets it.
extern bool JustificationOn;

// A quadratic curve in canvas units as one polyline of 16 pieces. Target 1 is the page canvas, 2 the
// designer's, any other draws nothing.
void DrawCurve(float x0, float y0, float x1, float y1, float x2, float y2, float lineWidth,
               std::int16_t colour, std::int16_t target);

// The curve's points: its start and the ends of its 16 pieces.
inline constexpr int kCurvePoints = 17;
using CurvePoints = std::array<Point, kCurvePoints>;
CurvePoints FlattenCurve(Point start, Point control, Point end);

}  // namespace kelvane
