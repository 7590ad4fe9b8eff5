#pragma once

// The commands of the main window as one table. Menus, buttons, keys and the manual's page of keys follow it:
// a new command is a new row.

#include <string>
#include <string_view>
#include <vector>

#include "app/command.h"
#include "editing/cursor.h"

namespace kelvane {

// Menus from left to right and their rows from top to bottom, then the commands that have buttons.
const std::vector<Command>& Commands();
const Command& CommandOf(std::string_view id);
// The id of the command that chooses a shape to draw.
std::string ShapeCommand(Shape shape);

}  // namespace kelvane
