#include "typography/glyph_shapes.h"

#include <cmath>
#include <cstddef>
#include <numbers>
#include <string_view>

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

// The area that the parts of a path enclose, counters taken off, and the length of their lines. A part without
// area runs to its end and back, and its two lines lie on each other. Curves count as eight chords.
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
    constexpr double kNoArea = 0.01;
    const double length = part.length;
    Go(start);  // encloses the area without drawing
    whole.area += part.area;
    whole.length += std::abs(part.area) < kNoArea ? length / 2 : length;
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
  const Extent extent = Measurer().Measure(shape.path);
  const bool enclosed = shape.filled && extent.area > 0;
  shape.lineWidth = enclosed ? static_cast<float>(extent.area / extent.length) : kStrokeWidth;
  if (const GrowingBox outline = ExtentOf(shape.path); !outline.Empty()) {
    const float reach = shape.filled ? 0 : shape.lineWidth / 2;
    const Box& box = outline.box;
    shape.ink = {box.left - reach, box.top - reach, box.right + reach, box.bottom + reach};
  }
  return shape;
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
  if (known.procedure != procedure) known = {procedure, ExecuteGlyph(procedure)};
  return &known.shape;
}

}  // namespace kelvane
