// The specimen: sample pages that show every character, then what is put together from pieces, then formulas.

#include <initializer_list>
#include <string>
#include <string_view>

#include "tools/math0/font_files.h"
#include "tools/math0/formula.h"
#include "tools/math0/glyphs.h"
#include "tools/math0/specimen.h"
#include "typography/metrics.h"

namespace kelvane::math0 {
namespace {

std::string KeyOf(const Glyph& glyph) {
  if (glyph.key == ' ') return "space";
  return glyph.key == '\x7f' ? "Ctrl+Backspace" : std::string(1, glyph.key);
}

void Title(Page& page) {
  page.Put(297, 44, 20, Roman("The font ") + Italic("Math0"), kCentre);
}

// Eight columns and twelve rows: the glyph, below it its key and its name.
Page Repertoire() {
  Page page;
  Title(page);
  page.Put(297, 60, 9, Roman("Each character, the key it is typed with, and its PostScript name"), kCentre);
  constexpr float size = 18, columnStep = 68, rowStep = 61;
  int place = 0;
  for (const Glyph& glyph : AllGlyphs()) {
    const std::string key = KeyOf(glyph);
    const bool oneCharacter = key.size() == 1;
    const float x = 29 + columnStep * static_cast<float>(place % 8);
    const float y = 100 + rowStep * static_cast<float>(place / 8);
    page.Put(x + 27, y, size, Math({&glyph.key, 1}), kCentre);
    page.Put(x, y + 28, 9, Roman(key));
    page.Put(oneCharacter ? x + 11 : x, oneCharacter ? y + 28 : y + 34, 5, Sans(glyph.name));
    ++place;
  }
  return page;
}

void Heading(Page& page, float y, const std::string& text) {
  page.Put(54, y, 11, Bold(text));
}

// What is typed, small, under what comes of it.
void Label(Page& page, float x, float y, const std::string& keys) {
  page.Put(x, y, 6, Sans(keys), kCentre);
}

void TallDelimiters(Page& page) {
  Heading(page, 76, "Delimiters: whole, and from pieces that stand one em apart");
  struct Pair {
    const char* left;
    const char* right;
  };
  const Pair pairs[] = {{"(", ")"},     {"<", ">"},     {"[", "]"},     {"{", "}"},         {",", ";"},
                        {"71", "93"},   {"7|1", "9|3"}, {"741", "963"}, {"7|4|1", "9|6|3"}, {"rf", "tg"},
                        {"r|f", "t|g"}, {"|f", "|g"},   {"r|", "t|"},   {"||", "||"},       {"55", "55"}};
  float x = 72;
  for (const auto& [left, right] : pairs) {
    Row().Tall(left, 14).Then(";x;").Tall(right, 14, kRight).Set(page, x, 122, kCentre);
    Label(page, x, 165, left);
    Label(page, x, 173, right);
    x += 32;
  }
}

// Runs of Math0 side by side over their keys.
void KeyedRuns(Page& page, float x, float y, float step, std::initializer_list<const char*> runs) {
  for (const char* keys : runs) {
    page.Put(x, y, 14, Math(keys), kCentre);
    Label(page, x, y + 10, keys);
    x += step;
  }
}

void LevelPieces(Page& page) {
  Heading(page, 208, "Arrows, braces, bars and roots: pieces follow one another");
  KeyedRuns(page, 74, 232, 40, {"y", "-y", "--y", "b", "b-", "b-y", "2", "-2", "my", "m-y", "jy", "j-y"});
  KeyedRuns(page, 74, 262, 40, {"Y", "=Y", "==Y", "B", "B=", "B=Y"});
  KeyedRuns(page, 334, 262, 80, {"q--xz--w", "z--wq--x", "-------"});

  constexpr float y = 304, labels = 328;
  Row().Root('v', "a + b").Set(page, 94, y, kCentre);
  Label(page, 94, labels, "v and spaces");
  Row().Root('V', Row().Fraction("a + b", "c + d")).Set(page, 214, y, kCentre);
  Label(page, 214, labels, "V and spaces");
  Row("a + a + `. + a").Set(page, 334, y - 5, kCentre);
  page.Put(334, y + 3, 12, Math("z----wq----x"), kCentre);
  page.Put(334, y + 13, 9, Italic("n"), kCentre);
  Label(page, 334, labels, "z----wq----x");
  Row("A `-`-`-`y B").Set(page, 454, y, kCentre);
  page.Put(454, y - 7.5F, 9, Italic("f"), kCentre);
  Label(page, 454, labels, "---y");
}

// A sign with its middle at x and a mark drawn onto it, by so many steps back.
void PutStruck(Page& page, float x, const std::string& sign, int steps, std::string_view mark) {
  constexpr float y = 378, size = 18;
  std::string run = sign;
  for (; steps > 0; --steps) run += "\xF9\xF5";  // into an italic subscript, out of an upright one
  page.Put(x - WidthOf(sign, size) / 2, y, size, run + Math(mark));
}

void Accents(Page& page) {
  Heading(page, 352,
          "Accents: step back onto the letter (italic subscript, forward from subscript), then forward");
  constexpr float labels = 390, step = 42;
  float x = 74;
  for (const char* accent : {"^", "~", "_", "`", "0", "\""}) {
    PutStruck(page, x, Italic("x"), 3, accent);
    Label(page, x, labels, accent);
    x += step;
  }
  for (const char* relation : {"e", "c", "?", "#", "y"}) {
    PutStruck(page, x, Math(relation), 6, "!");
    Label(page, x, labels, relation + std::string("!"));
    x += step;
  }
}

}  // namespace

void BuildSpecimen() {
  LoadWidthTables();
  Repertoire().Save("SPECIMEN.001");
  Page page;
  Title(page);
  TallDelimiters(page);
  LevelPieces(page);
  Accents(page);
  Heading(page, 418, "Formulas");
  PutFormulas(page, 452);
  page.Save("SPECIMEN.002");
}

}  // namespace kelvane::math0
