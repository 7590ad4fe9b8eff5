// Some hundred edits in an order that nobody chose, beside a plain model of undo and redo.

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "document/page.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "editing/properties.h"
#include "editing/undo.h"
#include "tests/support/editor_test.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

const char* const kViews[] = {"&Refresh", "Zoom &In", "Zoom &Out", "Fit &Page", "Red", "1.5 pt"};

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

  float Across() { return static_cast<float>(Roll(594)); }
  float Down() { return static_cast<float>(Roll(840)); }

  void Type() {
    for (int i = Roll(6); i >= 0; --i) canvas->Press(32 + Roll(96));
  }

  void Drag() {
    canvas->Down(Across(), Down());
    canvas->Move(Across(), Down());
    canvas->Up(Across(), Down());
  }

  // What a person may do which is no undo and no redo; typing comes up more often.
  const std::vector<std::function<void()>> acts = {
      [&] { window->ClickButton(kAnchorNames[Roll(10)]); },
      [&] { canvas->Click(Across(), Down()); },
      [&] { canvas->Click(Across(), Down()); },
      [&] { canvas->Press(13); },
      [&] { canvas->Press(10); },
      [&] { canvas->Press(8); },
      [&] { InsertScript(Roll(12)); },
      [&] { static_cast<FakeMenuEntry*>(FontMenu[Roll(16)])->Choose(); },
      [&] { window->BoxOf("Font Size")->Type(std::to_string(Roll(40))); },
      [&] {
        window->BoxOf("Control Codes")->Type("box\xE4(" + std::string(1, static_cast<char>(Roll(256))));
      },
      [&] { window->BoxOf("Control Codes")->PressEnter(); },
      [&] { canvas->Press(kKeyLeft + Roll(4)); },
      [&] { window->ClickButton("Draw Bezier"); },
      [&] { Drag(); },
      [&] { canvas->Click(10, 10, MouseButton::Right); },
      [&] { window->ChooseEntry(kViews[Roll(6)]); }};

  void Act() {
    const auto act = static_cast<std::size_t>(Roll(18));
    act < acts.size() ? acts[act]() : Type();
  }

  // An edit ends the way forward. Unless items are selected, it appends one entry or one drawing to the page.
  void NoteEdits() {
    const Page page = CurrentPage();
    if (page == history[now]) return;
    if (SelectedProperties().Count() == 0) ExpectOneMore(history[now], page);
    ++(page.text == history[now].text ? drawings : entries);
    history.resize(++now);  // what could be done again is gone
    history.push_back(page);
  }

  static void ExpectOneMore(const Page& before, const Page& after) {
    ASSERT_TRUE(after.text.starts_with(before.text) && after.drawings.starts_with(before.drawings));
    const bool isDrawing = after.text == before.text;
    EXPECT_TRUE(isDrawing || after.drawings == before.drawings);
    const std::string added =
        after.text.substr(before.text.size()) + after.drawings.substr(before.drawings.size());
    ASSERT_EQ(added.find("\r\n"), added.size() - 2);
    const std::string line = added.substr(0, added.size() - 2);
    TextEntry parts;
    EXPECT_TRUE(isDrawing ? LineToDrawingRecord(DrawingRecordToLine(line)) == line
                          : ParseTextEntry(line, parts))
        << line;
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
    if (SelectedProperties().texts == 0) {
      EXPECT_EQ(FontLabel->Text(), FontLabelText(CurrentFont, FontSize));
    }
    EXPECT_EQ(CursorLabel->Text(), CursorLabelText());
    EXPECT_EQ(PageChanged != 0, !ThePage.Empty());
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
    if (kind > 1) {
      Act();
      NoteEdits();
    } else {
      CompleteEdits();
      if (kind == 0 ? now == 0 : now + 1 == history.size()) continue;
      window->PressShortcut(kind == 0 ? "Ctrl+Z" : "Ctrl+Shift+Z");
      kind == 0 ? --now : ++now;
    }
    EXPECT_TRUE(CurrentPage() == history[now]);
    EXPECT_EQ(std::count(DrawingList.begin(), DrawingList.end(), '\n'), DrawingCount);
    CheckWhatShows();
  }
  EXPECT_GT(entries, 50);
  EXPECT_GT(drawings, 10);
  CompleteEdits();
  while (!UndoLabel().empty()) Undo();
  EXPECT_TRUE(ThePage.Empty());
  while (!RedoLabel().empty()) Redo();
  EXPECT_TRUE(CurrentPage() == history.back());
}

}  // namespace
}  // namespace kelvane
