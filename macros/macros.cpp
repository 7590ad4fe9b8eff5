#include "macros/macros.h"

#include <algorithm>
#include <string_view>

#include "document/lines.h"
#include "editing/keyboard.h"
#include "platform/files.h"

namespace kelvane {

std::string MacroTexts[kMacros];
std::int16_t MacrosChanged = 0;
MenuEntry* MacroMenu[kMacros] = {};

namespace {

// The captions are kept here as well as in the menu, so that they outlive the window at exit.
std::string captions[kMacros];

std::string MacroFile() {
  return ProgramFolder + "QRX.MCR";
}

}  // namespace

const std::string& MacroCaption(int number) {
  return captions[number];
}

void SetMacroCaption(int number, const std::string& text) {
  std::string& caption = captions[number];
  caption = text;
  // A run holds none of these, and a line end would part the macro in its file.
  std::ranges::replace_if(
      caption, [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
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
  MacrosChanged = 0;
}

void ReadMacros() {
  const std::string path = MacroFile();
  if (!TheFiles->Exists(path)) return;
  const std::string content = TheFiles->ReadWhole(path);
  std::string_view rest = content;
  for (int number = 0; number < kMacros && !rest.empty(); ++number) {
    SetMacroCaption(number, std::string(TakeLine(rest)));
  }
}

void WriteMacros() {
  std::string content;
  for (const std::string& caption : captions) content += caption + "\r\n";
  WriteFileSafely(MacroFile(), content);
}

void CallMacro(int number) {
  InsertText(captions[number]);
}

void RefreshMacros() {
  if (MacrosChanged <= 0) return;
  for (int number = 0; number < kMacros; ++number) SetMacroCaption(number, MacroTexts[number]);
  MacrosChanged = 0;
}

}  // namespace kelvane
