// The sample papers that ship with the program: every page is what the program itself would write, and is set
// within the sheet.

#include <filesystem>

#include "document/lines.h"
#include "document/page.h"
#include "tests/support/program_test.h"
#include "typography/metrics.h"
#include "typography/renderer.h"

namespace kelvane {
namespace {

constexpr float kPaperWidth = 594;
constexpr float kPaperHeight = 840;
// What office printers leave white, and a little more.
constexpr float kLeastMargin = 24;

class SamplePapers : public ProgramTest {
 protected:
  SamplePapers() {
    const std::filesystem::path data = std::filesystem::path(KELVANE_SOURCE_DIR) / "data";
    for (const auto& entry : std::filesystem::directory_iterator(data)) {
      const std::string name = entry.path().filename().string();
      const std::string extension = entry.path().extension().string();
      const std::string content = DiskFiles().ReadWhole(BackslashPath(entry.path().string()));
      if (extension == ".WT") files.contents[ProgramFolder + name] = content;
      if (!extension.starts_with(".0")) continue;
      files.contents[ProgramFolder + name] = content;
      pages.push_back(ProgramFolder + name);
    }
    LoadWidthTables();
  }

  std::vector<std::string> pages;
};

TEST_F(SamplePapers, AreThere) {
  for (const char* paper : {"CALCULUS", "MATRICES", "DIAGRAM", "EXAM", "FIELDS", "FORMULAS", "SPECIMEN"})
    for (const char* page : {".001", ".002"})
      EXPECT_TRUE(files.Exists(ProgramFolder + paper + page)) << paper << page;
}

TEST_F(SamplePapers, OpeningAndSavingChangesNothing) {
  for (const std::string& page : pages) {
    const std::string shipped = files.ReadWhole(page);
    ReadPage(page);
    WritePageSorted(page);
    EXPECT_EQ(files.ReadWhole(page), shipped) << page;
  }
}

TEST_F(SamplePapers, RunsLieOnThePaperAndLinesAreStretchedLittle) {
  for (const std::string& page : pages) {
    ReadPage(page);
    EXPECT_FALSE(ThePage.Empty()) << page;
    for (std::string_view rest = PageText; !rest.empty();) {
      const std::string line(TakeLine(rest));
      TextEntry entry;
      ASSERT_TRUE(ParseTextEntry(line, entry)) << page << ": " << line;
      const float width = MeasureRun(entry.text, entry.font, entry.size);
      const Point origin = AlignAtAnchor({entry.x, entry.y}, entry.anchor, width, entry.size);
      EXPECT_GE(origin.x, kLeastMargin) << page << ": " << line;
      EXPECT_LE(origin.x + width, kPaperWidth - kLeastMargin) << page << ": " << line;
      EXPECT_GE(origin.y, kLeastMargin) << page << ": " << line;
      EXPECT_LE(origin.y, kPaperHeight - kLeastMargin) << page << ": " << line;
      if (!entry.justified) continue;
      const float space = JustificationSpace(entry.text, entry.amount, width);
      EXPECT_GE(space, 0) << page << ": " << line;
      EXPECT_LE(space, 0.5F * entry.size) << page << ": " << line;
    }
  }
}

}  // namespace
}  // namespace kelvane
