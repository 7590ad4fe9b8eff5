#include "editing/bezier.h"

#include <initializer_list>

#include "document/page.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "editing/undo.h"
#include "tests/support/program_test.h"
#include "typography/colours.h"
#include "typography/view.h"

namespace kelvane {
namespace {

class BezierTest : public ProgramTest {
 protected:
  BezierTest() {
    GridStepH = GridStepV = 2;
    ChooseBezier();
  }
  static void Click(std::initializer_list<Point> points) {
    for (const Point& point : points) {
      BezierPress(point.x, point.y);
      BezierRelease(point.x, point.y);
    }
  }
};

TEST_F(BezierTest, ClicksMakeStraightPiecesOnTheGrid) {
  ChooseColour(12);
  ChooseThickness(1.0);
  Click({{10.4F, 19.8F}, {30, 20}});
  EXPECT_EQ(CurrentDrawing, "10 20 20 20 30 20 121");
  EXPECT_EQ(DrawingCount, 0);
  FinishDrawing();
  EXPECT_EQ(DrawingList, "10 20 20 20 30 20 121\r\n");
  EXPECT_EQ(DrawingCount, 1);
  EXPECT_EQ(CurrentDrawing, "");
  EXPECT_NE(PageChanged, 0);
}

TEST_F(BezierTest, PullingBendsThePieceThatEndsThere) {
  Click({{0, 0}});
  BezierPress(40, 0);
  BezierMove(41, 0);  // a trembling hand pulls nothing
  EXPECT_EQ(CurrentDrawing, "0 0 20 0 40 0 0.25");
  BezierMove(20, 30);
  BezierMove(24.9F, 31);
  BezierRelease(24.9F, 31);
  FinishDrawing();
  BezierPress(10, 10);  // the first piece may be dragged
  BezierMove(50, 10);
  BezierRelease(50, 10);
  FinishDrawing();
  EXPECT_EQ(DrawingList, "0 0 24 32 40 0 0.25\r\n10 10 30 10 50 10 0.25\r\n");
}

TEST_F(BezierTest, ComingBackToTheStartMakesAnArea) {
  Click({{10, 10}, {50, 10}, {50, 40}});
  Click({{11.2F, 11.2F}});  // near enough on the screen, though nearer to another grid point
  EXPECT_EQ(DrawingCount, 1);
  EXPECT_TRUE(DrawingRecordToLine(DrawingList.substr(0, DrawingList.size() - 2)).ends_with(" fill"));
}

TEST_F(BezierTest, TheLastPointAgainOrAnotherCommandEndsThePath) {
  Click({{10, 10}, {50, 10}, {50, 10}});
  EXPECT_EQ(DrawingCount, 1);
  Click({{10, 30}, {50, 30}});
  ChooseAnchor(3);
  EXPECT_EQ(DrawingCount, 2);
  Click({{10, 10}, {20, 10}});  // another mode does not draw
  ChooseBezier();
  Click({{10, 50}});
  LeaveEditing();  // a lone point is no drawing
  EXPECT_EQ(DrawingCount, 2);
  EXPECT_EQ(CursorMode, 0);
}

TEST_F(BezierTest, PointsCanBeTakenBackAndThePathDropped) {
  Click({{10, 10}, {20, 10}, {30, 10}});
  TakeBackPoint();
  EXPECT_EQ(CurrentDrawing, "10 10 15 10 20 10 0.25");
  TakeBackPoint();
  TakeBackPoint();
  EXPECT_EQ(CurrentDrawing, "");
  TakeBackPoint();
  Click({{10, 10}, {20, 10}});
  DropDrawing();
  FinishDrawing();
  EXPECT_EQ(DrawingCount, 0);
  EXPECT_EQ(PageChanged, 0);
}

TEST_F(BezierTest, UndoTakesTheDrawingAndRedoBringsItBack) {
  Click({{10, 10}, {20, 10}});
  FinishDrawing();
  const std::string drawn = DrawingList;
  Click({{30, 30}, {40, 30}});
  Undo();  // the path that was still being drawn
  EXPECT_EQ(DrawingList, drawn);
  Undo();
  EXPECT_EQ(DrawingList, "");
  Redo();
  EXPECT_EQ(DrawingList, drawn);
}

TEST_F(BezierTest, AFullPageKeepsThePathForTheMoment) {
  Click({{10, 10}, {20, 10}});
  DrawingCount = 32767;
  EXPECT_NE(FailureOf(FinishDrawing).find("no more drawings"), std::string::npos);
  EXPECT_EQ(CurrentDrawing, "10 10 15 10 20 10 0.25");
  EXPECT_EQ(DrawingCount, 32767);
}

}  // namespace
}  // namespace kelvane
