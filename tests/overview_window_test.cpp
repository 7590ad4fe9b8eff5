// The window of the paper's pages: what it shows and when, and what is done from it.

#include "app/overview_window.h"

#include "document/page.h"
#include "papers/thumbnails.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

const std::string kPaper = "\\P\\Essay.";

class OverviewTest : public EditorTest {
 protected:
  static std::string FileOf(int page) {
    const std::string number = std::to_string(page);
    return kPaper + std::string(3 - number.size(), '0') + number;
  }

  // A paper whose page n holds a run "pn", open on page 1, and the window.
  void Open(int pages) {
    for (int page = 1; page <= pages; ++page)
      files.contents[FileOf(page)] = "100 200 m 11 F0 (p" + std::to_string(page) + ") 1 s\r\n";
    Start(FileOf(1));
    window->PressShortcut("F7");
    overview = static_cast<FakeWindow*>(OverviewWindow);
    pictures = overview->canvases.front().get();
    timer = toolkit.timers.back().get();
  }

  // As long as there is something to paint; how many ticks that took.
  int LetItPaint() {
    int ticks = 0;
    for (; timer->interval > 0 && ticks < 3000; ++ticks) {
      timer->Tick();
      if (timer->interval >= 100 && ticks > 3) break;
    }
    return ticks;
  }

  // What the pictures show from the left to the right and down, "?" for one without a run, "-" without a
  // file.
  std::string Row() {
    std::string row;
    bool inPicture = false;
    std::string drawn = pictures->Drawn(Layer::Page);
    for (std::size_t start = 0; start < drawn.size();) {
      const std::size_t end = drawn.find('\n', start);
      const std::string line = drawn.substr(start, end - start);
      start = end + 1;
      if (line.starts_with("image ")) {
        if (inPicture) row += "? ";
        inPicture = true;
      }
      if (line.find("(no file)") != std::string::npos) row += "- ";
      if (!line.starts_with("  text ")) continue;
      const std::size_t open = line.find('(');
      row += line.substr(open + 1, line.find(')') - open - 1) + " ";
      inPicture = false;
    }
    return inPicture ? row + "? " : row;
  }

  // The middle of a page's picture, page points of the canvas: four of them in a row.
  static Point Middle(int page) {
    return {47 + 56 + 131.0F * static_cast<float>((page - 1) % 4),
            18 + 80 + 200.0F * static_cast<float>((page - 1) / 4)};
  }

  FakeWindow* overview = nullptr;
  RecordingCanvas* pictures = nullptr;
  FakeTimer* timer = nullptr;
};

TEST_F(OverviewTest, PaintsOnePageAtATimeAndOnlyThoseNearby) {
  Open(999);
  EXPECT_EQ(Row(), "") << "nothing is painted before the window is there";
  timer->Tick();
  timer->Tick();
  EXPECT_EQ(Row(), "p1 p2 ") << "the first ones in view come first";
  EXPECT_LT(LetItPaint(), 60);
  EXPECT_EQ(Row(), "p1 p2 p3 p4 p5 p6 p7 p8 ");
  pictures->Press(kKeyEnd);
  LetItPaint();
  EXPECT_TRUE(Row().ends_with("p998 p999 ")) << Row();
  // Typing digits goes to a number; what does not fit begins anew.
  pictures->Type("57");
  EXPECT_EQ(overview->labels.back()->text, "Page 57 of 999");
  pictures->Type("78");
  EXPECT_EQ(overview->labels.back()->text, "Page 8 of 999");
  // What was in view is there at once when the window comes up again.
  LetItPaint();
  overview->ClickFrameClose();
  window->PressShortcut("F7");
  EXPECT_EQ(Row(), "p1 p2 p3 p4 p5 p6 p7 p8 ");
}

TEST_F(OverviewTest, FollowsEditsPageTurnsAndUndo) {
  Open(3);
  LetItPaint();
  PlaceAt("Top Left", 50, 50);
  canvas->Type("new\r");
  EXPECT_EQ(Row(), "p1 p2 p3 ") << "whoever types is not held up";
  LetItPaint();
  EXPECT_EQ(Row(), "p1 new p2 p3 ");
  window->PressShortcut("Ctrl+Z");
  LetItPaint();
  EXPECT_EQ(Row(), "p1 p2 p3 ");
  window->PressShortcut("PgDown");
  LetItPaint();
  EXPECT_EQ(overview->labels.back()->text, "Page 2 of 3, in the editor");
  // A page of another program is seen when the window is asked to look again.
  files.contents[FileOf(3)] = "100 200 m 11 F0 (other) 1 s\r\n";
  overview->PressShortcut("F5");
  LetItPaint();
  // Undo gave the run back to be typed, and the page turn completed it.
  EXPECT_EQ(Row(), "p1 new p2 other ");
  // Hidden, it does nothing.
  overview->ClickFrameClose();
  EXPECT_EQ(timer->interval, 0);
}

