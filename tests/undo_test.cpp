#include "editing/undo.h"

#include <algorithm>

#include "document/page.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "tests/support/program_files.h"
#include "tests/support/program_test.h"

namespace kelvane {
namespace {

class UndoTest : public ProgramTest {
 protected:
  UndoTest() {
    FillWidths();
    CursorMode = -1;
    CursorX = 72;
    CursorY = 99;
  }

  static void TypeLine(const std::string& text) {
    for (const char c : text) TypeKey(static_cast<unsigned char>(c));
    TypeKey(13);
  }
};

TEST_F(UndoTest, GoesBackAndForthWithTheCursor) {
  TypeLine("a");
  const std::string one = PageText;
  TypeLine("b");
  const std::string two = PageText;
  EXPECT_EQ(CursorY, 123);
  EXPECT_EQ(UndoLabel(), "typing");
  EXPECT_EQ(RedoLabel(), "");
  Undo();
  EXPECT_EQ(PageText, one);
  EXPECT_EQ(CursorY, 111);
  Undo();
  EXPECT_EQ(PageText, "");
  EXPECT_EQ(CursorY, 99);
  EXPECT_EQ(UndoLabel(), "");
  Undo();
  EXPECT_EQ(PageText, "");
  Redo();
  EXPECT_EQ(PageText, one);
  Redo();
  Redo();
  EXPECT_EQ(PageText, two);
  EXPECT_EQ(CursorY, 123);
  EXPECT_EQ(CursorMode, -1);
}

TEST_F(UndoTest, ANewEditEndsTheWayForward) {
  TypeLine("a");
  TypeLine("b");
  Undo();
  TypeLine("c");
  EXPECT_EQ(RedoLabel(), "");
  Redo();
  EXPECT_EQ(PageText, "72 99 m 11 F0 (a) 1 s\r\n72 111 m 11 F0 (c) 1 s\r\n");
}

// What is being typed is an edit too: undo takes it away, redo brings it back, and typing goes on.
TEST_F(UndoTest, TheRunBeingTypedIsUndoneFirst) {
  TypeLine("a");
  TypeKey('b');
  Undo();
  EXPECT_EQ(PageText, "72 99 m 11 F0 (a) 1 s\r\n");
  EXPECT_EQ(PendingRun, "");
  EXPECT_EQ(Text4->Text(), "");
  EXPECT_EQ(CursorMode, -1);
  Redo();
  EXPECT_EQ(PageText, "72 99 m 11 F0 (a) 1 s\r\n72 111 m 11 F0 (b) 1 s\r\n");
}

TEST_F(UndoTest, DrawingsComeBackWithTheirCount) {
  BeginEdit("drawing");
  DrawingList = "10 20 15 20 20 20 1\r\n";
  DrawingCount = 1;
  NotePageChange();
  Undo();
  EXPECT_EQ(DrawingCount, 0);
  EXPECT_EQ(DrawingList, "");
  EXPECT_EQ(PageChanged, 0);
  EXPECT_EQ(RedoLabel(), "drawing");
  Redo();
  EXPECT_EQ(DrawingCount, 1);
  EXPECT_EQ(PageChanged, 1);
}

TEST_F(UndoTest, UndoingToWhatTheFileHoldsIsNoChange) {
  TypeLine("a");
  dialogs.AnswerSave("\\P\\Essay.001");
  SavePaper();
  EXPECT_EQ(PageChanged, 0);
  TypeLine("b");
  EXPECT_EQ(PageChanged, 1);
  Undo();
  EXPECT_EQ(PageChanged, 0);
  Undo();
  EXPECT_EQ(PageChanged, 1);
  Redo();
  EXPECT_EQ(PageChanged, 0);
}

TEST_F(UndoTest, UndoShowsThePageAsItIs) {
  TypeLine("a");
  Undo();
  EXPECT_EQ(canvas->Drawn(Layer::Page).find("text"), std::string::npos);
  Redo();
  EXPECT_NE(canvas->Drawn(Layer::Page).find("(a)"), std::string::npos);
}

TEST_F(UndoTest, TheOldestStepsAreForgotten) {
  for (int i = 0; i < 250; ++i) TypeLine("a");
  int steps = 0;
  while (!UndoLabel().empty()) {
    Undo();
    ++steps;
  }
  EXPECT_EQ(steps, 200);
  EXPECT_EQ(std::count(PageText.begin(), PageText.end(), '\n'), 50);
  ResetUndo();
  EXPECT_EQ(RedoLabel(), "");
}

// Large pages give up old steps instead of memory, but never the last one.
TEST_F(UndoTest, LargePagesKeepFewerSteps) {
  PageText.assign(std::size_t{40} << 20, '\n');
  BeginEdit("first");
  BeginEdit("second");
  EXPECT_EQ(UndoLabel(), "second");
  PageText.clear();
  Undo();
  EXPECT_EQ(UndoLabel(), "");
  EXPECT_EQ(PageText.size(), std::size_t{40} << 20);
}

}  // namespace
}  // namespace kelvane
