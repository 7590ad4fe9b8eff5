#include "editing/marks.h"

#include "typography/colours.h"
#include "typography/item_boxes.h"
#include "typography/renderer.h"

namespace kelvane {

namespace {

constexpr float kRoomPixels = 2;  // between an item's ink and its mark
constexpr std::size_t kMostShown = 300;

}  // namespace

bool TooManyToShow(const SelectedItems& items) {
  return items.Count() > kMostShown;
}

void PaintOutline(Painter& painter, const Box& box, ColourValue colour, float width) {
  const Pen pen{colour, width, true};
  painter.DrawLine({box.left, box.top}, {box.right, box.top}, pen);
  painter.DrawLine({box.left, box.bottom}, {box.right, box.bottom}, pen);
  painter.DrawLine({box.left, box.top}, {box.left, box.bottom}, pen);
  painter.DrawLine({box.right, box.top}, {box.right, box.bottom}, pen);
}

void MarkInk(Painter& painter, const Box& ink, ColourValue colour, float width) {
  const float room = Pixels(kRoomPixels);
  PaintOutline(painter, {ink.left - room, ink.top - room, ink.right + room, ink.bottom + room}, colour,
               width);
}

void MarkSelected(Painter& painter) {
  const ColourValue blue = PaletteColour(kBlue);
  const SelectedItems selected = Selection();
  if (TooManyToShow(selected)) return MarkInk(painter, MarkedBox(), blue);
  for (const TextItem* item : selected.texts) MarkInk(painter, InkBoxOf(item->entry), blue);
  for (const DrawingItem* item : selected.drawings) MarkInk(painter, InkBoxOf(item->drawing), blue);
}

void MarkHovered(Painter& painter, std::uint64_t id) {
  const ColourValue cyan = PaletteColour(kCyan);
  if (const TextItem* item = ItemsOfPage().FindText(id)) MarkInk(painter, InkBoxOf(item->entry), cyan);
  if (const DrawingItem* item = ItemsOfPage().FindDrawing(id))
    MarkInk(painter, InkBoxOf(item->drawing), cyan);
}

void PaintChanged(Painter& painter, const View& view, const SelectedItems& items,
                  const std::function<void(TextEntry&)>& changeText,
                  const std::function<void(Drawing&)>& changeDrawing) {
  for (const DrawingItem* item : items.drawings) {
    Drawing drawing = item->drawing;
    changeDrawing(drawing);
    PaintDrawing(painter, view, drawing);
  }
  for (const TextItem* item : items.texts) {
    TextEntry entry = item->entry;
    changeText(entry);
    PaintEntry(painter, view, entry);
  }
}

}  // namespace kelvane
