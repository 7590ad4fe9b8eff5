#include "editing/formula_entry.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "editing/edit.h"
#include "editing/item_edits.h"
#include "editing/keyboard.h"
#include "editing/notation_line.h"
#include "editing/notes.h"
#include "editing/placed_formulas.h"
#include "editing/split_run.h"
#include "formula/formula.h"
#include "formula/painting.h"
#include "typography/colours.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

constexpr std::size_t kMostKept = 20;
constexpr float kTail = 0.25F;  // ems
constexpr float kRise = 0.8F;
constexpr float kClear = 0.15F;  // from the ink of the line above

struct Entry {
  NotationLine line;
  FormulaStyle style;
  // Completed where it ends in the middle, or as it stood when it last had no error; what is wrong with it
  // now.
  Formula formula;
  std::optional<FormulaError> error;
  // The formula that it takes the place of, if it was placed before; meanwhile the style of typing, and what
  // stands in the box and waits for a place.
  std::vector<std::uint64_t> instead;
  FormulaStyle forNewRuns;
  std::string waitingRun;
  // The run that it was opened in, and what of that goes on behind the formula.
  std::optional<SplitRun> run;
  std::string behind;
  // Ink above a line that Enter led to, and how far below that line the formula has to stand to be clear of
  // it.
  std::vector<Box> above;
  float down = 0;  // points
};
std::optional<Entry> Now;
// What the held button began: selecting in the line, or leaving it. The press that opened it did neither.
bool PressedLine = false;
bool PressedPage = false;

// Notations that were placed or dropped, the last one at the end, and the one that Up has called back.
std::vector<std::string> Kept;
std::size_t Called = 0;
std::string Draft;

Point OnLine() {
  return AlignAtAnchor({CursorX, CursorY}, AnchorOfMode(CursorMode), Now->formula.width, Now->style.size);
}

Point Origin() {
  const Point at = OnLine();
  return {at.x, at.y + Now->down};
}

// A style for typing, with a run or none.
void TakeStyle(const FormulaStyle& style, const std::string& run) {
  TextEntry entry = EntryOfRun();
  entry.size = style.size;
  entry.font = style.font;
  entry.text = run;
  TakeRunOf(entry, run.size());
}

// What there is of a notation that cannot be set: all of it with what it lacks at its end, without the name
// that is being typed there if that is none yet.
std::optional<Formula> SetHalf(std::string_view notation, const FormulaStyle& style) {
  for (const std::size_t cut : {std::size_t{0}, NameAtEnd(notation).size()}) {
    auto set = SetFormula(CompletedNotation(notation.substr(0, notation.size() - cut)), style);
    if (auto* formula = std::get_if<Formula>(&set)) return std::move(*formula);
  }
  return std::nullopt;
}

void FindDown() {
  const Point at = OnLine();
  const Box& ink = Now->formula.ink;
  Now->down = 0;
  for (const Box& box : Now->above) {
    if (box.right <= at.x + ink.left || box.left >= at.x + ink.right) continue;
    Now->down = std::max(Now->down, box.bottom + kClear * Now->style.size - at.y - ink.top);
  }
}

void TakeNotation() {
  Now->style = {FontSize, true, BaseFont};
  std::variant<Formula, FormulaError> set = SetFormula(Now->line.Text(), Now->style);
  Now->error.reset();
  if (auto* formula = std::get_if<Formula>(&set)) {
    Now->formula = std::move(*formula);
  } else {
    Now->error = std::get<FormulaError>(std::move(set));
    if (auto half = SetHalf(Now->line.Text(), Now->style)) Now->formula = std::move(*half);
  }
  FindDown();
  ShowCursor();
}

void Keep(const std::string& notation) {
  if (IsBlank(notation)) return;
  std::erase(Kept, notation);
  Kept.push_back(notation);
  if (Kept.size() > kMostKept) Kept.erase(Kept.begin());
}

