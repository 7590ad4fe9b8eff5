// The page on the screen and the page on paper: each specimen is drawn by the editor at two pixels to the
// point and printed by Ghostscript at 144 dpi, and the two ink boxes must agree within a pixel.

#include <gtest/gtest.h>
#include <unistd.h>

#include <QImage>
#include <QPixmap>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

#include "designer/character_files.h"
#include "document/numbers.h"
#include "document/page.h"
#include "document/paper.h"
#include "output/postscript.h"
#include "platform/files.h"
#include "platform/qt/qt_canvas.h"
#include "tests/support/ghostscript.h"
#include "typography/glyphs.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr float kPaperWidth = 594;
constexpr float kPaperHeight = 840;
constexpr int kScale = 2;

constexpr char kFaces[] = "0123456789AB";
constexpr int kSizes[] = {7, 11, 14, 24};

// One entry, put into a cell of its own: everything that stands behind "X Y m", and where in the cell the
// point is.
struct Specimen {
  std::string entry;
  float x;
  float y;
};

struct Box {
  int left = 0, top = 0, right = -1, bottom = -1;  // pixels, inclusive
  bool Empty() const { return right < left; }
};

std::ostream& operator<<(std::ostream& out, const Box& box) {
  if (box.Empty()) return out << "no ink";
  return out << box.left << ' ' << box.top << ' ' << box.right << ' ' << box.bottom;
}

// A pixel that a tenth of it covers has ink: less cannot be seen.
bool HasInk(QRgb pixel) {
  return std::min({qRed(pixel), qGreen(pixel), qBlue(pixel)}) < 230;
}

Box InkBox(const QImage& image, int left, int top, int right, int bottom) {
  Box box{right, bottom, left - 1, top - 1};
  for (int y = top; y < bottom; ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = left; x < right; ++x) {
      if (!HasInk(line[x])) continue;
      box.left = std::min(box.left, x);
      box.right = std::max(box.right, x);
      box.top = std::min(box.top, y);
      box.bottom = std::max(box.bottom, y);
    }
  }
  return box;
}

bool Agree(const Box& a, const Box& b) {
  if (a.Empty() || b.Empty()) return a.Empty() && b.Empty();
  return std::abs(a.left - b.left) <= 1 && std::abs(a.top - b.top) <= 1 && std::abs(a.right - b.right) <= 1 &&
         std::abs(a.bottom - b.bottom) <= 1;
}

class AgreementTest : public ::testing::Test {
 protected:
  AgreementTest() : folder_(::testing::TempDir() + "kelvane-agreement-" + std::to_string(getpid())) {
    std::filesystem::create_directory(folder_);
    TheFiles = &DiskFiles();
    ProgramFolder = BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\";
    ResetTypefaces();
    ResetGlyphs();
    ResetView();
    ResetPaper();
    ClearPage();
    LoadCharacterDefs();
    LoadWidthTables();
    GridStepH = GridStepV = 1;  // no lines
    SCALE = kScale;
    PaperWidth = kPaperWidth;
    PaperHeight = kPaperHeight;
    STARTX = kPaperWidth / 2;
    STARTY = kPaperHeight / 2;
    canvas_.SetPlace({0, 0, static_cast<int>(kPaperWidth) * kScale, static_cast<int>(kPaperHeight) * kScale});
    Picture1 = &canvas_;
    PaintOverlay = nullptr;
  }

  ~AgreementTest() override {
    Picture1 = nullptr;
    ClearPage();
    std::filesystem::remove_all(folder_);
  }

  std::string PagePath(std::size_t page) const {
    return PageFileName(BackslashPath(folder_ + "/A.001"), static_cast<int>(page) + 1);
  }

  QImage OnScreen(std::size_t page) {
    ReadPage(PagePath(page));
    RedrawPage();
    return canvas_.grab().toImage().convertToFormat(QImage::Format_RGB32);
  }

  // Prints the paper; page n is then in the n-th picture.
  void Print() {
    const std::string said = Ghostscript(
        WholePaperJob(PagePath(0)), "-sDEVICE=png16m -r576 -dDownScaleFactor=4 -o " + folder_ + "/%d.png");
    EXPECT_EQ(said, "");
  }

  QImage OnPaper(std::size_t page) {
    const std::string path = folder_ + "/" + std::to_string(page + 1) + ".png";
    const QImage image = QImage(QString::fromStdString(path)).convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(image.width(), kPaperWidth * kScale);
    EXPECT_EQ(image.height(), kPaperHeight * kScale);
    return image;
  }

