#include "editing/item_edits.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "document/lines.h"
#include "editing/edit.h"
#include "platform/failure.h"

namespace kelvane {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

// Items and their new texts, in the page's order; an empty text takes the item away.
template <typename Item>
using Changes = std::vector<std::pair<const Item*, std::string>>;

std::string_view TextOf(const TextItem& item) {
  return item.line;
}
std::string_view TextOf(const DrawingItem& item) {
  return item.record;
}

template <typename Item>
std::string Rewritten(const std::vector<Item>& items, const Changes<Item>& changes, int& removed) {
  std::string text;
  auto change = changes.begin();
  for (const Item& item : items) {
    const bool changed = change != changes.end() && change->first == &item;
    const std::string_view line = changed ? std::string_view((change++)->second) : TextOf(item);
    if (changed && line.empty()) {
      ++removed;
    } else {
      text.append(line).append(kLineEnd);
    }
  }
  return text;
}

void Rewrite(const std::string& label, const Changes<TextItem>& texts, const Changes<DrawingItem>& drawings) {
  const PageItems& items = ItemsOfPage();
  int removed = 0;
  int removedDrawings = 0;
  std::string newTexts = Rewritten(items.Texts(), texts, removed);
  std::string newDrawings = Rewritten(items.Drawings(), drawings, removedDrawings);
  EditPage(label, [&](Page& page) {
    if (!texts.empty()) page.text = std::move(newTexts);
    if (!drawings.empty()) page.drawings = std::move(newDrawings);
    page.drawingCount = static_cast<std::int16_t>(page.drawingCount - removedDrawings);
  });
}

Point Moved(Point point, float dx, float dy) {
  return {point.x + dx, point.y + dy};
}

std::string MovedLine(TextEntry entry, float dx, float dy) {
  entry.x += dx;
  entry.y += dy;
  return LineOfEntry(entry);
}

// The style of a record: its last token, which carries colour and width.
std::string StyleOf(const DrawingItem& item) {
  return std::string(item.record.substr(item.record.rfind(' ') + 1));
}

std::uint64_t AddedRevision;  // of the selection, when items were added last

}  // namespace

bool JustAdded() {
  return AnythingSelected() && SelectionRevision() == AddedRevision;
}

void ChangeSelected(const std::string& label, const ChangeText& text, const ChangeDrawing& drawing) {
  Changes<TextItem> texts;
  Changes<DrawingItem> drawings;
  const SelectedItems selected = Selection();
  for (const TextItem* item : selected.texts) {
    TextEntry entry = item->entry;
    if (text && text(entry)) texts.emplace_back(item, LineOfEntry(entry));
  }
  for (const DrawingItem* item : selected.drawings) {
    Drawing changed = item->drawing;
    std::string style = StyleOf(*item);
    if (drawing && drawing(changed, style)) drawings.emplace_back(item, RecordOfDrawing(changed, style));
  }
  if (!texts.empty() || !drawings.empty()) Rewrite(label, texts, drawings);
}

void MoveSelected(float dx, float dy) {
  if (dx == 0 && dy == 0) return;
  ChangeSelected(
      "move",
      [&](TextEntry& entry) {
        entry.x += dx;
        entry.y += dy;
        return true;
      },
      [&](Drawing& drawing, std::string&) {
        MapDrawing(drawing, [&](Point point) { return Moved(point, dx, dy); });
        return true;
      });
}

void DeleteSelected(const std::string& label) {
  Changes<TextItem> texts;
  Changes<DrawingItem> drawings;
  const SelectedItems selected = Selection();
  for (const TextItem* item : selected.texts) texts.emplace_back(item, "");
  for (const DrawingItem* item : selected.drawings) drawings.emplace_back(item, "");
  if (selected.Count() > 0) Rewrite(label, texts, drawings);
}

namespace {

template <typename Item>
std::string Reordered(const std::vector<Item>& items, bool toFront) {
  std::string selected;
  std::string others;
  for (const Item& item : items)
    (IsSelected(item.id) ? selected : others).append(TextOf(item)).append(kLineEnd);
  return toFront ? others + selected : selected + others;
}

}  // namespace

