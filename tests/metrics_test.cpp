// Widths; what the codes of a run do to them is followed in run_positions_test.cpp.

#include "typography/metrics.h"

#include <limits>

#include "tests/support/program_files.h"
#include "tests/support/program_test.h"
#include "typography/typefaces.h"
#include "typography/view.h"

namespace kelvane {
namespace {

class MetricsTest : public ProgramTest {
 protected:
  MetricsTest() { PutProgramFiles(files); }
};

TEST_F(MetricsTest, WidthFilesOfAnyLengthBeginWithTheirUnit) {
  files.contents["\\Kelvane\\TB.WT"].resize(4 * 10 + 3);  // the tenth entry is whole, the eleventh is not
  files.contents["\\Kelvane\\HN.WT"] += "more";
  TypefaceTable[1].Widths.fill(7);
  LoadWidthTables();
  EXPECT_EQ(TypefaceTable[3].WidthUnit, kTestWidthUnit);
  EXPECT_EQ(TypefaceTable[12].Widths[65], TestWidth(12, 65));
  EXPECT_EQ(TypefaceTable[13].WidthUnit, 0);
  EXPECT_EQ(TypefaceTable[1].Widths[9], TestWidth(1, 9));
  EXPECT_EQ(TypefaceTable[1].Widths[10], 0);
  EXPECT_EQ(TypefaceTable[4].Widths[255], TestWidth(4, 255));
}

TEST_F(MetricsTest, WhatHasNoWidthAdvancesNothing) {
  FillWidths();
  const float advance = MeasureRun("x", 0, 10);
  EXPECT_FLOAT_EQ(advance, TestWidth(0, 'x') / 100);
  // A number that is no typeface is measured as it is drawn.
  EXPECT_EQ(MeasureRun("x", 16, 10), advance);
  EXPECT_EQ(MeasureRun("x", -1, 10), advance);
  EXPECT_EQ(MeasureRun("xyz", 14, 10), 0);
  TypefaceTable[0].Widths['y'] = std::numeric_limits<float>::quiet_NaN();
  TypefaceTable[0].Widths['z'] = std::numeric_limits<float>::infinity();
  EXPECT_EQ(MeasureRun("xyz", 0, 10), advance);
  TypefaceTable[0].WidthUnit = 0;
  EXPECT_EQ(MeasureRun("x", 0, 10), 0);
}

TEST_F(MetricsTest, RunsAreJustifiedToTheNextGuide) {
  EXPECT_EQ(JustificationAmount(10), 0);
  GuideX[0] = 500;
  GuideX[1] = 72;
  GuideX[2] = 300;
  EXPECT_EQ(JustificationAmount(10), 62);
  EXPECT_EQ(JustificationAmount(72), 228);  // a guide at the point itself is not to its right
  EXPECT_EQ(JustificationAmount(500), 0);
  GuideX[1] = 0;  // ends the list
  EXPECT_EQ(JustificationAmount(10), 490);
}

}  // namespace
}  // namespace kelvane
