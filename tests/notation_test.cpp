// The notation of the specimen's formulas, and the rows that are set from it.

#include "tools/math0/notation.h"

#include <iterator>
#include <string>

#include "document/lines.h"
#include "document/page.h"
#include "tests/support/program_test.h"
#include "tools/math0/formula.h"
#include "tools/math0/specimen_page.h"
#include "typography/metrics.h"

namespace kelvane::math0 {
namespace {

// Parts as "kind:run|", the codes of runs as they are.
std::string Listed(std::string_view notation, bool continues = false) {
  std::string list;
  for (const Part& part : PartsOf(notation, continues))
    list += "orpts"[static_cast<int>(part.kind)] + (':' + part.run) + '|';
  return list;
}

TEST(Notation, ASignOfOperationIsSpacedBetweenTwoTermsOnly) {
  EXPECT_EQ(Listed("a - b"),
            "o:\xE2"
            "a|p:\xE8-|o:\xE2"
            "b|");
  EXPECT_EQ(Listed("-a"),
            "o:\xE8-\xE2"
            "a|");
  EXPECT_EQ(Listed("-a", true),
            "p:\xE8-|o:\xE2"
            "a|");
  EXPECT_EQ(Listed("a = -b"),
            "o:\xE2"
            "a|r:\xE8=|o:\xE8-\xE2"
            "b|");
  EXPECT_EQ(Listed("a `B`Y b"),
            "o:\xE2"
            "a|r:\xEC"
            "B\xEC"
            "Y|o:\xE2"
            "b|");
  EXPECT_EQ(Listed(";;@"), "t:|t:|s:|");
}

TEST(Notation, ScriptsHoldOneSignOrAGroup) {
  EXPECT_EQ(RunOf("a^~p2"),
            "\xE2"
            "a\xF0\xE8p\xF2\xE0"
            "2");
  EXPECT_EQ(RunOf("e^{-x^2}x"),
            "\xE2"
            "e\xF0\xE8-\xE2x\xF0\xE0"
            "2\xF2\xF2\xE2x");
  EXPECT_EQ(RunOf("a_{1n}"),
            "\xE2"
            "a\xF9\xE0"
            "1\xE2n\xFB");
  EXPECT_EQ(RunOf("`a_0"),
            "\xEC"
            "a\xF3\xE0"
            "0\xF5");
  EXPECT_EQ(RunOf("n=1"),
            "\xE2n\xFE\xE8=\xFE\xE0"
            "1");
}

class RowTest : public ProgramTest {
 protected:
  RowTest() {
    for (const char* face :
         {"TN", "TB", "TI", "TX", "HN", "HB", "HI", "HX", "GN", "CB", "GI", "ZI", "MATH0"}) {
      const std::string name = face + std::string(".WT");
      files.contents[ProgramFolder + name] =
          DiskFiles().ReadWhole(BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\" + name);
    }
    LoadWidthTables();
  }

  // Where a row set at x = 100 puts the run `text`: left and right edge.
  struct Edges {
    float left, right;
  };
  Edges Find(const Row& row, std::string_view text) {
    Page page;
    row.Set(page, 100, 100);
    page.Save("ROW.001");
    ReadPage(ProgramFolder + "ROW.001");
    for (std::string_view rest = PageText; !rest.empty();) {
      const std::string line(TakeLine(rest));
      TextEntry entry;
      if (ParseTextEntry(line, entry) && entry.text == text)
        return {entry.x, entry.x + MeasureRun(text, entry.font, entry.size)};
    }
    ADD_FAILURE() << "No run " << text;
    return {};
  }
};

TEST_F(RowTest, PartsFollowWithTheSpaceOfTheirKind) {
  constexpr float em = kFormulaSize, rounded = 0.011F;
  const Row row("a = b + c;d");
  EXPECT_NEAR(Find(row, "=").left - Find(row, "a").right, em * 5 / 18, rounded);
  EXPECT_NEAR(Find(row, "b").left - Find(row, "=").right, em * 5 / 18, rounded);
  EXPECT_NEAR(Find(row, "+").left - Find(row, "b").right, em * 4 / 18, rounded);
  EXPECT_NEAR(Find(row, "d").left - Find(row, "c").right, em * 3 / 18, rounded);
}

TEST_F(RowTest, BarsCoverTheWiderPartAndLittleMore) {
  const char* const bars[] = {"-", "--", "---", "----", "-----------"};
  const char* const parts[] = {"2", "23", "mm", "2345", "23456789023"};
  for (std::size_t i = 0; i < std::size(parts); ++i) {
    for (const Row& row : {Row().Fraction("1", parts[i]), Row().Fraction(parts[i], "1")}) {
      const Edges bar = Find(row, bars[i]), part = Find(row, parts[i]);
      EXPECT_LT(bar.left, part.left) << parts[i];
      EXPECT_GT(bar.right, part.right) << parts[i];
      EXPECT_LT(bar.right - bar.left, part.right - part.left + 0.36F * kFormulaSize) << parts[i];
      EXPECT_NEAR(bar.left + bar.right, part.left + part.right, 0.05F) << parts[i];
      const Edges one = Find(row, "1");
      EXPECT_NEAR(bar.left + bar.right, one.left + one.right, 0.05F) << parts[i];
    }
  }
}

}  // namespace
}  // namespace kelvane::math0
