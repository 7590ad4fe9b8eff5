#include "editing/formula_entry.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "editing/item_edits.h"
#include "editing/keyboard.h"
#include "editing/line_editor.h"
#include "editing/notes.h"
#include "editing/placed_formulas.h"
#include "editing/sign_names.h"
#include "formula/formula.h"
#include "formula/painting.h"
#include "typography/colours.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/run_painter.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

// Of the line, pixels.
constexpr float kRow = 22;
constexpr float kText = 14;
constexpr float kBase = 16;  // from its top to the baseline
constexpr float kPad = 6;
constexpr float kGap = 8;
constexpr float kLeastWidth = 260;
constexpr std::int16_t kLineFace = 4;
constexpr std::size_t kMostKept = 20;
constexpr char kHelp[] = "Enter places, Shift+Enter goes on behind, Tab: next place, Esc drops";

// The formula in the making.
struct Entry {
  LineEditor line;
  FormulaStyle style;
  std::string preedit;
  // As the notation stood when it last had no error; what is wrong with it now.
  Formula formula;
  std::optional<FormulaError> error;
  // The formula that it takes the place of, if it was placed before.
  std::vector<std::uint64_t> instead;
  Box strip;  // as it was painted last, points
};
std::optional<Entry> Now;
SignNames Names;
bool PressedLine = false;

// Notations that were placed or dropped, the last one at the end, and the one that Up has called back.
std::vector<std::string> Kept;
std::size_t Called = 0;
std::string Draft;

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

Point Origin() {
  return AlignAtAnchor({CursorX, CursorY}, AnchorOfMode(CursorMode), Now->formula.width, Now->style.size);
}

// The notation as a run of the line, up to a byte of it.
std::string Shown(std::string_view notation) {
  std::string missing;
  return SignsToRun(notation, kLineFace, missing);
}

void TakeNotation() {
  std::variant<Formula, FormulaError> set = SetFormula(Now->line.Text(), Now->style);
  Now->error.reset();
  if (auto* formula = std::get_if<Formula>(&set)) {
    Now->formula = std::move(*formula);
  } else {
    Now->error = std::get<FormulaError>(std::move(set));
  }
  ShowCursor();
}

std::string_view BeforeCaret() {
  return std::string_view(Now->line.Text()).substr(0, Now->line.Caret());
}

// Names that may be meant: signs, and what else the notation knows.
void FollowName() {
  const std::string_view name = NameAtEnd(BeforeCaret());
  Names.Follow(BeforeCaret(), name.empty() ? std::vector<std::string>() : FormulaNames(name.substr(1)));
}

