#include "editing/placed_formulas.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "document/page_items.h"

namespace kelvane {

namespace {

constexpr std::size_t kMost = 1000;
constexpr float kNear = 0.02F;  // points that moving may round away

std::vector<PlacedFormula> Placed;

// Whether all items lie as far from where they were, which the first one tells.
class Shift {
 public:
  bool Fits(Point before, Point now) {
    const Point way = {now.x - before.x, now.y - before.y};
    if (!way_) way_ = way;
    return std::abs(way.x - way_->x) < kNear && std::abs(way.y - way_->y) < kNear;
  }
  Point Way() const { return way_.value_or(Point{}); }

 private:
  std::optional<Point> way_;
};

bool SameText(const TextEntry& before, const TextEntry& now, Shift& shift) {
  return before.text == now.text && before.font == now.font && before.size == now.size &&
         before.anchor == now.anchor && before.justified == now.justified &&
         shift.Fits({before.x, before.y}, {now.x, now.y});
}

bool SameDrawing(const Drawing& before, const Drawing& now, Shift& shift) {
  return TokenOfStyle(before.style) == TokenOfStyle(now.style) && before.closed == now.closed &&
         std::ranges::equal(before.points, now.points,
                            [&](Point from, Point to) { return shift.Fits(from, to); });
}

template <typename Item>
const Item* Find(const std::vector<Item>& items, std::uint64_t id) {
  const auto found = std::ranges::find(items, id, &Item::id);
  return found == items.end() || !found->draws ? nullptr : &*found;
}

// Whether its items are on the page as they were placed, apart from their place.
bool IsWhole(const PlacedFormula& placed, Shift& shift) {
  const PageItems then(placed.page);
  const PageItems& now = ItemsOfPage();
  auto id = placed.ids.begin();
  for (const TextItem& before : then.Texts()) {
    const TextItem* item = Find(now.Texts(), *id++);
    if (!item || !SameText(before.entry, item->entry, shift)) return false;
  }
  for (const DrawingItem& before : then.Drawings()) {
    const DrawingItem* item = Find(now.Drawings(), *id++);
    if (!item || !SameDrawing(before.drawing, item->drawing, shift)) return false;
  }
  return true;
}

}  // namespace

void ResetPlacedFormulas() {
  Placed.clear();
}

void KeepPlacedFormula(PlacedFormula placed) {
  if (Placed.size() == kMost) Placed.erase(Placed.begin());
  Placed.push_back(std::move(placed));
}

std::optional<PlacedFormula> PlacedFormulaOf(std::uint64_t id) {
  // The last one first: an item may have been handed on to the formula that took another's place.
  for (auto placed = Placed.rbegin(); placed != Placed.rend(); ++placed) {
    if (std::ranges::find(placed->ids, id) == placed->ids.end()) continue;
    Shift shift;
    if (!IsWhole(*placed, shift)) continue;
    PlacedFormula now = *placed;
    now.cursor = {now.cursor.x + shift.Way().x, now.cursor.y + shift.Way().y};
    return now;
  }
  return std::nullopt;
}

}  // namespace kelvane