  // Puts each specimen into a cell of that size (points), as many pages as it takes, and compares the cells.
  void ExpectAgreement(const std::vector<Specimen>& specimens, int cellWidth, int cellHeight) {
    const std::size_t across = static_cast<std::size_t>(kPaperWidth) / static_cast<std::size_t>(cellWidth);
    const std::size_t down = static_cast<std::size_t>(kPaperHeight) / static_cast<std::size_t>(cellHeight);
    const std::size_t onPage = across * down;
    const std::size_t pages = (specimens.size() + onPage - 1) / onPage;
    const auto cellLeft = [&](std::size_t i) { return static_cast<int>(i % across) * cellWidth; };
    const auto cellTop = [&](std::size_t i) { return static_cast<int>(i % onPage / across) * cellHeight; };
    for (std::size_t page = 0; page < pages; ++page) {
      std::ofstream file(MachinePath(PagePath(page)), std::ios::binary);
      for (std::size_t i = page * onPage; i < std::min((page + 1) * onPage, specimens.size()); ++i) {
        file << FormatSingle(static_cast<float>(cellLeft(i)) + specimens[i].x) << ' '
             << FormatSingle(static_cast<float>(cellTop(i)) + specimens[i].y) << " m " << specimens[i].entry
             << "\r\n";
      }
    }
    Print();
    std::size_t inked = 0;
    for (std::size_t page = 0; page < pages; ++page) {
      const QImage screen = OnScreen(page);
      const QImage paper = OnPaper(page);
      for (std::size_t i = page * onPage; i < std::min((page + 1) * onPage, specimens.size()); ++i) {
        const int left = cellLeft(i) * kScale, top = cellTop(i) * kScale;
        const int right = left + cellWidth * kScale, bottom = top + cellHeight * kScale;
        const Box shown = InkBox(screen, left, top, right, bottom);
        const Box printed = InkBox(paper, left, top, right, bottom);
        EXPECT_TRUE(Agree(shown, printed))
            << specimens[i].entry << "\nscreen " << shown << "\npaper  " << printed;
        if (shown.Empty()) continue;
        ++inked;
        // Ink at the edge could come from a neighbour, or be cut off.
        EXPECT_TRUE(shown.left > left && shown.top > top && shown.right < right - 1 &&
                    shown.bottom < bottom - 1)
            << specimens[i].entry << " does not stay in its cell";
      }
    }
    EXPECT_GE(inked, specimens.size() * 9 / 10);
  }

  std::string folder_;
  QtCanvas canvas_{nullptr};
};

std::string RunEntry(int size, char face, const std::string& text, int anchor) {
  return std::to_string(size) + " F" + face + " (" + text + ") " + std::to_string(anchor) + " s";
}

TEST_F(AgreementTest, EveryCharacterOfEveryTextFace) {
  std::vector<Specimen> specimens;
  for (const char face : std::string(kFaces)) {
    for (int code = 33; code < 224; ++code) {
      if (code == 127 || (face != '8' && face != 'A' && code == 160)) continue;
      specimens.push_back({RunEntry(14, face, std::string(1, static_cast<char>(code)), 3), 7.3F, 21.6F});
    }
  }
  ExpectAgreement(specimens, 29, 30);
}

TEST_F(AgreementTest, RunsOfEveryTextFaceAtEverySizeAndAnchor) {
  std::vector<Specimen> specimens;
  for (const char face : std::string(kFaces)) {
    for (const int size : kSizes) {
      for (int anchor = 1; anchor <= 9; ++anchor) {
        specimens.push_back({RunEntry(size, face, "Ag wB", anchor), 98.8F, 30.1F});
      }
    }
  }
  ExpectAgreement(specimens, 198, 60);
}

TEST_F(AgreementTest, EveryGlyphAtEverySizeAndAnchor) {
  std::vector<Specimen> specimens;
  for (int code = kFirstGlyph; code < kFirstGlyph + kGlyphs; ++code) {
    const std::string text(1, static_cast<char>(code));
    for (const int size : kSizes) {
      specimens.push_back({RunEntry(size, code % 2 ? 'C' : 'F', text, 3), 33.4F, 55.7F});
    }
    specimens.push_back({RunEntry(11, 'C', text + text, code % 9 + 1), 33.2F, 55.9F});
  }
  ExpectAgreement(specimens, 84, 105);
}

TEST_F(AgreementTest, ScriptsSwitchesAndFixedSpaces) {
  const std::string texts[] = {
      "x\xF0"
      "ab\xF1yz",
      "x\xF0"
      "ab\xF2yz",
      "x\xF3"
      "ab\xF4yz",
      "x\xF3"
      "ab\xF5yz",
      "x\xF6"
      "ab\xF7yz",
      "x\xF6"
      "ab\xF8yz",
      "x\xF9"
      "ab\xFAyz",
      "x\xF9"
      "ab\xFByz",
      "a\xF0"
      "b\xF3"
      "c\xF6"
      "d\xF9"
      "e\xFB"
      "f\xF8"
      "g\xF5"
      "h\xF2i",
      "x\xF0k\xF1\xF3m\xF5\xFE=\xFFy",
      "k\xE2l\xE8s\xEC"
      "A\xEA"
      "g\xE9q\xFE\xE4h",
      "\xF2x\xF1y\xF0\xF0z",
  };
  std::vector<Specimen> specimens;
  for (const char face : std::string(kFaces) + "C") {
    for (const std::string& text : texts) {
      for (const int size : {11, 40}) specimens.push_back({RunEntry(size, face, text, 4), 99.1F, 60.4F});
    }
  }
  ExpectAgreement(specimens, 198, 105);
}

