#include "editing/bezier.h"

#include <cmath>
#include <limits>
#include <string_view>
#include <vector>

#include "document/fields.h"
#include "document/numbers.h"
#include "document/page.h"
#include "editing/edit.h"
#include "platform/failure.h"
#include "typography/colours.h"
#include "typography/renderer.h"

namespace kelvane {

namespace {

constexpr float kPullPixels = 4;   // the pointer moved this far with the button down bends the piece
constexpr float kClosePixels = 5;  // a click this near the start closes the path
constexpr float kMarkPixels = 2;

Point Hover;      // where the next point would go
Point PressedAt;  // where the button went down, unsnapped
bool Pressed;
bool Pulling;

using Points = std::vector<Point>;  // the start, then a control point and an end point for each piece

Point Snap(Point at) {
  return {SnapToGrid(at.x, GridStepH), SnapToGrid(at.y, GridStepV)};
}

bool Near(Point a, Point b, float pixels) {
  return std::hypot(a.x - b.x, a.y - b.y) * SCALE <= pixels;
}

Point Middle(Point a, Point b) {
  return {(a.x + b.x) * 0.5F, (a.y + b.y) * 0.5F};
}

LineStyle StyleInForce() {
  return {LineColour, static_cast<float>(LineWidth)};
}

// The path being drawn, from its record.
Points OpenPath() {
  Points points;
  const std::vector<std::string_view> tokens = SplitFields(CurrentDrawing, " ");
  for (std::size_t i = 0; i + 2 < tokens.size(); i += 2)
    points.push_back({ReadSingle(tokens[i]), ReadSingle(tokens[i + 1])});
  return points;
}

void KeepPath(const Points& points) {
  CurrentDrawing.clear();
  if (points.empty()) return;
  for (const Point& point : points)
    CurrentDrawing += FormatSingle(point.x) + ' ' + FormatSingle(point.y) + ' ';
  CurrentDrawing += FormatSingle(static_cast<float>(LineColour * 10 + LineWidth));
}

void AddPoint(Points& path, Point end) {
  if (!path.empty()) path.push_back(Middle(path.back(), end));
  path.push_back(end);
}

class Drawer : public Tool {
 public:
  void Press(const Pointer& pointer) override {
    const Point at = pointer.at;
    Points path = OpenPath();
    Point end = Snap(at);
    if (path.size() > 3 && Near(at, path.front(), kClosePixels)) end = path.front();
    Hover = end;
    if (!path.empty() && end == path.back()) {
      FinishDrawing();
      return;
    }
    AddPoint(path, end);
    KeepPath(path);
    PressedAt = at;
    Pressed = true;
    Pulling = false;
    ShowCursor();
  }

  void Move(const Pointer& pointer) override {
    const Point at = pointer.at;
    if (!PathIsOpen()) return;
    Hover = Snap(at);
    Points path = OpenPath();
    if (Pressed && path.size() > 1) {
      Pulling = Pulling || !Near(at, PressedAt, kPullPixels);
      if (Pulling) path[path.size() - 2] = Hover;
      KeepPath(path);
    }
    ShowCursor();
  }

  void Release(const Pointer& pointer) override {
    const Point at = pointer.at;
    if (!Pressed) return;
    Points path = OpenPath();
    const bool dragged = path.size() == 1 && !Near(at, PressedAt, kPullPixels);
    if (dragged && Snap(at) != path.back()) AddPoint(path, Snap(at));
    KeepPath(path);
    Pressed = Pulling = false;
    if (path.size() > 3 && path.front() == path.back()) {
      FinishDrawing();
    } else {
      ShowCursor();
    }
  }

  void RightClick() override { FinishDrawing(); }

  bool Key(int code) override {
    if (code == kKeyEnter) FinishDrawing();
    if (code == kKeyBackspace) TakeBackPoint();
    if (code == kKeyEscape) DropDrawing();
    return code < kKeyLeft;
  }

  void Paint(Painter& painter, const View& view) const override {
    Drawing drawing;
    drawing.points = OpenPath();
    if (drawing.points.empty()) return;
    drawing.style = StyleInForce();
    const Points& path = drawing.points;
    if (path.size() > 1) StrokeDrawing(painter, view, drawing);
    const Pen thin{PaletteColour(kBlue), 1};
    if (Pulling) {
      Path handle;
      handle.MoveTo(path[path.size() - 3]);
      handle.LineTo(path[path.size() - 2]);
      handle.LineTo(path.back());
      painter.StrokePath(handle, thin);
    } else if ((!Pressed || path.size() == 1) && Hover != path.back()) {
      painter.DrawLine(path.back(), Hover, thin);
    }
    const float mark = kMarkPixels / view.scale;
    const Point start = path.front();
    painter.FillBox({start.x - mark, start.y - mark, start.x + mark, start.y + mark}, thin.colour);
  }

  void Finish() override { FinishDrawing(); }

  std::string Hint() const override { return "Click for points, pull to bend; Enter ends it"; }
};

}  // namespace

void ResetBezier() {
  CurrentDrawing.clear();
  Pressed = Pulling = false;
}

Tool& DrawingTool() {
  static Drawer tool;
  return tool;
}

bool PathIsOpen() {
  return !CurrentDrawing.empty();
}

void TakeBackPoint() {
  Points path = OpenPath();
  if (path.empty()) return;
  path.resize(path.size() > 1 ? path.size() - 2 : 0);
  KeepPath(path);
  Pressed = Pulling = false;
  ShowCursor();
}

bool FinishDrawing() {
  const Points path = OpenPath();
  const bool joins = path.size() > 1;
  if (joins) {
    if (DrawingCount == std::numeric_limits<std::int16_t>::max()) {
      throw Failure("The page can hold no more drawings. Press Escape to give up the one being drawn.");
    }
    KeepPath(path);  // in the style that is in force now
    EditPage("drawing", [](Page& page) {
      page.drawings += CurrentDrawing + "\r\n";
      ++page.drawingCount;
    });
  }
  DropDrawing();
  return joins;
}

void DropDrawing() {
  if (!PathIsOpen()) return;
  ResetBezier();
  ShowCursor();
}

}  // namespace kelvane
