#include "formula/notation.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "document/numbers.h"
#include "formula/names.h"
#include "platform/characters.h"
#include "typography/colours.h"
#include "typography/signs.h"

namespace kelvane::formula {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

bool IsBlank(char c) {
  return kBlanks.find(c) != kBlanks.npos;
}
bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Raised and lowered characters, and the plain ones that they are.
constexpr std::u32string_view kRaised = U"⁰¹²³⁴⁵⁶⁷⁸⁹⁺⁻⁼⁽⁾ⁿⁱ";
constexpr std::u32string_view kRaisedAs = U"0123456789+-=()ni";
constexpr std::u32string_view kLowered = U"₀₁₂₃₄₅₆₇₈₉₊₋₌₍₎ₐₑₕᵢⱼₖₗₘₙₒₚᵣₛₜᵤᵥₓ";
constexpr std::u32string_view kLoweredAs = U"0123456789+-=()aehijklmnoprstuvx";

// Colours by the names that people write, as the palette has them.
struct ColourName {
  std::string_view name;
  int number;
};
constexpr ColourName kColourNames[] = {
    {"black", 0},    {"white", 15},  {"red", 12},   {"green", 10}, {"blue", 9},     {"cyan", 11},
    {"magenta", 13}, {"yellow", 14}, {"gray", 8},   {"grey", 8},   {"darkgray", 8}, {"lightgray", 7},
    {"brown", 6},    {"orange", 6},  {"purple", 5}, {"violet", 5}, {"teal", 3},     {"olive", 6},
    {"lime", 10},    {"pink", 13},   {"navy", 1},   {"maroon", 4},
};

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  Reading Read() {
    if (text_.size() > kLongestNotation) Fail(0, text_.size(), "longer than 16,384 characters");
    CheckCharacters();
    const int root = ReadOuter();
    reading_.tree.root = root;
    std::ranges::sort(reading_.empty);
    return std::move(reading_);
  }

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

  // ---- Characters ----

  void CheckCharacters() const {
    for (std::size_t i = 0; i < text_.size(); ++i) {
      const auto byte = static_cast<unsigned char>(text_[i]);
      if ((byte < 32 && !IsBlank(text_[i])) || byte == 127) Fail(i, i + 1, "a control character");
    }
    const std::u32string characters = ReadUtf8(text_);
    if (characters.find(U'\uFFFD') != characters.npos) Fail(0, text_.size(), "text that is no UTF-8");
  }

  bool AtEnd() const { return at_ >= text_.size(); }
  char Here() const { return AtEnd() ? '\0' : text_[at_]; }
  bool Starts(std::string_view what) const { return text_.substr(at_).starts_with(what); }

  void SkipBlanks() {
    while (!AtEnd()) {
      if (IsBlank(Here())) {
        ++at_;
      } else if (Here() == '%') {
        at_ = std::min(text_.find('\n', at_), text_.size());
      } else {
        return;
      }
    }
  }

  // One character of UTF-8, which has been checked.
  char32_t TakeCharacter() {
    const auto byte = static_cast<unsigned char>(text_[at_]);
    const std::size_t length = byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
    const std::u32string read = ReadUtf8(text_.substr(at_, length));
    at_ += length;
    return read.front();
  }

  // The name behind a backslash, without moving: letters, or one other character.
  std::string_view NameHere() const {
    std::size_t end = at_ + 1;
    if (end >= text_.size()) return {};
    if (!IsLetter(text_[end])) return text_.substr(end, 1);
    while (end < text_.size() && IsLetter(text_[end])) ++end;
    return text_.substr(at_ + 1, end - at_ - 1);
  }
  bool AtName(std::string_view name) const { return Here() == '\\' && NameHere() == name; }
  // Names behind which nothing but a blank ends them take it along.
  void TakeName(std::string_view name) { at_ += 1 + name.size(); }

  // ---- Nodes ----

  Tree& tree() { return reading_.tree; }

  int New(Kind kind, std::size_t begin, Atom atom = Atom::Ordinary) {
    Node node;
    node.kind = kind;
    node.begin = begin;
    node.end = at_;
    node.atom = atom;
    tree().nodes.push_back(std::move(node));
    return static_cast<int>(tree().nodes.size()) - 1;
  }

  int NewSign(char32_t character, const kelvane::Sign* sign, Atom atom, std::size_t begin) {
    const int index = New(Kind::Sign, begin, atom);
    Node& node = tree()[index];
    node.character = character;
    node.sign = sign;
    node.face = static_cast<std::int16_t>(face_);
    if (atom == Atom::Operator) {
      node.large = true;
      const bool integral = character == U'∫' || character == U'∬' || character == U'∭' || character == U'∮';
      node.stacks = !integral;
    }
    return index;
  }

  // ---- What stands round a pasted formula ----

  struct Wrapping {
    std::string_view opening;
    std::string_view closing;
    bool display;
  };

  int ReadOuter() {
    static constexpr Wrapping kWrappings[] = {
        {"$$", "$$", true}, {"$", "$", false}, {"\\[", "\\]", true}, {"\\(", "\\)", false}};
    SkipBlanks();
    for (const Wrapping& wrapping : kWrappings) {
      if (!Starts(wrapping.opening)) continue;
      const std::size_t begin = at_;
      at_ += wrapping.opening.size();
      tree().display = wrapping.display;
      tree().told = true;
      closing_ = wrapping.closing;
      const int row = ReadRow(Ends::Dollar);
      if (!Starts(wrapping.closing))
        Fail(begin, begin + wrapping.opening.size(), "no closing " + std::string(wrapping.closing));
      at_ += wrapping.closing.size();
      closing_ = {};
      SkipPunctuationAndEnd();
      return row;
    }
    if (AtName("begin")) {
      const std::size_t begin = at_;
      if (const Environment* outer = TakeOuterEnvironment()) {
        tree().display = outer->name != "math";
        tree().told = true;
        const int row = ReadRow(Ends::Cell);
        TakeEndOf(outer->name, begin);
        SkipPunctuationAndEnd();
        return row;
      }
      at_ = begin;
    }
    const int row = ReadRow(Ends::Input);
    return row;
  }

