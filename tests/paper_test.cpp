#include "document/paper.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

#include "document/page.h"
#include "tests/support/program_test.h"

namespace kelvane {
namespace {

using Strings = std::vector<std::string>;

std::string Entry(int x, int y, const std::string& text) {
  return std::to_string(x) + " " + std::to_string(y) + " m 12 F0 (" + text + ") 1 s\r\n";
}

const std::string kOne = Entry(1, 1, "one");
const std::string kTwo = Entry(1, 1, "two");
const std::string kThree = Entry(1, 1, "three");
// What a sorted file holds the other way round.
const std::string kTyped = Entry(2, 2, "b") + Entry(1, 1, "a");
const std::string kSorted = Entry(1, 1, "a") + Entry(2, 2, "b");

class PaperTest : public ProgramTest {
 protected:
  PaperTest() {
    ResetPaper();
    PageReplaced = [this] { ++replaced; };
  }

  // Three pages of \P\Essay, and page 1 in memory.
  void OpenEssay() {
    files.contents["\\P\\Essay.001"] = kOne;
    files.contents["\\P\\Essay.002"] = kTwo;
    files.contents["\\P\\Essay.003"] = kThree;
    OpenPaperFile("\\P\\Essay.001");
    replaced = 0;
  }
  static void Write(const std::string& text) {
    PageText = text;
    NotePageChange();
  }
  const std::string& File(const std::string& path) { return files.contents.at(path); }

  // What is in memory, and that the window and the page number say so too.
  void ExpectPage(const std::string& path, const std::string& text, bool changed) {
    EXPECT_EQ(CurrentPaperFile, path);
    EXPECT_EQ(PageText, text);
    EXPECT_EQ(PageChanged, changed ? 1 : 0);
    const std::size_t title = path.rfind('\\') + 1;
    const std::size_t dot = path.find('.');
    EXPECT_EQ(window->title, path.empty() ? "Kelvane ver 1.7"
                                          : " " + path.substr(title, dot - title) + " - Kelvane ver 1.7");
    EXPECT_EQ(CurrentPageNumber, path.empty() ? 1 : std::stoi(path.substr(dot + 1)));
    EXPECT_EQ(PageBox->Text(), std::to_string(CurrentPageNumber));
  }

