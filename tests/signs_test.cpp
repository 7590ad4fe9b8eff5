// Signs: the table has every sign of the faces once, every character people type finds its place, and a run
// says again what was typed.

#include "typography/signs.h"

#include <map>
#include <set>

#include "document/fields.h"
#include "document/lines.h"
#include "platform/characters.h"
#include "platform/files.h"
#include "tests/support/program_test.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

class SignsTest : public ProgramTest {
 protected:
  SignsTest() {
    TheFiles = &DiskFiles();
    ProgramFolder = BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\";
    LoadWidthTables();
  }

  static std::string Run(std::string_view utf8, std::int16_t font = 0) {
    std::string missing;
    const std::string run = SignsToRun(utf8, font, missing);
    EXPECT_EQ(missing, "") << utf8;
    return run;
  }
  // A text that goes into a run and comes out of it again.
  static void ExpectKept(const std::string& utf8, std::int16_t font = 0) {
    EXPECT_EQ(TextOfRun(Run(utf8, font), font), utf8) << "typeface " << font;
  }
};

TEST_F(SignsTest, EveryCodeOfTheFacesIsASign) {
  for (int code = 32; code < 128; ++code) EXPECT_TRUE(SignAt(kMath0, code)) << code;
  for (int code = 1; code < 224; ++code) {
    const auto byte = static_cast<unsigned char>(code);
    const auto isSign = [](char16_t c) { return c > 127 || (c > 32 && !std::isalnum(c)); };
    if (isSign(UnicodeOfSymbol(byte))) {
      EXPECT_TRUE(SignAt(kSymbol, code)) << code;
    }
    if (isSign(UnicodeOfText(byte))) {
      EXPECT_TRUE(SignAt(0, code)) << code;
    }
  }
  EXPECT_EQ(NameOf(*SignAt(kSymbol, 'p')), "\\pi");
  EXPECT_EQ(NameOf(*SignAt(kMath3, 'S')), "\\Sum");
}

TEST_F(SignsTest, TheTableIsSound) {
  std::set<std::string> names;
  std::set<char32_t> characters;
  for (const Sign& sign : SignTable()) {
    SCOPED_TRACE(sign.names);
    EXPECT_NE(WordsOf(sign), "");
    const std::string typed = std::string(sign.names).substr(0, std::string(sign.names).find('|'));
    for (std::int16_t i = 1; i <= CountFields(typed, " "); ++i) {
      const std::string name = GetField(typed, i, " ");
      EXPECT_TRUE(name.empty() || names.insert(name).second) << name << " stands for two signs";
    }
    // A second sign of one character is a form that only Math0 has.
    EXPECT_TRUE(sign.character == 0 || sign.only || characters.insert(sign.character).second);
    for (const std::int16_t font : {0, 2, int{kSymbol}, int{kMath0}}) EXPECT_NE(RunOf(sign, font), "");
  }
  for (const SameSign& same : SameSigns()) EXPECT_FALSE(characters.contains(same.character));
}

TEST_F(SignsTest, EveryLetterOfLatinOneIsTypedAndComesBack) {
  for (char32_t letter = 0xA1; letter <= 0xFF; ++letter) {
    if (letter == 0xAD) continue;
    for (const std::int16_t font : {0, 3, 5, 9, 11, int{kSymbol}, int{kMath0}})
      ExpectKept(WriteUtf8(letter), font);
  }
  EXPECT_EQ(Run("na\u00EFve \u00DF"), "na\x15ve \xDF");
  EXPECT_EQ(Run("\u00F0\u00FE\u0131", 4), "\xAC\xAE\x83");
  // What made room for them is found in Symbol.
  EXPECT_EQ(Run("\u00AC\u00AE\u0192"), "\xE8\xD8\xD2\xA6\xE0");
}

TEST_F(SignsTest, ThreeHundredMathematicalSignsAreTypedAndComeBack) {
  int signs = 0;
  for (const Sign& sign : SignTable()) {
    const char32_t c = sign.character;
    const bool mathematical = c >= 0x370 || c == 0xAC || c == 0xB1 || c == 0xD7 || c == 0xF7;
    if (sign.only || !mathematical || sign.kind == SignClass::Space) continue;
    Run(WriteUtf8(c));
    ++signs;
    // Signs put together say what they are made of.
    if (!sign.made && !sign.mark && sign.kind != SignClass::Accent) ExpectKept(WriteUtf8(c));
  }
  for (const SameSign& same : SameSigns()) {
    Run(WriteUtf8(same.character));
    ++signs;
  }
  EXPECT_GE(signs, 300);
}

