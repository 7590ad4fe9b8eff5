#pragma once

// The reader of notations, one class in several files: reader.cpp has rows, scripts and arguments,
// reader_atoms.cpp signs, names and brackets, reader_text.cpp words, lengths and colours, reader_tables.cpp
// tables. Only they include it.

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "formula/drawn_signs.h"
#include "formula/names.h"
#include "formula/notation.h"
#include "formula/result.h"
#include "formula/tree.h"
#include "typography/signs.h"

namespace kelvane::formula {

inline constexpr std::string_view kBlanks = " \t\r\n";

inline bool IsBlank(char c) {
  return kBlanks.find(c) != kBlanks.npos;
}
inline bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Raised and lowered characters, and the plain ones that they are.
inline constexpr std::u32string_view kRaised = U"⁰¹²³⁴⁵⁶⁷⁸⁹⁺⁻⁼⁽⁾ⁿⁱ";
inline constexpr std::u32string_view kRaisedAs = U"0123456789+-=()ni";
inline constexpr std::u32string_view kLowered = U"₀₁₂₃₄₅₆₇₈₉₊₋₌₍₎ₐₑₕᵢⱼₖₗₘₙₒₚᵣₛₜᵤᵥₓ";
inline constexpr std::u32string_view kLoweredAs = U"0123456789+-=()aehijklmnoprstuvx";

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}
  Reading Read();

 private:
  // What ends a row; the row leaves it to whoever asked for the row.
  enum class Ends { Input, Brace, Bracket, Dollar, Cell, Right };
  [[noreturn]] void Fail(std::size_t begin, std::size_t end, std::string message) const {
    throw FormulaError{begin, std::min(end, text_.size()), std::move(message)};
  }
  class Deeper {
   public:
    Deeper(Reader& reader, std::size_t at) : reader_(reader) {
      if (++reader_.depth_ > kDeepestNesting) reader_.Fail(at, at + 1, "nested too deeply");
    }
    ~Deeper() { --reader_.depth_; }
    Deeper(const Deeper&) = delete;
    Deeper& operator=(const Deeper&) = delete;

   private:
    Reader& reader_;
  };

  // Characters
  void CheckCharacters() const;
  bool AtEnd() const { return at_ >= text_.size(); }
  char Here() const { return AtEnd() ? '\0' : text_[at_]; }
  bool Starts(std::string_view what) const { return text_.substr(at_).starts_with(what); }
  void SkipBlanks();
  // One character of UTF-8, which has been checked.
  char32_t TakeCharacter();
  // The name behind a backslash, without moving: letters, or one other character.
  std::string_view NameHere() const;
  bool AtName(std::string_view name) const { return Here() == '\\' && NameHere() == name; }
  // Names behind which nothing but a blank ends them take it along.
  void TakeName(std::string_view name) { at_ += 1 + name.size(); }

  // Nodes
  Tree& tree() { return reading_.tree; }
  int New(Kind kind, std::size_t begin, Atom atom = Atom::Ordinary);
  int NewSign(char32_t character, const kelvane::Sign* sign, Atom atom, std::size_t begin);

  // What stands round a pasted formula
  int ReadOuter();
  const Environment* TakeOuterEnvironment();
  void SkipPunctuationAndEnd();

  // Rows
  bool AtEndOf(Ends ends);
  // A list of nodes joined by next.
  struct List {
    int first = kNone;
    int last = kNone;
  };
  void Append(List& list, int index);
  int RowOf(const List& list, std::size_t begin);
  int ReadRow(Ends ends);
  int NewFraction(FractionForm form, int above, int below, std::size_t begin);

  // Scripts
  int ReadScripted();
  // A stretch of raised or lowered characters. 0 if there is none here.
  int TakeUnicodeScript(int& above, int& below);

  // Arguments
  // A group, or one sign. `of` says what misses it, `from` is where that begins.
  int ReadArgument(const std::string& of, std::size_t from);
  // An empty one is a place that waits to be filled. One that is no argument takes no room, for scripts are
  // hung onto nothing that way.
  int ReadGroup(bool isArgument = true);
  void NotePlace(int row, std::size_t offset);
  std::optional<std::string> ReadOptional();
  // What stands between braces, as it stands.
  std::string_view ReadRaw(const std::string& of, std::size_t from);

  // Atoms
  int ReadAtom();
  int SignOfCharacter(char32_t character, std::size_t begin);
  // Bold, script and other letters of the mathematical alphabets.
  int LetterOfAlphabet(char32_t character, std::size_t begin);
  int ReadNamed();
  int NamedSign(const kelvane::Sign& sign, std::size_t begin);
  int NewDrawn(const DrawnSign& sign, std::size_t begin);
  static std::string Behind(const Name& name) { return "behind \\" + std::string(name.name); }
  int Obey(const Name& name, std::size_t begin);
  int WithBody(Kind kind, int body, std::size_t begin);
  int NewSpace(float amount, std::size_t begin);
  int ReadChoice(const Name& name, std::size_t begin);
  int ReadBracketed();
  int ReadRoot(const Name& name, std::size_t begin);

  // Delimiters
  struct DelimiterSign {
    char32_t character = 0;
    const kelvane::Sign* sign = nullptr;
  };
  // 0 for the full stop, which is none.
  DelimiterSign ReadDelimiter(const std::string& of, std::size_t from);
  int ReadFence(std::size_t begin);

  // Text
  // Text of which only letters and blanks are meant: names of functions.
  std::string PlainText(std::string_view raw, std::size_t begin) const;
  void CheckText(const std::string& text, std::size_t begin) const;
  int ReadText(const Name& name, std::size_t begin);

  // Others
  int ReadLength(const Name& name, std::size_t begin);
  int ReadModulo(const Name& name, std::size_t begin);
  int ReadColour(const Name& name, std::size_t begin);
  static int ColourNumber(const std::string& wanted, const std::string& model);

  // Tables
  void TakeEndOf(std::string_view name, std::size_t begin);
  static std::string ColumnsOf(std::string_view given);
  int ReadTable(std::size_t begin);
  // Rows of cells up to what ends them, which is left.
  int ReadRows(TableForm form, std::size_t begin);
  // Empty cells are places to go to, but stay empty on paper.
  void NoteCell(int cell) { reading_.empty.push_back(tree()[cell].begin); }
  int ReadSubstack(std::size_t begin);
  // As ReadRows, but a brace ends it.
  int ReadLines(TableForm form, std::size_t begin);
  std::string_view text_;
  std::size_t at_ = 0;
  int depth_ = 0;
  Face face_ = Face::Usual;
  std::string_view closing_;
  Reading reading_;
};

}  // namespace kelvane::formula
