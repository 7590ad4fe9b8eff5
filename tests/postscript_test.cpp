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

constexpr char kProlog[] =
    "%!PS-Adobe-3.0\r\n%%Creator: Kelvane\r\n<pw> <ph> <tx> <ty>\r\n\r\n<< /A <tx> >>\r\n";
const std::string kExpandedProlog =
    "%!PS-Adobe-3.0\r\n%%Creator: Kelvane\r\n595.5 840 0 840\r\n\r\n<< /A <tx> >>\r\n";
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

TEST_F(PostScriptTest, ExpandsThePlaceholdersOfTheProlog) {
  const std::pair<const char*, const char*> lines[] = {
      {"<tx> <ty> translate", "0 840 translate"},
      {"<ph><pw>", "840595.5"},
      {"<< <pw> >>", "<< <pw> >>"},
      {"[<pw> <ph>] <<", "[<pw> <ph>] <<"},
      {"<48656C> <TX> <> <pw>", "<48656C> <TX> <> 595.5"},
      {"x 3 > <tx", "x 3 > <tx"},
      {"> <ty> <", "> 840 <"},
      {"", ""},
  };
  for (const auto& [line, expanded] : lines) {
    files.contents[ProgramFolder + "QRX.PRO"] = line + std::string("\r\nend");
    EXPECT_EQ(Prologue(), expanded + std::string("\r\nend\r\n"));
  }
}

TEST_F(PostScriptTest, CopiesThePageLineByLine) {
  // Longer than positions of fields reach.
  const std::string run(40000, '(');
  std::string escaped;
  for (std::size_t i = 0; i < run.size(); ++i) escaped += "\\(";
  const std::pair<std::string, std::string> pages[] = {
      {"", ""},
      {"10 20 m 11 F0 (a(b)c\\d\xF0) 1 s\r\n"
       "\r\n"
       "1 2 m )no run( 1 s\n"
       "\"(quoted) first\r\n"
       "0 0 m 10 lw 5 5 rl stroke\r"
       "( open\r\n"
       "() 5 s",
       "10 20 m 11 F0 (a\\(b\\)c\\\\d\xF0) 1 s\r\n"
       "1 2 m )no run( 1 s\r\n"
       "\"(quoted) first\r\n"
       "0 0 m 10 lw 5 5 rl stroke\r\n"
       "( open\r\n"
       "() 5 s\r\n"},
      {"1 1 m 9 F0 (" + run + ") 1 s\r\n", "1 1 m 9 F0 (" + escaped + ") 1 s\r\n"},
  };
  for (const auto& [page, printed] : pages)
    EXPECT_EQ(JobOf(page), kExpandedProlog + printed + kTrailer + kEnd);
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

  // A job of the program's own, of whatever page, goes without a question.
  files.contents["\\P\\A.001"] = "changed\r\n";
  dialogs.AnswerOpen("\\P\\A.001");
  PrintPaper();
  EXPECT_EQ(files.contents.at("\\P\\A.PS"), kExpandedProlog + "changed\r\n" + kTrailer + kEnd);
}

}  // namespace
}  // namespace kelvane
