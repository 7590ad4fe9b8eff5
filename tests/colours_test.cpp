#include "typography/colours.h"

#include "tests/support/program_test.h"

namespace kelvane {
namespace {

using ColoursTest = ProgramTest;

TEST_F(ColoursTest, PaletteIsTheStandardOneInBlueGreenRed) {
  // Dark ones first; brown is the dark yellow.
  std::int16_t number = 0;
  for (const ColourValue value :
       {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0, 0x808080, 0xFF0000,
        0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF})
    EXPECT_EQ(PaletteColour(number++), value);
  EXPECT_EQ(PaletteColour(16), PaletteColour(kBlack));
  EXPECT_EQ(PaletteColour(-1), PaletteColour(kBlack));
  for (const std::int32_t value : {0x000000, 0x0000FF, 0x008000, 0xFF0000, 0xFFFFFF, 0x12AB0F}) {
    EXPECT_EQ(ColourRed(value), value & 0xFF) << value;
    EXPECT_EQ(ColourGreen(value), value >> 8 & 0xFF) << value;
    EXPECT_EQ(ColourBlue(value), value >> 16 & 0xFF) << value;
  }
}

TEST_F(ColoursTest, MenusHaveOneCheckMark) {
  ChooseColour(3);
  ChooseColour(15);
  EXPECT_EQ(LineColour, 15);
  EXPECT_EQ(CheckMarks(ColourMenu), "0000000000000001");
  CheckColourMenu(16);
  EXPECT_EQ(CheckMarks(ColourMenu), "0000000000000000");
  ChooseThickness(0.1);
  ChooseThickness(2);
  EXPECT_EQ(LineWidth, 2);
  EXPECT_EQ(CheckMarks(ThicknessMenu), "0000001");
  // A width that was read back from seven digits is none of the seven.
  CheckThicknessMenu(0.1000001);
  EXPECT_EQ(CheckMarks(ThicknessMenu), "0000000");
}

}  // namespace
}  // namespace kelvane
