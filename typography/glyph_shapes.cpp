#include "typography/glyph_shapes.h"

#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>
#include <string_view>
#include <vector>

#include "document/fields.h"
#include "document/numbers.h"
#include "typography/curves.h"

namespace kelvane {

std::string CharacterDefs[kGlyphs][4];

namespace {

constexpr int kMostOperands = 20;
// What `st` draws a line with, glyph units.
constexpr float kStrokeWidth = 0.5F;

class Interpreter {
 public:
  explicit Interpreter(GlyphShape& into) : shape(into) {}

  // False when the procedure must stop.
  bool Execute(std::string_view token) {
    if (token == "moveto") return MoveTo();
    if (token == "rlineto") return LineTo();
    if (token == "rc" || token == "rp") return CurveTo();
    if (token == "ci") return Circle();
    if (token == "st" || token == "fill") {
      shape.filled = token == "fill";
      return true;
    }
    if (depth == kMostOperands) return false;
    operands[depth++] = ReadSingle(token);
    return true;
  }

 private:
  bool Pop(Point& point) {
    if (depth < 2) return false;
    depth -= 2;
    point = {operands[depth], operands[depth + 1]};
    return true;
  }
  bool PopRelative(Point& point) {
    if (!Pop(point)) return false;
    point = {point.x + current.x, point.y + current.y};
    return true;
  }
  bool MoveTo() {
    begun = false;
    return Pop(current);
  }
  bool LineTo() {
    Point end;
    if (!PopRelative(end)) return false;
    Begin();
    shape.path.LineTo(end);
    current = end;
    return true;
  }
  bool CurveTo() {
    Point end;
    Point control;
    if (!PopRelative(end) || !PopRelative(control)) return false;
    Begin();
    AddCurve(shape.path, current, control, end);
    current = end;
    return true;
  }
  // Four arcs, each within 0.03 % of the circle.
  bool Circle() {
    if (depth < 1) return false;
    const float r = std::abs(operands[--depth]);
    const float k = r * 4 * (std::numbers::sqrt2_v<float> - 1) / 3;
    const auto [x, y] = current;
    Path& path = shape.path;
    path.MoveTo({x + r, y});
    path.CurveTo({x + r, y + k}, {x + k, y + r}, {x, y + r});
    path.CurveTo({x - k, y + r}, {x - r, y + k}, {x - r, y});
    path.CurveTo({x - r, y - k}, {x - k, y - r}, {x, y - r});
    path.CurveTo({x + k, y - r}, {x + r, y - k}, {x + r, y});
    begun = false;
    return true;
  }
  void Begin() {
    if (!begun) shape.path.MoveTo(current);
    begun = true;
  }

  GlyphShape& shape;
  float operands[kMostOperands];
  int depth = 0;
  Point current;
  bool begun = false;  // whether the path stands at the current point
};

// A path's steps from one Move to the next, and their points.
struct PathPart {
  std::span<const Path::Step> steps;
  std::span<const Point> points;

  bool IsThread() const {
    constexpr float kNear = 0.01F;
    // Back by the same kinds of steps, or half of the points would not be those of half of the steps.
    for (std::size_t i = 1; i < steps.size(); ++i)
      if (steps[i] != steps[steps.size() - i]) return false;
    const std::size_t last = points.size() - 1;
    for (std::size_t i = 0; i < points.size() / 2; ++i) {
      if (std::hypot(points[i].x - points[last - i].x, points[i].y - points[last - i].y) > kNear)
        return false;
    }
    return steps.size() > 1 && steps.size() % 2 == 1;
  }
};

std::vector<PathPart> PartsOf(const Path& path) {
  std::vector<PathPart> parts;
  const Point* point = path.points.data();
  const auto& steps = path.steps;
  for (auto from = steps.begin(); from != steps.end();) {
    std::size_t points = 1;
    auto to = from + 1;
    for (; to != steps.end() && *to != Path::Step::Move; ++to) points += *to == Path::Step::Curve ? 3 : 1;
    parts.push_back({{from, to}, {point, points}});
    point += points;
    from = to;
  }
  return parts;
}

// Puts its first steps and points behind a path.
void Append(Path& path, const PathPart& part, std::size_t steps, std::size_t points) {
  path.steps.insert(path.steps.end(), part.steps.begin(),
                    part.steps.begin() + static_cast<std::ptrdiff_t>(steps));
  path.points.insert(path.points.end(), part.points.begin(),
                     part.points.begin() + static_cast<std::ptrdiff_t>(points));
}

// The area that the parts of a path enclose, counters taken off, and the length of their lines. Curves count
// as eight chords.
struct Extent {
  double area = 0;
  double length = 0;
};

class Measurer {
 public:
  Extent Measure(const Path& path) {
    const Point* point = path.points.data();
    for (const Path::Step step : path.steps) {
      if (step == Path::Step::Move) {
        EndPart();
        start = at = *point++;
      } else if (step == Path::Step::Line) {
        Go(*point++);
      } else {
        GoCurve(point);
        point += 3;
      }
    }
    EndPart();
    whole.area = std::abs(whole.area);
    return whole;
  }

