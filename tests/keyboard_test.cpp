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

constexpr int kEnter = 13;
constexpr int kCtrlEnter = 10;
constexpr int kBackspace = 8;

// An anchor is chosen and placed at (72, 100).
class KeyboardTest : public ProgramTest {
 protected:
  KeyboardTest() {
    FillWidths();
    CursorMode = -1;
    CursorX = 72;
    CursorY = 100;
  }

  static FakeTextBox& Box() { return static_cast<FakeTextBox&>(*Text4); }
  static void Type(const std::string& text) {
    for (const char c : text) TypeKey(static_cast<unsigned char>(c));
  }
};

TEST_F(KeyboardTest, KeysNeedAPlacedPoint) {
  for (const std::int16_t mode : {0, 1, 9, 10, 11}) {
    CursorMode = mode;
    TypeKey('x');
    TypeKey(kEnter);
    TypeKey(kBackspace);
    InsertText("m0");
    EXPECT_EQ(PendingRun, "");
    EXPECT_EQ(CursorY, 100);
    EXPECT_EQ(canvas->Clears(Layer::Overlay), 0);
  }
}

TEST_F(KeyboardTest, CodesOfTheKeyboard) {
  for (int code = 0; code < 300; ++code) {
    if (code != kBackspace && code != kEnter && code != kCtrlEnter) TypeKey(code);
  }
  std::string typed;
  for (int code = 32; code <= 127; ++code) typed += static_cast<char>(code);
  EXPECT_EQ(PendingRun, typed);
  EXPECT_EQ(Box().text, typed);
  EXPECT_EQ(PageText, "");
}

TEST_F(KeyboardTest, BackspaceTakesTheLastCharacterOfTheRunOnly) {
  TypeKey(kBackspace);
  Type("ab");
  TypeKey(kBackspace);
  EXPECT_EQ(Box().text, "a");
  TypeKey(kEnter);
  TypeKey(kBackspace);
  EXPECT_EQ(PageText, "72 100 m 11 F0 (a) 1 s\r\n");
}

// The label must tell the face of the next character.
TEST_F(KeyboardTest, TakingASwitchBackTakesTheTypefaceBack) {
  BaseFont = CurrentFont = 2;
  Type("a");
  ChooseFont(4);
  Type("b");
  ChooseFont(9);
  TypeKey(kBackspace);
  EXPECT_EQ(CurrentFont, 4);
  EXPECT_EQ(FontLabel->Text(), "Helvetica 11.00pts");
  TypeKey(kBackspace);
  TypeKey(kBackspace);
  EXPECT_EQ(PendingRun, "a");
  EXPECT_EQ(CurrentFont, 2);
}

TEST_F(KeyboardTest, EnterWritesTheEntryAndGoesToTheNextLine) {
  Type("x+1");
  TypeKey(kEnter);
  EXPECT_EQ(PageText, "72 100 m 11 F0 (x+1) 1 s\r\n");
  EXPECT_EQ(PendingRun, "");
  EXPECT_EQ(Box().text, "");
  EXPECT_EQ(CursorMode, -1);
  EXPECT_EQ(CursorX, 72);
  EXPECT_EQ(CursorY, 114);  // 100 + 11 + 3 on a grid of 3
  EXPECT_EQ(PageChanged, 1);
}

TEST_F(KeyboardTest, EntriesCarryWhatIsInForce) {
  CursorMode = -9;
  CursorX = -3.25F;
  FontSize = 10.5F;
  BaseFont = 10;
  Type("a)b(\\");
  TypeKey(kEnter);
  EXPECT_EQ(PageText, "-3.25 100 m 10.5 FA (a)b(\\) 9 s\r\n");
  EXPECT_EQ(CurrentFont, 10);
}

TEST_F(KeyboardTest, EnterOnNothingOnlyMovesDown) {
  MarkedLeft = MarkedTop = 5;
  GridStepV = 4;
  CursorY = -20;
  TypeKey(kEnter);
  EXPECT_EQ(CursorY, -8);  // -20 + 11 + 4 = -5, down to a multiple of 4
  EXPECT_EQ(MarkedLeft + MarkedTop, 0);
  EXPECT_EQ(PageText, "");
  EXPECT_EQ(PageChanged, 0);
}

TEST_F(KeyboardTest, CtrlEnterJustifiesLeftAnchoredRuns) {
  GuideX[0] = 100;
  for (std::int16_t anchor = 1; anchor <= 9; ++anchor) {
    PageText.clear();
    CursorMode = static_cast<std::int16_t>(-anchor);
    Type("a b");
    TypeKey(kCtrlEnter);
    const std::string number = std::to_string(anchor);
    EXPECT_TRUE(PageText.ends_with(anchor <= 3 ? number + " 28 a\r\n" : number + " s\r\n")) << PageText;
    EXPECT_FALSE(JustifyRun);
    EXPECT_EQ(CursorMode, -anchor);
  }
  GuideX[0] = 50;  // none to the right
  CursorMode = -1;
  Type("a");
  TypeKey(kCtrlEnter);
  EXPECT_TRUE(PageText.ends_with("1 s\r\n"));
}

