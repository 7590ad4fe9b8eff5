#include "document/paper.h"

#include <functional>
#include <string>

#include "document/page.h"
#include "tests/support/program_test.h"

namespace kelvane {
namespace {

using PaperTest = ProgramTest;

TEST_F(PaperTest, PageFilesHaveThreeDigits) {
  EXPECT_EQ(PageFileName(1), "");
  CurrentPaperFile = "C:\\P\\Essay.001";
  EXPECT_EQ(PageFileName(12), "C:\\P\\Essay.012");
  EXPECT_EQ(PageFileName("\\P.x\\Essay", 123), "\\P.x\\Essay.123");
}

TEST_F(PaperTest, EveryCommandCompletesTheRunBeingTyped) {
  const std::string stored = "1 1 m 12 F0 (one) 1 s\r\n";
  const std::string typed = "9 9 m 12 F0 (typed) 1 s\r\n";
  const std::function<void()> commands[] = {NewPaper,
                                            [] { OpenPaperFile("\\P\\Essay.001"); },
                                            SavePaper,
                                            PageUp,
                                            PageDown,
                                            [] { GoToPage(3); },
                                            StorePageBeforeOutput};
  for (const auto& command : commands) {
    SCOPED_TRACE(&command - commands);
    FinishTyping = nullptr;
    ResetPaper();
    files.contents["\\P\\Essay.001"] = stored;
    OpenPaperFile("\\P\\Essay.001");
    FinishTyping = [&] {
      PageText += typed;
      NotePageChange();
    };
    if (&command - commands < 2) dialogs.AnswerYes();  // New and Open ask whether to save
    command();
    EXPECT_EQ(files.contents["\\P\\Essay.001"], stored + typed);
  }
}

}  // namespace
}  // namespace kelvane
