// kelvane-render, and the pictures that it makes of pages without a screen.

#include "app/render.h"

#include <algorithm>

#include "document/page_items.h"
#include "output/svg.h"
#include "tests/support/program_files.h"
#include "tests/support/program_test.h"
#include "typography/glyph_shapes.h"

namespace kelvane {
namespace {

class RenderTest : public ProgramTest {
 protected:
  RenderTest() {
    PutProgramFiles(files);
    for (const char* page : {"001", "002", "004"})
      files.contents[std::string("\\P\\Essay.") + page] = "72 100 m 11 F0 (one) 3 s\r\n";
  }

  int Run(const std::vector<const char*>& arguments) {
    out.clear();
    errors.clear();
    return Render(arguments, "\\Kelvane",
                  {[this](std::string_view text) { out += text; },
                   [this](std::string_view text) { errors += text; }, [] {}});
  }

  std::string out;
  std::string errors;
};

TEST_F(RenderTest, NamesItsOutputsAndTakesThePagesNamed) {
  EXPECT_EQ(Run({"/P/Essay"}), kRendered);
  EXPECT_NE(files.contents["\\P\\Essay.pdf"].find("/Count 3/"), std::string::npos);
  EXPECT_EQ(Run({"/P/Essay.002"}), kRendered);
  EXPECT_NE(files.contents["\\P\\Essay-002.pdf"].find("/Count 1/"), std::string::npos);
  EXPECT_EQ(Run({"-p2-", "--output=/Q/Out.svg", "/P/Essay"}), kRendered);
  EXPECT_TRUE(files.Exists("\\Q\\Out-002.svg") && files.Exists("\\Q\\Out-004.svg"));
  EXPECT_FALSE(files.Exists("\\Q\\Out-001.svg"));
  EXPECT_EQ(Run({"-o", "/Q/One.svg", "/P/Essay.001"}), kRendered);
  EXPECT_TRUE(files.Exists("\\Q\\One.svg"));
  EXPECT_EQ(Run({"-f", "ps", "-o", "-", "/P/Essay", "--pages", "1,4"}), kRendered);
  EXPECT_EQ(std::ranges::count(out, '\x04'), 1);
  EXPECT_EQ(Run({"-s", "300x400", "-fpdf", "-o-", "/P/Essay.001"}), kRendered);
  EXPECT_NE(out.find("/MediaBox[0 0 300 400]"), out.npos);
  const std::string once = out;
  Run({"-s", "300x400", "-fpdf", "-o-", "/P/Essay.001"});
  EXPECT_EQ(out, once);
}

TEST_F(RenderTest, WrongUseIsToldWithItsCode) {
  for (const std::vector<const char*>& wrong :
       std::vector<std::vector<const char*>>{{},
                                             {"--no", "/P/Essay"},
                                             {"-x"},
                                             {"-o"},
                                             {"-f", "gif", "/P/Essay"},
                                             {"-r", "71", "/P/Essay"},
                                             {"-r", "1e2.5", "/P/Essay"},
                                             {"-p", "2-1", "/P/Essay"},
                                             {"-s", "5", "/P/Essay"},
                                             {"--transparent=1", "/P/Essay"},
                                             {"-o", "/Q/a.pdf", "/P/Essay", "/P/Essay.001"}}) {
    EXPECT_EQ(Run(wrong), kWrongOptions) << (wrong.empty() ? "" : wrong[0]);
    EXPECT_TRUE(errors.starts_with("kelvane-render: ")) << errors;
    EXPECT_EQ(out, "");
  }
  // Pictures one behind the other are none.
  EXPECT_EQ(Run({"-f", "svg", "-o", "-", "/P/Essay"}), kWrongOptions);
  EXPECT_EQ(out, "");
  EXPECT_EQ(Run({"--help"}), kRendered);
  for (const char* option :
       {"--output", "--format", "--pages", "--resolution", "--transparent", "--bookmarks"})
    EXPECT_NE(out.find(option), out.npos) << option;
  EXPECT_EQ(Run({"-V"}), kRendered);
  EXPECT_EQ(out, "Kelvane ver 1.7\n");
}

TEST_F(RenderTest, FailuresLeaveNoFileAndTheRestIsDone) {
  files.contents["\\P\\Bad.001"] = "1 rl stroke\r\n";
  EXPECT_EQ(Run({"/P/Bad.001", "/P/None.001", "/P/None", "", "/P/Essay.001"}), kNotRendered);
  EXPECT_NE(errors.find("/P/Bad.001"), errors.npos) << errors;
  EXPECT_NE(errors.find("/P/None"), errors.npos) << errors;
  EXPECT_TRUE(files.Exists("\\P\\Essay-001.pdf"));
  EXPECT_FALSE(files.Exists("\\P\\Bad-001.pdf"));
  EXPECT_EQ(Run({"-o", "/P/Essay.001", "-f", "pdf", "/P/Essay"}), kNotRendered);
  EXPECT_EQ(files.contents["\\P\\Essay.001"], "72 100 m 11 F0 (one) 3 s\r\n");
  files.FailStep(FileStep::Write, 20);
  EXPECT_EQ(Run({"-o", "/Q/Full.pdf", "/P/Essay"}), kNotRendered);
  for (const auto& [name, content] : files.contents) EXPECT_FALSE(name.starts_with("\\Q\\Full")) << name;
}

TEST_F(RenderTest, SvgHasTextAsTextAndSignsAsShapes) {
  const std::string folder = "\\usr\\share\\fonts\\type1\\urw-base35\\";
  files.contents[folder + "NimbusRoman-Regular.t1"] =
      DiskFiles().ReadWhole(folder + "NimbusRoman-Regular.t1");
  FillWidths();
  CharacterDefs['S' - kFirstGlyph][0] = "0 0 moveto 10 0 rlineto 0 10 rlineto fill";
  const std::string page =
      "10 20 m 10 F0 (a< b) 3 s\r\n10 40 m 10 F1 (B) 3 s\r\n10 60 m 10 FC (SS) 3 s\r\n"
      "5 6 m 120.5 lw 7 8 rl stroke\r\n";
  std::string missing;
  const PageItems items(PageOfContent(page, ""));
  const std::string svg = SvgOf(items, {0, 0, 100, 80}, true, &missing);
  const auto has = [&](const std::string& part) { return svg.find(part) != svg.npos; };
  EXPECT_TRUE(has("width=\"100pt\" height=\"80pt\" viewBox=\"0 0 133.333 106.667\"")) << svg;
  EXPECT_TRUE(has("<tspan x=\"10\">a</tspan>")) << svg;
  EXPECT_TRUE(has("&lt; </tspan>")) << svg;
  EXPECT_TRUE(has("stroke=\"#ff0000\" stroke-width=\"0.5\"")) << svg;
  EXPECT_TRUE(has("fill=\"#ffffff\""));
  EXPECT_TRUE(has(">\u2211</text>")) << "it is found as what it means";
  EXPECT_EQ(svg.find("id=\"g12-83\""), svg.rfind("id=\"g12-83\"")) << "a shape stands there once";
  EXPECT_NE(missing.find("Times-Bold"), missing.npos);
  EXPECT_EQ(SvgOf(items, {0, 0, 100, 80}, false).find("fill=\"#ffffff\""), std::string::npos);
}

}  // namespace
}  // namespace kelvane
