#include "output/plain_text.h"

#include <string>

#include "tests/support/program_test.h"

namespace kelvane {
namespace {

class PlainTextTest : public ProgramTest {};

TEST_F(PlainTextTest, AsksBeforeItReplacesATextItDidNotWrite) {
  files.contents["\\P\\A.002"] = "1 2 m 11 F0 (words) 1 s\r\n";
  files.contents["\\P\\A.TXT"] = "somebody's";
  const auto expectText = [&](const char* text) {
    OutputAsText();
    EXPECT_EQ(files.contents.at("\\P\\A.TXT"), text);
  };
  dialogs.AnswerOpen("");
  expectText("somebody's");

  dialogs.AnswerOpen("\\P\\A.002");
  dialogs.AnswerNo();
  expectText("somebody's");
  EXPECT_EQ(dialogs.asked.back(), "Replace /P/A.TXT? [No]");

  dialogs.AnswerOpen("\\P\\A.002");
  dialogs.AnswerYes();
  expectText("words\r\n\r\n");

  files.contents["\\P\\A.002"] = "1 2 m 11 F0 (others) 1 s\r\n";
  dialogs.AnswerOpen("\\P\\A.002");
  expectText("others\r\n\r\n");
}

}  // namespace
}  // namespace kelvane