void CallBack(int step) {
  const std::size_t last = Kept.size();
  if (Called == last) Draft = Now->line.Text();
  const auto to = static_cast<std::ptrdiff_t>(Called) + step;
  if (to < 0 || to > static_cast<std::ptrdiff_t>(last)) return;
  Called = static_cast<std::size_t>(to);
  Now->line.Set(Called == last ? Draft : Kept[Called]);
}

void NextPlace() {
  const std::size_t caret = Now->line.Caret();
  const std::vector<FormulaPlace>& empty = Now->formula.empty;
  if (!Now->error && !empty.empty()) {
    const auto next =
        std::ranges::find_if(empty, [caret](const auto& place) { return place.offset > caret; });
    return Now->line.MoveCaret(next == empty.end() ? empty.front().offset : next->offset);
  }
  const std::string& text = Now->line.Text();
  const std::size_t place = text.find("{}", caret);
  const std::size_t close = text.find('}', caret);
  Now->line.MoveCaret(place != std::string::npos   ? place + 1
                      : close != std::string::npos ? close + 1
                                                   : text.size());
}

// What was edited anew leaves to Select; otherwise typing goes on.
void Close() {
  const Entry closed = std::move(*Now);
  Now.reset();
  std::fill(Tools + 1, Tools + kBezierMode, &TypingTool());
  if (Picture1) Picture1->takesTab = false;
  if (!closed.instead.empty()) {
    TakeStyle(closed.forNewRuns, closed.waitingRun);
    HiddenItems.clear();
    ShowPage();
    TakeMode(0);
  }
  ShowCursor();
}

// What else was put on the line of a formula that stands lower goes down with it: the items as they will be,
// put to those of the formula.
std::vector<std::uint64_t> TakeLineDown(Page& page) {
  std::vector<std::uint64_t> moved;
  for (const TextItem& item : ItemsOfPage().Texts()) {
    if (!item.draws || item.id <= LastAboveLine()) continue;
    TextEntry entry = item.entry;
    entry.y += Now->down;
    page.text = LineOfEntry(entry) + "\r\n" + page.text;
    moved.push_back(item.id);
  }
  for (const DrawingItem& item : ItemsOfPage().Drawings()) {
    if (!item.draws || item.id <= LastAboveLine()) continue;
    Drawing drawing = item.drawing;
    MapDrawing(drawing, [](Point point) { return Point{point.x, point.y + Now->down}; });
    page.drawings = RecordOfDrawing(drawing, TokenOfStyle(drawing.style)) + "\r\n" + page.drawings;
    ++page.drawingCount;
    moved.push_back(item.id);
  }
  return moved;
}

// False if there is an error in it, which is then said.
bool PlaceNow() {
  const std::string notation = Now->line.Text();
  if (IsBlank(notation)) {
    if (!Now->instead.empty()) AddPage("delete", {}, Now->instead);
    return true;
  }
  Keep(notation);
  if (Now->error) {
    ShowNote("The formula cannot be placed: " + Now->error->message);
    return false;
  }
  PlacedFormula placed{notation,
                       Now->style,
                       static_cast<std::int16_t>(AnchorOfMode(CursorMode)),
                       {CursorX, CursorY + Now->down},
                       PageOfFormula(Now->formula, Origin()),
                       {}};
  Page page = placed.page;
  std::vector<std::uint64_t> instead = Now->instead;
  if (Now->down > 0) instead = TakeLineDown(page);
  AddPage(kPlacingFormula, page, instead);
  LowerLine(std::exchange(Now->down, 0.0F));
  // What hangs below the line as letters do needs no more room.
  const float began = Now->run && Now->run->lineX     ? *Now->run->lineX
                      : AnchorOfMode(CursorMode) <= 3 ? CursorX
                                                      : Origin().x;
  NoteLine(began, OnLine().y + Now->formula.depth - kTail * Now->style.size);
  KeepPlacedFormula(std::move(placed));
  return true;
}

// Where the line goes on behind the formula.
float EndOfFormula() {
  return Origin().x + (IsBlank(Now->line.Text()) ? 0 : Now->formula.width);
}

