// Files full of rubbish: reading one either fails with a message or leaves a state that the editor can work
// with. Run under the sanitizers this is a small fuzzer.

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "app/settings.h"
#include "designer/character_files.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "document/page.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "help/help_files.h"
#include "macros/macros.h"
#include "platform/handlers.h"
#include "tests/support/editor_test.h"
#include "typography/metrics.h"
#include "typography/run_painter.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr int kRounds = 400;

class RubbishTest : public EditorTest {
 protected:
  std::mt19937 random{99};
  std::size_t Roll(std::size_t sides) { return random() % sides; }

  std::string RandomBytes(std::size_t most) {
    std::string bytes(Roll(most), ' ');
    for (char& byte : bytes) byte = static_cast<char>(Roll(256));
    return bytes;
  }

  // Words that the formats know, in no order.
  std::string RandomWords(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = Roll(80); i > 0; --i) text += words[Roll(words.size())] + (Roll(4) ? " " : "");
    return text;
  }

  // A file that was good, with some of it changed, lost or doubled.
  std::string Spoilt(std::string text) {
    for (std::size_t i = Roll(8); i > 0 && !text.empty(); --i) {
      const std::size_t at = Roll(text.size());
      const std::size_t kind = Roll(4);
      if (kind == 0) text[at] = static_cast<char>(Roll(256));
      if (kind == 1) text.erase(at, Roll(40));
      if (kind == 2) text.insert(at, text.substr(Roll(text.size()), Roll(40)));
      if (kind == 3) text.resize(at);
    }
    return text;
  }

  std::string Rubbish(const std::string& good, const std::vector<std::string>& words) {
    const std::size_t kind = Roll(3);
    return kind == 0 ? RandomBytes(600) : kind == 1 ? RandomWords(words) : Spoilt(good);
  }
};

const std::string kNumbers = "0|1|-2.5|1e38|-1e38|1e-40|nan|inf|14400|65536|.|-|99999999999999999999";

// The words between the bars of a text.
std::vector<std::string> Words(const std::string& text) {
  const std::vector<std::string_view> fields = SplitFields(text, "|");
  return {fields.begin(), fields.end()};
}

TEST_F(RubbishTest, PageFiles) {
  const std::string good =
      "72 100 m 11 F0 (x\xF0"
      "2\xF2 + \xE8"
      "a) 1 s\r\n10 20 m 9.5 FC (A B) 3 40 a\r\n\r\nno entry\r\n"
      "10 20 m 121 lw 5 5 rl 1 2 3 4 rb stroke\r\n0 0 m 20 lw 10 0 rl 0 10 rl -10 -10 rl fill\r\n";
  std::vector<std::string> words =
      Words("m|lw|rl|rb|stroke|fill|F0|FC|(|)|(x y)|3|s|a|\r\n|\n|stroke\r\n|fill\r\n|\xF6|\xFB|" + kNumbers);
  words.push_back("\"");
  Start();
  int understood = 0;
  for (int round = 0; round < kRounds; ++round) {
    // One line draws, so that nothing is asked.
    const std::string content = "1 1 m 9 F0 (x) 1 s\r\n" + Rubbish(good, words);
    SCOPED_TRACE(::testing::PrintToString(content));
    files.contents["\\P\\A.001"] = content;
    const std::string before = PageText + DrawingList;
    dialogs.messages.clear();
    RunHandler([] { OpenPaperFile("\\P\\A.001"); });
    if (!dialogs.messages.empty()) {
      EXPECT_NE(dialogs.messages[0].find("/P/A.001"), std::string::npos) << dialogs.messages[0];
      EXPECT_EQ(PageText + DrawingList, before);
      continue;
    }
    ++understood;
    EXPECT_EQ(std::count(DrawingList.begin(), DrawingList.end(), '\n'), DrawingCount);
    const std::string text = PageText;
    const auto drawings = DrawingCount;
    WritePagePlain("\\P\\B.001");
    ReadPage("\\P\\B.001");
    EXPECT_EQ(PageText, text);
    EXPECT_EQ(DrawingCount, drawings);
    PageChanged = 0;
  }
  EXPECT_GT(understood, 100);
  EXPECT_LT(understood, kRounds - 20);
}