void TakeName() {
  const std::string name = Names.ChosenNotation();
  const std::size_t typed = NameAtEnd(BeforeCaret()).size();
  Now->line.Erase(Now->line.Caret() - typed, Now->line.Caret());
  // Into its first place; behind a name that has none, a blank parts it from what follows.
  const std::size_t place = name.find("{}");
  place == std::string::npos
      ? Now->line.Insert(name + " ")
      : Now->line.Insert(name, name.starts_with("\\begin") ? name.find("\\end") : place + 1);
  Names.Close();
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

// The caret into the next empty place, or else out of the braces that it is in.
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

// What is edited anew leaves to Select, the formula selected; otherwise typing goes on.
void Close() {
  const std::vector<std::uint64_t> instead = std::move(Now->instead);
  Now.reset();
  Names.Close();
  std::fill(Tools + 1, Tools + kBezierMode, &TypingTool());
  if (Picture1) Picture1->takesTab = false;
  if (!instead.empty()) {
    HiddenItems.clear();
    ShowPage();
    TakeMode(0);
  }
  ShowCursor();
}

// False if there is an error in it, which is then said.
bool PlaceNow() {
  const std::string notation = Now->line.Text();
  if (IsBlank(notation)) return true;
  Keep(notation);
  if (Now->error) {
    ShowNote("The formula cannot be placed: " + Now->error->message);
    return false;
  }
  PlacedFormula placed{notation,
                       Now->style,
                       static_cast<std::int16_t>(AnchorOfMode(CursorMode)),
                       {CursorX, CursorY},
                       PageOfFormula(Now->formula, Origin()),
                       {}};
  placed.ids = AddPage("formula", placed.page, Now->instead);
  KeepPlacedFormula(std::move(placed));
  return true;
}

void EnterKey(bool behind) {
  const bool anew = !Now->instead.empty();
  if (!PlaceNow()) return;
  const Formula formula = std::move(Now->formula);
  const Point origin =
      AlignAtAnchor({CursorX, CursorY}, AnchorOfMode(CursorMode), formula.width, Now->style.size);
  Close();
  if (anew) return;
  if (behind) {
    // From there only an anchor at the left goes on: 1 to 3 down that side.
    const int anchor = AnchorOfMode(CursorMode);
    const bool top = anchor == 1 || anchor == 7 || anchor == 8;
    const bool centre = anchor == 2 || anchor == 6 || anchor == 9;
    CursorX = origin.x + formula.width;
    TakeMode(static_cast<std::int16_t>(top ? -1 : centre ? -2 : -3));
    return;
  }
  const float bottom = CursorY + formula.depth;
  do CursorY = NextLine(CursorY);
  while (CursorY - FontSize < bottom && CursorY < PaperHeight);
  ShowCursor();
}

// Up and down the list of names, or through the notations that were kept.
bool ListKey(int code) {
  const bool up = code == kKeyUp;
  if (!up && code != kKeyDown) return false;
  if (Names.Open()) {
    Names.Move(up ? -1 : 1);
  } else {
    CallBack(up ? -1 : 1);
    TakeNotation();
  }
  return true;
}

void Drop() {
  Keep(Now->line.Text());
  Close();
}

// Where the caret goes for a point of the line.
std::size_t PlaceInLine(Point at) {
  const std::string& text = Now->line.Text();
  const float scale = CurrentView().scale;
  const float x = at.x - Now->strip.left - kPad / scale;
  std::size_t best = 0;
  float nearest = std::abs(x);
  for (std::size_t end = 1; end <= text.size(); ++end) {
    const float away = std::abs(x - MeasureRun(Shown(text.substr(0, end)), kLineFace, kText / scale));
    if (away < nearest) {
      nearest = away;
      best = end;
    }
  }
  return best;
}

void PaintEmptyPlaces(Painter& painter, const View& view, Point origin) {
  const float pixel = 1 / view.scale;
  for (const FormulaPlace& place : Now->formula.empty) {
    const Point at = {origin.x + place.at.x, origin.y + place.at.y};
    painter.FillBox({at.x + pixel, at.y - 0.6F * place.size, at.x + 0.5F * place.size - pixel, at.y},
                    PaletteColour(kLightGrey));
  }
}

class StripPainter {
 public:
  StripPainter(Painter& painter, const View& view) : painter_(painter), view_(view), pixel_(1 / view.scale) {}

  void Paint(Point origin) {
    const LineEditor& line = Now->line;
    std::string text = line.Text();
    text.insert(line.Caret(), Now->preedit);
    const std::string run = Shown(text);
    const std::string message = Now->error && !IsBlank(text) ? Now->error->message : kHelp;
    const float wanted =
        std::max(MeasureRun(run, kLineFace, kText * pixel_), Width(message)) + 2 * kPad * pixel_;
    PlaceStrip(origin, std::max(wanted, kLeastWidth * pixel_));
    const Box& strip = Now->strip;
    painter_.FillBox({strip.left - pixel_, strip.top - pixel_, strip.right + pixel_, strip.bottom + pixel_},
                     PaletteColour(kDarkGrey));
    painter_.FillBox(strip, PaletteColour(kWhite));
    left_ = strip.left + kPad * pixel_;
    base_ = strip.top + kBase * pixel_;
    if (line.SelectedFrom() != line.SelectedTo())
      painter_.FillBox({X(line.SelectedFrom()), strip.top + 2 * pixel_, X(line.SelectedTo()),
                        strip.top + (kRow - 2) * pixel_},
                       PaletteColour(kLightGrey));
    RunPainter runs(painter_, view_);
    runs.Paint({run, kLineFace, kText * pixel_, {left_, base_}, kBlack});
    const bool wrong = Now->error && !IsBlank(text);
    runs.Paint({message,
                kLineFace,
                kSmall * pixel_,
                {left_, strip.bottom - 5 * pixel_},
                static_cast<std::int16_t>(wrong ? kRed : kDarkGrey)});
    if (wrong) Underline();
    const float caret = X(line.Caret(), Now->preedit);
    painter_.DrawLine({caret, strip.top + 3 * pixel_}, {caret, strip.top + (kRow - 3) * pixel_},
                      {PaletteColour(kBlue), 1, true});
    Names.Paint(painter_, view_, {caret, strip.bottom});
  }

 private:
  static constexpr float kSmall = 12;

  float Width(const std::string& words) const { return MeasureRun(words, kLineFace, kSmall * pixel_); }
  float X(std::size_t byte, std::string_view behind = {}) const {
    const std::string text = Now->line.Text().substr(0, byte) + std::string(behind);
    return left_ + MeasureRun(Shown(text), kLineFace, kText * pixel_);
  }

  // Below the formula, or above it where there is no room; no further to the right than the view.
  void PlaceStrip(Point origin, float width) {
    const Box& ink = Now->formula.ink;
    const float height = 2 * kRow * pixel_;
    const float below = origin.y + std::max(ink.bottom, 0.25F * Now->style.size) + kGap * pixel_;
    const float above = origin.y + std::min(ink.top, -0.8F * Now->style.size) - kGap * pixel_ - height;
    const bool fits = below + height <= view_.area.bottom || above < view_.area.top;
    const float top = fits ? below : above;
    const float left =
        std::max(std::min(origin.x, view_.area.right - width - pixel_), view_.area.left + pixel_);
    Now->strip = {left, top, left + width, top + height};
  }

  void Underline() {
    const std::size_t size = Now->line.Text().size();
    const std::size_t begin = std::min(Now->error->begin, size);
    const float from = X(begin);
    const float to = std::max(X(std::clamp(Now->error->end, begin, size)), from + 4 * pixel_);
    const float y = base_ + 4 * pixel_;
    painter_.DrawLine({from, y}, {to, y}, {PaletteColour(kRed), 2, true});
  }

  Painter& painter_;
  const View& view_;
  float pixel_;
  float left_ = 0;
  float base_ = 0;
};

class FormulaEntryTool : public Tool {
 public:
  void Press(const Pointer& pointer) override {
    PressedLine = false;
    if (Names.ChooseAt(pointer.at)) return ShowCursor();
    const Box& strip = Now->strip;
    PressedLine = pointer.at.x >= strip.left && pointer.at.x < strip.right && pointer.at.y >= strip.top &&
                  pointer.at.y < strip.bottom;
    if (!PressedLine) return;
    Names.Close();
    Now->line.MoveCaret(PlaceInLine(pointer.at), pointer.shift);
    ShowCursor();
  }
  void Move(const Pointer& pointer) override {
    if (!PressedLine) return;
    Now->line.MoveCaret(PlaceInLine(pointer.at), true);
    ShowCursor();
  }
  void Release(const Pointer& pointer) override {
    if (std::exchange(PressedLine, false)) return;
    if (Names.ChooseAt(pointer.at)) {
      TakeName();
      return TakeNotation();
    }
    const bool anew = !Now->instead.empty();
    FinishFormula();
    if (!anew) PlaceCursor(pointer.at.x, pointer.at.y);
  }
  bool Key(int code) override {
    if (Names.Open() && (code == kKeyTab || code == kKeyEnter)) {
      TakeName();
      TakeNotation();
    } else if (code == kKeyEscape) {
      Names.Open() ? Names.Close() : Drop();
      ShowCursor();
    } else if ((code & ~kWithShift) == kKeyEnter || code == kKeyCtrlEnter) {
      EnterKey(code == (kKeyEnter | kWithShift));
    } else if (code == kKeyTab) {
      NextPlace();
      ShowCursor();
    } else if (code >= 32 && code < 127) {
      Type(static_cast<char>(code));
    } else if (Now->line.Key(code)) {
      code == kKeyBackspace ? FollowName() : Names.Close();
      TakeNotation();
    } else {
      return ListKey(code);
    }
    return true;
  }
  void Paint(Painter& painter, const View& view) const override {
    const Point origin = Origin();
    PaintFormula(painter, view, Now->formula, origin);
    if (view.printed) return;
    PaintEmptyPlaces(painter, view, origin);
    StripPainter(painter, view).Paint(origin);
  }
  void Finish() override { FinishFormula(); }
  std::string Hint() const override { return "Formula: notation such as \\frac{a}{b}, x^2, \\sqrt{x}"; }

 private:
  static void Type(char character) {
    Now->line.Insert(std::string_view(&character, 1));
    FollowName();
    TakeNotation();
  }
};

void Open(Entry entry) {
  static FormulaEntryTool tool;
  Now = std::move(entry);
  Called = Kept.size();
  std::fill(Tools + 1, Tools + kBezierMode, &tool);
  if (Picture1) Picture1->takesTab = true;
  TakeNotation();
}

}  // namespace