  const Environment* TakeOuterEnvironment() {
    TakeName("begin");
    const std::size_t begin = at_;
    if (Here() != '{') return nullptr;
    const std::size_t end = text_.find('}', at_);
    if (end == text_.npos) return nullptr;
    const Environment* found = FindEnvironment(text_.substr(at_ + 1, end - at_ - 1));
    at_ = found && found->outer ? end + 1 : begin;
    return found && found->outer ? found : nullptr;
  }

  void SkipPunctuationAndEnd() {
    SkipBlanks();
    if (Here() == '.' || Here() == ',' || Here() == ';') ++at_;
    SkipBlanks();
    if (!AtEnd()) Fail(at_, text_.size(), "something behind the end of the formula");
  }

  // ---- Rows ----

  bool AtEndOf(Ends ends) {
    if (AtEnd()) return true;
    switch (Here()) {
      case '}':
        if (ends == Ends::Brace) return true;
        Fail(at_, at_ + 1, "no opening brace");
      case '&':
        if (ends == Ends::Cell) return true;
        Fail(at_, at_ + 1, "a column mark outside of a table");
      case ']':
        return ends == Ends::Bracket;
      case '$':
        if (ends == Ends::Dollar) return true;
        Fail(at_, at_ + 1, "a dollar sign inside of a formula");
      case '\\':
        break;
      default:
        return false;
    }
    if (ends == Ends::Dollar && !closing_.empty() && Starts(closing_)) return true;
    const std::string_view name = NameHere();
    const Name* found = FindName(name);
    if (!found) return false;
    switch (found->does) {
      case Does::LineEnd:
      case Does::End:
        if (ends == Ends::Cell) return true;
        if (found->does == Does::End) Fail(at_, at_ + 1 + name.size(), "\\end without \\begin");
        Fail(at_, at_ + 1 + name.size(), "a line end outside of a table");
      case Does::Right:
      case Does::Middle:
        if (ends == Ends::Right) return true;
        Fail(at_, at_ + 1 + name.size(), "\\" + std::string(name) + " without \\left");
      default:
        return false;
    }
  }

  // A list of nodes joined by next.
  struct List {
    int first = kNone;
    int last = kNone;
  };
  void Append(List& list, int index) {
    if (index == kNone) return;
    if (list.first == kNone) {
      list.first = index;
    } else {
      tree()[list.last].next = index;
    }
    list.last = index;
  }

  int RowOf(const List& list, std::size_t begin) {
    const int row = New(Kind::Row, begin);
    tree()[row].first = list.first;
    return row;
  }

  int ReadRow(Ends ends) {
    const Deeper deeper(*this, at_);
    const Face face = face_;
    const std::size_t begin = at_;
    List list;
    const Name* over = nullptr;
    int above = kNone;
    std::size_t overAt = 0;
    for (;;) {
      SkipBlanks();
      if (AtEndOf(ends)) break;
      if (Here() == '\\') {
        const std::string_view word = NameHere();
        const Name* name = FindName(word);
        if (name && name->does == Does::Old) {
          if (over) Fail(at_, at_ + 1 + word.size(), "a second \\" + std::string(word) + " in one group");
          overAt = at_;
          TakeName(word);
          above = RowOf(list, begin);
          list = {};
          over = name;
          continue;
        }
        if (name && name->does == Does::Declared) {
          TakeName(word);
          face_ = name->face;
          continue;
        }
      }
      Append(list, ReadScripted());
    }
    face_ = face;
    int row = RowOf(list, begin);
    if (over) {
      const int fraction = NewFraction(static_cast<FractionForm>(over->value), above, row, overAt);
      row = RowOf({fraction, fraction}, begin);
    }
    return row;
  }

  int NewFraction(FractionForm form, int above, int below, std::size_t begin) {
    const bool binomial = form == FractionForm::Binomial || form == FractionForm::DisplayBinomial ||
                          form == FractionForm::TextBinomial;
    const int index = New(Kind::Fraction, begin, binomial ? Atom::Ordinary : Atom::Inner);
    Node& node = tree()[index];
    node.first = above;
    node.second = below;
    node.value = static_cast<int>(form);
    return index;
  }

  // ---- Scripts ----

