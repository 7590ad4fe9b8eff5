#pragma once

// Entries of menus and the running of commands. What shows and runs commands needs this alone; the table of
// all of them knows every window.

#include "app/command.h"
#include "platform/controls.h"

namespace kelvane {

// Forgets the entries that were added.
void ResetMenus();

// An entry that does what the command, which stays, says.
MenuEntry* AddMenuEntry(Menu& menu, const Command& command);

// Captions, check marks, what can be chosen and the values of the boxes, as the rows' functions say. Needed
// after whatever may change one of them outside of a command: an entry that cannot be chosen does not hear
// its key either.
void RefreshMenus();

// What menu entries, buttons and keys do. Nothing while the command is not available.
void RunCommand(const Command& command);

}  // namespace kelvane
