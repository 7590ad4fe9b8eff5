#pragma once

// The menus of the main window: one table, entry name, caption, key and what the entry does.

#include <string>
#include <vector>

#include "platform/controls.h"

namespace kelvane {

struct BuiltEntry {
  std::string menu;  // path of captions, e.g. "&View/&Horizontal Grid Lines"
  std::string name;  // e.g. "mFileSave"
  std::string caption;
  std::string key;
  MenuEntry* entry;
  bool available;  // false while the window it opens is not built
};

// Builds all menus into the window, fills the menu handles of the subjects and sets no check marks.
void BuildMenus(Window& window);

// What BuildMenus made, in order.
const std::vector<BuiltEntry>& BuiltMenus();

// Check marks of the two grid menus.
void CheckGridMenus();

}  // namespace kelvane
