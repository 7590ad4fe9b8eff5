#include "typography/renderer.h"

#include <algorithm>
#include <array>

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
    DrawingCount = 1;
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
  EXPECT_EQ(VisibleLeft, -110);
  EXPECT_EQ(VisibleTop, -70);
  EXPECT_EQ(VisibleRight, 190);
  EXPECT_EQ(VisibleBottom, 130);
  EXPECT_EQ(canvas->Clears(Layer::Page), 1);
}

TEST_F(RendererTest, ACanvasOfNoSizeIsLeftAlone) {
  canvas->pixelHeight = 0;
  RedrawPage();
  EXPECT_EQ(canvas->coordinates, "");
  EXPECT_EQ(canvas->Clears(Layer::Page), 0);
  Picture1 = nullptr;
  RedrawPage();
}

TEST_F(RendererTest, HorizontalGridLinesBeginAtChoiceTwo) {
  GridStepV = 1;
  EXPECT_EQ(Redraw(), "");
  GridStepV = 2;
  const std::string lines = Redraw();
  EXPECT_EQ(CountLines(lines), "16");
  EXPECT_TRUE(
      lines.starts_with("line 0 0 100 0 #FFFF00 w 1\n"
                        "line 0 4 100 4 #FFFF00 w 1\n"));
  EXPECT_TRUE(lines.ends_with("line 0 60 100 60 #FFFF00 w 1\n"));
}

TEST_F(RendererTest, VerticalGridLinesBeginAtChoiceThree) {
  GridStepH = 2;
  EXPECT_EQ(Redraw(), "");
  GridStepH = 3;
  const std::string lines = Redraw();
  EXPECT_EQ(CountLines(lines), "17");
  EXPECT_TRUE(lines.ends_with("line 96 0 96 60 #FFFF00 w 1\n"));
}

TEST_F(RendererTest, NoGridBelowOnePixelToThePoint) {
  GridStepV = GridStepH = 6;
  GuideX[0] = 7;
  SCALE = 0.999F;
  EXPECT_EQ(Redraw(), "line 7 0 7 60 #FF0000 w 1\n");
  SCALE = 1;
  EXPECT_EQ(CountLines(Redraw()), "16");
}

