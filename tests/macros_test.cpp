#include "macros/macros.h"

#include <string>

#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "tests/support/program_test.h"

namespace kelvane {
namespace {

class MacrosTest : public ProgramTest {
 protected:
  static std::string AllCaptions() {
    std::string all;
    for (int number = 0; number < kMacros; ++number) all += MacroCaption(number) + "|";
    return all;
  }
};

TEST_F(MacrosTest, KeepsTextsThroughTheFile) {
  const std::string codes = "\xF0(2)\xF1(x) & \\ \"\xE4";
  SetMacroCaption(0, codes);
  SetMacroCaption(1, std::string("line\r\nend\0!", 10));
  SetMacroCaption(9, "");
  const std::string captions = AllCaptions();
  WriteMacros();
  EXPECT_EQ(files.contents.at(ProgramFolder + "QRX.MCR"),
            codes + "\r\nline  end \r\nm2\r\nm3\r\nm4\r\nm5\r\nm6\r\nm7\r\nm8\r\n\r\n");
  ResetMacros();
  ReadMacros();
  EXPECT_EQ(AllCaptions(), captions);
}

TEST_F(MacrosTest, ShowsTheTextItselfInTheMenuAndKeepsItWithoutOne) {
  SetMacroCaption(3, "a & b");
  const auto* entry = static_cast<FakeMenuEntry*>(MacroMenu[3]);
  EXPECT_EQ(entry->caption, "a & b");
  EXPECT_TRUE(entry->literal);
  MacroMenu[3] = nullptr;
  SetMacroCaption(3, "later");
  EXPECT_EQ(MacroCaption(3), "later");
}

}  // namespace
}  // namespace kelvane
