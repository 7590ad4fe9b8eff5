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

Vec EndOf(const Contour& contour, std::size_t node) {
  return node == 0 ? contour.start : contour.segments[node - 1].end;
}

// Out along one path, back along the other.
Contour Around(Contour one, const Contour& other) {
  const Contour back = Reverse({other})[0];
  one.segments.push_back({Midpoint(EndOf(one, one.segments.size()), back.start), back.start});
  one.segments.insert(one.segments.end(), back.segments.begin(), back.segments.end());
  one.segments.push_back({Midpoint(other.start, one.start), one.start});
  return one;
}

// The distance of two paths along a segment, square to the first: the larger one of its ends.
double WidthAlong(const Contour& one, const Contour& other, std::size_t i) {
  const Segment& segment = one.segments[i];
  const Vec begin = EndOf(one, i);
  const auto across = [](Vec along, Vec to) { return std::abs(Cross(along, to)) / Length(along); };
  return std::max(across(segment.control - begin, EndOf(other, i) - begin),
                  across(segment.end - segment.control, other.segments[i].end - segment.end));
}

// How many threads run between edges that are `width` apart.
int ThreadsAcross(double width) {
  return std::max(0, static_cast<int>(std::ceil(width / kThreadGap - kTiny)) - 1);
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

Outline ThreadsBetween(const Path& one, const Path& other) {
  const Contour& a = one.Way();
  const Contour& b = other.Way();
  const auto count = [&](std::size_t i) { return ThreadsAcross(WidthAlong(a, b, i)); };
  Outline threads;
  for (std::size_t first = 0, end = 0; first < a.segments.size(); first = end) {
    const int threadsHere = count(first);
    while (end < a.segments.size() && count(end) == threadsHere) ++end;
    for (int k = 1; k <= threadsHere; ++k) {
      const double part = static_cast<double>(k) / (threadsHere + 1);
      const auto between = [&](Vec p, Vec q) { return p + (q - p) * part; };
      Contour way{between(EndOf(a, first), EndOf(b, first)), {}, false};
      for (std::size_t i = first; i < end; ++i) {
        way.segments.push_back({between(a.segments[i].control, b.segments[i].control),
                                between(a.segments[i].end, b.segments[i].end)});
      }
      threads = std::move(threads) + ThereAndBack(way);
    }
  }
  return threads;
}

Outline Band(const Path& one, const Path& other) {
  const Contour edges = Around(one.Way(), other.Way());
  return (TurnedArea(edges) < 0 ? Reverse({edges}) : Outline{edges}) + ThreadsBetween(one, other);
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

Path Pen::Side(double sign) const {
  Vec begin = SidePoint(0, sign);
  Path side(begin.x, begin.y);
  for (std::size_t i = 0; i < spine.size(); ++i) {
    const Vec from = i == 0 ? start : spine[i - 1].end;
    const Segment& segment = spine[i];
    const Vec end = SidePoint(i + 1, sign);
    if (Length(segment.control - Midpoint(from, segment.end)) < kTiny) {
      side.Line(end.x, end.y);
    } else {
      const Vec control = LinesMeet(begin, segment.control - from, end, segment.end - segment.control);
      side.Curve(control.x, control.y, end.x, end.y);
    }
    begin = end;
  }
  return side;
}

// Not turned like a band: what way round a stroke runs that crosses itself cannot be told by its area.
Outline Pen::Ink() const {
  const Path there = Side(-1), back = Side(1);
  return Outline{Around(there.Way(), back.Way())} + ThreadsBetween(there, back);
}

Outline Polygon(std::initializer_list<Vec> corners) {
  Path path(corners.begin()->x, corners.begin()->y);
  for (const Vec* corner = corners.begin() + 1; corner != corners.end(); ++corner)
    path.Line(corner->x, corner->y);
  return path.Closed();
}

Outline Box(double left, double top, double right, double bottom) {
  if (right - left < bottom - top)
    return Band(Path(left, top).Line(left, bottom), Path(right, top).Line(right, bottom));
  return Band(Path(left, top).Line(right, top), Path(left, bottom).Line(right, bottom));
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

// Circles inside each other, and a short line where the last one would be a point.
Outline Disc(Vec centre, double radius) {
  constexpr double innermost = kThreadGap * 0.5;
  const int circles = ThreadsAcross(radius - innermost);
  Outline disc = Ellipse(centre, radius, radius) +
                 Path(centre.x - innermost, centre.y).Line(centre.x + innermost, centre.y).Thread();
  for (int k = 1; k <= circles; ++k) {
    const double inside = radius - (radius - innermost) * k / (circles + 1);
    disc = std::move(disc) + ThereAndBack(Ellipse(centre, inside, inside)[0]);
  }
  return disc;
}

Outline EllipseRing(Vec centre, double radiusX, double radiusY, double inkX, double inkY) {
  Outline ring = Ellipse(centre, radiusX, radiusY) + Reverse(Ellipse(centre, radiusX - inkX, radiusY - inkY));
  const int threads = ThreadsAcross(std::max(inkX, inkY));
  for (int k = 1; k <= threads; ++k) {
    const double part = static_cast<double>(k) / (threads + 1);
    ring = std::move(ring) + ThereAndBack(Ellipse(centre, radiusX - inkX * part, radiusY - inkY * part)[0]);
  }
  return ring;
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