TEST_F(AgreementTest, JustifiedRuns) {
  std::vector<Specimen> specimens;
  for (const char face : std::string(kFaces) + "C") {
    for (int anchor = 1; anchor <= 9; ++anchor) {
      const std::string start = "11 F" + std::string(1, face) +
                                " (of  a \xF0"
                                "b c\xF2 \xE1x) " +
                                std::to_string(anchor);
      specimens.push_back({start + " 120.5 a", 140.6F, 30.3F});
      specimens.push_back({start + " 20 a", 140.6F, 30.3F});
    }
  }
  ExpectAgreement(specimens, 297, 60);
}

TEST_F(AgreementTest, StrokesAndFillsOfEveryWidthAndColour) {
  std::vector<Specimen> specimens;
  for (const char* width : {"0", "0.1", "0.25", "0.5", "0.75", "1", "1.5", "2", "4.5"}) {
    specimens.push_back({std::string(width) + " lw 40.3 0 rl stroke", 20.2F, 30.7F});
    specimens.push_back({std::string(width) + " lw 0 30.9 rl stroke", 20.2F, 20.7F});
    specimens.push_back({std::string(width) + " lw 30 20.3 rl 10.1 -30 rl stroke", 20.2F, 30.7F});
    specimens.push_back({std::string(width) + " lw 20 -25 50 3 rb -70 5 -30 20 rb stroke", 20.2F, 30.7F});
  }
  for (int colour = 0; colour < 15; ++colour) {
    const std::string style = FormatSingle(static_cast<float>(colour) * 10 + 1) + " lw ";
    specimens.push_back({style + "40.3 7 rl stroke", 20.2F, 20.7F});
    specimens.push_back({style + "40.3 7 rl -11.3 20 rl -29 -27 rl fill", 20.2F, 20.7F});
    specimens.push_back({style + "20 -25 50 3 rb -10 50 -50 -3 rb fill", 20.2F, 30.7F});
  }
  ExpectAgreement(specimens, 99, 70);
}

// Non-zero winding: the inner square runs the same way round as the outer one and stays filled; reversed, it
// is a hole. Corners are equal in both pictures.
TEST_F(AgreementTest, FillsOverlapsAlike) {
  const std::string outer = "0.25 lw 40 0 rl 0 40 rl -40 0 rl 0 -40 rl 10 10 rl ";
  std::ofstream(MachinePath(PagePath(0)), std::ios::binary)
      << "100 100 m " << outer << "20 0 rl 0 20 rl -20 0 rl 0 -20 rl -10 -10 rl fill\r\n"
      << "200 100 m " << outer << "0 20 rl 20 0 rl 0 -20 rl -20 0 rl -10 -10 rl fill\r\n";
  Print();
  for (const QImage& image : {OnScreen(0), OnPaper(0)}) {
    EXPECT_TRUE(HasInk(image.pixel(240, 240)));
    EXPECT_FALSE(HasInk(image.pixel(440, 240)));
    EXPECT_TRUE(HasInk(image.pixel(410, 240)));
  }
}

// A drawing's colour must not reach the runs after it, on its page or the next.
TEST_F(AgreementTest, TextIsBlackAfterAColouredDrawing) {
  const std::string run = "50 100 m 24 F5 (HHHH) 3 s\r\n50 140 m 24 FC (H) 3 s\r\n";
  for (std::size_t page = 0; page < 2; ++page) {
    std::ofstream file(MachinePath(PagePath(page)), std::ios::binary);
    file << run;
    if (page == 0)
      file << "50 200 m 122 lw 50 0 rl stroke\r\n"
           << "50 240 m 24 F5 (HHHH) 3 s\r\n";
  }
  Print();
  const auto coloured = [](const QImage& image, int top, int bottom) {
    for (int y = top; y < bottom; ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QRgb pixel = image.pixel(x, y);
        if (qRed(pixel) != qGreen(pixel) || qGreen(pixel) != qBlue(pixel)) return true;
      }
    }
    return false;
  };
  for (const QImage& image : {OnScreen(0), OnPaper(0)}) {
    EXPECT_TRUE(coloured(image, 380, 420));
    EXPECT_FALSE(coloured(image, 0, 380));
    EXPECT_FALSE(coloured(image, 420, image.height()));
  }
  for (const QImage& image : {OnScreen(1), OnPaper(1)}) {
    EXPECT_FALSE(coloured(image, 0, image.height()));
    EXPECT_FALSE(InkBox(image, 100, 150, 300, 220).Empty());
    EXPECT_EQ(*std::min_element(image.constBits(), image.constBits() + image.sizeInBytes()), 0);
  }
}

}  // namespace
}  // namespace kelvane
