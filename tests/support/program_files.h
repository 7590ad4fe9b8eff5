#pragma once

// A small program folder: everything that start-up asks for, and widths that tell typefaces and characters
// apart.

#include <string>

#include "tests/support/memory_files.h"

namespace kelvane {

// The width that the tables below give a character, in their units, and the divisor of each table.
float TestWidth(int font, int code);
inline constexpr float kTestWidthUnit = 600;

// The bytes of a width file: the divisor and the widths of codes 1 to 255.
std::string WidthFile(int font);

// Puts the widths straight into the typeface table.
void FillWidths();

// Puts the fonts, the prolog and the help text into the program folder.
void PutProgramFiles(MemoryFiles& files);

}  // namespace kelvane
