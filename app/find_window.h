#pragma once

// The window "Find": text to find and to put in its place, over the pages of the paper.

#include "platform/controls.h"

namespace kelvane {

extern Window* FindWindow;

// Makes the window; it is shown by "Find".
void BuildFindWindow();

void ShowFindWindow();
// F3 and Shift+F3; they show the window if there is nothing to find yet.
void FindAgain(bool forwards);

}  // namespace kelvane
