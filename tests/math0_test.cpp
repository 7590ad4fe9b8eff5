// The shipped font is what its drawings say, and its pieces join.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "designer/character_files.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "tests/support/ghostscript.h"
#include "tests/support/program_test.h"
#include "tools/math0/font_files.h"
#include "tools/math0/glyphs.h"
#include "tools/math0/merge.h"
#include "typography/glyphs.h"
#include "typography/metrics.h"
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
        for (double i = 0; i < steps; ++i) {
          chords.emplace_back(math0::PointOn(from, segment, i / steps),
                              math0::PointOn(from, segment, (i + 1) / steps));
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
    const Vec around[] = {{near, 0}, {-near, 0}, {0, near}, {0, -near}};
    return std::ranges::all_of(around, [&](Vec way) { return At(point + way) == ink; });
  }
};

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

  // Where the ink meets the line on which a coordinate is `at`.
  std::vector<double> Corners(double Vec::*across, double at, double Vec::*along) const {
    std::set<double> found;
    for (const auto& contour : outline) {
      for (const Segment& segment : contour.segments) {
        if (!contour.thread && segment.end.*across == at) found.insert(segment.end.*along);
      }
    }
    return {found.begin(), found.end()};
  }
};

class Math0Test : public ProgramTest {
 protected:
  Math0Test() {
    for (const TypefaceRecord& face : TypefaceTable) {
      if (!face.Name.empty()) PutShipped(face.Name + ".WT");
    }
    PutShipped("MATH0.PSF");
  }
  void PutShipped(const std::string& name) { files.contents[ProgramFolder + name] = Shipped(name); }
};

TEST_F(Math0Test, ShippedFilesComeFromTheDrawings) {
  for (const char* name : {"MATH0.PSF", "QRX.PRO"}) {
    files.contents[ProgramFolder + name] = WithoutGlyphs(Shipped(name));
    ASSERT_NE(files.contents[ProgramFolder + name], Shipped(name));
  }
  files.contents.erase(ProgramFolder + "MATH0.WT");
  math0::BuildFontFiles();
  math0::BuildSpecimen();
  for (const char* name : {"MATH0.PSF", "QRX.PRO", "MATH0.WT", "MATH0.TXT", "SPECIMEN.001", "SPECIMEN.002"}) {
    EXPECT_TRUE(files.contents[ProgramFolder + name] == Shipped(name)) << name << " is to be built anew";
  }
}

// Advance and outline are read from the files alone, without the code that wrote them.
TEST_F(Math0Test, EveryCodeHasAGlyphAndItsAdvanceInEveryFile) {
  LoadCharacterDefs();
  LoadWidthTables();
  const std::string widths = Shipped("MATH0.TXT");
  const std::string font = Shipped("MATH0.PSF");
  std::vector<std::string> lines;
  std::vector<std::size_t> sections;
  for (std::string_view rest = font; !rest.empty();) {
    lines.emplace_back(TakeLine(rest));
    if (lines.back().starts_with("/.notdef")) sections.push_back(lines.size());
  }
  ASSERT_EQ(sections.size(), 3U);
  std::set<std::string> names, procedures;
  for (std::size_t i = 0; i < kGlyphs; ++i) {
    const std::string& procedure = CharacterDefs[i][0];
    const std::string& line = lines[sections[2] + i];
    const std::string name = line.substr(0, line.find(' '));
    SCOPED_TRACE(name);
    EXPECT_TRUE(procedure.ends_with("rlineto fill") || procedure.ends_with("rp fill")) << procedure;
    names.insert(name);
    procedures.insert(procedure);
    float x = 0, smallest = 50, largest = 0;
    std::vector<float> stack;
    std::istringstream tokens(procedure);
    for (std::string token; tokens >> token && token != "fill";) {
      if (token != "moveto" && token != "rlineto" && token != "rp") {
        stack.push_back(ReadSingle(token));
        continue;
      }
      x = token == "moveto" ? stack[0] : x + stack[stack.size() - 2];
      smallest = std::min(smallest, x);
      largest = std::max(largest, x);
      stack.clear();
    }
    const float advance = smallest + largest;  // the left bearing again at the right
    EXPECT_EQ(lines[sections[0] + i], name + ' ' + FormatSingle(advance) + " def");
    EXPECT_EQ(lines[sections[1] + i], name + " [-2 -12 " + FormatSingle(advance + 2) + " 42] def");
    EXPECT_EQ(widths.substr(i * 10, 8), FormatFixed(advance * 0.02, 6, true));
    EXPECT_FLOAT_EQ(TypefaceTable[12].Widths[32 + i], advance * 0.02F);
  }
  EXPECT_EQ(names.size(), std::size_t{kGlyphs});
  EXPECT_EQ(procedures.size(), std::size_t{kGlyphs});
}

TEST_F(Math0Test, PiecesMeetAtTheirEdges) {
  const std::vector<double> shaft = {26.5, 28.5}, shafts = {23.25, 25.25, 29.75, 31.75}, bar = {0, 2};
  const struct {
    std::string keys;
    bool right;
    std::vector<double> ink;
  } level[] = {{"-xy2w", false, shaft}, {"-mjbqz", true, shaft}, {"=Y", false, shafts},
               {"=B", true, shafts},    {" ", false, bar},       {" vV", true, bar}};
  for (const auto& [keys, right, ink] : level) {
    for (const char key : keys) {
      const Saved piece(key);
      EXPECT_EQ(piece.Corners(&Vec::x, right ? piece.advance : 0, &Vec::y), ink) << key;
    }
  }
  // Tall ones meet one em apart, with their stem so far from the left or the right edge.
  constexpr double top = 2.5, bottom = top + 50;
  const struct {
    std::string keys;
    double y;
    bool right;
  } tall[] = {{"74|r", bottom, false}, {"14|f", top, false}, {"96|t", bottom, true}, {"36|g", top, true}};
  for (const auto& [keys, y, right] : tall) {
    for (const char key : keys) {
      const Saved piece(key);
      const double left = right ? piece.advance - 8.5 : 6;
      EXPECT_EQ(piece.Corners(&Vec::y, y, &Vec::x), (std::vector{left, left + 2.5})) << key;
    }
  }
  const Saved bars('5');
  EXPECT_EQ(bars.Corners(&Vec::y, top, &Vec::x), bars.Corners(&Vec::y, bottom, &Vec::x));
}

TEST_F(Math0Test, OperatorsRelationsAndDelimitersStandOnTheAxis) {
  // All that are whole: 7, 1 and 9 are ends of something taller.
  for (const char key : std::string("SPUIJOun+*si([{<,4ybY2B-=#$%WXkceTM!.:\\/")) {
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

TEST_F(Math0Test, MergingLeavesTheFewestContoursAndEdges) {
  using math0::Box;
  // Edges in line become one, edges between the two are gone.
  const Outline joined = math0::Merge(Box(0, 0, 10, 1) + Box(10, 0, 20, 1) + Box(3, 0, 5, 1), "joined");
  ASSERT_EQ(joined.size(), 1U);
  EXPECT_EQ(joined[0].segments.size(), 4U);
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
  EXPECT_EQ(Ghostscript(Shipped("MATH0.PSF") +
                            "\r\n/Math0 24 selectfont 1 string\r\n"
                            "32 1 127 {1 index 0 3 -1 roll put 72 400 moveto dup show} for pop showpage\r\n"
                            "count 0 ne {(left on the stack) print} if\r\n",
                        "-sDEVICE=pgmraw -r36 -sOutputFile=/dev/null"),
            "");
}

}  // namespace
}  // namespace kelvane
