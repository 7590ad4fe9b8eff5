#pragma once

// The commands Undo and Redo.

#include <string>

namespace kelvane {

// What the commands would take back or do again, empty for nothing. What is being typed or drawn counts.
std::string UndoLabel();
std::string RedoLabel();

// Undo takes back the run being typed or the path being drawn, or the last edit. A run that was typed at the
// cursor point opens again for editing; unless it is changed, the next Undo drops it. The mode stays. Both
// bring what they changed into view and frame it for a moment.
void Undo();
void Redo();

}  // namespace kelvane
