#pragma once

// The ten macros. A macro is the caption of its menu entry; MacroTexts is the working copy of the Define
// Macro window.

#include <cstdint>
#include <string>

#include "platform/controls.h"

namespace kelvane {

inline constexpr int kMacros = 10;

extern std::string MacroTexts[kMacros];
// Above 0 when the captions must be refreshed from MacroTexts.
extern std::int16_t MacrosChanged;

extern MenuEntry* MacroMenu[kMacros];

// The ten captions, also while there is no menu.
const std::string& MacroCaption(int number);
void SetMacroCaption(int number, const std::string& text);

void ResetMacros();
std::string DefaultMacro(int number);  // "m0" to "m9"

// QRX.MCR of the program folder: ten lines. A missing file leaves the captions.
void ReadMacros();
// Replaces the file's ten lines. Macros that were not changed since they were read or written here are taken
// from the file as it is now, for another Kelvane may have written it. Throws Failure, and leaves the file,
// if it cannot be read.
void WriteMacros();
// Writes them if one has changed, or if there is no file.
void KeepMacros();

// Inserts a macro into the run being typed if a cursor point is placed.
void CallMacro(int number);
// Copies changed texts into the captions.
void RefreshMacros();

}  // namespace kelvane
