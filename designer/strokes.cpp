#include "designer/strokes.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "designer/character_files.h"
#include "document/fields.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "platform/failure.h"

namespace kelvane {
namespace {

// The sum that BuildGlyph tells straight segments by.
Point Middle(Point a, Point b) {
  return {(b.x + a.x) * 0.5F, (b.y + a.y) * 0.5F};
}

Point Plus(Point a, Point b) {
  return {a.x + b.x, a.y + b.y};
}

Point Between(Point from, Point to, float part) {
  return {from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)};
}

// Sixteenths of a unit have few digits, and sums of them are exact.
Point OnFineGrid(Point point) {
  return {std::round(point.x * 16) / 16, std::round(point.y * 16) / 16};
}

std::string LineOf(const GlyphStroke& stroke) {
  std::string line;
  for (const Point& point : stroke) {
    if (!line.empty()) line += ' ';
    line += FormatSingle(point.x) + ' ' + FormatSingle(point.y);
  }
  return line;
}

bool IsNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("+-.0123456789e") == std::string_view::npos;
}

GlyphStroke StrokeOfLine(std::string_view line) {
  const std::vector<std::string_view> fields = SplitFields(TrimBlanks(line), " ");
  if (fields.size() % 4 != 2 || fields.size() < 6 || !std::ranges::all_of(fields, IsNumber))
    throw Failure("What is to be pasted is no list of strokes.");
  GlyphStroke stroke;
  for (std::size_t i = 0; i < fields.size(); i += 2)
    stroke.push_back({ReadSingle(fields[i]), ReadSingle(fields[i + 1])});
  return stroke;
}

// Reads a procedure as the interpreter of the screen does.
class Reader {
 public:
  GlyphStrokes Read(const std::string& procedure) {
    for (const std::string_view token : SplitFields(procedure, " ")) {
      if (token == "moveto") {
        Move();
      } else if (token == "rlineto") {
        Line();
      } else if (token == "rp" || token == "rc") {
        Curve();
      } else {
        operands.push_back(ReadSingle(token));
      }
    }
    EndStroke();
    return std::move(strokes);
  }

 private:
  bool Pop(std::size_t count) {
    if (operands.size() < count) return false;
    taken.assign(operands.end() - static_cast<std::ptrdiff_t>(count), operands.end());
    operands.resize(operands.size() - count);
    return true;
  }
  // Procedures have y upwards, strokes downwards.
  Point Relative(std::size_t at) const { return {current.x + taken[at], current.y - taken[at + 1]}; }

  void Move() {
    EndStroke();
    if (Pop(2)) current = {taken[0], kDesignBaseline - taken[1]};
  }
  void Line() {
    if (!Pop(2)) return;
    const Point end = Relative(0);
    Add(Middle(current, end), end);
  }
  void Curve() {
    if (Pop(4)) Add(Relative(0), Relative(2));
  }
  void Add(Point control, Point end) {
    if (stroke.empty()) stroke.push_back(current);
    stroke.push_back(control);
    stroke.push_back(end);
    current = end;
  }
  void EndStroke() {
    if (!stroke.empty()) strokes.push_back(std::move(stroke));
    stroke.clear();
  }

  GlyphStrokes strokes;
  GlyphStroke stroke;
  Point current{0, kDesignBaseline};
  std::vector<float> operands;
  std::vector<float> taken;
};

void Straighten(GlyphStroke& stroke, std::size_t control) {
  stroke[control] = Middle(stroke[control - 1], stroke[control + 1]);
}

// The numbers of a stroke's selected points; of a closed stroke the start and the end go together.
std::set<std::size_t> SelectedOf(const GlyphStroke& stroke, std::size_t number,
                                 const PointSelection& selection) {
  std::set<std::size_t> points;
  for (const PointPlace& place : selection)
    if (place.stroke == number && place.point < stroke.size()) points.insert(place.point);
  const std::size_t last = stroke.size() - 1;
  if (IsClosed(stroke) && (points.contains(0) || points.contains(last))) {
    points.insert(0);
    points.insert(last);
  }
  return points;
}

void MoveOfStroke(GlyphStroke& stroke, const std::set<std::size_t>& points, Point by) {
  std::vector<std::size_t> straight;
  for (std::size_t i = 1; i < stroke.size(); i += 2) {
    const bool endsGo = points.contains(i - 1) || points.contains(i + 1);
    // The control point alone bends its segment.
    if (IsStraight(stroke, i) && (endsGo || !points.contains(i))) straight.push_back(i);
  }
  for (const std::size_t point : points) stroke[point] = Plus(stroke[point], by);
  for (const std::size_t control : straight) Straighten(stroke, control);
}