  int ReadScripted() {
    const std::size_t begin = at_;
    int nucleus = kNone;
    if (Here() != '^' && Here() != '_' && Here() != '\'') {
      nucleus = ReadAtom();
      if (nucleus == kNone) return kNone;
    }
    int above = kNone, below = kNone, primes = 0;
    Limits limits = Limits::AsUsual;
    bool told = false;
    for (;;) {
      const std::size_t before = at_;
      SkipBlanks();
      const char c = Here();
      if (c == '^' || c == '_') {
        ++at_;
        int& script = c == '^' ? above : below;
        if (script != kNone) Fail(before, at_, c == '^' ? "a second superscript" : "a second subscript");
        script = ReadArgument(c == '^' ? "behind ^" : "behind _", before);
      } else if (c == '\'') {
        ++at_;
        ++primes;
      } else if (c == '\\') {
        const std::string_view word = NameHere();
        const Name* name = FindName(word);
        if (!name || name->does != Does::Limits) {
          at_ = before;
          break;
        }
        const bool fits = nucleus != kNone && tree()[nucleus].atom == Atom::Operator;
        if (!fits && !(nucleus != kNone && tree()[nucleus].kind == Kind::Brace))
          Fail(at_, at_ + 1 + word.size(), "\\" + std::string(word) + " behind no operator");
        TakeName(word);
        limits = static_cast<Limits>(name->value);
        told = true;
      } else if (const int script = TakeUnicodeScript(above, below); script != 0) {
        continue;
      } else {
        at_ = before;
        break;
      }
    }
    if (told) tree()[nucleus].limits = limits;
    if (above == kNone && below == kNone && primes == 0) return nucleus;
    if (nucleus == kNone) nucleus = RowOf({}, begin);
    const Atom atom = tree()[nucleus].atom;
    const int index = New(Kind::Scripts, begin, atom);
    Node& node = tree()[index];
    node.first = nucleus;
    node.second = above;
    node.third = below;
    node.value = primes;
    return index;
  }

  // A stretch of raised or lowered characters. 0 if there is none here.
  int TakeUnicodeScript(int& above, int& below) {
    if (AtEnd() || static_cast<unsigned char>(Here()) < 0x80) return 0;
    List list;
    const std::size_t begin = at_;
    bool raised = false;
    for (;;) {
      const std::size_t before = at_;
      if (AtEnd() || static_cast<unsigned char>(Here()) < 0x80) break;
      const char32_t c = TakeCharacter();
      const std::size_t up = kRaised.find(c);
      const std::size_t down = kLowered.find(c);
      const bool isUp = up != kRaised.npos;
      if ((!isUp && down == kLowered.npos) || (list.first != kNone && isUp != raised)) {
        at_ = before;
        break;
      }
      raised = isUp;
      Append(list, SignOfCharacter(isUp ? kRaisedAs[up] : kLoweredAs[down], before));
    }
    if (list.first == kNone) return 0;
    int& script = raised ? above : below;
    if (script != kNone) Fail(begin, at_, raised ? "a second superscript" : "a second subscript");
    script = RowOf(list, begin);
    return 1;
  }

  // ---- Arguments ----

  // A group, or one sign. `of` says what misses it, `from` is where that begins.
  int ReadArgument(const std::string& of, std::size_t from) {
    SkipBlanks();
    if (Here() == '{') return ReadGroup();
    if (AtEnd() || Here() == '}' || Here() == '&' || Here() == '^' || Here() == '_' || AtName("\\") ||
        AtName("right") || AtName("end") || Here() == '$')
      Fail(from, at_, "something is missing " + of);
    const Deeper deeper(*this, at_);
    const std::size_t begin = at_;
    const int atom = ReadAtom();
    return RowOf({atom, atom}, begin);
  }

  // An empty one is a place that waits to be filled. One that is no argument takes no room, for scripts are
  // hung onto nothing that way.
  int ReadGroup(bool isArgument = true) {
    const std::size_t begin = at_++;
    const int row = ReadRow(Ends::Brace);
    if (Here() != '}') Fail(begin, begin + 1, "no closing brace");
    if (tree()[row].first == kNone) {
      NotePlace(row, begin + 1);
      if (!isArgument) tree()[row].value = 0;
    }
    ++at_;
    tree()[row].end = at_;
    return row;
  }

  void NotePlace(int row, std::size_t offset) {
    tree()[row].value = 1;
    tree()[row].begin = offset;
    reading_.empty.push_back(offset);
  }

  std::optional<std::string> ReadOptional() {
    const std::size_t before = at_;
    SkipBlanks();
    if (Here() != '[') {
      at_ = before;
      return std::nullopt;
    }
    const std::size_t end = text_.find(']', at_);
    if (end == text_.npos) Fail(at_, at_ + 1, "no closing bracket");
    std::string inside(text_.substr(at_ + 1, end - at_ - 1));
    at_ = end + 1;
    return inside;
  }

  // What stands between braces, as it stands.
  std::string_view ReadRaw(const std::string& of, std::size_t from) {
    SkipBlanks();
    if (Here() != '{') Fail(from, at_, "something is missing " + of);
    const std::size_t begin = at_;
    int open = 0;
    for (; !AtEnd(); ++at_) {
      const char c = Here();
      if (c == '\\') {
        ++at_;
      } else if (c == '{') {
        ++open;
      } else if (c == '}' && --open == 0) {
        return text_.substr(begin + 1, at_++ - begin - 1);
      }
    }
    Fail(begin, begin + 1, "no closing brace");
  }

  // ---- Atoms ----

  int ReadAtom() {
    const std::size_t begin = at_;
    if (Here() == '\\') return ReadNamed();
    if (Here() == '{') return ReadGroup(false);
    const char32_t character = TakeCharacter();
    if (character == U'~') {
      const int space = New(Kind::Space, begin);
      tree()[space].amount = 1.0F / 3;
      return space;
    }
    const std::size_t up = kRaised.find(character);
    const std::size_t down = kLowered.find(character);
    if (up != kRaised.npos || down != kLowered.npos) {
      at_ = begin;
      int above = kNone, below = kNone;
      TakeUnicodeScript(above, below);
      const int nucleus = RowOf({}, begin);
      const int index = New(Kind::Scripts, begin);
      tree()[index].first = nucleus;
      tree()[index].second = above;
      tree()[index].third = below;
      return index;
    }
    int sign = SignOfCharacter(character, begin);
    // A combining character behind it is its accent.
    while (!AtEnd() && static_cast<unsigned char>(Here()) >= 0x80) {
      const std::size_t before = at_;
      const char32_t accent = TakeCharacter();
      if (!((accent >= 0x300 && accent < 0x370) || (accent >= 0x20D0 && accent < 0x2100))) {
        at_ = before;
        break;
      }
      const int marked = New(accent == 0x338 ? Kind::Negated : Kind::Accent, begin, tree()[sign].atom);
      tree()[marked].first = accent == 0x338 ? sign : RowOf({sign, sign}, begin);
      tree()[marked].character = accent;
      sign = marked;
    }
    return sign;
  }

