#include "typography/run_painter.h"

#include <algorithm>
#include <cstddef>

#include "typography/colours.h"
#include "typography/glyph_shapes.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

// Lines of glyphs, in device pixels: thinner ones would vanish, wider ones blur what they outline.
constexpr float kLeastGlyphLine = 1.0F / 3;
constexpr float kMostGlyphLine = 2;
// Below so much of the least width all lines would have a third more ink: it is kept with fewer ones then.
constexpr float kThreadsFrom = 0.75F;

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
  if (pen.font != heldFont_ || pen.size != heldSize_ || colour != heldColour_) Flush();
  heldFont_ = pen.font;
  heldSize_ = pen.size;
  heldColour_ = colour;
  heldCodes_.push_back(static_cast<char>(code));
  heldOrigins_.push_back({pen.x, pen.y});
}

void RunPainter::Flush() {
  if (!heldCodes_.empty()) {
    painter_.DrawText(kTypefaceNames[heldFont_].screen, heldSize_ * view_.scale, heldCodes_, heldOrigins_,
                      heldColour_);
  }
  heldCodes_.clear();
  heldOrigins_.clear();
}

void RunPainter::PaintGlyph(int code, const RunPen& pen, ColourValue colour) {
  const GlyphShape* shape = ShapeOfGlyph(code, pen.font);
  if (!shape || shape->path.Empty()) return;
  const float unit = kGlyphUnit * pen.size;
  const auto place = [&](const Path& path) -> const Path& {
    path_.steps = path.steps;
    path_.points.clear();
    for (const Point& point : path.points)
      path_.points.push_back({pen.x + point.x * unit, pen.y - point.y * unit});
    return path_;
  };
  const float pixels = unit * view_.scale;
  if (!view_.printed) {
    // On the screen glyphs are lines, as wide as gives them the ink of the print.
    const float ratio = view_.ratio;
    const bool threads = shape->lineWidth * pixels * ratio >= kThreadsFrom * kLeastGlyphLine;
    const float width = (threads ? shape->lineWidth : shape->edgeWidth) * pixels * ratio;
    painter_.StrokePath(place(threads ? shape->lines : shape->edges),
                        {colour, std::clamp(width, kLeastGlyphLine, kMostGlyphLine) / ratio});
  } else if (shape->filled) {
    painter_.FillPath(place(shape->path), colour);
  } else {
    painter_.StrokePath(place(shape->path), {colour, shape->lineWidth * pixels});
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
  painter_.StrokePath(box, {colour, 1});
}

void PaintWords(Painter& painter, std::string_view words, std::int16_t font, float em, float scale, Point at,
                ColourValue colour) {
  std::vector<Point> origins;
  WalkRun(words, PenAt(at, font, em / scale), 0, [&origins](std::size_t, const RunPen& pen) {
    origins.push_back({pen.x, pen.y});
  });
  painter.DrawText(kTypefaceNames[font].screen, em, words, origins, colour);
}

}  // namespace kelvane
