// Some hundred edits in an order that nobody chose, beside a plain model of undo and redo.

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "document/page.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "editing/undo.h"
#include "tests/support/editor_test.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

class RandomEditsTest : public EditorTest {
 protected:
  // The page as it was after each edit, the first one empty, and the place in that row.
  std::vector<std::string> history = {""};
  std::size_t now = 0;

  std::mt19937 random{7};
  int Roll(int sides) { return static_cast<int>(random() % static_cast<unsigned>(sides)); }

  void Type() {
    for (int i = Roll(6); i >= 0; --i) canvas->Press(32 + Roll(96));
  }

  // One thing that a person may do which is no undo and no redo.
  void Act() {
    switch (Roll(14)) {
      case 0:
        window->ClickButton(kAnchorNames[Roll(10)]);
        break;
      case 1:
      case 2:
        canvas->Click(static_cast<float>(Roll(594)), static_cast<float>(Roll(840)));
        break;
      case 3:
        canvas->Press(13);
        break;
      case 4:
        canvas->Press(10);
        break;
      case 5:
        canvas->Press(8);
        break;
      case 6:
        InsertScript(Roll(12));
        break;
      case 7:
        static_cast<FakeMenuEntry*>(FontMenu[Roll(16)])->Choose();
        break;
      case 8:
        static_cast<FakeTextBox*>(Text1)->Type(std::to_string(Roll(40)));
        break;
      case 9:
        static_cast<FakeTextBox*>(Text4)->Type("box\xE4(" + std::string(1, static_cast<char>(Roll(256))));
        break;
      case 10:
        static_cast<FakeTextBox*>(Text4)->PressEnter();
        break;
      case 11:
        canvas->Press(kKeyLeft + Roll(4));
        break;
      default:
        Type();
        break;
    }
  }

  // An edit appends one entry to the page and ends the way forward.
  void NoteEdits() {
    if (PageText == history[now]) return;
    ASSERT_TRUE(PageText.starts_with(history[now]));
    const std::string_view added = std::string_view(PageText).substr(history[now].size());
    ASSERT_EQ(added.find("\r\n"), added.size() - 2);
    TextEntry entry;
    EXPECT_TRUE(ParseTextEntry(added.substr(0, added.size() - 2), entry)) << added;
    history.resize(++now);  // what could be done again is gone
    history.push_back(PageText);
  }

  void CheckWhatShows() {
    EXPECT_EQ(Text4->Text(), PendingRun);
    EXPECT_EQ(FontLabel->Text(), FontLabelText(CurrentFont, FontSize));
    EXPECT_EQ(CursorLabel->Text(), CursorLabelText());
    EXPECT_EQ(PageChanged != 0, PageText != "");
    // What was painted on top since the last redraw is what a redraw paints.
    const std::string page = canvas->Drawn(Layer::Page);
    const std::string overlay = canvas->Drawn(Layer::Overlay);
    RedrawPage();
    EXPECT_EQ(canvas->Drawn(Layer::Page), page);
    EXPECT_TRUE(!PendingRun.empty() || canvas->Drawn(Layer::Overlay) == overlay);
  }
};

TEST_F(RandomEditsTest, UndoAndRedoFollowTheModel) {
  files.contents["\\Kelvane\\QRX.DAT"] = "GUIDEX = 100\r\nGUIDEX = 500\r\n";
  Start();
  for (int step = 0; step < 600 && !HasFailure(); ++step) {
    SCOPED_TRACE(step);
    const int kind = Roll(10);
    if (kind == 0) {
      CommitPendingRun(false);
      NoteEdits();
      window->PressShortcut("Ctrl+Z");
      if (now > 0) --now;
    } else if (kind == 1) {
      CommitPendingRun(false);
      NoteEdits();
      window->PressShortcut("Ctrl+Shift+Z");
      if (now + 1 < history.size()) ++now;
    } else {
      Act();
      NoteEdits();
    }
    EXPECT_EQ(PageText, history[now]);
    CheckWhatShows();
  }
  ASSERT_GT(history.size(), 20u);
  CommitPendingRun(false);
  NoteEdits();
  while (!UndoLabel().empty()) Undo();
  EXPECT_EQ(PageText, "");
  while (!RedoLabel().empty()) Redo();
  EXPECT_EQ(PageText, history.back());
}

}  // namespace
}  // namespace kelvane
