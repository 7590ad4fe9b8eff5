#include "designer/glyph_preview.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "designer/character_files.h"
#include "typography/colours.h"
#include "typography/curves.h"
#include "typography/glyph_shapes.h"
#include "typography/metrics.h"
#include "typography/run_painter.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr ColourValue kPaperColour = 0xFFFFFF;
constexpr ColourValue kLineColour = 0xD8D8D8;
constexpr ColourValue kChosenColour = 0xF5D9B5;
constexpr ColourValue kReachedColour = 0x1428DC;
constexpr ColourValue kLabelColour = 0x808080;
constexpr std::int16_t kLabelFont = 4;  // Helvetica
constexpr std::int16_t kTextFont = 0;   // Times-Roman
constexpr float kLabelEm = 10;          // pixels
constexpr float kMargin = 4;            // pixels
constexpr float kLargeSize = 48;        // points
constexpr int kTableRows = kGlyphs / kTableColumns;

// Pieces that join, from top to bottom or from left to right.
struct Joint {
  std::string_view pieces;
  bool stacked = false;
  bool right = false;  // stacked with their right edges in line
};
constexpr Joint kJoints[] = {
    {"7|4|1", true}, {"9|6|3", true, true},
    {"r||f", true},  {"t||g", true, true},
    {"5555", true},  {"--y"},
    {"b--"},         {"==Y"},
    {"B=="},         {"m-y"},
    {"j-y"},         {"--2"},
    {"q--xz--w"},    {"v   "},
    {"V   "},
};

const Joint* JointOf(std::int16_t code) {
  const auto* joint = std::ranges::find_if(kJoints, [code](const Joint& each) {
    return each.pieces.find(static_cast<char>(code)) != each.pieces.npos;
  });
  return joint == std::end(kJoints) ? nullptr : joint;
}

// Coordinates are pixels, so sizes are pixels too.
View PixelView(const Canvas& canvas, bool printed) {
  View view;
  view.ratio = canvas.PixelRatio();
  view.printed = printed;
  return view;
}

// How far a run with glyphs of Math0 reaches above and below its baseline, in ems: as letters do, or further.
struct Height {
  float up = 0.75F;
  float down = 0.3F;
};
Height HeightOf(std::string_view glyphs) {
  Height height;
  for (const char c : glyphs) {
    const GlyphShape* shape = ShapeOfGlyph(static_cast<unsigned char>(c), kFirstGlyphFont);
    if (!shape) continue;
    for (const Point& point : shape->path.points) {
      height.up = std::max(height.up, point.y * kGlyphUnit);
      height.down = std::max(height.down, -point.y * kGlyphUnit);
    }
  }
  return height;
}

// A run in the middle of a box, at most `em` pixels large and not larger than fits.
void PaintFitting(Canvas& canvas, const Box& box, std::string_view text, std::int16_t font,
                  const Height& height, float em, bool printed) {
  const float all = height.up + height.down;
  em = std::min(em, (box.bottom - box.top - 2 * kMargin) / all);
  const float width = MeasureRun(text, font, em);
  const float room = box.right - box.left - 2 * kMargin;
  if (width > room) em *= room / width;
  if (!(em > 0)) return;
  const Point origin{(box.left + box.right - std::min(width, room)) / 2,
                     (box.top + box.bottom) / 2 + (height.up - all / 2) * em};
  const View view = PixelView(canvas, printed);
  RunPainter(canvas, view).Paint({text, font, em, origin});
}

void PaintStack(Canvas& canvas, const Box& box, const Joint& joint) {
  constexpr float kAscent = 0.75F;  // of a piece, in ems: the pieces reach as far below
  const float em = (box.bottom - box.top - 2 * kMargin) / static_cast<float>(joint.pieces.size());
  const View view = PixelView(canvas, true);
  RunPainter run(canvas, view);
  float y = box.top + kMargin + kAscent * em;
  for (const char piece : joint.pieces) {
    const int code = static_cast<unsigned char>(piece);
    const float x =
        joint.right ? box.right - kMargin - Advance(code, kFirstGlyphFont, em) : box.left + kMargin;
    run.PaintCharacter(code, PenAt({x, y}, kFirstGlyphFont, em), PaletteColour(kBlack), false);
    y += em;
  }
}

Box CellOf(const Box& area, std::int16_t code) {
  const float width = (area.right - area.left) / kTableColumns;
  const float height = (area.bottom - area.top) / kTableRows;
  const int index = code - kFirstGlyph;
  const float left = area.left + static_cast<float>(index % kTableColumns) * width;
  const float top = area.top + static_cast<float>(index / kTableColumns) * height;
  return {left, top, left + width, top + height};
}