// Closes the line of a formula that was placed. What stood behind it in its run is open there, and otherwise
// typing goes on there if so wanted.
Entry CloseBehind(bool goOn) {
  const float end = EndOfFormula();
  Entry closed = *Now;
  Close();
  if (closed.instead.empty() && (goOn || !closed.behind.empty())) OpenRunAt(end, closed.behind);
  return closed;
}

void EnterKey(bool behind) {
  if (!PlaceNow()) return;
  const Entry placed = CloseBehind(behind);
  if (behind || !placed.instead.empty()) return;
  CommitPendingRun(false);
  if (CursorMode > 0) CursorMode = static_cast<std::int16_t>(-CursorMode);
  GoToNextLine();
  ShowCursor();
}

// Up and down the list of names, or through the notations that were kept.
bool ListKey(int code) {
  const bool up = code == kKeyUp;
  if (!up && code != kKeyDown) return false;
  if (Now->line.Names().Open()) {
    Now->line.Names().Move(up ? -1 : 1);
  } else {
    CallBack(up ? -1 : 1);
    TakeNotation();
  }
  return true;
}

// The page and the run are as they were.
void Drop() {
  Keep(Now->line.Text());
  const Entry dropped = *Now;
  Close();
  if (!dropped.instead.empty()) return Select(dropped.instead);
  if (dropped.run) return JoinRun(*dropped.run);
  if (!dropped.behind.empty()) OpenRunAt(CursorX, dropped.behind);
}

void PaintEmptyPlaces(Painter& painter, const View& view, Point origin) {
  const float pixel = 1 / view.scale;
  for (const FormulaPlace& place : Now->formula.empty) {
    const Point at = {origin.x + place.at.x, origin.y + place.at.y};
    painter.FillBox({at.x + pixel, at.y - 0.6F * place.size, at.x + 0.5F * place.size - pixel, at.y},
                    PaletteColour(kLightGrey));
  }
}

class FormulaEntryTool : public Tool {
 public:
  void Press(const Pointer& pointer) override {
    PressedLine = PressedPage = false;
    if (Now->line.Names().ChooseAt(pointer.at)) return ShowCursor();
    PressedLine = Now->line.Holds(pointer.at);
    PressedPage = !PressedLine;
    if (PressedPage) return;
    Now->line.Names().Close();
    const std::size_t at = Now->line.PlaceAt(pointer.at);
    pointer.clicks == 2 ? Now->line.SelectWordAt(at) : Now->line.MoveCaret(at, pointer.shift);
    ShowCursor();
  }
  void Move(const Pointer& pointer) override {
    if (!PressedLine || pointer.clicks == 2) return;
    Now->line.MoveCaret(Now->line.PlaceAt(pointer.at), true);
    ShowCursor();
  }
  void Release(const Pointer& pointer) override {
    if (std::exchange(PressedLine, false)) return;
    if (Now->line.Names().ChooseAt(pointer.at)) {
      Now->line.TakeName();
      return TakeNotation();
    }
    if (!std::exchange(PressedPage, false)) return;
    const bool anew = !Now->instead.empty();
    FinishFormula();
    if (!anew) PlaceCursor(pointer.at.x, pointer.at.y);
  }
  bool Key(int code) override {
    SignNames& names = Now->line.Names();
    if (names.Open() && (code == kKeyTab || code == kKeyEnter)) {
      Now->line.TakeName();
      TakeNotation();
    } else if (code == kKeyEscape) {
      names.Open() ? names.Close() : Drop();
      ShowCursor();
    } else if ((code & ~kWithShift) == kKeyEnter || code == kKeyCtrlEnter) {
      EnterKey(code == (kKeyEnter | kWithShift));
    } else if (code == kKeyTab) {
      GoToNextPlace();
    } else if (code >= 32 && code < 127) {
      Now->line.Type(static_cast<char>(code));
      Now->line.FollowName();
      TakeNotation();
    } else if (Now->line.Key(code)) {
      code == kKeyBackspace ? Now->line.FollowName() : names.Close();
      TakeNotation();
    } else {
      return ListKey(code);
    }
    return true;
  }
  void Paint(Painter& painter, const View& view) const override {
    const Point origin = Origin();
    PaintFormula(painter, view, Now->formula, origin);
    if (!Now->behind.empty()) {
      TextEntry rest{EndOfFormula(), origin.y, FontSize, BaseFont, Now->behind};
      rest.anchor = 3;
      PaintEntry(painter, view, rest);
    }
    if (view.printed) return;
    PaintEmptyPlaces(painter, view, origin);
    // The line keeps off where letters stand, too.
    const float size = Now->style.size;
    const Box& ink = Now->formula.ink;
    Now->line.Paint(
        painter, view, origin,
        {ink.left, std::min(ink.top, -kRise * size), ink.right, std::max(ink.bottom, kTail * size)},
        Now->error);
  }
  void Finish() override { FinishFormula(); }
  std::string Hint() const override { return "Formula: notation such as \\frac{a}{b}, x^2, \\sqrt{x}"; }
};

