#pragma once

// Paths of drawings, as their records hold them: where the mouse puts points, what pieces become when points
// come and go, and the forms that paths are kept in. Points of the paper throughout.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "editing/tool.h"
#include "platform/canvas.h"

namespace kelvane {

using Points = std::vector<Point>;  // the start, then control point and end of each piece

float DistanceOf(Point a, Point b);
Point MiddleOf(Point a, Point b);

// Where the mouse puts a point: on the grid, or with Alt between its points.
Point PlaceOf(const Pointer& pointer);
// `to` moved so that it lies level with `from`, above or below it, or on its diagonals: what Shift does.
Point InDirection(Point from, Point to);

// The record of a path; `style` is its last token.
std::string RecordOf(const Points& path, std::string_view style);

// Adds a straight piece, or the start.
void AddPiece(Points& path, Point end);
bool EndsAtStart(const Points& path);
// Moves the end of a path to its start; a straight last piece stays straight.
void EndAtStart(Points& path);
// Whether a piece is straight to the eye. Its control point may miss the middle by the digits of a record.
bool IsStraightPiece(const Points& path, std::size_t piece);
void Straighten(Points& path, std::size_t piece);

// A path that ends at its start is an area. One that is to be seen as a closed line overshoots its start by
// so little that nobody sees it: the path that ends at its start becomes such an outline.
void EndAsOutline(Points& path);
// Whether a path looks closed: an area or an outline.
bool LooksClosed(const Points& path);
// Whether there is anything to see of a path.
bool HasExtent(const Points& path);
// Takes a path that looks closed apart at its start, so that it no longer does.
void OpenAtStart(Points& path);

// The arrowhead at the end of an open path whose lines are `width` wide, an area. The path then ends inside
// it.
Points TakeArrowhead(Points& path, float width);

// The place on a path that is nearest to a point.
struct Spot {
  std::size_t piece = 0;
  float part = 0;  // how far along the piece, 0 to 1
  Point at;
  float distance = 0;
};
Spot NearestSpot(const Points& path, Point to);

// Makes two pieces of one that look like it did. The new point is at the spot.
void AddPointAt(Points& path, const Spot& spot);
// Makes one piece of the two that meet in a point (its place in the path), or drops the piece that ends
// there.
void RemovePoint(Points& path, std::size_t index);
// A path that ends at its start, begun at another of its points.
void BeginAt(Points& path, std::size_t index);
void Reverse(Points& path);

}  // namespace kelvane
