#include "editing/selection.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "typography/item_boxes.h"

namespace kelvane {

float MarkedLeft;
float MarkedBottom;
float MarkedRight;
float MarkedTop;

namespace {

std::unordered_set<std::uint64_t> Ids;
std::uint64_t Revision = 1;

void TakeBox(const Box& box) {
  MarkedLeft = box.left;
  MarkedBottom = box.top;
  MarkedRight = box.right;
  MarkedTop = box.bottom;
}

void Enclose(Box& all, const Box& box, bool first) {
  all = first ? box
              : Box{std::min(all.left, box.left), std::min(all.top, box.top), std::max(all.right, box.right),
                    std::max(all.bottom, box.bottom)};
}

}  // namespace

Box MarkedBox() {
  return {MarkedLeft, MarkedBottom, MarkedRight, MarkedTop};
}

void ClearMarkedBox() {
  Ids.clear();
  ++Revision;
  TakeBox({});
}

std::uint64_t SelectionRevision() {
  return Revision;
}

std::vector<std::uint64_t> SelectedItems::Ids() const {
  std::vector<std::uint64_t> ids;
  for (const TextItem* item : texts) ids.push_back(item->id);
  for (const DrawingItem* item : drawings) ids.push_back(item->id);
  return ids;
}

SelectedItems Selection() {
  SelectedItems selected;
  if (Ids.empty()) return selected;
  const PageItems& items = ItemsOfPage();
  for (const TextItem& item : items.Texts())
    if (item.draws && Ids.contains(item.id)) selected.texts.push_back(&item);
  for (const DrawingItem& item : items.Drawings())
    if (item.draws && Ids.contains(item.id)) selected.drawings.push_back(&item);
  return selected;
}

bool AnythingSelected() {
  return !Ids.empty();
}

bool IsSelected(std::uint64_t id) {
  return Ids.contains(id);
}

void Select(const std::vector<std::uint64_t>& ids) {
  Ids = {ids.begin(), ids.end()};
  FollowPage();
}

void SelectAlso(std::uint64_t id) {
  Ids.insert(id);
  FollowPage();
}

void Deselect(std::uint64_t id) {
  Ids.erase(id);
  FollowPage();
}

void SelectAll() {
  Ids.clear();
  const PageItems& items = ItemsOfPage();
  for (const TextItem& item : items.Texts())
    if (item.draws) Ids.insert(item.id);
  for (const DrawingItem& item : items.Drawings())
    if (item.draws) Ids.insert(item.id);
  FollowPage();
}

Box BoxOf(const SelectedItems& items) {
  Box box;
  bool first = true;
  for (const TextItem* item : items.texts) Enclose(box, InkBoxOf(item->entry), std::exchange(first, false));
  for (const DrawingItem* item : items.drawings)
    Enclose(box, InkBoxOf(item->drawing), std::exchange(first, false));
  return box;
}

void FollowPage() {
  ++Revision;
  if (Ids.empty()) return TakeBox({});
  const SelectedItems selected = Selection();
  const std::vector<std::uint64_t> ids = selected.Ids();
  Ids = {ids.begin(), ids.end()};
  TakeBox(BoxOf(selected));
}

}  // namespace kelvane
