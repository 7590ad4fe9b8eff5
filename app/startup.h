#pragma once

// Start-up, once, before the first event.

#include <string>

namespace kelvane {

// Start values of all module-wide state, and the hooks by which one subject causes something in another.
// Start-up calls it first; so does every test.
void ResetProgram();

// The program folder for the folder the program was started from: that folder with a backslash at its end,
// or the installed one when the program runs inside its development environment.
std::string ResolveProgramFolder(const std::string& executableFolder);

// Reads settings, fonts, help, widths and macros and builds the windows. False if something that the editor
// cannot do without is missing; the person was told.
bool StartUp(const std::string& executableFolder);

// Shows the main window, then opens `pageFile` as Open would, unless it is empty.
void ShowEditor(const std::string& pageFile);

}  // namespace kelvane