  int SignOfCharacter(char32_t character, std::size_t begin) {
    switch (character) {
      case U'-':
        character = U'−';
        break;
      case U'*':
        character = U'∗';
        break;
      case U'"':
        character = U'″';
        break;
      case U'∣':
        return NewSign(U'|', SignMeant(U'|'), Atom::Relation, begin);
      case U'∥':
        return NewSign(U'‖', SignMeant(U'‖'), Atom::Relation, begin);
      default:
        break;
    }
    const bool letter = character < 128 && IsLetter(static_cast<char>(character));
    const bool figure = character >= U'0' && character <= U'9';
    if (letter || figure) return NewSign(character, nullptr, Atom::Ordinary, begin);
    if (const int letterOfAlphabet = LetterOfAlphabet(character, begin); letterOfAlphabet != kNone)
      return letterOfAlphabet;
    const kelvane::Sign* sign = SignMeant(character);
    if (!sign) Fail(begin, at_, "no sign for " + WriteUtf8(character));
    if (sign->kind == SignClass::Space) {
      const int space = New(Kind::Space, begin);
      tree()[space].amount = character == 0x2003 ? 1.0F : character == 0x2002 ? 0.5F : 0.2F;
      return space;
    }
    return NewSign(sign->character, sign, AtomOf(sign->character, sign), begin);
  }

  // Bold, script and other letters of the mathematical alphabets.
  int LetterOfAlphabet(char32_t character, std::size_t begin) {
    for (const kelvane::Alphabet& row : Alphabets()) {
      if (character < row.first || character >= row.first + static_cast<char32_t>(row.count)) continue;
      static constexpr Face kFaces[] = {Face::Roman, Face::Bold, Face::Italic, Face::BoldItalic,
                                        Face::Sans,  Face::Sans, Face::Sans,   Face::Sans,
                                        Face::Usual, Face::Mono, Face::Usual,  Face::Script};
      const char32_t plain = row.firstLetter + (character - row.first);
      const int index = NewSign(plain, plain < 128 ? nullptr : SignMeant(plain), Atom::Ordinary, begin);
      tree()[index].face = static_cast<std::int16_t>(kFaces[row.font]);
      return index;
    }
    return kNone;
  }

  int ReadNamed() {
    const std::size_t begin = at_;
    const std::string_view word = NameHere();
    if (word.empty()) Fail(begin, begin + 1, "a backslash without a name");
    const Name* name = FindName(word);
    if (!name) {
      const kelvane::Sign* sign = SignNamed(word);
      if (!sign) {
        const bool broken = !IsLetter(word.front());
        at_ += 1 + word.size();
        if (broken && static_cast<unsigned char>(word.front()) >= 0x80)
          Fail(begin, at_, "a backslash without a name");
        Fail(begin, at_, "unknown name \\" + std::string(word));
      }
      TakeName(word);
      return NamedSign(*sign, begin);
    }
    TakeName(word);
    return Obey(*name, begin);
  }

  int NamedSign(const kelvane::Sign& sign, std::size_t begin) {
    if (sign.kind == SignClass::Space) {
      const int space = New(Kind::Space, begin);
      tree()[space].amount = 0.25F;
      return space;
    }
    return NewSign(sign.character, &sign, AtomOf(sign.character, &sign), begin);
  }

  static std::string Behind(const Name& name) { return "behind \\" + std::string(name.name); }

