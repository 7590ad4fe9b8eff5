#include "document/page_items.h"

#include <algorithm>
#include <functional>
#include <string>
#include <unordered_map>
#include <utility>

#include "document/lines.h"

namespace kelvane {
namespace {

std::uint64_t LastId = 0;
std::uint64_t LastReading = 0;

std::string_view& TextOf(TextItem& item) {
  return item.line;
}
std::string_view& TextOf(DrawingItem& item) {
  return item.record;
}

void Read(TextItem& item) {
  item.reading = ++LastReading;
  item.entry = {};
  item.draws = ParseTextEntry(item.line, item.entry);
}
void Read(DrawingItem& item) {
  item.drawing = {};
  item.draws = ParseDrawing(item.record, item.drawing);
}

// What was read of an item stays true when its text is found elsewhere, but for the views into it.
void Carry(TextItem& item, TextItem& from) {
  if (from.draws) {
    item.entry = from.entry;
    item.entry.text = item.line.substr(static_cast<std::size_t>(from.entry.text.data() - from.line.data()),
                                       from.entry.text.size());
  }
  item.draws = from.draws;
  item.reading = from.reading;
}
void Carry(DrawingItem& item, DrawingItem& from) {
  item.drawing = std::move(from.drawing);
  item.draws = from.draws;
}

template <typename Item>
bool SameInAnyOrder(std::vector<Item>& a, std::vector<Item>& b, std::size_t from, std::size_t to) {
  // Sums that differ tell the usual case without sorting.
  const std::hash<std::string_view> hash;
  std::size_t sum = 0;
  for (std::size_t i = from; i < to; ++i) sum += hash(TextOf(a[i])) - hash(TextOf(b[i]));
  if (sum != 0) return false;
  std::vector<std::string_view> lines[2];
  for (std::size_t i = from; i < to; ++i) {
    lines[0].push_back(TextOf(a[i]));
    lines[1].push_back(TextOf(b[i]));
  }
  for (auto& side : lines) std::sort(side.begin(), side.end());
  return lines[0] == lines[1];
}

// Reads the lines of `content` as items. What equals a line of `old` takes over its identity and what was
// read of it: lines before the first and behind the last difference, and lines that were moved between these.
// If as many lines stand between them as before, and not the same ones in another order, each is the changed
// form of the one in its place.
template <typename Item>
void Take(std::vector<Item>& items, std::string_view content, std::vector<Item> old) {
  items.clear();
  items.reserve(old.size() + 1);
  while (!content.empty()) TextOf(items.emplace_back()) = TakeLine(content);

  const auto same = [](Item& a, Item& b) { return TextOf(a) == TextOf(b); };
  const auto keep = [](Item& item, Item& from) {
    item.id = from.id;
    Carry(item, from);
  };
  const std::size_t least = std::min(items.size(), old.size());
  std::size_t front = 0;
  while (front < least && same(items[front], old[front])) {
    keep(items[front], old[front]);
    ++front;
  }
  std::size_t back = 0;
  while (back < least - front && same(items[items.size() - 1 - back], old[old.size() - 1 - back])) {
    keep(items[items.size() - 1 - back], old[old.size() - 1 - back]);
    ++back;
  }
  const std::size_t end = items.size() - back;
  const bool inPlace = items.size() == old.size() && !SameInAnyOrder(items, old, front, end);
  std::unordered_multimap<std::string_view, Item*> moved;
  for (std::size_t i = front; i < old.size() - back && !inPlace; ++i) moved.emplace(TextOf(old[i]), &old[i]);
  for (std::size_t i = front; i < end; ++i) {
    const auto found = moved.find(TextOf(items[i]));
    if (found != moved.end()) {
      keep(items[i], *found->second);
      moved.erase(found);
      continue;
    }
    items[i].id = inPlace ? old[i].id : ++LastId;
    Read(items[i]);
  }
}

template <typename Item>
const Item* Find(const std::vector<Item>& items, std::uint64_t id) {
  const auto item = std::ranges::find(items, id, &Item::id);
  return item == items.end() || !item->draws ? nullptr : &*item;
}

}  // namespace

const TextItem* PageItems::FindText(std::uint64_t id) const {
  return Find(texts_, id);
}

const DrawingItem* PageItems::FindDrawing(std::uint64_t id) const {
  return Find(drawings_, id);
}

void PageItems::Follow(const Page& page) {
  drawingCount_ = page.drawingCount;
  // What the old views point into must live until all is taken over.
  if (*text_ != page.text) {
    const auto before = std::exchange(text_, std::make_unique<const std::string>(page.text));
    Take(texts_, *text_, std::move(texts_));
  }
  if (*records_ != page.drawings) {
    const auto before = std::exchange(records_, std::make_unique<const std::string>(page.drawings));
    Take(drawings_, *records_, std::move(drawings_));
  }
}

const PageItems& ItemsOfPage() {
  static PageItems items;
  items.Follow(ThePage);
  return items;
}

}  // namespace kelvane
