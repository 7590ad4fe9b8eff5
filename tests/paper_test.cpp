#include "document/paper.h"

#include <functional>
#include <string>
#include <vector>

#include "document/page.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/keyboard.h"
#include "editing/tool.h"
#include "papers/paper_commands.h"
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
  // Three pages of \P\Essay, and page 1 in memory.
  void OpenEssay() {
    ResetPaper();
    files.contents["\\P\\Essay.001"] = kOne;
    files.contents["\\P\\Essay.002"] = kTwo;
    files.contents["\\P\\Essay.003"] = kThree;
    OpenPaperFile("\\P\\Essay.001");
    canvas->ForgetDrawn();
  }
  static void Write(const std::string& text) { PageText = text; }
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
    ShowPaperState();
    EXPECT_EQ(window->changed, changed);
  }
};

TEST_F(PaperTest, PageFilesHaveThreeDigits) {
  EXPECT_EQ(PageFileName(1), "");
  CurrentPaperFile = "C:\\P\\Essay.001";
  EXPECT_EQ(PageFileName(12), "C:\\P\\Essay.012");
  EXPECT_EQ(PageFileName("\\P.x\\Essay", 123), "\\P.x\\Essay.123");
}

TEST_F(PaperTest, ChangedMeansDifferentFromTheFile) {
  OpenEssay();
  for (const bool changed : {true, false}) {
    Write(changed ? kTwo : kOne);
    EXPECT_EQ(PageChanged, changed);
  }
  EditPage("typing", [](Page& page) { page.text = kTwo; });
  EXPECT_TRUE(window->changed) << "edits are marked at once";
  DrawingList = "10 20 15 20 20 20 1\r\n";
  EXPECT_EQ(PageChanged, 1);
  PageChanged = 0;
  EXPECT_EQ(PageChanged, 0) << "counts as stored as it is now";
  PageChanged = 2;
  EXPECT_EQ(PageChanged, 1) << "counts as not stored whatever it becomes";
}

TEST_F(PaperTest, EveryCommandCompletesWhatIsTypedAndDrawn) {
  const std::function<void()> commands[] = {
      NewPaper,    OpenPaper,           [] { OpenPaperFile("\\P\\Essay.001"); },
      SavePaperAs, SavePaper,           PageUp,
      PageDown,    [] { GoToPage(3); }, StorePageBeforeOutput};
  for (const auto& command : commands) {
    for (const bool drawn : {false, true}) {
      const auto index = &command - commands;
      SCOPED_TRACE(index);
      OpenEssay();
      CursorMode = drawn ? kBezierMode : std::int16_t{-1};
      if (!drawn) InsertText("typed");
      for (const float x : {10.0F, 16.0F}) {
        ToolInForce().Press({{x, 21}});
        ToolInForce().Release({{x, 21}});
      }
      if (index < 3) dialogs.AnswerYes();
      if (index == 1) dialogs.AnswerOpen("");
      if (index == 3) dialogs.AnswerSave("\\P\\Essay.001");
      command();
      EXPECT_NE(File("\\P\\Essay.001").find(drawn ? " 6 0 rl stroke" : "(typed)"), std::string::npos);
      PageChanged = 0;
    }
  }
}

// Papers that others made, and those in folders that one may not write, can be read through.
TEST_F(PaperTest, OnlySaveWritesAPageThatItsFileHolds) {
  OpenEssay();
  const std::string made = "1 1 m 12 F0 (one) 1 s\n5 5 m 1 lw 7 setgray 3 3 rl stroke\n";
  files.contents["\\P\\Essay.001"] = made;
  ASSERT_TRUE(OpenPaperFile("\\P\\Essay.001"));
  files.FailStep(FileStep::Create);
  EXPECT_TRUE(PageDown() && PageUp() && GoToPage(3) && GoToPage(1));
  EXPECT_FALSE(PageUp());
  EXPECT_TRUE(StorePageBeforeOutput());
  EXPECT_EQ(File("\\P\\Essay.001"), made);
  files.FailNothing();
  EXPECT_TRUE(SavePaper());
  EXPECT_EQ(File("\\P\\Essay.001"), kOne + "5 5 m 1 lw 3 3 rl stroke\r\n");
}

