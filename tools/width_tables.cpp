#include "tools/width_tables.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <map>
#include <sstream>

#include "platform/failure.h"

namespace kelvane {

namespace {

constexpr int kFirstCode = 1;
constexpr int kLastCode = 223;  // above it the codes of a run switch typefaces and shift scripts
constexpr std::string_view kBeginMarker = "% Widths by width_tables: begin";
constexpr std::string_view kEndMarker = "% Widths by width_tables: end";

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

const char* NameOfCode(int code) {
  if (code < 32) return kLowNames[static_cast<std::size_t>(code)];
  if (code >= 32 && code <= 126) return kAsciiNames[static_cast<std::size_t>(code - 32)];
  if (code >= 128 && code <= 223) return kHighNames[static_cast<std::size_t>(code - 128)];
  return nullptr;
}

struct AfmCharacter {
  float width = 0;
  double left = 0, bottom = 0, right = 0, top = 0;
};

struct AfmMetrics {
  std::map<std::string, AfmCharacter, std::less<>> byName;
  std::map<int, AfmCharacter> byCode;
};

// Lines such as `C 65 ; WX 722 ; N A ; B 15 0 706 674 ;`; a code of -1 means not encoded.
AfmMetrics ReadAfm(std::string_view afmText) {
  AfmMetrics metrics;
  std::istringstream lines{std::string(afmText)};
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string c, wx, n, name, b, semicolon;
    int code = -1;
    AfmCharacter character;
    words >> c >> code >> semicolon >> wx >> character.width >> semicolon >> n >> name >> semicolon >> b >>
        character.left >> character.bottom >> character.right >> character.top;
    if (!words || c != "C" || wx != "WX" || n != "N" || b != "B") continue;
    metrics.byName[name] = character;
    if (code >= 0 && code <= 255) metrics.byCode[code] = character;
  }
  return metrics;
}

// The characters of an encoding by their codes.
std::map<int, AfmCharacter> CharactersOf(std::string_view afmText, bool ownEncoding) {
  AfmMetrics metrics = ReadAfm(afmText);
  if (metrics.byName.empty()) throw Failure("The AFM file holds no character metrics.");
  if (ownEncoding) return metrics.byCode;
  std::map<int, AfmCharacter> characters;
  for (int code = kFirstCode; code <= kLastCode; ++code) {
    const char* name = NameOfCode(code);
    if (!name) continue;
    const auto found = metrics.byName.find(name);
    if (found == metrics.byName.end()) throw Failure("The AFM file has no glyph " + std::string(name) + ".");
    characters[code] = found->second;
  }
  return characters;
}

// Codes of the Symbol encoding that are characters of a run. Some fonts have a maker's mark at 128, which
// neither screen nor print shows.
bool IsSymbol(int code) {
  return (code >= 32 && code <= 126) || (code >= 160 && code <= kLastCode);
}

std::string MarkedLine(std::string_view marker) {
  return "\r\n" + std::string(marker) + "\r\n";
}

}  // namespace

WidthTable MakeWidthTable(std::string_view afmText, bool ownEncoding) {
  WidthTable table{};
  for (const auto& [code, character] : CharactersOf(afmText, ownEncoding))
    table[static_cast<std::size_t>(code)] = character.width;
  table[0] = 600;
  return table;
}

InkTable MakeInkTable(std::string_view afmText, bool ownEncoding, double slant) {
  const auto whole = [](double value) { return static_cast<std::int16_t>(value); };
  InkTable table{};
  for (const auto& [code, character] : CharactersOf(afmText, ownEncoding)) {
    const auto& [width, left, bottom, right, top] = character;
    if (!(left < right && bottom < top) || (ownEncoding && !IsSymbol(code))) continue;
    table[static_cast<std::size_t>(code)] = {whole(std::floor(left + slant * bottom)),
                                             whole(std::floor(bottom)), whole(std::ceil(right + slant * top)),
                                             whole(std::ceil(top))};
  }
  return table;
}

std::string InkTableBytes(const std::array<InkTable, 12>& tables) {
  std::string bytes;
  for (const InkTable& table : tables) {
    for (const InkBox& box : table) {
      for (const std::int16_t edge : {box.left, box.bottom, box.right, box.top}) {
        bytes += static_cast<char>(edge & 255);
        bytes += static_cast<char>(edge >> 8 & 255);
      }
    }
  }
  return bytes;
}

std::string WidthTableBytes(const WidthTable& table) {
  std::string bytes;
  for (const float width : table) {
    const auto bits = std::bit_cast<std::uint32_t>(width);
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(bits >> shift & 255);
  }
  return bytes;
}

std::string PrologWidthLines(const std::array<WidthTable, 12>& tables) {
  std::string lines;
  for (std::size_t face = 0; face < tables.size(); ++face) {
    const auto same = static_cast<std::size_t>(std::ranges::find(tables, tables[face]) - tables.begin());
    if (same < face) {
      lines += std::to_string(face) + " " + std::to_string(same) + " face.samewidths\r\n";
      continue;
    }
    lines += std::to_string(face) + " [";
    std::string line;
    for (std::size_t code = kFirstCode; code <= kLastCode; ++code) {
      const float width = tables[face][code];
      if (width != std::nearbyint(width)) throw Failure("A width is no whole number of thousandths.");
      const std::string word = " " + std::to_string(static_cast<int>(width));
      if (line.size() + word.size() > 100) {
        lines += line + "\r\n";
        line.clear();
      }
      line += word;
    }
    lines += line + " ] face.setwidths\r\n";
  }
  return lines;
}

std::string ReplacePrologWidths(std::string_view prolog, const std::array<WidthTable, 12>& tables) {
  const std::string begin = MarkedLine(kBeginMarker);
  const std::string end = MarkedLine(kEndMarker);
  const std::size_t first = prolog.find(begin);
  const std::size_t last = first == prolog.npos ? prolog.npos : prolog.find(end, first + begin.size() - 2);
  if (last == prolog.npos) throw Failure("QRX.PRO has no marker lines for its widths.");
  return std::string(prolog.substr(0, first)) + begin + PrologWidthLines(tables) +
         std::string(prolog.substr(last + 2));
}

}  // namespace kelvane
