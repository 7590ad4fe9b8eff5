#include "formula/formula.h"

#include <algorithm>
#include <cmath>

#include "formula/drawn_signs.h"
#include "formula/layout.h"
#include "formula/names.h"
#include "formula/notation.h"
#include "formula/runs.h"
#include "typography/curves.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"

namespace kelvane {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

// Thousandths of a point are below every device, and keep the numbers of a page short.
float Rounded(float value) {
  return std::round(value * 1000) / 1000;
}
Point Rounded(Point point) {
  return {Rounded(point.x), Rounded(point.y)};
}

// Helvetica's family is the typefaces 4 to 7; all others stand beside Times.
std::int16_t RomanOf(std::int16_t font) {
  return font >= 4 && font <= 7 ? std::int16_t{4} : std::int16_t{0};
}

void NotePlaces(const formula::Layout& layout, const std::vector<std::size_t>& empty, std::size_t length,
                float size, Formula& set) {
  for (const formula::Element& element : layout.elements) {
    if (element.what == formula::Element::What::Line) continue;
    set.signs.push_back({element.at, {element.x, element.y}, element.size});
  }
  std::ranges::stable_sort(set.signs, {}, &FormulaPlace::offset);
  set.signs.push_back({length, {set.width, 0}, size});
  for (const std::size_t offset : empty) {
    FormulaPlace place = CaretOfFormula(set, offset);
    place.offset = offset;
    set.empty.push_back(place);
  }
}

}  // namespace

std::variant<Formula, FormulaError> SetFormula(std::string_view notation, const FormulaStyle& style) {
  formula::Reading reading;
  try {
    reading = formula::ReadNotation(notation);
  } catch (const FormulaError& error) {
    return error;
  }
  const bool display = reading.tree.told ? reading.tree.display : style.display;
  const formula::Layout layout = formula::LayOut(reading.tree, {style.size, display, RomanOf(style.font)});
  Formula set;
  set.entries = formula::MakeRuns(layout);
  set.drawings = layout.lines;
  set.width = layout.width;
  GrowingBox ink;
  for (const FormulaEntry& entry : set.entries)
    ink.Add(InkBoxOf(entry.run, entry.font, entry.size, entry.anchor, entry.at));
  for (const Drawing& drawing : set.drawings) ink.Add(InkBoxOf(drawing));
  if (!ink.Empty()) set.ink = ink.box;
  set.height = std::max(0.0F, -set.ink.top);
  set.depth = std::max(0.0F, set.ink.bottom);
  NotePlaces(layout, reading.empty, notation.size(), style.size, set);
  return set;
}

Page PageOfFormula(const Formula& formula, Point at) {
  Page page;
  const auto moved = [&at](Point point) { return Rounded(Point{point.x + at.x, point.y + at.y}); };
  for (const FormulaEntry& set : formula.entries) {
    const Point place = moved(set.at);
    TextEntry entry;
    entry.x = place.x;
    entry.y = place.y;
    entry.size = Rounded(set.size);
    entry.font = set.font;
    entry.text = set.run;
    entry.anchor = set.anchor;
    page.text += LineOfEntry(entry);
    page.text += kLineEnd;
  }
  for (const Drawing& set : formula.drawings) {
    Drawing drawing = set;
    MapDrawing(drawing, moved);
    page.drawings += RecordOfDrawing(drawing, TokenOfStyle(drawing.style));
    page.drawings += kLineEnd;
    ++page.drawingCount;
  }
  return page;
}

FormulaPlace CaretOfFormula(const Formula& formula, std::size_t offset) {
  const auto found = std::ranges::lower_bound(formula.signs, offset, {}, &FormulaPlace::offset);
  return found == formula.signs.end() ? formula.signs.back() : *found;
}

std::vector<std::string> FormulaNames(std::string_view beginning) {
  std::vector<std::string> names;
  for (const formula::Name& name : formula::Names()) {
    if (!name.name.starts_with(beginning)) continue;
    std::string typed = "\\" + std::string(name.name);
    for (int i = 0; i < name.places; ++i) typed += "{}";
    names.push_back(std::move(typed));
  }
  for (const formula::DrawnSign& sign : formula::DrawnSigns()) {
    const std::string_view name = sign.names.substr(0, sign.names.find(' '));
    if (name.starts_with(beginning)) names.push_back("\\" + std::string(name));
  }
  for (const formula::Environment& one : formula::Environments()) {
    if (one.outer || !one.name.starts_with(beginning)) continue;
    const std::string name(one.name);
    names.push_back("\\begin{" + name + "}" + (one.given ? "{}" : "") + "\\end{" + name + "}");
  }
  return names;
}

}  // namespace kelvane
