#include "editing/properties.h"

#include <cmath>
#include <string>

#include "document/numbers.h"
#include "editing/formula_entry.h"
#include "editing/item_edits.h"
#include "editing/keyboard.h"
#include "typography/colours.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

template <typename Value>
void Share(std::optional<Value>& shared, Value value, bool first) {
  if (first) {
    shared = value;
  } else if (shared != value) {
    shared.reset();
  }
}

Properties PropertiesOf(const SelectedItems& items) {
  Properties shared;
  for (const TextItem* item : items.texts) {
    const bool first = shared.texts++ == 0;
    Share(shared.font, item->entry.font, first);
    Share(shared.size, item->entry.size, first);
    Share(shared.anchor, item->entry.anchor, first);
  }
  for (const DrawingItem* item : items.drawings) {
    const bool first = shared.drawings++ == 0;
    const LineStyle style = CleanStyle(item->drawing.style);
    Share(shared.colour, style.colour, first);
    Share(shared.width, style.width, first);
  }
  return shared;
}

bool RunsSelected() {
  return SelectedProperties().texts > 0;
}
bool DrawingsSelected() {
  return SelectedProperties().drawings > 0;
}

void ChangeStyle(const std::string& label, const std::function<void(LineStyle&)>& change) {
  ChangeSelected(label, {}, [&](Drawing& drawing, std::string& token) {
    const LineStyle before = CleanStyle(drawing.style);
    LineStyle style = before;
    change(style);
    token = TokenOfStyle(style);
    return style != before;
  });
}

// Places that are computed are written with no more digits than can be seen.
float Thousandths(double points) {
  return static_cast<float>(std::round(points * 1000) / 1000);
}

bool TakeAnchor(TextEntry& entry, int anchor) {
  if (entry.anchor == anchor) return false;
  const float width = MeasureRun(entry.text, entry.font, entry.size);
  const Point origin = AlignAtAnchor({entry.x, entry.y}, entry.anchor, width, entry.size);
  const Point shift = AlignAtAnchor({}, anchor, width, entry.size);
  entry.x = Thousandths(static_cast<double>(origin.x) - shift.x);
  entry.y = Thousandths(static_cast<double>(origin.y) - shift.y);
  entry.anchor = anchor;
  if (anchor > kLastLeftAnchor) entry.justified = false;
  return true;
}

std::optional<Point> PlaceOfText(const std::string& text) {
  const std::size_t gap = text.find_first_of(" ,", text.find_first_not_of(' '));
  if (gap == std::string::npos) return {};
  std::string_view second = std::string_view(text).substr(gap);
  second.remove_prefix(std::min(second.find_first_not_of(' '), second.size()));
  if (second.starts_with(',')) second.remove_prefix(1);
  const auto x = NumberOf(std::string_view(text).substr(0, gap));
  const auto y = NumberOf(second);
  if (!x || !y) return {};
  return Point{*x, *y};
}

std::string RefusalOfPlace(const std::string& text) {
  return PlaceOfText(text) ? "" : "Two numbers are needed: X and Y in points, such as 120.5 84";
}

}  // namespace

const Properties& SelectedProperties() {
  static const Properties none;
  static Properties known;
  static std::uint64_t revision = 0;
  if (CursorMode != 0) return none;
  if (revision != SelectionRevision()) known = PropertiesOf(Selection());
  revision = SelectionRevision();
  return known;
}

bool ShowsFont(std::int16_t font) {
  return RunsSelected() ? SelectedProperties().font == font : BaseFont == font;
}

bool ShowsColour(std::int16_t colour) {
  return DrawingsSelected() ? SelectedProperties().colour == colour : LineColour == colour;
}

bool ShowsThickness(double width) {
  return DrawingsSelected() ? SelectedProperties().width == static_cast<float>(width) : LineWidth == width;
}

bool ShowsAnchor(int anchor) {
  return RunsSelected() ? SelectedProperties().anchor == anchor : AnchorOfMode(CursorMode) == anchor;
}

void SetFont(std::int16_t font) {
  if (!RunsSelected()) {
    ChooseFont(font);
    return FollowTypeface();
  }
  ChangeSelected("typeface",
                 [font](TextEntry& entry) {
                   const bool changed = entry.font != font;
                   entry.font = font;
                   return changed;
                 },
                 {});
}

void SetColour(std::int16_t colour) {
  if (!DrawingsSelected()) return ChooseColour(colour);
  ChangeStyle("colour", [colour](LineStyle& style) { style.colour = colour; });
}

void SetThickness(double width) {
  if (!DrawingsSelected()) return ChooseThickness(width);
  ChangeStyle("thickness", [width](LineStyle& style) { style.width = static_cast<float>(width); });
}

void SetAnchor(int anchor) {
  ChangeSelected("anchor", [anchor](TextEntry& entry) { return TakeAnchor(entry, anchor); }, {});
}

void SizeBoxTyped() {
  if (RunsSelected()) return;
  SizeBoxChanged(Text1->Text());
  FollowTypeface();
}

std::string EnterSize() {
  if (!RunsSelected()) return {};
  const std::optional<float> size = NumberOf(Text1->Text());
  if (!size || !(*size > 0)) return "The size must be a number above 0";
  ChangeSelected("size",
                 [&](TextEntry& entry) {
                   const bool changed = entry.size != *size;
                   entry.size = *size;
                   return changed;
                 },
                 {});
  return {};
}

void ShowProperties() {
  if (!Text1 || !FontLabel) return;
  if (!RunsSelected()) {
    // What the person typed stays as they typed it.
    if (ReadSingle(Text1->Text()) != FontSize) Text1->SetText(FormatSingle(FontSize));
    if (FontLabel->Text() != FontLabelText(CurrentFont, FontSize)) ShowFontLabel(CurrentFont, FontSize);
    return;
  }
  const Properties& shared = SelectedProperties();
  const std::string size = shared.size ? FormatSingle(*shared.size) : "";
  if (Text1->Text() != size) Text1->SetText(size);
  std::string label;
  if (shared.font && shared.size) {
    label = FontLabelText(*shared.font, *shared.size);
  } else if (shared.font) {
    label = kTypefaceNames[*shared.font].postScriptName;
  }
  if (FontLabel->Text() != label) FontLabel->SetText(label);
}

void AskPosition() {
  const SelectedItems selected = Selection();
  if (selected.Count() == 0) return;
  Point from{MarkedLeft, MarkedBottom};
  std::string label = "X and Y of the box's top left corner, in points:";
  if (selected.Count() == 1 && selected.drawings.empty()) {
    from = {selected.texts.front()->entry.x, selected.texts.front()->entry.y};
    label = "X and Y of the run's anchor point, in points:";
  } else if (selected.Count() == 1) {
    from = selected.drawings.front()->drawing.points.front();
    label = "X and Y of the drawing's first point, in points:";
  }
  const auto answer = TheDialogs->AskText("Position", label,
                                          FormatSingle(from.x) + " " + FormatSingle(from.y), RefusalOfPlace);
  if (!answer) return;
  const Point to = *PlaceOfText(*answer);
  // The place that was entered is met exactly, whatever rounding does to the others.
  const auto move = [&](Point point) {
    return point == from ? to : Point{point.x + (to.x - from.x), point.y + (to.y - from.y)};
  };
  if (to == from) return;
  ChangeSelected(
      "move",
      [&](TextEntry& entry) {
        const Point moved = move({entry.x, entry.y});
        entry.x = moved.x;
        entry.y = moved.y;
        return true;
      },
      [&](Drawing& drawing, std::string&) {
        MapDrawing(drawing, move);
        return true;
      });
}

}  // namespace kelvane
