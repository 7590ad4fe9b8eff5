#include "editing/shapes.h"

#include <algorithm>
#include <cmath>

#include "editing/bezier.h"

namespace kelvane {

namespace {

constexpr float kDragPixels = 4;  // a release nearer to the press is a click: the other end is clicked too

Points Ellipse(Point a, Point b) {
  // Quarters bent towards the corners: what a curve of the program deviates from an arc cannot be seen.
  const Point centre = MiddleOf(a, b);
  return {{centre.x, a.y}, {b.x, a.y},      {b.x, centre.y}, {b.x, b.y},     {centre.x, b.y},
          {a.x, b.y},      {a.x, centre.y}, {a.x, a.y},      {centre.x, a.y}};
}

Points ShapeBetween(Point a, Point b) {
  if (DrawnShape == Shape::Ellipse) return Ellipse(a, b);
  Points path;
  if (DrawnShape == Shape::Rectangle) {
    for (const Point corner : {a, Point{b.x, a.y}, b, Point{a.x, b.y}, a}) AddPiece(path, corner);
  } else {
    AddPiece(path, a);
    AddPiece(path, b);
  }
  return path;
}

bool IsBox() {
  return DrawnShape == Shape::Rectangle || DrawnShape == Shape::Ellipse;
}

// Shift makes squares and circles of boxes.
Point EqualSides(Point from, Point to) {
  const float side = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
  return {from.x + std::copysign(side, to.x - from.x), from.y + std::copysign(side, to.y - from.y)};
}

class ShapeDrawer : public Tool {
 public:
  void Press(const Pointer& pointer) override {
    first_ = !PathIsOpen();
    if (first_) start_ = PlaceOf(pointer);
    pressedAt_ = pointer.at;
    pressed_ = true;
    DrawTo(pointer);
  }

  void Move(const Pointer& pointer) override {
    if (PathIsOpen()) DrawTo(pointer);
  }

  void Release(const Pointer& pointer) override {
    if (!pressed_ || !PathIsOpen()) return;
    pressed_ = false;
    DrawTo(pointer);
    if (!first_ || DistanceOf(pointer.at, pressedAt_) * SCALE > kDragPixels) FinishDrawing();
  }

  void RightClick() override { FinishDrawing(); }

  bool Key(int code) override {
    if (code == kKeyEnter) FinishDrawing();
    if (code == kKeyEscape && !PathIsOpen()) TakeMode(0);
    if (code == kKeyEscape || code == kKeyBackspace) DropDrawing();
    return code < kKeyLeft;
  }

  void Paint(Painter& painter, const View& view) const override { PaintFinished(painter, view); }
  void Finish() override { FinishDrawing(); }

  std::string Hint() const override {
    if (!IsBox()) return "Drag from end to end; Shift keeps it straight";
    return DrawnShape == Shape::Rectangle ? "Drag from corner to corner; Shift: a square"
                                          : "Drag from corner to corner; Shift: a circle";
  }

 private:
  void DrawTo(const Pointer& pointer) {
    Point end = PlaceOf(pointer);
    if (pointer.shift) end = IsBox() ? EqualSides(start_, end) : InDirection(start_, end);
    KeepPath(ShapeBetween(start_, end));
    ShowCursor();
  }

  Point start_;
  Point pressedAt_;  // off the grid
  bool pressed_ = false;
  bool first_ = true;  // the press that began the shape
};

}  // namespace

Tool& DrawingTool() {
  static ShapeDrawer dragged;
  const bool byPoints = DrawnShape == Shape::Bezier || DrawnShape == Shape::Polygon;
  return byPoints ? PathTool() : dragged;
}

}  // namespace kelvane