TEST_F(PaperTest, APageThatAnotherProgramChangedIsNotReplacedUnasked) {
  const std::string others = Entry(3, 3, "another's");
  const std::function<bool()> commands[] = {
      NewPaper, OfferToSave, [] { return OpenPaperFile("\\P\\Essay.003"); },
      PageUp,   PageDown,    StorePageBeforeOutput,
      SavePaper};
  for (const auto& command : commands) {
    const auto index = &command - commands;
    SCOPED_TRACE(index);
    OpenEssay();
    Write(kTyped);
    files.contents["\\P\\Essay.001"] = others;
    if (index < 3) dialogs.AnswerYes();
    dialogs.AnswerChoice(4);
    EXPECT_FALSE(command());
    EXPECT_EQ(dialogs.asked.back(),
              "/P/Essay.001 was changed by another program.\n"
              "Replace it with the page as it is here? [&Cancel]");
    ExpectPage("\\P\\Essay.001", kTyped, true);

    if (index < 3) dialogs.AnswerYes();
    dialogs.AnswerChoice(1);
    dialogs.AnswerSave("\\Q\\Mine.001");
    EXPECT_EQ(command(), index != 3) << "there is no page above the first";
    EXPECT_EQ(File("\\Q\\Mine.001").size(), kTyped.size());
    EXPECT_EQ(File("\\P\\Essay.001"), others);
    if (index == 4) ExpectPage("\\P\\Essay.002", kTwo, false);
    files.contents.erase("\\Q\\Mine.001");
    PageChanged = 0;
  }
  OpenEssay();
  files.contents["\\P\\Essay.001"] = others;
  EXPECT_TRUE(PageDown()) << "an unchanged page has nothing to replace it with";
  Write(kTyped);
  files.contents["\\P\\Essay.002"] = others;
  dialogs.AnswerChoice(0);
  EXPECT_TRUE(SavePaper());
  Write(kThree);
  EXPECT_TRUE(SavePaper());
  EXPECT_EQ(File("\\P\\Essay.002"), kThree);
}

TEST_F(PaperTest, AFileThatCameOrWentMeanwhile) {
  OpenEssay();
  files.contents.erase("\\P\\Essay.001");
  dialogs.AnswerNeither();
  EXPECT_FALSE(NewPaper()) << "the page in memory is all there is";
  EXPECT_TRUE(PageDown());
  EXPECT_EQ(File("\\P\\Essay.001"), kOne);

  ASSERT_TRUE(GoToPage(4));
  Write(kTyped);
  files.contents["\\P\\Essay.004"] = kTwo;
  dialogs.AnswerNo();
  EXPECT_FALSE(PageUp());
  EXPECT_EQ(dialogs.asked.back(), "Replace /P/Essay.004? [No]");
  ExpectPage("\\P\\Essay.004", kTyped, true);
}

TEST_F(PaperTest, ANameThatIsOnlyAnExtensionIsRefused) {
  Write(kOne);
  for (const char* name : {"\\P\\.hidden", "\\P\\.001"}) {
    dialogs.AnswerSave(name);
    EXPECT_NE(FailureOf(SavePaper).find("nothing before the dot"), std::string::npos);
  }
  EXPECT_TRUE(files.contents.empty());
  EXPECT_EQ(std::pair(PageText, CurrentPaperFile), std::pair(kOne, std::string()));
}

TEST_F(PaperTest, AFileNoneOfWhoseLinesDrawsIsOpenedOnlyIfWanted) {
  OpenEssay();
  files.contents["\\P\\list.txt"] = "root:x:0\n0 0 m stroke\n";
  dialogs.AnswerNo();
  EXPECT_FALSE(OpenPaperFile("\\P\\list.txt"));
  EXPECT_EQ(dialogs.asked.back(),
            "/P/list.txt does not hold a page of Kelvane: none of its lines draws. Open it anyway? [No]");
  ExpectPage("\\P\\Essay.001", kOne, false);
  dialogs.AnswerYes();
  EXPECT_TRUE(OpenPaperFile("\\P\\list.txt"));
  EXPECT_EQ(PageText, "root:x:0\r\n0 0 m stroke\r\n");
  for (const std::string& page :
       {std::string(), "remark\n" + kOne, std::string("1 1 m 1 lw 5 5 rl stroke")}) {
    files.contents["\\P\\Page.001"] = page;
    EXPECT_TRUE(OpenPaperFile("\\P\\Page.001")) << page;
  }
}

TEST_F(PaperTest, OutputOffersToSaveAPageWithoutAName) {
  EXPECT_TRUE(StorePageBeforeOutput()) << "nothing to ask about an empty page";
  Write(kTyped);
  dialogs.AnswerNeither();
  EXPECT_FALSE(StorePageBeforeOutput());
  dialogs.AnswerNo();
  EXPECT_TRUE(StorePageBeforeOutput());
  for (const std::string chosen : {"", "\\P\\New"}) {
    dialogs.AnswerYes();
    dialogs.AnswerSave(chosen);
    EXPECT_EQ(StorePageBeforeOutput(), !chosen.empty());
    EXPECT_EQ(dialogs.asked[dialogs.asked.size() - 2], "The page has no name yet. Save it first? [Yes]");
  }
  EXPECT_EQ(File("\\P\\New.001"), kSorted);
}

}  // namespace
}  // namespace kelvane