TEST_F(RubbishTest, Settings) {
  const std::string good =
      "PDIR = \\P\\\r\nPAPERWIDTH = 612\r\nGRIDX = 4\r\nGRIDY = 2\r\nSCALE = 3\r\nGUIDEX = 72\r\n"
      "FONTNUMBER = 12\r\nFONTSIZE = 9.5\r\nCURSORMODE = 9\r\nSTARTX = 5\r\nFORMWIDTH = 8000\r\n";
  const std::vector<std::string> words = Words(
      "PDIR =|PAPERWIDTH =|paperheight=|STARTX =|STARTY=|SCALE =|GRIDX =|GRIDY =|GUIDEX =|GUIDEY "
      "=|FONTNUMBER =|"
      "FONTSIZE =|CURSORMODE =|CURSORX =|CURSORY =|FORMLEFT =|FORMTOP =|FORMWIDTH =|FORMHEIGHT "
      "=|\r\n|\r\n|\n|=" +
      kNumbers);
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const std::string content = Rubbish(good, words);
    SCOPED_TRACE(::testing::PrintToString(content));
    files.contents["\\Kelvane\\QRX.DAT"] = content;
    Start();
    EXPECT_TRUE(GridStepH >= 1 && GridStepH <= 6 && GridStepV >= 1 && GridStepV <= 6 && SCALE > 0);
    for (const float side : {PaperWidth, PaperHeight}) EXPECT_TRUE(side > 0 && side <= 14400);
    EXPECT_TRUE(IsTypeface(BaseFont));
    EXPECT_TRUE(CursorMode >= -9 && CursorMode <= 9);
    for (const float value : {STARTX, STARTY, FontSize, CursorX, CursorY, FormPlace.left, FormPlace.width})
      EXPECT_TRUE(std::isfinite(value));
    PlaceAt("Center", 100, 100);
    canvas->Type("x\r");
    TextEntry entry;
    EXPECT_TRUE(ParseTextEntry(PageText.substr(0, PageText.size() - 2), entry)) << PageText;
    dialogs.AnswerNo();
    window->ChooseEntry("Exit");
    // A second exit finds nothing to change.
    const std::string written = Content("\\Kelvane\\QRX.DAT");
    WriteSettings("\\Kelvane\\QRX.DAT");
    EXPECT_EQ(Content("\\Kelvane\\QRX.DAT"), written);
  }
}

TEST_F(RubbishTest, GlyphsAndWidths) {
  const std::string good = Content("\\Kelvane\\MATH0.PSF");
  const std::vector<std::string> words =
      Words("/CharacterDefs|\r\n/.notdef|{|}|def\r\n|moveto|rlineto|rc|rp|ci|st|fill|\r\n|" + kNumbers);
  int understood = 0;
  for (int round = 0; round < kRounds; ++round) {
    files.contents["\\Kelvane\\MATH0.PSF"] = Roll(4) == 0 ? Rubbish(good, words) : Spoilt(good);
    for (const char* table : {"\\Kelvane\\TN.WT", "\\Kelvane\\MATH0.WT"})
      files.contents[table] = RandomBytes(1200);
    try {
      LoadCharacterDefs();
      ++understood;
    } catch (const Failure& failure) {
      EXPECT_STREQ(failure.what(), "ERROR: MATH0.PSF file format");
    }
    LoadWidthTables();
    // Procedures of any kind, whatever the file's braces held.
    for (auto& columns : CharacterDefs)
      if (Roll(3) == 0) columns[0] = RandomWords(words);
    std::string all;
    for (int code = 1; code < 256; ++code) all += static_cast<char>(code);
    for (const std::int16_t font : {0, 12, 15}) {
      EXPECT_TRUE(std::isfinite(Advance('A', font, 12)));
      const std::string run = all + RandomBytes(100);
      const View view = CurrentView();
      RunPainter(*canvas, view).Paint({run, font, 12, {100, 100}, 0, 0, true});
    }
  }
  EXPECT_GT(understood, 20);
  EXPECT_LT(understood, kRounds - 20);
}

TEST_F(RubbishTest, HelpAndMacros) {
  const std::string good = "<PAGE>\r\n<H1>One</H1> text\r\n<H2>Two</H2>\r\n<page><h3>x</h3>\r\n";
  const std::vector<std::string> words = Words("<PAGE>|<H1>|</H1>|<H6>|</h6>|text|\r\n|<|>");
  for (int round = 0; round < kRounds; ++round) {
    files.contents["\\Kelvane\\QRX.HLP"] = Rubbish(good, words);
    for (const char* index : {"\\Kelvane\\QRX.HCT", "\\Kelvane\\QRX.HIX"}) files.contents.erase(index);
    const auto size = static_cast<std::int64_t>(files.contents["\\Kelvane\\QRX.HLP"].size());
    RunHandler(IndexHelpFile);
    for (const std::int64_t start : HelpPageStarts) EXPECT_TRUE(start >= 0 && start < size);

    files.contents["\\Kelvane\\QRX.MCR"] = Rubbish("a\r\nb\r\n\r\nd\xF0\r\n", words);
    ResetMacros();
    ReadMacros();
    std::string macros;
    for (int number = 0; number < kMacros; ++number) macros += MacroCaption(number) + "\r\n";
    EXPECT_EQ(std::count(macros.begin(), macros.end(), '\n'), kMacros);
    WriteMacros();
    EXPECT_EQ(Content("\\Kelvane\\QRX.MCR"), macros);
    CursorMode = -1;
    PendingRun.clear();
    CallMacro(static_cast<int>(Roll(kMacros)));
    EXPECT_EQ(PendingRun.find_first_of(std::string("\r\n\0", 3)), std::string::npos);
  }
}

}  // namespace
}  // namespace kelvane
