#pragma once

// The program's curves: a quadratic curve given by its ends and one control point, drawn as a cubic.

#include <array>
#include <limits>

#include "document/page.h"
#include "platform/canvas.h"

namespace kelvane {

// Control points of the cubic lie this far from its ends towards the quadratic's control point. Not the exact
// 2/3: pages and the printed `rp` and `rb` have always used this flatter curve, so the screen keeps it too.
inline constexpr double kCurveFactor = 0.556;

// A line without a width prints so wide, points.
inline constexpr float kHairline = 0.1F;

// Adds the curve from `start`, where the path is, to `end`.
void AddCurve(Path& path, Point start, Point control, Point end);

// The curve's start and the ends of the 16 pieces that four halvings make of it.
inline constexpr int kCurvePoints = 17;
using CurvePoints = std::array<Point, kCurvePoints>;
CurvePoints FlattenCurve(Point start, Point control, Point end);

// The line or outline of a drawing.
Path PathOf(const Drawing& drawing);

// The point at `t`, 0 to 1, of the cubic from `start` with the control points and the end `cubic`.
Point PointOnCubic(Point start, const Point* cubic, float t);

// The distance of a point from a straight line between two others.
float DistanceToChord(Point from, Point to, Point point);

// The box that has two points for opposite corners.
Box BoxBetween(Point a, Point b);
// The line round a box.
Path FrameOf(const Box& box);

// The box of all that was added; what is not finite is left out.
struct GrowingBox {
  static constexpr float kNone = std::numeric_limits<float>::infinity();
  Box box{kNone, kNone, -kNone, -kNone};

  bool Empty() const { return !(box.left <= box.right); }
  void Add(const Box& other);
  void Add(Point point) { Add(Box{point.x, point.y, point.x, point.y}); }
};

// The true extent of a path's lines and curves.
GrowingBox ExtentOf(const Path& path);

}  // namespace kelvane
