#include "typography/renderer.h"

#include <algorithm>
#include <iterator>

#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "tests/support/program_files.h"
#include "tests/support/program_test.h"
#include "typography/colours.h"
#include "typography/glyphs.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

// Paper of 100 by 60 points, all of it in view; no grid, characters half an em wide and blanks a quarter.
class RendererTest : public ProgramTest {
 protected:
  RendererTest() {
    for (TypefaceRecord& face : TypefaceTable) {
      face.Widths.fill(500);
      face.Widths[' '] = 250;
      face.WidthUnit = 600;
    }
    PaperWidth = 100;
    PaperHeight = 60;
    STARTX = 50;
    STARTY = 30;
    GridStepH = GridStepV = 1;
  }

  // What a redraw puts on the page, less the paper.
  std::string Redraw() {
    RedrawPage();
    const std::string drawn = canvas->Drawn(Layer::Page);
    const std::string paper = "box 0 0 100 60 #FFFFFF\n";
    EXPECT_TRUE(drawn.starts_with(paper));
    return drawn.substr(std::min(paper.size(), drawn.size()));
  }
  std::string RedrawText(const std::string& line) {
    PageText = line + "\r\n";
    return Redraw();
  }
  std::string RedrawDrawing(const std::string& record) {
    DrawingList = record + "\r\n";
    return Redraw();
  }
};

std::string CountLines(const std::string& drawn) {
  return std::to_string(std::count(drawn.begin(), drawn.end(), '\n'));
}

TEST_F(RendererTest, TheViewIsCentredOnItsOrigin) {
  STARTX = 40;
  RedrawPage();
  EXPECT_EQ(canvas->coordinates, "-110 -70 300 200");
  EXPECT_EQ(VisibleRight, 190);
  EXPECT_EQ(VisibleBottom, 130);
  EXPECT_EQ(canvas->Paints(Layer::Page), 1);
  canvas->pixelHeight = 0;
  RedrawPage();
  EXPECT_EQ(canvas->Paints(Layer::Page), 1) << "a canvas of no size is left alone";
  Picture1 = nullptr;
  RedrawPage();
}

TEST_F(RendererTest, GridLinesBeginAtTheirChoices) {
  const struct {
    std::int16_t stepH, stepV;
    std::string count, first, last;
  } cases[] = {{1, 1, "0", "", ""},
               {1, 2, "16", "line 0 0 100 0 #FFFF00 w 1\nline 0 4 ", "line 0 60 100 60 #FFFF00 w 1\n"},
               {2, 1, "0", "", ""},
               {3, 1, "17", "line 0 0 0 60 #FFFF00 w 1\nline 6 0 ", "line 96 0 96 60 #FFFF00 w 1\n"}};
  for (const auto& wanted : cases) {
    GridStepH = wanted.stepH;
    GridStepV = wanted.stepV;
    const std::string lines = Redraw();
    EXPECT_EQ(CountLines(lines), wanted.count);
    EXPECT_TRUE(lines.starts_with(wanted.first) && lines.ends_with(wanted.last)) << lines;
  }
}

TEST_F(RendererTest, OnlyGridLinesThatCanBeSeenAreDrawn) {
  GridStepV = 5;
  canvas->pixelHeight = 40;
  EXPECT_EQ(Redraw(),
            "line 0 20 100 20 #FFFF00 w 1\n"
            "line 0 30 100 30 #FFFF00 w 1\n"
            "line 0 40 100 40 #FFFF00 w 1\n");
  SCALE = 1;
  EXPECT_EQ(CountLines(Redraw()), "5");
  SCALE = 0.999F;  // below one pixel to the point
  EXPECT_EQ(Redraw(), "");
}

TEST_F(RendererTest, AZeroEndsTheGuides) {
  GuideX[0] = 10;
  GuideX[2] = 20;
  GuideY[1] = 30;
  EXPECT_EQ(Redraw(), "line 10 0 10 60 #FF0000 w 1\n");
  std::fill(std::begin(GuideY), std::end(GuideY), 5.0F);
  EXPECT_EQ(CountLines(Redraw()), "17");
  EXPECT_TRUE(Redraw().ends_with("line 0 5 100 5 #FF0000 w 1\n"));
}

TEST_F(RendererTest, OpenPathsAreStrokedWithPensOfWholePixels) {
  const std::string curves = RedrawDrawing("10 20 15 20 20 20 25 30 30 20 121");
  EXPECT_EQ(curves, "stroke M 10 20 L 20 20 C 22.78 25.56 27.22 25.56 30 20 #0000FF w 2\n");
  const char* const pens[][2] = {{"0.1", "#000000 w 1\n"}, {"0.75", "#000000 w 1\n"},
                                 {"92", "#FF0000 w 4\n"},  {"90", "#FF0000 w 1\n"},
                                 {"-5", "#000000 w 10\n"}, {"1e30", "#000000 w 1\n"},
                                 {"161", "#000000 w 2\n"}};  // there is no colour 16
  for (const auto& [style, pen] : pens) {
    const std::string drawn = RedrawDrawing(std::string("10 20 15 20 20 20 ") + style);
    EXPECT_EQ(drawn.substr(drawn.find('#')), pen) << style;
  }
}

TEST_F(RendererTest, ClosedPathsAreFilled) {
  EXPECT_EQ(RedrawDrawing("0 0 5 0 10 0 10 5 10 10 5 5 0 0 20"), "fill M 0 0 L 10 0 L 10 10 L 0 0 #008000\n");
  EXPECT_EQ(RedrawDrawing("0 0 5 5 10 0 5 0 0 0 20"),
            "fill M 0 0 C 2.78 2.78 7.22 2.78 10 0 L 0 0 #008000\n");
}

