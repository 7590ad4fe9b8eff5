#include "document/paper.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "document/page.h"
#include "tests/support/program_test.h"

namespace kelvane {
namespace {

using Strings = std::vector<std::string>;

const std::string kSaveQuestion = "Would you like to save the current paper. [Yes]";
const std::string kEmptyQuestion = "The current page is empty.\r\nWould you like to proceed anyway? [No]";

std::string Entry(int x, int y, const std::string& text) {
  return std::to_string(x) + " " + std::to_string(y) + " m 12 F0 (" + text + ") 1 s\r\n";
}

class PaperTest : public ProgramTest {
 protected:
  PaperTest() {
    ResetPaper();
    PageReplaced = [this] { ++replaced; };
  }

  // Three pages of \P\Essay, and page 1 in memory.
  void OpenEssay() {
    files.contents["\\P\\Essay.001"] = Entry(1, 1, "one");
    files.contents["\\P\\Essay.002"] = Entry(1, 1, "two");
    files.contents["\\P\\Essay.003"] = Entry(1, 1, "three");
    OpenPaperFile("\\P\\Essay.001");
    replaced = 0;
  }
  static void Write(const std::string& text) {
    PageText = text;
    NotePageChange();
  }
  std::string Title() const { return window->title; }
  std::string BoxText() const { return PageBox->Text(); }
  const std::string& File(const std::string& path) { return files.contents.at(path); }

