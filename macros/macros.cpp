#include "macros/macros.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "document/lines.h"
#include "editing/sign_entry.h"
#include "platform/files.h"

namespace kelvane {

std::string MacroTexts[kMacros];
std::int16_t MacrosChanged = 0;
MenuEntry* MacroMenu[kMacros] = {};

namespace {

// The captions are kept here as well as in the menu, so that they outlive the window at exit.
using Captions = std::array<std::string, kMacros>;
Captions captions;
// The captions as they were when they were last read or written.
Captions storedCaptions;

std::string MacroFile() {
  return ProgramFolder + "QRX.MCR";
}

// A run holds no line end, which would also part the macro in its file, and no NUL.
std::string ForRun(std::string text) {
  std::ranges::replace_if(
      text, [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
  return text;
}

// The lines of the file that there are, those of `missing` in the place of others.
Captions FileCaptions(const Captions& missing) {
  Captions lines = missing;
  if (!TheFiles->Exists(MacroFile())) return lines;
  const std::string content = TheFiles->ReadWhole(MacroFile());
  std::string_view rest = content;
  for (std::size_t number = 0; number < lines.size() && !rest.empty(); ++number)
    lines[number] = ForRun(std::string(TakeLine(rest)));
  return lines;
}

// Takes over what the file holds.
void ShowCaptions(const Captions& stored) {
  for (int number = 0; number < kMacros; ++number)
    SetMacroCaption(number, stored[static_cast<std::size_t>(number)]);
  storedCaptions = captions;
}

}  // namespace

const std::string& MacroCaption(int number) {
  return captions[number];
}

void SetMacroCaption(int number, const std::string& text) {
  std::string& caption = captions[number];
  caption = ForRun(text);
  if (MacroMenu[number] != nullptr) MacroMenu[number]->SetLiteralCaption(caption);
}

std::string DefaultMacro(int number) {
  return "m" + std::to_string(number);
}

void ResetMacros() {
  for (int number = 0; number < kMacros; ++number) {
    SetMacroCaption(number, DefaultMacro(number));
    MacroTexts[number].clear();
  }
  storedCaptions = captions;
  MacrosChanged = 0;
}

void ReadMacros() {
  ShowCaptions(FileCaptions(captions));
}

void WriteMacros() {
  Captions merged = FileCaptions(captions);
  std::string content;
  for (std::size_t number = 0; number < merged.size(); ++number) {
    if (captions[number] != storedCaptions[number]) merged[number] = captions[number];
    content += merged[number] + "\r\n";
  }
  WriteFileSafely(MacroFile(), content);
  ShowCaptions(merged);
}

void KeepMacros() {
  if (captions != storedCaptions || !TheFiles->Exists(MacroFile())) WriteMacros();
}

void CallMacro(int number) {
  InsertCodes(captions[number]);
}

void RefreshMacros() {
  if (MacrosChanged <= 0) return;
  for (int number = 0; number < kMacros; ++number) SetMacroCaption(number, MacroTexts[number]);
  MacrosChanged = 0;
}

}  // namespace kelvane
