#include "typography/glyphs.h"

#include <utility>

#include "tests/support/program_files.h"
#include "tests/support/program_test.h"
#include "typography/glyph_shapes.h"
#include "typography/metrics.h"
#include "typography/run_painter.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

class GlyphsTest : public ProgramTest {
 protected:
  GlyphsTest() {
    FillWidths();
    // Half an em for "x" everywhere, so that expected positions can be read.
    for (TypefaceRecord& face : TypefaceTable) face.Widths['x'] = 500;
  }

  static void Define(char character, const std::string& procedure, int column = 0) {
    CharacterDefs[character - kFirstGlyph][column] = procedure;
  }

  // What a character of size 10 at (100, 200) draws.
  std::string Draw(char character, std::int16_t font = 12, bool frame = false) {
    canvas->ForgetDrawn();
    endX = 100;
    DrawChar(static_cast<unsigned char>(character), font, 10, endX, 200, 0, frame);
    return canvas->Drawn(Layer::Page);
  }
  std::string DrawProcedure(const std::string& procedure) {
    Define('A', procedure);
    return Draw('A');
  }

  // What a run of size 10 at (100, 200) draws.
  std::string Paint(const std::string& run, std::int16_t font = 0, float extra = 0) {
    canvas->ForgetDrawn();
    const View view = CurrentView();
    const RunPen end = RunPainter(*canvas, view).Paint({run, font, 10, {100, 200}, 0, extra});
    endX = end.x;
    endY = end.y;
    return canvas->Drawn(Layer::Page);
  }

  float endX = 0;
  float endY = 0;
};

// The shape of a procedure is kept from one drawing to the next, and made anew when it changes. Its line is
// as wide as gives it the ink of the area.
TEST_F(GlyphsTest, LinesGoFromPointToPoint) {
  EXPECT_EQ(DrawProcedure("0 0 moveto 50 0 rlineto 0 2 rlineto -50 0 rlineto fill"),
            "stroke M 100 200 L 110 200 L 110 199.6 L 100 199.6 #000000 w 0.39\n");
  EXPECT_EQ(DrawProcedure("10 -5 moveto 5 5 rlineto 40 0 moveto 0 10 rlineto st"),
            "stroke M 102 201 L 103 200 M 108 200 L 108 198 #000000 w 0.33\n");
  EXPECT_EQ(DrawProcedure("10 20 moveto 25 ci").substr(0, 41), "stroke M 107 196 C 107 193.24 104.76 191 ");
  PrintView = true;
  EXPECT_EQ(DrawProcedure("0 0 moveto 50 0 rlineto 0 2 rlineto fill"),
            "fill M 100 200 L 110 200 L 110 199.6 #000000\n");
  EXPECT_EQ(DrawProcedure("0 0 moveto 50 0 rlineto st"), "stroke M 100 200 L 110 200 #000000 w 0.2\n");
}

TEST_F(GlyphsTest, LinesOfGlyphsAreNeitherLostNorBlurred) {
  Define('A', "0 0 moveto 50 0 rlineto 0 50 rlineto fill");
  EXPECT_TRUE(Draw('A').ends_with(" w 2\n"));
  // A thread is drawn one way, and left out where all lines would be too thin.
  Define('A',
         "0 0 moveto 50 0 rlineto 0 2 rlineto -50 0 rlineto 0 -2 rlineto 0 1 moveto 50 0 rlineto -50 0 "
         "rlineto fill");
  const std::string edge = "stroke M 100 200 L 110 200 L 110 199.6 L 100 199.6 L 100 200 ";
  SCALE = 4;  // two edges and one thread: gaps of 1 unit, 0.8 pixels
  EXPECT_EQ(Draw('A'), "stroke M 100 199.8 L 110 199.8 #000000 w 0.78\n" + edge + "#000000 w 0.39\n");
  SCALE = 1.8F;
  EXPECT_EQ(Draw('A'), edge + "#000000 w 0.35\n");
  SCALE = 0.1F;
  EXPECT_EQ(Draw('A'), edge + "#000000 w 0.33\n");
}

TEST_F(GlyphsTest, AProcedureStopsAtItsFirstFault) {
  const std::string line = "stroke M 100 200 L 101 200 #000000 w 0.33\n";
  const std::string start = "0 0 moveto 5 0 rlineto ";
  const std::string eighteen = "1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 1 ";
  for (const std::string& procedure :
       {start + "5 rlineto 0 0 moveto 9 9 rlineto", start + "moveto 9 9 rlineto",
        start + "1 2 3 rc 9 9 rlineto", start + "ci 9 9 rlineto",
        // 20 operands wait at most.
        eighteen + start, start + "1 1 1 " + eighteen + "rlineto",
        // Other tokens are numbers.
        std::string("0x 0 moveto 5units  rlineto"), std::string("0 0 moveto \"5\" \"0 9 9\" rlineto")}) {
    EXPECT_EQ(DrawProcedure(procedure), line) << procedure;
  }
  EXPECT_EQ(DrawProcedure(eighteen), "");
  EXPECT_FLOAT_EQ(endX, 100 + TestWidth(12, 'A') / 100);  // the advance is made all the same
}

