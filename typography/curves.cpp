#include "typography/curves.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kelvane {
namespace {

Point Towards(Point from, Point to) {
  return {static_cast<float>(from.x + kCurveFactor * (to.x - from.x)),
          static_cast<float>(from.y + kCurveFactor * (to.y - from.y))};
}

Point Middle(Point a, Point b) {
  return {(a.x + b.x) * 0.5F, (a.y + b.y) * 0.5F};
}

}  // namespace

void AddCurve(Path& path, Point start, Point control, Point end) {
  path.CurveTo(Towards(start, control), Towards(end, control), end);
}

CurvePoints FlattenCurve(Point start, Point control, Point end) {
  constexpr int kLevels = 4;
  struct Cubic {
    int level;
    Point p[4];
  };
  CurvePoints points;
  points[0] = start;
  int count = 1;
  Cubic pending[kLevels + 1];
  int depth = 0;
  pending[depth++] = {0, {start, Towards(start, control), Towards(end, control), end}};
  while (depth > 0) {
    const Cubic c = pending[--depth];
    if (c.level == kLevels) {
      points[count++] = c.p[3];
      continue;
    }
    const Point ab = Middle(c.p[0], c.p[1]);
    const Point bc = Middle(c.p[1], c.p[2]);
    const Point cd = Middle(c.p[2], c.p[3]);
    const Point abc = Middle(ab, bc);
    const Point bcd = Middle(bc, cd);
    const Point split = Middle(abc, bcd);
    pending[depth++] = {c.level + 1, {split, bcd, cd, c.p[3]}};
    pending[depth++] = {c.level + 1, {c.p[0], ab, abc, split}};
  }
  return points;
}

Path PathOf(const Drawing& drawing) {
  Path path;
  path.MoveTo(drawing.points[0]);
  for (std::size_t i = 0; i + 2 < drawing.points.size(); i += 2) {
    const Point start = drawing.points[i];
    const Point control = drawing.points[i + 1];
    const Point end = drawing.points[i + 2];
    if (IsStraight(start, control, end)) {
      path.LineTo(end);
    } else {
      AddCurve(path, start, control, end);
    }
  }
  return path;
}

Point PointOnCubic(Point start, const Point* cubic, float t) {
  const float u = 1 - t;
  const float a = u * u * u, b = 3 * u * u * t, c = 3 * u * t * t, d = t * t * t;
  return {a * start.x + b * cubic[0].x + c * cubic[1].x + d * cubic[2].x,
          a * start.y + b * cubic[0].y + c * cubic[1].y + d * cubic[2].y};
}

void GrowingBox::Add(const Box& other) {
  for (const float edge : {other.left, other.top, other.right, other.bottom}) {
    if (!std::isfinite(edge)) return;
  }
  box = {std::min(box.left, other.left), std::min(box.top, other.top), std::max(box.right, other.right),
         std::max(box.bottom, other.bottom)};
}

namespace {

// Adds the points of a cubic where one of its coordinates turns round; `p` are that coordinate's values.
void AddTurns(GrowingBox& extent, Point start, const Point* cubic, const double (&p)[4]) {
  // The derivative is a t^2 + b t + c.
  const double a = p[3] - p[0] + 3 * (p[1] - p[2]);
  const double b = 2 * (p[0] - 2 * p[1] + p[2]);
  const double c = p[1] - p[0];
  const double root = std::sqrt(b * b - 4 * a * c);
  const double q = -0.5 * (b + std::copysign(root, b));
  for (const double t : {q / a, c / q}) {
    if (t > 0 && t < 1) extent.Add(PointOnCubic(start, cubic, static_cast<float>(t)));
  }
}

}  // namespace

float DistanceToChord(Point from, Point to, Point point) {
  const double dx = static_cast<double>(to.x) - from.x;
  const double dy = static_cast<double>(to.y) - from.y;
  const double px = static_cast<double>(point.x) - from.x;
  const double py = static_cast<double>(point.y) - from.y;
  const double square = dx * dx + dy * dy;
  const double t = square > 0 ? std::clamp((px * dx + py * dy) / square, 0.0, 1.0) : 0;
  return static_cast<float>(std::hypot(px - t * dx, py - t * dy));
}

Box BoxBetween(Point a, Point b) {
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

Path FrameOf(const Box& box) {
  Path path;
  path.MoveTo({box.left, box.top});
  path.LineTo({box.right, box.top});
  path.LineTo({box.right, box.bottom});
  path.LineTo({box.left, box.bottom});
  path.LineTo({box.left, box.top});
  return path;
}

GrowingBox ExtentOf(const Path& path) {
  GrowingBox extent;
  const Point* point = path.points.data();
  for (const Path::Step step : path.steps) {
    if (step == Path::Step::Curve) {
      const Point start = point[-1];
      AddTurns(extent, start, point, {start.x, point[0].x, point[1].x, point[2].x});
      AddTurns(extent, start, point, {start.y, point[0].y, point[1].y, point[2].y});
      point += 2;
    }
    extent.Add(*point++);
  }
  return extent;
}

}  // namespace kelvane
