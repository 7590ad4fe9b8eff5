#pragma once

// The menus of the main window, as the table of commands has them, and the running of commands.

#include <string_view>
#include <vector>

#include "app/commands.h"
#include "platform/controls.h"

namespace kelvane {

// Forgets the menus that were built.
void ResetMenus();

// Builds all menus into the window, fills the menu handles of the subjects and shows check marks and what
// can be chosen.
void BuildMenus(Window& window);

// A menu that is opened by itself: of the commands of such ids, of the menus of such paths with all their
// rows; "" for a separator.
Menu* BuildPopup(Window& window, const std::vector<std::string_view>& rows);

// Captions, check marks, what can be chosen and the values of the boxes, as the rows' functions say. Needed
// after whatever may change one of them outside of a command: an entry that cannot be chosen does not hear
// its key either.
void RefreshMenus();

// What menu entries, buttons and keys do. Nothing while the command is not available.
void RunCommand(const Command& command);

}  // namespace kelvane
