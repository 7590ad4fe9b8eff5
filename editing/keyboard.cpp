#include "editing/keyboard.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "document/numbers.h"
#include "document/page.h"
#include "editing/edit.h"
#include "editing/item_edits.h"
#include "editing/notes.h"
#include "editing/sign_names.h"
#include "typography/colours.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/run_painter.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane {

std::string PendingRun;
bool JustifyRun;
TextBox* Text4;

namespace {

constexpr float kMarkArm = 4;  // pixels
constexpr ColourValue kSelectedColour = 0xFFD7BE;
// How far the caret and the box behind a selected part reach from the baseline, ems.
constexpr float kRise = 0.8F;
constexpr float kFall = 0.2F;
constexpr char kTooLong[] = "The run is too long for a page file: a line holds 65,535 characters";

// The caret counts from the run's end, so that it stays there whoever fills the run; so does the other end of
// the selected part. At the caret itself it means that nothing is selected.
std::size_t CaretFromEnd = 0;
std::size_t FixedFromEnd = 0;

// What the held button began: choosing a place, or selecting in the run.
enum class Pressing { Nothing, Place, Run };
Pressing Pressed = Pressing::Nothing;

// A run that an undone edit gave back, and all that its entry will be made of.
struct OpenRun {
  std::string text;
  float x = 0;
  float y = 0;
  float size = 0;
  std::int16_t font = 0;
  std::int16_t mode = 0;
  bool operator==(const OpenRun&) const = default;
};
OpenRun GivenBack;

// What an input method has in the making, as a run; it stands at the caret but is no part of the run yet.
std::string Preedit;
// The list of signs that a name being typed may mean.
SignNames Names;
// In force before the last choice of a typeface.
std::int16_t FontBefore;
// The item whose run is open, 0 for none, and the amount that it is justified to.
std::uint64_t Retyped = 0;
float RetypedAmount = 0;

OpenRun RunNow() {
  return {PendingRun, CursorX, CursorY, FontSize, BaseFont, CursorMode};
}

std::size_t IndexOf(std::size_t fromEnd) {
  return PendingRun.size() - std::min(fromEnd, PendingRun.size());
}

std::size_t Caret() {
  return IndexOf(CaretFromEnd);
}

std::string_view RunUpTo(std::size_t length) {
  return std::string_view(PendingRun).substr(0, length);
}

void PutCaret(std::size_t fromEnd) {
  CaretFromEnd = FixedFromEnd = fromEnd;
}

// The selected part of the run; of no length if nothing is selected.
struct Part {
  std::size_t first;
  std::size_t last;
  bool Empty() const { return first == last; }
};
Part SelectedPart() {
  const std::size_t caret = Caret();
  const std::size_t fixed = IndexOf(FixedFromEnd);
  return {std::min(caret, fixed), std::max(caret, fixed)};
}

void ShowRun() {
  if (Text4) Text4->SetText(PendingRun);
}

// Line ends and NUL, which a box or a macro file may hold, would break the entry's line.
void CleanRun() {
  std::replace_if(
      PendingRun.begin(), PendingRun.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
}

// The box may hold what the person edited there.
void TakeRunFromBox() {
  if (Text4) PendingRun = Text4->Text();
  CleanRun();
  if (Text4 && Text4->Text() != PendingRun) ShowRun();
}

bool IsSwitch(char c) {
  const int code = static_cast<unsigned char>(c);
  return code >= kFirstSwitchCode && code < kFirstScriptCode;
}

char SwitchTo(std::int16_t font) {
  return static_cast<char>(kFirstSwitchCode + font);
}

void ShowFontAtCaret() {
  CurrentFont = FontBehind(RunUpTo(Caret()));
  ShowFontLabel(CurrentFont, FontSize);
}

// Takes out what stands between the caret and `to`; the caret is then there.
void EraseTo(std::size_t to) {
  const auto [first, last] = std::minmax({Caret(), to});
  const std::string_view erased = std::string_view(PendingRun).substr(first, last - first);
  const bool switches = std::any_of(erased.begin(), erased.end(), IsSwitch);
  const std::size_t behind = PendingRun.size() - last;
  PendingRun.erase(first, last - first);
  PutCaret(behind);
  ShowRun();
  if (switches) ShowFontAtCaret();
}

// What is selected gives way to what is entered.
void EraseSelected() {
  if (!SelectedPart().Empty()) EraseTo(IndexOf(FixedFromEnd));
}

// `extending` leaves the other end of the selected part where it is.
void MoveCaret(std::size_t to, bool extending = false) {
  CaretFromEnd = PendingRun.size() - to;
  if (!extending) FixedFromEnd = CaretFromEnd;
  ShowFontAtCaret();
}

void SelectPart(std::size_t first, std::size_t last) {
  MoveCaret(first);
  MoveCaret(last, true);
}

// The word around a place, without the blanks beside it.
void SelectWordAt(std::size_t at) {
  std::size_t first = at;
  std::size_t last = at;
  while (first > 0 && PendingRun[first - 1] != ' ') --first;
  while (last < PendingRun.size() && PendingRun[last] != ' ') ++last;
  SelectPart(first, last);
}

// Codes around what is selected; the caret is then behind them.
void Surround(char before, char after) {
  const auto [first, last] = SelectedPart();
  PendingRun.insert(last, 1, after);
  PendingRun.insert(first, 1, before);
  ShowRun();
  MoveCaret(last + 2);
}

// Sets what is selected in a typeface; what stands behind it keeps its own.
void SetSelectedIn(std::int16_t font) {
  const auto [first, last] = SelectedPart();
  std::string part = PendingRun.substr(first, last - first);
  std::erase_if(part, IsSwitch);
  part.insert(0, 1, SwitchTo(font));
  const std::size_t end = first + part.size();
  if (last < PendingRun.size() && !IsSwitch(PendingRun[last])) part += SwitchTo(FontBehind(RunUpTo(last)));
  PendingRun.replace(first, last - first, part);
  MoveCaret(end);
}

// The next place to the left or right of the caret where a word begins.
std::size_t WordLeft() {
  std::size_t at = Caret();
  while (at > 0 && PendingRun[at - 1] == ' ') --at;
  while (at > 0 && PendingRun[at - 1] != ' ') --at;
  return at;
}
std::size_t WordRight() {
  std::size_t at = Caret();
  while (at < PendingRun.size() && PendingRun[at] != ' ') ++at;
  while (at < PendingRun.size() && PendingRun[at] == ' ') ++at;
  return at;
}

// Keys that move the caret, with Shift one end of the selected part, or erase at it; false for others, and
// while there is no run.
bool EditingKey(int code) {
  if (PendingRun.empty()) return false;
  const std::size_t at = Caret();
  const std::size_t end = PendingRun.size();
  const bool extending = code & kWithShift;
  const Part selected = SelectedPart();
  const bool erases = code == kKeyBackspace || code == kKeyDelete || code == kKeyWordBackspace;
  if (erases && !selected.Empty()) {
    EraseSelected();
    return true;
  }
  // Without Shift the caret leaves a selected part at its side.
  const bool leaving = !extending && !selected.Empty();
  switch (code & ~kWithShift) {
    case kKeyBackspace:
      EraseTo(at - std::min<std::size_t>(at, 1));
      return true;
    case kKeyDelete:
      EraseTo(std::min(at + 1, end));
      return true;
    case kKeyWordBackspace:
      EraseTo(WordLeft());
      return true;
    case kKeyLeft:
      MoveCaret(leaving ? selected.first : at - std::min<std::size_t>(at, 1), extending);
      return true;
    case kKeyRight:
      MoveCaret(leaving ? selected.last : std::min(at + 1, end), extending);
      return true;
    case kKeyWordLeft:
      MoveCaret(WordLeft(), extending);
      return true;
    case kKeyWordRight:
      MoveCaret(WordRight(), extending);
      return true;
    case kKeyHome:
    case kKeyHome | kWithControl:
      MoveCaret(0, extending);
      return true;
    case kKeyEnd:
    case kKeyEnd | kWithControl:
      MoveCaret(end, extending);
      return true;
    default:
      return false;
  }
}

void TakeSize(float size) {
  if (FontSize == size) return;
  FontSize = size;
  if (Text1) Text1->SetText(FormatSingle(FontSize));
}

const TextItem* FindText(std::uint64_t id) {
  for (const TextItem& item : ItemsOfPage().Texts())
    if (item.id == id && item.draws) return &item;
  return nullptr;
}

bool ArrowKey(int code) {
  switch (code) {
    case kKeyLeft:
      return StepCursor(-1, 0);
    case kKeyRight:
      return StepCursor(1, 0);
    case kKeyUp:
      return StepCursor(0, -1);
    case kKeyDown:
      return StepCursor(0, 1);
    default:
      return false;
  }
}

void StayPlaced() {
  if (CursorMode > 0) CursorMode = static_cast<std::int16_t>(-CursorMode);
}

void EnterKey(bool justify) {
  if (PendingRun.empty() && Retyped == 0) {
    ClearMarkedBox();
  } else {
    JustifyRun = justify;
    CommitPendingRun(true);
    if (!PendingRun.empty() || CursorMode == 0) return;  // it could not be taken, or an item has its place
    StayPlaced();
  }
  CursorY = NextLine(CursorY);
}

TextEntry EntryForRun() {
  TextEntry entry;
  entry.x = CursorX;
  entry.y = CursorY;
  entry.size = FontSize;
  entry.font = BaseFont;
  entry.text = PendingRun;
  entry.anchor = AnchorOfMode(CursorMode);
  entry.amount = Retyped != 0 ? RetypedAmount : JustifyRun ? JustificationAmount(CursorX) : 0;
  entry.justified = entry.amount != 0;
  return entry;
}

// The open run as it shows: stretched only once it is completed.
TextEntry ShownEntry() {
  TextEntry entry = EntryForRun();
  entry.justified = false;
  return entry;
}

// The run with what is in the making at its caret.
std::string ShownRun() {
  return std::string(PendingRun).insert(Caret(), Preedit);
}

// Where the open run's first character lies.
Point RunOrigin() {
  const float width = MeasureRun(ShownRun(), BaseFont, FontSize);
  return AlignAtAnchor({CursorX, CursorY}, AnchorOfMode(CursorMode), width, FontSize);
}

// The pen behind a part of the run, on the page.
RunPen PenBehind(std::size_t length) {
  RunPen pen = FollowRun(std::string_view(ShownRun()).substr(0, length), BaseFont, FontSize);
  const Point origin = RunOrigin();
  pen.x += origin.x;
  pen.y += origin.y;
  return pen;
}

// From the tops of the letters to the ends of their tails, whether or not there is ink.
Box LineBox(const RunPen& pen, float width) {
  return {pen.x, pen.y - kRise * pen.size, pen.x + width, pen.y + kFall * pen.size};
}

bool IsOnRun(Point at) {
  const RunPen pen = PenAt(RunOrigin(), BaseFont, FontSize);
  const TextEntry entry = ShownEntry();
  return DistanceTo(LineBox(pen, MeasureRun(PendingRun, BaseFont, FontSize)), at) == 0 ||
         DistanceTo(entry, at, 0) == 0;
}

// The box around the characters of the selected part.
void PaintSelected(Painter& painter) {
  const Part part = SelectedPart();
  constexpr float kFar = std::numeric_limits<float>::max();
  Box all{kFar, kFar, -kFar, -kFar};
  WalkRun(PendingRun, PenAt(RunOrigin(), BaseFont, FontSize), 0, [&](std::size_t index, const RunPen& pen) {
    if (index < part.first || index >= part.last) return;
    const Box box = LineBox(pen, Advance(static_cast<unsigned char>(PendingRun[index]), pen.font, pen.size));
    all = {std::min(all.left, box.left), std::min(all.top, box.top), std::max(all.right, box.right),
           std::max(all.bottom, box.bottom)};
  });
  if (all.left <= all.right) painter.FillBox(all, kSelectedColour);
}

// What is in the making is underlined, and the caret stands behind it.
void PaintCaret(Painter& painter) {
  const Pen pen{PaletteColour(kBlue), 1, true};
  const Box line = LineBox(PenBehind(Caret() + Preedit.size()), 0);
  painter.DrawLine({line.left, line.top}, {line.left, line.bottom}, pen);
  if (Preedit.empty()) return;
  const RunPen start = PenBehind(Caret());
  painter.DrawLine({start.x, line.bottom}, {line.left, line.bottom}, pen);
}

// Puts the chosen sign in place of its name.
void TakeSign() {
  const Sign& sign = Names.Chosen();
  EraseTo(Caret() - NameAtEnd(RunBeforeCaret()).size());
  InsertRun(RunOf(sign, FontAtCaret()));
  Names.Close();
}

// Keys of the list of signs; false for those that it has no use for.
bool NamesKey(int code) {
  if (!Names.Open()) return false;
  switch (code) {
    case kKeyTab:
    case kKeyEnter:
      TakeSign();
      return true;
    case kKeyUp:
    case kKeyDown:
      Names.Move(code == kKeyUp ? -1 : 1);
      return true;
    case kKeyEscape:
      Names.Close();
      return true;
    default:
      return false;
  }
}

// Letters and Backspace go on with a name; every other key leaves it as letters.
void FollowName(int code) {
  const bool types = (code > 32 && code < 127) || code == kKeyBackspace;
  types ? Names.Follow(RunBeforeCaret()) : Names.Close();
}

void PaintMark(Painter& painter, const View& view) {
  const float arm = kMarkArm / view.scale;
  const Pen pen{PaletteColour(kBlue), 1, true};
  painter.DrawLine({CursorX - arm, CursorY}, {CursorX + arm, CursorY}, pen);
  painter.DrawLine({CursorX, CursorY - arm}, {CursorX, CursorY + arm}, pen);
}

class Typing : public Tool {
 public:
  void Press(const Pointer& pointer) override {
    Pressed = Pressing::Nothing;
    if (Names.ChooseAt(pointer.at)) return ShowCursor();
    Pressed = RunIsOpen() && IsOnRun(pointer.at) ? Pressing::Run : Pressing::Place;
    if (Pressed == Pressing::Place) return;
    Names.Close();
    const std::size_t at = CaretAt(ShownEntry(), pointer.at);
    pointer.clicks == 2 ? SelectWordAt(at) : MoveCaret(at, pointer.shift);
    ShowCursor();
  }
  void Move(const Pointer& pointer) override {
    if (Pressed != Pressing::Run || pointer.clicks == 2) return;
    MoveCaret(CaretAt(ShownEntry(), pointer.at), true);
    ShowCursor();
  }
  // The press that opened an item's run was not for this tool.
  void Release(const Pointer& pointer) override {
    const Pressing pressed = std::exchange(Pressed, Pressing::Nothing);
    if (Names.ChooseAt(pointer.at)) {
      TakeSign();
      ShowCursor();
      return;
    }
    if (pressed != Pressing::Place) return;
    PlaceCursor(pointer.at.x, pointer.at.y);
    NotePlaceChosen();
  }
  bool Key(int code) override {
    const bool taken = NamesKey(code);
    if (taken) ShowCursor();
    const bool done = taken || Do(code);
    if (Picture1) Picture1->takesTab = Names.Open();
    return done;
  }
  // The run being typed, where and as it will stand once committed.
  void Paint(Painter& painter, const View& view) const override {
    if (CursorMode >= 0) return;
    if (!PendingRun.empty() || !Preedit.empty()) {
      PaintSelected(painter);
      RunPainter(painter, view).Paint({ShownRun(), BaseFont, FontSize, RunOrigin(), kBlack});
      PaintCaret(painter);
    }
    if (!view.printed) PaintMark(painter, view);
    const RunPen pen = PenBehind(Caret());
    Names.Paint(painter, view, {pen.x, pen.y});
  }
  void Finish() override {
    if (RunIsOpen()) CommitPendingRun(false);
  }
  std::string Hint() const override {
    const std::string name = kAnchorNames[AnchorOfMode(CursorMode)];
    if (CursorMode > 0) return name + ": click on the page to type there";
    return name + " at " + FormatSingle(CursorX) + ", " + FormatSingle(CursorY) + " pt";
  }

 private:
  static bool Do(int code) {
    if (code == kKeyEscape && !SelectedPart().Empty()) {
      MoveCaret(Caret());
      ShowCursor();
      return true;
    }
    if (code == kKeyEscape && Retyped != 0) {
      GiveUpRetyping();
      return true;
    }
    if (RunIsOpen() && EditingKey(code)) {
      FollowName(code);
      ShowCursor();
      return true;
    }
    if (ArrowKey(code)) return true;
    TypeKey(code);
    FollowName(code);
    return CursorMode < 0 && code < kKeyLeft;
  }
};

}  // namespace

void ResetKeyboard() {
  PendingRun.clear();
  JustifyRun = false;
  PutCaret(0);
  Pressed = Pressing::Nothing;
  GivenBack = {};
  Preedit.clear();
  Names.Close();
  FontBefore = 0;
  Retyped = 0;
  ShowRun();
}

Tool& TypingTool() {
  static Typing tool;
  return tool;
}

bool RunIsOpen() {
  return CursorMode < 0 && AnchorOfMode(CursorMode) != 0 && (!PendingRun.empty() || Retyped != 0);
}

void TypeKey(int code) {
  if (CursorMode >= 0) return;
  if (code >= 32 && code <= 127) {
    EraseSelected();
    PendingRun.insert(Caret(), 1, static_cast<char>(code));
    ShowRun();
  } else if (code == kKeyEnter) {
    EnterKey(false);
  } else if (code == kKeyCtrlEnter) {
    EnterKey(CursorMode >= -3);
  } else {
    EditingKey(code);
  }
  ShowCursor();
}

void InsertScript(int index) {
  constexpr int kCodes = 3;  // of each script: begin, back, forward
  constexpr int kForward = 2;
  const auto code = static_cast<char>(kFirstScriptCode + index);
  if (CursorMode < 0 && index % kCodes == 0 && !SelectedPart().Empty()) {
    Surround(code, static_cast<char>(code + kForward));
    ShowCursor();
  } else {
    InsertText(std::string(1, code));
  }
  if (Picture1) Picture1->Focus();
}

void InsertText(const std::string& text) {
  if (CursorMode >= 0) return;
  EraseSelected();
  PendingRun.insert(Caret(), text);
  CleanRun();
  ShowRun();
  ShowFontAtCaret();
  ShowCursor();
}

void InsertRun(std::string run) {
  if (CursorMode >= 0) return;
  EraseSelected();
  const std::size_t at = Caret();
  if (!run.empty() && IsSwitch(run.front()) && at > 0 && IsSwitch(PendingRun[at - 1])) {
    PendingRun.erase(at - 1, 1);
    if (run.front() == SwitchTo(FontAtCaret())) run.erase(0, 1);
  }
  if (!run.empty() && IsSwitch(run.back()) && Caret() < PendingRun.size() && IsSwitch(PendingRun[Caret()]))
    run.pop_back();
  InsertText(run);
}

void ShowPreedit(const std::string& utf8) {
  std::string missing;
  if (CursorMode < 0 && !utf8.empty()) EraseSelected();
  Preedit = CursorMode < 0 ? SignsToRun(utf8, FontAtCaret(), missing) : "";
  ShowCursor();
}

std::string_view RunBeforeCaret() {
  return RunUpTo(SelectedPart().first);
}

std::int16_t FontAtCaret() {
  return FontBehind(RunBeforeCaret());
}

std::int16_t FontBehind(std::string_view run) {
  const auto last = std::find_if(run.rbegin(), run.rend(), IsSwitch);
  if (last == run.rend()) return BaseFont;
  return static_cast<std::int16_t>(static_cast<unsigned char>(*last) - kFirstSwitchCode);
}

void ChooseFontBefore() {
  ChooseFont(FontBefore);
}

void ChooseFont(std::int16_t font) {
  if (font != CurrentFont) FontBefore = CurrentFont;
  if (PendingRun.empty()) {
    BaseFont = font;
    CheckFontMenu(font);
  } else if (!SelectedPart().Empty()) {
    SetSelectedIn(font);
  } else if (CurrentFont != font) {
    const std::size_t at = Caret();
    PendingRun.insert(at, 1, SwitchTo(font));
    // What stands behind the caret keeps its typeface.
    if (at + 1 < PendingRun.size() && !IsSwitch(PendingRun[at + 1])) {
      PendingRun.insert(at + 1, 1, SwitchTo(CurrentFont));
      PutCaret(CaretFromEnd + 1);
    }
  }
  CurrentFont = font;
  ShowFontLabel(CurrentFont, FontSize);
  ShowRun();
  ShowCursor();
}

void ControlCodeBoxChanged() {
  TakeRunFromBox();
  PutCaret(0);
  ShowFontAtCaret();
  ShowCursor();
}

void ApplyControlCodeBox() {
  if (CursorMode < 0) CommitPendingRun(true);
  if (Picture1) Picture1->Focus();
}

void PlaceCursor(float x, float y) {
  if (AnchorOfMode(CursorMode) == 0) return;
  ClearMarkedBox();
  TakeRunFromBox();
  if (RunIsOpen()) {
    CommitPendingRun(false);
    if (!PendingRun.empty()) return;  // it could not be taken, and stays where it is
  }
  SetCursorPoint(x, y);
  ShowCursor();
}

bool StepCursor(int stepsX, int stepsY) {
  if (AnchorOfMode(CursorMode) == 0) return false;
  PlaceCursor(CursorX + static_cast<float>(stepsX * GridStepH),
              CursorY + static_cast<float>(stepsY * GridStepV));
  return true;
}

namespace {

// Back to Select, the item selected.
void EndRetyping() {
  const std::uint64_t id = std::exchange(Retyped, 0);
  HiddenItem = 0;
  DropRun();
  CursorMode = 0;
  SetCanvasPointer(CursorMode);
  Select({id});
  ShowCursor();
}

void CommitRetyped() {
  const std::uint64_t id = Retyped;
  // An emptied run takes the item away.
  const std::string line = PendingRun.empty() ? std::string() : LineOfEntry(EntryForRun());
  if (line.size() > kLongestTextLine) {
    ShowNote(kTooLong);
    return;
  }
  const TextItem* item = FindText(id);
  const Box area = item ? BoundsOf(item->entry) : Box{};
  const bool changed = item && item->line != line;
  EndRetyping();
  if (changed) ReplaceText("retype", id, line);
  if (item && !changed) ShowPage(area);
}

}  // namespace

void RetypeItem(std::uint64_t id, Point at) {
  const TextItem* item = FindText(id);
  if (!item) return;
  const TextEntry entry = item->entry;
  if (entry.anchor < 1 || entry.anchor > 9) {
    ShowNote("This run has no anchor between 1 and 9: it can be moved, but not typed anew");
    return;
  }
  PendingRun = entry.text;
  const std::size_t caret = CaretAt(entry, at);
  PutCaret(PendingRun.size() - std::min(caret, PendingRun.size()));
  CursorX = entry.x;
  CursorY = entry.y;
  BaseFont = entry.font;
  CheckFontMenu(BaseFont);
  TakeSize(entry.size);
  RetypedAmount = entry.justified ? entry.amount : 0;
  const Box area = BoundsOf(entry);
  ClearMarkedBox();
  Retyped = HiddenItem = id;
  CursorMode = static_cast<std::int16_t>(-entry.anchor);
  SetCanvasPointer(CursorMode);
  ShowRun();
  ShowFontAtCaret();
  ShowPage(area);
  ShowCursor();
}

bool Retyping() {
  return Retyped != 0;
}

std::uint64_t RetypedItem() {
  return Retyped;
}

void GiveUpRetyping() {
  const TextItem* item = FindText(Retyped);
  if (item) ShowPage(BoundsOf(item->entry));
  EndRetyping();
}

void CommitPendingRun(bool ResetSelection) {
  TakeRunFromBox();
  if (Retyped != 0) return CommitRetyped();
  if (PendingRun.empty() || AnchorOfMode(CursorMode) == 0) return;
  if (LineOfEntry(EntryForRun()).size() > kLongestTextLine) {
    ShowNote(kTooLong);
    return;
  }
  EditPage("typing", [ResetSelection](Page&) { AddTextRun(ResetSelection); });
  CursorMode = static_cast<std::int16_t>(AnchorOfMode(CursorMode));
  DropRun();
  JustifyRun = false;
  CurrentFont = BaseFont;
  ShowFontLabel(CurrentFont, FontSize);
}

void AddTextRun(bool ResetSelection) {
  if (ResetSelection) ClearMarkedBox();
  // A page file's last line may lack its end; what is appended must not run into it.
  if (!PageText.empty() && PageText.back() != '\n') PageText += "\r\n";
  PageText += LineOfEntry(EntryForRun()) + "\r\n";
}

float NextLine(float y) {
  const double lines = std::floor((static_cast<double>(FontSize) + y + GridStepV) / GridStepV);
  constexpr double kMost = std::numeric_limits<float>::max();
  return static_cast<float>(std::min(lines * GridStepV, kMost));
}

std::string SelectedText() {
  const auto [first, last] = SelectedPart();
  return PendingRun.substr(first, last - first);
}

void SelectWholeRun() {
  SelectPart(0, PendingRun.size());
  ShowCursor();
}

RunEnds EndsOfRun() {
  const Point cursor{CursorX, CursorY};
  if (!RunIsOpen()) return {cursor, cursor, cursor};
  const RunPen end = PenBehind(PendingRun.size());
  const RunPen caret = PenBehind(Caret());
  return {RunOrigin(), {end.x, end.y}, {caret.x, caret.y}};
}

bool GiveBackRun(std::string_view line) {
  TextEntry entry;
  const bool fits = ParseTextEntry(line, entry) && entry.anchor == AnchorOfMode(CursorMode) &&
                    entry.anchor != 0 && PendingRun.empty();
  if (!fits) return false;
  PendingRun = entry.text;
  PutCaret(0);
  CursorX = entry.x;
  CursorY = entry.y;
  StayPlaced();
  BaseFont = entry.font;
  CheckFontMenu(BaseFont);
  TakeSize(entry.size);
  ShowRun();
  ShowFontAtCaret();
  GivenBack = RunNow();
  ShowCursor();
  return true;
}

void PutRun(const std::string& run, std::size_t caret) {
  PendingRun = run;
  CleanRun();
  PutCaret(PendingRun.size() - std::min(caret, PendingRun.size()));
  ShowRun();
  ShowFontAtCaret();
  ShowCursor();
}

bool RunIsAsGivenBack() {
  return RunNow() == GivenBack;
}

void DropRun() {
  PendingRun.clear();
  PutCaret(0);
  Names.Close();
  GivenBack = {};
  ShowRun();
  ShowCursor();
}

}  // namespace kelvane
