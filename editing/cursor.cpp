#include "editing/cursor.h"

#include <cmath>
#include <cstdlib>

#include "platform/files.h"

namespace kelvane {

std::int16_t CursorMode;
float CursorX;
float CursorY;
Button* AnchorButtons[10];
Button* Command6;

const char* const kAnchorNames[10] = {"Select",        "Top Left",     "Centre Left",  "Bottom Left",
                                      "Bottom Centre", "Bottom Right", "Centre Right", "Top Right",
                                      "Top Centre",    "Center"};

namespace {

constexpr int kLastAnchor = 9;

constexpr const char* kPointerFiles[kLastMode + 1] = {
    nullptr,        "PVQtplt.ICO", "PVQleft.ICO", "PVQbtlt.ICO", "PVQbot.ICO",   "PVQbtrt.ICO",
    "PVQright.ICO", "PVQtprt.ICO", "PVQtop.ICO",  "PVQmid.ICO",  "PVQpoint.ICO", "PVQcross.ICO",
};

std::string Missing;

}  // namespace

void ResetCursor() {
  Missing.clear();
  CursorMode = 0;
  CursorX = 0;
  CursorY = 0;
  ClearMarkedBox();
}

void SetCanvasPointer(std::int16_t mode) {
  const int number = std::abs(static_cast<int>(mode));
  if (number > kLastMode) return;
  for (int i = 0; i <= kLastAnchor; ++i) {
    if (AnchorButtons[i]) AnchorButtons[i]->SetDown(i == number);
  }
  if (Command6) Command6->SetDown(number == kBezierMode);
  if (!Picture1) return;
  Missing.clear();
  if (number == 0) {
    Picture1->SetPointerArrow();
  } else if (!Picture1->SetPointerIcon(ProgramFolder + kPointerFiles[number])) {
    Missing = kPointerFiles[number];
  }
}

const std::string& MissingPointer() {
  return Missing;
}

float SnapToGrid(float value, std::int16_t step) {
  return static_cast<float>(std::floor(static_cast<double>(value) / step + 0.5) * step);
}

void SetCursorPoint(float x, float y) {
  CursorX = SnapToGrid(x, GridStepH);
  CursorY = SnapToGrid(y, GridStepV);
  if (CursorMode > 0) CursorMode = static_cast<std::int16_t>(-CursorMode);
}

int AnchorOfMode(std::int16_t mode) {
  const int number = std::abs(static_cast<int>(mode));
  return number <= kLastAnchor ? number : 0;
}

}  // namespace kelvane
