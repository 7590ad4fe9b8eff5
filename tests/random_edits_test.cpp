// Some hundred edits in an order that nobody chose, beside a plain model of undo and redo.

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "document/page.h"
#include "editing/bezier.h"
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
  struct Page {
    std::string text;
    std::string drawings;
    bool operator==(const Page&) const = default;
  };
  static Page CurrentPage() { return {PageText, DrawingList}; }

  // The page as it was after each edit, the first one empty, and the place in that row.
  std::vector<Page> history = {{}};
  std::size_t now = 0;
  int entries = 0;
  int drawings = 0;

  std::mt19937 random{7};
  int Roll(int sides) { return static_cast<int>(random() % static_cast<unsigned>(sides)); }

  void Type() {
    for (int i = Roll(6); i >= 0; --i) canvas->Press(32 + Roll(96));
  }

  void Drag() {
    canvas->Down(static_cast<float>(Roll(594)), static_cast<float>(Roll(840)));
    canvas->Move(static_cast<float>(Roll(594)), static_cast<float>(Roll(840)));
    canvas->Up(static_cast<float>(Roll(594)), static_cast<float>(Roll(840)));
  }

  // One thing that a person may do which is no undo and no redo.
  void Act() {
    switch (Roll(18)) {
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
      case 12:
        window->ClickButton("Draw Bezier");
        break;
      case 13:
        Drag();
        break;
      case 15:
        window->ChooseEntry(
            std::vector{"&Refresh", "Zoom &In", "Zoom &Out", "Fit &Page", "Red", "1.5 pt"}[random() % 6]);
        break;
      case 14:
        canvas->Click(10, 10, MouseButton::Right);
        break;
      default:
        Type();
        break;
    }
  }

  // An edit appends one entry or one drawing to the page and ends the way forward.
  void NoteEdits() {
    const Page page = CurrentPage();
    if (page == history[now]) return;
    ExpectOneMore(history[now], page);
    ++(page.text == history[now].text ? drawings : entries);
    history.resize(++now);  // what could be done again is gone
    history.push_back(page);
  }

  static void ExpectOneMore(const Page& before, const Page& after) {
    ASSERT_TRUE(after.text.starts_with(before.text) && after.drawings.starts_with(before.drawings));
    const std::string entry = after.text.substr(before.text.size());
    const std::string drawing = after.drawings.substr(before.drawings.size());
    EXPECT_NE(entry.empty(), drawing.empty());
    const std::string added = entry + drawing;
    ASSERT_EQ(added.find("\r\n"), added.size() - 2);
    const std::string line = added.substr(0, added.size() - 2);
    TextEntry parts;
    EXPECT_TRUE(entry.empty() || ParseTextEntry(line, parts)) << line;
    EXPECT_TRUE(drawing.empty() || LineToDrawingRecord(DrawingRecordToLine(line)) == line) << line;
  }

  // What is half done counts as done before undo and redo.
  void CompleteEdits() {
    CommitPendingRun(false);
    NoteEdits();
    FinishDrawing();
    NoteEdits();
  }

  void CheckWhatShows() {
    EXPECT_EQ(Text4->Text(), PendingRun);
    EXPECT_EQ(FontLabel->Text(), FontLabelText(CurrentFont, FontSize));
    EXPECT_EQ(CursorLabel->Text(), CursorLabelText());
    EXPECT_EQ(PageChanged != 0, !PageIsEmpty());
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
  for (int step = 0; step < 1000 && !HasFailure(); ++step) {
    SCOPED_TRACE(step);
    const int kind = Roll(10);
    if (kind == 0) {
      CompleteEdits();
      window->PressShortcut("Ctrl+Z");
      if (now > 0) --now;
    } else if (kind == 1) {
      CompleteEdits();
      window->PressShortcut("Ctrl+Shift+Z");
      if (now + 1 < history.size()) ++now;
    } else {
      Act();
      NoteEdits();
    }
    EXPECT_TRUE(CurrentPage() == history[now]);
    EXPECT_EQ(std::count(DrawingList.begin(), DrawingList.end(), '\n'), DrawingCount);
    CheckWhatShows();
  }
  EXPECT_GT(entries, 50);
  EXPECT_GT(drawings, 10);
  CompleteEdits();
  while (!UndoLabel().empty()) Undo();
  EXPECT_TRUE(PageIsEmpty());
  while (!RedoLabel().empty()) Redo();
  EXPECT_TRUE(CurrentPage() == history.back());
}

}  // namespace
}  // namespace kelvane