TEST_F(RendererTest, AnAreaOfTooManyPointsShowsItsOutline) {
  std::string record = "0 0";
  const std::string twoCurves = " 1 0 1 0 2 0 2 0";  // of sixteen pieces: control points at their ends
  for (int i = 0; i < 30; ++i) record += twoCurves;
  EXPECT_TRUE(RedrawDrawing(record + " 1 1 0 0 92").starts_with("fill "));
  const std::string outline = RedrawDrawing(record + twoCurves + " 1 1 0 0 92");
  EXPECT_TRUE(outline.starts_with("stroke "));
  EXPECT_TRUE(outline.ends_with("#FF0000 w 1\n"));
}

TEST_F(RendererTest, WhatIsNotUnderstoodDrawsNothing) {
  for (const char* record :
       {"", "1", "1 2 3", "1 2 3 4", "  ", "\"", "a b c d", "0 0 0 0 1", "3 3 3 3 3 3"}) {
    EXPECT_EQ(RedrawDrawing(record), "") << record;
  }
  for (const char* line :
       {"", "hello", "10 50 m 10 F0 x 3 s", "10 50 10 F0 (x) 3 s", "10 50 m 10 (x) 3 s",
        "10 50 m 10 F0 (x) 3", "10 50 m 10 F0 (x) 3 t", "10 50 m 10 F0 (x) 3 5 s", ")10 50 m 10 F0 ("}) {
    EXPECT_EQ(RedrawText(line), "") << line;
  }
}

// A run of size 10 and width 20 anchored at (100, 100).
TEST_F(RendererTest, EachAnchorPutsItsPointOnTheCursor) {
  const std::string places[] = {"100 100", "100 106", "100 103", "100 100", "90 100", "80 100",
                                "80 103",  "80 106",  "90 106",  "90 103",  "100 100"};
  for (std::size_t anchor = 0; anchor < std::size(places); ++anchor) {
    const std::string drawn = RedrawText("100 100 m 10 F0 (xxxx) " + std::to_string(anchor) + " s");
    EXPECT_TRUE(drawn.starts_with("text Times New Roman 20 (xxxx) " + places[anchor] + " ")) << drawn;
  }
}

TEST_F(RendererTest, JustifiedRunsEndAtTheirAmount) {
  // Two blanks of 2.5 and three letters of 5 leave 10 of 30 points: 5 for each blank.
  EXPECT_EQ(RedrawText("10 50 m 10 F0 (x x x) 3 30 a"),
            "text Times New Roman 20 (x x x) 10 50 15 50 22.5 50 27.5 50 35 50 #000000\n");
  // Amounts smaller than the run draw it together.
  EXPECT_EQ(RedrawText("10 50 m 10 F0 (x x) 3 10 a"),
            "text Times New Roman 20 (x x) 10 50 15 50 15 50 #000000\n");
  // Without blanks nothing can give way; without "a" nothing does.
  EXPECT_EQ(RedrawText("10 50 m 10 F0 (xx) 3 90 a"), RedrawText("10 50 m 10 F0 (xx) 3 s"));
  EXPECT_EQ(RedrawText("10 50 m 10 F0 (x x) 3 s"),
            "text Times New Roman 20 (x x) 10 50 15 50 17.5 50 #000000\n");
}

TEST_F(RendererTest, UnusualEntriesAreStillDrawn) {
  const std::string plain = RedrawText("10 50 m 10 F0 (x) 3 s");
  EXPECT_NE(plain, "");
  // No typeface: the first. No anchor: the point itself. A quote does not swallow the next line.
  for (const char* line : {"10 50 m 10 FG (x) 3 s", "10 50 m 10 Fa (x) 3 s", "10 50 m 10 F0 (x) 77 s",
                           "\"quoted\r\n10 50 m 10 F0 (x) 3 s"}) {
    EXPECT_EQ(RedrawText(line), plain) << line;
  }
  EXPECT_EQ(RedrawText("ten 50 m 10 F0 (x) 3 s"), "text Times New Roman 20 (x) 0 50 #000000\n");
  EXPECT_EQ(RedrawText("10 50 m 10 F0 (\"a) (b\") 3 s"),
            "text Times New Roman 20 (\"a) (b\") 10 50 15 50 20 50 25 50 27.5 50 32.5 50 37.5 50 #000000\n");
}

// A redraw in the middle of typing must not change what the next character will be.
TEST_F(RendererTest, PaintsInOrderAndChangesNothingElse) {
  GridStepV = 2;
  GuideX[0] = 5;
  DrawingList = "10 20 15 20 20 20 1\r\n";
  PageText = "10 50 m 10 F3 (x\xE8) 3 s\r\n20 50 m 24 FC (\xF0x) 9 40 a\r\nrubbish";
  CurrentFont = 5;
  CursorMode = -4;
  PendingRun = "a\xE5";
  ShowFontLabel(CurrentFont, 13);
  const std::string text = PageText;
  const std::string drawn = Redraw();
  std::size_t at = 0;
  for (const char* part : {"#FFFF00", "line 5 0", "stroke", "text"}) {
    at = drawn.find(part, at);
    ASSERT_NE(at, std::string::npos) << part << " in\n" << drawn;
  }
  const std::string overlay = canvas->Drawn(Layer::Overlay);
  EXPECT_EQ(Redraw(), drawn);
  EXPECT_EQ(canvas->Drawn(Layer::Overlay), overlay);
  EXPECT_EQ(PageText, text);
  EXPECT_FALSE(JustificationOn);
  EXPECT_EQ(CurrentFont, 5);
  EXPECT_EQ(FontLabel->Text(), "Helvetica-Bold 13.00pts");
  EXPECT_EQ(PendingRun, "a\xE5");
}

}  // namespace
}  // namespace kelvane