  int Obey(const Name& name, std::size_t begin) {
    switch (name.does) {
      case Does::Function: {
        const int index = New(Kind::Text, begin, name.atom);
        tree()[index].text = std::string(name.text);
        tree()[index].face = static_cast<std::int16_t>(name.face == Face::Usual ? Face::Roman : name.face);
        tree()[index].stacks = name.value == 1;
        return index;
      }
      case Does::Named: {
        const bool star = Here() == '*';
        if (star) ++at_;
        const std::string_view raw = ReadRaw(Behind(name), begin);
        const int index = New(Kind::Text, begin, Atom::Operator);
        tree()[index].text = PlainText(raw, begin);
        tree()[index].face = static_cast<std::int16_t>(Face::Roman);
        tree()[index].stacks = star;
        return index;
      }
      case Does::Fraction: {
        if (name.value == static_cast<int>(FractionForm::Continued)) ReadOptional();
        const int above = ReadArgument(Behind(name), begin);
        const int below = ReadArgument(Behind(name), begin);
        return NewFraction(static_cast<FractionForm>(name.value), above, below, begin);
      }
      case Does::Root:
        return ReadRoot(name, begin);
      case Does::Left:
        return ReadFence(begin);
      case Does::Big: {
        const int index = New(Kind::Delimiter, begin, name.atom);
        tree()[index].value = name.value;
        const auto [character, sign] = ReadDelimiter(Behind(name), begin);
        tree()[index].character = character;
        tree()[index].sign = sign;
        tree()[index].end = at_;
        return index;
      }
      case Does::Accent: {
        const int body = ReadArgument(Behind(name), begin);
        const int index = WithBody(Kind::Accent, body, begin);
        tree()[index].character = name.character;
        tree()[index].value = name.value;
        return index;
      }
      case Does::Line:
      case Does::OverArrow: {
        const int body = ReadArgument(Behind(name), begin);
        const int index = WithBody(name.does == Does::Line ? Kind::Line : Kind::OverArrow, body, begin);
        tree()[index].character = name.character;
        tree()[index].value = name.value;
        return index;
      }
      case Does::Brace: {
        const int body = ReadArgument(Behind(name), begin);
        const int index = WithBody(Kind::Brace, body, begin);
        tree()[index].value = name.value;
        tree()[index].stacks = true;
        return index;
      }
      case Does::Stack: {
        const int script = ReadArgument(Behind(name), begin);
        const int middle = ReadArgument(Behind(name), begin);
        const int only = tree()[middle].first;
        const Atom atom = name.atom == Atom::Relation || only == kNone ? name.atom : tree()[only].atom;
        const int index = New(Kind::Stack, begin, atom == Atom::Operator ? Atom::Ordinary : atom);
        Node& node = tree()[index];
        node.first = middle;
        (name.value == static_cast<int>(Side::Above) ? node.second : node.third) = script;
        return index;
      }
      case Does::Reach: {
        int below = kNone;
        SkipBlanks();
        if (Here() == '[') below = ReadBracketed();
        const int above = ReadArgument(Behind(name), begin);
        const int index = New(Kind::Reach, begin, Atom::Relation);
        tree()[index].character = name.character;
        tree()[index].second = above;
        tree()[index].third = below;
        return index;
      }
      case Does::Text:
        return ReadText(name, begin);
      case Does::Alphabet: {
        const Face before = face_;
        face_ = name.face;
        const int body = ReadArgument(Behind(name), begin);
        face_ = before;
        return body;
      }
      case Does::Space:
        return NewSpace(static_cast<float>(name.value) / 18, begin);
      case Does::Length:
        return ReadLength(name, begin);
      case Does::Style: {
        const int index = New(Kind::Style, begin);
        tree()[index].value = name.value;
        return index;
      }
      case Does::Begin:
        return ReadTable(begin);
      case Does::Substack:
        return ReadSubstack(begin);
      case Does::Modulo:
        return ReadModulo(name, begin);
      case Does::Framed: {
        const int body = name.value == 1
                             ? ReadText({.name = name.name, .does = Does::Text, .face = Face::Words}, begin)
                             : ReadArgument(Behind(name), begin);
        return WithBody(Kind::Framed, body, begin);
      }
      case Does::Phantom: {
        const int body = ReadArgument(Behind(name), begin);
        const int index = WithBody(Kind::Phantom, body, begin);
        tree()[index].value = name.value;
        return index;
      }
      case Does::Colour:
        return ReadColour(name, begin);
      case Does::Negated: {
        SkipBlanks();
        if (AtEnd() || Here() == '}') Fail(begin, at_, "something is missing behind \\not");
        const int sign = ReadAtom();
        if (sign == kNone || tree()[sign].kind != Kind::Sign) Fail(begin, at_, "no sign behind \\not");
        const int index = New(Kind::Negated, begin, tree()[sign].atom);
        tree()[index].first = sign;
        return index;
      }
      case Does::Class: {
        const int body = ReadArgument(Behind(name), begin);
        const int index = WithBody(Kind::Classed, body, begin);
        tree()[index].atom = name.atom;
        tree()[index].stacks = name.atom == Atom::Operator;
        return index;
      }
      case Does::Sign: {
        const kelvane::Sign* sign = SignMeant(name.character);
        if (!sign) Fail(begin, at_, "no sign for \\" + std::string(name.name));
        return NewSign(sign->character, sign, name.atom, begin);
      }
      case Does::Leave:
        for (int i = 0; i < name.value; ++i) {
          if (Here() == '*') ++at_;
          ReadRaw(Behind(name), begin);
        }
        return kNone;
      case Does::Argument:
        return ReadChoice(name, begin);
      case Does::RowRule:
        Fail(begin, at_, "\\hline not at the beginning of a row");
      case Does::Limits:
        Fail(begin, at_, "\\" + std::string(name.name) + " behind no operator");
      default:
        Fail(begin, at_, "\\" + std::string(name.name) + " does not belong here");
    }
  }

  int WithBody(Kind kind, int body, std::size_t begin) {
    const int index = New(kind, begin);
    tree()[index].first = body;
    return index;
  }

  int NewSpace(float amount, std::size_t begin) {
    const int index = New(Kind::Space, begin);
    tree()[index].amount = amount;
    return index;
  }

  int ReadChoice(const Name& name, std::size_t begin) {
    const int first = ReadArgument(Behind(name), begin);
    for (int i = 0; i < name.value * 3; ++i) ReadRaw(Behind(name), begin);
    return first;
  }

  int ReadBracketed() {
    const std::size_t open = at_++;
    const int row = ReadRow(Ends::Bracket);
    if (Here() != ']') Fail(open, open + 1, "no closing bracket");
    if (tree()[row].first == kNone) NotePlace(row, open + 1);
    ++at_;
    return row;
  }

  int ReadRoot(const Name& name, std::size_t begin) {
    int index = kNone;
    if (name.value == 1) {  // \root n \of x
      List list;
      const std::size_t from = at_;
      for (SkipBlanks(); !AtEnd() && !AtName("of"); SkipBlanks()) {
        if (AtEndOf(Ends::Input)) break;
        Append(list, ReadScripted());
      }
      if (!AtName("of")) Fail(begin, at_, "\\root without \\of");
      index = RowOf(list, from);
      TakeName("of");
    } else {
      SkipBlanks();
      if (Here() == '[') index = ReadBracketed();
    }
    const int body = ReadArgument(Behind(name), begin);
    const int root = WithBody(Kind::Root, body, begin);
    tree()[root].second = index;
    return root;
  }

