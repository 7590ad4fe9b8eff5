// The print prolog, run by Ghostscript: what page lines, sound and unsound, put on paper.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
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
const std::string kSecond = "372 700 m 5 lw 30 40 rl stroke\r\n";

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

  // In no order: dictionaries have none.
  static std::multiset<std::string> LinesOf(const std::string& text) {
    std::multiset<std::string> lines;
    std::istringstream rest(text);
    for (std::string line; std::getline(rest, line);) lines.insert(line);
    return lines;
  }

  // The ink of each page, in points from the lower left corner. What else Ghostscript says, and what the
  // arguments behind the job make it say, is to be `said`.
  std::vector<Box> Inks(const std::vector<std::string>& pages, const std::string& arguments = "",
                        const std::string& after = "", const std::string& said = "") {
    std::istringstream lines(Ghostscript(Job(pages), "-sDEVICE=bbox " + arguments, after));
    std::vector<Box> boxes;
    std::multiset<std::string> others;
    for (std::string line; std::getline(lines, line);) {
      Box box;
      if (std::sscanf(line.c_str(), "%%%%HiResBoundingBox: %lf %lf %lf %lf", &box.left, &box.bottom,
                      &box.right, &box.top) == 4) {
        boxes.push_back(box);
      } else if (!line.starts_with("%%BoundingBox:")) {
        others.insert(line);
      }
    }
    EXPECT_EQ(others, LinesOf(said));
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

// A page between good entries for each of them: it prints those, and nothing happens elsewhere.
TEST_F(PrologTest, ExecutesNothingThatAPageHolds) {
  const std::filesystem::path folder = ::testing::TempDir() + "kelvane-hostile";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directory(folder);
  std::ofstream(folder / "kept") << "kept";
  const auto hex = [](const std::string& text) {
    std::ostringstream digits;
    for (const char c : text) digits << std::hex << static_cast<int>(c);
    return '<' + digits.str() + '>';
  };
  const std::string kept = hex(folder / "kept");
  const std::string made = hex(folder / "made");
  const std::string trailer = "%-------\r\n\tgsave showpage grestore /FN -1 def";
  std::string names;
  for (int i = 0; i < 20000; ++i) names += " name" + std::to_string(i);
  const std::string lines[] = {
      // clang-format off
      // Notes and rubbish.
      "hello world", "( open", ") closed (", "{ open", "} closed", "[ 1 2", "<< 1 2", "< 12", "/", "% a note", "\"",
      "1 2 m", "10 10 rl", "3 lw", "stroke", "(no point) 3 s", "12 F0 (no point) 3 s", "72 100 m (no size) 3 s",
      "72 100 m F0 s", "72 100 m 12 F0 (no anchor) s", "1 2 3 4 5 6", "1 2 m 5 5 rl", "1 2 m 5 5 rl stroke ",
      std::string(300000, 'x'), "1 2 m " + std::string(300000, ' ') + "stroke", "9 9 m 9 9 rl" + names + " stroke",
      "9 9 m 9 9 rl rl stroke", "9 9 m 9 rb 9 9 rl stroke", "9 9 rl 9 9 m stroke", "9 9 m 9 9 m 9 9 rl stroke",
      "9 9 m 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 rl stroke",
      // Files.
      kept + " deletefile", "(" + (folder / "kept").string() + ") deletefile",
      "72 100 m 14 F0 (entry) 3 s " + kept + " deletefile", kept + " deletefile 9 9 m 1 lw 9 9 rl 9 stroke fill x",
      kept + " deletefile 72 100 m 14 F0 (entry) 3 s", kept + " " + made + " renamefile",
      made + " <77> file dup <78> writestring closefile", kept + " <72> file 99 string readstring pop =",
      hex("%pipe%touch " + (folder / "made").string()) + " <72> file pop", kept + " run",
      kept + " {deletefile} stopped", "systemdict /deletefile get dup " + kept + " exch exec",
      // What never ends, or takes all there is.
      "{} loop", "{(x) show} loop", "[ {dup} loop", "/x {x x} def x", "{1000000 array} loop", "save",
      "0 1 1000000000 {pop} for", "%stdin", "prompt", "executive", "currentfile cvx exec",
      // Pages and the state.
      "50 {showpage} repeat", "copypage", "erasepage", "showpage", "pop pop clear", "5 dict begin", "end end",
      "gsave gsave", "grestoreall", "100 100 translate 5 5 scale", "initgraphics", "0 0 1 1 rectclip", "clip",
      "1 0 0 setrgbcolor", "2 dict dup /PageSize [9 9] put setpagedevice", "nulldevice", "{1} settransfer",
      // Words of the prolog and of the interpreter.
      "/s {pop pop} def", "/page.next {false} def", "/m {quit} bind def", "/showpage {} def", "userdict /F0 {} put",
      "/page.trailer [] def", "errordict /undefined {quit} put", "/Kelvane-Times-Roman /Symbol findfont definefont",
      "systemdict /quit get exec", "//quit", "quit", "stop", "exit", "{/s {} def} exec", "1183615869 internaldict",
      "(x) =", "$error /newerror true put", "vmstatus", "1 true setglobal", "<~87cUR~>", "16#41", "cvx", "@",
      // The rest of the job.
      "currentfile 1000000 string readstring", "currentfile flushfile", "currentfile closefile",
      "currentfile /ASCIIHexDecode filter", "currentfile 9999 () /SubFileDecode filter cvx exec", "page.read",
      "\x04", "\x04 quit", "\x04%!PS", "\x1B%-12345X@PJL", std::string("\0nul\0", 5), "\x14\x1A\x03",
      "%%EOF", "%%Trailer", "%%BeginBinary: 99999", "%%BeginDocument: x", "%!PS-Adobe-3.0", "%%Page: 1 1",
      "%-------", "%-------\r\n%-------\r\n%-------", trailer.substr(10), trailer.substr(10) + "\r\n%-------",
      trailer, trailer + "\r\n" + trailer.substr(10), trailer + " \r\n%-------",
      trailer + "\r\n9 m " + std::string(300000, ' ') + "x %-------",
      // clang-format on
  };
  std::vector<std::string> pages = {kEntry + kSecond};
  for (const std::string& line : lines) pages.push_back(kEntry + line + "\r\n" + kSecond + line + "\r\n");
  const std::string words =
      R"(-c "count = FN = currentdict userdict eq = currentpagedevice /PageSize get == )"
      R"(errordict {exch == ==} forall userdict {dup xcheck {exch == ==} {pop pop} ifelse} forall")";
  const std::string untouched = Ghostscript(Job({kEntry}), "-sDEVICE=nullpage", words);
  ASSERT_TRUE(untouched.starts_with("0\n-1\ntrue\n[594 840]\n")) << untouched.substr(0, 200);
  files.contents.erase("\\P\\A.001");
  for (const std::string safer : {"-dSAFER", "-dNOSAFER"}) {
    const std::vector<Box> inks = Inks(pages, safer, words, untouched);
    ASSERT_NE(inks[0], kNoInk);
    for (std::size_t i = 0; i < std::size(lines); ++i)
      EXPECT_EQ(inks[i + 1], inks[0]) << lines[i].substr(0, 80);
    std::ostringstream content;
    content << std::ifstream(folder / "kept").rdbuf();
    EXPECT_EQ(content.str(), "kept");
    const auto there = std::filesystem::directory_iterator(folder);
    EXPECT_EQ(std::distance(begin(there), end(there)), 1);
  }
  std::filesystem::remove_all(folder);
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
      {"72 100 m 14 F4 (x) 8.5 s", "72 100 m 14 F4 (x) 8 s"},
      {"72 100 m 14 F4 (x) 4.5 s", "72 100 m 14 F4 (x) 4 s"},
      {"  72   100 m 14  F4(x)3 s ", "72 100 m 14 F4 (x) 3 s"},
      {"72 100 m 14 F4 (a b) 3 s a", "72 100 m 14 F4 (a b) 3 0 a"},
      {"72 100 m 14 F4 (a(b) (\\)) 3 s", "72 100 m 14 F4 (a(b) (\\)) 3 s"},
      {"16#48 +1.e2x m .14e+2,5 F4 (x) 3 s", "16 100 m 14 F4 (x) 3 s"},
      {"--72 100 m 14 F4 (x) 3 s", "0 100 m 14 F4 (x) 3 s"},
      {"72 100 m 1e-99 F4 (x) 3 s", "72 100 m 0 F4 (x) 3 s"},
      {"72 100 m 5x lw 9 y rl stroke", "72 100 m 5 lw 9 0 rl stroke"},
      {"72 100 m \"5 6\" lw 9  rl \"stroke\"", "72 100 m 5 lw 9 0 rl stroke"},
      {"5 lw 72 100 m 9 0 rl stroke", "72 100 m 5 lw 9 0 rl stroke"},
      {"72 100 m 9 0 rl stroke", "72 100 m 0 lw 9 0 rl stroke"},
      // What is an area the points say; "fill" forgives the rounding of its numbers.
      {"72 100 m 5 lw 9 0 rl 0 9 rl -9 -9 rl stroke", "72 100 m 5 lw 9 0 rl 0 9 rl -9 -9 rl fill"},
      {"72 100 m 5 lw 9 0 rl 0 9 rl -9 -9.008 rl fill",
       "72 100 m 5 lw 9 0 rl 0 9 rl -9 -9.008 rl 0 0.008 rl fill"},
      {"72 100 m 5 lw 9 0 rl 0 9 rl -9 -9.02 rl fill", "72 100 m 5 lw 9 0 rl 0 9 rl -9 -9.02 rl stroke"},
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
      {"codes without a character", "72 100 m 14 F4 (\x0B\x1A\x7F\xE8\x80) 3 s\r\n", ""},
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

