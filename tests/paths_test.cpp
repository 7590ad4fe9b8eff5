#include "editing/paths.h"

#include <random>

#include "document/lines.h"
#include "document/page.h"
#include "tests/support/program_test.h"
#include "typography/curves.h"

namespace kelvane {
namespace {

class PathsTest : public ProgramTest {
 protected:
  static Points Rectangle(Point a, Point b) {
    Points path;
    for (const Point corner : {a, Point{b.x, a.y}, b, Point{a.x, b.y}, a}) AddPiece(path, corner);
    return path;
  }

  // A path as it comes back from a page file.
  static Drawing Read(const Points& path) {
    std::string record = RecordOf(path, "0.25");
    for (int times = 0; times < 3; ++times) record = LineToDrawingRecord(DrawingRecordToLine(record));
    Drawing drawing;
    EXPECT_TRUE(ParseDrawing(record, drawing));
    return drawing;
  }

  // The largest distance of a path's pieces from another path.
  static float Deviation(const Points& path, const Points& other) {
    float largest = 0;
    for (std::size_t i = 0; i + 2 < path.size(); i += 2) {
      for (const Point point : FlattenCurve(path[i], path[i + 1], path[i + 2]))
        largest = std::max(largest, NearestSpot(other, point).distance);
    }
    return largest;
  }

  // A place on the grid, or off it as Alt puts it.
  Point Place() {
    std::uniform_real_distribution<float> across(0, 800);
    const Pointer pointer{{across(random), across(random)}, false, false, random() % 2 == 0};
    return PlaceOf(pointer);
  }

  std::minstd_rand random{1};
};

TEST_F(PathsTest, OutlinesAreReadBackAsOutlinesAndAreasAsAreas) {
  for (int i = 0; i < 500; ++i) {
    const Points area = Rectangle(Place(), Place());
    if (DistanceOf(area[0], area[4]) < 1) continue;
    Points outline = area;
    EndAsOutline(outline);
    SCOPED_TRACE(RecordOf(outline, "0.25"));
    EXPECT_TRUE(Read(area).closed);
    const Drawing drawing = Read(outline);
    EXPECT_FALSE(drawing.closed);
    EXPECT_TRUE(LooksClosed(drawing.points));
    for (std::size_t piece = 0; piece < 4; ++piece) {
      const std::size_t k = 2 * piece;
      const Point start = drawing.points[k];
      const Point control = drawing.points[k + 1];
      const Point end = drawing.points[k + 2];
      // But for the digits of a page file.
      EXPECT_NEAR(control.x, (start.x + end.x) / 2, 0.001) << piece;
      EXPECT_NEAR(control.y, (start.y + end.y) / 2, 0.001) << piece;
    }
    Points opened = area;
    OpenAtStart(opened);
    EXPECT_FALSE(LooksClosed(Read(opened).points));
    EXPECT_LT(Deviation(opened, area) + Deviation(outline, area), 0.1F);
  }
}

TEST_F(PathsTest, PointsThatComeAndGoLeaveThePathWhereItWas) {
  const Points quarter = {{100, 100}, {200, 100}, {200, 200}, {210, 260}, {160, 200}};
  for (const std::size_t piece : {0U, 1U}) {
    for (float part = 0.1F; part < 0.95F; part += 0.1F) {
      SCOPED_TRACE(part);
      const CurvePoints curve =
          FlattenCurve(quarter[2 * piece], quarter[2 * piece + 1], quarter[2 * piece + 2]);
      const Spot spot = NearestSpot(quarter, curve[static_cast<std::size_t>(part * 16)]);
      EXPECT_EQ(spot.piece, piece);
      Points path = quarter;
      AddPointAt(path, {piece, part, {}, 0});
      ASSERT_EQ(path.size(), quarter.size() + 2);
      EXPECT_LT(Deviation(path, quarter), 0.6F);
      EXPECT_LT(Deviation(quarter, path), 0.6F);
    }
  }
  Points path = quarter;
  AddPointAt(path, {0, 0.5F, {}, 0});
  RemovePoint(path, 2);
  EXPECT_LT(DistanceOf(path[1], quarter[1]), 0.01F);
}

TEST_F(PathsTest, ShiftKeepsToEightDirections) {
  const Point from{100, 100};
  EXPECT_EQ(InDirection(from, {140, 116}), (Point{140, 100}));
  EXPECT_EQ(InDirection(from, {140, 117}), (Point{140, 140}));
  EXPECT_EQ(InDirection(from, {84, 60}), (Point{100, 60}));
  EXPECT_EQ(InDirection(from, {83, 60}), (Point{60, 60}));
}

TEST_F(PathsTest, ArrowheadsPointAlongTheEndOfTheirPath) {
  Points curve = {{100, 100}, {150, 100}, {150, 60}};
  const Points head = TakeArrowhead(curve, 1);
  EXPECT_EQ(head.front(), (Point{150, 60}));
  EXPECT_TRUE(Read(head).closed);
  EXPECT_FLOAT_EQ(head[2].x + head[6].x, 300) << "upright, since the curve ends upright";
  EXPECT_FLOAT_EQ(head[2].y, 69);
  EXPECT_EQ(curve.back(), head[4]) << "the line ends in the head's notch";
  Points dot = {{100, 100}, {100.5F, 100}, {101, 100}};
  EXPECT_LT(DistanceOf(TakeArrowhead(dot, 2)[2], {101, 100}), 1) << "no larger than its path";
  EXPECT_GT(dot.back().x, dot.front().x);
}

}  // namespace
}  // namespace kelvane
