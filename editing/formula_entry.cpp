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
constexpr float kTail = 0.25F;  // ems
constexpr char kHelp[] = "Enter places, Shift+Enter goes on behind, Tab: next place, Esc drops";

struct Entry {
  LineEditor line;
  FormulaStyle style;
  std::string preedit;
  // Completed where it ends in the middle, or as it stood when it last had no error; what is wrong with it
  // now.
  Formula formula;
  std::optional<FormulaError> error;
  // The formula that it takes the place of, if it was placed before.
  std::vector<std::uint64_t> instead;
  Box strip;                      // as it was painted last, points
  std::vector<std::size_t> rows;  // where they begin, bytes of the notation with the preedit
  Point caret;                    // its foot
  // Of the run that it was opened in: what was selected and has become the notation, what stood behind that
  // and goes on behind the formula; and where the run's line began.
  std::string taken;
  std::string behind;
  std::optional<float> lineX;
};
std::optional<Entry> Now;
SignNames Names;
// What the held button began: selecting in the line, or leaving it. The press that opened it did neither.
bool PressedLine = false;
bool PressedPage = false;

// Notations that were placed or dropped, the last one at the end, and the one that Up has called back.
std::vector<std::string> Kept;
std::size_t Called = 0;
std::string Draft;

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

// The style that typing has, or that the formula was placed with.
void FollowStyle() {
  if (Now->instead.empty()) Now->style = {FontSize, true, BaseFont};
}

Point Origin() {
  return AlignAtAnchor({CursorX, CursorY}, AnchorOfMode(CursorMode), Now->formula.width, Now->style.size);
}