TEST_F(OverviewTest, PagesAreMovedWithTheMouseAndTheKeys) {
  Open(6);
  LetItPaint();
  const auto drag = [&](int page, Point to) {
    pictures->Down(Middle(page).x, Middle(page).y);
    pictures->Move(to.x, to.y);
    pictures->Up(to.x, to.y);
    LetItPaint();
  };
  dialogs.AnswerYes();
  drag(1, {Middle(3).x + 50, Middle(3).y});
  EXPECT_EQ(Row(), "p2 p3 p1 p4 p5 p6 ");
  EXPECT_EQ(files.contents.at(FileOf(3)), "100 200 m 11 F0 (p1) 1 s\r\n");
  EXPECT_EQ(PageBox->Text(), "3") << "the editor shows the page that was moved";
  dialogs.AnswerYes();
  drag(6, {Middle(1).x - 50, Middle(1).y});
  EXPECT_EQ(Row(), "p6 p2 p3 p1 p4 p5 ");
  // Where it was, and with Escape on the way, nothing is asked.
  drag(2, {Middle(2).x + 20, Middle(2).y});
  drag(2, {Middle(1).x + 50, Middle(1).y});
  pictures->Down(Middle(4).x, Middle(4).y);
  pictures->Move(Middle(1).x, Middle(1).y);
  EXPECT_NE(pictures->Drawn(Layer::Overlay), "");
  pictures->Press(kKeyEscape);
  pictures->Up(Middle(1).x, Middle(1).y);
  EXPECT_EQ(pictures->Drawn(Layer::Overlay), "");
  EXPECT_TRUE(OverviewWindow->Visible());
  dialogs.AnswerYes();
  pictures->Press(kKeyWordLeft);
  LetItPaint();
  EXPECT_EQ(Row(), "p6 p2 p1 p3 p4 p5 ");
  for (int i = 0; i < 3; ++i) overview->PressShortcut("Ctrl+Z");
  LetItPaint();
  EXPECT_EQ(Row(), "p1 p2 p3 p4 p5 p6 ");
  overview->PressShortcut("Ctrl+Z");  // nothing is left to be taken back
  pictures->Press(kKeyWordRight | kWithShift);
  EXPECT_EQ(Row(), "p1 p2 p3 p4 p5 p6 ");
}

TEST_F(OverviewTest, PagesComeAndGo) {
  Open(3);
  LetItPaint();
  pictures->Press(kKeyRight);
  dialogs.AnswerYes();
  overview->ClickButton("Duplicate");
  LetItPaint();
  EXPECT_EQ(Row(), "p1 p2 p2 p3 ");
  dialogs.AnswerYes();
  overview->PressShortcut("Ins");
  LetItPaint();
  EXPECT_EQ(Row(), "p1 p2 p2 ? p3 ");
  EXPECT_EQ(PageBox->Text(), "4");
  pictures->Click(Middle(1).x, Middle(1).y);
  EXPECT_EQ(PageBox->Text(), "4") << "a click chooses, it does not go there";
  dialogs.AnswerYes();
  pictures->Press(kKeyDelete);
  LetItPaint();
  EXPECT_EQ(Row(), "p2 p2 - p3 ");
  overview->ClickButton("Undo");
  LetItPaint();
  EXPECT_EQ(Row(), "p1 p2 p2 - p3 ");
  overview->ClickButton("Redo");
  dialogs.AnswerText("1");
  dialogs.AnswerYes();
  pictures->Type("2");
  overview->ClickButton("Move To...");
  EXPECT_EQ(overview->labels.back()->text, "Page 1 of 4, in the editor");
  pictures->DoubleClick(Middle(4).x, Middle(4).y);
  EXPECT_EQ(PageText, "100 200 m 11 F0 (p3) 1 s\r\n");
  EXPECT_EQ(FocusedControl, static_cast<Canvas*>(canvas));
}

TEST_F(OverviewTest, LargePageIsPaintedInParts) {
  std::string filler;
  while (filler.size() < 2 * Thumbnails::kPart) filler += std::string(200, 'x') + "\r\n";
  const auto run = [](const char* text) { return std::string("100 200 m 11 F0 (") + text + ") 1 s\r\n"; };
  files.contents[FileOf(2)] =
      run("top") + "1 2 m 1 lw 3 4 rl stroke\r\n" + filler + run("middle") + filler + run("end") + filler;
  Open(1);
  for (int i = 0; i < 3; ++i) timer->Tick();
  EXPECT_NE(pictures->Drawn(Layer::Page).find("(being drawn)"), std::string::npos);
  // Half of it was painted when another page came into the editor; nothing of it stands there twice.
  window->PressShortcut("PgDown");
  LetItPaint();
  EXPECT_EQ(Row(), "p1 top middle end ");
}

TEST_F(OverviewTest, PagesThatCannotBeShownSayWhy) {
  files.unreadable.insert(FileOf(2));
  Open(4);
  files.contents.erase(FileOf(3));
  LetItPaint();
  const std::string drawn = pictures->Drawn(Layer::Page);
  for (const char* words : {"(cannot be read)", "(no file)"})
    EXPECT_NE(drawn.find(words), std::string::npos) << words;
  EXPECT_EQ(Row(), "p1 - p4 ");
}

}  // namespace
}  // namespace kelvane
