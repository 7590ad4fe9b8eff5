#pragma once

// The strokes of a glyph as the designer draws them, and what can be done to them. Only values, no window.

#include <compare>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/canvas.h"
#include "typography/curves.h"

namespace kelvane {

// The most strokes that a person may draw in a glyph.
inline constexpr std::size_t kMostStrokes = 32;

// A start, then a control point and an end for each segment. Design units: x to the right, y downwards. A
// segment whose control point is in the middle of its ends is straight.
using GlyphStroke = std::vector<Point>;
using GlyphStrokes = std::vector<GlyphStroke>;

// One point of a stroke; an odd number is a control point.
struct PointPlace {
  std::size_t stroke = 0;
  std::size_t point = 0;
  auto operator<=>(const PointPlace&) const = default;
  bool IsControl() const { return point % 2 == 1; }
};
using PointSelection = std::set<PointPlace>;

// Ends where it starts.
bool IsClosed(const GlyphStroke& stroke);
// A closed stroke that goes back the way it came. It prints nothing, but gives the lines of the screen the
// ink that the print has. Shipped glyphs have some; they do not count against kMostStrokes.
bool IsThread(const GlyphStroke& stroke);
// Whether the segment of that control point is straight.
bool IsStraight(const GlyphStroke& stroke, std::size_t control);
// Throws Failure if there are more strokes than a person may draw.
void CheckStrokeCount(const GlyphStrokes& strokes);

// The lines that SaveGlyph and BuildGlyph take.
std::vector<std::string> StrokeLines(const GlyphStrokes& strokes);
// The same as one text, and back. Throws Failure for a text that is no such list.
std::string StrokeText(const GlyphStrokes& strokes);
GlyphStrokes StrokesOfText(std::string_view text);

// The strokes that a stored procedure draws. Circles, and numbers without an operator, are no strokes.
GlyphStrokes StrokesOfProcedure(const std::string& procedure);
// Whether saving these strokes gives that very procedure.
bool Builds(const GlyphStrokes& strokes, const std::string& procedure);

Path PathOfStrokes(const GlyphStrokes& strokes);
// The box of all points.
GrowingBox BoundsOfStrokes(const GlyphStrokes& strokes);
// The box of the lines themselves; control points do not count.
GrowingBox InkOfStrokes(const GlyphStrokes& strokes);

// What there is within `reach` of a place: a point of a stroke, ends rather than control points; or the
// control point of a segment that passes there.
std::optional<PointPlace> PointNear(const GlyphStrokes& strokes, Point at, float reach);
std::optional<PointPlace> SegmentNear(const GlyphStrokes& strokes, Point at, float reach);

// The points within a rectangle, those of the strokes that a selection touches, all of them.
PointSelection PointsIn(const GlyphStrokes& strokes, const Box& box);
PointSelection PointsOfStroke(const GlyphStrokes& strokes, std::size_t stroke);
PointSelection WholeStrokes(const GlyphStrokes& strokes, const PointSelection& selection);
PointSelection AllPoints(const GlyphStrokes& strokes);
// The strokes that a selection touches.
GlyphStrokes TouchedStrokes(const GlyphStrokes& strokes, const PointSelection& selection);

// Straight segments stay straight and closed strokes closed, whichever of their points go.
void MovePoints(GlyphStrokes& strokes, const PointSelection& selection, Point by);
// Left and right change places, or top and bottom, within the rectangle of the selected ends.
void MirrorPoints(GlyphStrokes& strokes, const PointSelection& selection, bool upsideDown);
// The neighbours of an end that goes are joined by a straight segment, and a segment whose control point goes
// is straight. What is left without a segment goes as a whole.
void DeletePoints(GlyphStrokes& strokes, const PointSelection& selection);
// Adds a straight segment to the start of each open stroke that is touched; if all of them are closed, takes
// their last segments away.
void CloseOrOpen(GlyphStrokes& strokes, const PointSelection& selection);
// Strokes that go round the other way, and so cut a hole where they enclosed ink.
void ReverseStrokes(GlyphStrokes& strokes, const PointSelection& selection);
// Puts an end into the middle of each segment whose control point is selected; curves stay within a few
// hundredths of their height.
void SplitSegments(GlyphStrokes& strokes, const PointSelection& selection);

// Adds a straight segment.
void ExtendStroke(GlyphStroke& stroke, Point end);

}  // namespace kelvane