// Ink above a line that was begun with Enter.
std::vector<Box> InkAbove() {
  std::vector<Box> boxes;
  if (!IsOnNewLine()) return boxes;
  const float line = AlignAtAnchor({CursorX, CursorY}, AnchorOfMode(CursorMode), 0, FontSize).y;
  const auto add = [&](const Box& ink) {
    if (ink.bottom < line && ink.bottom > line - PaperHeight / 4) boxes.push_back(ink);
  };
  for (const TextItem& item : ItemsOfPage().Texts())
    if (item.draws && item.id <= LastAboveLine()) add(InkBoxOf(item.entry));
  for (const DrawingItem& item : ItemsOfPage().Drawings())
    if (item.draws && item.id <= LastAboveLine()) add(InkBoxOf(item.drawing));
  return boxes;
}

void Open(Entry entry) {
  static FormulaEntryTool tool;
  Now = std::move(entry);
  Called = Kept.size();
  std::fill(Tools + 1, Tools + kBezierMode, &tool);
  if (Picture1) Picture1->takesTab = true;
  TakeNotation();
}

std::uint64_t FirstSelected() {
  const SelectedItems selected = Selection();
  if (selected.Count() == 0) return 0;
  return selected.texts.empty() ? selected.drawings.front()->id : selected.texts.front()->id;
}

}  // namespace

void ResetFormulaEntry() {
  Now.reset();
  PressedLine = PressedPage = false;
  Kept.clear();
  Called = 0;
  Draft.clear();
  ResetPlacedFormulas();
}

bool CanOpenFormula() {
  if (Retyping()) return RetypedCanBeCut();
  if (FormulaIsOpen() || (CursorMode < 0 && AnchorOfMode(CursorMode) != 0)) return true;
  const std::uint64_t selected = FirstSelected();
  return selected != 0 && PlacedFormulaOf(selected).has_value();
}

void OpenFormula() {
  if (FormulaIsOpen() || !CanOpenFormula()) return;
  if (CursorMode >= 0) {
    OpenFormulaOf(FirstSelected());
    return;
  }
  Entry entry;
  if (RunIsOpen()) {
    entry.run = CutRun();
    if (!entry.run) return;
    entry.behind = entry.run->behind;
    entry.line.Set(entry.run->taken, true);
  }
  ClearMarkedBox();
  entry.above = InkAbove();
  Open(std::move(entry));
}

bool OpenFormulaOf(std::uint64_t id) {
  const std::optional<PlacedFormula> placed = PlacedFormulaOf(id);
  if (!placed) return false;
  ClearMarkedBox();
  CursorX = placed->cursor.x;
  CursorY = placed->cursor.y;
  TakeMode(static_cast<std::int16_t>(-placed->mode));
  TakeUpFormula({placed->notation, placed->notation.size(), placed->style, placed->ids, ""});
  return true;
}

