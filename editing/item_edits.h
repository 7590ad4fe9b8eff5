#pragma once

// Edits of whole items. Each is one step back; the items keep their identity, and stay selected.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "editing/selection.h"

namespace kelvane {

// Rewrites the selected items: `text` and `drawing` change an item and return true, or false to leave it as it
// is. A drawing's style is the last token of its record.
using ChangeText = std::function<bool(TextEntry& entry)>;
using ChangeDrawing = std::function<bool(Drawing& drawing, std::string& style)>;
void ChangeSelected(const std::string& label, const ChangeText& text, const ChangeDrawing& drawing);

// Moves the selected items by so many points.
void MoveSelected(float dx, float dy);
void DeleteSelected();

// The selected items as the lines of a page file.
std::string LinesOfSelected();
// Adds the items that such lines hold, moved by so many points, and selects them. Throws Failure if a line is
// neither a text entry nor a drawing; nothing is changed then.
void AddItems(const std::string& label, std::string_view lines, float dx, float dy);

// Replaces the line of one text item, in its place; an empty line takes it away.
void ReplaceText(const std::string& label, std::uint64_t id, std::string_view line);

}  // namespace kelvane