 private:
  void Go(Point to) {
    part.area += (static_cast<double>(at.x) * to.y - static_cast<double>(to.x) * at.y) / 2;
    part.length += std::hypot(to.x - at.x, to.y - at.y);
    at = to;
  }
  void GoCurve(const Point* point) {
    constexpr int kChords = 8;
    const Point from = at;
    for (int i = 1; i <= kChords; ++i) Go(PointOnCubic(from, point, static_cast<float>(i) / kChords));
  }
  void EndPart() {
    whole.length += part.length;
    Go(start);  // encloses the area without drawing
    whole.area += part.area;
    part = {};
  }

  Extent whole;
  Extent part;
  Point start;
  Point at;
};

}  // namespace

GlyphShape ExecuteGlyph(const std::string& procedure) {
  GlyphShape shape;
  Interpreter interpreter(shape);
  for (const std::string_view token : SplitFields(procedure, " ")) {
    if (!interpreter.Execute(token)) break;
  }
  const double area = Measurer().Measure(shape.path).area;
  const bool enclosed = shape.filled && area > 0;
  for (const PathPart& part : PartsOf(shape.path)) {
    if (enclosed && part.IsThread()) {
      Append(shape.threads, part, (part.steps.size() + 1) / 2, (part.points.size() + 1) / 2);
    } else {
      Append(shape.edges, part, part.steps.size(), part.points.size());
    }
  }
  const double edges = Measurer().Measure(shape.edges).length;
  const double threads = Measurer().Measure(shape.threads).length;
  shape.edgeWidth = enclosed ? static_cast<float>(area / edges) : kStrokeWidth;
  shape.threadWidth = enclosed ? static_cast<float>(area / (threads + edges / 2)) : 0;
  if (const GrowingBox outline = ExtentOf(shape.path); !outline.Empty()) {
    const float reach = shape.filled ? 0 : shape.edgeWidth / 2;
    const Box& box = outline.box;
    shape.ink = {box.left - reach, box.top - reach, box.right + reach, box.bottom + reach};
  }
  return shape;
}

namespace {
std::uint32_t edition = 0;
}

std::uint32_t EditionOfGlyphs() {
  return edition;
}

const GlyphShape* ShapeOfGlyph(int code, std::int16_t font) {
  // Executed once and drawn many times; the text it came from tells when to execute anew.
  struct Executed {
    std::string procedure;
    GlyphShape shape;
  };
  static Executed executed[kGlyphs][3];
  if (code < kFirstGlyph || code >= kFirstGlyph + kGlyphs) return nullptr;
  const int column = font % 3;
  const std::string& procedure = CharacterDefs[code - kFirstGlyph][column];
  if (procedure.empty()) return nullptr;
  Executed& known = executed[code - kFirstGlyph][column];
  if (known.procedure != procedure) {
    if (!known.procedure.empty()) ++edition;
    known = {procedure, ExecuteGlyph(procedure)};
  }
  return &known.shape;
}

}  // namespace kelvane
