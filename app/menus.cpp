#include "app/menus.h"

#include <map>

#include "app/after_editing.h"
#include "editing/properties.h"

namespace kelvane {

namespace {

struct BuiltEntry {
  const Command* command;
  MenuEntry* entry;
  bool enabled;  // as it was set last
};
std::vector<BuiltEntry> Built;

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

MenuEntry* AddEntry(Menu& menu, const Command& command) {
  MenuEntry* entry = menu.AddEntry(command.literal ? "" : command.caption, command.key);
  if (command.run) entry->OnChosen = [&command] { RunCommand(command); };
  if (command.picture.paint) entry->SetPicture(command.picture);
  entry->SetEnabled(false);
  Built.push_back({&command, entry, false});
  return entry;
}

void Refresh(BuiltEntry& built) {
  const Command& command = *built.command;
  if (command.captionNow) {
    const std::string caption = command.captionNow();
    if (caption != built.entry->Caption())
      command.literal ? built.entry->SetLiteralCaption(caption) : built.entry->SetCaption(caption);
  }
  if (command.checked && command.checked() != built.entry->Checked())
    built.entry->SetChecked(command.checked());
  const bool enabled = Available(command);
  if (enabled != built.enabled) built.entry->SetEnabled(enabled);
  built.enabled = enabled;
}

}  // namespace

void ResetMenus() {
  Built.clear();
}

void BuildMenus(Window& window) {
  ResetMenus();
  MenuTree menus(window);
  for (const Command& command : Commands()) {
    if (command.menu.empty()) continue;
    Menu* menu = menus.Find(command.menu);
    if (command.id.empty()) {
      menu->AddSeparator();
      continue;
    }
    MenuEntry* entry = AddEntry(*menu, command);
    if (command.handle) *command.handle = entry;
  }
  RefreshMenus();
}

Menu* BuildPopup(Window& window, const std::vector<std::string_view>& rows) {
  Menu* popup = window.AddPopup();
  popup->OnOpen = RefreshMenus;
  for (const std::string_view row : rows) {
    const std::size_t slash = row.rfind('/');
    if (row.empty()) {
      popup->AddSeparator();
    } else if (slash == std::string_view::npos) {
      AddEntry(*popup, CommandOf(row));
    } else {
      Menu* menu = popup->AddMenu(std::string(row.substr(slash + 1)));
      for (const Command& command : Commands()) {
        if (command.menu != row) continue;
        command.id.empty() ? menu->AddSeparator() : static_cast<void>(AddEntry(*menu, command));
      }
    }
  }
  return popup;
}

void RefreshMenus() {
  for (BuiltEntry& built : Built) Refresh(built);
  ShowProperties();
}

void RunCommand(const Command& command) {
  if (!Available(command)) return;
  command.endsEditing ? AfterEditing(command.run) : command.run();
  RefreshMenus();
}

}  // namespace kelvane
