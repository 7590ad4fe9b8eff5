#include "typography/renderer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "typography/colours.h"
#include "typography/curves.h"
#include "typography/metrics.h"
#include "typography/run_painter.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

// Horizontal lines begin one choice earlier than vertical ones: the start-up grid (3 and 2) shows lines of
// writing without boxing the page in.
constexpr int kFirstHorizontalChoice = 2;
constexpr int kFirstVerticalChoice = 3;
// Grid lines closer than this, in pixels, are mixed with white, so that text stays legible among them.
constexpr float kCalmGridPixels = 8;
constexpr std::size_t kMostFillPoints = 1000;

// What a line of its own reaches beyond its points: round ends, and a pixel of it at least.
constexpr float kLeastReach = 2;  // points

// Calls draw with each multiple of `spacing` from 0 to `end` that lies within the visible stretch. The index
// is a whole number, so that the lines do not drift.
template <typename Draw>
void ForGrid(int spacing, float end, float visibleFrom, float visibleTo, Draw draw) {
  const double first = std::max(0.0, std::ceil(static_cast<double>(visibleFrom) / spacing));
  const double last =
      std::floor(std::min(static_cast<double>(end), static_cast<double>(visibleTo)) / spacing);
  for (double i = first; i <= last; ++i) draw(static_cast<float>(i * spacing));
}

ColourValue MixedWithWhite(ColourValue colour, float part) {
  ColourValue mixed = 0;
  for (int shift = 0; shift < 24; shift += 8) {
    const auto component = static_cast<float>(colour >> shift & 0xFF);
    mixed |= static_cast<ColourValue>(std::lround(255 - (255 - component) * part)) << shift;
  }
  return mixed;
}

Pen GridPen(int spacing, float scale) {
  const float part = std::min(static_cast<float>(spacing) * scale / kCalmGridPixels, 1.0F);
  return {MixedWithWhite(PaletteColour(kCyan), part), 1, true};
}

void PaintGrid(Painter& painter, const View& view, const Box& area) {
  if (!view.grid || view.scale < 1) return;
  const float reach = 1 / view.scale;  // of a line, points
  if (GridStepV >= kFirstHorizontalChoice) {
    const Pen pen = GridPen(2 * GridStepV, view.scale);
    ForGrid(2 * GridStepV, PaperHeight, area.top - reach, area.bottom + reach, [&](float y) {
      painter.DrawLine({0, y}, {PaperWidth, y}, pen);
    });
  }
  if (GridStepH >= kFirstVerticalChoice) {
    const Pen pen = GridPen(2 * GridStepH, view.scale);
    ForGrid(2 * GridStepH, PaperWidth, area.left - reach, area.right + reach, [&](float x) {
      painter.DrawLine({x, 0}, {x, PaperHeight}, pen);
    });
  }
}

void PaintGuides(Painter& painter, const View& view) {
  if (view.printed) return;
  const Pen pen{PaletteColour(kBlue), 1, true};
  for (const float x : GuideX) {
    if (x == 0) break;
    painter.DrawLine({x, 0}, {x, PaperHeight}, pen);
  }
  for (const float y : GuideY) {
    if (y == 0) break;
    painter.DrawLine({0, y}, {PaperWidth, y}, pen);
  }
}

// A path of very many points is no area that somebody drew; it is shown by its outline, so that the person
// can see and mend it. A curve counts as the ends of its sixteen pieces.
bool CanBeFilled(const Path& path) {
  std::size_t points = 0;
  for (const Path::Step step : path.steps)
    points += step == Path::Step::Curve ? kCurvePoints - 1 : std::size_t{1};
  return points <= kMostFillPoints;
}

// A line without a width prints as a hairline; on the screen lines are whole pixels wide, one at least.
float PixelsWide(float width, const View& view) {
  if (view.exact) return (width > 0 ? width : kHairline) * view.scale;
  return std::max(std::floor(width * view.scale), 1.0F);
}

bool Meet(const Box& a, const Box& b) {
  // Written so that a box with a value that is no number meets everything.
  return !(a.right < b.left || b.right < a.left || a.bottom < b.top || b.bottom < a.top);
}

