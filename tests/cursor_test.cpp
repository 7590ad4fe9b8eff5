#include "editing/cursor.h"

#include "document/page.h"
#include "editing/keyboard.h"
#include "tests/support/program_files.h"
#include "tests/support/program_test.h"
#include "typography/colours.h"

namespace kelvane {
namespace {

class CursorTest : public ProgramTest {
 protected:
  CursorTest() {
    FillWidths();
    GridStepH = GridStepV = 1;
  }

  // The anchor buttons that are down.
  static std::string Down() {
    std::string down;
    for (Button* button : AnchorButtons) down += static_cast<FakeButton*>(button)->down ? '1' : '0';
    return down;
  }
  static void Type(const std::string& text) {
    for (const char c : text) TypeKey(static_cast<unsigned char>(c));
  }
};

TEST_F(CursorTest, EachModeHasItsPointer) {
  const std::vector<std::string> names = {"tplt", "left", "btlt", "bot",   "btrt", "right",
                                          "tprt", "top",  "mid",  "point", "cross"};
  for (const std::string& name : names) canvas->icons.push_back("\\Kelvane\\PVQ" + name + ".ICO");
  for (std::int16_t mode = 1; mode <= 11; ++mode) {
    SetCanvasPointer(mode);
    EXPECT_EQ(canvas->pointer, canvas->icons[static_cast<std::size_t>(mode - 1)]);
    SetCanvasPointer(0);
    EXPECT_EQ(canvas->pointer, "");
    SetCanvasPointer(static_cast<std::int16_t>(-mode));
    EXPECT_EQ(canvas->pointer, canvas->icons[static_cast<std::size_t>(mode - 1)]);
  }
  SetCanvasPointer(5);
  SetCanvasPointer(12);
  SetCanvasPointer(-32768);
  EXPECT_EQ(canvas->pointer, canvas->icons[4]);
  canvas->icons.clear();
  SetCanvasPointer(5);  // a missing icon is no reason to stop
  EXPECT_EQ(canvas->pointer, "");
}

TEST_F(CursorTest, TheButtonOfTheModeIsDown) {
  ChooseAnchor(4);
  EXPECT_EQ(Down(), "0000100000");
  PlaceCursor(10, 10);
  EXPECT_EQ(Down(), "0000100000");
  LeaveEditing();
  EXPECT_EQ(Down(), "1000000000");
  SetCanvasPointer(10);
  EXPECT_EQ(Down(), "0000000000");
}

TEST_F(CursorTest, PointsSnapToTheNearestStep) {
  ChooseAnchor(1);
  PlaceCursor(10.4F, 20.6F);
  EXPECT_EQ(CursorX, 10);
  EXPECT_EQ(CursorY, 21);
  GridStepH = GridStepV = 3;
  PlaceCursor(4.5F, 7.4F);
  EXPECT_EQ(CursorX, 6);
  EXPECT_EQ(CursorY, 6);
  PlaceCursor(-1.5F, -1.6F);
  EXPECT_EQ(CursorX, 0);
  EXPECT_EQ(CursorY, -3);
}

TEST_F(CursorTest, AClickPlacesAndPlacesAgain) {
  ChooseAnchor(7);
  EXPECT_EQ(CursorMode, 7);
  PlaceCursor(10, 20);
  EXPECT_EQ(CursorMode, -7);
  PlaceCursor(30, 40);
  EXPECT_EQ(CursorMode, -7);
  EXPECT_EQ(CursorX, 30);
}

TEST_F(CursorTest, OtherModesHaveNoCursorPoint) {
  for (const std::int16_t mode : {0, 10, 11}) {
    CursorMode = mode;
    MarkedLeft = 5;
    PlaceCursor(10, 20);
    EXPECT_EQ(CursorMode, mode);
    EXPECT_EQ(CursorX, 0);
    EXPECT_EQ(MarkedLeft, 5);
    EXPECT_FALSE(StepCursor(1, 1));
  }
}

TEST_F(CursorTest, ArrowKeysStepByTheGrid) {
  GridStepH = 2;
  GridStepV = 5;
  ChooseAnchor(3);
  PlaceCursor(10, 20);
  EXPECT_TRUE(StepCursor(-1, 0));
  EXPECT_TRUE(StepCursor(0, 2));
  EXPECT_EQ(CursorX, 8);
  EXPECT_EQ(CursorY, 30);
}

// What was typed stays where it was typed.
TEST_F(CursorTest, LeavingAPointCompletesItsRun) {
  ChooseAnchor(2);
  PlaceCursor(10, 20);
  Type("one");
  ChooseAnchor(5);
  EXPECT_EQ(PageText, "10 20 m 11 F0 (one) 2 s\r\n");
  EXPECT_EQ(CursorMode, 5);
  EXPECT_EQ(CursorX, 10);

  PlaceCursor(30, 40);
  Type("two");
  PlaceCursor(50, 60);
  EXPECT_EQ(CursorMode, -5);
  Type("three");
  StepCursor(1, 0);
  Type("four");
  LeaveEditing();
  EXPECT_EQ(PageText,
            "10 20 m 11 F0 (one) 2 s\r\n30 40 m 11 F0 (two) 5 s\r\n"
            "50 60 m 11 F0 (three) 5 s\r\n51 60 m 11 F0 (four) 5 s\r\n");
  EXPECT_EQ(CursorMode, 0);
  EXPECT_EQ(PendingRun, "");
}

TEST_F(CursorTest, PlacingClearsTheMarkedBox) {
  MarkedLeft = MarkedBottom = MarkedRight = MarkedTop = 5;
  ChooseAnchor(1);
  PlaceCursor(10, 20);
  EXPECT_EQ(MarkedLeft + MarkedBottom + MarkedRight + MarkedTop, 0);
}

// The mark uncovers the page when it goes.
TEST_F(CursorTest, TheMarkIsOnTheOverlay) {
  ChooseAnchor(1);
  EXPECT_EQ(canvas->Drawn(Layer::Overlay), "");
  PlaceCursor(10, 20);
  EXPECT_EQ(canvas->Drawn(Layer::Overlay), "line 8 20 12 20 #FF0000 w 1\nline 10 18 10 22 #FF0000 w 1\n");
  SCALE = 4;
  DrawCursorMark(kBlue, false);
  EXPECT_EQ(canvas->Drawn(Layer::Overlay), "line 9 20 11 20 #FF0000 w 1\nline 10 19 10 21 #FF0000 w 1\n");
  DrawCursorMark(kWhite, false);
  EXPECT_EQ(canvas->Drawn(Layer::Overlay), "");
  EXPECT_EQ(canvas->Drawn(Layer::Page), "");
}

TEST_F(CursorTest, TheFootOfTheWindowTellsWhereTypingGoes) {
  FakeLabel label;
  CursorLabel = &label;
  LeaveEditing();
  EXPECT_EQ(label.text, "Choose an anchor at the left to type");
  ChooseAnchor(9);
  EXPECT_EQ(label.text, "Center: click on the page to type there");
  PlaceCursor(10, 20.4F);
  EXPECT_EQ(label.text, "Center at 10, 20 pt");
  TypeKey(13);
  EXPECT_EQ(label.text, "Center at 10, 32 pt");
  CursorLabel = nullptr;
}

}  // namespace
}  // namespace kelvane
