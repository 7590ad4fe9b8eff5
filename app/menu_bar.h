#pragma once

// The menus of the main window, as the table of commands has them.

#include <string_view>
#include <vector>

#include "platform/controls.h"

namespace kelvane {

// Builds all menus into the window, fills the menu handles of the subjects and shows check marks and what
// can be chosen.
void BuildMenus(Window& window);

// A menu that is opened by itself: of the commands of such ids, of the menus of such paths with all their
// rows; "" for a separator.
Menu* BuildPopup(Window& window, const std::vector<std::string_view>& rows);

}  // namespace kelvane
