#include "typography/glyphs.h"

#include <cmath>

#include "tests/support/program_files.h"
#include "tests/support/program_test.h"
#include "typography/glyph_procedures.h"
#include "typography/metrics.h"
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
    const RunPen end = PaintRun(extra, run, font, 10, {100, 200}, 0, false);
    endX = end.x;
    endY = end.y;
    return canvas->Drawn(Layer::Page);
  }

  float endX = 0;
  float endY = 0;
};

TEST_F(GlyphsTest, LinesGoFromPointToPoint) {
  EXPECT_EQ(DrawProcedure("0 0 moveto 50 0 rlineto 0 50 rlineto -50 0 rlineto fill"),
            "line 100 200 110 200 #000000 w 1\n"
            "line 110 200 110 190 #000000 w 1\n"
            "line 110 190 100 190 #000000 w 1\n");
  EXPECT_EQ(DrawProcedure("10 -5 moveto 5 5 rlineto 40 0 moveto 0 10 rlineto st"),
            "line 102 201 103 200 #000000 w 1\n"
            "line 108 200 108 198 #000000 w 1\n");
  EXPECT_EQ(DrawProcedure("10 20 moveto 25 ci"), "circle 102 196 5 #000000 w 1\n");
}

TEST_F(GlyphsTest, CurvesTakeControlThenEnd) {
  const std::vector<GlyphPiece> pieces = ExecuteGlyph("5 5 moveto 10 20 20 0 rc 3 3 rlineto");
  ASSERT_EQ(pieces.size(), 2u);
  const CurvePoints& points = pieces[0].points;
  EXPECT_FLOAT_EQ(points[8].x, 15);
  EXPECT_FLOAT_EQ(points[8].y, 5 + 0.75F * 0.556F * 20);
  EXPECT_FLOAT_EQ(points[16].x, 25);
  EXPECT_FLOAT_EQ(points[16].y, 5);
  EXPECT_FLOAT_EQ(pieces[1].points[1].x, 28);
  EXPECT_EQ(DrawProcedure("5 5 moveto 10 20 20 0 rp"), DrawProcedure("5 5 moveto 10 20 20 0 rc"));
}

TEST_F(GlyphsTest, AProcedureStopsAtItsFirstFault) {
  const std::string line = "line 100 200 101 200 #000000 w 1\n";
  const std::string start = "0 0 moveto 5 0 rlineto ";
  EXPECT_EQ(DrawProcedure(start + "5 rlineto 0 0 moveto 9 9 rlineto"), line);
  EXPECT_EQ(DrawProcedure(start + "moveto 9 9 rlineto"), line);
  EXPECT_EQ(DrawProcedure(start + "1 2 3 rc 9 9 rlineto"), line);
  EXPECT_EQ(DrawProcedure(start + "ci 9 9 rlineto"), line);
  std::string twenty;
  for (int i = 0; i < 18; ++i) twenty += "1 ";
  EXPECT_EQ(DrawProcedure(twenty + "0 0 moveto 5 0 rlineto"), line);  // 20 operands wait at most
  EXPECT_EQ(DrawProcedure(start + "1 1 1 " + twenty + "rlineto"), line);
  EXPECT_EQ(DrawProcedure(twenty), "");
  EXPECT_FLOAT_EQ(endX, 100 + TestWidth(12, 'A') / 100);  // the advance is made all the same
}