  int replaced = 0;
};

TEST_F(PaperTest, PageFilesHaveThreeDigits) {
  EXPECT_EQ(PageFileName(1), "");
  CurrentPaperFile = "C:\\P\\Essay.001";
  EXPECT_EQ(PageFileName(12), "C:\\P\\Essay.012");
  EXPECT_EQ(PageFileName(123), "C:\\P\\Essay.123");
  EXPECT_EQ(PageFileName("\\P.x\\Essay", 1), "\\P.x\\Essay.001");
}

TEST_F(PaperTest, SaveAsksForANameOnceAndSorts) {
  Write(Entry(2, 2, "b") + Entry(1, 1, "a"));
  EXPECT_EQ(PageChanged, 1);
  PaperFolder = "\\P\\";
  dialogs.AnswerSave("\\P\\Essay");
  EXPECT_TRUE(SavePaper());
  EXPECT_EQ(dialogs.asked, Strings{"Save: Save As, *.001|*.001, \\P\\"});
  EXPECT_EQ(File("\\P\\Essay.001"), Entry(1, 1, "a") + Entry(2, 2, "b"));
  EXPECT_EQ(CurrentPaperFile, "\\P\\Essay.001");
  EXPECT_EQ(Title(), " Essay - Kelvane ver 1.7");
  EXPECT_EQ(PageChanged, 0);
  EXPECT_EQ(PageText, Entry(2, 2, "b") + Entry(1, 1, "a"));

  Write(Entry(3, 3, "c"));
  EXPECT_TRUE(SavePaper());
  EXPECT_EQ(File("\\P\\Essay.001"), Entry(3, 3, "c"));
}

TEST_F(PaperTest, ChangedMeansDifferentFromTheFile) {
  OpenEssay();
  Write(Entry(1, 1, "other"));
  EXPECT_EQ(PageChanged, 1);
  Write(Entry(1, 1, "one"));
  EXPECT_EQ(PageChanged, 0);
  DrawingList = "10 20 15 20 20 20 1\r\n";
  NotePageChange();
  EXPECT_EQ(PageChanged, 1);
}

TEST_F(PaperTest, EveryCommandCompletesTheRunBeingTyped) {
  struct Command {
    const char* name;
    std::function<void()> run;
    bool asks;
  };
  const Command commands[] = {{"Save", SavePaper, false},
                              {"New", NewPaper, true},
                              {"Open", [] { OpenPaperFile("\\P\\Essay.001"); }, true},
                              {"Pg Up", PageUp, false},
                              {"Pg Dn", PageDown, false},
                              {"page box", [] { GoToPage(3); }, false},
                              {"output", StorePageBeforeOutput, false}};
  for (const Command& command : commands) {
    FinishTyping = nullptr;
    ResetPaper();
    OpenEssay();
    FinishTyping = [] { Write(PageText + Entry(9, 9, "typed")); };
    if (command.asks) dialogs.AnswerYes();
    command.run();
    EXPECT_EQ(File("\\P\\Essay.001"), Entry(1, 1, "one") + Entry(9, 9, "typed")) << command.name;
  }
}

TEST_F(PaperTest, SaveAsWritesInTheOrderOfTyping) {
  OpenEssay();
  Write(Entry(2, 2, "b") + Entry(1, 1, "a"));
  PaperFolder = "\\Elsewhere\\";
  dialogs.AnswerSave("\\Q\\Other.001");
  EXPECT_TRUE(SavePaperAs());
  EXPECT_EQ(dialogs.asked.back(), "Save: Save As, *.001|*.001, \\P\\") << "the paper's own folder";
  EXPECT_EQ(File("\\Q\\Other.001"), Entry(2, 2, "b") + Entry(1, 1, "a"));
  EXPECT_EQ(File("\\P\\Essay.001"), Entry(1, 1, "one"));
  EXPECT_EQ(CurrentPaperFile, "\\Q\\Other.001");
  EXPECT_EQ(Title(), " Other - Kelvane ver 1.7");
  EXPECT_EQ(PageChanged, 0);
}

TEST_F(PaperTest, NoAnswerToTheQuestionAboutSavingGivesTheCommandUp) {
  OpenEssay();
  Write(Entry(2, 2, "changed"));
  const std::function<bool()> commands[] = {NewPaper, OpenPaper,
                                            [] { return OpenPaperFile("\\P\\Essay.003"); }, OfferToSave};
  for (const auto& command : commands) {
    dialogs.AnswerNeither();
    EXPECT_FALSE(command());
    EXPECT_EQ(PageText, Entry(2, 2, "changed"));
    EXPECT_EQ(PageChanged, 1);
    EXPECT_EQ(File("\\P\\Essay.001"), Entry(1, 1, "one"));
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
  EXPECT_EQ(CurrentPaperFile, "\\P\\Essay.003");

  dialogs.AnswerSave("\\Q\\Other.001");
  dialogs.AnswerYes();
  EXPECT_TRUE(SavePaperAs());
  EXPECT_EQ(File("\\Q\\Other.003"), Entry(1, 1, "three"));

  // The very file chosen was asked about by the dialog; this paper's own page needs no question.
  files.contents["\\Q\\Third.003"] = "chosen";
  dialogs.AnswerSave("\\Q\\Third.003");
  EXPECT_TRUE(SavePaperAs());
  dialogs.AnswerSave("\\Q\\Third.001");
  EXPECT_TRUE(SavePaperAs());
  EXPECT_EQ(File("\\Q\\Third.003"), Entry(1, 1, "three"));
}

TEST_F(PaperTest, ANameOfSeveralDotsDoesNotReplaceAnotherPaper) {
  files.contents["\\P\\Essay.draft.002"] = Entry(1, 1, "draft");
  files.contents["\\P\\Essay.001"] = "someone's";
  EXPECT_TRUE(OpenPaperFile("\\P\\Essay.draft.002"));
  EXPECT_EQ(PageText, Entry(1, 1, "draft")) << "it names no page, so it is read itself";
  Write(Entry(1, 1, "new"));
  dialogs.AnswerNo();
  EXPECT_FALSE(SavePaper());
  EXPECT_EQ(File("\\P\\Essay.001"), "someone's");
  EXPECT_EQ(PageChanged, 1);
  dialogs.AnswerNo();
  StorePageBeforeOutput();
  EXPECT_EQ(File("\\P\\Essay.001"), "someone's");
}

TEST_F(PaperTest, NewOffersToSaveAndForgetsThePaper) {
  OpenEssay();
  Write(Entry(1, 1, "changed"));
  DrawingList = "10 20 15 20 20 20 1\r\n";
  DrawingCount = 1;
  dialogs.AnswerYes();
  EXPECT_TRUE(NewPaper());
  EXPECT_EQ(dialogs.asked, Strings{kSaveQuestion});
  EXPECT_EQ(File("\\P\\Essay.001"), Entry(1, 1, "changed") + "10 20 m 1 lw 10 0 rl stroke\r\n");
  EXPECT_TRUE(PageIsEmpty());
  EXPECT_EQ(CurrentPaperFile, "");
  EXPECT_EQ(Title(), "Kelvane ver 1.7");
  EXPECT_EQ(replaced, 1);

  Write(Entry(1, 1, "unwanted"));
  dialogs.AnswerNo();
  EXPECT_TRUE(NewPaper());
  EXPECT_TRUE(PageIsEmpty());
  EXPECT_EQ(PageChanged, 0);
  EXPECT_TRUE(NewPaper()) << "nothing to ask about an empty page";
}

TEST_F(PaperTest, CancellingTheNameStopsEveryCommand) {
  Write(Entry(1, 1, "kept"));
  dialogs.AnswerSave("");
  EXPECT_FALSE(SavePaper());
  dialogs.AnswerSave("");
  EXPECT_FALSE(SavePaperAs());
  dialogs.AnswerYes();
  dialogs.AnswerSave("");
  EXPECT_FALSE(NewPaper());
  dialogs.AnswerYes();
  dialogs.AnswerSave("");
  EXPECT_FALSE(OpenPaper());
  dialogs.AnswerYes();
  dialogs.AnswerSave("");
  EXPECT_FALSE(OfferToSave());
  dialogs.AnswerSave("");
  EXPECT_FALSE(PageUp());
  dialogs.AnswerSave("");
  EXPECT_FALSE(PageDown());
  dialogs.AnswerNo();
  dialogs.AnswerOpen("");
  EXPECT_FALSE(OpenPaper());
  EXPECT_EQ(PageText, Entry(1, 1, "kept"));
  EXPECT_EQ(PageChanged, 1);
  EXPECT_EQ(CurrentPaperFile, "");
  EXPECT_TRUE(files.contents.empty());
  EXPECT_EQ(replaced, 0);
}

TEST_F(PaperTest, OpenReadsPageOneAndRemembersTheFolder) {
  OpenEssay();
  ASSERT_TRUE(GoToPage(2));
  PaperFolder = "\\Old\\";
  dialogs.AnswerOpen("\\P\\Essay.003");
  EXPECT_TRUE(OpenPaper());
  EXPECT_EQ(dialogs.asked, Strings{"Open: Open, *.001|*.001, \\Old\\"});
  EXPECT_EQ(PageText, Entry(1, 1, "one"));
  EXPECT_EQ(CurrentPaperFile, "\\P\\Essay.001");
  EXPECT_EQ(CurrentPageNumber, 1);
  EXPECT_EQ(BoxText(), "1");
  EXPECT_EQ(Title(), " Essay - Kelvane ver 1.7");
  EXPECT_EQ(PaperFolder, "\\P\\");
  EXPECT_EQ(PageChanged, 0);
}

TEST_F(PaperTest, OpenWarnsOfAPaperWithoutAName) {
  OpenEssay();
  NewPaper();
  Write(Entry(2, 2, "b") + Entry(1, 1, "a"));
  dialogs.AnswerYes();
  dialogs.AnswerSave("\\P\\Unnamed.001");
  dialogs.AnswerOpen("\\P\\Essay.001");
  EXPECT_TRUE(OpenPaper());
  EXPECT_EQ(dialogs.messages, Strings{"You are about to lose your paper.\r\nSave the current paper."});
  EXPECT_EQ(File("\\P\\Unnamed.001"), Entry(1, 1, "a") + Entry(2, 2, "b"));
  EXPECT_EQ(PageText, Entry(1, 1, "one"));
}

TEST_F(PaperTest, APaperThatLostItsFirstPageOpensEmpty) {
  files.contents["\\P\\Essay.002"] = Entry(1, 1, "two");
  EXPECT_TRUE(OpenPaperFile("\\P\\Essay.002"));
  EXPECT_TRUE(PageIsEmpty());
  EXPECT_EQ(CurrentPaperFile, "\\P\\Essay.001");
  EXPECT_THROW(OpenPaperFile("\\P\\Nothing.001"), Failure);
  EXPECT_EQ(CurrentPaperFile, "\\P\\Essay.001");
}

TEST_F(PaperTest, PageUpStopsAtTheFirstPage) {
  OpenEssay();
  Write(Entry(2, 2, "b") + Entry(1, 1, "a"));
  EXPECT_FALSE(PageUp());
  EXPECT_EQ(dialogs.messages, Strings{"The current page equals 1."});
  EXPECT_EQ(File("\\P\\Essay.001"), Entry(2, 2, "b") + Entry(1, 1, "a")) << "written, in the order of typing";
  EXPECT_EQ(PageChanged, 0);
  EXPECT_EQ(replaced, 0);
}

TEST_F(PaperTest, PagesAreTurnedBothWays) {
  OpenEssay();
  Write(Entry(2, 2, "b") + Entry(1, 1, "a"));
  EXPECT_TRUE(PageDown());
  EXPECT_EQ(PageText, Entry(1, 1, "two"));
  EXPECT_EQ(CurrentPaperFile, "\\P\\Essay.002");
  EXPECT_EQ(BoxText(), "2");
  EXPECT_EQ(PageChanged, 0);
  EXPECT_EQ(File("\\P\\Essay.001"), Entry(2, 2, "b") + Entry(1, 1, "a"));
  EXPECT_TRUE(PageUp());
  EXPECT_EQ(PageText, Entry(2, 2, "b") + Entry(1, 1, "a"));
  EXPECT_EQ(CurrentPageNumber, 1);
  EXPECT_EQ(replaced, 2);
}

TEST_F(PaperTest, GoingOnFromAnEmptyPageIsAskedAndLeavesItsFile) {
  OpenEssay();
  ASSERT_TRUE(GoToPage(3));
  EXPECT_TRUE(PageDown());
  EXPECT_TRUE(PageIsEmpty());
  EXPECT_FALSE(files.Exists("\\P\\Essay.004"));
  dialogs.AnswerNo();
  EXPECT_FALSE(PageDown());
  EXPECT_EQ(dialogs.asked, Strings{kEmptyQuestion});
  EXPECT_EQ(CurrentPageNumber, 4);
  dialogs.AnswerYes();
  EXPECT_TRUE(PageDown());
  EXPECT_EQ(CurrentPageNumber, 5);
  EXPECT_EQ(File("\\P\\Essay.004"), "");
  EXPECT_TRUE(PageUp()) << "backwards nothing is asked";
}

TEST_F(PaperTest, Page999IsTheLast) {
  OpenEssay();
  ASSERT_TRUE(GoToPage(999));
  EXPECT_FALSE(PageDown());
  EXPECT_EQ(dialogs.messages, Strings{"Page 999 is the last page of a paper."});
  EXPECT_EQ(CurrentPageNumber, 999);
  EXPECT_TRUE(files.Exists("\\P\\Essay.999"));
}

TEST_F(PaperTest, PageBoxShowsThePageThatIsThere) {
  OpenEssay();
  for (const int number : {0, -1, 1000, 1}) {
    PageBox->SetText("typed");
    EXPECT_FALSE(GoToPage(number));
    EXPECT_EQ(BoxText(), "1");
  }
  files.unreadable.insert("\\P\\Essay.002");
  PageBox->SetText("2");
  EXPECT_THROW(GoToPage(2), Failure);
  EXPECT_EQ(BoxText(), "1");
}

// A page that cannot be read or left stays in memory with its name, number and title.
TEST_F(PaperTest, FailuresLeaveThePaperAsItWas) {
  OpenEssay();
  files.contents["\\P\\Essay.002"] = "1 m stroke\r\n";
  files.unreadable.insert("\\P\\Locked.001");
  const auto expectUnmoved = [&](const char* what) {
    EXPECT_EQ(CurrentPaperFile, "\\P\\Essay.001") << what;
    EXPECT_EQ(CurrentPageNumber, 1) << what;
    EXPECT_EQ(BoxText(), "1") << what;
    EXPECT_EQ(Title(), " Essay - Kelvane ver 1.7") << what;
    EXPECT_EQ(replaced, 0) << what;
  };
  EXPECT_THROW(PageDown(), Failure);
  expectUnmoved("a damaged page");
  EXPECT_EQ(PageText, Entry(1, 1, "one"));
  EXPECT_THROW(OpenPaperFile("\\P\\Locked.001"), Failure);
  expectUnmoved("a page that cannot be read");
  EXPECT_EQ(PaperFolder, "\\P\\");

  Write(Entry(1, 1, "unsaved"));
  const std::function<void()> writing[] = {SavePaper, PageDown, PageUp, NewPaper, SavePaperAs};
  for (const auto& command : writing) {
    const int at = static_cast<int>(&command - writing);
    if (at == 3) dialogs.AnswerYes();
    if (at == 4) dialogs.AnswerSave("\\Q\\Other.001");
    files.FailStep(FileStep::Write);
    EXPECT_THROW(command(), Failure) << at;
    expectUnmoved("a page that cannot be written");
    EXPECT_EQ(PageText, Entry(1, 1, "unsaved")) << at;
    EXPECT_EQ(PageChanged, 1) << at;
    EXPECT_EQ(File("\\P\\Essay.001"), Entry(1, 1, "one")) << at;
  }
}

TEST_F(PaperTest, OutputStoresAChangedPageOfANamedPaper) {
  Write(Entry(1, 1, "unnamed"));
  StorePageBeforeOutput();
  EXPECT_TRUE(files.contents.empty());

  ResetPaper();
  OpenEssay();
  files.contents["\\P\\Essay.001"] = "untouched";
  StorePageBeforeOutput();
  EXPECT_EQ(File("\\P\\Essay.001"), "untouched") << "an unchanged page is not written";
  Write(Entry(2, 2, "b") + Entry(1, 1, "a"));
  StorePageBeforeOutput();
  EXPECT_EQ(File("\\P\\Essay.001"), Entry(1, 1, "a") + Entry(2, 2, "b"));
  EXPECT_EQ(PageChanged, 0);
}

TEST_F(PaperTest, WorksWithoutAWindow) {
  Form1 = nullptr;
  PageBox = nullptr;
  PageReplaced = nullptr;
  OpenEssay();
  EXPECT_TRUE(PageDown());
  EXPECT_EQ(PageText, Entry(1, 1, "two"));
}

}  // namespace
}  // namespace kelvane
