#include "formula/reader.h"

#include "platform/characters.h"

namespace kelvane::formula {
namespace {

struct Wrapping {
  std::string_view opening;
  std::string_view closing;
  bool display;
};

}  // namespace

Reading Reader::Read() {
  if (text_.size() > kLongestNotation) Fail(0, text_.size(), "longer than 16,384 characters");
  CheckCharacters();
  const int root = ReadOuter();
  reading_.tree.root = root;
  std::ranges::sort(reading_.empty);
  return std::move(reading_);
}

// ---- Characters ----

void Reader::CheckCharacters() const {
  for (std::size_t i = 0; i < text_.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text_[i]);
    if ((byte < 32 && !IsBlank(text_[i])) || byte == 127) Fail(i, i + 1, "a control character");
  }
  const std::u32string characters = ReadUtf8(text_);
  if (characters.find(U'\uFFFD') != characters.npos) Fail(0, text_.size(), "text that is no UTF-8");
}

void Reader::SkipBlanks() {
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

char32_t Reader::TakeCharacter() {
  const auto byte = static_cast<unsigned char>(text_[at_]);
  const std::size_t length = byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
  const std::u32string read = ReadUtf8(text_.substr(at_, length));
  at_ += length;
  return read.front();
}

std::string_view Reader::NameHere() const {
  std::size_t end = at_ + 1;
  if (end >= text_.size()) return {};
  if (!IsLetter(text_[end])) return text_.substr(end, 1);
  while (end < text_.size() && IsLetter(text_[end])) ++end;
  return text_.substr(at_ + 1, end - at_ - 1);
}

// ---- Nodes ----

int Reader::New(Kind kind, std::size_t begin, Atom atom) {
  Node node;
  node.kind = kind;
  node.begin = begin;
  node.end = at_;
  node.atom = atom;
  tree().nodes.push_back(std::move(node));
  return static_cast<int>(tree().nodes.size()) - 1;
}

int Reader::NewSign(char32_t character, const kelvane::Sign* sign, Atom atom, std::size_t begin) {
  const int index = New(Kind::Sign, begin, atom);
  Node& node = tree()[index];
  node.character = character;
  node.sign = sign;
  node.face = static_cast<std::int16_t>(face_);
  if (atom == Atom::Operator) {
    node.large = true;
    node.stacks = !IsIntegral(character);
  }
  return index;
}

// ---- What stands round a pasted formula ----

int Reader::ReadOuter() {
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

const Environment* Reader::TakeOuterEnvironment() {
  TakeName("begin");
  const std::size_t begin = at_;
  if (Here() != '{') return nullptr;
  const std::size_t end = text_.find('}', at_);
  if (end == text_.npos) return nullptr;
  const Environment* found = FindEnvironment(text_.substr(at_ + 1, end - at_ - 1));
  at_ = found && found->outer ? end + 1 : begin;
  return found && found->outer ? found : nullptr;
}

void Reader::SkipPunctuationAndEnd() {
  SkipBlanks();
  if (Here() == '.' || Here() == ',' || Here() == ';') ++at_;
  SkipBlanks();
  if (!AtEnd()) Fail(at_, text_.size(), "something behind the end of the formula");
}

// ---- Rows ----

bool Reader::AtEndOf(Ends ends) {
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

void Reader::Append(List& list, int index) {
  if (index == kNone) return;
  if (list.first == kNone) {
    list.first = index;
  } else {
    tree()[list.last].next = index;
  }
  list.last = index;
}

int Reader::RowOf(const List& list, std::size_t begin) {
  const int row = New(Kind::Row, begin);
  tree()[row].first = list.first;
  return row;
}

int Reader::ReadRow(Ends ends) {
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

int Reader::NewFraction(FractionForm form, int above, int below, std::size_t begin) {
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

int Reader::ReadScripted() {
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

int Reader::TakeUnicodeScript(int& above, int& below) {
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

int Reader::ReadArgument(const std::string& of, std::size_t from) {
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

int Reader::ReadGroup(bool isArgument) {
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

void Reader::NotePlace(int row, std::size_t offset) {
  tree()[row].value = 1;
  tree()[row].begin = offset;
  reading_.empty.push_back(offset);
}

std::optional<std::string> Reader::ReadOptional() {
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

std::string_view Reader::ReadRaw(const std::string& of, std::size_t from) {
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

Reading ReadNotation(std::string_view notation) {
  return Reader(notation).Read();
}

}  // namespace kelvane::formula
