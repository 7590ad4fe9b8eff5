#include "app/menu_bar.h"

#include <map>
#include <memory>

#include "app/commands.h"
#include "app/menus.h"

namespace kelvane {

namespace {

// Finds the menus of a path, making those that are not there yet.
class MenuTree {
 public:
  explicit MenuTree(Window& window) : window_(window) {}

  Menu* Find(const std::string& path) {
    Menu*& menu = menus_[path];
    if (menu) return menu;
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
      menu = window_.AddMenu(path);
      menu->OnOpen = RefreshMenus;
    } else {
      menu = Find(path.substr(0, slash))->AddMenu(path.substr(slash + 1));
    }
    return menu;
  }

 private:
  Window& window_;
  std::map<std::string, Menu*> menus_;
};

void AddEntries(MenuTree& menus) {
  for (const Command& command : Commands()) {
    if (command.menu.empty()) continue;
    Menu* menu = menus.Find(command.menu);
    if (command.id.empty()) {
      menu->AddSeparator();
      continue;
    }
    MenuEntry* entry = AddMenuEntry(*menu, command);
    if (command.handle) *command.handle = entry;
  }
  RefreshMenus();
}

}  // namespace

void BuildMenus(Window& window) {
  ResetMenus();
  const auto menus = std::make_shared<MenuTree>(window);
  for (const Command& command : Commands())
    if (!command.menu.empty()) menus->Find(command.menu.substr(0, command.menu.find('/')));
  window.WhenShown([menus] { AddEntries(*menus); });
}

Menu* BuildPopup(Window& window, const std::vector<std::string_view>& rows) {
  Menu* popup = window.AddPopup();
  popup->OnOpen = RefreshMenus;
  for (const std::string_view row : rows) {
    const std::size_t slash = row.rfind('/');
    if (row.empty()) {
      popup->AddSeparator();
    } else if (slash == std::string_view::npos) {
      AddMenuEntry(*popup, CommandOf(row));
    } else {
      Menu* menu = popup->AddMenu(std::string(row.substr(slash + 1)));
      for (const Command& command : Commands()) {
        if (command.menu != row) continue;
        command.id.empty() ? menu->AddSeparator() : static_cast<void>(AddMenuEntry(*menu, command));
      }
    }
  }
  return popup;
}

}  // namespace kelvane
