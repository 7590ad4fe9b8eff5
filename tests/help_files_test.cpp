#include "help/help_files.h"

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/program_test.h"

namespace kelvane {
namespace {

class HelpFilesTest : public ProgramTest {
 protected:
  void Index(const std::string& help) {
    files.contents[ProgramFolder + "QRX.HLP"] = help;
    IndexHelpFile();
  }
  std::string& Contents() { return files.contents[ProgramFolder + "QRX.HCT"]; }
  std::string& IndexList() { return files.contents[ProgramFolder + "QRX.HIX"]; }

  static std::string IndexLine(const std::string& text, const std::string& page) {
    return text + std::string(80, ' ') + "<#" + page + ">\r\n";
  }
};

TEST_F(HelpFilesTest, FindsWhereEachPageStarts) {
  Index("intro\r\n<PAGE>\r\n\r\nx\n<page> <PAGE>\rmore <Page>");
  EXPECT_EQ(HelpPageStarts, (std::vector<std::int64_t>{7, 19, 33}));
}

TEST_F(HelpFilesTest, MakesOnlyTheListThatIsMissing) {
  Contents() = "kept";
  Index("<PAGE>\r\n<H1>One</H1>\r\n");
  EXPECT_EQ(Contents(), "kept");
  EXPECT_EQ(IndexList(), IndexLine("One", "1"));
  files.contents.erase(ProgramFolder + "QRX.HCT");
  Index("<PAGE>\r\n<H1>Two</H1>\r\n");
  EXPECT_EQ(Contents(), "<H1 #1>Two</H1>\r\n");
  EXPECT_EQ(IndexList(), IndexLine("One", "1"));
}

TEST_F(HelpFilesTest, RefusesAMissingTextAndMoreThanAHundredPages) {
  EXPECT_EQ(FailureOf(IndexHelpFile), "ERROR: Missing file QRX.HLP");
  std::string help;
  for (int page = 0; page < 100; ++page) help += "<PAGE>\r\n";
  Index(help);
  EXPECT_EQ(HelpPageStarts.size(), 100U);
  files.contents.clear();
  EXPECT_NE(FailureOf([&] { Index(help + "<PAGE>"); }).find("QRX.HLP"), std::string::npos);
  EXPECT_EQ(files.contents.size(), 1U) << "a list was made";
  EXPECT_EQ(HelpPageStarts.size(), 100U);
}

TEST_F(HelpFilesTest, GoesOnWhereTheListsCannotBeWritten) {
  files.FailStep(FileStep::Write);
  Index("<PAGE>\r\n<H1>One</H1>\r\n");
  EXPECT_EQ(HelpPageStarts.size(), 1U);
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_NE(dialogs.messages[0].find("QRX"), std::string::npos) << dialogs.messages[0];
  EXPECT_EQ(files.contents.size(), 1U) << "half of a list was left behind";
}

}  // namespace
}  // namespace kelvane