void FollowTypeface() {
  if (Now) TakeNotation();
}

bool FormulaIsOpen() {
  return Now.has_value();
}

std::optional<FormulaInMaking> FormulaNow() {
  if (!Now) return {};
  return FormulaInMaking{Now->line.Text(), Now->line.Caret(), Now->style, Now->instead, Now->behind};
}

void TakeUpFormula(const FormulaInMaking& formula) {
  Entry entry;
  entry.forNewRuns = {FontSize, true, BaseFont};
  entry.instead = formula.instead;
  entry.behind = formula.behind;
  if (!entry.instead.empty()) entry.waitingRun = PendingRun;
  TakeStyle(formula.style, "");
  entry.line.Set(formula.notation, true);
  entry.line.MoveCaret(std::min(formula.caret, formula.notation.size()));
  if (!entry.instead.empty()) {
    HiddenItems = entry.instead;
    ShowPage();
  }
  Open(std::move(entry));
}

bool FormulaIsWrong() {
  return Now && Now->error && !IsBlank(Now->line.Text());
}

void FinishFormula() {
  if (!Now) return;
  if (PlaceNow()) {
    CloseBehind(false);
  } else {
    ShowNote("The formula has an error and was not placed; Ctrl+M and Up bring it back");
    Drop();
  }
}

void InsertIntoFormula(std::string_view utf8) {
  std::string text(utf8);
  // Line ends stay, for a comment of a pasted text ends there.
  for (char& c : text)
    if (static_cast<unsigned char>(c) < 32 && c != '\n') c = ' ';
  if (text.size() > kLongestNotation - std::min(Now->line.Text().size(), kLongestNotation))
    return ShowNote("A notation has no more than 16,384 characters");
  Now->line.Insert(text);
  Now->line.FollowName();
  TakeNotation();
}

void InsertTemplate(std::string_view notation) {
  OpenFormula();
  if (!Now) return;
  std::string text(notation);
  const std::string selected(Now->line.Selected());
  const std::size_t place = text.find("{}");
  if (place == std::string::npos) {
    const std::size_t cell = text.find(" & ");
    Now->line.Insert(text, cell);
  } else {
    text.insert(place + 1, selected);
    // With the first place filled the next one is what is wanted.
    const std::size_t next = selected.empty() ? place : text.find("{}", place + 1 + selected.size());
    Now->line.Insert(text, next == std::string::npos ? text.size() : next + 1);
  }
  Now->line.Names().Close();
  TakeNotation();
}

void GoToNextPlace() {
  NextPlace();
  ShowCursor();
}

std::string TableNotation(std::string_view environment, int rows, int columns) {
  std::string cells;
  for (int row = 0; row < rows; ++row) {
    if (row > 0) cells += " \\\\ ";
    for (int column = 0; column < columns; ++column) cells += column == 0 ? "{}" : " & {}";
  }
  const std::string name(environment);
  return "\\begin{" + name + "} " + cells + " \\end{" + name + "}";
}

std::string SelectedNotation() {
  return std::string(Now->line.Selected());
}

void EraseSelectedNotation() {
  Now->line.Erase(Now->line.SelectedFrom(), Now->line.SelectedTo());
  TakeNotation();
}

void SelectWholeNotation() {
  Now->line.SelectAll();
  ShowCursor();
}

bool CanUndoNotation() {
  return Now->line.CanUndo();
}

bool CanRedoNotation() {
  return Now->line.CanRedo();
}

void UndoNotation() {
  Now->line.Undo();
  Now->line.Names().Close();
  TakeNotation();
}

void RedoNotation() {
  Now->line.Redo();
  Now->line.Names().Close();
  TakeNotation();
}

void ShowFormulaPreedit(const std::string& utf8) {
  Now->line.SetPreedit(utf8);
  ShowCursor();
}

Point FormulaCaret() {
  return Now->line.CaretFoot();
}

}  // namespace kelvane
