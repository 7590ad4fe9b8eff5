#include "typography/colours.h"

#include "tests/support/program_test.h"

namespace kelvane {
namespace {

class ColoursTest : public ProgramTest {
 protected:
  template <typename Entries>
  static std::string Checked(const Entries& entries) {
    std::string checked;
    for (const MenuEntry* entry : entries) checked += entry->Checked() ? '1' : '0';
    return checked;
  }
};

TEST_F(ColoursTest, ComponentsAreTheBytesOfAValue) {
  for (const std::int32_t value : {0x000000, 0x0000FF, 0x000080, 0xFF0000, 0x008000, 0xFFFFFF, 0x12AB0F}) {
    EXPECT_EQ(ColourRed(value), value & 0xFF) << value;
    EXPECT_EQ(ColourGreen(value), value >> 8 & 0xFF) << value;
    EXPECT_EQ(ColourBlue(value), value >> 16 & 0xFF) << value;
  }
}

TEST_F(ColoursTest, PaletteIsTheStandardOne) {
  EXPECT_EQ(PaletteColour(4), 0x000080);  // dark red
  EXPECT_EQ(PaletteColour(kBlue), 0xFF0000);
  EXPECT_EQ(PaletteColour(12), 0x0000FF);  // red
  EXPECT_EQ(PaletteColour(kWhite), 0xFFFFFF);
  EXPECT_EQ(PaletteColour(16), PaletteColour(kBlack));
  EXPECT_EQ(PaletteColour(-1), PaletteColour(kBlack));
}

TEST_F(ColoursTest, MenusHaveOneCheckMark) {
  ChooseColour(3);
  ChooseColour(15);
  EXPECT_EQ(LineColour, 15);
  EXPECT_EQ(Checked(ColourMenu), "0000000000000001");
  CheckColourMenu(16);
  EXPECT_EQ(Checked(ColourMenu), "0000000000000000");

  ChooseThickness(0.1);
  EXPECT_EQ(LineWidth, 0.1);
  EXPECT_EQ(Checked(ThicknessMenu), "1000000");
  ChooseThickness(2);
  EXPECT_EQ(Checked(ThicknessMenu), "0000001");
  // A width that was read back from seven digits is none of the seven.
  CheckThicknessMenu(0.1000001);
  EXPECT_EQ(Checked(ThicknessMenu), "0000000");
}

}  // namespace
}  // namespace kelvane
