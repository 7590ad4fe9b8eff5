#include "platform/canvas.h"

namespace kelvane {

void Painter::DrawGlyph(const GlyphLines& glyph, Point origin, ColourValue colour) {
  const float unit = kGlyphUnit * glyph.em;
  for (const auto& [path, width] : glyph.lines) {
    if (path == nullptr) continue;
    Path placed;
    placed.steps = path->steps;
    for (const Point& point : path->points)
      placed.points.push_back({origin.x + point.x * unit, origin.y - point.y * unit});
    StrokePath(placed, {colour, width});
  }
}

}  // namespace kelvane