TEST_F(RendererTest, OnlyVisibleGridLinesAreDrawn) {
  GridStepV = 5;
  canvas->pixelHeight = 40;
  EXPECT_EQ(Redraw(),
            "line 0 20 100 20 #FFFF00 w 1\n"
            "line 0 30 100 30 #FFFF00 w 1\n"
            "line 0 40 100 40 #FFFF00 w 1\n");
  STARTY = -1000;
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

TEST_F(RendererTest, OpenPathsAreStroked) {
  const std::string drawn = RedrawDrawing("10 20 15 20 20 20 25 30 30 20 121");
  EXPECT_EQ(CountLines(drawn), "2");
  EXPECT_TRUE(drawn.starts_with("polyline 10 20 "));
  EXPECT_TRUE(drawn.ends_with(" 30 20 #0000FF w 2\n"));
}

TEST_F(RendererTest, PensAreWholePixelsAndNeverThinnerThanOne) {
  const auto penOf = [&](const std::string& style) {
    const std::string drawn = RedrawDrawing("10 20 15 20 20 20 " + style);
    return drawn.substr(drawn.find('#'));
  };
  EXPECT_EQ(penOf("0.1"), "#000000 w 1\n");
  EXPECT_EQ(penOf("0.75"), "#000000 w 1\n");
  EXPECT_EQ(penOf("92"), "#FF0000 w 4\n");
  EXPECT_EQ(penOf("90"), "#FF0000 w 1\n");
  EXPECT_EQ(penOf("161"), "#000000 w 2\n");  // there is no colour 16
  EXPECT_EQ(penOf("-5"), "#000000 w 10\n");
  EXPECT_EQ(penOf("1e30"), "#000000 w 1\n");
}

TEST_F(RendererTest, ClosedPathsAreFilled) {
  EXPECT_EQ(RedrawDrawing("0 0 5 0 10 0 10 5 10 10 5 5 0 0 20"), "fill 0 0 10 0 10 10 0 0 #008000\n");
  // A curve becomes its sixteen ends.
  const std::string curved = RedrawDrawing("0 0 5 5 10 0 5 0 0 0 20");
  EXPECT_EQ(std::count(curved.begin(), curved.end(), ' '), 1 + 2 * 18);
}

TEST_F(RendererTest, AnAreaOfTooManyPointsShowsItsOutline) {
  const auto zigzag = [](int segments) {
    std::string record = "0 0";
    for (int i = 1; i < segments; ++i) {
      const std::string end = std::to_string(i % 50) + " 0";
      record += " " + end + " " + end;  // control point at the end: a curve of sixteen pieces
    }
    return record + " 1 1 0 0 92";
  };
  EXPECT_TRUE(RedrawDrawing(zigzag(60)).starts_with("fill "));
  const std::string outline = RedrawDrawing(zigzag(64));
  EXPECT_EQ(CountLines(outline), "64");
  EXPECT_TRUE(outline.ends_with("#FF0000 w 1\n"));
}

TEST_F(RendererTest, RecordsThatAreNoDrawingsDrawNothing) {
  for (const char* record :
       {"", "1", "1 2 3", "1 2 3 4", "  ", "\"", "a b c d", "0 0 0 0 1", "3 3 3 3 3 3"}) {
    EXPECT_EQ(RedrawDrawing(record), "") << record;
  }
}

// A run of size 10 and width 20 anchored at (100, 100).
TEST_F(RendererTest, EachAnchorPutsItsPointOnTheCursor) {
  constexpr std::array<Point, 11> kWanted = {{{100, 100},
                                              {100, 106},
                                              {100, 103},
                                              {100, 100},
                                              {90, 100},
                                              {80, 100},
                                              {80, 103},
                                              {80, 106},
                                              {90, 106},
                                              {90, 103},
                                              {100, 100}}};
  for (int anchor = 0; anchor <= 10; ++anchor) {
    const Point origin = AlignAtAnchor({100, 100}, anchor, 20, 10);
    EXPECT_FLOAT_EQ(origin.x, kWanted[static_cast<std::size_t>(anchor)].x) << anchor;
    EXPECT_FLOAT_EQ(origin.y, kWanted[static_cast<std::size_t>(anchor)].y) << anchor;
    // The same for a run of the page, whose width has to be measured.
    const std::string drawn = RedrawText("100 100 m 10 F0 (xxxx) " + std::to_string(anchor) + " s");
    const std::string x = std::to_string(static_cast<int>(origin.x));
    const std::string y = std::to_string(static_cast<int>(origin.y));
    EXPECT_TRUE(drawn.starts_with("text Times New Roman 20 (xxxx) " + x + " " + y + " ")) << drawn;
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
  EXPECT_FALSE(JustificationOn);
}

TEST_F(RendererTest, LinesNotUnderstoodDrawNothing) {
  for (const char* line :
       {"", "hello", "10 50 m 10 F0 x 3 s", "10 50 10 F0 (x) 3 s", "10 50 m 10 (x) 3 s",
        "10 50 m 10 F0 (x) 3", "10 50 m 10 F0 (x) 3 t", "10 50 m 10 F0 (x) 3 5 s", ")10 50 m 10 F0 ("}) {
    EXPECT_EQ(RedrawText(line), "") << line;
  }
}

TEST_F(RendererTest, UnusualEntriesAreStillDrawn) {
  const std::string plain = RedrawText("10 50 m 10 F0 (x) 3 s");
  EXPECT_NE(plain, "");
  EXPECT_EQ(RedrawText("10 50 m 10 FG (x) 3 s"), plain);  // no typeface: the first
  EXPECT_EQ(RedrawText("10 50 m 10 Fa (x) 3 s"), plain);
  EXPECT_EQ(RedrawText("10 50 m 10 F0 (x) 77 s"), plain);
  EXPECT_EQ(RedrawText("ten 50 m 10 F0 (x) 3 s"), "text Times New Roman 20 (x) 0 50 #000000\n");
  EXPECT_EQ(RedrawText("10 50 m 10 F0 (\"a) (b\") 3 s"),
            "text Times New Roman 20 (\"a) (b\") 10 50 15 50 20 50 25 50 27.5 50 32.5 50 37.5 50 #000000\n");
  // A line that begins with a quote does not swallow the next one.
  EXPECT_EQ(RedrawText("\"quoted\r\n10 50 m 10 F0 (x) 3 s"), plain);
}

TEST_F(RendererTest, PaintsInOrder) {
  GridStepV = 2;
  GuideX[0] = 5;
  DrawingList = "10 20 15 20 20 20 1\r\n";
  DrawingCount = 1;
  PageText = "10 50 m 10 F0 (x) 3 s\r\n";
  std::string pageAtOverlay;
  PaintOverlay = [&] { pageAtOverlay = canvas->Drawn(Layer::Page); };
  const std::string drawn = Redraw();
  const std::size_t grid = drawn.find("#FFFF00");
  const std::size_t guide = drawn.find("line 5 0");
  const std::size_t drawing = drawn.find("polyline");
  const std::size_t text = drawn.find("text");
  EXPECT_LT(grid, guide);
  EXPECT_LT(guide, drawing);
  EXPECT_LT(drawing, text);
  EXPECT_NE(text, std::string::npos);
  EXPECT_EQ(pageAtOverlay, canvas->Drawn(Layer::Page));
}

// What a commit paints on top is what the next redraw will show.
TEST_F(RendererTest, ALinePaintedOnTopIsTheLastOfARedraw) {
  const std::string first = "10 50 m 10 F0 (x) 3 s";
  const std::string second = "60 30 m 12 F3 (y \xE8z) 9 25 a";
  RedrawText(first);
  PaintTextLine(second);
  const std::string onTop = canvas->Drawn(Layer::Page);
  RedrawText(first + "\r\n" + second);
  EXPECT_EQ(onTop, canvas->Drawn(Layer::Page));
}

// A redraw in the middle of typing must not change what the next character will be.
TEST_F(RendererTest, ARedrawChangesNothing) {
  PaintOverlay = [] { DrawCursorMark(kBlue, true); };
  PageText = "10 50 m 10 F3 (x\xE8) 3 s\r\n20 50 m 24 FC (\xF0x) 9 40 a\r\nrubbish";
  DrawingList = "10 20 15 20 20 20 121\r\n";
  DrawingCount = 1;
  BaseFont = 2;
  CurrentFont = 5;
  FontSize = 13;
  LineColour = 7;
  CursorMode = -4;
  CursorX = 30;
  PendingRun = "a\xE5";
  Text4->SetText(PendingRun);
  ShowFontLabel(CurrentFont, FontSize);
  const std::string text = PageText;
  RedrawPage();
  const std::string first = canvas->Drawn(Layer::Page) + canvas->Drawn(Layer::Overlay);
  RedrawPage();
  EXPECT_EQ(canvas->Drawn(Layer::Page) + canvas->Drawn(Layer::Overlay), first);
  EXPECT_EQ(PageText, text);
  EXPECT_EQ(DrawingList, "10 20 15 20 20 20 121\r\n");
  EXPECT_EQ(BaseFont, 2);
  EXPECT_EQ(CurrentFont, 5);
  EXPECT_EQ(FontLabel->Text(), "Helvetica-Bold 13.00pts");
  EXPECT_EQ(LineColour, 7);
  EXPECT_EQ(CursorMode, -4);
  EXPECT_EQ(PendingRun, "a\xE5");
  EXPECT_EQ(Text4->Text(), "a\xE5");
  EXPECT_FALSE(JustificationOn);
}

}  // namespace
}  // namespace kelvane
