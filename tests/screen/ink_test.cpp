// The ink boxes of items and what is really painted, at four pixels to the point: they must agree within a
// pixel.

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "document/numbers.h"
#include "document/page.h"
#include "document/page_items.h"
#include "platform/files.h"
#include "platform/qt/qt_canvas.h"
#include "tests/screen/ink.h"
#include "tests/screen/program_on_disk.h"
#include "typography/glyph_shapes.h"
#include "typography/item_boxes.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr int kPaper = 400;  // points
constexpr int kScale = 4;
// Characters stand on fractions of a pixel, and so may miss one by a little more.
constexpr double kPixel = 1.1;

// How far apart edges may be: the least that can be seen, and the room that a slanted box has at its sides.
struct Tolerance {
  double pixels = kPixel;
  double leftRoom = 0;
  double rightRoom = 0;
};

class InkTest : public ::testing::Test {
 protected:
  InkTest() {
    StartFromDisk();
    LoadInkBoxes();
    GridStepH = GridStepV = 1;  // no lines
    PrintView = true;           // glyphs as areas
    SCALE = kScale;
    PaperWidth = PaperHeight = kPaper;
    STARTX = STARTY = kPaper / 2.0F;
    canvas_.SetPlace({0, 0, kPaper * kScale, kPaper * kScale});
    Picture1 = &canvas_;
  }
  ~InkTest() override {
    Picture1 = nullptr;
    ResetProgram();
    ClearPage();
  }

  // Paints what stands behind "X Y m" of a page's line, the point in the middle of a cell of its own, and
  // compares the ink in the cells.
  void ExpectInk(const std::vector<std::string>& specimens, int cell, Tolerance tolerance = {}) {
    const int across = kPaper / cell;
    const auto onPage = static_cast<std::size_t>(across * across);
    for (std::size_t first = 0; first < specimens.size(); first += onPage) {
      const std::size_t count = std::min(onPage, specimens.size() - first);
      const auto cellOf = [&](std::size_t i) {
        const int index = static_cast<int>(i - first);
        return QRect(index % across * cell, index / across * cell, cell, cell);
      };
      std::string content;
      for (std::size_t i = first; i < first + count; ++i) {
        content += FormatSingle(static_cast<float>(cellOf(i).left()) + static_cast<float>(cell) * 0.503F) +
                   ' ' +
                   FormatSingle(static_cast<float>(cellOf(i).top()) + static_cast<float>(cell) * 0.611F) +
                   " m " + specimens[i] + "\r\n";
      }
      ThePage = PageOfContent(content, "");
      RedrawPage();
      const QImage screen = canvas_.grab().toImage().convertToFormat(QImage::Format_RGB32);
      const PageItems& items = ItemsOfPage();
      for (std::size_t i = 0; i < count; ++i) {
        const bool text = !items.Texts().empty();
        const Box told = text ? InkBoxOf(items.Texts()[i].entry) : InkBoxOf(items.Drawings()[i].drawing);
        const QRect place = cellOf(first + i);
        const QRect shown = InkBox(screen, QRect(place.topLeft() * kScale, place.size() * kScale));
        Compare(shown, told, tolerance, specimens[first + i]);
      }
    }
  }

  static void Compare(const QRect& shown, const Box& told, const Tolerance& tolerance,
                      const std::string& specimen) {
    const bool inked = told.left < told.right;
    ASSERT_EQ(inked, !shown.isEmpty()) << specimen;
    if (!inked) return;
    // Positive where the ink told reaches further than the ink shown.
    const double left = shown.left() - told.left * kScale;
    const double top = shown.top() - told.top * kScale;
    const double right = told.right * kScale - (shown.right() + 1);
    const double bottom = told.bottom * kScale - (shown.bottom() + 1);
    const double most = tolerance.pixels;
    EXPECT_TRUE(left >= -most && left <= most + tolerance.leftRoom && right >= -most &&
                right <= most + tolerance.rightRoom && std::abs(top) <= most && std::abs(bottom) <= most)
        << specimen << "\nshown " << Edges(shown) << "\nmore is told by " << left << ' ' << top << ' '
        << right << ' ' << bottom;
  }

  QtCanvas canvas_{nullptr};
};

std::string EntryOf(const std::string& size, char face, const std::string& text, const std::string& end) {
  return size + " F" + face + " (" + text + ") " + end;
}

const std::string kUprightFaces = "0123456789B";
// A leaning box is wider than the leaning ink by what the box's height leans.
constexpr Tolerance kLeaning{kPixel, 16 * kScale * 0.22, 16 * kScale * 0.22};

TEST_F(InkTest, EveryCharacterOfEveryFace) {
  const auto charactersOf = [](const std::string& faces) {
    std::vector<std::string> specimens;
    for (const char face : faces) {
      for (int code = 1; code < 224; ++code) {
        if (code != 10 && code != 13)
          specimens.push_back(EntryOf("16", face, std::string(1, static_cast<char>(code)), "4 s"));
      }
    }
    return specimens;
  };
  ExpectInk(charactersOf(kUprightFaces), 40);
  ExpectInk(charactersOf("A"), 40, kLeaning);
  ExpectInk(charactersOf("CDEF"), 66);
}

TEST_F(InkTest, ScriptsSwitchesAndAnchors) {
  std::vector<std::string> specimens;
  const std::string texts[] = {"Ag wB",
                               "x\360ab\361\363i\365z",
                               "f\366kg\370q",
                               "y\371j\372T\373d",
                               "k\342l\350s\354A\352h\351q\376\344h",
                               " \377x "};
  for (const char face : kUprightFaces + "C") {
    for (const std::string& text : texts) {
      for (const char anchor : std::string("1234567890"))
        specimens.push_back(EntryOf(anchor % 2 ? "9" : "14.3", face, text, std::string(1, anchor) + " s"));
    }
  }
  ExpectInk(specimens, 133);
}

TEST_F(InkTest, JustifiedRuns) {
  std::vector<std::string> specimens;
  for (const char face : kUprightFaces + "C") {
    for (const std::string amount : {"90.5", "20"})
      specimens.push_back(EntryOf("10", face, "of  a \360b c\362 \341x", "9 " + amount + " a"));
  }
  ExpectInk(specimens, 200);
}

TEST_F(InkTest, LinesAndAreas) {
  std::vector<std::string> specimens;
  for (const std::string width : {"0.25", "0.5", "1", "2", "4.5"}) {
    specimens.push_back(width + " lw 20.3 0 rl stroke");
    specimens.push_back(width + " lw 15 20.3 rl 10.1 -30 rl stroke");
    specimens.push_back(width + " lw 10 -35 25 3 rb -50 15 -20 10 rb stroke");
    specimens.push_back(width + " lw 20.3 7 rl -11.3 20 rl -9 -27 rl fill");
    specimens.push_back(width + " lw 10 -25 25 3 rb 20 30 -25 -3 rb fill");
  }
  ExpectInk(specimens, 100);
}

}  // namespace
}  // namespace kelvane
