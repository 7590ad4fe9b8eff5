// Some hundred edits in an order that nobody chose, beside a plain model of undo and redo.

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "document/page.h"
#include "editing/arrange.h"
#include "editing/bezier.h"
#include "editing/clipboard.h"
#include "editing/cursor.h"
#include "editing/item_edits.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/picking.h"
#include "editing/properties.h"
#include "editing/select_tool.h"
#include "editing/undo.h"
#include "papers/find.h"
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

// What changes items, on two pages that are turned meanwhile. The page is as it was after each edit, by
// number of steps back that there are; a command that is refused changes nothing.
TEST_F(RandomEditsTest, EditsOfItemsComeBackOnEveryPage) {
  files.contents["\\P\\A.001"] = "72 99 m 12 F0 (a b) 3 s\r\n80 150 m 1 lw 40 0 rl 9 9 30 30 rb stroke\r\n";
  files.contents["\\P\\A.002"] = "";
  Start("\\P\\A.001");
  const auto type = [&](std::initializer_list<int> keys) {
    for (const int key : keys) canvas->Press(key);
  };
  const std::vector<std::function<void()>> edits = {
      SelectAll,
      [&] { SelectNext(Roll(2) == 0); },
      [&] { MoveSelected(static_cast<float>(Roll(99)) / 7, static_cast<float>(Roll(99))); },
      Copy,
      Cut,
      [&] {
        Paste(Point{Across(), Down()});
      },
      DuplicateSelected,
      [&] { ReorderSelected(Roll(2) == 0); },
      [&] { AlignSelected(static_cast<Side>(Roll(7))); },
      [&] { SetFont(static_cast<std::int16_t>(Roll(16))); },
      [&] { SetAnchor(1 + Roll(9)); },
      [&] { SetColour(static_cast<std::int16_t>(Roll(16))); },
      [&] {
        OpenSelected();
        if (Retyping()) type({kKeyDelete, 'x'});
      },
      [&] {
        ShapeDrawing(ItemsOfPage().Drawings().empty() ? 0 : ItemsOfPage().Drawings().front().id);
        type({kKeyHome, '+'});
      },
      [&] {
        FindText = "a";
        ReplaceAllOnPage("b a");
      },
      [&] {
        PlaceAt(kAnchorNames[1 + Roll(9)], Across(), Down());
        Type();
      }};
  std::map<int, std::vector<Page>> rows;
  std::map<int, std::size_t> places;
  std::size_t made = 0;
  for (int step = 0; step < 12000 && !HasFailure(); ++step) {
    SCOPED_TRACE(step);
    std::vector<Page>& row = rows[CurrentPageNumber];
    std::size_t& place = places[CurrentPageNumber];
    if (row.empty()) row.push_back(CurrentPage());
    const int kind = Roll(12);
    if (kind == 0) {
      // One would be asked about leaving an empty page.
      if (!ThePage.Empty()) CurrentPageNumber == 1 ? PageDown() : PageUp();
      continue;
    }
    if (kind < 4 && place > 0) {
      Undo();
      DropRun();
      --place;
    } else if (kind < 6 && place + 1 < row.size()) {
      Redo();
      ++place;
    } else {
      const bool full = ThePage.text.size() + ThePage.drawings.size() > 20000;
      if (full) SelectAll();
      full ? DeleteSelected() : edits[static_cast<std::size_t>(Roll(static_cast<int>(edits.size())))]();
      LeaveEditing();
      if (CurrentPage() != row[place]) {
        row.resize(++place);
        row.push_back(CurrentPage());
        ++made;
      }
    }
    ASSERT_TRUE(CurrentPage() == row[place]);
  }
  EXPECT_GT(made, 1000U);
  for (int page = 0; page < 2; ++page) {
    const std::vector<Page>& row = rows[CurrentPageNumber];
    for (std::size_t place = places[CurrentPageNumber]; place > 0; --place) {
      Undo();
      DropRun();
    }
    EXPECT_TRUE(CurrentPage() == row.front());
    EXPECT_EQ(UndoLabel(), "");
    while (!RedoLabel().empty()) Redo();
    EXPECT_TRUE(CurrentPage() == row.back());
    if (ThePage.Empty()) Undo();
    CurrentPageNumber == 1 ? PageDown() : PageUp();
  }
}

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
