#include "help/help_pages.h"

#include <gtest/gtest.h>

#include "document/fields.h"
#include "help/help_files.h"
#include "help/help_search.h"
#include "tests/support/program_test.h"

namespace kelvane {
namespace {

using Kind = TextBlock::Kind;

HelpBook BookOf(const std::string& text) {
  std::vector<std::int64_t> starts;
  for (std::size_t at = text.find("<PAGE>"); at != std::string::npos; at = text.find("<PAGE>", at + 1))
    starts.push_back(static_cast<std::int64_t>(at));
  return ReadHelpBook(text, starts);
}

// "H1 text", "P text", "T line|line": one line for each block.
std::string Shape(const HelpPage& page) {
  std::string shape;
  for (const TextBlock& block : page.blocks) {
    shape += block.kind == Kind::Heading   ? "H" + std::to_string(block.level)
             : block.kind == Kind::Table   ? "T"
             : block.kind == Kind::Picture ? "I"
                                           : "P";
    shape += ' ';
    for (const TextLine& line : block.lines) {
      for (const TextPiece& piece : line) {
        shape += piece.picture.empty() ? piece.text : "{" + piece.picture + "}";
        if (!piece.link.empty()) shape += "[" + piece.link + "]";
      }
      shape += '|';
    }
    shape.back() = '\n';
  }
  return shape;
}

TEST(HelpPages, HaveHeadingsParagraphsAndTables) {
  const HelpBook book = BookOf(
      "before\r\n<PAGE>\r\n<h1>Title</H1>\r\nOne\r\ntwo.\r\n\r\nThree <H6>six</h6> four\r\n<TABLE>\r\na   "
      "b\r\n\r\n"
      "<x>  F<h>\r\n</Table>\r\nSee \"Other\" and \"nothing\".\r\n</PAGE>\r\n"
      "<PAGE>\r\n<H2>other</H2>\r\n</PAGE>\r\n");
  ASSERT_EQ(book.pages.size(), 3U);
  EXPECT_EQ(Shape(book.pages[0]), "P before\n");
  EXPECT_EQ(Shape(book.pages[1]),
            "H1 Title\nP One two.\nP Three \nH6 six\nP  four\nT a   b||<x>  F<h>\n"
            "P See \"Other[help:2.0]\" and \"nothing\".\n");
  for (const HelpPage& page : book.pages) EXPECT_EQ(page.faults, std::vector<std::string>());
  HelpPlace place;
  EXPECT_TRUE(PlaceOfLink(book, "help:2.0", place));
  EXPECT_EQ(place, (HelpPlace{2, {0, 0}}));
  for (const char* link : {"help:3.0", "help:-1.0", "help:1", "http://x", ""})
    EXPECT_FALSE(PlaceOfLink(book, link, place)) << link;
}

TEST(HelpPages, ShowWhatTheyCanAndSayWhatIsWrong) {
  const HelpBook book = BookOf(
      "<PAGE>\r\n<H1>Open\r\ntext <B>bold</B>\r\n<TABLE>\r\nrow\r\n</PAGE>\r\nlate\r\n"
      "<PAGE>\r\n</TABLE></H3>\r\n<TABLE>\r\na\r\n<TABLE>\r\nb\r\n");
  EXPECT_EQ(Shape(book.pages[1]), "H1 Open\nP text <B>bold</B>\nT row\n");
  EXPECT_EQ(book.pages[1].faults,
            (std::vector<std::string>{"Line 2: <H1> is not closed.", "Line 3: the tag <B> is unknown.",
                                      "Line 3: the tag </B> is unknown.", "Line 4: <TABLE> is not closed.",
                                      "Line 7: what stands behind </PAGE> is not shown."}));
  EXPECT_EQ(Shape(book.pages[2]), "T a|b\n");
  EXPECT_EQ(
      book.pages[2].faults,
      (std::vector<std::string>{"Line 9: </TABLE> closes nothing.", "Line 9: </H3> closes nothing.",
                                "Line 12: <TABLE> stands inside a table.", "Line 10: <TABLE> is not closed.",
                                "Line 13: the page has no </PAGE>."}));
  EXPECT_EQ(book.pages[2].title, "Page 2");
  // Positions of another text: every page is read, and says so.
  const HelpBook moved = ReadHelpBook("<PAGE>\r\nx\r\n", {3, 500});
  ASSERT_EQ(moved.pages.size(), 3U);
  for (int page : {1, 2})
    EXPECT_NE(moved.pages[static_cast<std::size_t>(page)].faults.front().find("has changed"),
              std::string::npos);
}

TEST(HelpPages, HoldPicturesOfTheProgramFolderOnly) {
  const HelpBook book = BookOf(
      "<PAGE>\r\n<H1>One</H1>\r\nbefore <picture>A.PNG</picture> behind\r\n<TABLE>\r\n"
      "<PICTURE>T.PNG</PICTURE>\r\n</TABLE>\r\n<PICTURE>../B.PNG</PICTURE>\r\n<PICTURE>C.PNG\r\n</PAGE>\r\n");
  EXPECT_EQ(Shape(book.pages[1]),
            "H1 One\nP before \nI A.PNG\nP  behind\nT <PICTURE>T.PNG</PICTURE>\nI C.PNG\n");
  EXPECT_EQ(book.pages[1].faults,
            (std::vector<std::string>{"Line 7: \"../B.PNG\" is no file of the program folder.",
                                      "Line 8: <PICTURE> is not closed."}));
  EXPECT_TRUE(SearchHelp(book, "A.PNG").empty());
}

TEST(HelpPages, ShowTheSignsOfTheirKeys) {
  const HelpBook book = BookOf(
      "<PAGE>\r\n<H1>Symbol keyboard: Greek</H1>\r\n<TABLE>\r\nkey  capital   key  small\r\nA    Alpha     a "
      "   alpha\r\n"
      "J    theta, second form\r\n160   x  Euro\r\n</TABLE>\r\n</PAGE>\r\n"
      "<PAGE>\r\n<H1>Math0: brackets</H1>\r\n<TABLE>\r\n<   angle\r\nspace   bar\r\n127  "
      "subset\r\n</TABLE>\r\n</PAGE>\r\n"
      "<PAGE>\r\n<H1>Keys</H1>\r\n<TABLE>\r\nA    add\r\n</TABLE>\r\n</PAGE>\r\n");
  EXPECT_EQ(Shape(book.pages[1]),
            "H1 Symbol keyboard: Greek\nT      key  capital        key  small|{sign 8.65}A    Alpha     "
            "{sign 8.97}a    "
            "alpha|{sign 8.74}J    theta, second form|{sign 8.160}160   x  Euro\n");
  EXPECT_EQ(Shape(book.pages[2]),
            "H1 Math0: brackets\nT {sign 12.60}<   angle|{sign 12.32}space   bar|{sign 12.127}127  subset\n");
  EXPECT_EQ(Shape(book.pages[3]), "H1 Keys\nT A    add\n");
}

TEST(HelpPages, ListsAreReadAndOddLinesLeftOut) {
  const auto text = [](const std::vector<HelpEntry>& entries) {
    std::string all;
    for (const HelpEntry& entry : entries)
      all += std::to_string(entry.level) + " " + entry.text + " " + std::to_string(entry.page) + "\n";
    return all;
  };
  EXPECT_EQ(text(ReadHelpContents(
                "<H1 #0>Before</H1>\r\nsee <h3 #12>Lines</H3> too\r\nrubbish\r\n<H2 #x>No</H2>\r\n"
                "<H3>Three</H3><H1 #2>One</H1>\r\n<H9 #1>no</H9>\r\n<H1 #1>open\r\n")),
            "1 Before 0\n3 Lines 12\n1 One 2\n");
  EXPECT_EQ(
      text(ReadHelpIndex("Six" + std::string(80, ' ') + "<#7>\r\na <#1> b <#2>\r\nnothing\r\n<#x>\r\n")),
      "1 Six 7\n1 a <#1> b 2\n");
}

class ShippedHelp : public ProgramTest {
 protected:
  ShippedHelp() : text(DiskFiles().ReadWhole(BackslashPath(KELVANE_SOURCE_DIR) + "\\data\\QRX.HLP")) {
    files.contents[ProgramFolder + "QRX.HLP"] = text;
    IndexHelpFile();
    book = ReadHelpBook(text, HelpPageStarts);
  }
  std::string FirstHit(const std::string& query) {
    const std::vector<HelpHit> hits = SearchHelp(book, query);
    return hits.empty() ? "nothing" : book.pages[static_cast<std::size_t>(hits.front().page)].title;
  }
  std::string text;
  HelpBook book;
};

TEST_F(ShippedHelp, IsInOrder) {
  EXPECT_TRUE(book.pages[0].blocks.empty()) << "text before the first page";
  for (const HelpPage& page : book.pages) EXPECT_EQ(page.faults, std::vector<std::string>()) << page.title;
}

TEST_F(ShippedHelp, SearchPutsThePageThatIsAboutItFirst) {
  EXPECT_EQ(FirstHit("superscript back"), "Superscripts and subscripts");
  EXPECT_EQ(FirstHit("MACRO"), "Macros");
  EXPECT_EQ(FirstHit("greek"), "Symbol keyboard: Greek");
  EXPECT_EQ(FirstHit("settings file"), "Settings file");
  EXPECT_EQ(FirstHit("print"), "Printing");
  EXPECT_EQ(FirstHit("qqq"), "nothing");
  EXPECT_EQ(FirstHit("   "), "nothing");
  EXPECT_EQ(FirstHit("anchor qqq"), "nothing") << "all words must be there";
  // Every line of a hit has one of the words, where a word begins.
  for (const HelpHit& hit : SearchHelp(book, "grid step")) {
    for (const HelpHit::Line& line : hit.lines) {
      const TextBlock& block =
          book.pages[static_cast<std::size_t>(hit.page)].blocks[static_cast<std::size_t>(line.at.block)];
      const std::string words = UpperCase(WordsOf(block.lines[static_cast<std::size_t>(line.at.line)]));
      EXPECT_TRUE(words.find("GRID") != std::string::npos || words.find("STEP") != std::string::npos)
          << words;
      EXPECT_LE(line.excerpt.size(), 80U);
      const std::string excerpt = UpperCase(line.excerpt);
      EXPECT_TRUE(excerpt.find("GRID") != std::string::npos || excerpt.find("STEP") != std::string::npos)
          << excerpt;
    }
  }
}

}  // namespace
}  // namespace kelvane
