// What saves replace and keeps, and how it comes back; files that change while their page is open.

#include "papers/versions.h"

#include <gtest/gtest.h>

#include "app/commands.h"
#include "app/menus.h"
#include "document/page.h"
#include "editing/keyboard.h"
#include "editing/notes.h"
#include "editing/undo.h"
#include "papers/versions_window.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

const std::string kPath = "\\P\\Essay.001";

std::string LineOf(const std::string& run) {
  return "50 60 m 11 F0 (" + run + ") 1 s\r\n";
}

Version At(std::int64_t time, std::size_t size, const std::string& page = "a") {
  return {time, size, page, std::to_string(time)};
}

TEST(StillKeptTest, TheLastTwentyAndOneADayForThirtyDays) {
  constexpr std::int64_t kHour = 3600;
  constexpr std::int64_t kNow = 1'800'000'000;
  std::vector<Version> versions;
  for (std::int64_t hours = 0; hours < 50 * 24; hours += 6) versions.push_back(At(kNow - hours * kHour, 10));
  versions.insert(versions.begin(), At(kNow, 10, "b"));
  const std::vector<Version> kept = StillKept(versions, kNow);
  EXPECT_TRUE(std::equal(versions.begin(), versions.begin() + 21, kept.begin(),
                         [](const Version& a, const Version& b) { return a.file == b.file; }));
  // Twenty cover five days; one each stands for most of the other 25.
  EXPECT_GE(kept.size(), 21U + 24);
  EXPECT_LE(kept.size(), 21U + 26);
  EXPECT_GT(kept.back().time, kNow - 31 * 24 * kHour);
  for (std::size_t i = 22; i < kept.size(); ++i) EXPECT_GE(kept[i - 1].time - kept[i].time, 18 * kHour);
}

TEST(StillKeptTest, TheOldestGoWhereAllAreTooLarge) {
  std::vector<Version> versions;
  for (int i = 0; i < 10; ++i) versions.push_back(At(1000 - i, 60U << 20, std::to_string(i)));
  EXPECT_EQ(StillKept(versions, 1000).size(), 4U);
}

class VersionsTest : public EditorTest {
 protected:
  void SetUp() override {
    files.contents[kPath] = LineOf("one");
    Start(kPath);
  }
  void TypeAndSave(const std::string& run) {
    PlaceAt("Top Left", 50, 60);
    canvas->Type(run + "\r");
    window->ChooseEntry("&Save");
  }
  FakeWindow& Versions() { return *static_cast<FakeWindow*>(VersionsWindow); }
  FakeList& List() { return *Versions().lists.front(); }
  std::string Picture() { return Versions().canvases.front()->Drawn(Layer::Page); }
  std::size_t KeptFiles() const {
    return static_cast<std::size_t>(
        std::count_if(files.contents.begin(), files.contents.end(), [](const auto& file) {
          return file.first.starts_with("\\State\\versions\\") && !file.first.ends_with("index");
        }));
  }
};

TEST_F(VersionsTest, ASaveKeepsWhatItReplacesAndItComesBackAsAnEdit) {
  TypeAndSave("two");
  const std::string both = PageText;
  ASSERT_EQ(VersionsOf(kPath).size(), 1U);
  window->ChooseEntry("&Versions");
  ASSERT_EQ(List().rows.size(), 1U);
  const auto& labels = Versions().labels;
  EXPECT_EQ(labels.front()->text, "Only in this version (orange): 0.  Only on the page now (blue): 1.");
  EXPECT_EQ(Picture().find("two"), std::string::npos);
  Versions().ClickButton("Show &Page Now");
  EXPECT_NE(Picture().find("two"), std::string::npos);
  EXPECT_NE(Picture().find("#C86414"), std::string::npos) << "what has come is framed";
  Versions().ClickButton("&Bring Back");
  EXPECT_EQ(PageText, LineOf("one"));
  EXPECT_EQ(PageChanged, 1);
  EXPECT_EQ(List().rows.front().text, "in the file now");
  Undo();
  EXPECT_EQ(PageText, both);
  window->PressShortcut("PgDown");
  EXPECT_TRUE(List().rows.empty()) << "the list follows the page";
}

TEST_F(VersionsTest, EqualContentsAreKeptOnceAndUnchangedOnesNotAtAll) {
  window->ChooseEntry("&Save");
  EXPECT_EQ(KeptFiles(), 0U);
  for (int i = 0; i < 3; ++i) {
    TypeAndSave("two");
    Undo();
    Undo();
    window->ChooseEntry("&Save");
  }
  EXPECT_EQ(KeptFiles(), 2U);
  EXPECT_EQ(VersionsOf(kPath).size(), 2U);
  for (int i = 0; i < 30; ++i) TypeAndSave(std::to_string(i));
  EXPECT_EQ(VersionsOf(kPath).size(), 20U);
  EXPECT_EQ(KeptFiles(), 20U);
}

TEST_F(VersionsTest, GoWithTheirPageToAnotherNumber) {
  TypeAndSave("two");
  dialogs.AnswerYes();
  window->ChooseEntry("Insert &Before");
  EXPECT_EQ(VersionsOf("\\P\\Essay.002").size(), 1U);
  EXPECT_TRUE(VersionsOf(kPath).empty());
  window->ChooseEntry("&Undo insert page");
  EXPECT_EQ(VersionsOf(kPath).size(), 1U);
}

