// Every command that writes, with each of its file operations failing in turn: files hold their old or their
// new content, the page in memory is unharmed, and the person is told.

#include <functional>
#include <map>
#include <string>

#include "designer/character_files.h"
#include "document/page.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "platform/handlers.h"
#include "tests/support/editor_test.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

using Contents = std::map<std::string, std::string>;

constexpr int kMostSteps = 200;

// The paper \P\Essay with pages 1 to 3; page 2 is in memory and has a line more than its file.
class FileFailuresTest : public EditorTest {
 protected:
  void SetUp() override {
    for (const char* page : {"001", "002", "003"}) {
      files.contents["\\P\\Essay." + std::string(page)] =
          "50 60 m 11 F0 (page " + std::string(page) + ") 1 s\r\n10 20 m 1 lw 5 5 rl stroke\r\n";
    }
    files.contents["\\P\\Other.001"] = "50 60 m 11 F0 (other) 1 s\r\n";
    files.contents["\\P\\Essay.PS"] = "an old print";
    files.contents["\\P\\Essay.TXT"] = "an old text";
    files.contents["\\Kelvane\\QRX.DAT"] = "GRIDX = 4\r\nFormTop = 9\r\n";
    files.contents["\\Kelvane\\QRX.MCR"] = "zero\r\n";
    files.contents["\\Kelvane\\QRX.HCT"] = files.contents["\\Kelvane\\QRX.HIX"] = "kept";
    stored = files.contents;
  }

  void Prepare() {
    files.contents = stored;
    toolkit.quit = false;
    Start("\\P\\Essay.001");
    window->PressShortcut("PgDown");
    PlaceAt("Top Left", 12, 21);
    canvas->Type("typed");
    files.contents = stored;
    dialogs.messages.clear();
  }

  // Runs the command once for each file step that it takes, which fails; `lasting` fails those after it too,
  // as a disk does that is full. `check` looks at what the command itself must keep.
  void FailEachStep(const std::function<void()>& run, const std::function<void()>& check = {}) {
    Prepare();
    RunHandler(run);
    ASSERT_TRUE(dialogs.AllAnswered());
    EXPECT_TRUE(dialogs.messages.empty()) << dialogs.messages[0];
    whole = files.contents;
    for (const bool lasting : {false, true}) {
      lastingFailure = lasting;
      int step = 1;
      while (step < kMostSteps && !HasFailure() && FailStep(run, check, step)) ++step;
      EXPECT_TRUE(HasFailure() || step > 5);  // the steps of one safe writing at least
    }
  }

  // False if the command takes fewer steps than that.
  bool FailStep(const std::function<void()>& run, const std::function<void()>& check, int step) {
    SCOPED_TRACE("step " + std::to_string(step) + (lastingFailure ? " and all that follow" : ""));
    Prepare();
    files.FailAnyStep(step, lastingFailure);
    RunHandler(run);
    const bool failed = files.steps >= step;
    files.FailNothing();
    if (failed) {
      // A command that stopped has not asked all that it would have asked.
      const std::vector<std::string> told = dialogs.messages;
      dialogs = ScriptedDialogs();
      EXPECT_FALSE(told.empty());
      ExpectOldOrNew();
      ExpectPageUnharmed();
      if (check) check();
    }
    return failed;
  }

  void ExpectOldOrNew() {
    for (const auto& [path, content] : files.contents) {
      // Not even the temporary file can be removed where everything fails.
      if (lastingFailure && path.find(".~") != std::string::npos) continue;
      const bool old = stored.contains(path) && stored.at(path) == content;
      const bool fresh = whole.contains(path) && whole.at(path) == content;
      EXPECT_TRUE(old || fresh) << path << " holds:\n" << content;
    }
    for (const auto& [path, content] : stored) EXPECT_TRUE(files.contents.contains(path)) << path;
    EXPECT_EQ(files.openHandles, 0);
  }

