#include "typography/curves.h"

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

}  // namespace kelvane
