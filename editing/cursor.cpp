#include "editing/cursor.h"

#include <cmath>
#include <cstdlib>

#include "document/numbers.h"
#include "editing/bezier.h"
#include "editing/keyboard.h"
#include "platform/files.h"
#include "typography/colours.h"
#include "typography/glyphs.h"

namespace kelvane {

std::int16_t CursorMode;
float CursorX;
float CursorY;
float MarkedLeft;
float MarkedBottom;
float MarkedRight;
float MarkedTop;
Label* CursorLabel;
Button* AnchorButtons[10];
Button* Command6;

const char* const kAnchorNames[10] = {"Select",        "Top Left",     "Centre Left",  "Bottom Left",
                                      "Bottom Centre", "Bottom Right", "Centre Right", "Top Right",
                                      "Top Centre",    "Center"};

namespace {

constexpr int kLastAnchor = 9;
constexpr int kLastMode = 11;

constexpr const char* kPointerFiles[kLastMode + 1] = {
    nullptr,        "PVQtplt.ICO", "PVQleft.ICO", "PVQbtlt.ICO", "PVQbot.ICO",   "PVQbtrt.ICO",
    "PVQright.ICO", "PVQtprt.ICO", "PVQtop.ICO",  "PVQmid.ICO",  "PVQpoint.ICO", "PVQcross.ICO",
};

// The pointer file that could not be loaded for the mode in force; the arrow stands in for it.
std::string MissingPointer;

std::string HintOfMode() {
  if (CursorMode == 0) return "Choose an anchor at the left to type";
  if (CursorMode == kBezierMode) return "Click for points, pull to bend; Enter ends it";
  const int anchor = AnchorOfMode(CursorMode);
  if (anchor == 0) return "";
  const std::string name = kAnchorNames[anchor];
  if (CursorMode > 0) return name + ": click on the page to type there";
  return name + " at " + FormatSingle(CursorX) + ", " + FormatSingle(CursorY) + " pt";
}

}  // namespace

void ResetCursor() {
  MissingPointer.clear();
  CursorMode = 0;
  CursorX = 0;
  CursorY = 0;
  ClearMarkedBox();
}

void ClearMarkedBox() {
  MarkedLeft = MarkedBottom = MarkedRight = MarkedTop = 0;
}

std::string CursorLabelText() {
  // The line has room for one thing: while a mode is new, what is missing of it is the news.
  const bool fresh = CursorMode > 0 && !MissingPointer.empty();
  return fresh ? "Missing file " + MissingPointer + ": the arrow stands in" : HintOfMode();
}

void ShowCursorLabel() {
  if (!CursorLabel) return;
  const std::string text = CursorLabelText();
  if (CursorLabel->Text() != text) CursorLabel->SetText(text);
}

void SetCanvasPointer(std::int16_t mode) {
  const int number = std::abs(static_cast<int>(mode));
  if (number > kLastMode) return;
  for (int i = 0; i <= kLastAnchor; ++i) {
    if (AnchorButtons[i]) AnchorButtons[i]->SetDown(i == number);
  }
  if (Command6) Command6->SetDown(number == kBezierMode);
  if (!Picture1) return;
  MissingPointer.clear();
  if (number == 0) {
    Picture1->SetPointerArrow();
  } else if (!Picture1->SetPointerIcon(ProgramFolder + kPointerFiles[number])) {
    MissingPointer = kPointerFiles[number];
  }
}

void ChooseAnchor(std::int16_t mode) {
  CommitPendingRun(true);
  FinishDrawing();
  CursorMode = mode;
  SetCanvasPointer(CursorMode);
  DrawCursorMark(kBlue, false);
}

float SnapToGrid(float value, std::int16_t step) {
  return static_cast<float>(std::floor(static_cast<double>(value) / step + 0.5) * step);
}

void PlaceCursor(float x, float y) {
  if (AnchorOfMode(CursorMode) == 0) return;
  ClearMarkedBox();
  CommitPendingRun(false);
  CursorX = SnapToGrid(x, GridStepH);
  CursorY = SnapToGrid(y, GridStepV);
  if (CursorMode > 0) CursorMode = static_cast<std::int16_t>(-CursorMode);
  DrawCursorMark(kBlue, false);
}

bool StepCursor(int stepsX, int stepsY) {
  if (AnchorOfMode(CursorMode) == 0) return false;
  PlaceCursor(CursorX + static_cast<float>(stepsX * GridStepH),
              CursorY + static_cast<float>(stepsY * GridStepV));
  return true;
}

int AnchorOfMode(std::int16_t mode) {
  const int number = std::abs(static_cast<int>(mode));
  return number <= kLastAnchor ? number : 0;
}

void LeaveEditing() {
  CommitPendingRun(false);
  FinishDrawing();
  CursorMode = 0;
  SetCanvasPointer(CursorMode);
  DrawCursorMark(kBlue, false);
}

}  // namespace kelvane