TEST_F(SignsTest, RunsSwitchNoMoreThanTheyMust) {
  EXPECT_EQ(Run("x \u2264 \u03C0"), "x \xE8\xA3\xE0 \xE8p\xE0");
  EXPECT_EQ(Run("\u2264\u03C0", 2), "\xE8\xA3p\xE2");
  EXPECT_EQ(Run("\u2264", kSymbol), "\xA3");
  EXPECT_EQ(Run("\u03B1", kSymbolItalic), "a");
  EXPECT_EQ(Run("\u2211\u2200", kMath0), "sA");
  EXPECT_EQ(Run("\u00E9", kMath0), "\xE0\x0F\xEC");
  EXPECT_EQ(Run("\u00D7", 4), "\xD7");
  // A minus and the letters of formulas are no hyphen and no letters of the text.
  EXPECT_EQ(Run("\u2212\u22C5"), "\xE8-\xD7\xE0");
  EXPECT_EQ(Run("\U0001D44E\U0001D400\U0001D6FC"),
            "\xE2"
            "a\xE1"
            "A\xEA"
            "a\xE0");
  EXPECT_EQ(Run("\u210E"), "\xE2h\xE0");
  EXPECT_EQ(Run("a\u2009b\r\nc\u200Bd"),
            "a\xFF"
            "b cd");
}

TEST_F(SignsTest, MarksStandOverTheMiddleAndTheRunGoesOnBehindTheSign) {
  for (const char* marked : {"\u2270", "\u2262", "\u226E", "x\u0302", "<\u0338", "\u2208\u0338"}) {
    SCOPED_TRACE(marked);
    const std::string run = Run(marked);
    const std::size_t mark = run.find_last_of("!^");
    const float width = MeasureRun(run, 0, 1);
    EXPECT_NEAR(MeasureRun(std::string_view(run).substr(0, mark), 0, 1), width / 2, 0.016);
    const RunPen pen = FollowRun(run, 0, 1);
    EXPECT_NEAR(pen.y, 0, 1e-4);
    EXPECT_NEAR(pen.size, 1, 1e-4);
    EXPECT_EQ(pen.depth, 0);
  }
  // As a text it is the one character where there is one.
  for (const char* text : {"a\u226Eb", "x\u0302", "\u2208\u0338", "\u21A6", "a\u27F6b", "\u2153", "x\u2074",
                           "\u2296", "\u229C", "a\u229Fb"})
    EXPECT_EQ(TextOfRun(Run(text), 0), text);
  EXPECT_EQ(TextOfRun(Run("<\u0338"), 0), "\u226E");
}

TEST_F(SignsTest, NamesWhatNoTypefaceHas) {
  std::string missing;
  EXPECT_EQ(SignsToRun("a\u4E2D\u03B1\U0001F600\u4E2Db", 0, missing),
            "a\xE8"
            "a\xE0"
            "b");
  EXPECT_EQ(missing, "\u4E2D \U0001F600");
  missing.clear();
  EXPECT_EQ(SignsToRun("\xC3(\xFF", 0, missing), "(");
  EXPECT_EQ(missing, "\uFFFD");
}

TEST_F(SignsTest, NamesAreFoundByTheirBeginningAndByWords) {
  const auto names = [](const std::vector<const Sign*>& signs) {
    std::string all;
    for (const Sign* sign : signs) all += NameOf(*sign) + " ";
    return all;
  };
  EXPECT_EQ(names(SignsNamed("in")), "\\in \\infty \\int ");
  EXPECT_EQ(names(SignsNamed("Sum")), "\\Sum ");
  EXPECT_EQ(names(SignsNamed("zzz")), "");
  EXPECT_EQ(names(FindSigns("Subset of")), "\\subset \\subseteq \\nsubset \\Subseteq \\nsubseteq ");
  EXPECT_TRUE(names(FindSigns("integral")).starts_with("\\int "));
  EXPECT_TRUE(HasEveryWord("tall bracket: left brace", "Brace  tall "));
  EXPECT_FALSE(HasEveryWord("tall bracket: left brace", "tall right"));
  EXPECT_EQ(HowTyped(*SignOf(U'\u03C0')), "Symbol, key p, code 112");
  EXPECT_EQ(HowTyped(*SignOf(U'\u00E9')), "text faces, code 15");
}

// The table of codes in the description of the formats.
TEST_F(SignsTest, TheDescribedCodesAreTheCodes) {
  const std::string document =
      DiskFiles().ReadWhole(BackslashPath(KELVANE_SOURCE_DIR) + "\\docs\\formats.md");
  std::string_view rest = std::string_view(document).substr(document.find("#### Codes of the text faces"));
  const std::map<std::string, char32_t> spelled = {{"blank", ' '},   {"blank that does not break", 0xA0},
                                                   {"hyphen", 0xAD}, {"`` ` ``", '`'},
                                                   {"\\*", '*'},     {"\\_", '_'},
                                                   {"\\\\", '\\'},   {"\\<", '<'},
                                                   {"", 0}};
  int row = 0;
  while (row < 224) {
    const std::string line = ReplaceAll(TakeLine(rest), "\\|", "\x7F");
    if (!line.starts_with("| **" + std::to_string(row) + "**")) continue;
    for (int column = 0; column < 16; ++column) {
      const std::string cell(TrimBlanks(GetField(line, static_cast<std::int16_t>(column + 3), "|")));
      const auto word = spelled.find(cell);
      const char32_t described = word != spelled.end() ? word->second
                                 : cell == "\x7F"      ? U'|'
                                                       : ReadUtf8(cell).front();
      EXPECT_EQ(static_cast<char32_t>(UnicodeOfText(static_cast<unsigned char>(row + column))), described)
          << row + column;
    }
    row += 16;
  }
}

}  // namespace
}  // namespace kelvane
