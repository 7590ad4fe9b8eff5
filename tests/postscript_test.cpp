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
constexpr char kExpandedProlog[] =
    "%!PS-Adobe-3.0\r\n%%Creator: Kelvane\r\n595.5 840 0 840\r\n\r\n<< /A <tx> >>\r\n";
constexpr char kTrailer[] = "%-------\r\n\tgsave showpage grestore /FN -1 def\r\n%-------\r\n";
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
  const std::vector<std::pair<std::string, std::string>> lines = {
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
    files.contents[ProgramFolder + "QRX.PRO"] = line + "\r\nend";
    EXPECT_EQ(Prologue(), expanded + "\r\nend\r\n");
  }
}

TEST_F(PostScriptTest, CopiesThePageLineByLine) {
  const std::string page =
      "10 20 m 11 F0 (a(b)c\\d\xF0) 1 s\r\n"
      "\r\n"
      "1 2 m )no run( 1 s\n"
      "\"(quoted) first\r\n"
      "0 0 m 10 lw 5 5 rl stroke\r"
      "( open\r\n"
      "() 5 s";
  EXPECT_EQ(JobOf(page), std::string(kExpandedProlog) +
                             "10 20 m 11 F0 (a\\(b\\)c\\\\d\xF0) 1 s\r\n"
                             "1 2 m )no run( 1 s\r\n"
                             "\"(quoted) first\r\n"
                             "0 0 m 10 lw 5 5 rl stroke\r\n"
                             "( open\r\n"
                             "() 5 s\r\n" +
                             kTrailer + kEnd);
  EXPECT_EQ(JobOf(""), std::string(kExpandedProlog) + kTrailer + kEnd);
}

TEST_F(PostScriptTest, PrintsRunsLongerThanFieldPositionsReach) {
  const std::string run(40000, '(');
  std::string escaped;
  for (std::size_t i = 0; i < run.size(); ++i) escaped += "\\(";
  EXPECT_EQ(JobOf("1 1 m 9 F0 (" + run + ") 1 s\r\n"),
            std::string(kExpandedProlog) + "1 1 m 9 F0 (" + escaped + ") 1 s\r\n" + kTrailer + kEnd);
}

TEST_F(PostScriptTest, PrintsThePagesOfAPaperWithGaps) {
  for (const char* number : {"000", "001", "002", "010", "999", "1000"}) {
    files.contents[std::string("\\P.q\\A.") + number] = std::string("page ") + number + "\r\n";
  }
  files.contents["\\P.q\\B.003"] = "another paper\r\n";
  std::string expected = kExpandedProlog;
  for (const char* number : {"001", "002", "010", "999"}) {
    expected += std::string("page ") + number + "\r\n" + kTrailer;
  }
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
  EXPECT_EQ(dialogs.asked, std::vector<std::string>{"Open: Open, *.001|*.001, \\P\\A.001"});
  EXPECT_EQ(
      files.contents.at("\\P\\A.PS"),
      std::string(kExpandedProlog) + "5 10 m 9 F0 (high) 1 s\r\n5 90 m 9 F0 (low) 1 s\r\n" + kTrailer + kEnd);
}

TEST_F(PostScriptTest, WritesNothingWhenCancelledOrWhenAFileIsMissing) {
  files.contents["\\P\\A.001"] = "page\r\n";
  files.contents["\\P\\A.PS"] = "somebody's";
  auto before = files.contents;
  dialogs.AnswerOpen("");
  PrintPaper();
  EXPECT_EQ(files.contents, before);

  dialogs.AnswerOpen("\\P\\C.001");
  EXPECT_NE(FailureOf(PrintOnePage).find("C.001"), std::string::npos);
  EXPECT_EQ(files.contents, before);

  files.unreadable.insert("\\P\\A.002");
  dialogs.AnswerOpen("\\P\\A.001");
  EXPECT_NE(FailureOf(PrintPaper).find("A.002"), std::string::npos);
  EXPECT_EQ(files.contents, before);

  files.contents.erase(ProgramFolder + "QRX.PRO");
  before = files.contents;
  dialogs.AnswerOpen("\\P\\A.001");
  EXPECT_NE(FailureOf(PrintOnePage).find("QRX.PRO"), std::string::npos);
  EXPECT_EQ(files.contents, before);
}

TEST_F(PostScriptTest, AsksBeforeItReplacesAFileOfAnotherProgram) {
  files.contents["\\P\\A.001"] = "page\r\n";
  const std::string job = OnePageJob("\\P\\A.001");
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
  EXPECT_EQ(files.contents.at("\\P\\A.PS"), std::string(kExpandedProlog) + "changed\r\n" + kTrailer + kEnd);
}

TEST_F(PostScriptTest, RefusesToReplaceThePageItPrints) {
  files.contents["\\P\\A.PS"] = std::string(kExpandedProlog);
  files.contents["\\P\\B.001"] = "page\r\n";
  files.links["\\P\\B.PS"] = "\\P\\B.001";
  const auto before = files.contents;
  dialogs.AnswerOpen("\\P\\A.PS");
  EXPECT_NE(FailureOf(PrintOnePage).find("A.PS"), std::string::npos);
  dialogs.AnswerOpen("\\P\\B.001");
  EXPECT_NE(FailureOf(PrintOnePage).find("B.001"), std::string::npos);
  EXPECT_EQ(files.contents, before);
}

TEST_F(PostScriptTest, KeepsTheOldOutputWhenWritingFails) {
  files.contents["\\P\\A.001"] = "page\r\n";
  files.contents["\\P\\A.PS"] = std::string(kExpandedProlog) + "old job";
  const auto before = files.contents;
  for (const FileStep step : {FileStep::Create, FileStep::Write, FileStep::Close, FileStep::Rename}) {
    files.FailStep(step);
    dialogs.AnswerOpen("\\P\\A.001");
    FailureOf(PrintOnePage);
    EXPECT_EQ(files.contents, before);
  }
}

}  // namespace
}  // namespace kelvane
