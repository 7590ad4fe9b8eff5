#pragma once

// Between the program's 8-bit texts and Unicode. Nothing outside platform/qt knows Unicode.

#include <QString>
#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

// The character that a text face has for a code: ASCII for 32 to 126, code page 1252 for 128 to 255; 0 for
// control characters and the places that the code page leaves empty.
char16_t UnicodeOfText(unsigned char code);
// The character that the Symbol encoding has for a code 32 to 126 or 160 to 223; 0 for the others.
char16_t UnicodeOfSymbol(unsigned char code);
// Whether a text that a key gave is made of characters, rather than of the control codes of some keys.
bool IsReadable(const QString& text);
// The characters of a text, each once, blanks between them, as UTF-8; control characters by their numbers.
std::string ListOf(const QString& text);

// Captions, messages, paths. File names are UTF-8 on this system, so a text that is valid UTF-8 is read as
// that, any other as code page 1252.
QString PlainText(std::string_view text);

// A run as the control-code box shows it: one visible sign for each of the 256 codes, no two alike.
QString VisibleText(std::string_view run);
// The code of a sign, or of a typed character with the same meaning; nothing if no code stands for it.
std::optional<unsigned char> CodeOfVisible(char16_t sign);
// The run of a text made of visible signs. Characters without a code must have been refused before.
std::string RunOfVisible(const QString& text);

}  // namespace kelvane