void ReorderSelected(bool toFront) {
  const SelectedItems selected = Selection();
  const PageItems& items = ItemsOfPage();
  EditPage("order", [&](Page& page) {
    if (!selected.texts.empty()) page.text = Reordered(items.Texts(), toFront);
    if (!selected.drawings.empty()) page.drawings = Reordered(items.Drawings(), toFront);
  });
}

std::string LinesOfSelected() {
  std::string lines;
  const SelectedItems selected = Selection();
  for (const TextItem* item : selected.texts) lines.append(item->line).append(kLineEnd);
  for (const DrawingItem* item : selected.drawings)
    lines.append(DrawingRecordToLine(item->record)).append(kLineEnd);
  return lines;
}

Page ReadItems(std::string_view lines) {
  // What a page file may hold, read as one.
  Page page = PageOfContent(lines, "on the clipboard");
  for (std::string_view rest = page.text; !rest.empty();) {
    const std::string_view line = TakeLine(rest);
    TextEntry entry;
    if (!line.empty() && !ParseTextEntry(line, entry))
      throw Failure("This is no line of a page: " + std::string(line.substr(0, 60)));
  }
  return page;
}

namespace {

// The items that stay, as their lines, and how many they are.
template <typename Item>
std::size_t Stay(const std::vector<Item>& items, const std::vector<std::uint64_t>& instead,
                 std::string& lines) {
  std::size_t count = 0;
  for (const Item& item : items) {
    if (std::ranges::find(instead, item.id) != instead.end()) continue;
    lines.append(TextOf(item)).append(kLineEnd);
    ++count;
  }
  return count;
}

}  // namespace

void AddPage(const std::string& label, const Page& added, const std::vector<std::uint64_t>& instead) {
  std::string texts;
  std::string drawings;
  const std::size_t textsBefore = Stay(ItemsOfPage().Texts(), instead, texts);
  const std::size_t drawingsBefore = Stay(ItemsOfPage().Drawings(), instead, drawings);
  // Without items that go, the lines stay as they stand.
  if (instead.empty()) {
    texts = ThePage.text;
    if (!texts.empty() && !texts.ends_with('\n')) texts.append(kLineEnd);
    drawings = ThePage.drawings;
  }
  const std::size_t count = drawingsBefore + static_cast<std::size_t>(added.drawingCount);
  if (count > std::numeric_limits<std::int16_t>::max()) throw Failure("The page can hold no more drawings.");
  EditPage(label, [&](Page& page) {
    page.text = texts + added.text;
    page.drawings = drawings + added.drawings;
    page.drawingCount = static_cast<std::int16_t>(count);
  });
  std::vector<std::uint64_t> ids;
  const PageItems& items = ItemsOfPage();
  for (std::size_t i = textsBefore; i < items.Texts().size(); ++i) ids.push_back(items.Texts()[i].id);
  for (std::size_t i = drawingsBefore; i < items.Drawings().size(); ++i)
    ids.push_back(items.Drawings()[i].id);
  Select(ids);
  AddedRevision = SelectionRevision();
}

void AddItems(const std::string& label, const Page& added, float dx, float dy) {
  std::string texts;
  std::string drawings;
  std::size_t count = 0;
  for (std::string_view rest = added.text; !rest.empty();) {
    TextEntry entry;
    if (!ParseTextEntry(TakeLine(rest), entry)) continue;
    texts.append(MovedLine(entry, dx, dy)).append(kLineEnd);
  }
  for (std::string_view rest = added.drawings; !rest.empty(); ++count) {
    const std::string_view record = TakeLine(rest);
    Drawing drawing;
    if (!ParseDrawing(record, drawing)) continue;
    MapDrawing(drawing, [&](Point point) { return Moved(point, dx, dy); });
    drawings.append(RecordOfDrawing(drawing, record.substr(record.rfind(' ') + 1))).append(kLineEnd);
  }
  if (!texts.empty() || !drawings.empty())
    AddPage(label, {texts, static_cast<std::int16_t>(count), drawings});
}

void CopySelected(const std::string& label, float dx, float dy) {
  AddItems(label, ReadItems(LinesOfSelected()), dx, dy);
}

void ReplaceText(const std::string& label, std::uint64_t id, std::string_view line) {
  if (const TextItem* item = ItemsOfPage().FindText(id)) Rewrite(label, {{item, std::string(line)}}, {});
}

}  // namespace kelvane
