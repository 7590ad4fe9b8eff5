#pragma once

// How the commands of the File and Edit menus begin, and what they give back when they come to nothing.

#include <functional>

namespace kelvane {

// Completes the run being typed and a path being drawn, goes to Select, then runs the command. If that
// returns false or throws, the person goes on in the mode they were in, placed or not.
bool AfterEditing(const std::function<bool()>& command);

}  // namespace kelvane
