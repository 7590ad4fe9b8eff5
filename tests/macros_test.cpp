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

TEST_F(MacrosTest, ChangesOfTwoInstancesGoTogether) {
  std::string& file = files.contents[ProgramFolder + "QRX.MCR"];
  file = "zero\none\n";
  ReadMacros();
  KeepMacros();
  EXPECT_EQ(file, "zero\none\n") << "nothing was changed here";
  SetMacroCaption(1, "mine");
  file = "other\r\nother\r\n\r\nother\r\n";
  KeepMacros();
  EXPECT_EQ(file, "other\r\nmine\r\n\r\nother\r\nm4\r\nm5\r\nm6\r\nm7\r\nm8\r\nm9\r\n");
  EXPECT_EQ(AllCaptions(), "other|mine||other|m4|m5|m6|m7|m8|m9|");
  file = "other\r\nlater\r\n";
  KeepMacros();
  EXPECT_EQ(file, "other\r\nlater\r\n") << "what was written is no change any more";
}

TEST_F(MacrosTest, AFileThatCannotBeReadIsNotReplaced) {
  const std::string path = ProgramFolder + "QRX.MCR";
  files.contents[path] = "zero\r\n";
  files.unreadable.insert(path);
  EXPECT_THROW(ReadMacros(), Failure);
  KeepMacros();
  SetMacroCaption(1, "mine");
  EXPECT_THROW(KeepMacros(), Failure);
  EXPECT_EQ(files.contents.at(path), "zero\r\n");
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
