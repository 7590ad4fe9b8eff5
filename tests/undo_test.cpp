#include "editing/undo.h"
#include "document/page.h"
#include "editing/edit.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

class UndoTest : public EditorTest {
 protected:
  void SetUp() override { Start(); }

  void TypeRun(const std::string& run) {
    PlaceAt("Top Left", 72, 99);
    canvas->Type(run + "\r");
  }
};

TEST_F(UndoTest, AnEditThatFailsOrChangesNothingLeavesNoTrace) {
  TypeRun("a");
  const Page before = ThePage;
  EXPECT_THROW(EditPage("paste",
                        [](Page& page) {
                          page.text.clear();
                          throw Failure("no");
                        }),
               Failure);
  EXPECT_THROW(EditPage("paste", [](Page& page) { page.text.assign(kLargestPage + 1, 'x'); }), Failure);
  EditPage("move", [](Page&) {});
  EXPECT_TRUE(ThePage == before);
  EXPECT_EQ(UndoLabel(), "typing");
}

// What something else did to the page is part of the way back, or the start of it.
TEST_F(UndoTest, ChangesFromOutsideAreNotLost) {
  PageText = "10 20 m 11 F0 (z) 1 s\r\n";
  const std::string start = PageText;
  TypeRun("a");
  PageText.insert(0, "rubbish\r\n");
  DrawingList = "10 20 15 20 20 20 1\r\n";
  DrawingCount = 1;
  const Page changed = ThePage;
  TypeRun("b");
  window->PressShortcut("Ctrl+Z");  // opens the run again
  EXPECT_TRUE(ThePage == changed);
  while (!UndoLabel().empty()) window->PressShortcut("Ctrl+Z");
  EXPECT_EQ(PageText, start);
  EXPECT_EQ(DrawingCount, 0);
  while (!RedoLabel().empty()) window->PressShortcut("Ctrl+Shift+Z");
  EXPECT_NE(PageText.find("(b)"), std::string::npos);
  EXPECT_EQ(DrawingCount, 1);
}

// An edit, and a step through it, has only what it changed painted.
TEST_F(UndoTest, OnlyTheChangedAreaIsPaintedAnew) {
  TypeRun("a");
  canvas->ForgetDrawn();
  TypeRun("b");
  window->PressShortcut("Ctrl+Z");
  EXPECT_EQ(canvas->areas.find("all"), std::string::npos) << canvas->areas;
  EXPECT_EQ(std::count(canvas->areas.begin(), canvas->areas.end(), '\n'), 2);
}

}  // namespace
}  // namespace kelvane
