#pragma once

// Between the program's 8-bit texts and what controls show.

#include <QString>
#include <optional>
#include <string>
#include <string_view>

namespace kelvane {

// Whether a text that a key gave is made of characters, rather than of the control codes of some keys.
bool IsReadable(const QString& text);
// The characters of a text, each once, blanks between them, as UTF-8; control characters by their numbers.
std::string ListOf(const QString& text);

// Captions, messages, paths. File names are UTF-8 on this system, so a text that is valid UTF-8 is read as
// that, any other as the codes of the text faces.
QString PlainText(std::string_view text);

// A run as the control-code box shows it: one visible sign for each of the 256 codes, no two alike.
QString VisibleText(std::string_view run);
// The code of a sign, or of a typed character with the same meaning; nothing if no code stands for it.
std::optional<unsigned char> CodeOfVisible(char16_t sign);
// The run of a text made of visible signs. Characters without a code must have been refused before.
std::string RunOfVisible(const QString& text);

}  // namespace kelvane
