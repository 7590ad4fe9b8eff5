#include "typography/run_painter.h"

#include <algorithm>
#include <cstddef>

#include "typography/colours.h"
#include "typography/curves.h"
#include "typography/glyph_shapes.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

// Lines of glyphs, in device pixels: thinner ones would vanish, wider ones blur what they outline.
constexpr float kLeastGlyphLine = 1.0F / 3;
constexpr float kMostGlyphLine = 2;
// Threads thinner than this would, with the least width for the edges, be a quarter too black: edges alone
// are drawn.
constexpr float kLeastThread = 1.1F * kLeastGlyphLine;

}  // namespace

RunPen RunPainter::Paint(const Run& run) {
  const ColourValue colour = PaletteColour(run.colour);
  const float extraSpace = run.frame ? 0 : run.extraSpace;
  const std::vector<SignInPieces> pieces =
      painter_.KeepsText() ? PiecesOfRun(run.text, run.font) : std::vector<SignInPieces>();
  auto next = pieces.begin();
  bool together = false;
  const RunPen end = WalkRun(
      run.text, PenAt(run.origin, run.font, run.size), extraSpace, [&](std::size_t index, const RunPen& pen) {
        if (together && index >= next->end) {
          SayTogether({});
          together = false;
          ++next;
        }
        if (!together && next != pieces.end() && index >= next->begin) {
          SayTogether(next->text);
          together = true;
        }
        PaintCharacter(static_cast<unsigned char>(run.text[index]), pen, colour, run.frame);
      });
  if (together) SayTogether({});
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

void RunPainter::SayTogether(std::string_view text) {
  Flush();
  painter_.SayTogether(text);
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
  if (view_.printed && painter_.TakeGlyph({pen.font, code, pen.size * view_.scale, {pen.x, pen.y}, colour}))
    return;
  const float pixels = kGlyphUnit * pen.size * view_.scale;
  if (!view_.printed) {
    // On the screen glyphs are lines, as wide as gives them the ink of the print.
    const auto lines = [&](const Path& path, float width) {
      const float device = std::clamp(width * pixels * view_.ratio, kLeastGlyphLine, kMostGlyphLine);
      return GlyphLines::Lines{&path, device / view_.ratio};
    };
    const bool threads = !shape->threads.Empty() && shape->threadWidth * pixels * view_.ratio >= kLeastThread;
    GlyphLines glyph{{}, pen.font, code, EditionOfGlyphs(), pen.size};
    if (threads) glyph.lines[0] = lines(shape->threads, shape->threadWidth);
    glyph.lines[1] = lines(shape->edges, threads ? shape->threadWidth / 2 : shape->edgeWidth);
    painter_.DrawGlyph(glyph, {pen.x, pen.y}, colour);
    return;
  }
  PlaceGlyphPath(shape->path, {pen.x, pen.y}, pen.size, path_);
  if (shape->filled) {
    painter_.FillPath(path_, colour);
  } else {
    painter_.StrokePath(path_, {colour, shape->edgeWidth * pixels});
  }
}

void RunPainter::PaintFrame(int code, const RunPen& pen, ColourValue colour) {
  const float step = TypefaceTable[pen.font].Widths[static_cast<std::size_t>(code)] * pen.size;
  painter_.StrokePath(FrameOf(CellAt(pen, step)), {colour, 1});
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
