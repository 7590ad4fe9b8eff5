#pragma once

// The "Character Designer" window, in which the characters of Math0 are drawn. Not modal: the editor stays
// usable while it is open.

#include <cstdint>

#include "platform/controls.h"

namespace kelvane {

extern Window* DesignerWindow;       // null until it is first shown
extern Canvas* DesignerSide;         // the table of codes and the preview
extern TextBox* DesignerBackground;  // the character behind the grid

void ResetDesigner();

// Menu entry "Character Designer": builds the window if there is none yet, and shows it.
void ShowDesigner();

// The code that is designed. Choosing another one asks before changes are lost.
std::int16_t DesignedCode();
void ChooseDesignedCode(std::int16_t code);

void SaveDesign();
// Puts the shipped strokes of the character in the place of those drawn; saving keeps them.
void RestoreDesign();

// Asks about changes that are not saved: false if the person goes on with them.
bool MayLeaveDesigner();

}  // namespace kelvane
