// The print prolog, run by Ghostscript: what page lines, sound and unsound, put on paper.

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "document/paper.h"
#include "output/postscript.h"
#include "tests/support/ghostscript.h"
#include "tests/support/program_test.h"
#include "typography/view.h"

namespace kelvane {
namespace {

const std::string kProlog = BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\QRX.PRO";
const std::string kEntry = "72 100 m 14 F0 (entry) 3 s\r\n";

struct Box {
  double left = 0, bottom = 0, right = 0, top = 0;
  bool operator==(const Box&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Box& box) {
  return out << box.left << ' ' << box.bottom << ' ' << box.right << ' ' << box.top;
}

const Box kNoInk{};

class PrologTest : public ProgramTest {
 protected:
  PrologTest() {
    PaperWidth = 594;
    PaperHeight = 840;
    files.contents[ProgramFolder + "QRX.PRO"] = DiskFiles().ReadWhole(kProlog);
  }

  std::string Job(const std::vector<std::string>& pages) {
    for (std::size_t i = 0; i < pages.size(); ++i) {
      files.contents[PageFileName("\\P\\A.001", static_cast<int>(i) + 1)] = pages[i];
    }
    return WholePaperJob("\\P\\A.001");
  }

  // The ink of each page, in points from the lower left corner. Anything else Ghostscript says is a failure.
  std::vector<Box> Inks(const std::vector<std::string>& pages) {
    std::istringstream lines(Ghostscript(Job(pages), "-sDEVICE=bbox"));
    std::vector<Box> boxes;
    for (std::string line; std::getline(lines, line);) {
      Box box;
      if (std::sscanf(line.c_str(), "%%%%HiResBoundingBox: %lf %lf %lf %lf", &box.left, &box.bottom,
                      &box.right, &box.top) == 4) {
        boxes.push_back(box);
      } else {
        EXPECT_TRUE(line.starts_with("%%BoundingBox:")) << line;
      }
    }
    EXPECT_EQ(boxes.size(), pages.size());
    boxes.resize(pages.size());
    return boxes;
  }