TEST_F(GlyphsTest, OtherTokensAreNumbers) {
  EXPECT_EQ(DrawProcedure("0x 0 moveto 5units  rlineto"), "line 100 200 101 200 #000000 w 1\n");
  EXPECT_EQ(DrawProcedure("0 0 moveto \"5\" \"0 9 9\" rlineto"), "line 100 200 101 200 #000000 w 1\n");
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

// The pieces of a procedure are kept from one drawing to the next.
TEST_F(GlyphsTest, ASavedGlyphIsDrawnAnew) {
  const std::string before = DrawProcedure("0 0 moveto 5 0 rlineto");
  EXPECT_NE(DrawProcedure("0 0 moveto 6 0 rlineto"), before);
  EXPECT_EQ(DrawProcedure(""), "");
}

TEST_F(GlyphsTest, FrameShowsTheCell) {
  TypefaceTable[12].Widths['A'] = 0.5F;
  EXPECT_EQ(Draw('A', 12, true), "polyline 100 202 105 202 105 192 100 192 100 202 #000000 w 1\n");
}

TEST_F(GlyphsTest, TextStandsOnItsBaselineAtItsSize) {
  SCALE = 3;
  for (std::int16_t font = 0; font < kFirstGlyphFont; ++font) {
    const ScreenFace& face = kTypefaceNames[font].screen;
    EXPECT_EQ(Draw('x', font), "text " + std::string(face.family) + (face.bold ? " bold" : "") +
                                   (face.italic ? " italic" : "") + " 30 (x) 100 200 #000000\n");
  }
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

TEST_F(GlyphsTest, ScriptsMoveTheBaselineAndBack) {
  EXPECT_EQ(Paint("x\xF0x\xF2x"),
            "text Times New Roman 20 (x) 100 200 #000000\n"
            "text Times New Roman 16 (x) 105 196.4 #000000\n"
            "text Times New Roman 20 (x) 109 200 #000000\n");
  EXPECT_NEAR(endY, 200, 1e-4);
  EXPECT_EQ(Paint("x\xF9x\xFBx"),
            "text Times New Roman 20 (x) 100 200 #000000\n"
            "text Times New Roman 16 (x) 104.4 202.4 #000000\n"
            "text Times New Roman 20 (x) 109 200 #000000\n");
  // A superscript over a subscript.
  EXPECT_EQ(Paint("\xF3x\xF4\xF0x\xF1"), "text Times New Roman 16 (xx) 100 202.4 100 196.4 #000000\n");
}

TEST_F(GlyphsTest, BlanksGrowWhileJustifying) {
  TypefaceTable[0].Widths[' '] = 250;
  Paint("x x", 0, 7);
  EXPECT_FLOAT_EQ(endX, 112.5F);
  JustificationOn = true;
  EXPECT_EQ(Paint("x x", 0, 7), "text Times New Roman 20 (x x) 100 200 105 200 114.5 200 #000000\n");
  EXPECT_FLOAT_EQ(endX, 119.5F);
  endX = 100;
  DrawRun(7, "x x", 0, 10, endX, endY, 0, true);
  EXPECT_FLOAT_EQ(endX, 112.5F);  // framed characters stand in their cells
}

TEST_F(GlyphsTest, DrawRunLeavesTheTypefaceInForce) {
  float x = 0;
  float y = 0;
  DrawRun(0, "x\xE4x\xF0", 2, 10, x, y, 0, false);
  EXPECT_EQ(CurrentFont, 4);
  EXPECT_EQ(FontLabel->Text(), "Helvetica 8.00pts");
  Paint("x\xE5");
  EXPECT_EQ(CurrentFont, 4);
  EXPECT_EQ(FontLabel->Text(), "Helvetica 8.00pts");
}

// Halving a cubic gives its points at sixteenths of its parameter.
TEST_F(GlyphsTest, CurvesAreCutIntoSixteenPieces) {
  const Point p0{3, 8};
  const Point control{40, -20};
  const Point p3{90, 35};
  const double f = 0.556;
  const CurvePoints points = FlattenCurve(p0, control, p3);
  const auto at = [&](double t, double start, double middle, double end) {
    const double c1 = start + f * (middle - start);
    const double c2 = end + f * (middle - end);
    const double u = 1 - t;
    return u * u * u * start + 3 * u * u * t * c1 + 3 * u * t * t * c2 + t * t * t * end;
  };
  for (int i = 0; i < kCurvePoints; ++i) {
    const double t = i / 16.0;
    EXPECT_NEAR(points[static_cast<std::size_t>(i)].x, at(t, p0.x, control.x, p3.x), 1e-4) << i;
    EXPECT_NEAR(points[static_cast<std::size_t>(i)].y, at(t, p0.y, control.y, p3.y), 1e-4) << i;
  }
}

TEST_F(GlyphsTest, CurvesGoToTheirTarget) {
  RecordingCanvas designer;
  DesignerCanvas = &designer;
  DrawCurve(0, 0, 1, 1, 2, 0, 1, 9, 2);
  EXPECT_EQ(canvas->Drawn(Layer::Page), "");
  EXPECT_TRUE(designer.Drawn(Layer::Page).ends_with(" 2 0 #FF0000 w 1\n"));
  designer.ForgetDrawn();
  DrawCurve(0, 0, 1, 1, 2, 0, 3, 12, 1);
  EXPECT_TRUE(canvas->Drawn(Layer::Page).ends_with(" 2 0 #0000FF w 3\n"));
  canvas->ForgetDrawn();
  DrawCurve(0, 0, 1, 1, 2, 0, 1, 9, 3);
  DrawCurve(0, 0, 1, 1, 2, 0, 1, 9, 0);
  EXPECT_EQ(canvas->Drawn(Layer::Page) + designer.Drawn(Layer::Page), "");
  DesignerCanvas = nullptr;
  DrawCurve(0, 0, 1, 1, 2, 0, 1, 9, 2);
}

}  // namespace
}  // namespace kelvane