GlyphStroke WithoutPoints(const GlyphStroke& stroke, const std::set<std::size_t>& points) {
  GlyphStroke left;
  bool joined = false;  // an end went since the last one that stays
  for (std::size_t i = 0; i < stroke.size(); i += 2) {
    if (points.contains(i)) {
      joined = true;
      continue;
    }
    if (left.empty()) {
      left.push_back(stroke[i]);
    } else {
      ExtendStroke(left, stroke[i]);
      if (!joined && !points.contains(i - 1)) left[left.size() - 2] = stroke[i - 1];
    }
    joined = false;
  }
  // A closed stroke whose start went begins at the next end, and ends there.
  if (IsClosed(stroke) && points.contains(0) && left.size() > 3) ExtendStroke(left, left.front());
  return left;
}

}  // namespace

bool IsClosed(const GlyphStroke& stroke) {
  return stroke.size() > 1 && stroke.front() == stroke.back();
}

bool IsThread(const GlyphStroke& stroke) {
  return IsClosed(stroke) && std::equal(stroke.begin(), stroke.end(), stroke.rbegin());
}

bool IsStraight(const GlyphStroke& stroke, std::size_t control) {
  return stroke[control] == Middle(stroke[control - 1], stroke[control + 1]);
}

void CheckStrokeCount(const GlyphStrokes& strokes) {
  const auto drawn = static_cast<std::size_t>(std::ranges::count_if(strokes, std::not_fn(IsThread)));
  if (drawn <= kMostStrokes) return;
  throw Failure("A character has at most " + std::to_string(kMostStrokes) +
                " strokes.\nJoin some of them, or delete one first.");
}

std::vector<std::string> StrokeLines(const GlyphStrokes& strokes) {
  std::vector<std::string> lines;
  std::ranges::transform(strokes, std::back_inserter(lines), LineOf);
  return lines;
}

std::string StrokeText(const GlyphStrokes& strokes) {
  std::string text;
  for (const std::string& line : StrokeLines(strokes)) text += line + "\r\n";
  return text;
}

GlyphStrokes StrokesOfText(std::string_view text) {
  GlyphStrokes strokes;
  while (!text.empty()) strokes.push_back(StrokeOfLine(TakeLine(text)));
  return strokes;
}

GlyphStrokes StrokesOfProcedure(const std::string& procedure) {
  return Reader().Read(procedure);
}

bool Builds(const GlyphStrokes& strokes, const std::string& procedure) {
  const std::string built = BuildGlyph(StrokeLines(strokes)).text;
  // A character that was never drawn has no text at all.
  if (strokes.empty() && procedure.empty()) return true;
  return TrimBlanks(built) == TrimBlanks(procedure);
}

Path PathOfStrokes(const GlyphStrokes& strokes) {
  Path path;
  for (const GlyphStroke& stroke : strokes) {
    if (stroke.empty()) continue;
    path.MoveTo(stroke[0]);
    for (std::size_t i = 1; i + 1 < stroke.size(); i += 2) {
      if (IsStraight(stroke, i)) {
        path.LineTo(stroke[i + 1]);
      } else {
        AddCurve(path, stroke[i - 1], stroke[i], stroke[i + 1]);
      }
    }
  }
  return path;
}

GrowingBox BoundsOfStrokes(const GlyphStrokes& strokes) {
  GrowingBox bounds;
  for (const GlyphStroke& stroke : strokes)
    for (const Point& point : stroke) bounds.Add(point);
  return bounds;
}

GrowingBox InkOfStrokes(const GlyphStrokes& strokes) {
  GrowingBox ink;
  for (const GlyphStroke& stroke : strokes) {
    for (std::size_t i = 1; i + 1 < stroke.size(); i += 2)
      for (const Point& point : FlattenCurve(stroke[i - 1], stroke[i], stroke[i + 1])) ink.Add(point);
  }
  return ink;
}

std::optional<PointPlace> PointNear(const GlyphStrokes& strokes, Point at, float reach) {
  std::optional<PointPlace> nearest;
  for (const std::size_t first : {std::size_t{0}, std::size_t{1}}) {
    float least = reach;
    // The last stroke drawn lies on top.
    for (std::size_t s = strokes.size(); s-- > 0;) {
      for (std::size_t i = first; i < strokes[s].size(); i += 2) {
        const float distance = std::hypot(strokes[s][i].x - at.x, strokes[s][i].y - at.y);
        if (distance > least || (nearest && distance == least)) continue;
        least = distance;
        nearest = PointPlace{s, i};
      }
    }
    if (nearest) break;
  }
  return nearest;
}

std::optional<PointPlace> SegmentNear(const GlyphStrokes& strokes, Point at, float reach) {
  std::optional<PointPlace> nearest;
  for (std::size_t s = strokes.size(); s-- > 0;) {
    const GlyphStroke& stroke = strokes[s];
    for (std::size_t i = 1; i + 1 < stroke.size(); i += 2) {
      const CurvePoints curve = FlattenCurve(stroke[i - 1], stroke[i], stroke[i + 1]);
      for (int piece = 1; piece < kCurvePoints; ++piece) {
        const float distance = DistanceToChord(curve[piece - 1], curve[piece], at);
        if (distance > reach || (nearest && distance == reach)) continue;
        reach = distance;
        nearest = PointPlace{s, i};
      }
    }
  }
  return nearest;
}

