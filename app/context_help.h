#pragma once

// F1 and Shift+F1: the page of the manual about a window, a dialog, or the control under the mouse pointer.

#include <string>

#include "platform/controls.h"

namespace kelvane {

// The pages about windows whose controls have headings of their own.
inline constexpr char kEditorPage[] = "The window";
inline constexpr char kDesignerPage[] = "The character designer";

// F1 in a window beside the editor shows the page of that heading; Shift+F1 what is said of the control under
// the pointer.
void AddHelpKeys(Window& window, const std::string& heading);
// Shift+F1 alone: the main window's F1 is a command.
void AddPointedHelpKey(Window& window, const std::string& heading);
// F1 in message boxes and file dialogs.
void AddHelpOfDialogs();

// The heading about a control, by its accessible name, in the window of that page; empty if none is.
std::string HeadingAbout(const std::string& page, const std::string& control);

}  // namespace kelvane