TEST_F(VersionsTest, ADeletedPageIsAmongThemAndComesBackAsAPage) {
  files.contents["\\P\\Essay.002"] = LineOf("second");
  files.contents["\\P\\Essay.003"] = LineOf("third");
  OpenPaperFile(kPath);
  window->PressShortcut("PgDown");
  dialogs.AnswerYes();
  RunCommand(CommandOf("mPagesDelete"));
  ASSERT_EQ(Content("\\P\\Essay.002"), LineOf("third"));
  files.LetGo();  // killed
  Start("\\P\\Essay.001");
  window->ChooseEntry("&Versions");
  ASSERT_EQ(List().rows.size(), 1U);
  EXPECT_TRUE(List().rows[0].text.starts_with("Essay.002 deleted ")) << List().rows[0].text;
  EXPECT_NE(Picture().find("second"), std::string::npos);
  dialogs.AnswerYes();
  Versions().ClickButton("&Bring Back");
  EXPECT_EQ(Content("\\P\\Essay.002"), LineOf("second"));
  EXPECT_EQ(Content("\\P\\Essay.003"), LineOf("third"));
  window->ChooseEntry("&Undo bring page back");
  EXPECT_EQ(Content("\\P\\Essay.002"), LineOf("third"));
}

TEST_F(VersionsTest, WithoutAFolderOneNoteIsAllThatHappens) {
  StateFolder.clear();
  TypeAndSave("two");
  EXPECT_NE(NoteLabel->Text().find("Saved: /P/Essay.001. Earlier versions are not kept"), std::string::npos);
  TypeAndSave("three");
  EXPECT_EQ(NoteLabel->Text(), "Saved: /P/Essay.001");
  EXPECT_NE(Content(kPath).find("three"), std::string::npos);
}

TEST_F(VersionsTest, ADamagedIndexShowsWhatCanBeReadAndRemovesNothingElse) {
  TypeAndSave("two");
  std::string& index = files.contents["\\State\\versions\\index"];
  index = "rubbish\n1 2 x ..\\..\\P\\Essay.001\n99999999999999999999 1 x y\n9000000000000000000 1 x y\n" +
          index + "5 5 " + index.substr(index.find(' ', index.find(' ') + 1) + 1, 17) + "gone\n";
  EXPECT_EQ(VersionsOf(kPath).size(), 1U);
  for (int i = 0; i < 30; ++i) TypeAndSave(std::to_string(i));
  EXPECT_TRUE(files.contents.contains(kPath));
}

class OutsideTest : public VersionsTest {
 protected:
  void ChangeOutside(const std::string& content) {
    files.contents[kPath] = content;
    ASSERT_EQ(toolkit.watches.front()->path, CurrentPaperFile);
    toolkit.watches.front()->OnChange();
  }
  void TypeUnsaved() {
    PlaceAt("Top Left", 50, 60);
    canvas->Type("mine\r");
  }
};

TEST_F(OutsideTest, APageThatHasNotChangedIsReadAgainAndUndoBringsItBack) {
  ChangeOutside(LineOf("theirs"));
  EXPECT_EQ(PageText, LineOf("theirs"));
  EXPECT_EQ(PageChanged, 0);
  EXPECT_NE(NoteLabel->Text().find("Changed by another program, read again"), std::string::npos);
  Undo();
  EXPECT_EQ(PageText, LineOf("one"));
  window->ChooseEntry("&Save");
  EXPECT_EQ(VersionsOf(kPath).size(), 1U) << "what the other one wrote is kept, too";
}

TEST_F(OutsideTest, AChangedPageStaysAndTheNoteComesOnce) {
  TypeUnsaved();
  const std::string page = PageText;
  ChangeOutside(LineOf("theirs"));
  EXPECT_NE(NoteLabel->Text().find("Save will ask"), std::string::npos);
  NoteLabel->SetText("");
  toolkit.watches.front()->OnChange();
  EXPECT_EQ(NoteLabel->Text(), "");
  EXPECT_EQ(PageText, page);

  dialogs.AnswerChoice(2);
  window->ChooseEntry("&Save");
  EXPECT_EQ(Content(kPath), LineOf("theirs"));
  EXPECT_EQ(List().rows.front().text, "in the file now, by another program");
  EXPECT_NE(Picture().find("theirs"), std::string::npos);
  dialogs.AnswerChoice(3);
  window->ChooseEntry("&Save");
  EXPECT_EQ(std::pair(PageText, int{PageChanged}), std::pair(LineOf("theirs"), 0));
  Undo();
  EXPECT_EQ(PageText, page);
  window->ChooseEntry("&Save");
  EXPECT_NE(Content(kPath).find("mine"), std::string::npos) << "nothing is asked twice";
}

TEST_F(OutsideTest, ARunThatIsOpenIsNotDisturbed) {
  PlaceAt("Top Left", 50, 60);
  canvas->Type("half");
  ChangeOutside(LineOf("theirs"));
  EXPECT_EQ(PendingRun, "half");
  EXPECT_EQ(PageText, LineOf("one"));
}

TEST_F(OutsideTest, WhatIsNoPageOrHasGoneLeavesThePageAlone) {
  files.contents.erase(kPath);
  toolkit.watches.front()->OnChange();
  EXPECT_EQ(PageText, LineOf("one"));
  EXPECT_NE(NoteLabel->Text().find("has gone"), std::string::npos);
  ChangeOutside("1 1 m 5 rl stroke\r\n");
  EXPECT_NE(NoteLabel->Text().find("line 1"), std::string::npos) << NoteLabel->Text();
  EXPECT_EQ(PageText, LineOf("one"));
}

}  // namespace
}  // namespace kelvane
