#pragma once

// Notes at the foot of the window: what was done, or why something was not, when no question is needed.

#include <string>

#include "platform/controls.h"

namespace kelvane {

// Shares its place with the pointer's position: a note stands until the pointer moves.
extern Label* NoteLabel;

void ShowNote(const std::string& text);

}  // namespace kelvane
