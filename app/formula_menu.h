#pragma once

// The commands of formulas by notation: opening the line, and the templates with their pictures.

#include <vector>

#include "app/command.h"

namespace kelvane {

std::vector<Command> FormulaCommands();

}  // namespace kelvane
