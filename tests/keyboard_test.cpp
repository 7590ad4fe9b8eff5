#include "editing/keyboard.h"

#include "document/page.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "tests/support/program_files.h"
#include "tests/support/program_test.h"
#include "typography/colours.h"
#include "typography/glyphs.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

// An anchor is chosen and placed at (72, 100).
class KeyboardTest : public ProgramTest {
 protected:
  KeyboardTest() {
    FillWidths();
    canvas->OnKeyPress = TypeKey;
    Box().OnChange = ControlCodeBoxChanged;
    CursorMode = -1;
    CursorX = 72;
    CursorY = 100;
  }

  static FakeTextBox& Box() { return static_cast<FakeTextBox&>(*Text4); }
};

TEST_F(KeyboardTest, KeysNeedAPlacedPoint) {
  for (const std::int16_t mode : {0, 1, 9, 10, 11}) {
    CursorMode = mode;
    canvas->Press('x');
    canvas->Press(kKeyEnter);
    canvas->Press(kKeyBackspace);
    InsertText("m0");
    EXPECT_EQ(PendingRun, "");
    EXPECT_EQ(CursorY, 100);
    EXPECT_EQ(canvas->Clears(Layer::Overlay), 0);
  }
}

TEST_F(KeyboardTest, CodesOfTheKeyboard) {
  for (int code = 0; code < 300; ++code) {
    if (code != kKeyBackspace && code != kKeyEnter && code != kKeyCtrlEnter) TypeKey(code);
  }
  std::string typed;
  for (int code = 32; code <= 127; ++code) typed += static_cast<char>(code);
  EXPECT_EQ(PendingRun, typed);
  EXPECT_EQ(Box().text, typed);
}

// The label must tell the face of the next character.
TEST_F(KeyboardTest, BackspaceTakesTheLastCodeOfTheRunOnlyAndItsTypeface) {
  BaseFont = CurrentFont = 2;
  canvas->Press(kKeyBackspace);
  canvas->Type("a");
  ChooseFont(4);
  canvas->Type("b");
  ChooseFont(9);
  canvas->Press(kKeyBackspace);
  EXPECT_EQ(FontLabel->Text(), "Helvetica 11.00pts");
  canvas->Press(kKeyBackspace);
  canvas->Press(kKeyBackspace);
  EXPECT_EQ(Box().text, "a");
  EXPECT_EQ(CurrentFont, 2);
  canvas->Press(kKeyEnter);
  canvas->Press(kKeyBackspace);
  EXPECT_EQ(PageText, "72 100 m 11 F2 (a) 1 s\r\n");
}

TEST_F(KeyboardTest, EnterWritesTheEntryAndGoesToTheNextLine) {
  BaseFont = CurrentFont = 1;
  canvas->Type("x+1");
  ChooseFont(5);
  canvas->Press(kKeyEnter);
  EXPECT_EQ(PageText, "72 100 m 11 F1 (x+1\xE5) 1 s\r\n");
  EXPECT_EQ(PendingRun + Box().text, "");
  EXPECT_EQ(CursorMode, -1);
  EXPECT_EQ(CursorX, 72);
  EXPECT_EQ(CursorY, 114);  // 100 + 11 + 3 on a grid of 3
  EXPECT_EQ(PageChanged, 1);
  EXPECT_EQ(CurrentFont, 1);  // the next entry starts in the base font
  EXPECT_EQ(FontLabel->Text(), "Times-Bold 11.00pts");
}

// A page file's last line may lack its end.
TEST_F(KeyboardTest, EntriesCarryWhatIsInForceAndStandOnALineOfTheirOwn) {
  PageText = "a line without its end";
  CursorMode = -9;
  CursorX = -3.25F;
  FontSize = 10.5F;
  BaseFont = 10;
  canvas->Type("a)b(\\");
  canvas->Press(kKeyEnter);
  EXPECT_EQ(PageText, "a line without its end\r\n-3.25 100 m 10.5 FA (a)b(\\) 9 s\r\n");
}

TEST_F(KeyboardTest, EnterOnNothingOnlyMovesDown) {
  MarkedLeft = MarkedTop = 5;
  GridStepV = 4;
  CursorY = -20;
  canvas->Press(kKeyEnter);
  EXPECT_EQ(CursorY, -8);  // -20 + 11 + 4 = -5, down to a multiple of 4
  EXPECT_EQ(MarkedLeft + MarkedTop, 0);
  EXPECT_EQ(PageText, "");
  EXPECT_EQ(PageChanged, 0);
}

