#include "document/page_items.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>

#include "document/common_text.h"
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
void MoveTo(TextItem& item, std::string_view line) {
  if (item.draws) {
    const auto start = static_cast<std::size_t>(item.entry.text.data() - item.line.data());
    item.entry.text = line.substr(start, item.entry.text.size());
  }
  item.line = line;
}
void MoveTo(DrawingItem& item, std::string_view record) {
  item.record = record;
}

// Whether the same lines stand in two stretches of as many.
template <typename Item>
bool SameInAnyOrder(std::span<Item> a, std::span<Item> b) {
  // Sums that differ tell the usual case without sorting.
  const std::hash<std::string_view> hash;
  std::size_t sum = 0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += hash(TextOf(a[i])) - hash(TextOf(b[i]));
  if (sum != 0) return false;
  std::vector<std::string_view> lines[2];
  for (Item& item : a) lines[0].push_back(TextOf(item));
  for (Item& item : b) lines[1].push_back(TextOf(item));
  for (auto& side : lines) std::sort(side.begin(), side.end());
  return lines[0] == lines[1];
}

// Gives items that have no more than their line the identity of old ones, and what was read of them, where
// the lines are the same. If they are as many as before, and not the same lines in another order, each is the
// changed form of the one in its place.
template <typename Item>
void Recognise(std::span<Item> items, std::span<Item> old) {
  const auto keep = [](Item& item, Item& from) {
    const std::string_view text = TextOf(item);
    item = std::move(from);
    MoveTo(item, text);
  };
  if (items.size() == old.size() && !SameInAnyOrder(items, old)) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (TextOf(items[i]) == TextOf(old[i])) {
        keep(items[i], old[i]);
      } else {
        items[i].id = old[i].id;
        Read(items[i]);
      }
    }
    return;
  }
  std::unordered_multimap<std::string_view, Item*> known;
  for (Item& item : old) known.emplace(TextOf(item), &item);
  for (Item& item : items) {
    if (const auto found = known.find(TextOf(item)); found != known.end()) {
      keep(item, *found->second);
      known.erase(found);
    } else {
      item.id = ++LastId;
      Read(item);
    }
  }
}

// Makes the items of one text those of another. The lines at the ends of both keep theirs.
template <typename Item>
void Renew(std::vector<Item>& items, std::string_view before, std::string_view after) {
  const auto [front, back] = LinesInCommon(before, after);
  const auto placeOf = [before](Item& item) {
    return static_cast<std::size_t>(TextOf(item).data() - before.data());
  };
  const auto firstFrom = [&](std::size_t place) {
    return std::partition_point(items.begin(), items.end(),
                                [&](Item& item) { return placeOf(item) < place; });
  };
  const auto first = firstFrom(front), last = firstFrom(before.size() - back);
  std::vector<Item> changed;
  for (std::string_view rest = after.substr(front, after.size() - back - front); !rest.empty();)
    TextOf(changed.emplace_back()) = TakeLine(rest);
  Recognise(std::span(changed), std::span(first, last));
  const auto gone = items.erase(first, last);
  for (Item& item : items) {
    const std::size_t place = placeOf(item);
    const std::size_t to = place < front ? place : place + after.size() - before.size();
    MoveTo(item, after.substr(to, TextOf(item).size()));
  }
  items.insert(gone, std::make_move_iterator(changed.begin()), std::make_move_iterator(changed.end()));
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
    Renew(texts_, *before, *text_);
  }
  if (*records_ != page.drawings) {
    const auto before = std::exchange(records_, std::make_unique<const std::string>(page.drawings));
    Renew(drawings_, *before, *records_);
  }
}

const PageItems& ItemsOfPage() {
  static PageItems items;
  items.Follow(ThePage);
  return items;
}

}  // namespace kelvane
