// The specimen: sample pages that show every character, then what is put together from pieces, then formulas.

#include <initializer_list>
#include <string>
#include <string_view>

#include "document/numbers.h"
#include "platform/files.h"
#include "tools/math0/font_files.h"
#include "tools/math0/glyphs.h"

namespace kelvane::math0 {
namespace {

enum Face { kRoman = 0, kBold = 1, kItalic = 2, kSans = 4, kSymbol = 8, kMath = 12 };
enum Anchor { kLeft = 3, kCentre = 4, kRight = 5 };

// Codes within a run, by their hexadecimal numbers: F0 and F2 begin and end a superscript, F3 and F5 a
// subscript, FE is a space of 0.12 of the size.
constexpr std::string_view kStepBack = "\xF9\xF5";  // italic subscript, forward from subscript: back by 0.06

// A stretch of a run in one face.
struct Piece {
  Face face;
  std::string_view text;
};

class Page {
 public:
  void Put(float x, float y, float size, Face face, std::string_view text, Anchor anchor = kLeft) {
    lines += FormatSingle(x) + ' ' + FormatSingle(y) + " m " + FormatSingle(size) + " F" +
             "0123456789ABCDEF"[face] + " (" + std::string(text) + ") " + std::to_string(anchor) + " s\r\n";
  }

  // A run that changes its face.
  void Put(float x, float y, float size, std::initializer_list<Piece> pieces, Anchor anchor = kLeft) {
    std::string text;
    for (const Piece& piece : pieces) {
      if (&piece != pieces.begin()) text += static_cast<char>(224 + piece.face);
      text += piece.text;
    }
    Put(x, y, size, pieces.begin()->face, text, anchor);
  }

  void Save(const std::string& name) const { WriteFileSafely(ProgramFolder + name, lines); }

