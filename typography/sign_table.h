#pragma once

// The table of signs: what people call them, what they are in a formula, and where the typefaces have them.
// It is data; typography/signs.h says what can be asked of it.

#include <cstdint>
#include <span>

namespace kelvane {

enum class SignClass : std::uint8_t {
  Letter,
  Ordinary,
  Operator,
  Relation,
  Opening,
  Closing,
  LargeOperator,
  Arrow,
  Accent,
  Piece,
  Space,
};
inline constexpr int kSignClasses = 11;

// The text faces and Symbol have a sign under the codes that platform/characters gives for its character.
struct Sign {
  char32_t character = 0;  // two signs may share one: the first of the table is meant when it is typed
  SignClass kind = SignClass::Ordinary;
  // Names to be typed behind a backslash, with blanks between them; behind "|" what it is in plain words.
  const char* names = "";
  char math0 = 0;     // its key in Math0; 0: it has none there
  bool only = false;  // only Math0 has this form of the sign

  // Signs put together from others. A run that begins in a text face, where 224 means that face.
  const char* made = nullptr;
  // Or a character with one of Math0's marks on its middle.
  char32_t base = 0;
  char mark = 0;
};

std::span<const Sign> SignTable();

// Characters that are set as another one, and those that leave nothing on paper (0).
struct SameSign {
  char32_t character;
  char32_t as;
};
std::span<const SameSign> SameSigns();

// The mathematical alphabets: rows of letters or digits that are those of a typeface. A row has gaps where
// its character stood elsewhere before; those are in the table, or among the same signs.
struct Alphabet {
  char32_t first;
  char32_t firstLetter;
  int count;
  std::int16_t font;
};
std::span<const Alphabet> Alphabets();

}  // namespace kelvane
