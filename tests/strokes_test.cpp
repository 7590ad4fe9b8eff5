#include "designer/strokes.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "designer/character_files.h"
#include "designer/stroke_editor.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "tests/support/program_test.h"
#include "typography/glyphs.h"

namespace kelvane {
namespace {

GlyphStroke Polygon(const std::vector<Point>& ends) {
  GlyphStroke stroke{ends[0]};
  for (std::size_t i = 1; i < ends.size(); ++i) ExtendStroke(stroke, ends[i]);
  return stroke;
}

const GlyphStroke kSquare = Polygon({{10, 10}, {20, 10}, {20, 20}, {10, 20}, {10, 10}});
const GlyphStroke kArc = {{30, 30}, {40, 20}, {45, 30}};

class StrokesTest : public ProgramTest {
 protected:
  Point OnQuarters() { return {Quarter(-40, 280), Quarter(-60, 280)}; }

  // Strokes as a person draws them: on quarters, straight, bent, open and closed.
  GlyphStrokes RandomStrokes() {
    GlyphStrokes strokes(Number(1, 6));
    for (GlyphStroke& stroke : strokes) {
      stroke.push_back(OnQuarters());
      for (std::size_t left = Number(1, 8); left > 0; --left) {
        ExtendStroke(stroke, left == 1 && Number(0, 1) == 1 ? stroke.front() : OnQuarters());
        if (Number(0, 1) == 1) stroke[stroke.size() - 2] = OnQuarters();
      }
    }
    return strokes;
  }

  std::size_t Number(std::size_t least, std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(least, most)(random);
  }

 private:
  float Quarter(int least, int most) {
    return static_cast<float>(std::uniform_int_distribution<int>(least, most)(random)) / 4;
  }

