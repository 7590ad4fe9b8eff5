// The page on the screen and the page on paper: each specimen is drawn by the editor at two pixels to the
// point and printed by Ghostscript at 144 dpi, and the two ink boxes must agree within a pixel.

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "document/numbers.h"
#include "document/page.h"
#include "document/paper.h"
#include "output/postscript.h"
#include "platform/characters.h"
#include "platform/qt/qt_canvas.h"
#include "tests/screen/ink.h"
#include "tests/screen/program_on_disk.h"
#include "tests/support/ghostscript.h"
#include "typography/glyphs.h"
#include "typography/renderer.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr int kPaperWidth = 594;
constexpr int kPaperHeight = 840;
constexpr int kScale = 2;

const std::string kTextFaces = "0123456789AB";
constexpr int kSizes[] = {7, 11, 14, 24};

// One entry, put into a cell of its own: everything that stands behind "X Y m", and where in the cell the
// point is.
struct Specimen {
  std::string entry;
  float x;
  float y;
};

bool Agree(const QRect& a, const QRect& b) {
  if (a.isEmpty() || b.isEmpty()) return a.isEmpty() && b.isEmpty();
  return a.marginsAdded({1, 1, 1, 1}).contains(b) && b.marginsAdded({1, 1, 1, 1}).contains(a);
}

class AgreementTest : public ::testing::Test {
 protected:
  AgreementTest() {
    StartFromDisk();
    GridStepH = GridStepV = 1;  // no lines
    SCALE = kScale;
    PaperWidth = kPaperWidth;
    PaperHeight = kPaperHeight;
    STARTX = PaperWidth / 2;
    STARTY = PaperHeight / 2;
    canvas_.SetPlace({0, 0, kPaperWidth * kScale, kPaperHeight * kScale});
    Picture1 = &canvas_;
  }

  ~AgreementTest() override {
    Picture1 = nullptr;
    ClearPage();
  }

  std::string PagePath(std::size_t page) const {
    return PageFileName(BackslashPath(folder_.FileOf("A.001")), static_cast<int>(page) + 1);
  }

  QImage OnScreen(std::size_t page) {
    ReadPage(PagePath(page));
    RedrawPage();
    return canvas_.grab().toImage().convertToFormat(QImage::Format_RGB32);
  }

  // Prints the paper; page n is then in the n-th picture.
  void Print() {
    const std::string job = WholePaperJob(PagePath(0));
    EXPECT_EQ(Ghostscript(job, "-sDEVICE=png16m -r576 -dDownScaleFactor=4 -o " + folder_.FileOf("%d.png")),
              "");
  }

  QImage OnPaper(std::size_t page) {
    const QImage image(QString::fromStdString(folder_.FileOf(std::to_string(page + 1) + ".png")));
    EXPECT_EQ(image.size(), QSize(kPaperWidth, kPaperHeight) * kScale);
    return image.convertToFormat(QImage::Format_RGB32);
  }

  // Puts each specimen into a cell of that size (points), as many pages as it takes, and compares the cells.
  void ExpectAgreement(const std::vector<Specimen>& specimens, int cellWidth, int cellHeight) {
    const std::size_t across = static_cast<std::size_t>(kPaperWidth / cellWidth);
    const std::size_t onPage = across * static_cast<std::size_t>(kPaperHeight / cellHeight);
    const auto cellOf = [&](std::size_t i) {
      return QRect(static_cast<int>(i % across) * cellWidth,
                   static_cast<int>(i % onPage / across) * cellHeight, cellWidth, cellHeight);
    };
    for (std::size_t i = 0; i < specimens.size(); ++i) {
      std::ofstream(MachinePath(PagePath(i / onPage)), std::ios::binary | std::ios::app)
          << FormatSingle(static_cast<float>(cellOf(i).left()) + specimens[i].x) << ' '
          << FormatSingle(static_cast<float>(cellOf(i).top()) + specimens[i].y) << " m " << specimens[i].entry
          << "\r\n";
    }
    Print();
    std::size_t inked = 0;
    QImage screen, paper;
    for (std::size_t i = 0; i < specimens.size(); ++i) {
      if (i % onPage == 0) {
        screen = OnScreen(i / onPage);
        paper = OnPaper(i / onPage);
      }
      const QRect cell(cellOf(i).topLeft() * kScale, cellOf(i).size() * kScale);
      const QRect shown = InkBox(screen, cell);
      const QRect printed = InkBox(paper, cell);
      EXPECT_TRUE(Agree(shown, printed))
          << specimens[i].entry << "\nscreen " << Edges(shown) << "\npaper  " << Edges(printed);
      if (shown.isEmpty()) continue;
      ++inked;
      // Ink at the edge could come from a neighbour, or be cut off.
      EXPECT_TRUE(cell.marginsRemoved({1, 1, 1, 1}).contains(shown))
          << specimens[i].entry << " does not stay in its cell";
    }
    EXPECT_GE(inked, specimens.size() * 9 / 10);
  }

  const TestFolder folder_{"agreement"};
  QtCanvas canvas_{nullptr};
};

std::string RunEntry(int size, char face, const std::string& text, int anchor) {
  return std::to_string(size) + " F" + face + " (" + text + ") " + std::to_string(anchor) + " s";
}

