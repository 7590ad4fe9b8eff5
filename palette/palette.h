#pragma once

// The panel of signs at the right edge of the main window.

#include "platform/controls.h"

namespace kelvane {

extern Canvas* PaletteCanvas;
extern TextBox* SearchBox;

void ResetPalette();
void BuildPalette(Window& window);

// Shown, with the keys in its search box; or hidden, with the keys on the page.
void TogglePalette();
bool PaletteShown();
// What it takes of the window, pixels; 0 while hidden.
int PaletteWidth();
void PlacePalette(const Place& place);

// Whether it is shown, how wide, and the signs used last: in the person's state folder.
void ReadPaletteState();
void WritePaletteState();

}  // namespace kelvane
