#include "editing/cursor.h"

#include "editing/keyboard.h"
#include "tests/support/program_test.h"

namespace kelvane {
namespace {

using CursorTest = ProgramTest;

TEST_F(CursorTest, PointersOfModesOutsideTheButtons) {
  canvas->icons = {"\\Kelvane\\PVQleft.ICO", "\\Kelvane\\PVQcross.ICO"};
  SetCanvasPointer(11);
  EXPECT_EQ(canvas->pointer, canvas->icons[1]);
  for (const int mode : {-2, 12, -32768}) {
    SetCanvasPointer(static_cast<std::int16_t>(mode));
    EXPECT_EQ(canvas->pointer, canvas->icons[0]);
  }
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

}  // namespace
}  // namespace kelvane
