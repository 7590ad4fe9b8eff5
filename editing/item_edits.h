#pragma once

// Edits of whole items. Each is one step back; the items keep their identity, and stay selected.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "editing/selection.h"

namespace kelvane {

// Rewrites the selected items: `text` and `drawing` change an item and return true, or false to leave it as
// it is. They are called in the page's order, for runs first. A drawing's style is the last token of its
// record.
using ChangeText = std::function<bool(TextEntry& entry)>;
using ChangeDrawing = std::function<bool(Drawing& drawing, std::string& style)>;
void ChangeSelected(const std::string& label, const ChangeText& text, const ChangeDrawing& drawing);

// Moves the selected items by so many points.
void MoveSelected(float dx, float dy);
void DeleteSelected(const std::string& label = "delete");
// Puts the selected runs and drawings behind all others of their kind, so that they lie on top, or before
// them. Among each other they keep their order.
void ReorderSelected(bool toFront);

// The selected items as the lines of a page file.
std::string LinesOfSelected();
// The items that such lines hold. Throws Failure if a line is neither a text entry nor a drawing.
Page ReadItems(std::string_view lines);
// Adds such items, moved by so many points, and selects them. Throws Failure if the page has no room for
// them; nothing is changed then.
void AddItems(const std::string& label, const Page& added, float dx, float dy);
void CopySelected(const std::string& label, float dx, float dy);

// Adds a page's items behind all others, in the place of others that go, and selects them.
// Throws as AddItems does.
void AddPage(const std::string& label, const Page& added, const std::vector<std::uint64_t>& instead = {});
// Whether the selection is what was added last, and nothing has changed it since.
bool JustAdded();

// Replaces the line of one text item, in its place; an empty line takes it away.
void ReplaceText(const std::string& label, std::uint64_t id, std::string_view line);

}  // namespace kelvane
