#pragma once

// Outlines of glyphs, and the pens and shapes they are drawn with.
//
// Design coordinates: 50 units to the em, x to the right, y downwards, baseline at 40. A curved segment has
// one control point and is drawn by the program as a cubic whose own control points lie 0.556 of the way
// towards it. With the control point in the corner of a quarter turn that is a circle to within a fifth of a
// percent, so round shapes are built of quarter turns; a gentler bend comes out a little flatter than a
// circle.

#include <initializer_list>
#include <vector>

namespace kelvane::math0 {

struct Vec {
  double x = 0;
  double y = 0;
};

Vec operator+(Vec a, Vec b);
Vec operator-(Vec a, Vec b);
Vec operator*(Vec a, double factor);
bool operator==(Vec a, Vec b);
double Cross(Vec a, Vec b);
double Dot(Vec a, Vec b);
double Length(Vec a);
Vec Midpoint(Vec a, Vec b);
// Where the lines through a along da and through b along db cross; the midpoint of a and b for parallels.
Vec LinesMeet(Vec a, Vec da, Vec b, Vec db);

// A segment from the end of the one before it. A straight one has its control point at the midpoint.
struct Segment {
  Vec control;
  Vec end;
};

// A contour; closed when the last end is the start. Ink lies where the winding number is not zero: shapes run
// clockwise as seen on the page, so that they add up where they overlap, holes the other way.
//
// A thread is a line there and back inside a stroke. The screen draws lines only, of a width that gives each
// glyph as much ink as it has in print: threads fill the gap between the two edges of a stroke. In print a
// thread holds no ink of its own.
struct Contour {
  Vec start;
  std::vector<Segment> segments;
  bool thread = false;
};
using Outline = std::vector<Contour>;

// The point of a segment at `t` from 0 to 1.
Vec PointOn(Vec start, const Segment& segment, double t);
bool IsStraight(Vec start, const Segment& segment);

// Threads and edges of a stroke lie no further apart than this. Closer ones would have to be thinner on
// screen, at the sizes of text, than lines there can be.
inline constexpr double kThreadGap = 1.25;

// Writes a contour down point by point.
class Path {
 public:
  Path(double x, double y) : contour{{x, y}, {}, false}, at(contour.start) {}
  Path& Line(double x, double y);
  Path& Curve(double controlX, double controlY, double x, double y);
  // Closed with a straight line where it does not end at its start, and turned clockwise.
  Outline Closed();
  // There and back.
  Outline Thread() const;
  // As it is, neither closed nor a thread.
  const Contour& Way() const { return contour; }

 private:
  Contour contour;
  Vec at;
};

// Even threads between two paths of as many segments each.
Outline ThreadsBetween(const Path& one, const Path& other);
// The ink between two such paths, which need not run clockwise, with its threads.
Outline Band(const Path& one, const Path& other);

// Follows the middle of a stroke and gives the stroke's outline. The width changes evenly along a segment;
// corners are mitred; ends are cut square to the stroke. A stroke may cross itself and may end where it
// began.
class Pen {
 public:
  Pen(double x, double y, double startWidth) : start{x, y}, widths{startWidth} {}
  Pen& Line(double x, double y) { return Line(x, y, widths.back()); }
  Pen& Line(double x, double y, double width);
  Pen& Curve(double controlX, double controlY, double x, double y) {
    return Curve(controlX, controlY, x, y, widths.back());
  }
  Pen& Curve(double controlX, double controlY, double x, double y, double width);
  Outline Ink() const;

 private:
  Path Side(double sign) const;
  Vec SidePoint(std::size_t node, double sign) const;

  Vec start;
  std::vector<Segment> spine;
  std::vector<double> widths;
};

// Shapes; all but the polygon and the ellipse have their threads.
Outline Polygon(std::initializer_list<Vec> corners);
Outline Box(double left, double top, double right, double bottom);
Outline Ellipse(Vec centre, double radiusX, double radiusY);
Outline Disc(Vec centre, double radius);
// A ring between an outer and an inner ellipse of one centre.
Outline EllipseRing(Vec centre, double radiusX, double radiusY, double inkX, double inkY);

Outline operator+(Outline a, const Outline& b);
Outline Shift(Outline outline, double dx, double dy);
// Mirrored in the upright line at x, or in the level line at y. Direction of the contours is kept.
Outline MirrorX(Outline outline, double x);
Outline MirrorY(Outline outline, double y);
// x moves by `slant` for each unit that a point lies above `y`.
Outline Slant(Outline outline, double y, double slant);
Outline Reverse(Outline outline);

// Left, top, right and bottom of the ink.
struct Bounds {
  double left = 0, top = 0, right = 0, bottom = 0;
};
Bounds BoundsOf(const Outline& outline);

}  // namespace kelvane::math0
