// The shipped font is what its drawings say, and its pieces join.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "designer/character_files.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "tests/support/program_test.h"
#include "tools/math0/font_files.h"
#include "tools/math0/glyphs.h"
#include "tools/math0/merge.h"
#include "typography/glyphs.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

using math0::Glyph;
using math0::Outline;
using math0::Segment;
using math0::Vec;

const std::string kData = BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\";

std::string Shipped(const std::string& name) {
  return DiskFiles().ReadWhole(kData + name);
}

// The text of a definition file with nothing left of the glyphs in its sections.
std::string WithoutGlyphs(std::string_view rest) {
  std::string text;
  int sections = 0;
  int inSection = 0;
  while (!rest.empty()) {
    const std::string_view line = TakeLine(rest);
    text += std::string(inSection > 0 ? "/nothing 1 def" : line) + "\r\n";
    if (inSection > 0) {
      --inSection;
    } else if (line.starts_with("/.notdef") && ++sections <= 3) {
      inSection = kGlyphs;
    }
  }
  return text;
}

// The lines and chords of an outline, for finding out where its ink is.
struct Ink {
  std::vector<std::pair<Vec, Vec>> chords;

  explicit Ink(const Outline& outline) {
    for (const auto& contour : outline) {
      if (contour.thread) continue;
      Vec from = contour.start;
      for (const Segment& segment : contour.segments) {
        const int steps = math0::IsStraight(from, segment) ? 1 : 16;
        Vec p = from;
        for (int i = 1; i <= steps; ++i) {
          const Vec q = math0::PointOn(from, segment, static_cast<double>(i) / steps);
          chords.emplace_back(p, q);
          p = q;
        }
        from = segment.end;
      }
    }
  }

  int Winding(Vec point) const {
    int winding = 0;
    for (const auto& [p, q] : chords) {
      if ((p.y <= point.y) == (q.y <= point.y)) continue;
      if (p.x + (q.x - p.x) * (point.y - p.y) / (q.y - p.y) > point.x) winding += q.y > p.y ? 1 : -1;
    }
    return winding;
  }

  bool At(Vec point) const { return Winding(point) != 0; }

  // True when the ink about a point is the same on all sides.
  bool EvenAbout(Vec point) const {
    constexpr double near = 0.15;
    const bool ink = At(point);
    return At(point + Vec{near, 0}) == ink && At(point + Vec{-near, 0}) == ink &&
           At(point + Vec{0, near}) == ink && At(point + Vec{0, -near}) == ink;
  }
};

std::vector<double> Corners(const Outline& outline, double Vec::*along, double Vec::*across, double at) {
  std::set<double> found;
  for (const auto& contour : outline) {
    if (contour.thread) continue;
    for (const Segment& segment : contour.segments) {
      if (segment.end.*along == at) found.insert(segment.end.*across);
    }
  }
  return {found.begin(), found.end()};
}

// A glyph as it is saved: its outline and its advance.
struct Saved {
  Outline outline;
  double advance = 0;

  explicit Saved(char key) {
    for (const Glyph& glyph : math0::AllGlyphs()) {
      if (glyph.key != key) continue;
      outline = math0::Merge(glyph.draw(), glyph.name);
      advance = BuildGlyph(math0::Strokes(glyph)).width;
    }
  }

  // Where the ink meets an upright line at x, or a level line at y.
  std::vector<double> AtX(double x) const { return Corners(outline, &Vec::x, &Vec::y, x); }
  std::vector<double> AtY(double y) const { return Corners(outline, &Vec::y, &Vec::x, y); }
  // The same measured from the right edge.
  std::vector<double> AtYFromRight(double y) const {
    std::vector<double> xs = AtY(y);
    for (double& x : xs) x = advance - x;
    std::reverse(xs.begin(), xs.end());
    return xs;
  }
};

class Math0Test : public ProgramTest {
 protected:
  void PutShipped(const std::string& name) { files.contents[ProgramFolder + name] = Shipped(name); }
};

TEST_F(Math0Test, ShippedFilesComeFromTheDrawings) {
  for (const char* name : {"MATH0.PSF", "QRX.PRO"}) {
    files.contents[ProgramFolder + name] = WithoutGlyphs(Shipped(name));
    ASSERT_NE(files.contents[ProgramFolder + name], Shipped(name));
  }
  for (const char* face : {"TN", "TB", "TI", "TX", "HN", "HB", "HI", "HX", "GN", "CB", "GI", "ZI"})
    PutShipped(std::string(face) + ".WT");
  math0::BuildFontFiles();
  math0::BuildSpecimen();
  for (const char* name : {"MATH0.PSF", "QRX.PRO", "MATH0.WT", "MATH0.TXT", "SPECIMEN.001", "SPECIMEN.002"}) {
    EXPECT_TRUE(files.contents[ProgramFolder + name] == Shipped(name)) << name << " is to be built anew";
  }
}

