#pragma once

// The characters that the codes of a run stand for, and UTF-8. What can be done with a character, and in
// which typeface, is in typography/signs.h.

#include <string>
#include <string_view>

namespace kelvane {

// The character that a text face has for a code below 224: ASCII, code page 1252, and small letters with
// accents where those have no characters; 0 for the others.
char16_t UnicodeOfText(unsigned char code);
// The character that the Symbol encoding has for a code 32 to 126 or 160 to 223; 0 for the others.
char16_t UnicodeOfSymbol(unsigned char code);

// Bytes that are no UTF-8 become U+FFFD.
std::u32string ReadUtf8(std::string_view text);
std::string WriteUtf8(char32_t character);

}  // namespace kelvane