 private:
  std::string lines;
};

std::string KeyOf(const Glyph& glyph) {
  if (glyph.key == ' ') return "space";
  return glyph.key == '\x7f' ? "Ctrl+Backspace" : std::string(1, glyph.key);
}

// Eight columns and twelve rows: the glyph, below it its key and its name.
Page Repertoire() {
  Page page;
  page.Put(297, 44, 20, {{kRoman, "The font "}, {kItalic, "Math0"}}, kCentre);
  page.Put(297, 60, 9, kRoman, "Each character, the key it is typed with, and its PostScript name", kCentre);
  constexpr float size = 18, columnStep = 68, rowStep = 61;
  int place = 0;
  for (const Glyph& glyph : AllGlyphs()) {
    const std::string key = KeyOf(glyph);
    const bool oneCharacter = key.size() == 1;
    const float x = 29 + columnStep * static_cast<float>(place % 8);
    const float y = 100 + rowStep * static_cast<float>(place / 8);
    page.Put(x + 27, y, size, kMath, std::string(1, glyph.key), kCentre);
    page.Put(x, y + 28, 9, kRoman, key);
    page.Put(oneCharacter ? x + 11 : x, oneCharacter ? y + 28 : y + 34, 5, kSans, glyph.name);
    ++place;
  }
  return page;
}

// Pieces one under the other, one em apart.
void Stack(Page& page, float x, float y, float size, std::string_view keys) {
  for (const char key : keys) {
    page.Put(x, y, size, kMath, std::string(1, key));
    y += size;
  }
}

// The same for right-hand pieces, whose right edges are in line.
void StackRight(Page& page, float x, float y, float size, std::string_view keys) {
  for (const char key : keys) {
    page.Put(x, y, size, kMath, std::string(1, key), kRight);
    y += size;
  }
}

void Heading(Page& page, float y, std::string_view text) {
  page.Put(54, y, 11, kBold, text);
}

void TallDelimiters(Page& page) {
  Heading(page, 84, "Tall delimiters: top, bars, middle and bottom, one em apart");
  const float y = 116, size = 14;
  Stack(page, 60, y, size, "71");
  StackRight(page, 92, y, size, "93");
  Stack(page, 100, y, size, "7|1");
  StackRight(page, 136, y, size, "9|3");
  Stack(page, 150, y, size, "741");
  StackRight(page, 190, y, size, "963");
  Stack(page, 200, y, size, "7|4|1");
  StackRight(page, 240, y, size, "9|6|3");
  Stack(page, 256, y, size, "rf");
  StackRight(page, 290, y, size, "tg");
  Stack(page, 300, y, size, "r|f");
  StackRight(page, 336, y, size, "t|g");
  Stack(page, 350, y, size, "||f");
  StackRight(page, 386, y, size, "||g");
  Stack(page, 394, y, size, "r||");
  StackRight(page, 430, y, size, "t||");
  Stack(page, 440, y, size, "|||");
  StackRight(page, 470, y, size, "|||");
  Stack(page, 484, y, size, "555");
  page.Put(520, y + 14, size, kMath, "(<[{}]>)", kCentre);
  page.Put(520, y + 48, size, kMath, ",;", kCentre);
}

void LevelPieces(Page& page) {
  Heading(page, 216, "Arrows, roots, bars and braces: pieces follow one another");
  page.Put(60, 240, 14, kMath,
           "y\xFE\xFE-y\xFE\xFE--y\xFE\xFE"
           "b\xFE\xFE"
           "b-\xFE\xFE"
           "b-y\xFE\xFE"
           "2\xFE\xFE-2\xFE\xFEmy\xFE\xFEm-y\xFE\xFEjy\xFE\xFEj-y");
  page.Put(60, 264, 14, kMath,
           "Y\xFE\xFE=Y\xFE\xFE==Y\xFE\xFE"
           "B\xFE\xFE"
           "B=\xFE\xFE"
           "B=Y\xFE\xFE"
           "q--xz--w\xFE\xFEz--wq--x\xFE\xFE-------");
  page.Put(60, 304, 14, kMath, "v    ");
  page.Put(71, 304, 11, {{kItalic, "a"}, {kRoman, " + "}, {kItalic, "b"}});
  page.Put(120, 304, 14, kMath, "V    ");
  page.Put(148, 302.5F, 11, {{kItalic, "a"}, {kRoman, " + "}, {kItalic, "b"}}, kCentre);
  page.Put(148, 309, 11, kMath, "-----", kCentre);
  page.Put(148, 316.5F, 11, {{kItalic, "c"}, {kRoman, " + "}, {kItalic, "d"}}, kCentre);
}

void Accents(Page& page) {
  Heading(page, 348,
          "Accents: step back onto the letter (italic subscript, forward from subscript), then forward");
  float x = 60;
  for (const char* accent : {"^", "~", "_", "`", "0", "\""}) {
    std::string run = "x";
    for (int i = 0; i < 3; ++i) run += kStepBack;
    run += '\xEC';
    run += accent;
    page.Put(x, 374, 18, kItalic, run);
    x += 34;
  }
  for (const char* relation : {"e", "c", "?", "#", "y"}) {
    std::string run = relation;
    for (int i = 0; i < 6; ++i) run += kStepBack;
    page.Put(x, 374, 18, kMath, run + '!');
    x += 34;
  }
}

// A sum or another large operator with what stands over and under it, both centred.
void Limits(Page& page, float x, float y, float size, const char* sign, std::initializer_list<Piece> under,
            std::initializer_list<Piece> over) {
  page.Put(x, y, size, kMath, sign, kCentre);
  page.Put(x, y + size * 0.42F + 8.5F, 8, under, kCentre);
  page.Put(x, y - size * 0.92F - 3.5F, 8, over, kCentre);
}

void Fraction(Page& page, float x, float y, std::string_view bar, std::initializer_list<Piece> over,
              std::initializer_list<Piece> under) {
  page.Put(x, y, 12, kMath, bar, kCentre);
  page.Put(x, y - 6, 12, over, kCentre);
  page.Put(x, y + 8.5F, 12, under, kCentre);
}

void Formulas(Page& page) {
  Heading(page, 410, "Formulas");
  float y = 450;
  Limits(page, 80, y, 12, "S", {{kItalic, "n"}, {kRoman, " = 1"}}, {{kMath, "8"}});
  Fraction(page, 104, y, "--", {{kRoman, "1"}},
           {{kItalic, "n"},
            {kRoman,
             "\xF0"
             "2\xF2"}});
  page.Put(114, y, 12, {{kRoman, "="}});
  Fraction(page, 137, y, "--",
           {{kSymbol, "p"},
            {kRoman,
             "\xF0"
             "2\xF2"}},
           {{kRoman, "6"}});
  page.Put(158, y, 12, {{kSymbol, "z"}, {kRoman, "("}, {kItalic, "s"}, {kRoman, ")  ="}});
  Limits(page, 214, y, 12, "P", {{kItalic, "p"}, {kRoman, " prime"}}, {{kRoman, ""}});
  Fraction(page, 254, y, "-----", {{kRoman, "1"}}, {{kRoman, "1 \x96 "}, {kItalic, "p\xF0\x96s\xF2"}});

  page.Put(310, y, 12, kMath, "I");
  page.Put(327, y - 13, 8, kMath, "8");
  page.Put(318.5F, y + 11, 8, {{kRoman, "\x96"}, {kMath, "8"}});
  page.Put(338, y, 12,
           {{kItalic,
             "e\xF0\x96x\xF0"
             "2\xF2\xF2 dx"},
            {kRoman, "  = "}});
  page.Put(396, y, 12, kMath, "v");
  page.Put(404.6F, y, 12, kMath, " ");
  page.Put(405, y, 12, kSymbol, "p");

  y = 508;
  page.Put(60, y, 12, {{kItalic, "i"}, {kMath, "\xFEh\xFE"}});
  Fraction(page, 86, y, "--", {{kMath, "d"}}, {{kMath, "d"}, {kItalic, "t"}});
  page.Put(96, y, 12, {{kSymbol, "y"}, {kRoman, "  =  \x96"}});
  Fraction(page, 148, y, "---",
           {{kMath, "h"},
            {kRoman,
             "\xF0"
             "2\xF2"}},
           {{kRoman, "2"}, {kItalic, "m"}});
  page.Put(160, y, 12,
           {{kMath, "G"},
            {kRoman,
             "\xF0"
             "2\xF2"},
            {kSymbol, "y"},
            {kRoman, "  +  "},
            {kItalic, "V"},
            {kSymbol, "y"}});
  page.Put(250, y, 12, kMath, "O");
  page.Put(259, y + 12, 8, {{kMath, "d"}, {kItalic, "S"}});
  page.Put(272, y, 12, {{kRoman, "F \xB7 "}, {kItalic, "d"}, {kRoman, "r  =  "}});
  page.Put(326, y, 12, kMath, "J");
  page.Put(336, y + 12, 8, {{kItalic, "S"}});
  page.Put(354, y, 12,
           {{kRoman, "("}, {kMath, "G"}, {kRoman, " \xD7 F) \xB7 "}, {kItalic, "d"}, {kRoman, "S"}});
  page.Put(450, y, 12,
           {{kMath, "L"},
            {kRoman, " {"},
            {kItalic, "f"},
            {kMath, "'"},
            {kRoman, "},  "},
            {kMath, "F"},
            {kRoman, ",  "},
            {kMath, "H"}});

  y = 556;
  page.Put(60, y, 12, {{kMath, "A"},       {kSymbol, "e"},
                       {kRoman, " > 0  "}, {kMath, "E"},
                       {kSymbol, "d"},     {kRoman, " > 0 :  "},
                       {kMath, "|"},       {kItalic, "x"},
                       {kRoman, " \x96 "}, {kItalic, "a"},
                       {kMath, "|"},       {kRoman, " < "},
                       {kSymbol, "d"},     {kMath, "\xFE\xFEY\xFE\xFE|"},
                       {kItalic, "f"},     {kRoman, "("},
                       {kItalic, "x"},     {kRoman, ") \x96 "},
                       {kItalic, "f"},     {kRoman, "("},
                       {kItalic, "a"},     {kRoman, ")"},
                       {kMath, "|"},       {kRoman, " < "},
                       {kSymbol, "e"}});
  page.Put(340, y, 12,
           {{kMath, "NcZcQcRcC"},
            {kRoman, "    "},
            {kMath, "K"},
            {kRoman, "    "},
            {kItalic, "x"},
            {kMath, "\x7f"},
            {kItalic, "A"},
            {kMath, "&"},
            {kItalic, "B"},
            {kMath, "o"},
            {kItalic, "C"}});
  y = 584;
  page.Put(60, y, 12, {{kSymbol, "G"}, {kMath, "T"},   {kSymbol, "j"},     {kMath, "Y"},   {kSymbol, "G"},
                       {kMath, "M"},   {kSymbol, "j"}, {kRoman, "      "}, {kItalic, "a"}, {kMath, "W"},
                       {kItalic, "b"}, {kMath, "$"},   {kItalic, "c"},     {kMath, "%"},   {kItalic, "d"},
                       {kMath, "X"},   {kItalic, "e"}, {kRoman, "      "}, {kItalic, "x"}, {kMath, "k"},
                       {kItalic, "y"}, {kMath, "@"},   {kItalic, "z"}});
  page.Put(370, y, 12,
           {{kRoman, "2"},
            {kMath,
             "\xF0"
             "a"},
            {kRoman,
             "\xF3"
             "0\xF5\xF2"},
            {kRoman, "    "},
            {kMath, "lp"},
            {kRoman, "    "},
            {kItalic, "A"},
            {kMath,
             "\xF0"
             "D\xF2"},
            {kRoman, "    "},
            {kMath, "s"},
            {kItalic, "a\xF3i\xF5"},
            {kRoman, "    "},
            {kMath, "i"},
            {kItalic, "f dx"}});

  y = 640;
  const float top = y - 14;
  page.Put(60, y + 3, 12, {{kItalic, "A"}, {kRoman, "  = "}});
  Stack(page, 88, top, 14, "7||1");
  const char* rows[4][4] = {{"a\xF3"
                             "11\xF5",
                             "a\xF3"
                             "12\xF5",
                             ".",
                             "a\xF3"
                             "1n\xF5"},
                            {"a\xF3"
                             "21\xF5",
                             "a\xF3"
                             "22\xF5",
                             ".",
                             "a\xF3"
                             "2n\xF5"},
                            {":", ":", "\\", ":"},
                            {"a\xF3m1\xF5", "a\xF3m2\xF5", ".", "a\xF3mn\xF5"}};
  for (int row = 0; row < 4; ++row) {
    for (int column = 0; column < 4; ++column) {
      const std::string_view text = rows[row][column];
      page.Put(112 + 26 * static_cast<float>(column), top - 3 + 15 * static_cast<float>(row),
               text.size() > 1 ? 11.0F : 9.0F, text.size() > 1 ? kItalic : kMath, text, kCentre);
    }
  }
  StackRight(page, 214, top, 14, "9||3");

  page.Put(250, y + 9, 12, {{kItalic, "f"}, {kRoman, "("}, {kItalic, "x"}, {kRoman, ")  = "}});
  Stack(page, 292, top + 7, 14, "741");
  page.Put(310, top + 7, 12,
           {{kItalic,
             "x\xF0"
             "2\xF2"},
            {kRoman, "   if "},
            {kItalic, "x"},
            {kMath, "e"},
            {kMath, "Q"}});
  page.Put(310, top + 35, 12, {{kRoman, "0    otherwise"}});

  Limits(page, 430, y + 9, 12, "u", {{kItalic, "i"}, {kMath, "e"}, {kItalic, "I"}}, {{kRoman, ""}});
  page.Put(442, y + 9, 12, {{kItalic, "A\xF3i\xF5"}});
  Limits(page, 476, y + 9, 12, "+", {{kItalic, "k"}}, {{kRoman, ""}});
  page.Put(494, y + 9, 12, {{kItalic, "V\xF3k\xF5"}});
}

}  // namespace

void BuildSpecimen() {
  Repertoire().Save("SPECIMEN.001");
  Page page;
  page.Put(297, 44, 20, {{kRoman, "The font "}, {kItalic, "Math0"}}, kCentre);
  TallDelimiters(page);
  LevelPieces(page);
  Accents(page);
  Formulas(page);
  page.Save("SPECIMEN.002");
}

}  // namespace kelvane::math0
