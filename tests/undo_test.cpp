#include "editing/undo.h"

#include <algorithm>
#include <tuple>

#include "document/page.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "papers/paper_commands.h"
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

  const std::string a = "72 99 m 11 F0 (a) 1 s\r\n";
  const std::string b = "72 111 m 11 F0 (b) 1 s\r\n";
};

TEST_F(UndoTest, GoesBackAndForthWithTheCursorAndShowsThePage) {
  TypeLine("a");
  TypeLine("b");
  struct Step {
    void (*act)();
    std::string page;
    float cursorY;
    const char* undo;
    const char* redo;
  };
  const Step steps[] = {{[] {}, a + b, 123, "typing", ""},  {Undo, a, 111, "typing", "typing"},
                        {Undo, "", 99, "", "typing"},       {Undo, "", 99, "", "typing"},
                        {Redo, a, 111, "typing", "typing"}, {Redo, a + b, 123, "typing", ""},
                        {Redo, a + b, 123, "typing", ""}};
  for (const Step& step : steps) {
    SCOPED_TRACE(&step - steps);
    step.act();
    EXPECT_EQ(PageText, step.page);
    EXPECT_EQ(std::tie(CursorMode, CursorY), std::tuple(-1, step.cursorY));
    EXPECT_EQ(std::tuple(UndoLabel(), RedoLabel()), std::tuple(step.undo, step.redo));
    const bool shown = canvas->Drawn(Layer::Page).find("(a)") != std::string::npos;
    EXPECT_EQ(shown, !step.page.empty());
  }
}

TEST_F(UndoTest, ANewEditEndsTheWayForward) {
  TypeLine("a");
  TypeLine("x");
  Undo();
  TypeLine("b");
  Redo();
  EXPECT_EQ(PageText, a + b);
}

// What is being typed is an edit too: undo takes it away, redo brings it back, and typing goes on.
TEST_F(UndoTest, TheRunBeingTypedIsUndoneFirst) {
  TypeLine("a");
  TypeKey('b');
  Undo();
  EXPECT_EQ(PageText, a);
  EXPECT_EQ(std::tuple(PendingRun, Text4->Text(), CursorMode), std::tuple("", "", -1));
  Redo();
  EXPECT_EQ(PageText, a + b);
}

TEST_F(UndoTest, DrawingsComeBackWithTheirCount) {
  BeginEdit("drawing");
  DrawingList = "10 20 15 20 20 20 1\r\n";
  DrawingCount = 1;
  Undo();
  EXPECT_EQ(std::tie(DrawingList, DrawingCount, PageChanged), std::tuple("", 0, 0));
  EXPECT_EQ(RedoLabel(), "drawing");
  Redo();
  EXPECT_EQ(std::tie(DrawingList, DrawingCount, PageChanged), std::tuple("10 20 15 20 20 20 1\r\n", 1, 1));
}

TEST_F(UndoTest, UndoingToWhatTheFileHoldsIsNoChange) {
  TypeLine("a");
  dialogs.AnswerSave("\\P\\Essay.001");
  SavePaper();
  TypeLine("b");
  EXPECT_EQ(PageChanged, 1);
  Undo();
  EXPECT_EQ(PageChanged, 0);
  Undo();
  EXPECT_EQ(PageChanged, 1);
  Redo();
  EXPECT_EQ(PageChanged, 0);
}

TEST_F(UndoTest, TheOldestStepsAreForgotten) {
  for (int i = 0; i < 250; ++i) TypeLine("a");
  for (; !UndoLabel().empty(); Undo()) continue;
  EXPECT_EQ(std::count(PageText.begin(), PageText.end(), '\n'), 250 - 200);
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
