#pragma once

// The fonts of the text faces as the machine has them: Type 1 programs, of which documents carry the glyphs
// that they use.

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace kelvane {

struct Type1Font {
  std::string name;
  std::string box;                        // "left bottom right top", thousandths of an em
  std::string italicAngle;                // degrees
  std::string stem;                       // the usual width of an upright stem, thousandths of an em
  std::array<std::string, 256> encoding;  // names of glyphs; all empty for the standard encoding

  std::string clear;   // the program up to where it is encrypted
  std::string before;  // what is encrypted, in front of the glyphs and behind them
  std::string after;
  std::map<std::string, std::string, std::less<>> glyphs;  // their procedures by name
};

// Reads a font program (.t1, .pfb). Nothing if it is none.
std::optional<Type1Font> ReadType1Font(std::string_view program);

// The program with these glyphs and what they are put together from, under another name.
struct Type1Subset {
  std::string program;
  std::size_t clearSize = 0;  // bytes of its first part
};
Type1Subset SubsetOf(const Type1Font& font, const std::set<std::string>& glyphs, const std::string& name);

// The font of a text face, 0 to 11, read from the machine; nothing if it is not there.
std::optional<Type1Font> FontOfFace(std::int16_t face);

// What the person is told of the faces whose fonts are missing, nothing without any, and of what
// stands in their place.
std::string MissingFonts(const std::set<std::int16_t>& faces);

}  // namespace kelvane
