#include "editing/picking.h"

#include <algorithm>

#include "document/page_items.h"
#include "editing/selection.h"
#include "editing/tool.h"
#include "typography/curves.h"
#include "typography/item_boxes.h"

namespace kelvane {

namespace {

constexpr float kPickPixels = 4;  // a click this near to an item's ink picks it

bool Inside(const Box& inner, const Box& outer) {
  return inner.left >= outer.left && inner.right <= outer.right && inner.top >= outer.top &&
         inner.bottom <= outer.bottom;
}

}  // namespace

std::vector<std::uint64_t> ItemsAt(Point at) {
  const float within = Pixels(kPickPixels);
  std::vector<std::uint64_t> ids;
  const PageItems& items = ItemsOfPage();
  for (auto item = items.Texts().rbegin(); item != items.Texts().rend(); ++item)
    if (item->draws && DistanceTo(item->entry, at, within) <= within) ids.push_back(item->id);
  for (auto item = items.Drawings().rbegin(); item != items.Drawings().rend(); ++item)
    if (item->draws && DistanceTo(item->drawing, at, within) <= within) ids.push_back(item->id);
  return ids;
}

bool IsAtMarkedBox(Point at) {
  return DistanceTo(MarkedBox(), at) <= Pixels(kPickPixels);
}

bool Touch(const Box& a, const Box& b) {
  return a.left <= b.right && b.left <= a.right && a.top <= b.bottom && b.top <= a.bottom;
}

void SelectInBox(Point from, Point to, bool andSelected) {
  const Box box = BoxBetween(from, to);
  const bool touching = to.x < from.x;
  std::vector<std::uint64_t> ids;
  const auto offer = [&](const auto& item, const Box& ink) {
    if ((andSelected && IsSelected(item.id)) || (touching ? Touch(ink, box) : Inside(ink, box)))
      ids.push_back(item.id);
  };
  const PageItems& items = ItemsOfPage();
  for (const TextItem& item : items.Texts())
    if (item.draws) offer(item, InkBoxOf(item.entry));
  for (const DrawingItem& item : items.Drawings())
    if (item.draws) offer(item, InkBoxOf(item.drawing));
  Select(ids);
}

bool SelectNext(bool forwards) {
  // Down the page, then to the right, as pages are read and saved.
  struct Spot {
    float y;
    float x;
    std::uint64_t id;
  };
  std::vector<Spot> places;
  const PageItems& items = ItemsOfPage();
  for (const TextItem& item : items.Texts())
    if (item.draws) places.push_back({item.entry.y, item.entry.x, item.id});
  for (const DrawingItem& item : items.Drawings())
    if (item.draws) places.push_back({item.drawing.points[0].y, item.drawing.points[0].x, item.id});
  std::stable_sort(places.begin(), places.end(),
                   [](const Spot& a, const Spot& b) { return a.y < b.y || (a.y == b.y && a.x < b.x); });
  if (!forwards) std::reverse(places.begin(), places.end());
  const auto selected = [](const Spot& place) { return IsSelected(place.id); };
  const auto last = std::find_if(places.rbegin(), places.rend(), selected);
  const auto next = last == places.rend() ? places.begin() : last.base();
  if (next == places.end()) return false;
  Select({next->id});
  ShowCursor();
  return true;
}

bool SelectUnder(Point at) {
  const std::vector<std::uint64_t> ids = ItemsAt(at);
  if (std::ranges::any_of(ids, IsSelected)) return true;
  if (ids.empty()) return AnythingSelected() && DistanceTo(MarkedBox(), at) == 0;
  Select({ids.front()});
  ShowCursor();
  return true;
}

}  // namespace kelvane
