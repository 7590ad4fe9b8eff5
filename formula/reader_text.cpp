// Words, lengths, congruences and colours.

#include <cmath>

#include "document/numbers.h"
#include "formula/reader.h"
#include "platform/characters.h"
#include "typography/colours.h"

namespace kelvane::formula {
namespace {

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

}  // namespace

// ---- Text ----

std::string Reader::PlainText(std::string_view raw, std::size_t begin) const {
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

void Reader::CheckText(const std::string& text, std::size_t begin) const {
  std::string missing;
  SignsToRun(text, 0, missing);
  if (!missing.empty()) Fail(begin, at_, "no sign for " + missing);
}

int Reader::ReadText(const Name& name, std::size_t begin) {
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

int Reader::ReadLength(const Name& name, std::size_t begin) {
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
           !text_.substr(from, at_ - from).ends_with("em") && !text_.substr(from, at_ - from).ends_with("pt"))
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

int Reader::ReadModulo(const Name& name, std::size_t begin) {
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

int Reader::ReadColour(const Name& name, std::size_t begin) {
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

int Reader::ColourNumber(const std::string& wanted, const std::string& model) {
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

}  // namespace kelvane::formula
