#include "typography/run_painter.h"

#include <algorithm>
#include <cstddef>

#include "typography/colours.h"
#include "typography/glyph_shapes.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

// Lines of glyphs, in device pixels: thinner ones would vanish, wider ones blur what they outline.
constexpr float kLeastGlyphLine = 0.2F;
constexpr float kMostGlyphLine = 2;

}  // namespace

RunPen RunPainter::Paint(const Run& run) {
  const ColourValue colour = PaletteColour(run.colour);
  const float extraSpace = run.frame ? 0 : run.extraSpace;
  const RunPen end = WalkRun(
      run.text, PenAt(run.origin, run.font, run.size), extraSpace, [&](std::size_t index, const RunPen& pen) {
        PaintCharacter(static_cast<unsigned char>(run.text[index]), pen, colour, run.frame);
      });
  Flush();
  return end;
}

void RunPainter::PaintCharacter(int code, const RunPen& pen, ColourValue colour, bool frame) {
  if (pen.font < kFirstGlyphFont) {
    HoldBack(code, pen, colour);
  } else {
    Flush();
    PaintGlyph(code, pen, colour);
    if (frame) PaintFrame(code, pen, colour);
  }
}

void RunPainter::HoldBack(int code, const RunPen& pen, ColourValue colour) {
  if (pen.font != heldFont || pen.size != heldSize || colour != heldColour) Flush();
  heldFont = pen.font;
  heldSize = pen.size;
  heldColour = colour;
  heldCodes.push_back(static_cast<char>(code));
  heldOrigins.push_back({pen.x, pen.y});
}

void RunPainter::Flush() {
  if (!heldCodes.empty()) {
    painter.DrawText(kTypefaceNames[heldFont].screen, heldSize * view.scale, heldCodes, heldOrigins,
                     heldColour);
  }
  heldCodes.clear();
  heldOrigins.clear();
}

void RunPainter::PaintGlyph(int code, const RunPen& pen, ColourValue colour) {
  const GlyphShape* shape = ShapeOfGlyph(code, pen.font);
  if (!shape || shape->path.Empty()) return;
  const float unit = kGlyphUnit * pen.size;
  path.steps = shape->path.steps;
  path.points.clear();
  for (const Point& point : shape->path.points)
    path.points.push_back({pen.x + point.x * unit, pen.y - point.y * unit});
  const float line = shape->lineWidth * unit * view.scale;
  if (!view.printed) {
    // On the screen glyphs are lines, as wide as gives them the ink of the print.
    const float device = std::clamp(line * view.ratio, kLeastGlyphLine, kMostGlyphLine);
    painter.StrokePath(path, {colour, device / view.ratio});
  } else if (shape->filled) {
    painter.FillPath(path, colour);
  } else {
    painter.StrokePath(path, {colour, line});
  }
}

void RunPainter::PaintFrame(int code, const RunPen& pen, ColourValue colour) {
  const float right = pen.x + TypefaceTable[pen.font].Widths[static_cast<std::size_t>(code)] * pen.size;
  const float bottom = static_cast<float>(pen.y + 0.2 * pen.size);
  const float top = static_cast<float>(pen.y - 0.8 * pen.size);
  Path box;
  box.MoveTo({pen.x, bottom});
  for (const Point corner : {Point{right, bottom}, {right, top}, {pen.x, top}, {pen.x, bottom}})
    box.LineTo(corner);
  painter.StrokePath(box, {colour, 1});
}

}  // namespace kelvane
