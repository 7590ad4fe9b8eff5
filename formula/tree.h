#pragma once

// A notation that has been read: what the layout gets. Nodes lie in one vector and name each other by index.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "typography/sign_table.h"

namespace kelvane::formula {

// The classes of atoms, as The TeXbook has them.
enum class Atom : std::uint8_t { Ordinary, Operator, Binary, Relation, Opening, Closing, Punctuation, Inner };

enum class Kind : std::uint8_t {
  Row,        // first: its children, joined by next
  Sign,       // character, face
  Text,       // text in UTF-8, face: words, names of functions
  Scripts,    // first: nucleus, second: above, third: below; value: primes
  Fraction,   // first over second; value: FractionForm
  Root,       // first: radicand, second: index
  Fence,      // first: parts joined by next; character, closing; middle signs stand between as Delimiter
  Delimiter,  // character; value: size step 1 to 4, or 0 for as tall as the fence
  Accent,     // first: what is under it; character: the accent; value: 1 for a wide one
  Line,       // first; value: above or below
  Brace,      // first; value: above or below
  Stack,      // first: the middle, second: above, third: below, in script size
  Reach,      // an arrow as long as its labels: character, second: above, third: below
  OverArrow,  // first: what is under or over it; character; value: above or below
  Table,      // first: Row of cells joined by next, each a Row; value: index of its TableForm
  Space,      // amount
  Style,      // value: StyleChange, for the rest of the row
  Colour,     // value: palette number, for the rest of the row
  Phantom,    // first; value: PhantomForm
  Framed,     // first; value: Frame
  Negated,    // first: the sign
  Drawn,      // drawn: a sign that no typeface has
  Classed,    // first, as an atom of this class
};

inline constexpr int kNone = -1;

// Their limits stand beside them.
inline bool IsIntegral(char32_t character) {
  return character == U'∫' || character == U'∬' || character == U'∭' || character == U'∮' ||
         character == U'∯';
}

struct DrawnSign;

enum class Limits : std::uint8_t { AsUsual, Stacked, Beside };
enum class FractionForm : std::uint8_t {
  AsUsual,
  Display,
  Text,
  Continued,
  Binomial,
  DisplayBinomial,
  TextBinomial,
  Bare
};
enum class StyleChange : std::uint8_t { Display, Text, Script, ScriptScript };
enum class PhantomForm : std::uint8_t { Whole, Wide, Tall, Smash };
enum class Frame : std::uint8_t { Box, Rising, Falling, Crossed };  // a box, or strokes across
enum class Side : std::uint8_t { Above, Below };

struct Node {
  Kind kind = Kind::Row;
  Atom atom = Atom::Ordinary;
  Limits limits = Limits::AsUsual;
  bool large = false;     // a sign that is larger in display
  bool stacks = false;    // an operator whose limits go above and below in display
  std::int16_t face = 0;  // of Sign and Text: a Face
  int value = 0;
  int next = kNone;
  int first = kNone;
  int second = kNone;
  int third = kNone;
  const kelvane::Sign* sign = nullptr;  // the row of the character, where it has one
  const DrawnSign* drawn = nullptr;
  char32_t character = 0;
  char32_t closing = 0;
  float amount = 0;       // ems
  std::size_t begin = 0;  // bytes of the notation
  std::size_t end = 0;
  std::string text;
};

// What a letter or text is set in, whatever the family.
enum class Face : std::uint8_t {
  Usual,  // letters slanted, figures upright
  Roman,
  Italic,
  Bold,
  BoldItalic,
  Sans,
  Mono,
  Script,
  DoubleStruck,
  Words,  // text within a formula
};

struct TableForm {
  std::string columns;   // l, c, r by column; the last one goes on; | a rule beside it
  bool small = false;    // in script size
  bool display = false;  // cells in display
  bool pairs = false;    // right and left columns in turn, without room inside a pair
  bool cases = false;
  bool lines = false;           // lines of a limit, close together
  std::vector<int> rulesAbove;  // numbers of rows, the one behind the last too
};

struct Tree {
  std::vector<Node> nodes;
  std::vector<TableForm> tables;
  int root = kNone;
  bool display = true;  // told by what stands round it
  bool told = false;

  const Node& operator[](int index) const { return nodes[static_cast<std::size_t>(index)]; }
  Node& operator[](int index) { return nodes[static_cast<std::size_t>(index)]; }
};

}  // namespace kelvane::formula