void ResetFormulaEntry() {
  Now.reset();
  Names.Close();
  PressedLine = false;
  Kept.clear();
  Called = 0;
  Draft.clear();
  ResetPlacedFormulas();
}

bool CanOpenFormula() {
  if (FormulaIsOpen() || (CursorMode < 0 && AnchorOfMode(CursorMode) != 0)) return true;
  const SelectedItems selected = Selection();
  if (selected.Count() == 0) return false;
  return PlacedFormulaOf(selected.texts.empty() ? selected.drawings.front()->id : selected.texts.front()->id)
      .has_value();
}

void OpenFormula() {
  if (FormulaIsOpen()) return;
  if (CursorMode >= 0) {
    const SelectedItems selected = Selection();
    if (selected.Count() > 0)
      OpenFormulaOf(selected.texts.empty() ? selected.drawings.front()->id : selected.texts.front()->id);
    return;
  }
  if (Retyping()) CommitPendingRun(false);
  if (CursorMode >= 0) return;
  std::string notation;
  if (RunIsOpen()) {
    if (const std::string selected = SelectedText(); !selected.empty()) {
      notation = TextOfRun(selected, BaseFont);
      EraseSelected();
    }
    const RunEnds ends = EndsOfRun();
    const std::int16_t mode = CursorMode;
    const bool left = AnchorOfMode(mode) <= 3;
    CommitPendingRun(false);
    if (!PendingRun.empty()) return;  // it could not be taken
    CursorMode = mode;
    if (left) CursorX = ends.end.x;
  }
  Entry entry;
  entry.style = {FontSize, true, BaseFont};
  entry.line.Set(notation, true);
  Open(std::move(entry));
}

