// What the canvas shows after scrolling, editing and undoing is what a full redraw shows, pixel for pixel.

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
#include <cmath>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "document/page.h"
#include "document/paper.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/modes.h"
#include "editing/paths.h"
#include "editing/tool.h"
#include "editing/undo.h"
#include "platform/qt/qt_canvas.h"
#include "platform/qt/qt_toolkit.h"
#include "tests/screen/program_on_disk.h"
#include "tests/support/scripted_dialogs.h"
#include "typography/glyph_shapes.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"
#include "typography/zoom.h"

namespace kelvane {
namespace {

class IncrementalTest : public ::testing::Test {
 protected:
  IncrementalTest() {
    TheDialogs = &dialogs_;
    StartFromDisk();
    canvas_.SetPlace({0, 0, 401, 283});
    canvas_.OnPaint = PaintLayer;
    Picture1 = &canvas_;
  }
  ~IncrementalTest() override {
    Picture1 = nullptr;
    TheDialogs = nullptr;
    ClearPage();
  }

  QImage Shown() { return canvas_.grab().toImage(); }
  void ExpectWhole(const std::string& act) {
    const QImage shown = Shown();
    ShowPage();
    EXPECT_EQ(Differences(shown, Shown()), "") << act;
  }

  static std::string Differences(const QImage& one, const QImage& other) {
    QRect box;
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
      for (int x = 0; x < one.width(); ++x) {
        if (one.pixel(x, y) == other.pixel(x, y)) continue;
        box |= QRect(x, y, 1, 1);
        ++count;
      }
    }
    if (count == 0) return {};
    return std::to_string(count) + " pixels in " + std::to_string(box.left()) + ' ' +
           std::to_string(box.top()) + ' ' + std::to_string(box.right()) + ' ' + std::to_string(box.bottom());
  }

  void ScrollAbout() {
    ShowPage();
    Shown();
    constexpr float kWays[][2] = {{0, 48}, {-3, -5}, {37.4F, 0.5F}, {-120, 90}, {0, -400}, {11, 7}};
    for (const auto& [x, y] : kWays) {
      ScrollBy(x, y);
      if (x > 30) ScrollBy(-2 * y, x);  // two before one is shown
      ExpectWhole("scroll by " + std::to_string(x) + ' ' + std::to_string(y));
    }
  }

  void EditAbout() {
    const auto undone = [this](const std::string& label, const std::function<void(Page&)>& change) {
      EditPage(label, change);
      ExpectWhole(label);
      Undo();
      ExpectWhole("undo " + label);
      Redo();
      ExpectWhole("redo " + label);
      Undo();
    };
    undone("first line goes", [](Page& page) { page.text.erase(0, page.text.find('\n') + 1); });
    undone("run comes", [](Page& page) {
      page.text +=
          "260 170 m 17.5 F2 (A slanted \xF0"
          "g\xF1 and wide) 9 120 a\r\n";
    });
    undone("drawing comes", [](Page& page) {
      page.drawings += "200 150 260 170 330 190 340 240 290 210 13.5\r\n";
      ++page.drawingCount;
    });
  }