  // The page is still there to be saved, under its own name and number; where it is not, it was saved.
  void ExpectPageUnharmed() {
    const std::string line = "12 21 m 11 F0 (typed) 1 s\r\n";
    const bool inFile = Content("\\P\\Essay.002").find(line) != std::string::npos;
    if (CurrentPageNumber != 2 || CurrentPaperFile != "\\P\\Essay.002") {
      EXPECT_TRUE(inFile);
      return;
    }
    EXPECT_EQ(PageText, "50 60 m 11 F0 (page 002) 1 s\r\n" + line);
    EXPECT_EQ(DrawingList, "10 20 12.5 22.5 15 25 1\r\n");
    EXPECT_EQ(DrawingCount, 1);
    EXPECT_EQ(window->title, " Essay - Kelvane ver 1.7");
    EXPECT_EQ(PageBox->Text(), "2");
    EXPECT_TRUE(PageChanged != 0 || inFile);
  }

  bool lastingFailure = false;
  Contents stored;
  Contents whole;  // after the command without a failure
};

TEST_F(FileFailuresTest, Save) {
  FailEachStep([&] { window->ChooseEntry("&Save"); });
}

TEST_F(FileFailuresTest, SaveAs) {
  FailEachStep([&] {
    dialogs.AnswerSave("\\P\\New.001");
    window->ChooseEntry("Save &As");
  });
}

TEST_F(FileFailuresTest, SaveAsOverAFile) {
  stored["\\P\\Other.002"] = "what stood there";
  FailEachStep([&] {
    dialogs.AnswerSave("\\P\\Other.002");
    window->ChooseEntry("Save &As");
  });
}

TEST_F(FileFailuresTest, NewWithYes) {
  FailEachStep([&] {
    dialogs.AnswerYes();
    window->ChooseEntry("&New");
  });
}

TEST_F(FileFailuresTest, OpenWithYes) {
  FailEachStep([&] {
    dialogs.AnswerYes();
    dialogs.AnswerOpen("\\P\\Other.001");
    window->ChooseEntry("Op&en");
  });
}

TEST_F(FileFailuresTest, TurningPages) {
  FailEachStep([&] { window->PressShortcut("PgUp"); });
  FailEachStep([&] { window->PressShortcut("PgDown"); });
  FailEachStep([&] {
    window->BoxOf("Page Number")->Type("3");
    window->BoxOf("Page Number")->PressEnter();
  });
}

TEST_F(FileFailuresTest, Printing) {
  FailEachStep([&] {
    dialogs.AnswerOpen("\\P\\Essay.001");
    dialogs.AnswerYes();
    window->ChooseEntry("&Print");
  });
  FailEachStep([&] {
    dialogs.AnswerOpen("\\P\\Essay.002");
    dialogs.AnswerYes();
    window->ChooseEntry("Print &One Page");
  });
}

TEST_F(FileFailuresTest, PlainText) {
  FailEachStep([&] {
    dialogs.AnswerOpen("\\P\\Essay.002");
    dialogs.AnswerYes();
    window->ChooseEntry("&Output As ASCII");
  });
}

// The program ends only when the page is safe. Settings and macros that cannot be kept do not hold it up.
TEST_F(FileFailuresTest, Exit) {
  FailEachStep(
      [&] {
        dialogs.AnswerYes();
        window->ChooseEntry("Exit");
      },
      [&] {
        const bool safe = Content("\\P\\Essay.002") == whole.at("\\P\\Essay.002");
        EXPECT_TRUE(safe || !toolkit.quit);
        EXPECT_EQ(toolkit.quit, PageChanged == 0);
      });
}

// The four files of the font agree with each other and with memory: one failure leaves none of them changed.
TEST_F(FileFailuresTest, SavingAGlyph) {
  const std::vector<std::string> strokes = {"10 40 15 40 20 40 20 35 20 30"};
  const std::string procedure = "0 0 moveto 65 0 rlineto st";
  const auto run = [&] {
    LeaveEditing();
    SaveGlyph(65, strokes);
  };
  FailEachStep(run, [&] {
    EXPECT_EQ(CharacterDefs[65 - kFirstGlyph][0], procedure);
    EXPECT_EQ(TypefaceTable[12].Widths[65], TestWidth(12, 65));
    EXPECT_TRUE(lastingFailure || files.contents == stored);
  });
}

}  // namespace
}  // namespace kelvane
