#include "platform/canvas.h"

namespace kelvane {

void PlaceGlyphPath(const Path& path, Point origin, float em, Path& placed) {
  const float unit = kGlyphUnit * em;
  placed.steps = path.steps;
  placed.points.clear();
  for (const Point& point : path.points)
    placed.points.push_back({origin.x + point.x * unit, origin.y - point.y * unit});
}

void Painter::DrawGlyph(const GlyphLines& glyph, Point origin, ColourValue colour) {
  Path placed;
  for (const auto& [path, width] : glyph.lines) {
    if (path == nullptr) continue;
    PlaceGlyphPath(*path, origin, glyph.em, placed);
    StrokePath(placed, {colour, width});
  }
}

}  // namespace kelvane