  ScriptedDialogs dialogs_;
  QtCanvas canvas_{nullptr};
};

// Runs of all faces and sizes, lines and areas, many of them across the edges of the view.
Page GeneratedPage(unsigned seed) {
  std::minstd_rand random(seed);
  const auto number = [&](unsigned least, unsigned most) {
    return std::to_string(static_cast<double>(least * 16 + random() % ((most - least) * 16)) / 16);
  };
  Page page;
  for (int i = 0; i < 60; ++i) {
    std::string run;
    for (unsigned length = 3 + random() % 20; length > 0; --length)
      run += static_cast<char>('A' + random() % 26);
    page.text += number(0, 500) + ' ' + number(0, 840) + " m " + number(5, 60) + " F" +
                 "0123456789ABCDEF"[i % 16] + " (" + run + ") " + std::to_string(1 + i % 9) + " s\r\n";
  }
  for (int i = 0; i < 40; ++i) {
    const std::string start = number(0, 594) + ' ' + number(0, 840);
    std::string record = start;
    for (int piece = 0; piece < 3; ++piece)
      for (int value = 0; value < 4; ++value) record += ' ' + number(0, 594);
    if (i % 5 == 0) record += ' ' + number(0, 594) + ' ' + number(0, 594) + ' ' + start;
    page.drawings += record + ' ' + std::to_string(i % 8 * 10 + 1 + i % 4) + "\r\n";
    ++page.drawingCount;
  }
  return page;
}

// Twenty scales from far away to near by.
constexpr int kScales = 20;
float ScaleOf(int step) {
  return 0.35F * std::pow(1.17F, static_cast<float>(step));
}

TEST_F(IncrementalTest, SamplePages) {
  int page = 0;
  for (const auto& file : std::filesystem::directory_iterator(KELVANE_SOURCE_DIR "/data")) {
    const std::string extension = file.path().extension().string();
    if (extension.size() != 4 || extension[1] != '0') continue;
    SCOPED_TRACE(file.path().filename().string());
    ReadPage(BackslashPath(file.path().string()));
    ResetEdits();
    // Each page at some of them; the next one at others.
    constexpr int kStride = 4;
    for (int step = page++ % kStride; step < kScales; step += kStride) {
      SCALE = ScaleOf(step);
      SCOPED_TRACE(SCALE);
      ScrollAbout();
      EditAbout();
    }
  }
}

TEST_F(IncrementalTest, GeneratedPages) {
  for (int step = 0; step < kScales; ++step) {
    ThePage = GeneratedPage(static_cast<unsigned>(step));
    ResetEdits();
    SCALE = ScaleOf(step);
    STARTX = 200 + 3.1F * static_cast<float>(step);
    SCOPED_TRACE(SCALE);
    ScrollAbout();
    EditAbout();
  }
}

// What several threads paint together is what one paints alone.
TEST_F(IncrementalTest, PageOfManyItems) {
  canvas_.SetPlace({0, 0, 1203, 901});
  ThePage = GeneratedPage(1);
  for (unsigned seed = 2; seed < 15; ++seed) {
    const Page more = GeneratedPage(seed);
    ThePage.text += more.text;
    ThePage.drawings += more.drawings;
    ThePage.drawingCount = static_cast<std::int16_t>(ThePage.drawingCount + more.drawingCount);
  }
  for (const float scale : {0.9F, 2.3F, 30.0F}) {
    SCOPED_TRACE(scale);
    SCALE = scale;
    ShowPage();
    const QImage shown = Shown();
    RedrawPage();
    EXPECT_EQ(Differences(shown, Shown()), "");
  }
}

// Widths that change, as by a glyph that was redrawn, move what stands beside them.
TEST_F(IncrementalTest, NewWidthsAreMeasured) {
  ThePage.text = "330 150 m 20 F0 (abc) 5 s\r\n";
  ShowPage();
  const QImage before = Shown();
  TypefaceTable[0].Widths['b'] *= 2;
  RedrawPage();
  const QImage after = Shown();
  EXPECT_NE(after, before);
  ThePage.text = "330 150 m 20 F0 (abc) 5 s \r\n";  // measured for the first time
  RedrawPage();
  EXPECT_EQ(Shown(), after);
}

// The pictures of the program's own characters are kept, but not beyond a change of one.
TEST_F(IncrementalTest, ChangedGlyphsAreShown) {
  ThePage.text = "290 200 m 40 FC (AB) 5 s\r\n";
  const auto shown = [this] {
    ShowPage();
    return Shown();
  };
  const QImage before = shown();
  std::string& glyph = CharacterDefs['A' - kFirstGlyph][0];
  const std::string kept = std::exchange(glyph, CharacterDefs['S' - kFirstGlyph][0]);
  EXPECT_NE(shown(), before);
  glyph = kept;
  EXPECT_EQ(shown(), before);
}

// The finished pieces come from a picture, whose pixels must lie on those of the canvas.
TEST_F(IncrementalTest, LongPathBeingDrawn) {
  QtToolkit toolkit;
  CursorMode = kBezierMode;
  for (const float scale : {2.0F, 4 / 3.0F}) {
    SCOPED_TRACE(scale);
    SCALE = scale;
    STARTX = 290.3F;
    std::minstd_rand random(3);
    Points path{{250, 150}};
    for (int piece = 0; piece < 70; ++piece)
      AddPiece(path, {static_cast<float>(210 + random() % 160), static_cast<float>(130 + random() % 100)});
    KeepPath(path);
    TheToolkit = &toolkit;
    ShowPage();
    Shown();
    ToolInForce().Move({{300, 200}, false, false, true});
    ExpectWhole("move");
    const QImage fromPicture = Shown();
    TheToolkit = nullptr;
    ShowPage();
    const QImage stroked = Shown();
    // What differs is where the last pieces cross or meet those of the picture.
    int differ = 0;
    for (int y = 0; y < stroked.height(); ++y)
      for (int x = 0; x < stroked.width(); ++x) differ += stroked.pixel(x, y) != fromPicture.pixel(x, y);
    EXPECT_LT(differ, 1200);
  }
  ResetBezier();
}

}  // namespace
}  // namespace kelvane
