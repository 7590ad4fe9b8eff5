#include "editing/placed_formulas.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <variant>

#include "document/page_items.h"
#include "typography/metrics.h"

namespace kelvane {

namespace {

constexpr std::size_t kMost = 1000;
constexpr float kNear = 0.02F;  // points that moving may round away

// With its parts as items, so that they can be looked for.
struct Kept {
  PlacedFormula formula;
  std::unique_ptr<const PageItems> items;
};
std::vector<Kept> Placed;

Point PlaceOf(const TextEntry& entry) {
  return {entry.x, entry.y};
}

Point PlaceOf(const Drawing& drawing) {
  return drawing.points.empty() ? Point{} : drawing.points.front();
}

Point Way(Point from, Point to) {
  return {to.x - from.x, to.y - from.y};
}

bool LiesBehind(Point from, Point to, Point way) {
  return std::abs(to.x - from.x - way.x) < kNear && std::abs(to.y - from.y - way.y) < kNear;
}

// Whether one is the other, moved by `way`.
bool IsMoved(const TextEntry& before, const TextEntry& now, Point way) {
  return before.text == now.text && before.font == now.font && before.size == now.size &&
         before.anchor == now.anchor && before.justified == now.justified &&
         LiesBehind(PlaceOf(before), PlaceOf(now), way);
}

bool IsMoved(const Drawing& before, const Drawing& now, Point way) {
  return TokenOfStyle(before.style) == TokenOfStyle(now.style) && before.closed == now.closed &&
         std::ranges::equal(before.points, now.points,
                            [way](Point from, Point to) { return LiesBehind(from, to, way); });
}

const TextEntry& PartOf(const TextItem& item) {
  return item.entry;
}

const Drawing& PartOf(const DrawingItem& item) {
  return item.drawing;
}

template <typename Item>
const Item* FindItem(const std::vector<Item>& items, std::uint64_t id) {
  const auto found = std::ranges::find(items, id, &Item::id);
  return found == items.end() || !found->draws ? nullptr : &*found;
}

// The items of a page that are those parts moved by `way`, put behind `ids`; false if one is missing.
template <typename Item>
bool FindMoved(const std::vector<Item>& parts, const std::vector<Item>& items, Point way,
               std::vector<std::uint64_t>& ids) {
  return std::ranges::all_of(parts, [&](const Item& part) {
    const auto found = std::ranges::find_if(
        items, [&](const Item& item) { return item.draws && IsMoved(PartOf(part), PartOf(item), way); });
    if (found == items.end()) return false;
    ids.push_back(found->id);
    return true;
  });
}

// The formula as it lies on the page now, if one of the parts is the item and all the others lie by it.
template <typename Item>
void LookForFormula(const Kept& kept, const std::vector<Item>& parts, const Item* item,
                    std::optional<PlacedFormula>& best) {
  if (!item) return;
  for (const Item& part : parts) {
    const Point way = Way(PlaceOf(PartOf(part)), PlaceOf(PartOf(*item)));
    if (!IsMoved(PartOf(part), PartOf(*item), way)) continue;
    std::vector<std::uint64_t> ids;
    if (!FindMoved(kept.items->Texts(), ItemsOfPage().Texts(), way, ids) ||
        !FindMoved(kept.items->Drawings(), ItemsOfPage().Drawings(), way, ids) ||
        (best && best->ids.size() >= ids.size()))
      continue;
    best = kept.formula;
    best->cursor = {best->cursor.x + way.x, best->cursor.y + way.y};
    best->ids = ids;
  }
}

}  // namespace

void ResetPlacedFormulas() {
  Placed.clear();
}

void KeepPlacedFormula(PlacedFormula placed) {
  if (Placed.size() == kMost) Placed.erase(Placed.begin());
  auto items = std::make_unique<const PageItems>(placed.page);
  Placed.push_back({std::move(placed), std::move(items)});
}

void KeepPlacedNotation(const std::string& notation, const FormulaStyle& style, std::int16_t mode,
                        Point cursor) {
  const auto set = SetFormula(notation, style);
  const auto* formula = std::get_if<Formula>(&set);
  if (!formula) return;
  const Point at = AlignAtAnchor(cursor, mode, formula->width, style.size);
  KeepPlacedFormula({notation, style, mode, cursor, PageOfFormula(*formula, at), {}});
}

std::optional<PlacedFormula> PlacedFormulaOf(std::uint64_t id) {
  const TextItem* text = FindItem(ItemsOfPage().Texts(), id);
  const DrawingItem* drawing = FindItem(ItemsOfPage().Drawings(), id);
  std::optional<PlacedFormula> best;
  for (auto kept = Placed.rbegin(); kept != Placed.rend(); ++kept) {
    LookForFormula(*kept, kept->items->Texts(), text, best);
    LookForFormula(*kept, kept->items->Drawings(), drawing, best);
  }
  return best;
}

}  // namespace kelvane