TEST_F(KeyboardTest, AJustifiedRunDoesNotJustifyTheNext) {
  GuideX[0] = 100;
  Type("a");
  TypeKey(kCtrlEnter);
  Type("b");
  ChooseAnchor(1);
  EXPECT_TRUE(PageText.ends_with("(b) 1 s\r\n"));
}

TEST_F(KeyboardTest, ScriptButtonsInsertTheirCodes) {
  std::string codes;
  for (int i = 0; i < 12; ++i) {
    InsertScript(i);
    codes += static_cast<char>(240 + i);
  }
  EXPECT_EQ(PendingRun, codes);
  EXPECT_EQ(Box().text, codes);
  EXPECT_EQ(FocusedControl, static_cast<Canvas*>(canvas));
  FocusedControl = nullptr;
  CursorMode = 3;
  InsertScript(0);
  EXPECT_EQ(PendingRun, codes);
  EXPECT_EQ(FocusedControl, static_cast<Canvas*>(canvas));
}

TEST_F(KeyboardTest, InsertedSwitchesCount) {
  InsertText("a\xE4z");
  EXPECT_EQ(CurrentFont, 4);
  InsertText("b");
  EXPECT_EQ(CurrentFont, 4);
  EXPECT_EQ(PendingRun, "a\xE4zb");
}

TEST_F(KeyboardTest, TheBoxAndTheRunAreOne) {
  Type("ab");
  Box().OnChange = ControlCodeBoxChanged;
  Box().Type("a\xE3q");
  EXPECT_EQ(PendingRun, "a\xE3q");
  EXPECT_EQ(CurrentFont, 3);
  Type("!");
  EXPECT_EQ(Box().text, "a\xE3q!");
  TypeKey(kEnter);
  EXPECT_EQ(PageText, "72 100 m 11 F0 (a\xE3q!) 1 s\r\n");
}

TEST_F(KeyboardTest, LineEndsNeverEnterARun) {
  Box().OnChange = ControlCodeBoxChanged;
  Box().Type(std::string("a\r\nb\0c", 6));
  EXPECT_EQ(PendingRun, "a  b c");
  EXPECT_EQ(Box().text, PendingRun);
  CommitPendingRun(false);
  EXPECT_EQ(PageText, "72 100 m 11 F0 (a  b c) 1 s\r\n");
  CursorMode = -1;
  InsertText(std::string("d\0e\n", 4));
  EXPECT_EQ(PendingRun, "d e ");
  EXPECT_EQ(Box().text, "d e ");
}

TEST_F(KeyboardTest, ApplyCompletesTheRunAndLeavesThePoint) {
  Type("a");
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
  CommitPendingRun(true);
  EXPECT_EQ(CursorMode, -1);
  CursorMode = 11;
  Box().text = "kept";
  CommitPendingRun(true);
  EXPECT_EQ(Box().text, "kept");
  EXPECT_EQ(PageText, "");
  EXPECT_EQ(CursorMode, 11);
}

TEST_F(KeyboardTest, TheNextEntryStartsInTheBaseFont) {
  BaseFont = CurrentFont = 1;
  Type("a");
  ChooseFont(5);
  TypeKey(kEnter);
  EXPECT_EQ(CurrentFont, 1);
  EXPECT_EQ(FontLabel->Text(), "Times-Bold 11.00pts");
}

// A page file's last line may lack its end.
TEST_F(KeyboardTest, AnEntryNeverRunsIntoTheLineBefore) {
  PageText = "a line without its end";
  Type("x");
  TypeKey(kEnter);
  EXPECT_EQ(PageText, "a line without its end\r\n72 100 m 11 F0 (x) 1 s\r\n");
}

// The run shows while it is typed just as it will stand once committed.
TEST_F(KeyboardTest, TypingShowsWhatTheCommitWillDraw) {
  for (std::int16_t anchor = 1; anchor <= 9; ++anchor) {
    CursorMode = static_cast<std::int16_t>(-anchor);
    BaseFont = CurrentFont = 3;
    Type("ab");
    InsertScript(0);
    ChooseFont(8);
    Type("c d");
    const std::string overlay = canvas->Drawn(Layer::Overlay);
    canvas->SelectLayer(Layer::Page);
    canvas->Clear();
    CommitPendingRun(true);
    const std::string page = canvas->Drawn(Layer::Page);
    EXPECT_TRUE(page.starts_with("text ")) << page;
    EXPECT_TRUE(overlay.starts_with(page)) << anchor << "\n" << overlay << page;
    RedrawPage();
    EXPECT_TRUE(canvas->Drawn(Layer::Page).ends_with(page));
    PageText.clear();
  }
}

TEST_F(KeyboardTest, AKeyPressRepaintsTheOverlayOnly) {
  PageText = "10 50 m 10 F0 (x) 3 s\r\n";
  RedrawPage();
  const int clears = canvas->Clears(Layer::Page);
  const std::string page = canvas->Drawn(Layer::Page);
  Type("abc");
  InsertScript(1);
  TypeKey(kBackspace);
  EXPECT_EQ(canvas->Clears(Layer::Page), clears);
  EXPECT_EQ(canvas->Drawn(Layer::Page), page);
}

}  // namespace
}  // namespace kelvane
