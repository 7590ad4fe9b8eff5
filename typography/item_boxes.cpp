#include "typography/item_boxes.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <vector>

#include "typography/curves.h"
#include "typography/glyph_shapes.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

// How far a chord may lie from its curve, points.
constexpr float kChordError = 0.01F;
constexpr float kMostChords = 512;
// A character whose ink nobody knows reaches so far above and below the baseline, ems.
constexpr float kUnknownRise = 0.9F;
constexpr float kUnknownFall = 0.3F;
constexpr int kNoBreakSpace = 160;

bool IsEmpty(const Box& box) {
  return box.left == box.right && box.top == box.bottom;
}

// Calls `ink` with the box of each character that has some.
template <typename Ink>
void ForInk(const TextEntry& entry, Ink ink) {
  const PlacedRun placed = PlaceRun(entry);
  WalkRun(
      entry.text, PenAt(placed.origin, entry.font, entry.size), placed.extraSpace,
      [&](std::size_t index, const RunPen& pen) {
        const int code = static_cast<unsigned char>(entry.text[index]);
        const Box ems = InkOfCharacter(code, pen.font);
        if (IsEmpty(ems)) return;
        const float left = pen.x + ems.left * pen.size;
        const float right = pen.x + ems.right * pen.size;
        const float top = pen.y + ems.top * pen.size;
        const float bottom = pen.y + ems.bottom * pen.size;
        // A size below zero turns a character round.
        ink(Box{std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom)});
      });
}

// How far outside of a stretch a value lies; no number for one that is none.
float Outside(float from, float to, float value) {
  if (value >= from && value <= to) return 0;
  return value < from ? from - value : value - to;
}

// As many chords of equal steps as keep within the error of a cubic.
int ChordsOf(Point start, const Point* cubic) {
  const float bend = std::max(
      std::hypot(start.x - 2 * cubic[0].x + cubic[1].x, start.y - 2 * cubic[0].y + cubic[1].y),
      std::hypot(cubic[0].x - 2 * cubic[1].x + cubic[2].x, cubic[0].y - 2 * cubic[1].y + cubic[2].y));
  const float chords = std::ceil(std::sqrt(0.75F * bend / kChordError));
  return chords >= 1 ? static_cast<int>(std::min(chords, kMostChords)) : 1;
}

// Follows a path and finds the nearest of its points to one point, and how often it winds round it.
class Nearest {
 public:
  explicit Nearest(Point to) : point(to) {}

  void Follow(const Path& path) {
    const Point* next = path.points.data();
    for (const Path::Step step : path.steps) {
      if (step == Path::Step::Curve) {
        const Point start = at;
        const int chords = ChordsOf(start, next);
        for (int i = 1; i < chords; ++i)
          Go(PointOnCubic(start, next, static_cast<float>(i) / static_cast<float>(chords)));
        next += 2;
      }
      step == Path::Step::Move ? static_cast<void>(at = *next) : Go(*next);
      ++next;
    }
  }

  float distance = kAnyDistance;
  int winding = 0;

 private:
  void Go(Point to) {
    distance = std::min(distance, DistanceToChord(at, to, point));
    if ((at.y <= point.y) != (to.y <= point.y)) {
      const double part = (static_cast<double>(point.y) - at.y) / (static_cast<double>(to.y) - at.y);
      if (at.x + (static_cast<double>(to.x) - at.x) * part > point.x) winding += to.y > at.y ? 1 : -1;
    }
    at = to;
  }

  Point point;
  Point at;
};

float HalfLine(const Drawing& drawing) {
  return drawing.closed ? 0 : std::max(drawing.style.width, kHairline) / 2;
}

}  // namespace