// A part of the notation as a run of the line.
std::string Shown(std::string_view notation) {
  std::string missing;
  return SignsToRun(notation, kLineFace, missing);
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

void TakeNotation() {
  FollowStyle();
  std::variant<Formula, FormulaError> set = SetFormula(Now->line.Text(), Now->style);
  Now->error.reset();
  if (auto* formula = std::get_if<Formula>(&set)) {
    Now->formula = std::move(*formula);
  } else {
    Now->error = std::get<FormulaError>(std::move(set));
    if (auto half = SetHalf(Now->line.Text(), Now->style)) Now->formula = std::move(*half);
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

// What stands behind the formula goes on there: only an anchor at the left does, 1 to 3 down that side.
void GoOnBehind(float x) {
  const int anchor = AnchorOfMode(CursorMode);
  const bool top = anchor == 1 || anchor == 7 || anchor == 8;
  const bool centre = anchor == 2 || anchor == 6 || anchor == 9;
  CursorX = x;
  TakeMode(static_cast<std::int16_t>(top ? -1 : centre ? -2 : -3));
}

void OpenRunAt(float x, const std::string& run) {
  GoOnBehind(x);
  if (run.empty()) return;
  TextEntry entry = EntryOfRun();
  entry.text = run;
  TakeRunOf(entry, run.size());
}

// What was edited anew leaves to Select; otherwise typing goes on.
void Close() {
  const Entry closed = std::move(*Now);
  Now.reset();
  Names.Close();
  std::fill(Tools + 1, Tools + kBezierMode, &TypingTool());
  if (Picture1) Picture1->takesTab = false;
  if (!closed.instead.empty()) {
    HiddenItems.clear();
    ShowPage();
    TakeMode(0);
  }
  ShowCursor();
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
                       {CursorX, CursorY},
                       PageOfFormula(Now->formula, Origin()),
                       {}};
  AddPage("formula", placed.page, Now->instead);
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
  if (placed.lineX) CursorX = *placed.lineX;
  // What hangs below the line as letters do needs no more room.
  const float bottom = CursorY + placed.formula.depth - kTail * FontSize;
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

// The page is as it was, and what was selected in a run is in it again.
void Drop() {
  Keep(Now->line.Text());
  const Entry dropped = *Now;
  Close();
  if (!dropped.instead.empty()) return Select(dropped.instead);
  const std::string run = dropped.taken + dropped.behind;
  if (!run.empty()) OpenRunAt(CursorX, run);
}

// A row of the line as it is painted, bytes of the text with what is in the making.
std::string_view RowOf(std::string_view text, std::size_t row) {
  const std::vector<std::size_t>& rows = Now->rows;
  return text.substr(rows[row], (row + 1 < rows.size() ? rows[row + 1] : text.size()) - rows[row]);
}

// Where the caret goes for a point of the line.
std::size_t PlaceInLine(Point at) {
  const std::string& text = Now->line.Text();
  const float scale = CurrentView().scale;
  const float x = at.x - Now->strip.left - kPad / scale;
  const auto wanted = static_cast<std::ptrdiff_t>((at.y - Now->strip.top) * scale / kRow);
  const auto last = static_cast<std::ptrdiff_t>(Now->rows.size()) - 1;
  const auto row = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(wanted, 0, last));
  const std::string_view shown = RowOf(text, row);
  std::size_t best = 0;
  float nearest = std::abs(x);
  for (std::size_t end = 1; end <= shown.size(); ++end) {
    const float away = std::abs(x - MeasureRun(Shown(shown.substr(0, end)), kLineFace, kText / scale));
    if (away < nearest) {
      nearest = away;
      best = end;
    }
  }
  return Now->rows[row] + best;
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
    text_ = line.Text();
    text_.insert(line.Caret(), Now->preedit);
    const bool wrong = Now->error && !IsBlank(text_);
    const std::string message = wrong ? Now->error->message : kHelp;
    BreakRows();
    float wanted = MeasureRun(message, kLineFace, kSmall * pixel_);
    for (std::size_t row = 0; row < Now->rows.size(); ++row)
      wanted = std::max(wanted, Width(RowOf(text_, row)));
    PlaceStrip(origin, std::max(wanted + 2 * kPad * pixel_, kLeastWidth * pixel_));
    const Box& strip = Now->strip;
    painter_.FillBox({strip.left - pixel_, strip.top - pixel_, strip.right + pixel_, strip.bottom + pixel_},
                     PaletteColour(kDarkGrey));
    painter_.FillBox(strip, PaletteColour(kWhite));
    if (line.SelectedFrom() != line.SelectedTo())
      PaintPart(line.SelectedFrom(), line.SelectedTo(), 2, kRow - 2, kLightGrey);
    RunPainter runs(painter_, view_);
    for (std::size_t row = 0; row < Now->rows.size(); ++row)
      runs.Paint(
          {Shown(RowOf(text_, row)), kLineFace, kText * pixel_, {Left(), Top(row) + kBase * pixel_}, kBlack});
    runs.Paint({message,
                kLineFace,
                kSmall * pixel_,
                {Left(), strip.bottom - 6 * pixel_},
                static_cast<std::int16_t>(wrong ? kRed : kDarkGrey)});
    if (wrong) PaintPart(Now->error->begin, Now->error->end, kBase + 3, kBase + 5, kRed);
    const std::size_t caret = line.Caret() + Now->preedit.size();
    const std::size_t row = RowAt(caret);
    Now->caret = {Left() + Width(RowOf(text_, row).substr(0, caret - Now->rows[row])),
                  Top(row) + kRow * pixel_};
    painter_.DrawLine({Now->caret.x, Top(row) + 3 * pixel_}, {Now->caret.x, Top(row) + (kRow - 3) * pixel_},
                      {PaletteColour(kBlue), 1, true});
    Names.Paint(painter_, view_, {Now->caret.x, strip.bottom}, strip.top);
  }

 private:
  static constexpr float kSmall = 12;

  float Left() const { return Now->strip.left + kPad * pixel_; }
  float Top(std::size_t row) const { return Now->strip.top + static_cast<float>(row) * kRow * pixel_; }
  float Width(std::string_view part) const { return MeasureRun(Shown(part), kLineFace, kText * pixel_); }
  std::size_t RowAt(std::size_t byte) const {
    const auto behind = std::ranges::upper_bound(Now->rows, byte);
    return static_cast<std::size_t>(behind - Now->rows.begin()) - 1;
  }

  // Rows no wider than the view, and no wider than is read with ease.
  void BreakRows() {
    constexpr float kMostWidth = 560;
    const float most =
        std::min(kMostWidth * pixel_, view_.area.right - view_.area.left) - 2 * (kPad + 1) * pixel_;
    Now->rows = {0};
    float width = 0;
    for (std::size_t at = 0; at < text_.size();) {
      std::size_t next = at + 1;
      while (next < text_.size() && (static_cast<unsigned char>(text_[next]) & 0xC0U) == 0x80U) ++next;
      const float one = Width(std::string_view(text_).substr(at, next - at));
      if (width + one > most && width > 0) {
        Now->rows.push_back(at);
        width = 0;
      }
      width += one;
      at = next;
    }
  }

  // A box so many pixels below the top of each row that has part of the notation; small where the part is
  // empty.
  void PaintPart(std::size_t begin, std::size_t end, float top, float bottom, int colour) {
    for (std::size_t row = 0; row < Now->rows.size(); ++row) {
      const std::size_t from = Now->rows[row];
      const std::string_view shown = RowOf(text_, row);
      const std::size_t first = std::clamp(begin, from, from + shown.size()) - from;
      const std::size_t last = std::clamp(end, from, from + shown.size()) - from;
      if (first == last && row != RowAt(std::min(begin, text_.size()))) continue;
      const float left = Left() + Width(shown.substr(0, first));
      const float right = std::max(Left() + Width(shown.substr(0, last)), left + 4 * pixel_);
      painter_.FillBox({left, Top(row) + top * pixel_, right, Top(row) + bottom * pixel_},
                       PaletteColour(colour));
    }
  }

  // Below the formula, or above it where there is no room; no further to the right than the view.
  void PlaceStrip(Point origin, float width) {
    const Box& ink = Now->formula.ink;
    const float height = (static_cast<float>(Now->rows.size()) + 1) * kRow * pixel_;
    const float below = origin.y + std::max(ink.bottom, 0.25F * Now->style.size) + kGap * pixel_;
    const float above = origin.y + std::min(ink.top, -0.8F * Now->style.size) - kGap * pixel_ - height;
    const bool fits = below + height <= view_.area.bottom || above < view_.area.top;
    const float top = fits ? below : above;
    const float left =
        std::max(std::min(origin.x, view_.area.right - width - pixel_), view_.area.left + pixel_);
    Now->strip = {left, top, left + width, top + height};
  }

  Painter& painter_;
  const View& view_;
  float pixel_;
  std::string text_;
};

class FormulaEntryTool : public Tool {
 public:
  void Press(const Pointer& pointer) override {
    PressedLine = PressedPage = false;
    if (Names.ChooseAt(pointer.at)) return ShowCursor();
    const Box& strip = Now->strip;
    PressedLine = pointer.at.x >= strip.left && pointer.at.x < strip.right && pointer.at.y >= strip.top &&
                  pointer.at.y < strip.bottom;
    PressedPage = !PressedLine;
    if (PressedPage) return;
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
    if (!std::exchange(PressedPage, false)) return;
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
      GoToNextPlace();
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

// What stands before the caret, or before what is selected, becomes part of the page where it is; false if it
// cannot.
bool TakeRunApart(Entry& entry) {
  const Part selected = SelectedPart().Empty() ? Part{Caret(), Caret()} : SelectedPart();
  const std::string run = PendingRun;
  const std::string before = run.substr(0, selected.first);
  const auto part = [](const std::string& text, std::int16_t font) {
    return text.empty() || font == BaseFont ? text : SwitchTo(font) + text;
  };
  const std::string taken = run.substr(selected.first, selected.last - selected.first);
  const std::int16_t font = FontBehind(before);
  entry.taken = part(taken, font);
  entry.behind = part(run.substr(selected.last), FontBehind(before + taken));
  entry.line.Set(TextOfRun(taken, font), true);
  if (before.empty() && entry.behind.empty()) {
    EmptyRun();
    return true;
  }
  const float x = PenBehind(selected.first).x;
  entry.lineX = AnchorOfMode(CursorMode) <= 3 ? CursorX : RunOrigin().x;
  if (!before.empty()) {
    OpenRunAt(RunOrigin().x, before);
    CommitPendingRun(false);
    if (!PendingRun.empty()) return false;
  }
  EmptyRun();
  GoOnBehind(x);
  return true;
}

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
  PressedLine = PressedPage = false;
  Kept.clear();
  Called = 0;
  Draft.clear();
  ResetPlacedFormulas();
}

bool CanOpenFormula() {
  if (FormulaIsOpen() || (CursorMode < 0 && AnchorOfMode(CursorMode) != 0 && !Retyping())) return true;
  const SelectedItems selected = Selection();
  if (selected.Count() == 0) return false;
  return PlacedFormulaOf(selected.texts.empty() ? selected.drawings.front()->id : selected.texts.front()->id)
      .has_value();
}

void OpenFormula() {
  if (FormulaIsOpen() || Retyping()) return;
  if (CursorMode >= 0) {
    const SelectedItems selected = Selection();
    if (selected.Count() > 0)
      OpenFormulaOf(selected.texts.empty() ? selected.drawings.front()->id : selected.texts.front()->id);
    return;
  }
  Entry entry;
  if (RunIsOpen() && !TakeRunApart(entry)) return;
  entry.style = {FontSize, true, BaseFont};
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
  return {Now->caret.x, Now->strip.bottom};
}

}  // namespace kelvane
