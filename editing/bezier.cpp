#include "editing/bezier.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "document/numbers.h"
#include "document/page.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "editing/undo.h"
#include "platform/failure.h"
#include "typography/colours.h"
#include "typography/glyphs.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {

namespace {

constexpr float kPullPixels = 4;   // the pointer moved this far with the button down bends the piece
constexpr float kClosePixels = 5;  // a click this near the start closes the path
constexpr float kMarkPixels = 2;

// The start, then a control point and an end point for each piece; CurrentDrawing is its record.
std::vector<Point> Path;
Point Hover;      // where the next point would go
Point PressedAt;  // where the button went down, unsnapped
bool Pressed;
bool Pulling;

Point Snap(float x, float y) {
  return {SnapToGrid(x, GridStepH), SnapToGrid(y, GridStepV)};
}

bool Same(Point a, Point b) {
  return a.x == b.x && a.y == b.y;
}

bool Near(Point a, Point b, float pixels) {
  return std::hypot(a.x - b.x, a.y - b.y) * SCALE <= pixels;
}

Point Middle(Point a, Point b) {
  return {(a.x + b.x) * 0.5F, (a.y + b.y) * 0.5F};
}

std::string StyleValue() {
  return FormatSingle(static_cast<float>(LineColour * 10 + LineWidth));
}

void NoteRecord() {
  CurrentDrawing.clear();
  if (Path.empty()) return;
  for (const Point& point : Path) CurrentDrawing += FormatSingle(point.x) + ' ' + FormatSingle(point.y) + ' ';
  CurrentDrawing += StyleValue();
}

bool Closed() {
  return Path.size() > 3 && Same(Path.front(), Path.back());
}

void Clear() {
  Path.clear();
  Pressed = Pulling = false;
  NoteRecord();
}

void ShowPath() {
  NoteRecord();
  DrawCursorMark(kBlue, true);
}

void AddPoint(Point end) {
  if (!Path.empty()) Path.push_back(Middle(Path.back(), end));
  Path.push_back(end);
}

}  // namespace

void ResetBezier() {
  Clear();
}

void ChooseBezier() {
  CommitPendingRun(true);
  FinishDrawing();
  CursorMode = kBezierMode;
  SetCanvasPointer(CursorMode);
  DrawCursorMark(kBlue, false);
}

void BezierPress(float x, float y) {
  if (CursorMode != kBezierMode) return;
  Point end = Snap(x, y);
  if (Path.size() > 3 && Near({x, y}, Path.front(), kClosePixels)) end = Path.front();
  Hover = end;
  if (!Path.empty() && Same(end, Path.back())) {
    FinishDrawing();
    return;
  }
  AddPoint(end);
  PressedAt = {x, y};
  Pressed = true;
  Pulling = false;
  ShowPath();
}

void BezierMove(float x, float y) {
  if (CursorMode != kBezierMode || Path.empty()) return;
  Hover = Snap(x, y);
  if (Pressed && Path.size() > 1) {
    Pulling = Pulling || !Near({x, y}, PressedAt, kPullPixels);
    if (Pulling) Path[Path.size() - 2] = Hover;
  }
  ShowPath();
}

void BezierRelease(float x, float y) {
  if (CursorMode != kBezierMode || !Pressed) return;
  const bool dragged = Path.size() == 1 && !Near({x, y}, PressedAt, kPullPixels);
  if (dragged && !Same(Snap(x, y), Path.back())) AddPoint(Snap(x, y));
  Pressed = Pulling = false;
  if (Closed()) {
    FinishDrawing();
  } else {
    ShowPath();
  }
}

void TakeBackPoint() {
  if (Path.empty()) return;
  Path.resize(Path.size() > 1 ? Path.size() - 2 : 0);
  Pressed = Pulling = false;
  ShowPath();
}

void FinishDrawing() {
  if (Path.empty()) return;
  if (Path.size() > 1) {
    if (DrawingCount == std::numeric_limits<std::int16_t>::max()) {
      throw Failure("The page can hold no more drawings. Press Escape to give up the one being drawn.");
    }
    NoteRecord();
    BeginEdit("drawing");
    DrawingList += CurrentDrawing + "\r\n";
    ++DrawingCount;
    NotePageChange();
  }
  Clear();
  RedrawPage();
}

void DropDrawing() {
  Clear();
  DrawCursorMark(kBlue, true);
}

void PaintCurrentDrawing() {
  if (Path.empty()) return;
  const float width = std::max(1.0F, std::floor(static_cast<float>(LineWidth) * SCALE));
  for (std::size_t i = 0; i + 2 < Path.size(); i += 2) {
    DrawCurve(Path[i].x, Path[i].y, Path[i + 1].x, Path[i + 1].y, Path[i + 2].x, Path[i + 2].y, width,
              LineColour, 1);
  }
  const Pen thin{PaletteColour(kBlue), 1};
  if (Pulling) {
    const Point handle[] = {Path[Path.size() - 3], Path[Path.size() - 2], Path.back()};
    Picture1->DrawPolyline(handle, thin);
  } else if (!Pressed) {
    Picture1->DrawLine(Path.back(), Hover, thin);
  }
  const float mark = kMarkPixels / SCALE;
  const Point start = Path.front();
  Picture1->FillBox(start.x - mark, start.y - mark, start.x + mark, start.y + mark, thin.colour);
}

}  // namespace kelvane