Box InkOfCharacter(int code, std::int16_t font) {
  if (font >= kFirstGlyphFont) {
    const GlyphShape* shape = ShapeOfGlyph(code, font);
    if (!shape) return {};
    const Box& ink = shape->ink;
    return {ink.left * kGlyphUnit, -ink.bottom * kGlyphUnit, ink.right * kGlyphUnit, -ink.top * kGlyphUnit};
  }
  const std::vector<Box>& known = TypefaceTable[font].Ink;
  const auto index = static_cast<std::size_t>(code);
  if (index < known.size()) return known[index];
  const bool blank = code == ' ' || (code == kNoBreakSpace && !IsSymbolFace(font));
  const float width = blank ? 0 : Advance(code, font, 1);
  return width == 0 ? Box{} : Box{0, -kUnknownRise, width, kUnknownFall};
}

Box InkBoxOf(const TextEntry& entry) {
  GrowingBox ink;
  ForInk(entry, [&ink](const Box& box) { ink.Add(box); });
  return ink.Empty() ? Box{entry.x, entry.y, entry.x, entry.y} : ink.box;
}

Box InkBoxOf(std::string_view run, std::int16_t font, float size, int anchor, Point at) {
  TextEntry entry;
  entry.x = at.x;
  entry.y = at.y;
  entry.size = size;
  entry.font = font;
  entry.text = run;
  entry.anchor = anchor;
  return InkBoxOf(entry);
}

Box InkBoxOf(const Drawing& drawing) {
  GrowingBox extent = ExtentOf(PathOf(drawing));
  if (extent.Empty()) extent.Add(drawing.points[0]);
  const Box& box = extent.box;
  const float reach = HalfLine(drawing);
  return {box.left - reach, box.top - reach, box.right + reach, box.bottom + reach};
}

float DistanceTo(const Box& box, Point point) {
  return std::hypot(Outside(box.left, box.right, point.x), Outside(box.top, box.bottom, point.y));
}

float DistanceTo(const TextEntry& entry, Point point, float within) {
  const float height = HeightReach(entry.size);
  if (Outside(entry.y - height, entry.y + height, point.y) > within) return kAnyDistance;
  float distance = kAnyDistance;
  bool inked = false;
  ForInk(entry, [&](const Box& box) {
    // What is no number is no nearer than anything.
    const float next = DistanceTo(box, point);
    if (next < distance) distance = next;
    inked = inked || next < kAnyDistance;
  });
  if (inked) return distance;
  distance = std::hypot(point.x - entry.x, point.y - entry.y);
  return std::isnan(distance) ? kAnyDistance : distance;
}

float DistanceTo(const Drawing& drawing, Point point, float within) {
  const float reach = HalfLine(drawing);
  GrowingBox box;  // control points lie outside of what is drawn
  for (const Point& corner : drawing.points) box.Add(corner);
  if (!(DistanceTo(box.box, point) <= within + reach)) return kAnyDistance;
  Nearest nearest(point);
  nearest.Follow(PathOf(drawing));
  if (drawing.closed && nearest.winding != 0) return 0;
  return std::max(nearest.distance - reach, 0.0F);
}

std::size_t CaretAt(const TextEntry& entry, Point point) {
  struct Nearness {
    float distance;
    float offMiddle;  // tells scripts that stand over each other apart
    auto operator<=>(const Nearness&) const = default;
  };
  const auto nearness = [point](const RunPen& pen, float width) {
    const Box cell = CellAt(pen, width);
    return Nearness{DistanceTo(cell, point), std::abs((cell.top + cell.bottom) / 2 - point.y)};
  };
  Nearness best{kAnyDistance, kAnyDistance};
  std::size_t caret = 0;
  const PlacedRun placed = PlaceRun(entry);
  const RunPen end = WalkRun(entry.text, PenAt(placed.origin, entry.font, entry.size), placed.extraSpace,
                             [&](std::size_t index, const RunPen& pen) {
                               const int code = static_cast<unsigned char>(entry.text[index]);
                               const float width = StepAt(pen, code, placed.extraSpace);
                               const Nearness next = nearness(pen, width);
                               if (!(next < best)) return;
                               best = next;
                               caret = point.x < pen.x + width / 2 ? index : index + 1;
                             });
  // Where the end is as near as the last character, the codes behind that are passed too.
  return best < nearness(end, 0) ? caret : entry.text.size();
}

}  // namespace kelvane
