#include "editing/arrange.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "document/numbers.h"
#include "editing/item_edits.h"
#include "editing/notes.h"
#include "editing/properties.h"
#include "platform/controls.h"
#include "typography/curves.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"

namespace kelvane {

namespace {

// In the order in which ChangeSelected comes to the items.
std::vector<Box> InkBoxes(const SelectedItems& selected) {
  std::vector<Box> boxes;
  for (const TextItem* item : selected.texts) boxes.push_back(InkBoxOf(item->entry));
  for (const DrawingItem* item : selected.drawings) boxes.push_back(InkBoxOf(item->drawing));
  return boxes;
}

// Moves each item by its own way.
void MoveEach(const std::string& label, const std::vector<Point>& ways) {
  auto next = ways.begin();
  ChangeSelected(
      label,
      [&](TextEntry& entry) {
        const Point way = *next++;
        entry.x += way.x;
        entry.y += way.y;
        return way != Point{};
      },
      [&](Drawing& drawing, std::string&) {
        const Point way = *next++;
        MapDrawing(drawing, [&](Point point) { return Point{point.x + way.x, point.y + way.y}; });
        return way != Point{};
      });
}

Point WayToSide(const Box& box, const Box& all, Side side) {
  switch (side) {
    case Side::Left:
      return {all.left - box.left, 0};
    case Side::Centre:
      return {(all.left + all.right) / 2 - (box.left + box.right) / 2, 0};
    case Side::Right:
      return {all.right - box.right, 0};
    case Side::Top:
      return {0, all.top - box.top};
    case Side::Middle:
      return {0, (all.top + all.bottom) / 2 - (box.top + box.bottom) / 2};
    case Side::Bottom:
      return {0, all.bottom - box.bottom};
    case Side::Baseline:
      break;
  }
  return {};
}

void AlignBaselines() {
  const SelectedItems selected = Selection();
  const auto leftmost = std::ranges::min_element(
      selected.texts, {}, [](const TextItem* item) { return InkBoxOf(item->entry).left; });
  if (leftmost == selected.texts.end()) return;
  const float baseline = PlaceRun((*leftmost)->entry).origin.y;
  std::vector<Point> ways;
  for (const TextItem* item : selected.texts) ways.push_back({0, baseline - PlaceRun(item->entry).origin.y});
  ways.resize(selected.Count());
  MoveEach("align", ways);
}

std::string RefusalOfPercentage(const std::string& text) {
  const std::optional<float> percent = NumberOf(text);
  return percent && *percent > 0 ? "" : "The percentage must be a number above 0";
}

std::string RefusalOfAngle(const std::string& text) {
  return NumberOf(text) ? "" : "The angle must be a number of degrees";
}

}  // namespace

bool CanAlign(Side side) {
  const Properties& selected = SelectedProperties();
  return (side == Side::Baseline ? selected.texts : selected.Count()) >= 2;
}

void AlignSelected(Side side) {
  if (side == Side::Baseline) return AlignBaselines();
  const SelectedItems selected = Selection();
  const Box all = BoxOf(selected);
  std::vector<Point> ways;
  for (const Box& box : InkBoxes(selected)) ways.push_back(WayToSide(box, all, side));
  MoveEach("align", ways);
}

bool CanDistribute() {
  return SelectedProperties().Count() >= 3;
}

void DistributeSelected(bool horizontally) {
  struct Stretch {
    float from;
    float to;
  };
  std::vector<Stretch> items;
  for (const Box& box : InkBoxes(Selection()))
    items.push_back(horizontally ? Stretch{box.left, box.right} : Stretch{box.top, box.bottom});
  if (items.size() < 3) return;
  std::vector<std::size_t> order(items.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, [&](std::size_t i) { return items[i].from + items[i].to; });
  float inked = 0;
  for (const Stretch& item : items) inked += item.to - item.from;
  const Stretch all{items[order.front()].from, items[order.back()].to};
  const float gap = (all.to - all.from - inked) / static_cast<float>(items.size() - 1);
  std::vector<Point> ways(items.size());
  float at = all.from;
  for (const std::size_t i : order) {
    const float way = at - items[i].from;
    const bool stays = i == order.front() || i == order.back();
    if (!stays) ways[i] = horizontally ? Point{way, 0} : Point{0, way};
    at += items[i].to - items[i].from + gap;
  }
  MoveEach("distribute", ways);
}

Point Scaled(Point point, const Scaling& scaling) {
  return {scaling.fixed.x + (point.x - scaling.fixed.x) * scaling.x,
          scaling.fixed.y + (point.y - scaling.fixed.y) * scaling.y};
}

void Scale(TextEntry& entry, const Scaling& scaling) {
  const Point at = Scaled({entry.x, entry.y}, scaling);
  entry.x = at.x;
  entry.y = at.y;
  // Sizes of more digits would be read off the box by nobody.
  entry.size = std::round(entry.size * std::min(scaling.x, scaling.y) * 100) / 100;
  entry.amount *= scaling.x;
}

Point Turned(Point point, Point centre, float degrees) {
  const double angle = degrees * std::numbers::pi / 180;
  const double x = static_cast<double>(point.x) - centre.x;
  const double y = static_cast<double>(point.y) - centre.y;
  return {static_cast<float>(centre.x + x * std::cos(angle) - y * std::sin(angle)),
          static_cast<float>(centre.y + x * std::sin(angle) + y * std::cos(angle))};
}

Box FrameOf(const SelectedItems& items) {
  GrowingBox frame;
  for (const TextItem* item : items.texts) frame.Add(InkBoxOf(item->entry));
  for (const DrawingItem* item : items.drawings) frame.Add(ExtentOf(PathOf(item->drawing)).box);
  return frame.Empty() ? Box{} : frame.box;
}

void AskScale() {
  const auto answer = TheDialogs->AskText("Scale", "Percentage:", "100", RefusalOfPercentage);
  if (!answer) return;
  const float factor = *NumberOf(*answer) / 100;
  const Box frame = FrameOf(Selection());
  ScaleSelected({{frame.left, frame.top}, factor, factor});
}

bool CanTurn() {
  return SelectedProperties().drawings > 0;
}

void AskTurn() {
  const auto answer = TheDialogs->AskText("Rotate", "Degrees, clockwise:", "90", RefusalOfAngle);
  if (!answer) return;
  const Box frame = FrameOf(Selection());
  TurnSelected({(frame.left + frame.right) / 2, (frame.top + frame.bottom) / 2}, *NumberOf(*answer));
}

void ScaleSelected(const Scaling& scaling) {
  if (scaling.x == 1 && scaling.y == 1) return;
  ChangeSelected(
      "scale",
      [&](TextEntry& entry) {
        Scale(entry, scaling);
        return true;
      },
      [&](Drawing& drawing, std::string&) {
        MapDrawing(drawing, [&](Point point) { return Scaled(point, scaling); });
        return true;
      });
}

void TurnSelected(Point centre, float degrees) {
  if (degrees == 0) return;
  ChangeSelected("rotate", {}, [&](Drawing& drawing, std::string&) {
    MapDrawing(drawing, [&](Point point) { return Turned(point, centre, degrees); });
    return true;
  });
  if (SelectedProperties().texts > 0) ShowNote(kRunsDoNotTurn);
}

}  // namespace kelvane
