#include "editing/clipboard.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "document/lines.h"
#include "editing/formula_entry.h"
#include "editing/item_edits.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/notes.h"
#include "editing/sign_entry.h"
#include "platform/clipboard.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

void EndWhatIsDone() {
  ToolInForce().Finish();
  LeaveEditing();
}

bool PlaceIsSet() {
  return CursorMode < 0 && AnchorOfMode(CursorMode) != 0;
}

// The line end behind the last line parts it from nothing.
std::string WithoutLastEnd(std::string text) {
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

// All lines of a page begin with a point and "m".
bool BeginsAsLineOfPage(std::string_view line) {
  constexpr std::string_view kNumber = "0123456789+-.eE";
  for (int i = 0; i < 2; ++i) {
    const std::size_t end = line.find_first_not_of(kNumber);
    if (end == 0 || end == std::string_view::npos || line[end] != ' ') return false;
    line.remove_prefix(std::min(line.find_first_not_of(' ', end), line.size()));
  }
  return line.starts_with("m ");
}

bool EndsAsLineOfPage(std::string_view line) {
  for (const std::string_view end : {" rl stroke", " rb stroke", " rl fill", " rb fill"})
    if (line.ends_with(end)) return true;
  const std::size_t runEnd = line.rfind(')');
  if (runEnd == std::string_view::npos) return false;
  TextEntry entry;
  return ParseTextEntry("0 0 m 0 F0 (" + std::string(line.substr(runEnd)), entry);
}

// Whether somebody meant lines of a page: even half of one is no text for a run.
bool AreLinesOfPage(std::string_view text) {
  while (!text.empty()) {
    const std::string_view line = TakeLine(text);
    if (BeginsAsLineOfPage(line) || EndsAsLineOfPage(line)) return true;
  }
  return false;
}

// A run for each line, below one another.
std::string RunsOf(std::string_view text) {
  std::string lines;
  TextEntry entry;
  entry.size = FontSize;
  entry.font = BaseFont;
  entry.anchor = 3;  // Bottom Left
  for (; !text.empty(); entry.y = NextLine(entry.y)) {
    entry.text = TakeLine(text);
    if (!entry.text.empty()) lines += LineOfEntry(entry) + "\r\n";
  }
  return lines;
}

// How far items have to go so that the point of the first one comes to `at`, or their middle into that of the
// view; the point snapped to the grid.
Point WayTo(const PageItems& items, std::optional<Point> at) {
  SelectedItems all;
  for (const TextItem& item : items.Texts())
    if (item.draws) all.texts.push_back(&item);
  for (const DrawingItem& item : items.Drawings())
    if (item.draws) all.drawings.push_back(&item);
  if (all.Count() == 0) return {};
  const Point first = all.texts.empty() ? all.drawings.front()->drawing.points.front()
                                        : Point{all.texts.front()->entry.x, all.texts.front()->entry.y};
  if (!at) {
    const Box view = CurrentView().area;
    const Box box = BoxOf(all);
    at = {first.x + (view.left + view.right - box.left - box.right) / 2,
          first.y + (view.top + view.bottom - box.top - box.bottom) / 2};
  }
  return {SnapToGrid(at->x, GridStepH) - first.x, SnapToGrid(at->y, GridStepV) - first.y};
}

void PasteLines(const std::string& lines, std::optional<Point> at) {
  const Page added = ReadItems(lines);
  const Point way = WayTo(PageItems(added), at);
  EndWhatIsDone();
  AddItems("paste", added, way.x, way.y);
  ShowCursor();
}

void PasteText(const std::string& codes, std::optional<Point> at) {
  if (PlaceIsSet()) {
    InsertText(WithoutLastEnd(codes));
  } else {
    PasteLines(AreLinesOfPage(codes) ? codes : RunsOf(codes), at);
  }
}

}  // namespace

bool CanCopy() {
  if (FormulaIsOpen()) return !SelectedNotation().empty();
  return RunIsOpen() ? !SelectedText().empty() : AnythingSelected();
}

bool CanDelete() {
  if (FormulaIsOpen()) return false;  // the key is for the notation
  // While something is drawn or shaped the key is for its points.
  return RunIsOpen() || (AnythingSelected() && (CursorMode == 0 || AnchorOfMode(CursorMode) != 0));
}

void Cut() {
  Copy();
  if (FormulaIsOpen()) return EraseSelectedNotation();
  RunIsOpen() ? TypeKey(kKeyDelete) : DeleteSelected("cut");
  ShowCursor();
}

void Copy() {
  if (FormulaIsOpen()) return TheClipboard->PutForms({{"text/plain", SelectedNotation()}});
  if (RunIsOpen()) return TheClipboard->Put({}, SelectedText());
  EndWhatIsDone();
  const std::string lines = LinesOfSelected();
  TheClipboard->Put(lines, lines);
}

void Delete() {
  if (RunIsOpen()) return TypeKey(kKeyDelete);
  EndWhatIsDone();
  DeleteSelected();
  ShowCursor();
}

void Paste(std::optional<Point> at) {
  if (FormulaIsOpen()) return InsertIntoFormula(WithoutLastEnd(TheClipboard->Text()));
  const std::string items = TheClipboard->Items();
  if (!items.empty()) return PasteLines(items, at);
  const std::string text = TheClipboard->Text();
  if (text.empty()) return ShowNote("There is nothing to paste");
  std::string untypable;
  const std::string codes = TheClipboard->CodesOf(text, untypable);
  // A run being typed can take what has no code as signs of other typefaces.
  if (!untypable.empty() && PlaceIsSet()) return InsertSigns(WithoutLastEnd(text));
  if (!untypable.empty()) ShowNote("There is no code for " + untypable);
  if (!codes.empty()) PasteText(codes, at);
}

void DuplicateSelected() {
  // The items that the last one made, moved since: their way is what is to be repeated.
  static std::vector<std::uint64_t> made;
  static Point madeFrom;
  const std::vector<std::uint64_t> ids = Selection().Ids();
  if (ids.empty()) return;
  const Point at{MarkedLeft, MarkedBottom};
  const Point step = ids == made ? Point{at.x - madeFrom.x, at.y - madeFrom.y}
                                 : Point{static_cast<float>(GridStepH), static_cast<float>(GridStepV)};
  CopySelected("duplicate", step.x, step.y);
  made = Selection().Ids();
  madeFrom = at;
  ShowCursor();
}

}  // namespace kelvane
