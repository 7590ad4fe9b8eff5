#include "palette/palette_items.h"

#include <utility>

#include "typography/signs.h"

namespace kelvane {

namespace {

constexpr std::pair<SignClass, const char*> kClasses[] = {
    {SignClass::Letter, "Letters"},
    {SignClass::Operator, "Operators"},
    {SignClass::Relation, "Relations"},
    {SignClass::Arrow, "Arrows"},
    {SignClass::LargeOperator, "Large operators"},
    {SignClass::Opening, "Opening brackets"},
    {SignClass::Closing, "Closing brackets"},
    {SignClass::Ordinary, "Signs"},
    {SignClass::Accent, "Accents"},
    {SignClass::Space, "Spaces"},
    {SignClass::Piece, "Pieces of brackets and arrows"},
};

struct CodeItem {
  int code;
  const char* picture;
  const char* name;
};
constexpr CodeItem kCodes[] = {
    {240,
     "x\xF0"
     "2",
     "superscript"},
    {241,
     "x\xF0"
     "2\xF1\xF3"
     "i",
     "back from superscript"},
    {242,
     "x\xF0"
     "2\xF2y",
     "forward from superscript"},
    {243, "x\xF3i", "subscript"},
    {244,
     "x\xF3i\xF4\xF0"
     "2",
     "back from subscript"},
    {245, "x\xF3i\xF5y", "forward from subscript"},
    {246,
     "\xE2"
     "f\xF6"
     "2",
     "italic superscript"},
    {247,
     "\xE2"
     "f\xF6"
     "2\xF7\xF9i",
     "back from italic superscript"},
    {248,
     "\xE2"
     "f\xF6"
     "2\xF8y",
     "forward from italic superscript"},
    {249,
     "\xE2"
     "f\xF9i",
     "italic subscript"},
    {250,
     "\xE2"
     "f\xF9i\xFA\xF6"
     "2",
     "back from italic subscript"},
    {251,
     "\xE2"
     "f\xF9i\xFBy",
     "forward from italic subscript"},
    {254, "x\xFE\xFEy", "fixed space"},
};

PaletteSection ScriptSection() {
  PaletteSection section{"Scripts and fixed spaces", {}};
  for (const CodeItem& code : kCodes)
    section.items.push_back({.code = code.code,
                             .picture = code.picture,
                             .name = code.name,
                             .how = "code " + std::to_string(code.code)});
  return section;
}

PaletteSection BracketSection() {
  PaletteSection section{"Tall brackets", {}};
  for (const TallBracket& bracket : TallBrackets())
    section.items.push_back({.bracket = &bracket,
                             .picture = bracket.picture,
                             .name = std::string("tall bracket: ") + bracket.name,
                             .how = "asks how many lines, and sets all pieces"});
  return section;
}

std::vector<PaletteSection> MakeSections() {
  std::vector<PaletteSection> sections;
  for (const auto& [kind, title] : kClasses) {
    PaletteSection section{title, {}};
    for (const Sign* sign : SignsOfClass(kind)) section.items.push_back(ItemOf(*sign));
    sections.push_back(std::move(section));
    if (kind == SignClass::Closing) sections.push_back(BracketSection());
    if (kind == SignClass::Accent) sections.push_back(ScriptSection());
  }
  return sections;
}

}  // namespace

PaletteItem ItemOf(const Sign& sign) {
  const std::string words = WordsOf(sign);
  const std::string name = NameOf(sign);
  return {.sign = &sign,
          .picture = RunOf(sign, 0),
          .name = name == words ? words : words + "   " + name,
          .how = HowTyped(sign)};
}

const std::vector<PaletteSection>& PaletteSections() {
  static const std::vector<PaletteSection> sections = MakeSections();
  return sections;
}

PaletteSection FindItems(std::string_view words) {
  PaletteSection found{"Found", {}};
  for (const Sign* sign : FindSigns(words)) found.items.push_back(ItemOf(*sign));
  for (const PaletteSection& section : PaletteSections()) {
    for (const PaletteItem& item : section.items)
      if (!item.sign && HasEveryWord(item.name, words)) found.items.push_back(item);
  }
  return found;
}

}  // namespace kelvane