  std::mt19937 random{20};
};

TEST_F(StrokesTest, ComeBackFromProcedureAndText) {
  for (int i = 0; i < 500; ++i) {
    const GlyphStrokes strokes = RandomStrokes();
    const std::string procedure = BuildGlyph(StrokeLines(strokes)).text;
    SCOPED_TRACE(procedure);
    ASSERT_EQ(StrokesOfProcedure(procedure), strokes);
    ASSERT_TRUE(Builds(strokes, procedure));
    ASSERT_EQ(StrokesOfText(StrokeText(strokes)), strokes);
  }
  for (const char* text : {"1 2 3 4", "1 2 3 4 5 6 7", "1 2 3 4 5 x", "\r\n"})
    EXPECT_THROW(StrokesOfText(text), Failure) << text;
}

// What no strokes can say must not be taken for them, or saving would lose it silently.
TEST_F(StrokesTest, TellWhatWasNotDrawnByThem) {
  EXPECT_TRUE(Builds({}, ""));
  EXPECT_TRUE(Builds({}, "st"));
  for (const std::string procedure :
       {"10 10 moveto 5 ci fill", "0 0 moveto 5 0 rlineto fill", "0 0 moveto 5 0 rlineto 7 st",
        "0 0 moveto 1 2 3 4 rc st", "5 5 moveto 5 0 rlineto 3 rlineto st"})
    EXPECT_FALSE(Builds(StrokesOfProcedure(procedure), procedure)) << procedure;
}

TEST_F(StrokesTest, MoveWithoutBendingOrOpening) {
  GlyphStrokes strokes{kSquare, kArc};
  MovePoints(strokes, {{0, 0}, {0, 2}, {1, 2}}, {0, -5});
  EXPECT_EQ(strokes[0], Polygon({{10, 5}, {20, 5}, {20, 20}, {10, 20}, {10, 5}}));
  EXPECT_EQ(strokes[1], (GlyphStroke{{30, 30}, {40, 20}, {45, 25}}));
  // A control point alone bends.
  MovePoints(strokes, {{0, 3}}, {4, 0});
  EXPECT_EQ(strokes[0][3], (Point{24, 12.5}));
  EXPECT_FALSE(IsStraight(strokes[0], 3));
}

TEST_F(StrokesTest, LosePointsAndStayWhole) {
  GlyphStrokes strokes{kSquare, kArc};
  DeletePoints(strokes, {{0, 2}, {1, 1}});
  EXPECT_EQ(strokes[0], Polygon({{10, 10}, {20, 20}, {10, 20}, {10, 10}}));
  EXPECT_EQ(strokes[1], Polygon({{30, 30}, {45, 30}}));
  // The start of a closed stroke: the next point is its start then.
  DeletePoints(strokes, {{0, 0}, {1, 2}});
  EXPECT_EQ(strokes, GlyphStrokes{Polygon({{20, 20}, {10, 20}})});
  strokes = {kSquare};
  DeletePoints(strokes, {{0, 8}});
  EXPECT_EQ(strokes, GlyphStrokes{Polygon({{20, 10}, {20, 20}, {10, 20}, {20, 10}})});
  DeletePoints(strokes, AllPoints(strokes));
  EXPECT_TRUE(strokes.empty());
}

TEST_F(StrokesTest, CloseOpenMirrorReverseAndSplit) {
  GlyphStrokes strokes{kSquare, Polygon({{0, 0}, {10, 0}, {10, 6}})};
  const GlyphStrokes before = strokes;
  // The open one is meant, then both are closed and open again.
  CloseOrOpen(strokes, AllPoints(strokes));
  EXPECT_EQ(strokes[0], kSquare);
  EXPECT_TRUE(IsClosed(strokes[1]));
  CloseOrOpen(strokes, PointsOfStroke(strokes, 1));
  EXPECT_EQ(strokes, before);

  MirrorPoints(strokes, PointsOfStroke(strokes, 1), true);
  EXPECT_EQ(strokes[1], Polygon({{0, 6}, {10, 6}, {10, 0}}));
  MirrorPoints(strokes, AllPoints(strokes), false);
  EXPECT_EQ(strokes[1], Polygon({{20, 6}, {10, 6}, {10, 0}}));

  strokes = {kSquare, kArc};
  ReverseStrokes(strokes, {{0, 0}});
  EXPECT_EQ(strokes[0], Polygon({{10, 10}, {10, 20}, {20, 20}, {20, 10}, {10, 10}}));
  EXPECT_EQ(strokes[1], kArc);

  // A curve gets a point that lies on it.
  SplitSegments(strokes, {{0, 1}, {1, 1}});
  EXPECT_EQ(strokes[0], Polygon({{10, 10}, {10, 15}, {10, 20}, {20, 20}, {20, 10}, {10, 10}}));
  ASSERT_EQ(strokes[1].size(), 5U);
  EXPECT_TRUE(SegmentNear({kArc}, strokes[1][2], 0.1F));
}

TEST_F(StrokesTest, AreFoundByTheMouse) {
  const GlyphStrokes strokes{kSquare, kArc};
  EXPECT_EQ(PointNear(strokes, {19, 19}, 2), (PointPlace{0, 4}));
  EXPECT_EQ(PointNear(strokes, {40, 21}, 2), (PointPlace{1, 1}));
  EXPECT_EQ(PointNear(strokes, {15, 15}, 2), std::nullopt);
  EXPECT_EQ(SegmentNear(strokes, {12, 20.5}, 1), (PointPlace{0, 5}));
  EXPECT_EQ(SegmentNear(strokes, {40, 20}, 1), std::nullopt);
  EXPECT_EQ(PointsIn(strokes, {9, 9, 16, 12}), (PointSelection{{0, 0}, {0, 1}, {0, 8}}));
}

// Whatever is done, strokes stay strokes, and undoing it all gives back what there was.
TEST_F(StrokesTest, SurviveRandomEditsAndUndo) {
  for (int round = 0; round < 30; ++round) {
    StrokeEditor editor;
    const GlyphStrokes first = RandomStrokes();
    editor.Load(first);
    const std::function<void()> edits[] = {
        [&] { editor.Move(OnQuarters()); },
        [&] { editor.Mirror(Number(0, 1) == 1); },
        [&] { editor.CloseStrokes(); },
        [&] { editor.Split(); },
        [&] { editor.Delete(); },
        [&] { editor.Reverse(); },
        [&] { editor.Undo(); },
        [&] { editor.Redo(); },
        [&] { editor.TakeBackDrawn(); },
        [&] { editor.Draw(OnQuarters()), editor.BendDrawn(OnQuarters()); }};
    for (int i = 0; i < 60; ++i) {
      PointSelection selection;
      for (const PointPlace& place : AllPoints(editor.Strokes()))
        if (Number(0, 5) == 0) selection.insert(place);
      if (!editor.Drawing()) editor.Select(selection);
      edits[Number(0, 9)]();
      for (const GlyphStroke& stroke : editor.Strokes()) {
        ASSERT_EQ(stroke.size() % 2, 1U);
        ASSERT_TRUE(stroke.size() > 1 || (editor.Drawing() && &stroke == &editor.Strokes().back()));
      }
      for (const PointPlace& place : editor.Selection())
        ASSERT_TRUE(place.stroke < editor.Strokes().size() &&
                    place.point < editor.Strokes()[place.stroke].size());
    }
    while (editor.CanUndo()) editor.Undo();
    ASSERT_EQ(editor.Strokes(), first);
    ASSERT_FALSE(editor.Changed());
  }
}

TEST_F(StrokesTest, AreAtMostThirtyTwoBesidesThreads) {
  StrokeEditor editor;
  // A thread goes back the way it came; the print does not show it.
  editor.Load({Polygon({{0, 0}, {9, 0}, {0, 0}})});
  for (std::size_t i = 0; i < kMostStrokes; ++i) editor.Paste(StrokeText({kArc}));
  EXPECT_EQ(FailureOf([&] {
              editor.Draw({1, 1});
            }),
            "A character has at most 32 strokes.\nJoin some of them, or delete one first.");
  EXPECT_THROW(editor.Paste(StrokeText({kSquare})), Failure);
  EXPECT_FALSE(editor.Drawing());
  EXPECT_EQ(editor.Strokes().size(), kMostStrokes + 1);
}

}  // namespace
}  // namespace kelvane