// Nothing of what a page that stops in the middle of a glyph or a path has begun is left for the next.
TEST_F(PrologTest, EveryPageStartsOnTheSameCleanSheet) {
  PaperWidth = 300.5F;
  PaperHeight = 420;
  const std::string page =
      kEntry + "9 9 m 7 8 9 2 2 rb rl\r\n9 9 m 3e38 FC (hn) 5 s\r\n9 9 m 121 lw 4 4 rl stroke\r\n";
  const std::vector<Box> inks = Inks(
      {page, "", page}, "", "-c 'count = FN = currentpagedevice /PageSize get =='", "0\n-1\n[300.5 420]\n");
  EXPECT_EQ(inks[0], inks[2]);
  EXPECT_EQ(inks[1], kNoInk);
}

TEST_F(PrologTest, PrintsWithoutAFontThatIsMissing) {
  const auto without = [&](const std::string& font) {
    return Inks({kEntry, "72 100 m 14 FB (entry) 3 s\r\n"},
                "-c '/findfont {dup /" + font + " eq {/findfont cvx /invalidfont signalerror} if " +
                    "systemdict /findfont get exec} bind def' -f");
  };
  const std::vector<Box> inks = without("ZapfChancery-MediumItalic");
  EXPECT_EQ(inks[0], without("None")[0]);
  EXPECT_NE(inks[1], kNoInk);
  EXPECT_NE(without("Times-Roman")[0], kNoInk);
}

}  // namespace
}  // namespace kelvane
