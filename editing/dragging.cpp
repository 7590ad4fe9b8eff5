#include "editing/dragging.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <vector>

#include "document/numbers.h"
#include "document/page_items.h"
#include "editing/item_edits.h"
#include "editing/marks.h"
#include "editing/picking.h"
#include "editing/selection.h"
#include "typography/colours.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"

namespace kelvane {

bool ShowDistance = false;

namespace {

constexpr float kAttractPixels = 4;  // how far guides and neighbours attract what is moved
constexpr float kStillPixels = 2;    // a pointer that has left its line no farther moves along the line

Point TakenAt;
float DX;
float DY;
Box Moved;        // the items' box before
Point Reference;  // their point that snaps to the grid
float Baseline;
std::vector<float> LinesX;  // what attracts: guides, edges and middles of neighbours
std::vector<float> LinesY;
std::optional<float> AttractedX;  // the lines that do
std::optional<float> AttractedY;

float BaselineOf(const TextEntry& entry) {
  return AlignAtAnchor({entry.x, entry.y}, entry.anchor, 0, entry.size).y;
}

// Notes what can attract the selected items: guides, and the items in view that stay.
void GatherLines() {
  LinesX.clear();
  LinesY.clear();
  for (const float x : GuideX)
    if (x != 0) LinesX.push_back(x);
  for (const float y : GuideY)
    if (y != 0) LinesY.push_back(y);
  const Box view = CurrentView().area;
  const auto addSides = [&](const Box& box) {
    for (const float x : {box.left, (box.left + box.right) / 2, box.right}) LinesX.push_back(x);
  };
  const PageItems& items = ItemsOfPage();
  for (const TextItem& item : items.Texts()) {
    if (!item.draws || IsSelected(item.id) || item.entry.y < view.top || item.entry.y > view.bottom) continue;
    addSides(InkBoxOf(item.entry));
    LinesY.push_back(BaselineOf(item.entry));
  }
  for (const DrawingItem& item : items.Drawings()) {
    if (!item.draws || IsSelected(item.id)) continue;
    const Box box = InkBoxOf(item.drawing);
    if (!Touch(box, view)) continue;
    addSides(box);
    for (const float y : {box.top, (box.top + box.bottom) / 2, box.bottom}) LinesY.push_back(y);
  }
  std::sort(LinesX.begin(), LinesX.end());
  std::sort(LinesY.begin(), LinesY.end());
}

// How far a place is from a line.
struct Attraction {
  float shift = 0;
  float line = 0;
};

// That of the line nearest to one of some places, if it is near enough.
std::optional<Attraction> Attract(const std::vector<float>& lines, std::initializer_list<float> places) {
  float nearest = Pixels(kAttractPixels);
  std::optional<Attraction> best;
  for (const float place : places) {
    const auto above = std::lower_bound(lines.begin(), lines.end(), place);
    for (const auto& line : {above, above == lines.begin() ? above : above - 1}) {
      if (line == lines.end() || std::abs(*line - place) > nearest) continue;
      nearest = std::abs(*line - place);
      best = {*line - place, *line};
    }
  }
  return best;
}

// A way along one axis, brought to a line or to the grid.
void Settle(float& way, std::optional<float>& attracted, const std::vector<float>& lines,
            std::initializer_list<float> places, float reference, std::int16_t gridStep) {
  if (const auto attraction = Attract(lines, places)) {
    way += attraction->shift;
    attracted = attraction->line;
  } else {
    way = SnapToGrid(reference + way, gridStep) - reference;
  }
}

Point Shifted(Point point) {
  return {point.x + DX, point.y + DY};
}

}  // namespace

void BeginDrag(Point from, std::uint64_t held) {
  TakenAt = from;
  const SelectedItems selected = Selection();
  Moved = BoxOf(selected);
  Reference = {Moved.left, Moved.top};
  Baseline = Moved.bottom;
  if (!selected.drawings.empty()) Reference = selected.drawings.front()->drawing.points.front();
  if (!selected.texts.empty()) {
    const TextItem* item = IsSelected(held) ? ItemsOfPage().FindText(held) : nullptr;
    const TextEntry& entry = (item ? item : selected.texts.front())->entry;
    Reference = {entry.x, entry.y};
    Baseline = BaselineOf(entry);
  }
  DX = DY = 0;
  AttractedX = AttractedY = {};
  GatherLines();
}

void DragTo(const Pointer& pointer) {
  DX = pointer.at.x - TakenAt.x;
  DY = pointer.at.y - TakenAt.y;
  if (pointer.shift) (std::abs(DX) < std::abs(DY) ? DX : DY) = 0;
  AttractedX = AttractedY = {};
  if (pointer.alt) return;
  // What is moved straight stays on its line, whatever lies beside it.
  if (std::abs(DX) <= Pixels(kStillPixels)) {
    DX = 0;
  } else {
    const float left = Moved.left + DX;
    const float right = Moved.right + DX;
    Settle(DX, AttractedX, LinesX, {left, (left + right) / 2, right, Reference.x + DX}, Reference.x,
           GridStepH);
  }
  if (std::abs(DY) <= Pixels(kStillPixels)) {
    DY = 0;
  } else {
    Settle(DY, AttractedY, LinesY, {Baseline + DY, Reference.y + DY}, Reference.y, GridStepV);
  }
}

void PutDown(bool copying) {
  if (DX == 0 && DY == 0) return;
  copying ? CopySelected("copy", DX, DY) : MoveSelected(DX, DY);
}

void PaintDrag(Painter& painter, const View& view) {
  const SelectedItems selected = Selection();
  if (TooManyToShow(selected)) {
    MarkInk(painter, {Moved.left + DX, Moved.top + DY, Moved.right + DX, Moved.bottom + DY},
            PaletteColour(kBlue));
  } else {
    PaintChanged(
        painter, view, selected,
        [](TextEntry& entry) {
          entry.x += DX;
          entry.y += DY;
        },
        [](Drawing& drawing) { MapDrawing(drawing, Shifted); });
  }
  const Pen thin{PaletteColour(kMagenta), 1, true};
  if (AttractedX) painter.DrawLine({*AttractedX, view.area.top}, {*AttractedX, view.area.bottom}, thin);
  if (AttractedY) painter.DrawLine({view.area.left, *AttractedY}, {view.area.right, *AttractedY}, thin);
}

std::string DragHint() {
  return "dx " + FormatUpTo(DX, 2) + ", dy " + FormatUpTo(DY, 2) + ", " + FormatUpTo(std::hypot(DX, DY), 2) +
         " pt";
}

}  // namespace kelvane