TEST_F(Math0Test, EveryCodeHasAGlyphOfItsOwn) {
  PutShipped("MATH0.PSF");
  LoadCharacterDefs();
  std::set<std::string> procedures;
  for (int i = 0; i < kGlyphs; ++i) {
    const std::string& text = CharacterDefs[i][0];
    EXPECT_TRUE(text.ends_with("rlineto fill") || text.ends_with("rp fill")) << i + 32 << ": " << text;
    procedures.insert(text);
  }
  EXPECT_EQ(procedures.size(), std::size_t{kGlyphs});
}

// Advance and outline are read from the files alone, without the code that wrote them.
TEST_F(Math0Test, AdvancesRepeatTheLeftBearingInEveryFile) {
  std::vector<std::string> lines;
  const std::string font = Shipped("MATH0.PSF");
  for (std::string_view rest = font; !rest.empty();) lines.emplace_back(TakeLine(rest));
  std::vector<std::size_t> sections;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].starts_with("/.notdef")) sections.push_back(i + 1);
  }
  ASSERT_EQ(sections.size(), 3U);
  const std::string table = Shipped("MATH0.WT");
  const std::string text = Shipped("MATH0.TXT");
  std::set<std::string> names;
  for (std::size_t i = 0; i < kGlyphs; ++i) {
    std::istringstream procedure(lines[sections[2] + i]);
    std::string name, token;
    procedure >> name >> token;
    names.insert(name);
    float x = 0, smallest = 50, largest = 0;
    for (std::vector<float> stack; procedure >> token && token != "}";) {
      if (token != "moveto" && token != "rlineto" && token != "rp") {
        stack.push_back(ReadSingle(token));
        continue;
      }
      x = token == "moveto" ? stack[0] : x + stack[stack.size() - 2];
      smallest = std::min(smallest, x);
      largest = std::max(largest, x);
      stack.clear();
    }
    const float advance = smallest + largest;
    EXPECT_EQ(lines[sections[0] + i], name + ' ' + FormatSingle(advance) + " def");
    EXPECT_EQ(lines[sections[1] + i], name + " [-2 -12 " + FormatSingle(advance + 2) + " 42] def");
    EXPECT_EQ(text.substr(i * 10, 8), FormatFixed(advance * 0.02, 6, true)) << name;
    std::uint32_t bits = 0;
    for (std::size_t k = 4; k-- > 0;)
      bits = bits << 8 | static_cast<unsigned char>(table.at((32 + i) * 4 + k));
    EXPECT_FLOAT_EQ(std::bit_cast<float>(bits), advance * 0.02F) << name;
  }
  EXPECT_EQ(names.size(), std::size_t{kGlyphs});
}

TEST_F(Math0Test, LevelPiecesMeetAtTheirEdges) {
  const std::vector<double> shaft = {26.5, 28.5};
  for (const char key : {'-', 'm', 'j', 'b', 'q', 'x'}) {
    const Saved piece(key);
    const double end = key == 'x' ? 0 : piece.advance;
    EXPECT_EQ(piece.AtX(end), shaft) << key;
  }
  for (const char key : {'-', 'y', '2', 'w', 'z'}) {
    const Saved piece(key);
    EXPECT_EQ(piece.AtX(key == 'z' ? piece.advance : 0), shaft) << key;
  }
  const std::vector<double> shafts = {23.25, 25.25, 29.75, 31.75};
  EXPECT_EQ(Saved('=').AtX(0), shafts);
  EXPECT_EQ(Saved('=').AtX(Saved('=').advance), shafts);
  EXPECT_EQ(Saved('Y').AtX(0), shafts);
  EXPECT_EQ(Saved('B').AtX(Saved('B').advance), shafts);
  const std::vector<double> bar = {0, 2};
  for (const char key : {' ', 'v', 'V'}) EXPECT_EQ(Saved(key).AtX(Saved(key).advance), bar) << key;
  EXPECT_EQ(Saved(' ').AtX(0), bar);
}

TEST_F(Math0Test, PiecesOfTallDelimitersMeetOneEmApart) {
  constexpr double top = 2.5, bottom = top + 50;
  const std::vector<double> stem = {6, 8.5};
  for (const char key : {'7', '4', '|', 'r'}) EXPECT_EQ(Saved(key).AtY(bottom), stem) << key;
  for (const char key : {'1', '4', '|', 'f'}) EXPECT_EQ(Saved(key).AtY(top), stem) << key;
  for (const char key : {'9', '6', '|', 't'}) EXPECT_EQ(Saved(key).AtYFromRight(bottom), stem) << key;
  for (const char key : {'3', '6', '|', 'g'}) EXPECT_EQ(Saved(key).AtYFromRight(top), stem) << key;
  EXPECT_EQ(Saved('5').AtY(top), Saved('5').AtY(bottom));
}

