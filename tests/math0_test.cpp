// The shipped font is what its drawings say, and its pieces join.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "designer/character_files.h"
#include "document/lines.h"
#include "tests/support/ghostscript.h"
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

double Distance(Vec point, Vec from, Vec to) {
  const Vec along = to - from;
  const double length = Dot(along, along);
  const double t = length == 0 ? 0 : std::clamp(Dot(point - from, along) / length, 0.0, 1.0);
  return Length(point - (from + along * t));
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

TEST_F(Math0Test, PiecesMeetAtTheirEdges) {
  const std::vector<double> shaft = {26.25, 28.75}, shafts = {23, 25.5, 29.5, 32}, bar = {0, 2};
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
      const double left = right ? piece.advance - 8.75 : 5.75;
      EXPECT_EQ(piece.Corners(&Vec::y, y, &Vec::x), (std::vector{left, left + 3})) << key;
    }
  }
  const Saved bars('5');
  EXPECT_EQ(bars.Corners(&Vec::y, top, &Vec::x), bars.Corners(&Vec::y, bottom, &Vec::x));
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

// On screen a glyph is its lines: edges and threads. They lie within the ink and nowhere leave a hole in it.
TEST_F(Math0Test, LinesLieCloseTogetherAllOverTheInk) {
  constexpr double farthest = 0.85, step = 0.5;  // half the gap of threads, and what bends and corners add
  for (const Glyph& glyph : math0::AllGlyphs()) {
    const Outline merged = math0::Merge(glyph.draw(), glyph.name);
    const Ink ink(merged);
    std::vector<std::pair<Vec, Vec>> lines = ink.chords;
    for (const auto& contour : merged) {
      if (!contour.thread) continue;
      Ink thread({{contour.start, contour.segments}});
      for (const auto& [from, to] : thread.chords)
        EXPECT_TRUE(ink.At(math0::Midpoint(from, to))) << glyph.name;
      lines.insert(lines.end(), thread.chords.begin(), thread.chords.end());
    }
    const math0::Bounds bounds = BoundsOf(merged);
    double worst = 0;
    Vec where;
    for (double y = bounds.top; y < bounds.bottom; y += step) {
      for (double x = bounds.left; x < bounds.right; x += step) {
        if (!ink.At({x, y})) continue;
        double nearest = 1e9;
        for (const auto& [from, to] : lines) nearest = std::min(nearest, Distance({x, y}, from, to));
        if (nearest > worst) where = {x, y};
        worst = std::max(worst, nearest);
      }
    }
    EXPECT_LT(worst, farthest) << glyph.name << " at " << where.x << ' ' << where.y;
  }
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