  // ---- Delimiters ----

  struct DelimiterSign {
    char32_t character = 0;
    const kelvane::Sign* sign = nullptr;
  };

  // 0 for the full stop, which is none.
  DelimiterSign ReadDelimiter(const std::string& of, std::size_t from) {
    SkipBlanks();
    if (AtEnd()) Fail(from, at_, "no bracket " + of);
    const std::size_t begin = at_;
    char32_t character = 0;
    if (Here() == '\\') {
      const std::string_view word = NameHere();
      const Name* name = FindName(word);
      const kelvane::Sign* sign =
          name && name->does == Does::Sign ? SignMeant(name->character) : SignNamed(word);
      if (!sign) Fail(begin, at_ + 1 + word.size(), "no bracket " + of);
      TakeName(word);
      character = sign->character;
    } else {
      character = TakeCharacter();
      if (character == U'.') return {};
      if (character == U'<') character = U'⟨';
      if (character == U'>') character = U'⟩';
      if (character == U'∣') character = U'|';
      if (character == U'∥') character = U'‖';
    }
    static constexpr std::u32string_view kDelimiters = U"()[]{}|‖⟨⟩⌈⌉⌊⌋/\\↑↓⇑⇓∖";
    if (kDelimiters.find(character) == kDelimiters.npos) Fail(begin, at_, "no bracket " + of);
    if (character == U'∖') character = U'\\';
    return {character, SignMeant(character)};
  }

  int ReadFence(std::size_t begin) {
    const Deeper deeper(*this, begin);
    const auto opening = ReadDelimiter("behind \\left", begin);
    List parts;
    for (;;) {
      Append(parts, ReadRow(Ends::Right));
      if (AtName("middle")) {
        const std::size_t from = at_;
        TakeName("middle");
        const auto middle = ReadDelimiter("behind \\middle", from);
        const int index = New(Kind::Delimiter, from, Atom::Relation);
        tree()[index].character = middle.character;
        tree()[index].sign = middle.sign;
        Append(parts, index);
        continue;
      }
      if (!AtName("right")) Fail(begin, begin + 5, "\\left without \\right");
      break;
    }
    const std::size_t from = at_;
    TakeName("right");
    const auto closing = ReadDelimiter("behind \\right", from);
    const int index = New(Kind::Fence, begin, Atom::Inner);
    Node& node = tree()[index];
    node.first = parts.first;
    node.character = opening.character;
    node.closing = closing.character;
    return index;
  }

  // ---- Text ----

  // Text of which only letters and blanks are meant: names of functions.
  std::string PlainText(std::string_view raw, std::size_t begin) const {
    std::string text;
    for (std::size_t i = 0; i < raw.size(); ++i) {
      const char c = raw[i];
      if (c == '\\') {
        std::size_t end = i + 1;
        while (end < raw.size() && IsLetter(raw[end])) ++end;
        if (end == i + 1 && end < raw.size()) {
          if (raw[end] == ',' || raw[end] == ' ' || raw[end] == ';') text += ' ';
          i = end;
          continue;
        }
        i = end - 1;
        continue;
      }
      if (c == '{' || c == '}' || c == '$') continue;
      text += c == '~' || IsBlank(c) ? ' ' : c;
    }
    if (text.empty()) Fail(begin, at_, "an empty name");
    return text;
  }

  void CheckText(const std::string& text, std::size_t begin) const {
    std::string missing;
    SignsToRun(text, 0, missing);
    if (!missing.empty()) Fail(begin, at_, "no sign for " + missing);
  }

  int ReadText(const Name& name, std::size_t begin) {
    const Deeper deeper(*this, begin);
    SkipBlanks();
    if (Here() != '{') Fail(begin, at_, "something is missing " + Behind(name));
    const std::size_t open = at_++;
    List list;
    std::string text;
    std::size_t from = at_;
    const auto finish = [&] {
      if (text.empty()) return;
      CheckText(text, from);
      const int index = New(Kind::Text, from);
      tree()[index].text = std::move(text);
      tree()[index].face = static_cast<std::int16_t>(name.face);
      text.clear();
      Append(list, index);
    };
    const Face before = face_;
    while (!AtEnd() && Here() != '}') {
      const char c = Here();
      if (text.empty()) from = at_;
      if (c == '$') {
        finish();
        const std::size_t dollar = at_++;
        const std::string_view closing = std::exchange(closing_, "$");
        face_ = Face::Usual;
        const int inside = ReadRow(Ends::Dollar);
        face_ = before;
        closing_ = closing;
        if (Here() != '$') Fail(dollar, dollar + 1, "no closing $");
        ++at_;
        Append(list, inside);
      } else if (c == '\\') {
        const std::string_view word = NameHere();
        const Name* known = FindName(word);
        if (known && known->does == Does::Text) {
          finish();
          TakeName(word);
          Append(list, ReadText(*known, at_));
        } else if (word == " " || word == "," || word == ";" || word == ":" || word == "quad") {
          text += word == "quad" ? "    " : " ";
          TakeName(word);
        } else if (known && known->does == Does::Sign && !IsLetter(word.front())) {
          text += WriteUtf8(known->character);
          TakeName(word);
        } else if (const kelvane::Sign* sign = SignNamed(word)) {
          text += WriteUtf8(sign->character);
          TakeName(word);
        } else {
          Fail(at_, at_ + 1 + word.size(), "\\" + std::string(word) + " does not belong into text");
        }
      } else if (c == '{') {
        finish();
        Append(list, ReadText({.name = name.name, .does = Does::Text, .face = name.face}, at_));
      } else if (c == '~' || IsBlank(c)) {
        ++at_;
        if (text.empty() || text.back() != ' ' || c == '~') text += ' ';
      } else if (Starts("``") || Starts("''")) {
        text += WriteUtf8(Starts("``") ? U'“' : U'”');
        at_ += 2;
      } else {
        text += WriteUtf8(TakeCharacter());
      }
    }
    if (AtEnd()) Fail(open, open + 1, "no closing brace");
    finish();
    const int row = RowOf(list, open);
    if (list.first == kNone) NotePlace(row, open + 1);
    ++at_;
    return row;
  }

