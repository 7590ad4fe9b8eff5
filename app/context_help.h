#pragma once

// F1 and Shift+F1: the page of the manual about a window, a dialog, or the control under the mouse pointer.

#include <string>

#include "platform/controls.h"

namespace kelvane {

// F1 in the window shows the page of that heading; Shift+F1 that of the control under the pointer.
void AddHelpKeys(Window& window, const std::string& heading);
// Shift+F1 alone: the main window's F1 is a command.
void AddPointedHelpKey(Window& window, const std::string& heading);
// F1 in message boxes and file dialogs.
void AddHelpOfDialogs();

// The heading about a control of the main window, by its accessible name; empty if none is.
std::string HeadingAbout(const std::string& control);

}  // namespace kelvane
