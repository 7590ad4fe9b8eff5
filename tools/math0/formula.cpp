#include "tools/math0/formula.h"

#include <algorithm>

#include "tools/math0/glyphs.h"
#include "tools/math0/notation.h"

namespace kelvane::math0 {
namespace {

constexpr float kEm = kFormulaSize;
constexpr float kThin = kEm * 3 / 18;
constexpr float kAxisHeight = 0.25F;  // ems above the baseline, as drawn in the font
constexpr float kFigureHeight = 0.68F;
constexpr float kRaisedHeight = 0.9F;  // with a superscript
constexpr float kPieceTop = 0.75F;     // of tall delimiters, ems above their baseline
constexpr float kBarPiece = 0.5F;      // advance of a bar of fractions or roots, ems

// Ink of a character, ems from its origin; up and down from the baseline.
struct Extent {
  float right, up, down;
};

Extent ExtentOf(char key) {
  const std::vector<Glyph> glyphs = AllGlyphs();
  const Bounds ink = BoundsOf(glyphs.at(static_cast<std::size_t>(key - ' ')).draw());
  const auto ems = [](double units) { return static_cast<float>(units / 50); };
  return {ems(ink.right), ems(kBaseline - ink.top), ems(ink.bottom - kBaseline)};
}

// A bar of whole pieces that follow one another: where pieces lie upon one another it looks darker on screen.
struct Bar {
  int pieces;
  float size;