  // ---- Others ----

  int ReadLength(const Name& name, std::size_t begin) {
    std::string length;
    if (name.value == 1) {
      if (Here() == '*') ++at_;
      length = ReadRaw(Behind(name), begin);
    } else {
      SkipBlanks();
      const std::size_t from = at_;
      while (!AtEnd() && (Here() == '-' || Here() == '.' || (Here() >= '0' && Here() <= '9'))) ++at_;
      while (!AtEnd() && IsLetter(Here()) && at_ - from < 12 &&
             !text_.substr(from, at_ - from).ends_with("mu") &&
             !text_.substr(from, at_ - from).ends_with("em") &&
             !text_.substr(from, at_ - from).ends_with("pt"))
        ++at_;
      length = text_.substr(from, at_ - from);
    }
    struct Unit {
      std::string_view name;
      float ems;
    };
    static constexpr Unit kUnits[] = {{"em", 1},      {"mu", 1.0F / 18}, {"pt", 0.1F}, {"ex", 0.43F},
                                      {"mm", 0.285F}, {"cm", 2.85F},     {"in", 7.2F}};
    for (const Unit& unit : kUnits) {
      if (!length.ends_with(unit.name)) continue;
      const auto number = NumberOf(std::string_view(length).substr(0, length.size() - unit.name.size()));
      if (number && std::abs(*number * unit.ems) <= 100) return NewSpace(*number * unit.ems, begin);
    }
    Fail(begin, at_, "no length " + Behind(name));
  }

  int ReadModulo(const Name& name, std::size_t begin) {
    List list;
    const auto word = [&](std::string text, Atom atom) {
      const int index = New(Kind::Text, begin, atom);
      tree()[index].text = std::move(text);
      tree()[index].face = static_cast<std::int16_t>(Face::Roman);
      Append(list, index);
    };
    if (name.value == 1) {
      word("mod", Atom::Binary);
      return list.first;
    }
    const int body = ReadArgument(Behind(name), begin);
    Append(list, NewSpace(1, begin));
    if (name.value != 2) Append(list, NewSign(U'(', SignMeant(U'('), Atom::Opening, begin));
    if (name.value != 3) {
      word("mod", Atom::Ordinary);
      Append(list, NewSpace(0.24F, begin));
    }
    Append(list, body);
    if (name.value != 2) Append(list, NewSign(U')', SignMeant(U')'), Atom::Closing, begin));
    return RowOf(list, begin);
  }

  int ReadColour(const Name& name, std::size_t begin) {
    const auto model = ReadOptional();
    const std::string wanted(ReadRaw(Behind(name), begin));
    const int number = ColourNumber(wanted, model.value_or(""));
    if (number < 0) Fail(begin, at_, "unknown colour " + wanted);
    const int colour = New(Kind::Colour, begin);
    tree()[colour].value = number;
    if (name.value == 0) return colour;
    const int body = ReadArgument(Behind(name), begin);
    tree()[colour].next = body;
    return RowOf({colour, body}, begin);
  }

  static int ColourNumber(const std::string& wanted, const std::string& model) {
    const std::string plain = wanted.substr(0, wanted.find('!'));
    for (const ColourName& one : kColourNames)
      if (one.name == plain) return one.number;
    int red = -1, green = -1, blue = -1;
    if ((wanted.size() == 7 && wanted[0] == '#') || (model == "HTML" && wanted.size() == 6)) {
      const std::string digits = wanted.substr(wanted.size() - 6);
      const auto hex = [&digits](std::size_t at) {
        int value = 0;
        for (const char c : digits.substr(at, 2)) {
          const bool number = c >= '0' && c <= '9';
          const int low = c | 32;
          if (!number && !(low >= 'a' && low <= 'f')) return -1;
          value = value * 16 + (number ? c - '0' : low - 'a' + 10);
        }
        return value;
      };
      red = hex(0), green = hex(2), blue = hex(4);
    } else if (model == "rgb" || model == "RGB") {
      float parts[3] = {-1, -1, -1};
      std::string_view rest = wanted;
      for (float& part : parts) {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        part = NumberOf(rest.substr(0, comma)).value_or(-1) * (model == "rgb" ? 255.0F : 1.0F);
        rest.remove_prefix(std::min(comma + 1, rest.size()));
      }
      const auto whole = [](float part) { return part >= 0 && part <= 255 ? static_cast<int>(part) : -1; };
      red = whole(parts[0]), green = whole(parts[1]), blue = whole(parts[2]);
    }
    if (red < 0 || green < 0 || blue < 0) return -1;
    int best = 0, least = 1 << 30;
    for (std::int16_t number = 0; number < 16; ++number) {
      const auto value = PaletteColour(number);
      const int dr = ColourRed(value) - red, dg = ColourGreen(value) - green, db = ColourBlue(value) - blue;
      const int far = dr * dr + dg * dg + db * db;
      if (far < least) {
        least = far;
        best = number;
      }
    }
    return best;
  }