PointSelection PointsIn(const GlyphStrokes& strokes, const Box& box) {
  PointSelection points;
  for (const PointPlace& place : AllPoints(strokes)) {
    const Point& at = strokes[place.stroke][place.point];
    if (at.x >= box.left && at.x <= box.right && at.y >= box.top && at.y <= box.bottom) points.insert(place);
  }
  return points;
}

PointSelection PointsOfStroke(const GlyphStrokes& strokes, std::size_t stroke) {
  PointSelection points;
  for (std::size_t i = 0; i < strokes[stroke].size(); ++i) points.insert({stroke, i});
  return points;
}

PointSelection WholeStrokes(const GlyphStrokes& strokes, const PointSelection& selection) {
  PointSelection points;
  for (const PointPlace& place : selection) points.merge(PointsOfStroke(strokes, place.stroke));
  return points;
}

PointSelection AllPoints(const GlyphStrokes& strokes) {
  PointSelection points;
  for (std::size_t s = 0; s < strokes.size(); ++s) points.merge(PointsOfStroke(strokes, s));
  return points;
}

GlyphStrokes TouchedStrokes(const GlyphStrokes& strokes, const PointSelection& selection) {
  GlyphStrokes touched;
  for (std::size_t s = 0; s < strokes.size(); ++s) {
    if (!SelectedOf(strokes[s], s, selection).empty()) touched.push_back(strokes[s]);
  }
  return touched;
}

void MovePoints(GlyphStrokes& strokes, const PointSelection& selection, Point by) {
  for (std::size_t s = 0; s < strokes.size(); ++s)
    MoveOfStroke(strokes[s], SelectedOf(strokes[s], s, selection), by);
}

void MirrorPoints(GlyphStrokes& strokes, const PointSelection& selection, bool upsideDown) {
  float Point::*const way = upsideDown ? &Point::y : &Point::x;
  std::vector<Point*> points;
  std::vector<float> ends;
  for (std::size_t s = 0; s < strokes.size(); ++s) {
    for (const std::size_t i : SelectedOf(strokes[s], s, selection)) {
      points.push_back(&strokes[s][i]);
      if (i % 2 == 0) ends.push_back(strokes[s][i].*way);
    }
  }
  if (ends.empty()) return;
  const auto [least, most] = std::ranges::minmax(ends);
  for (Point* point : points) point->*way = least + most - point->*way;
}

void DeletePoints(GlyphStrokes& strokes, const PointSelection& selection) {
  GlyphStrokes left;
  for (std::size_t s = 0; s < strokes.size(); ++s) {
    GlyphStroke stroke = WithoutPoints(strokes[s], SelectedOf(strokes[s], s, selection));
    if (stroke.size() > 1) left.push_back(std::move(stroke));
  }
  strokes = std::move(left);
}

void CloseOrOpen(GlyphStrokes& strokes, const PointSelection& selection) {
  std::vector<GlyphStroke*> open;
  std::vector<GlyphStroke*> closed;
  for (std::size_t s = 0; s < strokes.size(); ++s) {
    if (SelectedOf(strokes[s], s, selection).empty() || strokes[s].size() <= 3) continue;
    (IsClosed(strokes[s]) ? closed : open).push_back(&strokes[s]);
  }
  for (GlyphStroke* stroke : open) ExtendStroke(*stroke, stroke->front());
  if (!open.empty()) return;
  for (GlyphStroke* stroke : closed) stroke->resize(stroke->size() - 2);
}

void ReverseStrokes(GlyphStrokes& strokes, const PointSelection& selection) {
  for (std::size_t s = 0; s < strokes.size(); ++s)
    if (!SelectedOf(strokes[s], s, selection).empty()) std::ranges::reverse(strokes[s]);
}

void SplitSegments(GlyphStrokes& strokes, const PointSelection& selection) {
  for (std::size_t s = 0; s < strokes.size(); ++s) {
    const GlyphStroke& stroke = strokes[s];
    const std::set<std::size_t> points = SelectedOf(stroke, s, selection);
    GlyphStroke split{stroke[0]};
    for (std::size_t i = 1; i + 1 < stroke.size(); i += 2) {
      if (points.contains(i)) {
        // As high above its chord as the middle of a curve stands, in parts of the height of its control
        // point.
        constexpr float kMiddle = static_cast<float>(0.75 * kCurveFactor);
        const float part = IsStraight(stroke, i) ? 0.5F : kMiddle;
        const Point before = OnFineGrid(Between(stroke[i - 1], stroke[i], part));
        const Point behind = OnFineGrid(Between(stroke[i + 1], stroke[i], part));
        const Point end = IsStraight(stroke, i) ? stroke[i] : Middle(before, behind);
        split.insert(split.end(), {before, end, behind, stroke[i + 1]});
      } else {
        split.insert(split.end(), {stroke[i], stroke[i + 1]});
      }
    }
    strokes[s] = std::move(split);
  }
}

void ExtendStroke(GlyphStroke& stroke, Point end) {
  const Point from = stroke.back();
  stroke.push_back(Middle(from, end));
  stroke.push_back(end);
}

}  // namespace kelvane
