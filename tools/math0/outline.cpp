#include "tools/math0/outline.h"

// The geometry of outlines: segments, pens, shapes and their transformations.

#include <algorithm>
#include <cmath>
#include <utility>

#include "typography/glyphs.h"

namespace kelvane::math0 {
namespace {

constexpr double kTiny = 1e-9;
constexpr int kBoundSteps = 64;

Vec Normal(Vec direction) {
  const double length = Length(direction);
  return {-direction.y / length, direction.x / length};
}

// Twice the area inside the polygon of a contour's points; positive for clockwise with y downwards.
double TurnedArea(const Contour& contour) {
  double area = 0;
  Vec at = contour.start;
  for (const Segment& segment : contour.segments) {
    area += Cross(at, segment.control) + Cross(segment.control, segment.end);
    at = segment.end;
  }
  return area;
}

Outline ThereAndBack(Contour way) {
  const Outline back = Reverse({way});
  way.segments.insert(way.segments.end(), back[0].segments.begin(), back[0].segments.end());
  way.thread = true;
  return {way};
}

template <class Move>
Outline Moved(Outline outline, const Move& move) {
  for (Contour& contour : outline) {
    contour.start = move(contour.start);
    for (Segment& segment : contour.segments) segment = {move(segment.control), move(segment.end)};
  }
  return outline;
}

}  // namespace

Vec operator+(Vec a, Vec b) {
  return {a.x + b.x, a.y + b.y};
}
Vec operator-(Vec a, Vec b) {
  return {a.x - b.x, a.y - b.y};
}
Vec operator*(Vec a, double factor) {
  return {a.x * factor, a.y * factor};
}
bool operator==(Vec a, Vec b) {
  return a.x == b.x && a.y == b.y;
}
double Cross(Vec a, Vec b) {
  return a.x * b.y - a.y * b.x;
}
double Dot(Vec a, Vec b) {
  return a.x * b.x + a.y * b.y;
}
double Length(Vec a) {
  return std::hypot(a.x, a.y);
}
Vec Midpoint(Vec a, Vec b) {
  return (a + b) * 0.5;
}

Vec LinesMeet(Vec a, Vec da, Vec b, Vec db) {
  const double area = Cross(da, db);
  if (std::abs(area) < 1e-6 * Length(da) * Length(db)) return Midpoint(a, b);
  return a + da * (Cross(b - a, db) / area);
}

Vec PointOn(Vec start, const Segment& segment, double t) {
  const double u = 1 - t;
  if (IsStraight(start, segment)) return start * u + segment.end * t;
  const Vec first = start + (segment.control - start) * kCurveFactor;
  const Vec second = segment.end + (segment.control - segment.end) * kCurveFactor;
  return start * (u * u * u) + first * (3 * u * u * t) + second * (3 * u * t * t) + segment.end * (t * t * t);
}

bool IsStraight(Vec start, const Segment& segment) {
  return segment.control == Midpoint(start, segment.end);
}

Path& Path::Line(double x, double y) {
  contour.segments.push_back({Midpoint(at, {x, y}), {x, y}});
  at = {x, y};
  return *this;
}

Path& Path::Curve(double controlX, double controlY, double x, double y) {
  contour.segments.push_back({{controlX, controlY}, {x, y}});
  at = {x, y};
  return *this;
}

Outline Path::Closed() {
  if (!(at == contour.start)) Line(contour.start.x, contour.start.y);
  return TurnedArea(contour) < 0 ? Reverse({contour}) : Outline{contour};
}

Outline Path::Thread() const {
  return ThereAndBack(contour);
}

Pen& Pen::Line(double x, double y, double width) {
  const Vec from = spine.empty() ? start : spine.back().end;
  return Curve((from.x + x) * 0.5, (from.y + y) * 0.5, x, y, width);
}

Pen& Pen::Curve(double controlX, double controlY, double x, double y, double width) {
  spine.push_back({{controlX, controlY}, {x, y}});
  widths.push_back(width);
  return *this;
}

Vec Pen::SidePoint(std::size_t node, double sign) const {
  const Vec at = node == 0 ? start : spine[node - 1].end;
  const Segment& before = spine[node == 0 ? 0 : node - 1];
  const Segment& after = spine[node == spine.size() ? node - 1 : node];
  const Vec in = node == 0 ? after.control - at : before.end - before.control;
  const Vec out = node == spine.size() ? in : after.control - at;
  const double half = widths[node] * 0.5 * sign;
  const Vec a = at + Normal(in) * half;
  const Vec b = at + Normal(out) * half;
  return Length(b - a) < 1e-6 ? a : LinesMeet(a, in, b, out);
}

// One side of the stroke: its start, then control and end of each segment.
std::vector<Vec> Pen::Side(double sign) const {
  std::vector<Vec> points{SidePoint(0, sign)};
  for (std::size_t i = 0; i < spine.size(); ++i) {
    const Vec from = i == 0 ? start : spine[i - 1].end;
    const Segment& segment = spine[i];
    const Vec begin = points.back();
    const Vec end = SidePoint(i + 1, sign);
    const bool straight = Length(segment.control - Midpoint(from, segment.end)) < kTiny;
    points.push_back(straight ? Midpoint(begin, end)
                              : LinesMeet(begin, segment.control - from, end, segment.end - segment.control));
    points.push_back(end);
  }
  return points;
}

Outline Pen::Ink() const {
  return Edges() + Threads();
}

// One thread for each stretch of thick segments.
Outline Pen::Threads() const {
  Outline threads;
  for (std::size_t i = 0; i < spine.size();) {
    const Vec begin = i == 0 ? start : spine[i - 1].end;
    Path path(begin.x, begin.y);
    const std::size_t first = i;
    for (; i < spine.size() && std::max(widths[i], widths[i + 1]) > kHollow; ++i) {
      path.Curve(spine[i].control.x, spine[i].control.y, spine[i].end.x, spine[i].end.y);
    }
    if (i > first) {
      threads = std::move(threads) + path.Thread();
    } else {
      ++i;
    }
  }
  return threads;
}

Outline Pen::Edges() const {
  const std::vector<Vec> there = Side(-1);
  const std::vector<Vec> back = Side(1);
  Contour contour{there.front(), {}, false};
  for (std::size_t i = 1; i < there.size(); i += 2) contour.segments.push_back({there[i], there[i + 1]});
  contour.segments.push_back({Midpoint(there.back(), back.back()), back.back()});
  for (std::size_t i = back.size() - 1; i > 1; i -= 2) contour.segments.push_back({back[i - 1], back[i - 2]});
  contour.segments.push_back({Midpoint(back.front(), there.front()), there.front()});
  return {contour};
}

Outline Polygon(std::initializer_list<Vec> corners) {
  Path path(corners.begin()->x, corners.begin()->y);
  for (const Vec* corner = corners.begin() + 1; corner != corners.end(); ++corner)
    path.Line(corner->x, corner->y);
  return path.Closed();
}

Outline Box(double left, double top, double right, double bottom) {
  const Outline edges = Polygon({{left, top}, {right, top}, {right, bottom}, {left, bottom}});
  const double middleX = (left + right) * 0.5;
  const double middleY = (top + bottom) * 0.5;
  if (std::min(right - left, bottom - top) <= kHollow) return edges;
  if (right - left < bottom - top) return edges + Path(middleX, top).Line(middleX, bottom).Thread();
  return edges + Path(left, middleY).Line(right, middleY).Thread();
}

Outline Ellipse(Vec centre, double radiusX, double radiusY) {
  const double left = centre.x - radiusX;
  const double right = centre.x + radiusX;
  const double top = centre.y - radiusY;
  const double bottom = centre.y + radiusY;
  return Path(left, centre.y)
      .Curve(left, top, centre.x, top)
      .Curve(right, top, right, centre.y)
      .Curve(right, bottom, centre.x, bottom)
      .Curve(left, bottom, left, centre.y)
      .Closed();
}

Outline Disc(Vec centre, double radius) {
  return Ellipse(centre, radius, radius) + ThereAndBack(Ellipse(centre, radius * 0.5, radius * 0.5)[0]);
}

Outline EllipseRing(Vec centre, double radiusX, double radiusY, double inkX, double inkY) {
  const Outline edges =
      Ellipse(centre, radiusX, radiusY) + Reverse(Ellipse(centre, radiusX - inkX, radiusY - inkY));
  if (std::max(inkX, inkY) <= kHollow) return edges;
  return edges + ThereAndBack(Ellipse(centre, radiusX - inkX * 0.5, radiusY - inkY * 0.5)[0]);
}

Outline operator+(Outline a, const Outline& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

Outline Shift(Outline outline, double dx, double dy) {
  return Moved(std::move(outline), [=](Vec p) { return Vec{p.x + dx, p.y + dy}; });
}

Outline MirrorX(Outline outline, double x) {
  return Reverse(Moved(std::move(outline), [=](Vec p) { return Vec{2 * x - p.x, p.y}; }));
}

Outline MirrorY(Outline outline, double y) {
  return Reverse(Moved(std::move(outline), [=](Vec p) { return Vec{p.x, 2 * y - p.y}; }));
}

Outline Slant(Outline outline, double y, double slant) {
  return Moved(std::move(outline), [=](Vec p) { return Vec{p.x + (y - p.y) * slant, p.y}; });
}

Outline Reverse(Outline outline) {
  for (Contour& contour : outline) {
    Contour back{contour.segments.empty() ? contour.start : contour.segments.back().end, {}, contour.thread};
    for (std::size_t i = contour.segments.size(); i-- > 0;) {
      back.segments.push_back(
          {contour.segments[i].control, i == 0 ? contour.start : contour.segments[i - 1].end});
    }
    contour = back;
  }
  return outline;
}

Bounds BoundsOf(const Outline& outline) {
  Bounds bounds{1e9, 1e9, -1e9, -1e9};
  for (const Contour& contour : outline) {
    Vec at = contour.start;
    for (const Segment& segment : contour.segments) {
      for (int i = 0; i <= kBoundSteps; ++i) {
        const Vec p = PointOn(at, segment, static_cast<double>(i) / kBoundSteps);
        bounds = {std::min(bounds.left, p.x), std::min(bounds.top, p.y), std::max(bounds.right, p.x),
                  std::max(bounds.bottom, p.y)};
      }
      at = segment.end;
    }
  }
  return bounds;
}

}  // namespace kelvane::math0