TEST_F(AgreementTest, EveryCharacterOfEveryTextFace) {
  std::vector<Specimen> specimens;
  for (const char face : kTextFaces) {
    const bool symbol = face == '8' || face == 'A';
    for (int code = 1; code < 224; ++code) {
      const bool inked = symbol ? UnicodeOfSymbol(static_cast<unsigned char>(code)) != 0
                                : UnicodeOfText(static_cast<unsigned char>(code)) != 0 && code != 160;
      if (!inked || code == 32) continue;
      specimens.push_back({RunEntry(14, face, std::string(1, static_cast<char>(code)), 3), 7.3F, 21.6F});
    }
  }
  ExpectAgreement(specimens, 29, 30);
}

TEST_F(AgreementTest, RunsOfEveryTextFaceAtEverySizeAndAnchor) {
  std::vector<Specimen> specimens;
  for (const char face : kTextFaces) {
    for (const int size : kSizes) {
      for (int anchor = 1; anchor <= 9; ++anchor)
        specimens.push_back({RunEntry(size, face, "Ag wB", anchor), 98.8F, 30.1F});
    }
  }
  ExpectAgreement(specimens, 198, 60);
}

TEST_F(AgreementTest, EveryGlyphAtEverySizeAndAnchor) {
  std::vector<Specimen> specimens;
  for (int code = kFirstGlyph; code < kFirstGlyph + kGlyphs; ++code) {
    const std::string text(1, static_cast<char>(code));
    for (const int size : kSizes)
      specimens.push_back({RunEntry(size, code % 2 ? 'C' : 'F', text, 3), 33.4F, 55.7F});
    specimens.push_back({RunEntry(11, 'C', text + text, code % 9 + 1), 33.2F, 55.9F});
  }
  ExpectAgreement(specimens, 84, 105);
}

// Codes of a run are octal here, as a hexadecimal escape would take in the letters behind it: 360 to 373 are
// the scripts, 341 to 357 the switches of typeface, 376 and 377 the fixed spaces.
TEST_F(AgreementTest, ScriptsSwitchesAndFixedSpaces) {
  const std::string texts[] = {
      "x\360ab\361yz",
      "x\360ab\362yz",
      "x\363ab\364yz",
      "x\363ab\365yz",
      "x\366ab\367yz",
      "x\366ab\370yz",
      "x\371ab\372yz",
      "x\371ab\373yz",
      "a\360b\363c\366d\371e\373f\370g\365h\362i",
      "x\360k\361\363m\365\376=\377y",
      "k\342l\350s\354A\352g\351q\376\344h",
      "\362x\361y\360\360z",
  };
  std::vector<Specimen> specimens;
  for (const char face : kTextFaces + "C") {
    for (const std::string& text : texts) {
      for (const int size : {11, 40}) specimens.push_back({RunEntry(size, face, text, 4), 99.1F, 60.4F});
    }
  }
  ExpectAgreement(specimens, 198, 105);
}

TEST_F(AgreementTest, JustifiedRuns) {
  std::vector<Specimen> specimens;
  for (const char face : kTextFaces + "C") {
    for (const char anchor : std::string("123456789")) {
      const std::string start = std::string("11 F") + face + " (of  a \360b c\362 \341x) " + anchor;
      for (const char* amount : {" 120.5 a", " 20 a"}) specimens.push_back({start + amount, 140.6F, 30.3F});
    }
  }
  ExpectAgreement(specimens, 297, 60);
}

TEST_F(AgreementTest, StrokesAndFillsOfEveryWidthAndColour) {
  std::vector<Specimen> specimens;
  for (const std::string width : {"0", "0.1", "0.25", "0.5", "0.75", "1", "1.5", "2", "4.5"}) {
    specimens.push_back({width + " lw 40.3 0 rl stroke", 20.2F, 30.7F});
    specimens.push_back({width + " lw 0 30.9 rl stroke", 20.2F, 20.7F});
    specimens.push_back({width + " lw 30 20.3 rl 10.1 -30 rl stroke", 20.2F, 30.7F});
    specimens.push_back({width + " lw 20 -25 50 3 rb -70 5 -30 20 rb stroke", 20.2F, 30.7F});
  }
  for (int colour = 0; colour < 15; ++colour) {
    const std::string style = std::to_string(colour * 10 + 1) + " lw ";
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

// Pixels well covered in one picture around which the other has no ink.
int Strays(const QImage& image, const QImage& other) {
  int strays = 0;
  for (int y = 1; y + 1 < image.height(); ++y) {
    for (int x = 1; x + 1 < image.width(); ++x)
      if (qGray(image.pixel(x, y)) < 128 && InkBox(other, QRect(x - 1, y - 1, 3, 3)).isEmpty()) ++strays;
  }
  return strays;
}

// Where runs, drawings and pieces of brackets have to meet.
TEST_F(AgreementTest, PagesOfFormulas) {
  constexpr std::size_t kPages = 3;
  for (std::size_t page = 0; page < kPages; ++page)
    std::filesystem::copy_file(
        MachinePath(PageFileName(ProgramFolder + "FORMULAS.001", static_cast<int>(page) + 1)),
        MachinePath(PagePath(page)));
  Print();
  for (std::size_t page = 0; page < kPages; ++page) {
    const QImage screen = OnScreen(page), paper = OnPaper(page);
    EXPECT_FALSE(InkBox(paper, paper.rect()).isEmpty());
    EXPECT_EQ(Strays(screen, paper), 0) << "only on the screen, page " << page + 1;
    EXPECT_EQ(Strays(paper, screen), 0) << "only on paper, page " << page + 1;
  }
}

}  // namespace
}  // namespace kelvane
