// Signs, names and what they ask for, and brackets.

#include "formula/reader.h"
#include "platform/characters.h"

namespace kelvane::formula {

// ---- Atoms ----

int Reader::ReadAtom() {
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

int Reader::SignOfCharacter(char32_t character, std::size_t begin) {
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
  if (const DrawnSign* drawn = sign ? nullptr : DrawnSignOf(character)) return NewDrawn(*drawn, begin);
  if (!sign) Fail(begin, at_, "no sign for " + WriteUtf8(character));
  if (sign->kind == SignClass::Space) {
    const int space = New(Kind::Space, begin);
    tree()[space].amount = character == 0x2003 ? 1.0F : character == 0x2002 ? 0.5F : 0.2F;
    return space;
  }
  return NewSign(sign->character, sign, AtomOf(sign->character, sign), begin);
}

int Reader::LetterOfAlphabet(char32_t character, std::size_t begin) {
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

int Reader::ReadNamed() {
  const std::size_t begin = at_;
  const std::string_view word = NameHere();
  if (word.empty()) Fail(begin, begin + 1, "a backslash without a name");
  const Name* name = FindName(word);
  if (!name) {
    if (const DrawnSign* drawn = DrawnSignNamed(word)) {
      TakeName(word);
      return NewDrawn(*drawn, begin);
    }
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

int Reader::NewDrawn(const DrawnSign& sign, std::size_t begin) {
  const int index = New(Kind::Drawn, begin, sign.atom);
  tree()[index].drawn = &sign;
  tree()[index].stacks = sign.atom == Atom::Operator && !IsIntegral(sign.character);
  return index;
}

int Reader::NamedSign(const kelvane::Sign& sign, std::size_t begin) {
  if (sign.kind == SignClass::Space) {
    const int space = New(Kind::Space, begin);
    tree()[space].amount = 0.25F;
    return space;
  }
  return NewSign(sign.character, &sign, AtomOf(sign.character, &sign), begin);
}

int Reader::Obey(const Name& name, std::size_t begin) {
  switch (name.does) {
    case Does::Function: {
      const int index = New(Kind::Text, begin, name.atom);
      tree()[index].text = std::string(name.text);
      tree()[index].face = static_cast<std::int16_t>(name.face == Face::Usual ? Face::Roman : name.face);
      tree()[index].stacks = name.value == 1;
      return index;
    }
    case Does::Barred: {
      const int word = New(Kind::Text, begin, Atom::Operator);
      tree()[word].text = std::string(name.text);
      tree()[word].face = static_cast<std::int16_t>(Face::Roman);
      const int index = WithBody(Kind::Line, RowOf({word, word}, begin), begin);
      tree()[index].value = name.value;
      tree()[index].atom = Atom::Operator;
      tree()[index].stacks = true;
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
      const int body = name.face == Face::Words
                           ? ReadText({.name = name.name, .does = Does::Text, .face = name.face}, begin)
                           : ReadArgument(Behind(name), begin);
      const int index = WithBody(Kind::Framed, body, begin);
      tree()[index].value = name.value;
      return index;
    }
    case Does::Between: {
      const int body = ReadArgument(Behind(name), begin);
      const int index = WithBody(Kind::Fence, body, begin);
      tree()[index].atom = Atom::Inner;
      tree()[index].character = name.character;
      tree()[index].closing = static_cast<char32_t>(name.value);
      return index;
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
      const int index = NewSign(sign->character, sign, name.atom, begin);
      if (name.face != Face::Usual) tree()[index].face = static_cast<std::int16_t>(name.face);
      return index;
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
      Fail(begin, at_, "\\" + std::string(name.name) + " not at the beginning of a row");
    case Does::Limits:
      Fail(begin, at_, "\\" + std::string(name.name) + " behind no operator");
    default:
      Fail(begin, at_, "\\" + std::string(name.name) + " does not belong here");
  }
}

int Reader::WithBody(Kind kind, int body, std::size_t begin) {
  const int index = New(kind, begin);
  tree()[index].first = body;
  return index;
}

int Reader::NewSpace(float amount, std::size_t begin) {
  const int index = New(Kind::Space, begin);
  tree()[index].amount = amount;
  return index;
}

int Reader::ReadChoice(const Name& name, std::size_t begin) {
  const int first = ReadArgument(Behind(name), begin);
  for (int i = 0; i < name.value * 3; ++i) ReadRaw(Behind(name), begin);
  return first;
}

int Reader::ReadBracketed() {
  const std::size_t open = at_++;
  const int row = ReadRow(Ends::Bracket);
  if (Here() != ']') Fail(open, open + 1, "no closing bracket");
  if (tree()[row].first == kNone) NotePlace(row, open + 1);
  ++at_;
  return row;
}

int Reader::ReadRoot(const Name& name, std::size_t begin) {
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

Reader::DelimiterSign Reader::ReadDelimiter(const std::string& of, std::size_t from) {
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

int Reader::ReadFence(std::size_t begin) {
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

}  // namespace kelvane::formula
