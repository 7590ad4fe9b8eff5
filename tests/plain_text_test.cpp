#include "output/plain_text.h"

#include <string>
#include <utility>

#include "tests/support/program_test.h"

namespace kelvane {
namespace {

class PlainTextTest : public ProgramTest {};

TEST_F(PlainTextTest, HasALineForEachRunAndAnEmptyOne) {
  const std::pair<const char*, const char*> pages[] = {
      {"", "\r\n"},
      {"0 0 m 10 lw 5 5 rl stroke\r\n", "\r\n"},
      {"1 2 m 11 F0 (x\3602) 1 s\r\n", "x2\r\n\r\n"},
      {"1 2 m 11 F0 (\xE0\xFF) 1 s\r\n", "\r\n\r\n"},
      {"1 2 m 11 F0 () 1 s\r\n", "\r\n\r\n"},
      {") before (\r\n", "\r\n"},
      {"1 2 m 11 F0 (f(x) \\ \xDF) 1 s\n\n1 3 m 11 F0 (b) 1 40 a", "f(x) \\ \xDF\r\nb\r\n\r\n"},
      {"\"1 2 m 11 F0 (quoted) 1 s\r\n1 2 m 11 F0 (next) 1 s\r\n", "quoted\r\nnext\r\n\r\n"},
  };
  for (const auto& [page, text] : pages) {
    files.contents["\\P\\A.001"] = page;
    EXPECT_EQ(PlainText("\\P\\A.001"), text) << page;
  }
}

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
