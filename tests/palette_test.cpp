// The panel of signs: everything is in it, what is clicked or chosen by key goes into the run, and it is
// kept.

#include "palette/palette.h"

#include <sstream>

#include "document/page.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "editing/notes.h"
#include "editing/undo.h"
#include "palette/palette_items.h"
#include "palette/tall_brackets.h"
#include "platform/files.h"
#include "tests/support/editor_test.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

class PaletteTest : public EditorTest {
 protected:
  void Open() {
    Start();
    window->PressShortcut("F8");
    panel = static_cast<RecordingCanvas*>(PaletteCanvas);
    panel->pixelWidth = 200;
    panel->pixelHeight = 300;
    Form1->OnResize();
  }
  void Search(const std::string& words) { static_cast<FakeTextBox*>(SearchBox)->Type(words); }

  RecordingCanvas* panel = nullptr;
};

TEST_F(PaletteTest, HasEverySignOnceAndNamesAreTold) {
  std::size_t signs = 0;
  for (const PaletteSection& section : PaletteSections()) {
    for (const PaletteItem& item : section.items) {
      signs += item.sign ? 1 : 0;
      EXPECT_NE(item.name, "");
      EXPECT_NE(item.picture, "");
    }
  }
  EXPECT_EQ(signs, SignTable().size());
}

TEST_F(PaletteTest, TakesItsPlaceFromThePageAndGivesItBack) {
  Start();
  const Place before = static_cast<FakeTextBox*>(Text4)->place;
  window->PressShortcut("F8");
  EXPECT_EQ(FocusedControl, SearchBox);
  EXPECT_EQ(static_cast<FakeTextBox*>(SearchBox)->place.width, 200);
  EXPECT_EQ(static_cast<FakeTextBox*>(Text4)->place.width, before.width);
  window->PressShortcut("F8");
  EXPECT_EQ(static_cast<FakeTextBox*>(SearchBox)->place.width, 0);
  EXPECT_EQ(FocusedControl, Picture1);
}

TEST_F(PaletteTest, PutsInWhatIsFoundClickedOrChosenByKeys) {
  Open();
  PlaceAt("Bottom Left", 72, 99);
  canvas->Type("x");
  Search("subset of or equal");
  static_cast<FakeTextBox*>(SearchBox)->PressEnter();
  EXPECT_EQ(PendingRun, "x\xE8\xCD\xE0");
  EXPECT_EQ(FocusedControl, Picture1);
  Search("alpha");
  panel->Move(10, 30);
  EXPECT_EQ(panel->toolTip, "alpha   \\alpha - Symbol, key a, code 97");
  panel->Click(10, 30);
  EXPECT_EQ(PendingRun,
            "x\xE8\xCD"
            "a\xE0");
  static_cast<FakeTextBox*>(SearchBox)->PressDown();
  EXPECT_EQ(FocusedControl, PaletteCanvas);
  Search("superscript");
  panel->Press(kKeyEnd);
  panel->Press(kKeyEnter);
  EXPECT_EQ(PendingRun.back(), '\xF8');
}

TEST_F(PaletteTest, SaysWhatIsMissingWhereNothingCanBePutIn) {
  Open();
  panel->Click(10, 30);
  EXPECT_EQ(PendingRun, "");
  EXPECT_EQ(NoteLabel->Text(), "Choose an anchor and click on the page: signs go to the cursor point");
}

TEST_F(PaletteTest, RemembersWhatWasUsedAndItsWidth) {
  Open();
  PlaceAt("Bottom Left", 72, 99);
  for (const char* words : {"aleph", "therefore", "aleph"}) {
    Search(words);
    static_cast<FakeTextBox*>(SearchBox)->PressEnter();
  }
  panel->Down(1, 50);
  panel->Move(-39, 50);
  panel->Up(-39, 50);
  WritePaletteState();
  EXPECT_EQ(Content("\\State\\palette"),
            "width 240\r\nshown\r\nused aleph|aleph\r\nused therefore|therefore\r\n");
  ResetPalette();
  ReadPaletteState();
  EXPECT_EQ(PaletteWidth(), 240);
  // What a hand or a later version has written there does no harm.
  files.contents["\\State\\palette"] = "width 99999\r\nused no such sign\r\nlines of another kind\r\n";
  ResetPalette();
  ReadPaletteState();
  EXPECT_FALSE(PaletteShown());
}

TEST_F(PaletteTest, TallBracketsAreOneEditAndJoin) {
  Open();
  PlaceAt("Centre Left", 72, 99);
  for (const auto& [index, lines, keys] :
       {std::tuple{0, 2, "71"}, {3, 4, "t||g"}, {4, 3, "741"}, {4, 4, "7|4|1"}}) {
    const std::string before = PageText;
    SetTallBracket(TallBrackets()[static_cast<std::size_t>(index)], lines);
    std::istringstream added(PageText.substr(before.size()));
    std::string set;
    float foot = 0;
    TextEntry piece;
    for (std::string line; std::getline(added, line);) {
      line.pop_back();
      ASSERT_TRUE(ParseTextEntry(line, piece)) << line;
      const float top = piece.y - 0.75F * piece.size;
      EXPECT_NEAR(top, set.empty() ? 99 + 0.3 * FontSize - 0.75 * FontSize : foot, 0.01);
      foot = top + piece.size;
      set += piece.text;
    }
    EXPECT_EQ(set, keys);
    EXPECT_NEAR(foot, 99 + 0.3 * FontSize - 0.75 * FontSize + static_cast<double>(lines) * FontSize, 0.02);
    Undo();
    EXPECT_EQ(PageText, before);
  }
  EXPECT_EQ(FailureOf([] { SetTallBracket(TallBrackets()[0], 1); }), "A tall bracket has 2 to 200 lines.");
}

TEST_F(PaletteTest, ATallBracketStandsBehindTheRun) {
  Open();
  PlaceAt("Bottom Left", 72, 99);
  canvas->Type("abc");
  const float end = EndsOfRun().end.x;
  SetTallBracket(TallBrackets()[2], 2);
  EXPECT_TRUE(PageText.starts_with("72 99 m 11 F0 (abc) 3 s\r\n")) << PageText;
  TextEntry piece;
  const std::string second = PageText.substr(PageText.find('\n') + 1);
  ASSERT_TRUE(ParseTextEntry(second.substr(0, second.find('\r')), piece));
  EXPECT_NEAR(piece.x, end, 0.01);
  EXPECT_EQ(piece.y, 99);
}

}  // namespace
}  // namespace kelvane
