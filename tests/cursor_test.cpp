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
    canvas->OnKeyPress = TypeKey;
  }

  // The anchor buttons that are down.
  static std::string Down() {
    std::string down;
    for (Button* button : AnchorButtons) down += static_cast<FakeButton*>(button)->down ? '1' : '0';
    return down;
  }
};

TEST_F(CursorTest, EachModeHasItsPointer) {
  const std::vector<std::string> names = {"tplt", "left", "btlt", "bot",   "btrt", "right",
                                          "tprt", "top",  "mid",  "point", "cross"};
  for (const std::string& name : names) canvas->icons.push_back("\\Kelvane\\PVQ" + name + ".ICO");
  for (std::int16_t mode = 1; mode <= 11; ++mode) {
    const std::string& icon = canvas->icons[static_cast<std::size_t>(mode - 1)];
    SetCanvasPointer(mode);
    EXPECT_EQ(canvas->pointer, icon);
    SetCanvasPointer(0);
    EXPECT_EQ(canvas->pointer, "");
    for (const int other : {-mode, 12, -32768}) SetCanvasPointer(static_cast<std::int16_t>(other));
    EXPECT_EQ(canvas->pointer, icon);
    EXPECT_EQ(Down().find('1'), mode <= 9 ? static_cast<std::size_t>(mode) : std::string::npos);
  }
  canvas->icons.clear();
  SetCanvasPointer(5);  // a missing icon is no reason to stop
  EXPECT_EQ(canvas->pointer, "");
}

TEST_F(CursorTest, PointsSnapToTheNearestStepAndMoveBySteps) {
  ChooseAnchor(1);
  const struct {
    std::int16_t step;
    Point click, wanted;
  } cases[] = {{1, {10.4F, 20.6F}, {10, 21}}, {3, {4.5F, 7.4F}, {6, 6}}, {3, {-1.5F, -1.6F}, {0, -3}}};
  for (const auto& [step, click, wanted] : cases) {
    GridStepH = GridStepV = step;
    MarkedTop = 5;
    PlaceCursor(click.x, click.y);
    EXPECT_EQ(CursorX, wanted.x);
    EXPECT_EQ(CursorY, wanted.y);
    EXPECT_EQ(CursorMode, -1);
    EXPECT_EQ(MarkedTop, 0);
  }
  GridStepH = 2;
  GridStepV = 5;
  PlaceCursor(10, 20);
  EXPECT_TRUE(StepCursor(-1, 2));
  EXPECT_EQ(CursorX, 8);
  EXPECT_EQ(CursorY, 30);
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

// What was typed stays where it was typed.
TEST_F(CursorTest, LeavingAPointCompletesItsRun) {
  ChooseAnchor(2);
  PlaceCursor(10, 20);
  canvas->Type("one");
  ChooseAnchor(5);
  EXPECT_EQ(CursorMode, 5);
  PlaceCursor(30, 40);
  canvas->Type("two");
  PlaceCursor(50, 60);
  EXPECT_EQ(CursorMode, -5);
  canvas->Type("three");
  StepCursor(1, 0);
  canvas->Type("four");
  LeaveEditing();
  EXPECT_EQ(PageText,
            "10 20 m 11 F0 (one) 2 s\r\n30 40 m 11 F0 (two) 5 s\r\n"
            "50 60 m 11 F0 (three) 5 s\r\n51 60 m 11 F0 (four) 5 s\r\n");
  EXPECT_EQ(CursorMode, 0);
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

TEST_F(CursorTest, TheButtonsAndTheFootOfTheWindowTellTheMode) {
  FakeLabel label;
  CursorLabel = &label;
  canvas->icons = {"\\Kelvane\\PVQmid.ICO", "\\Kelvane\\PVQpoint.ICO"};
  const struct {
    std::function<void()> act;
    std::string label, down;
  } steps[] = {{LeaveEditing, "Choose an anchor at the left to type", "1000000000"},
               {[] { ChooseAnchor(9); }, "Center: click on the page to type there", "0000000001"},
               {[] { PlaceCursor(10, 20.4F); }, "Center at 10, 20 pt", "0000000001"},
               {[] { TypeKey(13); }, "Center at 10, 32 pt", "0000000001"},
               {[] { ChooseAnchor(10); }, "Click for points, pull to bend; Enter ends it", "0000000000"},
               {[] { ChooseAnchor(5); }, "Missing file PVQbtrt.ICO: the arrow stands in", "0000010000"},
               {[] { PlaceCursor(10, 20.4F); }, "Bottom Right at 10, 20 pt", "0000010000"}};
  for (const auto& step : steps) {
    step.act();
    EXPECT_EQ(label.text, step.label);
    EXPECT_EQ(Down(), step.down) << step.label;
  }
  CursorLabel = nullptr;
}

}  // namespace
}  // namespace kelvane
