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
  MetricsTest() {
    FillWidths();
    // Half an em for "x" in every text face, so that expected positions can be read.
    for (TypefaceRecord& face : TypefaceTable) face.Widths['x'] = 500;
  }

  static float Measure(const std::string& run) { return MeasureRun(run, 0, 10); }
};

class WidthFilesTest : public ProgramTest {
 protected:
  WidthFilesTest() { PutProgramFiles(files); }
};

TEST_F(WidthFilesTest, EntryZeroIsTheUnit) {
  LoadWidthTables();
  EXPECT_EQ(TypefaceTable[3].WidthUnit, kTestWidthUnit);
  EXPECT_EQ(TypefaceTable[3].Widths[255], TestWidth(3, 255));
  EXPECT_EQ(TypefaceTable[12].Widths[65], TestWidth(12, 65));
  EXPECT_EQ(TypefaceTable[13].WidthUnit, 0);
}

TEST_F(WidthFilesTest, LengthsOtherThanATable) {
  std::string& bytes = files.contents["\\Kelvane\\TB.WT"];
  bytes.resize(4 * 10 + 3);  // the tenth entry is whole, the eleventh is not
  files.contents["\\Kelvane\\HN.WT"] += "more";
  TypefaceTable[1].Widths.fill(7);
  LoadWidthTables();
  EXPECT_EQ(TypefaceTable[1].Widths[9], TestWidth(1, 9));
  EXPECT_EQ(TypefaceTable[1].Widths[10], 0);
  EXPECT_EQ(TypefaceTable[4].Widths[255], TestWidth(4, 255));
}

TEST_F(WidthFilesTest, AMissingFileIsNamed) {
  files.contents.erase("\\Kelvane\\GI.WT");
  EXPECT_EQ(FailureOf(LoadWidthTables), "ERROR - Unknown typeface: GI");
}

TEST_F(MetricsTest, AdvancesFollowTypefaceAndSize) {
  EXPECT_EQ(Measure(""), 0);
  EXPECT_FLOAT_EQ(Measure("x"), 5);
  EXPECT_FLOAT_EQ(MeasureRun("\x41", 2, 12), 12 * TestWidth(2, 0x41) / 1000);
  EXPECT_FLOAT_EQ(Measure("A\xE5"
                          "A"),
                  (TestWidth(0, 'A') + TestWidth(5, 'A')) / 100);
  EXPECT_EQ(Measure("\xE1\xE2\xEF"), 0);
  EXPECT_FLOAT_EQ(Measure("x\xFE\xFFx"), 5 + 1.2F + 1.2F + 5);
  EXPECT_FLOAT_EQ(Measure("x\xFC\xFD"), 5);
  // A number that is no typeface is measured as it is drawn.
  EXPECT_FLOAT_EQ(MeasureRun("A", 16, 10), MeasureRun("A", 0, 10));
  EXPECT_FLOAT_EQ(MeasureRun("A", -1, 10), MeasureRun("A", 0, 10));
}

TEST_F(MetricsTest, ScriptsGoBackOrForward) {
  EXPECT_FLOAT_EQ(Measure("x\xF0x\xF1"), 5);       // set over the run: back to where it began
  EXPECT_FLOAT_EQ(Measure("x\xF0x\xF2"), 9);       // behind it
  EXPECT_FLOAT_EQ(Measure("x\xF3x\xF5x"), 14);     // and the size is the old one again
  EXPECT_FLOAT_EQ(Measure("x\xF6x"), 9.9F);        // italic superscripts lean out,
  EXPECT_FLOAT_EQ(Measure("x\xF6x\xF8"), 9);       // and the shift is taken back
  EXPECT_FLOAT_EQ(Measure("x\xF9x"), 8.4F);        // italic subscripts lean in
  EXPECT_FLOAT_EQ(Measure("x\xF9x\xFB"), 9);       //
  EXPECT_FLOAT_EQ(Measure("x\xF6x\xF7x"), 10);     // the saved place is the one before the shift
  EXPECT_FLOAT_EQ(Measure("x\xF0x\xF3x"), 12.2F);  // nested: 0.64 of the size
}

TEST_F(MetricsTest, ScriptsThatNobodyOpenedChangeNothing) {
  for (int code = 241; code <= 251; ++code) {
    if ((code - 240) % 3 == 0) continue;
    EXPECT_FLOAT_EQ(Measure(std::string("x") + static_cast<char>(code) + "x"), 10) << code;
  }
}

TEST_F(MetricsTest, TheFortyFirstScriptIsIgnored) {
  const std::string forty(40, '\xF6');
  const float deep = Measure(forty);
  EXPECT_EQ(Measure(forty + "\xF6"), deep);
  EXPECT_EQ(Measure(forty + "\xF6x"), Measure(forty + "x"));
  // Forty codes close them all.
  EXPECT_NEAR(Measure(forty + std::string(41, '\xF7') + "x"), 5, 1e-4);
}

TEST_F(MetricsTest, WidthsThatAreNoNumbersAdvanceNothing) {
  EXPECT_EQ(MeasureRun("xyz", 14, 10), 0);
  TypefaceTable[0].Widths['y'] = std::numeric_limits<float>::quiet_NaN();
  TypefaceTable[0].Widths['z'] = std::numeric_limits<float>::infinity();
  EXPECT_FLOAT_EQ(Measure("xyz"), 5);
  TypefaceTable[0].WidthUnit = 0;
  EXPECT_EQ(Measure("x"), 0);
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