TEST_F(Math0Test, OperatorsRelationsAndDelimitersStandOnTheAxis) {
  for (const char key : std::string("SPUIJOun+*si([{<,7419ybY2B-=#$%WXkceTM!.:\\/")) {
    if (key == '7' || key == '1' || key == '9') continue;  // ends of something taller
    const math0::Bounds bounds = BoundsOf(Saved(key).outline);
    EXPECT_NEAR((bounds.top + bounds.bottom) * 0.5, math0::kAxis, 0.1) << key;
  }
}

// On screen a glyph is nothing but its outlines: but for threads none may run through the ink, none may be
// lost.
TEST_F(Math0Test, OutlinesHoldExactlyTheInkThatWasDrawn) {
  for (const Glyph& glyph : math0::AllGlyphs()) {
    const Outline shapes = glyph.draw();
    const Ink drawn(shapes);
    const Ink merged(math0::Merge(shapes, glyph.name));
    const math0::Bounds bounds = BoundsOf(shapes);
    int wrong = 0, overlaps = 0;
    for (double y = bounds.top - 1; y < bounds.bottom + 1; y += 1.13) {
      for (double x = bounds.left - 1; x < bounds.right + 1; x += 0.97) {
        if (!drawn.EvenAbout({x, y})) continue;
        const int winding = merged.Winding({x, y});
        if ((winding != 0) != drawn.At({x, y})) ++wrong;
        if (std::abs(winding) > 1) ++overlaps;
      }
    }
    EXPECT_EQ(wrong, 0) << glyph.name;
    EXPECT_EQ(overlaps, 0) << glyph.name;
  }
}

TEST_F(Math0Test, MergingKeepsHolesAndDropsWhatLiesInside) {
  using math0::Box;
  const Outline cross = math0::Merge(Box(0, 4, 10, 5) + Box(4, 0, 5, 10), "cross");
  ASSERT_EQ(cross.size(), 1U);
  EXPECT_EQ(cross[0].segments.size(), 12U);
  // Edges in line become one, edges between the two are gone.
  const Outline joined = math0::Merge(Box(0, 0, 10, 1) + Box(10, 0, 20, 1) + Box(3, 0, 5, 1), "joined");
  ASSERT_EQ(joined.size(), 1U);
  EXPECT_EQ(joined[0].segments.size(), 4U);
  const Outline frame = Box(0, 0, 10, 1) + Box(0, 9, 10, 10) + Box(0, 0, 1, 10) + Box(9, 0, 10, 10);
  const Outline hollow = math0::Merge(frame, "frame");
  EXPECT_EQ(hollow.size(), 2U);
  EXPECT_FALSE(Ink(hollow).At({5, 5}));
  // A stroke that crosses itself is inked where it does.
  const math0::Pen loop = math0::Pen(0, 0, 1).Curve(10, 10, 15, 5).Curve(20, 0, 15, -5).Curve(10, -10, 0, 2);
  EXPECT_EQ(math0::Merge(loop.Ink(), "loop").size(), 2U);
}

// Threads fill thick strokes on screen. They lie within the ink, and thin strokes need none.
TEST_F(Math0Test, ThreadsRunInsideThickStrokes) {
  for (const Glyph& glyph : math0::AllGlyphs()) {
    const Outline merged = math0::Merge(glyph.draw(), glyph.name);
    const Ink ink(merged);
    for (const auto& contour : merged) {
      if (!contour.thread) continue;
      Vec from = contour.start;
      for (const Segment& segment : contour.segments) {
        for (const double t : {0.1, 0.5, 0.9}) {
          const Vec p = math0::PointOn(from, segment, t);
          EXPECT_TRUE(ink.At(p)) << glyph.name << " at " << p.x << ' ' << p.y;
        }
        from = segment.end;
      }
      EXPECT_EQ(from, contour.start) << glyph.name;
    }
  }
  EXPECT_EQ(math0::Merge(math0::Box(0, 0, 20, 1.5), "thin").size(), 1U);
  EXPECT_EQ(math0::Merge(math0::Box(0, 0, 20, 3), "thick").size(), 2U);
}

// Every character is shown, so a fault in any procedure is heard of.
TEST_F(Math0Test, GhostscriptTakesTheFontWithoutAWord) {
  if (std::system("gs --version > /dev/null 2>&1") != 0) GTEST_SKIP() << "Ghostscript is not installed";
  const std::string page = ::testing::TempDir() + "math0_font.ps";
  const std::string said = ::testing::TempDir() + "math0_said.txt";
  std::ofstream(page, std::ios::binary)
      << Shipped("MATH0.PSF") << "\r\n/Math0 24 selectfont 1 string\r\n"
      << "32 1 127 {1 index 0 3 -1 roll put 72 400 moveto dup show} for pop showpage\r\n"
      << "count 0 ne {(left on the stack) print} if\r\n";
  const std::string command =
      "gs -q -dSAFER -dBATCH -dNOPAUSE -sDEVICE=pgmraw -r36 -sOutputFile=/dev/null '" + page + "' > '" +
      said + "' 2>&1";
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(DiskFiles().ReadWhole(BackslashPath(said)), "");
}

}  // namespace
}  // namespace kelvane