TEST_F(GlyphsTest, MathFontsShareTheTable) {
  Define('A', "0 0 moveto 5 0 rlineto");
  Define('A', "0 0 moveto 7 0 rlineto", 1);
  const std::string math0 = Draw('A', 12);
  EXPECT_EQ(Draw('A', 15), math0);
  EXPECT_NE(Draw('A', 13), math0);
  EXPECT_EQ(Draw('A', 14), "");
  EXPECT_EQ(Draw('\xC8', 12), "");
  EXPECT_FLOAT_EQ(endX, 100 + TestWidth(12, 200) / 100);
}

TEST_F(GlyphsTest, CodesOutsideAByteAreRefused) {
  float x = 0;
  EXPECT_THROW(DrawChar(256, 0, 10, x, 0, 0, false), Failure);
  EXPECT_THROW(DrawChar(-1, 0, 10, x, 0, 0, false), Failure);
  EXPECT_EQ(x, 0);
}

// One call for each stretch between switches: a call for each character would be too slow.
TEST_F(GlyphsTest, CharactersOfOneFaceGoTogether) {
  EXPECT_EQ(Paint("xx\xE1x\xE1x"),
            "text Times New Roman 20 (xx) 100 200 105 200 #000000\n"
            "text Times New Roman bold 20 (xx) 110 200 115 200 #000000\n");
  EXPECT_EQ(endX, 120);
  EXPECT_EQ(Paint("x", 16), Paint("x", 0));
}

// Framed characters stand in their cells.
TEST_F(GlyphsTest, FrameShowsTheCell) {
  TypefaceTable[12].Widths['A'] = 0.5F;
  EXPECT_EQ(Draw('A', 12, true), "stroke M 100 192 L 105 192 L 105 202 L 100 202 L 100 192 #000000 w 1\n");
}

TEST_F(GlyphsTest, DrawRunLeavesTheTypefaceInForce) {
  float x = 0;
  float y = 0;
  DrawRun(0, "x\xE4x\xF0", 2, 10, x, y, 0, false);
  EXPECT_EQ(CurrentFont, 4);
  EXPECT_EQ(FontLabel->Text(), "Helvetica 8.00pts");
  Paint("x\xE5");  // leaves all that alone
  EXPECT_EQ(CurrentFont, 4);
  EXPECT_EQ(FontLabel->Text(), "Helvetica 8.00pts");
}

// Halving a cubic gives its points at sixteenths of its parameter.
TEST_F(GlyphsTest, CurvesAreCutIntoSixteenPieces) {
  const CurvePoints points = FlattenCurve({3, 8}, {40, -20}, {90, 35});
  const auto at = [&](int i, double start, double control, double end) {
    const double t = i / 16.0;
    const double u = 1 - t;
    const double c1 = start + 0.556 * (control - start);
    const double c2 = end + 0.556 * (control - end);
    return u * u * u * start + 3 * u * u * t * c1 + 3 * u * t * t * c2 + t * t * t * end;
  };
  for (int i = 0; i < kCurvePoints; ++i) {
    const Point& point = points[static_cast<std::size_t>(i)];
    EXPECT_NEAR(point.x, at(i, 3, 40, 90), 1e-4) << i;
    EXPECT_NEAR(point.y, at(i, 8, -20, 35), 1e-4) << i;
  }
}

TEST_F(GlyphsTest, CurvesGoToTheirTarget) {
  RecordingCanvas designer;
  DesignerCanvas = &designer;
  const auto draw = [&](std::int16_t target) {
    canvas->ForgetDrawn();
    designer.ForgetDrawn();
    DrawCurve(0, 0, 1, 1, 2, 0, 3, 12, target);
    return std::pair{canvas->Drawn(Layer::Page), designer.Drawn(Layer::Page)};
  };
  const auto [curve, other] = draw(1);
  EXPECT_EQ(other, "");
  EXPECT_TRUE(curve.ends_with(" 2 0 #0000FF w 3\n"));
  EXPECT_EQ(draw(2), std::pair(std::string(), curve));
  for (const std::int16_t nowhere : {0, 3}) EXPECT_EQ(draw(nowhere), std::pair(std::string(), std::string()));
  DesignerCanvas = nullptr;
  draw(2);
}

}  // namespace
}  // namespace kelvane
