#include "app/icons.h"

namespace kelvane {

namespace {

using Kind = IconShape::Kind;

IconShape Line(float x0, float y0, float x1, float y1, bool accent = false) {
  return {Kind::Line, x0, y0, x1, y1, accent, false, {}};
}

IconShape Letters(const std::string& letters, float x, float baseline, float em, bool accent, bool italic) {
  return {Kind::Letters, x, baseline, em, 0, accent, italic, letters};
}

IconDrawing ArrowPointer() {
  return {Line(7, 4, 7, 18), Line(7, 18, 10.5F, 14.5F), Line(10.5F, 14.5F, 16, 14.5F), Line(16, 14.5F, 7, 4),
          Line(11, 14.5F, 13.5F, 20)};
}

// An arrow from x0 to x1 at height y: where the run goes on after the script.
void AddArrow(IconDrawing& icon, float x0, float x1, float y) {
  const float head = x1 > x0 ? -2.5F : 2.5F;
  icon.push_back(Line(x0, y, x1, y, true));
  icon.push_back(Line(x1 + head, y - 2.5F, x1, y, true));
  icon.push_back(Line(x1 + head, y + 2.5F, x1, y, true));
}

}  // namespace

IconDrawing AnchorIcon(int mode) {
  if (mode == 0) return ArrowPointer();
  constexpr float kLeft = 5;
  constexpr float kMiddle = 12;
  constexpr float kRight = 19;
  constexpr float kTop = 7;
  constexpr float kBottom = 17;
  constexpr Point kMarks[10] = {{},
                                {kLeft, kTop},
                                {kLeft, kMiddle},
                                {kLeft, kBottom},
                                {kMiddle, kBottom},
                                {kRight, kBottom},
                                {kRight, kMiddle},
                                {kRight, kTop},
                                {kMiddle, kTop},
                                {kMiddle, kMiddle}};
  const Point mark = kMarks[mode];
  return {{Kind::Box, kLeft, kTop, kRight, kBottom, false, false, {}},
          {Kind::Disc, mark.x, mark.y, 2.5F, 0, true, false, {}}};
}

IconDrawing ScriptIcon(int index) {
  // Codes run start, back, forward for superscript, subscript and their italic forms.
  const int script = index / 3;
  const int step = index % 3;
  const bool raised = script % 2 == 0;
  const bool italic = script >= 2;
  const float scriptBaseline = raised ? 11.0F : 20.0F;
  IconDrawing icon{Letters("x", 3, 16, 13, false, italic),
                   Letters("n", 11, scriptBaseline, 9, step == 0, italic)};
  const float arrowHeight = raised ? 19.0F : 5.0F;
  if (step == 1) AddArrow(icon, 20, 11, arrowHeight);
  if (step == 2) AddArrow(icon, 12, 21, arrowHeight);
  return icon;
}

namespace {

IconDrawing BezierIcon() {
  // A curve of short lines with its two handles.
  return {Line(4, 18, 6, 12, true),
          Line(6, 12, 9, 9, true),
          Line(9, 9, 13, 9, true),
          Line(13, 9, 16, 12, true),
          Line(16, 12, 20, 17, true),
          Line(4, 18, 7, 5, false),
          Line(20, 17, 17, 5, false),
          {Kind::Disc, 7, 5, 1.5F, 0, false, false, {}},
          {Kind::Disc, 17, 5, 1.5F, 0, false, false, {}}};
}

// A closed line through points.
IconDrawing Ring(std::initializer_list<Point> points) {
  IconDrawing icon;
  Point from = *(points.end() - 1);
  for (const Point to : points) {
    icon.push_back(Line(from.x, from.y, to.x, to.y, true));
    from = to;
  }
  return icon;
}

}  // namespace

IconDrawing ShapeIcon(Shape shape) {
  switch (shape) {
    case Shape::Bezier:
      return BezierIcon();
    case Shape::Line:
      return {Line(5, 19, 19, 5, true)};
    case Shape::Arrow:
      return {Line(5, 19, 19, 5, true), Line(19, 5, 12, 7, true), Line(19, 5, 17, 12, true)};
    case Shape::Rectangle:
      return {{Kind::Box, 4, 7, 20, 17, true, false, {}}};
    case Shape::Ellipse:
      return Ring(
          {{12, 6}, {17, 7}, {20, 10}, {20, 14}, {17, 17}, {12, 18}, {7, 17}, {4, 14}, {4, 10}, {7, 7}});
    case Shape::Polygon:
      return Ring({{5, 9}, {13, 4}, {20, 11}, {16, 19}, {7, 18}});
  }
  return {};
}

IconDrawing ShapingIcon() {
  // A corner whose point is taken.
  return {Line(4, 19, 9, 8, true),
          Line(9, 8, 20, 8, true),
          {Kind::Box, 6, 5, 12, 11, false, false, {}},
          {Kind::Disc, 4, 19, 1.5F, 0, false, false, {}},
          {Kind::Disc, 20, 8, 1.5F, 0, false, false, {}}};
}

}  // namespace kelvane
