#include "app/menus.h"

#include <vector>

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

bool Available(const Command& command) {
  return command.run && (!command.enabled || command.enabled());
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

MenuEntry* AddMenuEntry(Menu& menu, const Command& command) {
  MenuEntry* entry = menu.AddEntry(command.literal ? "" : command.caption, command.key);
  if (command.run) entry->OnChosen = [&command] { RunCommand(command); };
  if (command.picture.paint) entry->SetPicture(command.picture);
  entry->SetEnabled(false);
  Built.push_back({&command, entry, false});
  return entry;
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
