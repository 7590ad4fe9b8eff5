#pragma once

// The commands Undo and Redo.

#include <string>

namespace kelvane {

void ResetUndo();  // also whenever another page comes into memory

// What the commands would take back or do again, empty for nothing. What is being typed or drawn counts.
std::string UndoLabel();
std::string RedoLabel();

// Undo takes back the run being typed or the path being drawn, or the last edit. A run that was typed at the
// cursor point opens again for editing; unless it is changed, the next Undo drops it. The mode stays.
void Undo();
void Redo();

}  // namespace kelvane
