#pragma once

// The window "Find": text to find and to put in its place, over the pages of the paper.

namespace kelvane {

void ResetFindWindow();
// The window is made when it is first shown.
void ShowFindWindow();
// F3 and Shift+F3; they show the window if there is nothing to find yet.
void FindAgain(bool forwards);

}  // namespace kelvane
