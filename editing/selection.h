#pragma once

// The selected items of the page.

#include <cstdint>
#include <vector>

#include "document/page_items.h"
#include "platform/canvas.h"

namespace kelvane {

// The marked box: that of the selection's ink in points, all 0 while nothing is selected. Bottom is the
// lesser y.
extern float MarkedLeft;
extern float MarkedBottom;
extern float MarkedRight;
extern float MarkedTop;
Box MarkedBox();
// Drops the selection.
void ClearMarkedBox();

// Selected items that are still on the page, in the page's order.
struct SelectedItems {
  std::vector<const TextItem*> texts;
  std::vector<const DrawingItem*> drawings;
  std::size_t Count() const { return texts.size() + drawings.size(); }
  std::vector<std::uint64_t> Ids() const;
};
SelectedItems Selection();
bool AnythingSelected();
bool IsSelected(std::uint64_t id);

// Items that draw nothing cannot be selected.
void Select(const std::vector<std::uint64_t>& ids);
void SelectAlso(std::uint64_t id);
void Deselect(std::uint64_t id);
void SelectAll();

// The box around the ink of items, points; all 0 for none.
Box BoxOf(const SelectedItems& items);

// Another number whenever the selection or a selected item may have changed.
std::uint64_t SelectionRevision();

// Brings the marked box up to date after an edit, and forgets items that are gone.
void FollowPage();

}  // namespace kelvane
