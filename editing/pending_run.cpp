#include "editing/pending_run.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "document/numbers.h"
#include "editing/cursor.h"
#include "editing/tool.h"
#include "typography/colours.h"
#include "typography/item_boxes.h"
#include "typography/renderer.h"
#include "typography/run_painter.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane {

std::string PendingRun;
TextBox* Text4;

namespace {

constexpr ColourValue kSelectedColour = 0xFFD7BE;
// How far the caret and the box behind a selected part reach from the baseline, ems.
constexpr float kRise = 0.8F;
constexpr float kFall = 0.2F;

// The caret counts from the run's end, so that it stays there whoever fills the run; so does the other end of
// the selected part. At the caret itself it means that nothing is selected.
std::size_t CaretFromEnd = 0;
std::size_t FixedFromEnd = 0;

// What an input method has in the making, as a run; it stands at the caret but is no part of the run yet.
std::string Preedit;

// In force before the last choice of a typeface.
std::int16_t FontBefore;

std::size_t IndexOf(std::size_t fromEnd) {
  return PendingRun.size() - std::min(fromEnd, PendingRun.size());
}

std::string_view RunUpTo(std::size_t length) {
  return std::string_view(PendingRun).substr(0, length);
}

void PutCaret(std::size_t fromEnd) {
  CaretFromEnd = FixedFromEnd = fromEnd;
}

void ShowRun() {
  if (Text4) Text4->SetText(PendingRun);
}

// Line ends and NUL, which a box or a macro file may hold, would break the entry's line.
void CleanRun() {
  std::replace_if(
      PendingRun.begin(), PendingRun.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
}

bool IsSwitch(char c) {
  const int code = static_cast<unsigned char>(c);
  return code >= kFirstSwitchCode && code < kFirstScriptCode;
}

void ShowFontAtCaret() {
  CurrentFont = FontBehind(RunUpTo(Caret()));
  ShowFontLabel(CurrentFont, FontSize);
}

void SelectPart(std::size_t first, std::size_t last) {
  MoveCaret(first);
  MoveCaret(last, true);
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

void TakeSize(float size) {
  if (FontSize == size) return;
  FontSize = size;
  if (Text1) Text1->SetText(FormatSingle(FontSize));
}

// The run with what is in the making at its caret.
std::string ShownRun() {
  return std::string(PendingRun).insert(Caret(), Preedit);
}

// From the tops of the letters to the ends of their tails, whether or not there is ink.
Box LineBox(const RunPen& pen, float width) {
  return {pen.x, pen.y - kRise * pen.size, pen.x + width, pen.y + kFall * pen.size};
}

// The box around the characters of the selected part.
void PaintSelected(Painter& painter) {
  const Part part = SelectedPart();
  if (part.Empty()) return;
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

}  // namespace

void ResetPendingRun() {
  EmptyRun();
  Preedit.clear();
  FontBefore = 0;
}

void EmptyRun() {
  PendingRun.clear();
  PutCaret(0);
  ShowRun();
}

void TakeRunOf(const TextEntry& entry, std::size_t caret) {
  PendingRun = entry.text;
  PutCaret(PendingRun.size() - std::min(caret, PendingRun.size()));
  CursorX = entry.x;
  CursorY = entry.y;
  BaseFont = entry.font;
  CheckFontMenu(BaseFont);
  TakeSize(entry.size);
  ShowRun();
  ShowFontAtCaret();
}

void TakeRunFromBox() {
  if (Text4) PendingRun = Text4->Text();
  CleanRun();
  if (Text4 && Text4->Text() != PendingRun) ShowRun();
}

std::size_t Caret() {
  return IndexOf(CaretFromEnd);
}

Part SelectedPart() {
  const std::size_t caret = Caret();
  const std::size_t fixed = IndexOf(FixedFromEnd);
  return {std::min(caret, fixed), std::max(caret, fixed)};
}

void MoveCaret(std::size_t to, bool extending) {
  CaretFromEnd = PendingRun.size() - to;
  if (!extending) FixedFromEnd = CaretFromEnd;
  ShowFontAtCaret();
}

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

void SelectWordAt(std::size_t at) {
  std::size_t first = at;
  std::size_t last = at;
  while (first > 0 && PendingRun[first - 1] != ' ') --first;
  while (last < PendingRun.size() && PendingRun[last] != ' ') ++last;
  SelectPart(first, last);
}

std::string SelectedText() {
  const auto [first, last] = SelectedPart();
  return PendingRun.substr(first, last - first);
}

void SelectWholeRun() {
  SelectPart(0, PendingRun.size());
  ShowCursor();
}

std::string_view RunBeforeCaret() {
  return RunUpTo(SelectedPart().first);
}

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

void EraseSelected() {
  if (!SelectedPart().Empty()) EraseTo(IndexOf(FixedFromEnd));
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

std::int16_t FontAtCaret() {
  return FontBehind(RunBeforeCaret());
}

char SwitchTo(std::int16_t font) {
  return static_cast<char>(kFirstSwitchCode + font);
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

TextEntry EntryOfRun() {
  TextEntry entry;
  entry.x = CursorX;
  entry.y = CursorY;
  entry.size = FontSize;
  entry.font = BaseFont;
  entry.text = PendingRun;
  entry.anchor = AnchorOfMode(CursorMode);
  return entry;
}

Point RunOrigin() {
  const float width = MeasureRun(ShownRun(), BaseFont, FontSize);
  return AlignAtAnchor({CursorX, CursorY}, AnchorOfMode(CursorMode), width, FontSize);
}

RunPen PenBehind(std::size_t length) {
  RunPen pen = FollowRun(std::string_view(ShownRun()).substr(0, length), BaseFont, FontSize);
  const Point origin = RunOrigin();
  pen.x += origin.x;
  pen.y += origin.y;
  return pen;
}

bool IsOnRun(Point at) {
  const RunPen pen = PenAt(RunOrigin(), BaseFont, FontSize);
  const TextEntry entry = EntryOfRun();
  return DistanceTo(LineBox(pen, MeasureRun(PendingRun, BaseFont, FontSize)), at) == 0 ||
         DistanceTo(entry, at, 0) == 0;
}

void PaintRun(Painter& painter, const View& view) {
  if (PendingRun.empty() && Preedit.empty()) return;
  PaintSelected(painter);
  RunPainter(painter, view).Paint({ShownRun(), BaseFont, FontSize, RunOrigin(), kBlack});
  PaintCaret(painter);
}

}  // namespace kelvane
