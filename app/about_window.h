#pragma once

// The About box: picture, version, notices, and what the program is made of and runs with.

#include "platform/text_view.h"

namespace kelvane {

// Null until it is made.
extern Window* AboutWindow;
extern TextView* AboutText;

void ResetAboutWindow();

// Menu entry "About".
void ShowAbout();

}  // namespace kelvane
