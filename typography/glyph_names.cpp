#include "typography/glyph_names.h"

#include <array>
#include <cstddef>

namespace kelvane {

namespace {

// clang-format off
// Glyph names of ASCII.
constexpr std::array<const char*, 95> kAsciiNames = {
    "space", "exclam", "quotedbl", "numbersign", "dollar", "percent", "ampersand", "quotesingle",
    "parenleft", "parenright", "asterisk", "plus", "comma", "hyphen", "period", "slash", "zero", "one",
    "two", "three", "four", "five", "six", "seven", "eight", "nine", "colon", "semicolon", "less",
    "equal", "greater", "question", "at", "A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L",
    "M", "N", "O", "P", "Q", "R", "S", "T", "U", "V", "W", "X", "Y", "Z", "bracketleft", "backslash",
    "bracketright", "asciicircum", "underscore", "grave", "a", "b", "c", "d", "e", "f", "g", "h", "i",
    "j", "k", "l", "m", "n", "o", "p", "q", "r", "s", "t", "u", "v", "w", "x", "y", "z", "braceleft",
    "bar", "braceright", "asciitilde"};

// Glyph names of the small letters below ASCII; null where there is no character.
constexpr std::array<const char*, 32> kLowNames = {
    nullptr, "agrave", "aacute", "acircumflex", "atilde", "adieresis", "aring", "ae", "ccedilla",
    nullptr, nullptr, nullptr, nullptr, nullptr,
    "egrave", "eacute", "ecircumflex", "edieresis", "igrave", "iacute", "icircumflex", "idieresis",
    "ntilde", "ograve", "oacute", "ocircumflex",
    nullptr, nullptr,
    "otilde", "odieresis", "oslash", "ugrave"};

// Glyph names of the codes 128 to 223: code page 1252, with letters at its empty places and three others.
constexpr std::array<const char*, 96> kHighNames = {
    "Euro", "uacute", "quotesinglbase", "dotlessi", "quotedblbase", "ellipsis", "dagger", "daggerdbl",
    "circumflex", "perthousand", "Scaron", "guilsinglleft", "OE", "ucircumflex", "Zcaron", "udieresis",
    "yacute", "quoteleft", "quoteright", "quotedblleft", "quotedblright", "bullet", "endash", "emdash",
    "tilde", "trademark", "scaron", "guilsinglright", "oe", "ydieresis", "zcaron", "Ydieresis", "space",
    "exclamdown", "cent", "sterling", "currency", "yen", "brokenbar", "section", "dieresis", "copyright",
    "ordfeminine", "guillemotleft", "eth", "hyphen", "thorn", "macron", "degree", "plusminus",
    "twosuperior", "threesuperior", "acute", "mu", "paragraph", "periodcentered", "cedilla",
    "onesuperior", "ordmasculine", "guillemotright", "onequarter", "onehalf", "threequarters",
    "questiondown", "Agrave", "Aacute", "Acircumflex", "Atilde", "Adieresis", "Aring", "AE", "Ccedilla",
    "Egrave", "Eacute", "Ecircumflex", "Edieresis", "Igrave", "Iacute", "Icircumflex", "Idieresis",
    "Eth", "Ntilde", "Ograve", "Oacute", "Ocircumflex", "Otilde", "Odieresis", "multiply", "Oslash",
    "Ugrave", "Uacute", "Ucircumflex", "Udieresis", "Yacute", "Thorn", "germandbls"};
// clang-format on

}  // namespace

const char* GlyphNameOfText(int code) {
  if (code < 0) return nullptr;
  if (code < 32) return kLowNames[static_cast<std::size_t>(code)];
  if (code >= 32 && code <= 126) return kAsciiNames[static_cast<std::size_t>(code - 32)];
  if (code >= 128 && code <= 223) return kHighNames[static_cast<std::size_t>(code - 128)];
  return nullptr;
}

}  // namespace kelvane