// The glyph in the middle of its cell, as large as all of them can be.
void PaintInCell(Canvas& canvas, const Box& cell, std::int16_t code) {
  constexpr float kLargest = 1.55F;  // ems, from the top of the tallest glyph to the foot of the deepest one
  const GlyphShape* shape = ShapeOfGlyph(code, kFirstGlyphFont);
  if (!shape || shape->path.Empty()) return;
  const auto [left, right] = std::ranges::minmax_element(shape->path.points, {}, &Point::x);
  const auto [foot, top] = std::ranges::minmax_element(shape->path.points, {}, &Point::y);
  const float em = std::min(cell.right - cell.left, cell.bottom - cell.top) / kLargest;
  const float unit = kGlyphUnit * em;
  const Point origin{(cell.left + cell.right) / 2 - unit * (left->x + right->x) / 2,
                     (cell.top + cell.bottom) / 2 + unit * (foot->y + top->y) / 2};
  const View view = PixelView(canvas, true);
  RunPainter(canvas, view)
      .PaintCharacter(code, PenAt(origin, kFirstGlyphFont, em), PaletteColour(kBlack), false);
}

void PaintFrame(Canvas& canvas, const Box& box, ColourValue colour) {
  canvas.StrokePath(FrameOf({box.left + 1, box.top + 1, box.right - 1, box.bottom - 1}), {colour, 2});
}

}  // namespace

TriedGlyph::TriedGlyph(std::int16_t triedCode, const GlyphStrokes& strokes) : code(triedCode) {
  const GlyphProcedure glyph = BuildGlyph(StrokeLines(strokes));
  procedure = std::exchange(CharacterDefs[code - kFirstGlyph][0], glyph.text);
  width = std::exchange(TypefaceTable[kFirstGlyphFont].Widths[static_cast<std::size_t>(code)],
                        static_cast<float>(glyph.width) * kGlyphUnit);
}

TriedGlyph::~TriedGlyph() {
  CharacterDefs[code - kFirstGlyph][0] = procedure;
  TypefaceTable[kFirstGlyphFont].Widths[static_cast<std::size_t>(code)] = width;
}

void PaintCodeTable(Canvas& canvas, const Box& area, std::int16_t chosen, std::int16_t reached) {
  canvas.FillBox(area, kPaperColour);
  canvas.FillBox(CellOf(area, chosen), kChosenColour);
  for (int code = kFirstGlyph; code < kFirstGlyph + kGlyphs; ++code) {
    const Box cell = CellOf(area, static_cast<std::int16_t>(code));
    canvas.DrawLine({cell.left, cell.bottom}, {cell.right, cell.bottom}, {kLineColour, 1, true});
    canvas.DrawLine({cell.right, cell.top}, {cell.right, cell.bottom}, {kLineColour, 1, true});
    PaintInCell(canvas, cell, static_cast<std::int16_t>(code));
  }
  PaintFrame(canvas, CellOf(area, reached), kReachedColour);
}

std::optional<std::int16_t> CodeInTable(const Box& area, Point at) {
  for (int code = kFirstGlyph; code < kFirstGlyph + kGlyphs; ++code) {
    const Box cell = CellOf(area, static_cast<std::int16_t>(code));
    if (at.x >= cell.left && at.x < cell.right && at.y >= cell.top && at.y < cell.bottom)
      return static_cast<std::int16_t>(code);
  }
  return {};
}

void PaintPreview(Canvas& canvas, const Box& area, std::int16_t code) {
  constexpr float kSmallRow = 0.24F;  // of the height
  constexpr float kStackPart = 0.2F;  // of the width
  constexpr float kJoinedRow = 0.22F;
  canvas.FillBox(area, kPaperColour);
  const std::string run = std::string("H") + static_cast<char>(kFirstSwitchCode + kFirstGlyphFont) +
                          static_cast<char>(code) + static_cast<char>(kFirstSwitchCode + kTextFont) + "xn";
  const Joint* joint = JointOf(code);
  Box left = area;
  if (joint && joint->stacked) {
    Box stack = area;
    stack.left = left.right -= kStackPart * (area.right - area.left);
    PaintStack(canvas, stack, *joint);
  } else if (joint) {
    Box row = area;
    row.top = left.bottom -= kJoinedRow * (area.bottom - area.top);
    PaintFitting(canvas, row, joint->pieces, kFirstGlyphFont, HeightOf(joint->pieces), kLargeSize * SCALE,
                 true);
  }
  const char glyph = static_cast<char>(code);
  const Height height = HeightOf({&glyph, 1});
  const float middle = (left.left + left.right) / 2;
  const float split = left.top + kSmallRow * (left.bottom - left.top);
  const float large = (left.bottom - split) / 2;
  for (const bool printed : {false, true}) {
    Box small{left.left, left.top, middle, split};
    Box row{left.left, split, left.right, split + large};
    if (printed) {
      small = {middle, left.top, left.right, split};
      row = {left.left, split + large, left.right, left.bottom};
    }
    const char* label = printed ? "in print" : "on the screen";
    PaintWords(canvas, label, kLabelFont, kLabelEm, 1, {small.left + kMargin, small.top + kLabelEm},
               kLabelColour);
    small.top += kLabelEm;
    PaintFitting(canvas, small, run, kTextFont, height, FontSize * SCALE, printed);
    PaintWords(canvas, label, kLabelFont, kLabelEm, 1, {row.left + kMargin, row.top + kLabelEm},
               kLabelColour);
    PaintFitting(canvas, row, run, kTextFont, height, kLargeSize * SCALE, printed);
  }
}

}  // namespace kelvane
