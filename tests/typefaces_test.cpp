#include "typography/typefaces.h"

#include "tests/support/program_test.h"

namespace kelvane {
namespace {

using TypefacesTest = ProgramTest;

// Page files know typefaces by their numbers; each has the widths of its own file.
TEST_F(TypefacesTest, NumbersKeepTheirWidthFiles) {
  std::string names;
  for (const TypefaceRecord& face : TypefaceTable) names += face.Name + '|';
  EXPECT_EQ(names, "TN|TB|TI|TX|HN|HB|HI|HX|GN|CB|GI|ZI|MATH0||||");
}

TEST_F(TypefacesTest, LabelTellsNameAndSize) {
  EXPECT_EQ(FontLabelText(0, 0.5F), "Times-Roman .50pts");
  EXPECT_EQ(FontLabelText(0, 0), "Times-Roman .00pts");
  EXPECT_EQ(FontLabelText(10, 10.125F), "Symbol-Italic 10.13pts");
  EXPECT_EQ(FontLabelText(16, 9), " 9.00pts");
  EXPECT_EQ(FontLabelText(-1, 9), " 9.00pts");
  ShowFontLabel(13, 12);
  EXPECT_EQ(FontLabel->Text(), "Math1 12.00pts");
  EXPECT_EQ(static_cast<FakeLabel&>(*FontLabel).repaints, 1);
  CheckFontMenu(16);
  EXPECT_EQ(CheckMarks(FontMenu), "0000000000000000");
}

}  // namespace
}  // namespace kelvane
