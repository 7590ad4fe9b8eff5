// Items cut, copied and pasted in an order that nobody chose, and taken back.

#include "editing/clipboard.h"

#include <random>
#include <vector>

#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/item_edits.h"
#include "editing/undo.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

class ClipboardTest : public EditorTest {
 protected:
  void SetUp() override { Start(); }

  std::mt19937 random{11};
  int Roll(int sides) { return static_cast<int>(random() % static_cast<unsigned>(sides)); }

  void SelectSome() {
    ClearMarkedBox();
    const PageItems& items = ItemsOfPage();
    for (const TextItem& item : items.Texts())
      if (Roll(4) == 0) SelectAlso(item.id);
    for (const DrawingItem& item : items.Drawings())
      if (Roll(4) == 0) SelectAlso(item.id);
  }
  std::optional<Point> Somewhere() {
    if (Roll(3) == 0) return std::nullopt;
    return Point{static_cast<float>(Roll(594)) / 3, static_cast<float>(Roll(840)) / 7};
  }
};

TEST_F(ClipboardTest, UndoAndRedoReturnThePageByteByByte) {
  ThePage = PageOfContent(
      "100.25 99 m 11 F0 (a) 3 s\r\nnobody knows this line\r\n 7   8 m 9 F1 (b) 5 60 a\r\n"
      "72 140 m 0.5 lw 120 0 rl stroke\r\n100 200 m 120.25 lw 0 -20 40 0 rb -40 0 rl fill\r\n",
      "a page");
  ResetEdits();
  std::vector<Page> pages = {ThePage};
  for (int step = 0; step < 1000; ++step) {
    SelectSome();
    const int act = Roll(4);
    if (!CanCopy() && act != 3) continue;
    if (act == 0) Copy();
    // More is cut than pasted, or the page would grow without end.
    if (act == 1) Cut();
    if (act == 2) Delete();
    if (act == 3) Paste(Somewhere());
    if (ThePage != pages.back()) pages.push_back(ThePage);
  }
  ASSERT_GT(pages.size(), 300U);
  for (std::size_t i = pages.size() - 1; i > 0; --i) {
    EXPECT_TRUE(ThePage == pages[i]) << i;
    Undo();
  }
  EXPECT_TRUE(ThePage == pages.front());
  EXPECT_EQ(UndoLabel(), "");
  for (const Page& page : pages) {
    EXPECT_TRUE(ThePage == page);
    Redo();
  }
}

TEST_F(ClipboardTest, RefusesALineThatIsTooLong) {
  clipboard.text = "short\n" + std::string(kLongestTextLine, 'x');
  EXPECT_NE(FailureOf([] { Paste(std::nullopt); }).find("line 2"), std::string::npos);
  EXPECT_EQ(PageText, "");
  EXPECT_EQ(UndoLabel(), "");
}

}  // namespace
}  // namespace kelvane
