#pragma once

// What the program was started with.

#include <span>
#include <string>

namespace kelvane {

// Throws Failure, with a line for standard error, if an argument is an option: there are none.
void RefuseOptions(std::span<const char* const> arguments);

// The page file that the arguments name by a path or a file:// address: absolute, in the machine's form, any
// bytes. Empty without an argument. Throws Failure, with a line for standard error, for anything else.
std::string PageFileArgument(std::span<const char* const> arguments);

}  // namespace kelvane
