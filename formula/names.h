#pragma once

// The names of the notation: what stands behind a backslash and is no sign of the table.

#include <cstdint>
#include <span>
#include <string_view>

#include "formula/tree.h"
#include "typography/sign_table.h"

namespace kelvane::formula {

enum class Does : std::uint8_t {
  Function,  // text: the words it is set as; value 1: limits below
  Barred,    // the same with a line; value: Side
  Named,     // \operatorname{}; \operatorname*{} has limits
  Fraction,  // value: FractionForm; two arguments
  Old,       // \over and its kin within a group; value: FractionForm
  Root,
  Left,
  Middle,
  Right,
  Big,        // value: 1 to 4; atom
  Accent,     // character; value: 1 for wide
  Line,       // value: Side
  Brace,      // value: Side
  OverArrow,  // character; value: Side
  Stack,      // value: Side of the first argument; both: \stackrel makes a relation
  Reach,      // character
  Text,       // face; words
  Alphabet,   // face of the letters of its argument
  Declared,   // face of what follows in the group
  Space,      // amount in 1/18 em
  Length,     // \hspace{} and \mspace
  Style,      // value: StyleChange
  Begin,
  End,
  LineEnd,
  RowRule,  // \hline
  Substack,
  Modulo,   // value: 0 \pmod, 1 \bmod, 2 \mod, 3 \pod
  Framed,   // value: Frame; face: of text
  Between,  // brackets to the size of the argument: character, value: the closing one
  Phantom,  // value: PhantomForm
  Colour,   // value: 1 with the coloured part as its second argument
  Negated,
  Limits,    // value: Limits
  Class,     // atom
  Sign,      // character; atom
  Leave,     // value: number of arguments, left out with them
  Argument,  // stands for its argument
};

struct Name {
  std::string_view name;
  Does does;
  int value = 0;
  char32_t character = 0;
  Atom atom = Atom::Ordinary;
  Face face = Face::Usual;
  std::string_view text = {};
  int places = 0;  // braces that it is typed with
};

// Null for a name that is none. In names capitals differ from small letters.
const Name* FindName(std::string_view name);
std::span<const Name> Names();

// The sign of the table with that very name; null if there is none.
const Sign* SignNamed(std::string_view name);

// The sign that a character means in a formula: of ASCII never the forms that only Math0 has. Null if it has
// none.
const Sign* SignMeant(char32_t character);

// The class in a formula of a character, which its row in the table of signs does not always tell.
Atom AtomOf(char32_t character, const Sign* sign);

struct Environment {
  std::string_view name;
  char32_t opening = 0;
  char32_t closing = 0;
  std::string_view columns = "c";  // the last one goes on
  bool given = false;              // takes its columns as an argument
  bool small = false;
  bool display = false;
  bool pairs = false;
  bool cases = false;
  bool lines = false;  // those of a limit
  bool outer = false;  // stands round a whole formula and is taken off
  int arguments = 0;   // left out
};
const Environment* FindEnvironment(std::string_view name);
std::span<const Environment> Environments();

}  // namespace kelvane::formula