  float Width() const { return static_cast<float>(pieces) * kBarPiece * size; }
  std::string Of(char key) const { return Math(std::string(static_cast<std::size_t>(pieces), key)); }
};

// The pieces are scaled until a whole number of them is `width` long. Below nine tenths they would look thin;
// the bar is then a little longer.
Bar BarOver(float width) {
  const int pieces = std::max(1, static_cast<int>(width / (kBarPiece * kEm) + 0.7F));
  return {pieces, std::max(width / (static_cast<float>(pieces) * kBarPiece), 0.9F * kEm)};
}

}  // namespace

Row::Row(std::string_view notation) {
  Then(notation);
}

void Row::Add(float x, float y, float size, const std::string& run) {
  if (!run.empty()) items.push_back({x, y, size, run});
}

void Row::AddCentred(float x, float y, float size, const std::string& run) {
  Add(x - WidthOf(run, size) / 2, y, size, run);
}

void Row::AddRow(float x, float y, const Row& other) {
  for (const Item& item : other.items) Add(x + item.x, y + item.y, item.size, item.run);
  top = std::max(top, other.top - y);
}

// At the end of the row, with space on both sides.
void Row::AddRun(float space, const std::string& run) {
  Add(width + space, 0, kEm, run);
  width += WidthOf(run, kEm) + 2 * space;
  const bool raised = run.find('\xF0') != std::string::npos;
  top = std::max(top, (raised ? kRaisedHeight : kFigureHeight) * kEm);
}

Row& Row::Then(std::string_view notation) {
  for (const Part& part : PartsOf(notation, !items.empty())) {
    switch (part.kind) {
      case PartKind::Ordinary:
        AddRun(0, part.run);
        break;
      case PartKind::Operator:
        AddRun(kEm * 4 / 18, part.run);
        break;
      case PartKind::Relation:
        AddRun(kEm * 5 / 18, part.run);
        break;
      case PartKind::Thin:
        width += kThin;
        break;
      case PartKind::Quad:
        width += kEm;
        break;
    }
  }
  return *this;
}

Row& Row::Large(char key, std::string_view under, std::string_view over) {
  const std::string foot = RunOf(under), head = RunOf(over);
  constexpr float gap = 0.2F * kEm;
  const std::string sign = Math({&key, 1});
  const Extent ink = ExtentOf(key);
  const float widest = std::max({WidthOf(sign, kEm), WidthOf(foot, kLimitSize), WidthOf(head, kLimitSize)});
  const float middle = width + widest / 2;
  AddCentred(middle, 0, kEm, sign);
  AddCentred(middle, -ink.up * kEm - gap, kLimitSize, head);
  AddCentred(middle, ink.down * kEm + gap + kFigureHeight * kLimitSize, kLimitSize, foot);
  width += widest + kThin;
  return *this;
}

Row& Row::Integral(char key, std::string_view from, std::string_view to) {
  const std::string lower = RunOf(from), upper = RunOf(to);
  constexpr float size = 1.125F * kEm;
  const Extent ink = ExtentOf(key);
  const float head = width + ink.right * size + 0.05F * kEm;
  const float foot = head - 0.42F * size;
  Add(width, 0, size, Math({&key, 1}));
  Add(head, kFigureHeight * kLimitSize - ink.up * size, kLimitSize, upper);
  Add(foot, ink.down * size, kLimitSize, lower);
  width = std::max(
      {width + ink.right * size, head + WidthOf(upper, kLimitSize), foot + WidthOf(lower, kLimitSize)});
  width += kThin;
  return *this;
}

Row& Row::Fraction(const Row& over, const Row& under) {
  constexpr float side = 0.1F * kEm;
  const Bar bar = BarOver(std::max(over.width, under.width) + 0.1F * kEm);
  const float left = width + side;
  const float middle = left + bar.Width() / 2;
  const float axis = -kAxisHeight * kEm;
  AddRow(middle - over.width / 2, axis - 0.36F * kEm, over);
  Add(left, axis + kAxisHeight * bar.size, bar.size, bar.Of('-'));
  AddRow(middle - under.width / 2, axis + under.top + 0.24F * kEm, under);
  width = left + bar.Width() + side;
  return *this;
}

Row& Row::Root(char key, const Row& inside) {
  constexpr float barUnderside = 0.76F;  // ems above the baseline of the radical
  const Bar bar = BarOver(inside.width + 0.05F * kEm);
  const std::string radical = Math({&key, 1});
  width += 0.08F * kEm;
  Add(width, barUnderside * bar.size - inside.top - 0.12F * kEm, bar.size, radical + bar.Of(' '));
  width += WidthOf(radical, bar.size);
  AddRow(width, 0, inside);
  width += bar.Width();
  return *this;
}

Row& Row::Array(const std::vector<std::vector<Row>>& cells, Anchor anchor, float lineStep, float columnGap) {
  const float firstLine = -lineStep * static_cast<float>(cells.size() - 1) / 2;
  for (std::size_t column = 0; column < cells.front().size(); ++column) {
    if (column > 0) width += columnGap;
    float widest = 0;
    for (const auto& line : cells) widest = std::max(widest, line[column].width);
    float y = firstLine;
    for (const auto& line : cells) {
      const float spare = widest - line[column].width;
      AddRow(width + (anchor == kCentre ? spare / 2 : 0), y, line[column]);
      y += lineStep;
    }
    width += widest;
  }
  return *this;
}

Row& Row::Tall(std::string_view keys, float pieceSize, Anchor edge) {
  float widest = 0;
  for (const char key : keys) widest = std::max(widest, WidthOf(Math({&key, 1}), pieceSize));
  float y = -kAxisHeight * kEm + (kPieceTop - static_cast<float>(keys.size()) / 2) * pieceSize;
  for (const char key : keys) {
    const std::string piece = Math({&key, 1});
    const float spare = edge == kRight ? widest - WidthOf(piece, pieceSize) : 0;
    Add(width + spare, y, pieceSize, piece);
    y += pieceSize;
  }
  width += widest;
  return *this;
}

void Row::Set(Page& page, float x, float y, Anchor anchor) const {
  if (anchor == kCentre) x -= width / 2;
  if (anchor == kRight) x -= width;
  for (const Item& item : items) page.Put(x + item.x, y + item.y, item.size, item.run);
}

}  // namespace kelvane::math0