Box BoxOf(const TextEntry& entry, const RunReach& run, const PlacedRun& placed) {
  const auto blanks = static_cast<float>(std::count(entry.text.begin(), entry.text.end(), ' '));
  const float stretch = placed.extraSpace * blanks;
  const float reach = kGlyphReach * std::abs(entry.size);
  const auto [x, y] = placed.origin;
  return {x + run.box.left + std::min(stretch, 0.0F) - reach, y + run.box.top - reach,
          x + run.box.right + std::max(stretch, 0.0F) + reach, y + run.box.bottom + reach};
}

// Where the runs of a page lie. Measured once: again when a line is another or when widths have changed.
class Placements {
 public:
  struct Placement {
    std::uint64_t reading = 0;
    Box box;
    PlacedRun run;
  };

  // One for each item.
  const std::vector<Placement>& Of(const std::vector<TextItem>& items) {
    if (TakeWidths()) placements.clear();
    const auto same = [](const Placement& placement, const TextItem& item) {
      return placement.reading == item.reading;
    };
    const auto front = std::mismatch(placements.begin(), placements.end(), items.begin(), items.end(), same);
    if (front.first == placements.end() && front.second == items.end()) return placements;
    const auto begin = static_cast<std::size_t>(front.second - items.begin());
    const std::size_t most = std::min(placements.size(), items.size()) - begin;
    std::size_t back = 0;
    while (back < most && same(*(placements.end() - 1 - static_cast<std::ptrdiff_t>(back)),
                               *(items.end() - 1 - static_cast<std::ptrdiff_t>(back)))) {
      ++back;
    }
    std::vector<Placement> changed;
    for (std::size_t i = begin; i < items.size() - back; ++i) changed.push_back(Place(items[i]));
    const auto at = placements.erase(front.first, placements.end() - static_cast<std::ptrdiff_t>(back));
    placements.insert(at, changed.begin(), changed.end());
    return placements;
  }

 private:
  struct Widths {
    std::array<float, 256> widths{};
    float unit = 0;
    bool operator==(const Widths&) const = default;
  };

  // Whether they are others than last time.
  bool TakeWidths() {
    bool changed = false;
    for (std::size_t font = 0; font < kTypefaces; ++font) {
      const TypefaceRecord& face = TypefaceTable[font];
      Widths& known = taken[font];
      if (known.unit == face.WidthUnit && known.widths == face.Widths) continue;
      known = {face.Widths, face.WidthUnit};
      changed = true;
    }
    return changed;
  }

  static Placement Place(const TextItem& item) {
    Placement placement;
    placement.reading = item.reading;
    if (!item.draws) return placement;
    const RunReach reach = ReachOfRun(item.entry.text, item.entry.font, item.entry.size);
    placement.run = PlaceRun(item.entry, reach.width);
    placement.box = BoxOf(item.entry, reach, placement.run);
    return placement;
  }

  std::vector<Placement> placements;
  std::array<Widths, kTypefaces> taken{};
};

}  // namespace

void PaintPage(Painter& painter, const View& view, const PageItems& items, const Box& area) {
  if (view.paper) painter.FillBox(WholeSheet(), PaletteColour(kWhite));
  PaintGrid(painter, view, area);
  PaintGuides(painter, view);
  for (const DrawingItem& item : items.Drawings()) {
    if (!item.draws || view.Hides(item.id)) continue;
    if (Meet(BoundsOf(item.drawing), area)) PaintDrawing(painter, view, item.drawing);
  }
  RunPainter runs(painter, view);
  static Placements placements;
  const std::vector<Placements::Placement>& placed = placements.Of(items.Texts());
  for (std::size_t i = 0; i < placed.size(); ++i) {
    const TextItem& item = items.Texts()[i];
    if (!item.draws || view.Hides(item.id) || !Meet(placed[i].box, area)) continue;
    const auto& [origin, extraSpace] = placed[i].run;
    runs.Paint({item.entry.text, item.entry.font, item.entry.size, origin, kBlack, extraSpace});
  }
}

