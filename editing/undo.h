#pragma once

// Named edits of the current page and the way back.

#include <string>

namespace kelvane {

void ResetUndo();  // also whenever another page comes into memory

// Call before the page changes; `label` is what the person would call it ("typing").
void BeginEdit(const std::string& label);

// Labels of the next step, empty if there is none.
std::string UndoLabel();
std::string RedoLabel();
void Undo();
void Redo();

}  // namespace kelvane