  // Each first line prints as the second does.
  void ExpectSameInk(const std::vector<std::pair<std::string, std::string>>& pairs) {
    std::vector<std::string> pages;
    for (const auto& [line, same] : pairs) {
      pages.push_back(line + "\r\n");
      pages.push_back(same + "\r\n");
    }
    const std::vector<Box> inks = Inks(pages);
    for (std::size_t i = 0; i < pairs.size(); ++i) EXPECT_EQ(inks[2 * i], inks[2 * i + 1]) << pairs[i].first;
  }
};

TEST_F(PrologTest, ALineThatIsNoEntrySpoilsOnlyItself) {
  const std::string lines[] = {
      // clang-format off
      "hello world", "( open", ") closed (", "{ open", "} closed", "[ 1 2", "< 12", "/", "% a note",
      "quit", "stop", "exit", "clear", "end", "pop pop", "5 dict begin", "gsave gsave", "grestoreall",
      "100 100 translate 5 5 scale", "0 0 1 1 rectclip", "clip", "1 0 0 setrgbcolor",
      "1 2 m", "10 10 rl", "3 lw", "stroke", "(no point) 3 s", "12 F0 (no point) 3 s", "72 100 m (no size) 3 s",
      "72 100 m F0 s", "72 100 m 12 F0 (no anchor) s", "1 2 3 4 5 6", std::string(300000, 'x'),
      // clang-format on
  };
  std::vector<std::string> pages = {kEntry};
  for (const std::string& line : lines) pages.push_back(line + "\r\n" + kEntry + line + "\r\n");
  const std::vector<Box> inks = Inks(pages);
  ASSERT_NE(inks[0], kNoInk);
  for (std::size_t i = 0; i < std::size(lines); ++i)
    EXPECT_EQ(inks[i + 1], inks[0]) << lines[i].substr(0, 80);
}

TEST_F(PrologTest, ReadsWordsAsTheScreenDoes) {
  ExpectSameInk({
      {"72 100 m 14 FZ (x) 3 s", "72 100 m 14 F0 (x) 3 s"},
      {"72 100 m 14 F (x) 3 s", "72 100 m 14 F0 (x) 3 s"},
      {"72 100 m 14 F1a (x) 3 s", "72 100 m 14 F0 (x) 3 s"},
      {"72 100 m 14 Fa (x) 3 s", "72 100 m 14 F0 (x) 3 s"},
      {"72pt 100,5 m 14e F4 (x) 3 s", "72 100 m 14 F4 (x) 3 s"},
      {"here 100 m 14 F4 (x) 3 s", "0 100 m 14 F4 (x) 3 s"},
      {"72 100 m 14 F4 (x) 0 s", "72 100 m 14 F4 (x) 3 s"},
      {"72 100 m 14 F4 (x) 10 s", "72 100 m 14 F4 (x) 3 s"},
      {"72 100 m 14 F4 (x) -1 s", "72 100 m 14 F4 (x) 3 s"},
      {"72 100 m 14 F4 (x) 8.7 s", "72 100 m 14 F4 (x) 9 s"},
      {"72 100 m 5x lw 9 y rl stroke", "72 100 m 5 lw 9 0 rl stroke"},
  });
}

// In octal, as a hexadecimal escape would take in the letters behind it.
TEST_F(PrologTest, WalksRunsLikeTheScreen) {
  const std::string deep(40, '\360');
  ExpectSameInk({
      {"72 100 m 2e5 F4 (" + deep + "\366x) 3 s", "72 100 m 2e5 F4 (" + deep + "x) 3 s"},
      {"72 100 m 14 F4 (\361\365\373\374\375x) 3 s", "72 100 m 14 F4 (x) 3 s"},
      {"72 100 m 14 F4 (\340\350\344x\354\357) 9 s", "72 100 m 14 F4 (x) 9 s"},
      {"72 100 m 14 F4 (x\355abc\356abc\357\344x) 7 s", "72 100 m 14 F4 (xx) 7 s"},
      {"72 100 m 14 F4 (oneword) 3 300 a", "72 100 m 14 F4 (oneword) 3 s"},
      {"72 100 m 0 F4 (x) 3 s", "% nothing"},
      {"72 100 m -9 F4 (x) 3 s", "% nothing"},
      {"72 100 m 14 F4 () 9 s", "% nothing"},
      {"72 100 m 14 F4 (\341\360\342) 9 s", "% nothing"},
      {"72 100 m 14 F4 () 9 100 a", "% nothing"},
      {"72 100 m 14 FD (x) 3 s", "% nothing"},
  });
}

TEST_F(PrologTest, PrintsDrawingsAndRunsOfAnyLength) {
  std::string steps = "50 60 m 2 lw";
  for (int i = 0; i < 40000; ++i) steps += i % 2 ? " 0 0.03125 rl" : " 0.0078125 0 0.015625 0 rb";
  const std::string run(65000, '\\');
  PaperWidth = 2400;
  const std::vector<Box> inks = Inks({steps + " stroke\r\n", "2300 100 m 0.1 F4 (" + run + ") 5 s\r\n"});
  EXPECT_NEAR(inks[0].left, 49, 0.1);
  EXPECT_NEAR(inks[0].top, 781, 0.1);
  EXPECT_NEAR(inks[0].right, 363.5, 0.1);
  EXPECT_NEAR(inks[0].bottom, 154, 0.1);
  EXPECT_NEAR(inks[1].right - inks[1].left, 65000 * 0.278 * 0.1, 2);
}

TEST_F(PrologTest, ColoursDrawingsAndNothingElse) {
  const std::string glyph = "72 200 m 24 FC (H) 3 s\r\n";
  const std::string white = "72 100 m 157 lw 50 0 rl stroke\r\n";
  const struct {
    const char* what;
    std::string page;
    const char* inks;  // of cyan, magenta, yellow and black those that are used
  } cases[] = {
      {"red lines, a black run",
       "72 100 m 121 lw 50 0 rl stroke\r\n" + kEntry + "72 200 m 120 lw 9 0 rl 0 9 rl -9 -9 rl fill\r\n",
       "MYK"},
      {"black runs on the page behind red lines", kEntry + glyph, "K"},
      {"white", white, ""},
      {"a run behind white", white + kEntry, "K"},
      {"a glyph behind white", white + glyph, "K"},
      {"numbers that are no colour", "72 100 m 161 lw 50 0 rl stroke\r\n72 200 m -8 lw 50 0 rl stroke\r\n",
       "K"},
      {"a blue line of width 0", "72 100 m 90 lw 50 0 rl stroke\r\n", "CM"},
      {"codes without a character", "72 100 m 14 F4 (\x01\x1F\x7F\x81\xE8\x80) 3 s\r\n", ""},
  };
  std::vector<std::string> pages;
  for (const auto& oneCase : cases) pages.push_back(oneCase.page);
  std::istringstream said(Ghostscript(Job(pages), "-sDEVICE=inkcov -r72 -o -"));
  for (const auto& [what, page, inks] : cases) {
    std::string used;
    double coverage = 0;
    for (const char ink : std::string("CMYK")) {
      ASSERT_TRUE(said >> coverage) << what;
      if (coverage > 0) used += ink;
    }
    said.ignore(80, '\n');
    EXPECT_EQ(used, inks) << what;
  }
}

TEST_F(PrologTest, EveryPageStartsOnTheSameCleanSheet) {
  PaperWidth = 300.5F;
  PaperHeight = 420;
  const std::string probe =
      "count = currentpagedevice /PageSize get == matrix currentmatrix == {currentpoint} stopped =\r\n";
  const std::string page = probe + "9 9 m 7 8 9 2 2 scale gsave\r\n(\r\n" + kEntry + probe;
  const std::string said = "0\n[300.5 420]\n[1.0 0.0 0.0 1.0 0.0 0.0]\ntrue\n";
  const std::string after = "\ncount = FN = currentdict userdict eq = 1 2 add = /nosuchname where = quit";
  EXPECT_EQ(Ghostscript(Job({page, "", page}) + after, "-sDEVICE=bit -r72 -o /dev/null"),
            said + said + said + said + "0\n-1\ntrue\n3\nfalse\n");
}

}  // namespace
}  // namespace kelvane
