#pragma once

// The menus that the right button opens on the page.

#include "platform/controls.h"

namespace kelvane {

// They belong to the main window, which is made anew. They are made when one is opened first.
void ResetContextMenus();

// What the right button does: in Select it opens the menu of the item under the pointer, which it selects, or
// that of the empty page; while typing, that of the run. Other tools do with it what they do.
void OpenContextMenu(const MouseEvent& event);

}  // namespace kelvane
