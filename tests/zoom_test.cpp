#include "typography/zoom.h"

#include "tests/support/program_test.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {
namespace {

class ZoomTest : public ProgramTest {
 protected:
  ZoomTest() {
    RedrawPage();
    ViewMoved = [this] { ++moves; };
  }

  // The page point under a pixel of the canvas of 600 by 400.
  static Point Under(float pixelX, float pixelY) {
    return {VisibleLeft + pixelX / 600 * (VisibleRight - VisibleLeft),
            VisibleTop + pixelY / 400 * (VisibleBottom - VisibleTop)};
  }
  static bool InView(Point point) {
    return point.x > VisibleLeft && point.x < VisibleRight && point.y > VisibleTop && point.y < VisibleBottom;
  }
  static bool PaperInView() { return InView({0, 0}) && InView({PaperWidth, PaperHeight}); }

  int moves = 0;
};

TEST_F(ZoomTest, ThePointUnderThePointerStays) {
  const Point before = Under(120, 330);
  for (const float factor : {1.5F, 1.5F, 0.3F, 1e6F, 1e-9F}) {
    ZoomAt(factor, 120, 330);
    EXPECT_NEAR(Under(120, 330).x, before.x, 1 / SCALE) << factor;
    EXPECT_NEAR(Under(120, 330).y, before.y, 1 / SCALE) << factor;
  }
  EXPECT_EQ(SCALE, kLeastScale);
  EXPECT_EQ(moves, 5);
}

TEST_F(ZoomTest, ScaleStaysWithinItsBounds) {
  for (int i = 0; i < 100; ++i) ZoomIn();
  EXPECT_EQ(SCALE, kMostScale);
  for (int i = 0; i < 100; ++i) ZoomOut();
  EXPECT_EQ(SCALE, kLeastScale);
  ZoomToTrueSize();
  EXPECT_EQ(SCALE, kTrueScale);
}

TEST_F(ZoomTest, APointOutOfViewIsBroughtIn) {
  BringIntoView(VisibleLeft, VisibleBottom);
  EXPECT_EQ(moves, 0) << "it is in view";
  for (const Point offset : {Point{0, 1}, Point{0, 2000}, Point{-1500, 0}, Point{3000, -700}}) {
    const Point target{(offset.x < 0 ? VisibleLeft : VisibleRight) + offset.x,
                       (offset.y < 0 ? VisibleTop : VisibleBottom) + offset.y};
    moves = 0;
    BringIntoView(target.x, target.y);
    EXPECT_EQ(moves, 1);
    EXPECT_TRUE(InView(target)) << target.x << ' ' << target.y;
  }
  canvas->pixelWidth = canvas->pixelHeight = 8;
  RedrawPage();
  BringIntoView(100, 100);
  EXPECT_TRUE(InView({100, 100})) << "a tiny canvas has no room to spare";
}

TEST_F(ZoomTest, FittingShowsThePaper) {
  for (const int width : {2000, 300}) {
    canvas->pixelWidth = width;
    FitPage();
    EXPECT_TRUE(PaperInView()) << width;
  }
  canvas->pixelWidth = 600;
  STARTY = 77;
  FitWidth();
  EXPECT_TRUE(InView({0, 77}) && InView({PaperWidth, 77}));
  EXPECT_LT(VisibleRight - VisibleLeft, PaperWidth * 1.1F);
  EXPECT_FLOAT_EQ(VisibleTop * SCALE, -12) << "no more desk above the paper than its margin";
  canvas->pixelWidth = 10;  // smaller than its margins
  FitPage();
  EXPECT_EQ(SCALE, kLeastScale);
}

TEST_F(ZoomTest, ScrollingStopsAtTheEdgesAndBarsReachThePaperAndTheView) {
  ScrollBy(40, -20);
  EXPECT_EQ(STARTX, 296 + 20);
  EXPECT_EQ(STARTY, 180 - 10);
  ScrollBy(1e6F, -1e6F);
  EXPECT_EQ(STARTX, PaperWidth);
  EXPECT_EQ(STARTY, 0);
  ScrollToLeft(20);
  ScrollToTop(-30);
  EXPECT_FLOAT_EQ(VisibleLeft, 20);
  EXPECT_FLOAT_EQ(VisibleTop, -30);
  EXPECT_LT(HorizontalRange().least, 0);
  EXPECT_GT(HorizontalRange().most, PaperWidth);
  EXPECT_EQ(VerticalRange().least, -30);
  ScrollToTop(5000);
  EXPECT_EQ(VerticalRange().most, VisibleBottom);
}

}  // namespace
}  // namespace kelvane