  int replaced = 0;
};

TEST_F(PaperTest, PageFilesHaveThreeDigits) {
  EXPECT_EQ(PageFileName(1), "");
  CurrentPaperFile = "C:\\P\\Essay.001";
  EXPECT_EQ(PageFileName(12), "C:\\P\\Essay.012");
  EXPECT_EQ(PageFileName("\\P.x\\Essay", 123), "\\P.x\\Essay.123");
}

TEST_F(PaperTest, SaveAsksForANameOnceAndSorts) {
  Write(kTyped);
  EXPECT_EQ(PageChanged, 1);
  PaperFolder = "\\P\\";
  dialogs.AnswerSave("\\P\\Essay");
  EXPECT_TRUE(SavePaper());
  EXPECT_EQ(dialogs.asked, Strings{"Save: Save As, *.001|*.001, \\P\\"});
  EXPECT_EQ(File("\\P\\Essay.001"), kSorted);
  ExpectPage("\\P\\Essay.001", kTyped, false);
  Write(kThree);
  EXPECT_TRUE(SavePaper());
  EXPECT_EQ(File("\\P\\Essay.001"), kThree);
}

TEST_F(PaperTest, ChangedMeansDifferentFromTheFile) {
  OpenEssay();
  for (const bool changed : {true, false}) {
    Write(changed ? kTwo : kOne);
    EXPECT_EQ(PageChanged, changed);
  }
  DrawingList = "10 20 15 20 20 20 1\r\n";
  NotePageChange();
  EXPECT_EQ(PageChanged, 1);
}

TEST_F(PaperTest, EveryCommandCompletesTheRunBeingTyped) {
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
    OpenEssay();
    FinishTyping = [] { Write(PageText + Entry(9, 9, "typed")); };
    if (&command - commands < 2) dialogs.AnswerYes();  // New and Open ask whether to save
    command();
    EXPECT_EQ(File("\\P\\Essay.001"), kOne + Entry(9, 9, "typed"));
  }
}

TEST_F(PaperTest, SaveAsWritesInTheOrderOfTyping) {
  OpenEssay();
  Write(kTyped);
  PaperFolder = "\\Elsewhere\\";
  dialogs.AnswerSave("\\Q\\Other.001");
  EXPECT_TRUE(SavePaperAs());
  EXPECT_EQ(dialogs.asked.back(), "Save: Save As, *.001|*.001, \\P\\") << "the paper's own folder";
  EXPECT_EQ(File("\\Q\\Other.001"), kTyped);
  EXPECT_EQ(File("\\P\\Essay.001"), kOne);
  ExpectPage("\\Q\\Other.001", kTyped, false);
}

TEST_F(PaperTest, NoAnswerToTheQuestionAboutSavingGivesTheCommandUp) {
  OpenEssay();
  Write(kTyped);
  const std::function<bool()> commands[] = {NewPaper, OpenPaper,
                                            [] { return OpenPaperFile("\\P\\Essay.003"); }, OfferToSave};
  for (const auto& command : commands) {
    dialogs.AnswerNeither();
    EXPECT_FALSE(command());
    ExpectPage("\\P\\Essay.001", kTyped, true);
    EXPECT_EQ(File("\\P\\Essay.001"), kOne);
  }
}

TEST_F(PaperTest, ReplacingAFileThatWasNotChosenIsAskedFirst) {
  OpenEssay();
  ASSERT_TRUE(GoToPage(3));
  files.contents["\\Q\\Other.003"] = "someone's";
  dialogs.AnswerSave("\\Q\\Other.001");
  dialogs.AnswerNo();
  EXPECT_FALSE(SavePaperAs());
  EXPECT_EQ(dialogs.asked.back(), "Replace /Q/Other.003? [No]");
  EXPECT_EQ(File("\\Q\\Other.003"), "someone's");
  ExpectPage("\\P\\Essay.003", kThree, false);

  dialogs.AnswerSave("\\Q\\Other.001");
  dialogs.AnswerYes();
  EXPECT_TRUE(SavePaperAs());
  EXPECT_EQ(File("\\Q\\Other.003"), kThree);

  // The very file chosen was asked about by the dialog; this paper's own page needs no question.
  files.contents["\\Q\\Third.003"] = "chosen";
  for (const char* chosen : {"\\Q\\Third.003", "\\Q\\Third.001"}) {
    dialogs.AnswerSave(chosen);
    EXPECT_TRUE(SavePaperAs());
    EXPECT_EQ(File("\\Q\\Third.003"), kThree);
  }
}

TEST_F(PaperTest, ANameOfSeveralDotsDoesNotReplaceAnotherPaper) {
  files.contents["\\P\\Essay.draft.002"] = Entry(1, 1, "draft");
  files.contents["\\P\\Essay.001"] = "someone's";
  EXPECT_TRUE(OpenPaperFile("\\P\\Essay.draft.002"));
  EXPECT_EQ(PageText, Entry(1, 1, "draft")) << "it names no page, so it is read itself";
  Write(kTwo);
  dialogs.AnswerNo();
  EXPECT_FALSE(SavePaper());
  EXPECT_EQ(PageChanged, 1);
  dialogs.AnswerNo();
  StorePageBeforeOutput();
  EXPECT_EQ(File("\\P\\Essay.001"), "someone's");
}

TEST_F(PaperTest, NewOffersToSaveAndForgetsThePaper) {
  OpenEssay();
  Write(kTwo);
  DrawingList = "10 20 15 20 20 20 1\r\n";
  DrawingCount = 1;
  dialogs.AnswerYes();
  EXPECT_TRUE(NewPaper());
  EXPECT_EQ(dialogs.asked, Strings{"Would you like to save the current paper. [Yes]"});
  EXPECT_EQ(File("\\P\\Essay.001"), kTwo + "10 20 m 1 lw 10 0 rl stroke\r\n");
  EXPECT_TRUE(ThePage.Empty());
  ExpectPage("", "", false);
  EXPECT_EQ(replaced, 1);

  Write(kOne);
  dialogs.AnswerNo();
  EXPECT_TRUE(NewPaper());
  ExpectPage("", "", false);
  EXPECT_TRUE(NewPaper()) << "nothing to ask about an empty page";
}

TEST_F(PaperTest, CancellingTheNameStopsEveryCommand) {
  Write(kOne);
  for (const auto command : {SavePaper, SavePaperAs, PageUp, PageDown, NewPaper, OpenPaper, OfferToSave}) {
    if (command == NewPaper || command == OpenPaper || command == OfferToSave) dialogs.AnswerYes();
    dialogs.AnswerSave("");
    EXPECT_FALSE(command());
  }
  dialogs.AnswerNo();
  dialogs.AnswerOpen("");
  EXPECT_FALSE(OpenPaper());
  EXPECT_EQ(std::tuple(PageText, PageChanged, CurrentPaperFile, replaced), std::tuple(kOne, 1, "", 0));
  EXPECT_TRUE(files.contents.empty());
}

TEST_F(PaperTest, OpenReadsPageOneAndRemembersTheFolder) {
  OpenEssay();
  ASSERT_TRUE(GoToPage(2));
  PaperFolder = "\\Old\\";
  dialogs.AnswerOpen("\\P\\Essay.003");
  EXPECT_TRUE(OpenPaper());
  EXPECT_EQ(dialogs.asked, Strings{"Open: Open, *.001|*.001, \\Old\\"});
  ExpectPage("\\P\\Essay.001", kOne, false);
  EXPECT_EQ(PaperFolder, "\\P\\");
}

TEST_F(PaperTest, OpenWarnsOfAPaperWithoutAName) {
  OpenEssay();
  NewPaper();
  Write(kTyped);
  dialogs.AnswerYes();
  dialogs.AnswerSave("\\P\\Unnamed.001");
  dialogs.AnswerOpen("\\P\\Essay.001");
  EXPECT_TRUE(OpenPaper());
  EXPECT_EQ(dialogs.messages, Strings{"You are about to lose your paper.\r\nSave the current paper."});
  EXPECT_EQ(File("\\P\\Unnamed.001"), kSorted);
  EXPECT_EQ(PageText, kOne);
}

TEST_F(PaperTest, APaperThatLostItsFirstPageOpensEmpty) {
  files.contents["\\P\\Essay.002"] = kTwo;
  EXPECT_TRUE(OpenPaperFile("\\P\\Essay.002"));
  ExpectPage("\\P\\Essay.001", "", false);
  EXPECT_THROW(OpenPaperFile("\\P\\Nothing.001"), Failure);
  ExpectPage("\\P\\Essay.001", "", false);
}

TEST_F(PaperTest, PagesAreTurnedBothWaysAndWrittenInTheOrderOfTyping) {
  OpenEssay();
  Write(kTyped);
  EXPECT_FALSE(PageUp());
  EXPECT_EQ(dialogs.messages, Strings{"The current page equals 1."});
  EXPECT_EQ(File("\\P\\Essay.001"), kTyped);
  ExpectPage("\\P\\Essay.001", kTyped, false);
  EXPECT_EQ(replaced, 0);
  Write(kTyped + kThree);
  EXPECT_TRUE(PageDown());
  EXPECT_EQ(File("\\P\\Essay.001"), kTyped + kThree);
  ExpectPage("\\P\\Essay.002", kTwo, false);
  EXPECT_TRUE(PageUp());
  ExpectPage("\\P\\Essay.001", kTyped + kThree, false);
  EXPECT_EQ(replaced, 2);
}

TEST_F(PaperTest, GoingOnFromAnEmptyPageIsAskedAndEndsAtPage999) {
  OpenEssay();
  ASSERT_TRUE(GoToPage(3));
  EXPECT_TRUE(PageDown());
  EXPECT_FALSE(files.Exists("\\P\\Essay.004"));
  dialogs.AnswerNo();
  EXPECT_FALSE(PageDown());
  EXPECT_EQ(dialogs.asked, Strings{"The current page is empty.\r\nWould you like to proceed anyway? [No]"});
  ExpectPage("\\P\\Essay.004", "", false);
  dialogs.AnswerYes();
  EXPECT_TRUE(PageDown());
  ExpectPage("\\P\\Essay.005", "", false);
  EXPECT_EQ(File("\\P\\Essay.004"), "");
  EXPECT_TRUE(PageUp()) << "backwards nothing is asked";
  dialogs.AnswerYes();
  ASSERT_TRUE(GoToPage(999));
  EXPECT_FALSE(PageDown());
  EXPECT_EQ(dialogs.messages, Strings{"Page 999 is the last page of a paper."});
  ExpectPage("\\P\\Essay.999", "", false);
  EXPECT_TRUE(files.Exists("\\P\\Essay.999"));
}

TEST_F(PaperTest, PageBoxShowsThePageThatIsThere) {
  OpenEssay();
  files.unreadable.insert("\\P\\Essay.002");
  for (const int number : {0, -1, 1000, 1, 2}) {
    PageBox->SetText("typed");
    if (number == 2) {
      EXPECT_THROW(GoToPage(number), Failure);
    } else {
      EXPECT_FALSE(GoToPage(number));
    }
    ExpectPage("\\P\\Essay.001", kOne, false);
  }
}

// A page that cannot be read or left stays in memory with its name, number and title.
TEST_F(PaperTest, FailuresLeaveThePaperAsItWas) {
  OpenEssay();
  files.contents["\\P\\Essay.002"] = "1 m stroke\r\n";
  files.unreadable.insert("\\P\\Locked.001");
  EXPECT_THROW(PageDown(), Failure);
  ExpectPage("\\P\\Essay.001", kOne, false);
  EXPECT_THROW(OpenPaperFile("\\P\\Locked.001"), Failure);
  ExpectPage("\\P\\Essay.001", kOne, false);
  EXPECT_EQ(PaperFolder, "\\P\\");

  Write(kTyped);
  for (const auto command : {SavePaper, PageDown, PageUp, NewPaper, SavePaperAs}) {
    if (command == NewPaper) dialogs.AnswerYes();
    if (command == SavePaperAs) dialogs.AnswerSave("\\Q\\Other.001");
    files.FailStep(FileStep::Write);
    EXPECT_THROW(command(), Failure);
    ExpectPage("\\P\\Essay.001", kTyped, true);
    EXPECT_EQ(File("\\P\\Essay.001"), kOne);
  }
  EXPECT_EQ(replaced, 0);
}

TEST_F(PaperTest, OutputStoresAChangedPageOfANamedPaper) {
  Write(kOne);
  StorePageBeforeOutput();
  EXPECT_TRUE(files.contents.empty());

  ResetPaper();
  OpenEssay();
  files.contents["\\P\\Essay.001"] = "untouched";
  StorePageBeforeOutput();
  EXPECT_EQ(File("\\P\\Essay.001"), "untouched") << "an unchanged page is not written";
  Write(kTyped);
  StorePageBeforeOutput();
  EXPECT_EQ(File("\\P\\Essay.001"), kSorted);
  EXPECT_EQ(PageChanged, 0);
}

}  // namespace
}  // namespace kelvane
