#pragma once

// Selecting, moving and copying items with the mouse and the keys (mode 0).

#include <cstdint>

#include "editing/tool.h"

namespace kelvane {

void ResetSelectTool();

Tool& SelectTool();

// "&Move": the selected items follow the pointer until the next click, or until Escape.
void StartMove();

// Opens the selected item as a double click on it does, if it is the only one.
bool CanOpenSelected();
void OpenSelected();

// Filled at start-up: opens an item that was clicked twice, or chosen with Enter. `at` is where.
using OpenItem = void (*)(std::uint64_t id, Point at);
extern OpenItem OpenText;
// Opens the notation of the formula that an item belongs to; false if it belongs to none. Ctrl with a double
// click.
extern bool (*OpenPlacedFormula)(std::uint64_t id);
extern OpenItem OpenDrawing;

}  // namespace kelvane
