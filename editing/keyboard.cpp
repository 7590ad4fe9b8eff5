#include "editing/keyboard.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "document/numbers.h"
#include "editing/edit.h"
#include "editing/item_edits.h"
#include "editing/notes.h"
#include "editing/sign_names.h"
#include "typography/colours.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane {

bool JustifyRun;

namespace {

// Pixels.
constexpr float kMarkArm = 4;
constexpr float kNamesRoom = 20;  // of the run above its baseline, where the list of signs stands over it
constexpr char kTooLong[] = "The run is too long for a page file: a line holds 65,535 characters";

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

// The list of signs that a name being typed may mean.
SignNames Names;
// The item whose run is open, 0 for none, and the amount that it is justified to. What is for new runs waits
// until it is done.
std::uint64_t Retyped = 0;
float RetypedAmount = 0;
std::string WaitingRun;
TextEntry ForNewRuns;

// The line that typing is in.
constexpr float kNoInk = -std::numeric_limits<float>::max();
struct Line {
  float x = 0;  // where it began
  float y = 0;
  int place = -1;               // number of the last chosen cursor point
  bool fromEnter = false;       // and not chosen
  std::uint64_t lastAbove = 0;  // the last item when Enter led there
  float bottom = kNoInk;        // how far down something on it reaches
};
Line LineNow;

bool IsOnLine() {
  return LineNow.place == PlaceChosen() && LineNow.y == CursorY;
}

OpenRun RunNow() {
  return {PendingRun, CursorX, CursorY, FontSize, BaseFont, CursorMode};
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
  GoToNextLine();
}

TextEntry EntryForRun() {
  TextEntry entry = EntryOfRun();
  entry.amount = Retyped != 0 ? RetypedAmount : JustifyRun ? JustificationAmount(CursorX) : 0;
  entry.justified = entry.amount != 0;
  return entry;
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

// Escape takes back one level: what is selected of the run, then the run, which stays where it stands or goes
// back to what its item was, then the mode.
void StepOut() {
  if (!SelectedPart().Empty()) {
    MoveCaret(Caret());
    ShowCursor();
  } else if (Retyped != 0) {
    GiveUpRetyping();
  } else if (RunIsOpen()) {
    CommitPendingRun(false);
    ShowCursor();
  } else {
    TakeMode(0);
  }
}

class Typing : public Tool {
 public:
  void Press(const Pointer& pointer) override {
    Pressed = Pressing::Nothing;
    if (Names.ChooseAt(pointer.at)) return ShowCursor();
    Pressed = RunIsOpen() && IsOnRun(pointer.at) ? Pressing::Run : Pressing::Place;
    if (Pressed == Pressing::Place) return;
    Names.Close();
    const std::size_t at = CaretAt(EntryOfRun(), pointer.at);
    pointer.clicks == 2 ? SelectWordAt(at) : MoveCaret(at, pointer.shift);
    ShowCursor();
  }
  void Move(const Pointer& pointer) override {
    if (Pressed != Pressing::Run || pointer.clicks == 2) return;
    MoveCaret(CaretAt(EntryOfRun(), pointer.at), true);
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
    PaintRun(painter, view);
    if (!view.printed) PaintMark(painter, view);
    const RunPen pen = PenBehind(Caret());
    Names.Paint(painter, view, {pen.x, pen.y}, pen.y - kNamesRoom / view.scale);
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
    if (code == kKeyEscape) {
      StepOut();
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
  ResetPendingRun();
  JustifyRun = false;
  Pressed = Pressing::Nothing;
  GivenBack = {};
  Names.Close();
  Retyped = 0;
  LineNow = {};
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
    InsertText(std::string(1, static_cast<char>(code)));
  } else if (code == kKeyEnter) {
    EnterKey(false);
  } else if (code == kKeyCtrlEnter) {
    EnterKey(CursorMode >= -3);
  } else {
    EditingKey(code);
  }
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
  LineNow = {};
  PlaceCursor(CursorX + static_cast<float>(stepsX * GridStepH),
              CursorY + static_cast<float>(stepsY * GridStepV));
  return true;
}

namespace {

// Back to Select, the item selected.
void EndRetyping() {
  const std::uint64_t id = std::exchange(Retyped, 0);
  HiddenItems.clear();
  DropRun();
  ForNewRuns.text = WaitingRun;
  TakeRunOf(ForNewRuns, WaitingRun.size());
  Select({id});
  TakeMode(0);
}

void CommitRetyped() {
  const std::uint64_t id = Retyped;
  // An emptied run takes the item away.
  const std::string line = PendingRun.empty() ? std::string() : LineOfEntry(EntryForRun());
  if (line.size() > kLongestTextLine) {
    ShowNote(kTooLong);
    return;
  }
  const TextItem* item = ItemsOfPage().FindText(id);
  const Box area = item ? BoundsOf(item->entry) : Box{};
  const bool changed = item && item->line != line;
  EndRetyping();
  if (changed) ReplaceText("retype", id, line);
  if (item && !changed) ShowPage(area);
}

}  // namespace

void RetypeItem(std::uint64_t id, Point at) {
  const TextItem* item = ItemsOfPage().FindText(id);
  if (!item) return;
  const TextEntry entry = item->entry;
  if (entry.anchor < 1 || entry.anchor > 9) {
    ShowNote("This run has no anchor between 1 and 9: it can be moved, but not typed anew");
    return;
  }
  WaitingRun = PendingRun;
  ForNewRuns = EntryOfRun();
  TakeRunOf(entry, CaretAt(entry, at));
  RetypedAmount = entry.justified ? entry.amount : 0;
  const Box area = BoundsOf(entry);
  ClearMarkedBox();
  Retyped = id;
  HiddenItems = {id};
  ShowPage(area);
  TakeMode(static_cast<std::int16_t>(-entry.anchor));
}

bool Retyping() {
  return Retyped != 0;
}

bool RetypedCanBeCut() {
  return Retyped != 0 && RetypedAmount == 0 && WaitingRun.empty();
}

std::uint64_t RetypedItem() {
  return Retyped;
}

void GiveUpRetyping() {
  const TextItem* item = ItemsOfPage().FindText(Retyped);
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

void GoToNextLine() {
  float y = NextLine(CursorY);
  if (IsOnLine()) {
    while (y - FontSize < LineNow.bottom && y < PaperHeight) y = NextLine(y);
    if (AnchorOfMode(CursorMode) <= 3) CursorX = LineNow.x;
  }
  std::uint64_t last = 0;
  for (const TextItem& item : ItemsOfPage().Texts()) last = std::max(last, item.id);
  for (const DrawingItem& item : ItemsOfPage().Drawings()) last = std::max(last, item.id);
  CursorY = y;
  LineNow = {CursorX, y, PlaceChosen(), true, last, kNoInk};
}

void NoteLine(float x, float bottom) {
  if (!IsOnLine()) LineNow = {x, CursorY, PlaceChosen(), false, 0, bottom};
  LineNow.bottom = std::max(LineNow.bottom, bottom);
}

void LowerLine(float by) {
  CursorY += by;
  LineNow.y += by;
}

bool IsOnNewLine() {
  return IsOnLine() && LineNow.fromEnter;
}

std::uint64_t LastAboveLine() {
  return LineNow.lastAbove;
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
  TakeRunOf(entry, entry.text.size());
  StayPlaced();
  GivenBack = RunNow();
  ShowCursor();
  return true;
}

bool RunIsAsGivenBack() {
  return RunNow() == GivenBack;
}

void DropRun() {
  EmptyRun();
  Names.Close();
  GivenBack = {};
  ShowCursor();
}

}  // namespace kelvane