TEST_F(KeyboardTest, CtrlEnterJustifiesLeftAnchoredRuns) {
  GuideX[0] = 100;
  for (std::int16_t anchor = 9; anchor >= 1; --anchor) {
    CursorMode = static_cast<std::int16_t>(-anchor);
    canvas->Type("a b");
    canvas->Press(kKeyCtrlEnter);
    const std::string number = std::to_string(anchor);
    EXPECT_TRUE(PageText.ends_with(anchor <= 3 ? number + " 28 a\r\n" : number + " s\r\n")) << PageText;
    EXPECT_EQ(CursorMode, -anchor);
  }
  canvas->Type("next");
  ChooseAnchor(1);
  EXPECT_TRUE(PageText.ends_with("(next) 1 s\r\n")) << "justified like the run before";
  GuideX[0] = 50;  // none to the right
  CursorMode = -1;
  canvas->Type("a");
  canvas->Press(kKeyCtrlEnter);
  EXPECT_TRUE(PageText.ends_with("1 s\r\n"));
}

TEST_F(KeyboardTest, CodesAreInsertedAtAPlacedPointOnly) {
  std::string codes;
  for (int i = 0; i < 12; ++i) {
    InsertScript(i);
    codes += static_cast<char>(240 + i);
  }
  for (const char* text : {"a\xE4z", "b"}) {
    InsertText(text);
    EXPECT_EQ(CurrentFont, 4);
  }
  CursorMode = 3;
  FocusedControl = nullptr;
  InsertScript(0);
  EXPECT_EQ(PendingRun, codes + "a\xE4zb");
  EXPECT_EQ(Box().text, PendingRun);
  EXPECT_EQ(FocusedControl, static_cast<Canvas*>(canvas));
}

TEST_F(KeyboardTest, TheBoxAndTheRunAreOneAndHoldNoLineEnds) {
  canvas->Type("ab");
  Box().Type(std::string("a\r\n\xE3\0q", 6));
  EXPECT_EQ(PendingRun, "a  \xE3 q");
  EXPECT_EQ(CurrentFont, 3);
  canvas->Type("!");
  InsertText(std::string("d\0e\n", 4));
  EXPECT_EQ(Box().text, "a  \xE3 q!d e ");
  Box().text += '\n';  // not heard of
  CommitPendingRun(false);
  EXPECT_EQ(PageText, "72 100 m 11 F0 (a  \xE3 q!d e  ) 1 s\r\n");
}

TEST_F(KeyboardTest, ApplyCompletesTheRunAndLeavesThePoint) {
  canvas->Type("a");
  MarkedLeft = 5;
  ApplyControlCodeBox();
  EXPECT_EQ(PageText, "72 100 m 11 F0 (a) 1 s\r\n");
  EXPECT_EQ(CursorMode, 1);
  EXPECT_EQ(CursorY, 100);
  EXPECT_EQ(MarkedLeft, 0);
  EXPECT_EQ(FocusedControl, static_cast<Canvas*>(canvas));
  FocusedControl = nullptr;
  Box().text = "b";
  ApplyControlCodeBox();
  EXPECT_EQ(Box().text, "b");  // not placed: only the focus goes back
  EXPECT_EQ(FocusedControl, static_cast<Canvas*>(canvas));
}

TEST_F(KeyboardTest, CommittingNothingChangesNothing) {
  for (const std::int16_t mode : {-1, 11}) {
    CursorMode = mode;
    Box().text = mode == 11 ? "kept" : "";
    CommitPendingRun(true);
    EXPECT_EQ(CursorMode, mode);
    EXPECT_EQ(PageText, "");
  }
  EXPECT_EQ(Box().text, "kept");
}

// The run shows while it is typed just as it will stand once committed, and the page is not painted anew.
TEST_F(KeyboardTest, TypingShowsOnTheOverlayWhatTheCommitWillDraw) {
  for (std::int16_t anchor = 1; anchor <= 9; ++anchor) {
    RedrawPage();
    const std::string before = canvas->Drawn(Layer::Page);
    const int clears = canvas->Clears(Layer::Page);
    CursorMode = static_cast<std::int16_t>(-anchor);
    BaseFont = CurrentFont = 3;
    canvas->Type("abx");
    canvas->Press(kKeyBackspace);
    InsertScript(0);
    ChooseFont(8);
    canvas->Type("c d");
    EXPECT_EQ(canvas->Drawn(Layer::Page), before);
    const std::string overlay = canvas->Drawn(Layer::Overlay);
    CommitPendingRun(true);
    EXPECT_EQ(canvas->Clears(Layer::Page), clears);
    const std::string entry = canvas->Drawn(Layer::Page).substr(before.size());
    EXPECT_TRUE(entry.starts_with("text ")) << entry;
    EXPECT_TRUE(overlay.starts_with(entry)) << anchor << "\n" << overlay << entry;
    RedrawPage();
    EXPECT_EQ(canvas->Drawn(Layer::Page), before + entry);
  }
}

}  // namespace
}  // namespace kelvane