void PaintDrawing(Painter& painter, const View& view, const Drawing& drawing) {
  if (!drawing.closed) {
    StrokeDrawing(painter, view, drawing);
    return;
  }
  const Path path = PathOf(drawing);
  const ColourValue colour = PaletteColour(drawing.style.colour);
  view.exact || CanBeFilled(path) ? painter.FillPath(path, colour) : painter.StrokePath(path, {colour, 1});
}

void PaintEntry(Painter& painter, const View& view, const TextEntry& entry) {
  const PlacedRun placed = PlaceRun(entry);
  RunPainter(painter, view)
      .Paint({entry.text, entry.font, entry.size, placed.origin, kBlack, placed.extraSpace});
}

void StrokeDrawing(Painter& painter, const View& view, const Drawing& drawing) {
  painter.StrokePath(PathOf(drawing),
                     {PaletteColour(drawing.style.colour), PixelsWide(drawing.style.width, view)});
}

Box BoundsOf(const TextEntry& entry) {
  const RunReach run = ReachOfRun(entry.text, entry.font, entry.size);
  return BoxOf(entry, run, PlaceRun(entry, run.width));
}

Box CellsOf(const TextEntry& entry, std::size_t begin, std::size_t end) {
  const PlacedRun placed = PlaceRun(entry);
  GrowingBox cells;
  WalkRun(
      entry.text, PenAt(placed.origin, entry.font, entry.size), placed.extraSpace,
      [&](std::size_t index, const RunPen& pen) {
        if (index < begin || index >= end) return;
        cells.Add(CellAt(pen, StepAt(pen, static_cast<unsigned char>(entry.text[index]), placed.extraSpace)));
      });
  const auto [x, y] = placed.origin;
  return cells.Empty() ? Box{x, y, x, y} : cells.box;
}

Box BoundsOf(const Drawing& drawing) {
  Box box{drawing.points[0].x, drawing.points[0].y, drawing.points[0].x, drawing.points[0].y};
  for (const Point& point : drawing.points) {
    box.left = std::min(box.left, point.x);
    box.right = std::max(box.right, point.x);
    box.top = std::min(box.top, point.y);
    box.bottom = std::max(box.bottom, point.y);
  }
  // Control points lie outside of what is drawn, never the other way round.
  const float reach = kLeastReach + std::abs(drawing.style.width);
  return {box.left - reach, box.top - reach, box.right + reach, box.bottom + reach};
}

namespace {

// The canvas shows what the view tells from here on, by way of SetCoordinates or ScrollTo.
View TakeView(void (Canvas::*take)(float, float, float, float)) {
  const View view = CurrentView();
  VisibleLeft = view.area.left;
  VisibleTop = view.area.top;
  VisibleRight = view.area.right;
  VisibleBottom = view.area.bottom;
  // Not the difference of its edges, which far from the paper may be none.
  (Picture1->*take)(VisibleLeft, VisibleTop, static_cast<float>(Picture1->PixelWidth()) / SCALE,
                    static_cast<float>(Picture1->PixelHeight()) / SCALE);
  return view;
}

}  // namespace

void RedrawPage() {
  if (!CanvasIsLaidOut()) return;
  const View view = TakeView(&Canvas::SetCoordinates);
  Picture1->SelectLayer(Layer::Page);
  Picture1->Clear();
  PaintPage(*Picture1, view, ItemsOfPage(), view.area);
  Picture1->Invalidate(Layer::Overlay);
}

void ShowPage() {
  if (!CanvasIsLaidOut()) return;
  TakeView(&Canvas::SetCoordinates);
  Picture1->Invalidate(Layer::Page);
  Picture1->Invalidate(Layer::Overlay);
}

void ShowPage(const Box& area) {
  if (CanvasIsLaidOut()) Picture1->Invalidate(Layer::Page, area);
}

void ScrollPage() {
  if (CanvasIsLaidOut()) TakeView(&Canvas::ScrollTo);
}

}  // namespace kelvane
