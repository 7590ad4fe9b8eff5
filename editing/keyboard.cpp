#include "editing/keyboard.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "document/lines.h"
#include "document/numbers.h"
#include "document/page.h"
#include "document/paper.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/undo.h"
#include "typography/colours.h"
#include "typography/glyphs.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {

std::string PendingRun;
bool JustifyRun;
TextBox* Text4;

namespace {

constexpr int kFirstScriptCode = 240;
constexpr float kMarkArm = 4;  // pixels

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

// CurrentFont follows the last switch of a text, if it has one.
void FollowSwitches(std::string_view text, std::int16_t fontBefore) {
  const auto last = std::find_if(text.rbegin(), text.rend(), IsSwitch);
  const int code = last == text.rend() ? 0 : static_cast<unsigned char>(*last);
  CurrentFont = code == 0 ? fontBefore : static_cast<std::int16_t>(code - kFirstSwitchCode);
  ShowFontLabel(CurrentFont, FontSize);
}

void DropLastCharacter() {
  const bool wasSwitch = IsSwitch(PendingRun.back());
  PendingRun.pop_back();
  ShowRun();
  if (wasSwitch) FollowSwitches(PendingRun, BaseFont);
}

void NewLine() {
  const double lines = std::floor((static_cast<double>(FontSize) + CursorY + GridStepV) / GridStepV);
  constexpr double kMost = std::numeric_limits<float>::max();
  CursorY = static_cast<float>(std::min(lines * GridStepV, kMost));
}

void EnterKey(bool justify) {
  if (PendingRun.empty()) {
    ClearMarkedBox();
  } else {
    JustifyRun = justify;
    CommitPendingRun(true);
    if (CursorMode > 0) CursorMode = static_cast<std::int16_t>(-CursorMode);
  }
  NewLine();
}

std::string EntryForRun() {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  const char font = kDigits[IsTypeface(BaseFont) ? BaseFont : 0];
  std::string entry = FormatSingle(CursorX) + ' ' + FormatSingle(CursorY) + " m " + FormatSingle(FontSize) +
                      " F" + font + " (" + PendingRun + ") " + std::to_string(AnchorOfMode(CursorMode));
  const float amount = JustifyRun ? JustificationAmount(CursorX) : 0;
  return amount != 0 ? entry + ' ' + FormatSingle(amount) + " a" : entry + " s";
}

// The run being typed, where and as it will stand once committed, and the caret behind it.
void PaintPendingRun(bool caret) {
  const int anchor = AnchorOfMode(CursorMode);
  if (anchor == 0 || PendingRun.empty()) return;
  const float width = MeasureRun(PendingRun, BaseFont, FontSize);
  const Point at = AlignAtAnchor({CursorX, CursorY}, anchor, width, FontSize);
  const RunPen end = PaintRun(0, PendingRun, BaseFont, FontSize, at, kBlack, false);
  if (!caret) return;
  const float rise = 0.8F * end.size;
  const float fall = 0.2F * end.size;
  Picture1->DrawLine({end.x, end.y - rise}, {end.x, end.y + fall}, Pen{PaletteColour(kBlue), 1, true});
}

void PaintMark() {
  const float arm = kMarkArm / SCALE;
  const Pen pen{PaletteColour(kBlue), 1, true};
  Picture1->DrawLine({CursorX - arm, CursorY}, {CursorX + arm, CursorY}, pen);
  Picture1->DrawLine({CursorX, CursorY - arm}, {CursorX, CursorY + arm}, pen);
}

// What was appended is the last of the page, so painting it on top is what a redraw would do.
void ShowNewEntries(std::string_view lines) {
  if (!CanvasIsLaidOut()) return;
  Picture1->SelectLayer(Layer::Page);
  while (!lines.empty()) PaintTextLine(TakeLine(lines));
}

}  // namespace

void ResetKeyboard() {
  PendingRun.clear();
  JustifyRun = false;
  ShowRun();
}

void TypeKey(int code) {
  if (CursorMode >= 0) return;
  DrawCursorMark(kWhite, true);
  if (code >= 32 && code <= 127) {
    PendingRun.push_back(static_cast<char>(code));
    ShowRun();
  } else if (code == kKeyBackspace && !PendingRun.empty()) {
    DropLastCharacter();
  } else if (code == kKeyEnter) {
    EnterKey(false);
  } else if (code == kKeyCtrlEnter) {
    EnterKey(CursorMode >= -3);
  }
  DrawCursorMark(kBlue, true);
}

void InsertScript(int index) {
  InsertText(std::string(1, static_cast<char>(kFirstScriptCode + index)));
  if (Picture1) Picture1->Focus();
}

void InsertText(const std::string& text) {
  if (CursorMode >= 0) return;
  DrawCursorMark(kWhite, true);
  PendingRun += text;
  CleanRun();
  ShowRun();
  FollowSwitches(text, CurrentFont);
  DrawCursorMark(kBlue, true);
}

void ChooseFont(std::int16_t font) {
  if (PendingRun.empty()) {
    BaseFont = font;
    CheckFontMenu(font);
  } else if (CurrentFont != font) {
    PendingRun.push_back(static_cast<char>(kFirstSwitchCode + font));
  }
  CurrentFont = font;
  ShowFontLabel(CurrentFont, FontSize);
  ShowRun();
  DrawCursorMark(kBlue, true);
}

void ControlCodeBoxChanged() {
  TakeRunFromBox();
  FollowSwitches(PendingRun, BaseFont);
  DrawCursorMark(kBlue, true);
}

void ApplyControlCodeBox() {
  if (CursorMode < 0) CommitPendingRun(true);
  if (Picture1) Picture1->Focus();
}

void CommitPendingRun(bool ResetSelection) {
  DrawCursorMark(kWhite, false);
  TakeRunFromBox();
  if (!PendingRun.empty() && AnchorOfMode(CursorMode) != 0) {
    BeginEdit("typing");
    const std::size_t lineStart = PageText.size();
    AddTextRun(ResetSelection);
    CursorMode = static_cast<std::int16_t>(AnchorOfMode(CursorMode));
    PendingRun.clear();
    ShowRun();
    JustifyRun = false;
    CurrentFont = BaseFont;
    ShowFontLabel(CurrentFont, FontSize);
    NotePageChange();
    ShowNewEntries(std::string_view(PageText).substr(lineStart));
  }
  DrawCursorMark(kBlue, false);
}

void AddTextRun(bool ResetSelection) {
  if (ResetSelection) ClearMarkedBox();
  // A page file's last line may lack its end; what is appended must not run into it.
  if (!PageText.empty() && PageText.back() != '\n') PageText += "\r\n";
  PageText += EntryForRun() + "\r\n";
}

void DrawCursorMark(std::int16_t colour, bool typing) {
  ShowCursorLabel();
  if (!CanvasIsLaidOut()) return;
  Picture1->SelectLayer(Layer::Overlay);
  Picture1->Clear();
  if (colour != kWhite) {
    PaintPendingRun(typing || CursorMode < 0);
    PaintCurrentDrawing();
    if (CursorMode < 0) PaintMark();
  }
  Picture1->SelectLayer(Layer::Page);
}

}  // namespace kelvane