  // ---- Tables ----

  void TakeEndOf(std::string_view name, std::size_t begin) {
    if (!AtName("end")) Fail(begin, begin + 6, "no \\end{" + std::string(name) + "}");
    const std::size_t from = at_;
    TakeName("end");
    const std::string_view closed = ReadRaw("behind \\end", from);
    if (closed != name)
      Fail(from, at_, "\\end{" + std::string(closed) + "} for \\begin{" + std::string(name) + "}");
  }

  static std::string ColumnsOf(std::string_view given) {
    std::string columns;
    int skip = 0;
    for (std::size_t i = 0; i < given.size(); ++i) {
      const char c = given[i];
      if (c == '{') ++skip;
      if (c == '}') --skip;
      if (skip > 0) continue;
      if (c == 'l' || c == 'c' || c == 'r' || c == '|') columns += c;
      if (c == 'p') columns += 'l';
    }
    return columns.empty() ? "c" : columns;
  }

  int ReadTable(std::size_t begin) {
    const Deeper deeper(*this, begin);
    const std::string name(ReadRaw("behind \\begin", begin));
    const Environment* found = FindEnvironment(name);
    if (!found || found->outer) Fail(begin, at_, "unknown table \\begin{" + name + "}");
    TableForm form;
    form.columns = found->columns;
    form.small = found->small;
    form.display = found->display;
    form.pairs = found->pairs;
    form.cases = found->cases;
    ReadOptional();
    for (int i = 0; i < found->arguments; ++i) ReadRaw("behind \\begin{" + name + "}", begin);
    if (found->given) form.columns = ColumnsOf(ReadRaw("behind \\begin{" + name + "}", begin));
    const int table = ReadRows(std::move(form), begin);
    TakeEndOf(name, begin);
    tree()[table].end = at_;
    if (found->opening == 0 && found->closing == 0) return table;
    const int index = New(Kind::Fence, begin, Atom::Inner);
    Node& node = tree()[index];
    node.first = table;
    node.character = found->opening;
    node.closing = found->closing;
    return index;
  }

  // Rows of cells up to what ends them, which is left.
  int ReadRows(TableForm form, std::size_t begin) {
    List rows;
    int number = 0;
    for (bool more = true; more;) {
      for (SkipBlanks(); AtName("hline"); SkipBlanks()) {
        TakeName("hline");
        form.rulesAbove.push_back(number);
      }
      List cells;
      const std::size_t from = at_;
      bool alone = true;
      for (;;) {
        const std::size_t cellAt = at_;
        const int cell = ReadRow(Ends::Cell);
        SkipBlanks();
        if (tree()[cell].first == kNone) tree()[cell].begin = cellAt;
        Append(cells, cell);
        if (Here() != '&') break;
        ++at_;
        alone = false;
      }
      more = false;
      if (Here() == '\\') {
        const Name* name = FindName(NameHere());
        if (name && name->does == Does::LineEnd) {
          TakeName(NameHere());
          if (Here() == '*') ++at_;
          ReadOptional();
          more = true;
        }
      }
      // The last line end may have nothing behind it.
      if (!more && alone && rows.first != kNone && tree()[cells.first].first == kNone) break;
      for (int cell = cells.first; cell != kNone; cell = tree()[cell].next)
        if (tree()[cell].first == kNone && !form.pairs) NoteCell(cell);
      Append(rows, RowOf(cells, from));
      ++number;
    }
    const int index = New(Kind::Table, begin, Atom::Ordinary);
    tree()[index].first = rows.first;
    tree()[index].value = static_cast<int>(tree().tables.size());
    tree().tables.push_back(std::move(form));
    return index;
  }

  // Empty cells are places to go to, but stay empty on paper.
  void NoteCell(int cell) { reading_.empty.push_back(tree()[cell].begin); }

  int ReadSubstack(std::size_t begin) {
    SkipBlanks();
    if (Here() != '{') Fail(begin, at_, "something is missing behind \\substack");
    const std::size_t open = at_++;
    TableForm form;
    form.columns = "c";
    form.lines = true;
    const int table = ReadLines(std::move(form), begin);
    if (Here() != '}') Fail(open, open + 1, "no closing brace");
    ++at_;
    return table;
  }

  // As ReadRows, but a brace ends it.
  int ReadLines(TableForm form, std::size_t begin) {
    const Deeper deeper(*this, begin);
    List rows;
    for (;;) {
      List list;
      const std::size_t from = at_;
      for (SkipBlanks(); !AtEnd() && Here() != '}' && !AtName("\\"); SkipBlanks()) {
        if (Here() == '&') Fail(at_, at_ + 1, "a column mark outside of a table");
        if (AtEndOf(Ends::Brace)) break;
        Append(list, ReadScripted());
      }
      const int cell = RowOf(list, from);
      if (list.first == kNone) NotePlace(cell, at_);
      Append(rows, RowOf({cell, cell}, from));
      if (!AtName("\\")) break;
      TakeName("\\");
      ReadOptional();
    }
    const int index = New(Kind::Table, begin);
    tree()[index].first = rows.first;
    tree()[index].value = static_cast<int>(tree().tables.size());
    tree().tables.push_back(std::move(form));
    return index;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  int depth_ = 0;
  Face face_ = Face::Usual;
  std::string_view closing_;
  Reading reading_;
};

}  // namespace

Reading ReadNotation(std::string_view notation) {
  return Reader(notation).Read();
}

}  // namespace kelvane::formula
