#pragma once

// The program's curves: a quadratic curve given by its ends and one control point, drawn as a cubic.

#include <array>

#include "platform/canvas.h"

namespace kelvane {

// Control points of the cubic lie this far from its ends towards the quadratic's control point. Not the exact
// 2/3: pages and the printed `rp` and `rb` have always used this flatter curve, so the screen keeps it too.
inline constexpr double kCurveFactor = 0.556;

// Adds the curve from `start`, where the path is, to `end`.
void AddCurve(Path& path, Point start, Point control, Point end);

// The curve's start and the ends of the 16 pieces that four halvings make of it.
inline constexpr int kCurvePoints = 17;
using CurvePoints = std::array<Point, kCurvePoints>;
CurvePoints FlattenCurve(Point start, Point control, Point end);

}  // namespace kelvane
