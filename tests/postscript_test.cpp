#include "output/postscript.h"

#include <string>
#include <utility>
#include <vector>

#include "document/page.h"
#include "document/paper.h"
#include "editing/cursor.h"
#include "tests/support/program_test.h"
#include "typography/view.h"

namespace kelvane {
namespace {

constexpr char kProlog[] = "%!PS\r\n%%Creator: Kelvane\r\n<pw> <ph> <tx> <ty>\r\n\r\n<< /A <tx> >>\r\n";
const std::string kExpandedProlog = "%!PS\r\n%%Creator: Kelvane\r\n595.5 840 0 840\r\n\r\n<< /A <tx> >>\r\n";
const std::string kTrailer = "%-------\r\n\tgsave showpage grestore /FN -1 def\r\n%-------\r\n";
constexpr char kEnd[] = "\x04";

class PostScriptTest : public ProgramTest {
 protected:
  PostScriptTest() {
    PaperWidth = 595.5F;
    PaperHeight = 840;
    files.contents[ProgramFolder + "QRX.PRO"] = kProlog;
  }

  std::string JobOf(const std::string& page) {
    files.contents["\\P\\A.001"] = page;
    return OnePageJob("\\P\\A.001");
  }
};

TEST_F(PostScriptTest, EscapesRunsLongerThanFieldsReach) {
  std::string escaped;
  for (int i = 0; i < 40000; ++i) escaped += "\\(";
  EXPECT_EQ(JobOf("1 1 m 9 F0 (" + std::string(40000, '(') + ") 1 s\r\n"),
            kExpandedProlog + "1 1 m 9 F0 (" + escaped + ") 1 s\r\n" + kTrailer + kEnd);
}

// Such a page would print as several sheets. The lines may stand on it alone, or where they end it anyway.
TEST_F(PostScriptTest, RefusesAPageThatHoldsTheEndOfAPage) {
  const std::string rule = "%-------\n";
  const std::string show = "\tgsave showpage grestore /FN -1 def\n";
  for (const std::string& page : {rule + show + rule, rule + rule + show + "\n" + rule + "1 2\n"}) {
    const std::string message = FailureOf([&] { JobOf(page); });
    EXPECT_NE(message.find("/P/A.001"), std::string::npos) << message;
  }
  for (const std::string& page : {rule + show, rule + rule + rule, show + rule, rule + " \n" + show + rule})
    EXPECT_TRUE(JobOf(page).ends_with(kTrailer + kEnd));
  files.contents["\\P\\A.001"] = rule + show;
  files.contents["\\P\\A.002"] = show + rule;
  EXPECT_NE(FailureOf([] { WholePaperJob("\\P\\A.001"); }).find("/P/A.002"), std::string::npos);
}

TEST_F(PostScriptTest, PrintsThePagesOfAPaperWithGaps) {
  for (const std::string number : {"000", "001", "002", "010", "999", "1000"})
    files.contents["\\P.q\\A." + number] = "page " + number + "\r\n";
  files.contents["\\P.q\\B.003"] = "another paper\r\n";
  std::string expected = kExpandedProlog;
  for (const char* number : {"001", "002", "010", "999"})
    expected += std::string("page ") + number + "\r\n" + kTrailer;
  EXPECT_EQ(WholePaperJob("\\P.q\\A.010"), expected + kEnd);
}

TEST_F(PostScriptTest, StoresThePageBeforeItIsPrinted) {
  CurrentPaperFile = "\\P\\A.001";
  files.contents["\\P\\A.001"] = "old\r\n";
  ReadPage("\\P\\A.001");
  PageText = "5 90 m 9 F0 (low) 1 s\r\n5 10 m 9 F0 (high) 1 s\r\n";
  PageChanged = 1;
  CursorMode = -3;
  PaperFolder = "\\Elsewhere\\";
  dialogs.AnswerOpen("\\P\\A.001");
  PrintOnePage();
  EXPECT_EQ(CursorMode, 0);
  EXPECT_EQ(dialogs.asked, std::vector<std::string>{"Open: Open, *.001|*.001, \\P\\A.001, Print"});
  EXPECT_EQ(files.contents.at("\\P\\A.PS"),
            kExpandedProlog + "5 10 m 9 F0 (high) 1 s\r\n5 90 m 9 F0 (low) 1 s\r\n" + kTrailer + kEnd);
}

TEST_F(PostScriptTest, WritesNothingWhenCancelledOrWhenAFileIsMissingOrItself) {
  files.contents["\\P\\A.001"] = "page\r\n";
  files.contents["\\P\\A.PS"] = kExpandedProlog;
  files.contents["\\P\\B.001"] = "page\r\n";
  files.links["\\P\\B.PS"] = "\\P\\B.001";
  files.unreadable.insert("\\P\\A.002");
  auto before = files.contents;
  dialogs.AnswerOpen("");
  PrintPaper();
  EXPECT_EQ(files.contents, before);

  const auto expectFailure = [&](std::string (*print)(), const std::string& chosen, const char* named) {
    dialogs.AnswerOpen("\\P\\" + chosen);
    const std::string message = FailureOf(print);
    EXPECT_NE(message.find(named), std::string::npos) << message;
    EXPECT_EQ(files.contents, before);
  };
  expectFailure(PrintOnePage, "C.001", "C.001");
  expectFailure(PrintPaper, "A.001", "A.002");
  expectFailure(PrintOnePage, "A.PS", "A.PS");
  expectFailure(PrintOnePage, "B.001", "B.001");
  files.contents.erase(ProgramFolder + "QRX.PRO");
  before = files.contents;
  expectFailure(PrintOnePage, "A.001", "QRX.PRO");
}

TEST_F(PostScriptTest, AsksBeforeItReplacesAFileOfAnotherProgram) {
  const std::string job = JobOf("page\r\n");
  const std::string other = "%!PS-Adobe-3.0\r\n%%Creator: another\r\n";
  files.contents["\\P\\A.PS"] = other;

  dialogs.AnswerOpen("\\P\\A.001");
  dialogs.AnswerNo();
  PrintOnePage();
  EXPECT_EQ(dialogs.asked.back(), "Replace /P/A.PS? [No]");
  EXPECT_EQ(files.contents.at("\\P\\A.PS"), other);

  dialogs.AnswerOpen("\\P\\A.001");
  dialogs.AnswerYes();
  PrintOnePage();
  EXPECT_EQ(files.contents.at("\\P\\A.PS"), job);

  // A job of the program's own, of whatever page, goes without a question, one with an older header too.
  files.contents["\\P\\A.PS"].replace(0, 4, "%!PS-Adobe-3.0");
  files.contents["\\P\\A.001"] = "changed\r\n";
  dialogs.AnswerOpen("\\P\\A.001");
  PrintPaper();
  EXPECT_EQ(files.contents.at("\\P\\A.PS"), kExpandedProlog + "changed\r\n" + kTrailer + kEnd);
}

}  // namespace
}  // namespace kelvane
