#pragma once

// What formulas need beyond the keys of the keyboard: signs put into the run with their typeface, and scripts
// opened and closed at the caret.

#include <string>
#include <string_view>

#include "typography/sign_table.h"

namespace kelvane {

// Puts a text in UTF-8 into the run at the caret, signs with the switches to their typefaces and back.
// Characters that no typeface has are named at the foot of the window. Nothing happens while no cursor point
// is placed.
void InsertSigns(std::string_view utf8);
void InsertSign(const Sign& sign);
// Codes of a run: what a macro stands for, or a key of a typeface.
void InsertCodes(const std::string& codes);
// The same for a run that is in the making in a box: what to put behind `before`.
std::string SignsBehind(const std::string& before, const std::string& utf8);

// Opens a superscript or subscript at the caret, or goes on behind it where it is the innermost one that is
// open.
void SuperscriptKey();
void SubscriptKey();
// Script button 0 to 11.
void ScriptButton(int index);

}  // namespace kelvane
