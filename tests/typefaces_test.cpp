#include "typography/typefaces.h"

#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "tests/support/program_test.h"

namespace kelvane {
namespace {

class TypefacesTest : public ProgramTest {
 protected:
  FakeLabel& Label() { return static_cast<FakeLabel&>(*FontLabel); }
};

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
  EXPECT_EQ(Label().text, "Math1 12.00pts");
  EXPECT_EQ(Label().repaints, 1);
}

TEST_F(TypefacesTest, FirstChoiceIsTheBaseFontAndHasTheOnlyCheckMark) {
  ChooseFont(3);
  ChooseFont(13);
  EXPECT_EQ(BaseFont, 13);
  EXPECT_EQ(CurrentFont, 13);
  EXPECT_EQ(PendingRun, "");
  EXPECT_EQ(CheckMarks(FontMenu), "0000000000000100");
  EXPECT_EQ(Label().text, "Math1 11.00pts");
  CheckFontMenu(16);
  EXPECT_EQ(CheckMarks(FontMenu), "0000000000000000");
}

TEST_F(TypefacesTest, LaterChoicesSwitchWithinTheRun) {
  CheckFontMenu(BaseFont);
  CursorMode = -1;
  TypeKey('x');
  for (const std::int16_t font : {1, 1, 0}) {
    ChooseFont(font);
    EXPECT_EQ(CurrentFont, font);
  }
  EXPECT_EQ(PendingRun, "x\xE1\xE0");
  EXPECT_EQ(Text4->Text(), PendingRun);
  EXPECT_EQ(BaseFont, 0);
  EXPECT_EQ(CheckMarks(FontMenu), "1000000000000000");
}

TEST_F(TypefacesTest, SizeBoxTakesTheLeadingNumber) {
  BaseFont = 4;
  CurrentFont = 9;
  SizeBoxChanged("12abc");
  EXPECT_EQ(FontSize, 12);
  EXPECT_EQ(CurrentFont, 4);
  EXPECT_EQ(Label().text, "Helvetica 12.00pts");
  SizeBoxChanged("");
  EXPECT_EQ(Label().text, "Helvetica .00pts");
  SizeBoxChanged("nan");
  EXPECT_EQ(FontSize, 0);
}

}  // namespace
}  // namespace kelvane