bool OpenFormulaOf(std::uint64_t id) {
  const std::optional<PlacedFormula> placed = PlacedFormulaOf(id);
  if (!placed) return false;
  ClearMarkedBox();
  CursorX = placed->cursor.x;
  CursorY = placed->cursor.y;
  TakeMode(static_cast<std::int16_t>(-placed->mode));
  TakeUpFormula({placed->notation, placed->notation.size(), placed->style, placed->ids});
  return true;
}

bool FormulaIsOpen() {
  return Now.has_value();
}

std::optional<FormulaInMaking> FormulaNow() {
  if (!Now) return {};
  return FormulaInMaking{Now->line.Text(), Now->line.Caret(), Now->style, Now->instead};
}

void TakeUpFormula(const FormulaInMaking& formula) {
  Entry entry;
  entry.style = formula.style;
  entry.instead = formula.instead;
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
  if (!PlaceNow()) ShowNote("The formula has an error and was not placed; Ctrl+M and Up bring it back");
  Close();
}

void InsertIntoFormula(std::string_view utf8) {
  std::string text(utf8);
  for (char& c : text)
    if (static_cast<unsigned char>(c) < 32) c = ' ';
  Now->line.Insert(text);
  FollowName();
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
  Names.Close();
  TakeNotation();
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
  Names.Close();
  TakeNotation();
}

void RedoNotation() {
  Now->line.Redo();
  Names.Close();
  TakeNotation();
}

void ShowFormulaPreedit(const std::string& utf8) {
  Now->preedit = utf8;
  ShowCursor();
}

Point FormulaCaret() {
  const Box& strip = Now->strip;
  return {std::min(strip.left + MeasureRun(Shown(BeforeCaret()), kLineFace, kText / SCALE), strip.right),
          strip.bottom};
}

}  // namespace kelvane
