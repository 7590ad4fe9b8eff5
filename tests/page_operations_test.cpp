#include "papers/page_operations.h"

#include <map>

#include "document/page.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

const std::string kPaper = "\\P\\Essay.";

class PageOperationsTest : public EditorTest {
 protected:
  static std::string Content(int page) { return std::to_string(page) + "0 20 m 11 F0 (x) 1 s\r\n"; }

  // A paper of pages 1, 2, 3 and 5, open on page 3.
  void Open() {
    files.FailNothing();
    ClearPage();
    PageChanged = 0;
    std::erase_if(files.contents, [](const auto& file) { return file.first.starts_with(kPaper); });
    for (const int page : {1, 2, 3, 5}) files.contents[kPaper + "00" + std::to_string(page)] = Content(page);
    OpenPaperFile(kPaper + "001");
    GoToPage(3);
  }

  // How often each content is in the paper. What a failed write leaves has a "~" in its name.
  std::map<std::string, int> Contents() const {
    std::map<std::string, int> contents;
    for (const auto& [path, content] : files.contents)
      if (path.starts_with(kPaper) && path[kPaper.size()] != '~') ++contents[content];
    return contents;
  }

  // Whether the page in memory is the one of its file and number.
  void ExpectShownAsStored() {
    const std::string file = PageFileName(CurrentPaperFile, CurrentPageNumber);
    EXPECT_EQ(CurrentPaperFile, file);
    EXPECT_EQ(PageText, files.contents.contains(file) ? files.contents.at(file) : "");
    EXPECT_EQ(PageBox->Text(), std::to_string(CurrentPageNumber));
  }
};

// Each step of each command fails, alone or with all behind it.
TEST_F(PageOperationsTest, WhateverFailsEveryPageIsWholeAndFound) {
  Start();
  Open();
  const auto pages = Contents();
  int failures = 0;
  for (bool (*const command)() :
       {InsertPageBefore, InsertPageAfter, DuplicatePage, DeletePage, MovePageEarlier, MovePageLater}) {
    Open();
    dialogs.AnswerYes();
    EXPECT_TRUE(command());
    const auto after = files.contents;
    for (const bool lasting : {false, true}) {
      bool failed = true;
      for (int step = 1; failed; ++step) {
        SCOPED_TRACE(step);
        Open();
        const auto before = files.contents;
        dialogs.AnswerYes();
        files.FailAnyStep(step, lasting);
        failed = false;
        try {
          EXPECT_TRUE(command());
        } catch (const Failure&) {
          failed = true;
        }
        files.FailNothing();
        dialogs = {};  // where it failed before it asked
        if (!failed) break;
        ++failures;
        for (const auto& [content, times] : pages) EXPECT_GE(Contents()[content], times) << content;
        ExpectShownAsStored();
        // One failure leaves the paper as it was, or what comes last has failed: showing the page, or taking
        // away the deleted one when all others have moved.
        EXPECT_TRUE(lasting || files.contents == before || files.contents == after || command == DeletePage);
        // Whatever number the pages have, every one can be gone to.
        std::map<std::string, int> found;
        for (int page = 1; page <= LastPageOfPaper(); ++page) {
          GoToPage(1);
          GoToPage(page);
          if (!PageText.empty()) ++found[PageText];
        }
        EXPECT_EQ(found, Contents());
      }
    }
  }
  EXPECT_GT(failures, 40);
}

}  // namespace
}  // namespace kelvane
