#include "platform/characters.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace kelvane {

namespace {

// Small letters stand at 224 to 255 of code page 1252, where a run has its switches. They are put where a
// text face has nothing: at those control codes that no file or line would suffer from, and at the places
// that the code page leaves empty.
constexpr std::u16string_view kFrom1 = u"\u00E0\u00E1\u00E2\u00E3\u00E4\u00E5\u00E6\u00E7";
constexpr std::u16string_view kFrom14 =
    u"\u00E8\u00E9\u00EA\u00EB\u00EC\u00ED\u00EE\u00EF\u00F1\u00F2\u00F3\u00F4";
constexpr std::u16string_view kFrom28 = u"\u00F5\u00F6\u00F8\u00F9";

// Code page 1252, 128 to 159; from 160 on it is Latin-1. The five empty places are filled, and the florin
// sign, which Symbol has too, makes room for the dotless i.
constexpr std::array<char16_t, 32> kFrom128 = {
    0x20AC, 0x00FA, 0x201A, 0x0131, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x00FB, 0x017D, 0x00FC, 0x00FD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x00FF, 0x017E, 0x0178};

// Two more signs that Symbol has too make room for letters.
constexpr std::size_t kNotSign = 0xAC;
constexpr std::size_t kRegistered = 0xAE;

constexpr std::array<char16_t, 224> MakeText() {
  std::array<char16_t, 224> text{};
  const auto put = [&text](std::size_t from, std::u16string_view letters) {
    for (const char16_t letter : letters) text[from++] = letter;
  };
  put(1, kFrom1);
  put(14, kFrom14);
  put(28, kFrom28);
  for (std::size_t code = 32; code < text.size(); ++code) {
    if (code == 127) continue;
    text[code] = code >= 128 && code < 160 ? kFrom128[code - 128] : static_cast<char16_t>(code);
  }
  text[kNotSign] = 0x00F0;
  text[kRegistered] = 0x00FE;
  return text;
}

constexpr std::array<char16_t, 224> kText = MakeText();

// The Symbol encoding, 32 to 126.
constexpr std::array<char16_t, 95> kSymbolLow = {
    0x0020, 0x0021, 0x2200, 0x0023, 0x2203, 0x0025, 0x0026, 0x220B, 0x0028, 0x0029, 0x2217, 0x002B,
    0x002C, 0x2212, 0x002E, 0x002F, 0x0030, 0x0031, 0x0032, 0x0033, 0x0034, 0x0035, 0x0036, 0x0037,
    0x0038, 0x0039, 0x003A, 0x003B, 0x003C, 0x003D, 0x003E, 0x003F, 0x2245, 0x0391, 0x0392, 0x03A7,
    0x0394, 0x0395, 0x03A6, 0x0393, 0x0397, 0x0399, 0x03D1, 0x039A, 0x039B, 0x039C, 0x039D, 0x039F,
    0x03A0, 0x0398, 0x03A1, 0x03A3, 0x03A4, 0x03A5, 0x03C2, 0x03A9, 0x039E, 0x03A8, 0x0396, 0x005B,
    0x2234, 0x005D, 0x22A5, 0x005F, 0x203E, 0x03B1, 0x03B2, 0x03C7, 0x03B4, 0x03B5, 0x03C6, 0x03B3,
    0x03B7, 0x03B9, 0x03D5, 0x03BA, 0x03BB, 0x03BC, 0x03BD, 0x03BF, 0x03C0, 0x03B8, 0x03C1, 0x03C3,
    0x03C4, 0x03C5, 0x03D6, 0x03C9, 0x03BE, 0x03C8, 0x03B6, 0x007B, 0x007C, 0x007D, 0x223C};

// The Symbol encoding, 160 to 223.
constexpr std::array<char16_t, 64> kSymbolHigh = {
    0x20AC, 0x03D2, 0x2032, 0x2264, 0x2044, 0x221E, 0x0192, 0x2663, 0x2666, 0x2665, 0x2660, 0x2194, 0x2190,
    0x2191, 0x2192, 0x2193, 0x00B0, 0x00B1, 0x2033, 0x2265, 0x00D7, 0x221D, 0x2202, 0x2022, 0x00F7, 0x2260,
    0x2261, 0x2248, 0x2026, 0x23D0, 0x23AF, 0x21B5, 0x2135, 0x2111, 0x211C, 0x2118, 0x2297, 0x2295, 0x2205,
    0x2229, 0x222A, 0x2283, 0x2287, 0x2284, 0x2282, 0x2286, 0x2208, 0x2209, 0x2220, 0x2207, 0x00AE, 0x00A9,
    0x2122, 0x220F, 0x221A, 0x22C5, 0x00AC, 0x2227, 0x2228, 0x21D4, 0x21D0, 0x21D1, 0x21D2, 0x21D3};

constexpr char32_t kNoCharacter = 0xFFFD;

// The length of the sequence that a byte begins; 0 if it begins none.
int SequenceLength(unsigned char first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

// Takes the next character off a text that is not empty.
char32_t TakeCharacter(std::string_view& text) {
  const auto first = static_cast<unsigned char>(text.front());
  const auto length = static_cast<std::size_t>(SequenceLength(first));
  text.remove_prefix(1);
  if (length == 0 || text.size() < length - 1) return kNoCharacter;
  if (length == 1) return first;
  char32_t character = first & (0x7FU >> length);
  for (std::size_t i = 0; i < length - 1; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80) return kNoCharacter;
    character = character << 6 | (byte & 0x3FU);
  }
  text.remove_prefix(length - 1);
  return character;
}

}  // namespace

char16_t UnicodeOfText(unsigned char code) {
  return code < kText.size() ? kText[code] : u'\0';
}

char16_t UnicodeOfSymbol(unsigned char code) {
  if (code >= 32 && code < 127) return kSymbolLow[code - 32U];
  if (code >= 160 && code < 224) return kSymbolHigh[code - 160U];
  return 0;
}

std::u32string ReadUtf8(std::string_view text) {
  std::u32string characters;
  while (!text.empty()) characters += TakeCharacter(text);
  return characters;
}

std::string WriteUtf8(char32_t character) {
  if (character < 0x80) return std::string(1, static_cast<char>(character));
  std::string bytes;
  int more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  constexpr int kFirst[] = {0, 0xC0, 0xE0, 0xF0};
  bytes += static_cast<char>(kFirst[more] | static_cast<int>(character >> (6 * more)));
  while (more-- > 0) bytes += static_cast<char>(0x80 | (character >> (6 * more) & 0x3F));
  return bytes;
}

}  // namespace kelvane
