#include "designer/grid_painting.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "designer/character_files.h"
#include "typography/curves.h"
#include "typography/glyph_shapes.h"
#include "typography/metrics.h"
#include "typography/run_painter.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

// Design units.
constexpr float kAxis = 27.5F;     // the middle of operators and fraction bars
constexpr float kXHeight = 17.5F;  // of Times-Roman, as the next one
constexpr float kCapHeight = 7;

// Pixels.
constexpr float kHandle = 3.5F;      // half the side of an end's handle
constexpr float kUnitLines = 4;      // from this on units have lines
constexpr float kQuarterLines = 24;  // and from this on quarters
constexpr float kLabelEm = 11;
constexpr std::int16_t kLabelFont = 4;  // Helvetica

constexpr ColourValue kPaperColour = 0xFFFFFF;
constexpr ColourValue kFillColour = 0xF2E6DA;
constexpr ColourValue kFaintColour = 0xD8D8D8;
constexpr ColourValue kQuarterColour = 0xF4F4F4;
constexpr ColourValue kUnitColour = 0xE6E6E6;
constexpr ColourValue kFifthColour = 0xC8C8C8;
constexpr ColourValue kMarkColour = 0xC87828;
constexpr ColourValue kWidthColour = 0x30A030;
constexpr ColourValue kStrokeColour = 0x202020;
constexpr ColourValue kThreadColour = 0xA0A0A0;
constexpr ColourValue kHandleColour = 0xC83C14;
constexpr ColourValue kSelectedColour = 0x1428DC;

class GridPainter {
 public:
  GridPainter(Painter& to, const StrokeEditor& glyph, float pixels, const Box& shown)
      : painter(to), design(glyph), strokes(glyph.Strokes()), unit(pixels), area(shown) {}

  void Paint(const BackgroundCharacter& background) {
    const GlyphProcedure built = BuildGlyph(StrokeLines(strokes));
    painter.FillBox(area, kPaperColour);
    PaintBackground(background);
    if (ExecuteGlyph(built.text).filled) painter.FillPath(PathOfStrokes(strokes), kFillColour);
    if (unit >= kQuarterLines) PaintLines(0.25F, kQuarterColour);
    if (unit >= kUnitLines) PaintLines(1, kUnitColour);
    PaintLines(5, kFifthColour);
    PaintHeights();
    // Origin and advance.
    for (const float x : {0.0F, built.width})
      painter.DrawLine({x, area.top}, {x, area.bottom}, {kWidthColour, 1, true});
    PaintStrokes();
    PaintHandles();
  }

 private:
  void PaintBackground(const BackgroundCharacter& background) {
    if (background.code == ' ' && background.font < kFirstGlyphFont) return;
    View view;
    view.scale = unit;
    view.printed = true;
    RunPainter run(painter, view);
    run.PaintCharacter(static_cast<unsigned char>(background.code),
                       PenAt({0, kDesignBaseline}, background.font, kDesignSide), kFaintColour, false);
    run.Flush();
  }

  void PaintLines(float spacing, ColourValue colour) {
    const Pen pen{colour, 1, true};
    const auto first = [&](float from) { return std::ceil(std::max(from, 0.0F) / spacing) * spacing; };
    for (float x = first(area.left); x <= std::min(area.right, kDesignSide); x += spacing)
      painter.DrawLine({x, 0}, {x, kDesignSide}, pen);
    for (float y = first(area.top); y <= std::min(area.bottom, kDesignSide); y += spacing)
      painter.DrawLine({0, y}, {kDesignSide, y}, pen);
  }

  void PaintHeights() {
    PaintHeight(kDesignBaseline, "baseline");
    PaintHeight(kAxis, "axis");
    PaintHeight(kXHeight, "x height");
    PaintHeight(kCapHeight, "cap height");
  }

  void PaintHeight(float y, std::string_view name) {
    painter.DrawLine({area.left, y}, {area.right, y}, {kMarkColour, 1, true});
    PaintWords(painter, name, kLabelFont, kLabelEm, unit, {area.left + 3 / unit, y - 2 / unit}, kMarkColour);
  }

  void PaintStrokes() {
    for (const GlyphStroke& stroke : strokes)
      painter.StrokePath(PathOfStrokes({stroke}), {IsThread(stroke) ? kThreadColour : kStrokeColour, 1.5F});
  }

  void PaintHandles() {
    // Ends last, since they lie on the control points of short segments.
    for (const bool ends : {false, true}) {
      for (std::size_t s = 0; s < strokes.size(); ++s) {
        const bool thread = IsThread(strokes[s]);
        for (std::size_t i = ends ? 0 : 1; i < strokes[s].size(); i += 2)
          PaintHandle(strokes[s], i, design.Selection().contains({s, i}), thread);
      }
    }
  }

  void PaintHandle(const GlyphStroke& stroke, std::size_t point, bool selected, bool thread) {
    const bool control = point % 2 == 1;
    // Threads are many, and seldom what is worked on.
    if (thread && control && !selected) return;
    const bool bent = control && !IsStraight(stroke, point);
    if (bent) {
      for (const std::size_t end : {point - 1, point + 1})
        painter.DrawLine(stroke[point], stroke[end], {kFifthColour, 1});
    }
    const ColourValue colour = selected ? kSelectedColour : thread ? kThreadColour : kHandleColour;
    const float half = (control ? kHandle - (bent || selected ? 1 : 2) : kHandle) / unit;
    const Point at = stroke[point];
    const Path box = FrameOf({at.x - half, at.y - half, at.x + half, at.y + half});
    painter.FillPath(box, selected || point == 0 ? colour : kPaperColour);
    painter.StrokePath(box, {colour, 1});
  }

  Painter& painter;
  const StrokeEditor& design;
  const GlyphStrokes& strokes;
  float unit;
  Box area;
};

}  // namespace

void PaintDesign(Painter& painter, const StrokeEditor& design, const BackgroundCharacter& background,
                 float unit, const Box& area) {
  GridPainter(painter, design, unit, area).Paint(background);
}

void PaintRubber(Painter& painter, const Box& box) {
  painter.StrokePath(FrameOf(box), {kSelectedColour, 1});
}

void PaintPen(Painter& painter, Point at, float arm) {
  painter.DrawLine({at.x - arm, at.y}, {at.x + arm, at.y}, {kSelectedColour, 1, true});
  painter.DrawLine({at.x, at.y - arm}, {at.x, at.y + arm}, {kSelectedColour, 1, true});
}

void PaintNextSegment(Painter& painter, Point from, Point to) {
  painter.DrawLine(from, to, {kSelectedColour, 1});
}

}  // namespace kelvane
