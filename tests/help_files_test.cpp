#include "help/help_files.h"

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/program_test.h"

namespace kelvane {
namespace {

class HelpFilesTest : public ProgramTest {
 protected:
  std::string Index(const std::string& help) {
    files.contents[ProgramFolder + "QRX.HLP"] = help;
    IndexHelpFile();
    return files.contents[ProgramFolder + "QRX.HCT"];
  }

  static std::string IndexLine(const std::string& text, const std::string& page) {
    return text + std::string(80, ' ') + "<#" + page + ">\r\n";
  }
};

TEST_F(HelpFilesTest, FindsWhereEachPageStarts) {
  const std::string help = "intro\r\n<PAGE>\r\n\r\nx\n<page> <PAGE>\rmore <Page>";
  Index(help);
  const std::vector<std::int64_t> starts = {7, 19, 33};
  EXPECT_EQ(HelpPageStarts, starts);
  EXPECT_EQ(help.substr(19, 6), "<page>");
}

TEST_F(HelpFilesTest, ListsHeadingsWithTheirPages) {
  Index(
      "<H1>Before</H1>\r\n"
      "<PAGE>\r\n"
      "<H2>Drawing lines</H2>\r\n"
      "see <h3>Lines & Curves</H3> too\r\n"
      "<H4></H4> <H5>Five</h5>\r\n"
      "<H6>Six</H6>\r\n"
      "</H1>turned<H1>\r\n"
      "<H2>open\r\n"
      "</H2>\r\n"
      "<PAGE><H2>Same line</H2>\r\n"
      "<H3>Three</H3><H1>One</H1>\r\n");
  EXPECT_EQ(files.contents.at(ProgramFolder + "QRX.HCT"),
            "<H1 #0>Before</H1>\r\n"
            "<H2 #1>Drawing lines</H2>\r\n"
            "see <h3 #1>Lines & Curves</H3> too\r\n"
            "<H4></H4> <H5 #1>Five</h5>\r\n"
            "<PAGE><H2 #2>Same line</H2>\r\n"
            "<H3>Three</H3><H1 #2>One</H1>\r\n"
            "<H3 #2>Three</H3><H1>One</H1>\r\n");
  EXPECT_EQ(files.contents.at(ProgramFolder + "QRX.HIX"),
            IndexLine("Before", "0") + IndexLine("Drawing lines", "1") + IndexLine("Lines & Curves", "1") +
                IndexLine("Five", "1") + IndexLine("Six", "1") + IndexLine("Same line", "2") +
                IndexLine("One", "2") + IndexLine("Three", "2"));
}

TEST_F(HelpFilesTest, MakesOnlyTheListThatIsMissing) {
  files.contents[ProgramFolder + "QRX.HCT"] = "kept";
  EXPECT_EQ(Index("<PAGE>\r\n<H1>One</H1>\r\n"), "kept");
  EXPECT_EQ(files.contents.at(ProgramFolder + "QRX.HIX"), IndexLine("One", "1"));
  files.contents[ProgramFolder + "QRX.HIX"] = "kept too";
  files.contents.erase(ProgramFolder + "QRX.HCT");
  EXPECT_EQ(Index("<PAGE>\r\n<H1>Two</H1>\r\n"), "<H1 #1>Two</H1>\r\n");
  EXPECT_EQ(files.contents.at(ProgramFolder + "QRX.HIX"), "kept too");
}

TEST_F(HelpFilesTest, RefusesAMissingTextAndMoreThanAHundredPages) {
  EXPECT_EQ(FailureOf(IndexHelpFile), "ERROR: Missing file QRX.HLP");

  std::string help;
  for (int page = 0; page < 100; ++page) help += "<PAGE>\r\n";
  Index(help);
  EXPECT_EQ(HelpPageStarts.size(), 100U);
  EXPECT_EQ(HelpPageStarts.back(), 99 * 8);

  files.contents.clear();
  EXPECT_NE(FailureOf([&] { Index(help + "<PAGE>"); }).find("QRX.HLP"), std::string::npos);
  EXPECT_FALSE(files.contents.contains(ProgramFolder + "QRX.HIX"));
  EXPECT_EQ(HelpPageStarts.size(), 100U);
}

TEST_F(HelpFilesTest, GoesOnWhereTheListsCannotBeWritten) {
  files.contents[ProgramFolder + "QRX.HLP"] = "<PAGE>\r\n<H1>One</H1>\r\n";
  files.FailStep(FileStep::Write);
  IndexHelpFile();
  EXPECT_EQ(HelpPageStarts.size(), 1U);
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_NE(dialogs.messages[0].find("QRX"), std::string::npos) << dialogs.messages[0];
  EXPECT_EQ(files.contents.size(), 1U) << "half of a list was left behind";
}

}  // namespace
}  // namespace kelvane
