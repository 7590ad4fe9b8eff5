#include "editing/paths.h"

#include <algorithm>
#include <cmath>

#include "document/numbers.h"
#include "document/page.h"
#include "typography/curves.h"

namespace kelvane {

namespace {

// Points off the grid lie on eighths: these and the middles between them are written without loss.
constexpr float kFreeStep = 0.125F;
constexpr float kDiagonalFrom = 0.41421356F;  // tan 22.5
constexpr float kStraightWithin = 0.002F;

// What misses the start by more than 0.01 is read as a line. Up to kLooksClosed it counts as an outline.
constexpr float kOutlineGap = 0.02F;
constexpr float kWidestOutlineGap = 0.03F;
constexpr float kGapStep = 0.001F;
constexpr float kLooksClosed = 0.035F;
constexpr float kOpenGap = 0.05F;

// Of an arrowhead, in parts of its length.
constexpr float kHeadHalfWidth = 0.375F;
constexpr float kHeadNotch = 0.75F;
constexpr float kHeadOfWhole = 0.8F;  // of a path that is shorter than its head would be

Point Written(Point point) {
  return {AsWritten(point.x), AsWritten(point.y)};
}

Point Thousandths(Point point) {
  return {std::round(point.x * 1000) / 1000, std::round(point.y * 1000) / 1000};
}

Point Between(Point a, Point b, float part) {
  return {a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part};
}

// Of length 1; to the right if the points are one.
Point DirectionOf(Point from, Point to) {
  const float length = DistanceOf(from, to);
  return length > 0 ? Point{(to.x - from.x) / length, (to.y - from.y) / length} : Point{1, 0};
}

// The point of a curve piece.
Point OnCurve(Point start, Point control, Point end, float part) {
  const auto factor = static_cast<float>(kCurveFactor);
  const Point a = Between(start, control, factor);
  const Point b = Between(end, control, factor);
  const Point ab = Between(a, b, part);
  return Between(Between(Between(start, a, part), ab, part), Between(ab, Between(b, end, part), part), part);
}

// The control point of the curve whose middle is `middle`.
Point ControlThrough(Point start, Point middle, Point end) {
  const auto control = [](double from, double through, double to) {
    return static_cast<float>((8 * through - (4 - 3 * kCurveFactor) * (from + to)) / (6 * kCurveFactor));
  };
  return {control(start.x, middle.x, end.x), control(start.y, middle.y, end.y)};
}

// The end of a path moved along its last piece.
void MoveEnd(Points& path, float by) {
  const std::size_t last = path.size() / 2 - 1;
  const bool straight = IsStraightPiece(path, last);
  Point& end = path.back();
  Point& control = path[path.size() - 2];
  const Point from = straight || control == end ? path[path.size() - 3] : control;
  const Point along = DirectionOf(from, end);
  end = Thousandths({end.x + along.x * by, end.y + along.y * by});
  if (straight) control = MiddleOf(path[path.size() - 3], end);
}

}  // namespace

float DistanceOf(Point a, Point b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

Point MiddleOf(Point a, Point b) {
  return {(a.x + b.x) * 0.5F, (a.y + b.y) * 0.5F};
}

Point PlaceOf(const Pointer& pointer) {
  const auto [x, y] = pointer.at;
  if (pointer.alt) return {std::round(x / kFreeStep) * kFreeStep, std::round(y / kFreeStep) * kFreeStep};
  return {SnapToGrid(x, GridStepH), SnapToGrid(y, GridStepV)};
}

Point InDirection(Point from, Point to) {
  const float x = std::abs(to.x - from.x);
  const float y = std::abs(to.y - from.y);
  if (y < x * kDiagonalFrom) return {to.x, from.y};
  if (x < y * kDiagonalFrom) return {from.x, to.y};
  const float both = std::max(x, y);
  return {from.x + std::copysign(both, to.x - from.x), from.y + std::copysign(both, to.y - from.y)};
}

std::string RecordOf(const Points& path, std::string_view style) {
  Drawing drawing{path, {}, EndsAtStart(path)};
  MapDrawing(drawing, [](Point point) { return point; });
  return RecordOfDrawing(drawing, style);
}

void AddPiece(Points& path, Point end) {
  if (!path.empty()) path.push_back(MiddleOf(path.back(), end));
  path.push_back(end);
}

bool EndsAtStart(const Points& path) {
  return path.size() > 3 && path.front() == path.back();
}

void EndAtStart(Points& path) {
  const std::size_t last = path.size() / 2 - 1;
  const bool straight = IsStraightPiece(path, last);
  path.back() = path.front();
  if (straight) Straighten(path, last);
}

bool IsStraightPiece(const Points& path, std::size_t piece) {
  const Point middle = MiddleOf(path[2 * piece], path[2 * piece + 2]);
  return DistanceOf(middle, path[2 * piece + 1]) <= kStraightWithin;
}

void Straighten(Points& path, std::size_t piece) {
  path[2 * piece + 1] = MiddleOf(path[2 * piece], path[2 * piece + 2]);
}

void EndAsOutline(Points& path) {
  // A straight piece stays one in the file if its middle survives the digits of a record.
  const Points closed = path;
  const bool straight = IsStraightPiece(path, path.size() / 2 - 1);
  for (float gap = kOutlineGap; gap <= kWidestOutlineGap; gap += kGapStep) {
    path = closed;
    MoveEnd(path, gap);
    const std::size_t end = path.size() - 1;
    if (!straight || IsStraight(Written(path[end - 2]), Written(path[end - 1]), Written(path[end]))) return;
  }
}

bool LooksClosed(const Points& path) {
  return path.size() > 3 && DistanceOf(path.front(), path.back()) <= kLooksClosed && HasExtent(path);
}

bool HasExtent(const Points& path) {
  return std::ranges::any_of(path, [&](Point point) { return point != path.front(); });
}

void OpenAtStart(Points& path) {
  path.back() = path.front();
  MoveEnd(path, -kOpenGap);
}

Points TakeArrowhead(Points& path, float width) {
  const std::size_t last = path.size() - 1;
  const Point tip = path.back();
  const bool straight = IsStraightPiece(path, last / 2 - 1);
  const Point from = straight || path[last - 1] == tip ? path[last - 2] : path[last - 1];
  const Point along = DirectionOf(from, tip);
  const float length = std::min(5 + 4 * width, kHeadOfWhole * DistanceOf(path[last - 2], tip));
  // So far back along the line, so far to its side.
  const auto at = [&](float back, float aside) {
    return Thousandths({tip.x - (along.x * back + along.y * aside) * length,
                        tip.y - (along.y * back - along.x * aside) * length});
  };
  Points head;
  for (const Point corner : {tip, at(1, kHeadHalfWidth), at(kHeadNotch, 0), at(1, -kHeadHalfWidth), tip})
    AddPiece(head, corner);
  MoveEnd(path, -kHeadNotch * length);
  return head;
}

Spot NearestSpot(const Points& path, Point to) {
  Spot best;
  best.distance = DistanceOf(best.at = path.front(), to);
  for (std::size_t i = 0; i + 2 < path.size(); i += 2) {
    const CurvePoints curve = FlattenCurve(path[i], path[i + 1], path[i + 2]);
    const bool straight = IsStraightPiece(path, i / 2);
    const std::size_t pieces = straight ? 1 : curve.size() - 1;
    for (std::size_t k = 0; k < pieces; ++k) {
      const Point a = curve[k];
      const Point b = straight ? curve.back() : curve[k + 1];
      const float length = DistanceOf(a, b);
      const float along = ((to.x - a.x) * (b.x - a.x) + (to.y - a.y) * (b.y - a.y)) / (length * length);
      const float part = length > 0 ? std::clamp(along, 0.0F, 1.0F) : 0;
      const Point at = Between(a, b, part);
      const float distance = DistanceOf(at, to);
      if (distance < best.distance)
        best = {i / 2, (static_cast<float>(k) + part) / static_cast<float>(pieces), at, distance};
    }
  }
  return best;
}

void AddPointAt(Points& path, const Spot& spot) {
  const std::size_t i = 2 * spot.piece;
  const Point start = path[i];
  const Point control = path[i + 1];
  const Point end = path[i + 2];
  Points two;
  if (IsStraightPiece(path, spot.piece)) {
    const Point middle = Thousandths(spot.at);
    two = {MiddleOf(start, middle), middle, MiddleOf(middle, end)};
  } else {
    const Point middle = OnCurve(start, control, end, spot.part);
    two = {ControlThrough(start, OnCurve(start, control, end, spot.part / 2), middle), middle,
           ControlThrough(middle, OnCurve(start, control, end, (1 + spot.part) / 2), end)};
    std::ranges::transform(two, two.begin(), Thousandths);
  }
  const auto at = path.begin() + static_cast<std::ptrdiff_t>(i) + 1;
  path.insert(path.erase(at), two.begin(), two.end());
}

void RemovePoint(Points& path, std::size_t index) {
  const auto at = path.begin() + static_cast<std::ptrdiff_t>(index);
  if (index == 0) {
    path.erase(at, at + std::min<std::ptrdiff_t>(2, path.end() - at));
  } else if (index + 1 == path.size()) {
    path.erase(at - 1, path.end());
  } else {
    const bool straight = IsStraightPiece(path, index / 2 - 1) && IsStraightPiece(path, index / 2);
    const Point start = path[index - 2];
    const Point end = path[index + 2];
    const Point control =
        straight ? MiddleOf(start, end) : Thousandths(ControlThrough(start, path[index], end));
    *path.erase(at - 1, at + 1) = control;
  }
}

void BeginAt(Points& path, std::size_t index) {
  path.pop_back();
  std::rotate(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(index), path.end());
  path.push_back(path.front());
}

void Reverse(Points& path) {
  std::reverse(path.begin(), path.end());
}

}  // namespace kelvane
