// Every command that writes, with each of its file operations failing in turn: files hold their old or their
// new content, the page in memory is unharmed, and the person is told. The same with the power going at each
// step, whatever of what was not synced has come to the disk: what was typed is then in a file or in a
// journal.

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <utility>

#include "app/recovery_window.h"
#include "designer/character_files.h"
#include "document/page.h"
#include "editing/keyboard.h"
#include "editing/modes.h"
#include "editing/notes.h"
#include "papers/recovery.h"
#include "papers/versions.h"
#include "papers/versions_window.h"
#include "platform/files.h"
#include "platform/handlers.h"
#include "tests/support/editor_test.h"
#include "tests/support/power_cut_files.h"
#include "typography/metrics.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

constexpr int kMostSteps = 200;

// The paper \P\Essay with pages 1 to 3; page 2 is in memory and has a line more than its file.
class FileFailuresTest : public EditorTest {
 protected:
  void SetUp() override {
    for (const std::string page : {"001", "002", "003"})
      files.contents["\\P\\Essay." + page] =
          "50 60 m 11 F0 (page " + page + ") 1 s\r\n10 20 m 1 lw 5 5 rl stroke\r\n";
    files.contents["\\P\\Other.001"] = "50 60 m 11 F0 (other) 1 s\r\n";
    files.contents["\\P\\Essay.PS"] = "an old print";
    files.contents["\\P\\Essay.TXT"] = "an old text";
    files.contents["\\Kelvane\\QRX.DAT"] = "GRIDX = 4\r\nFormTop = 9\r\n";
    files.contents["\\Kelvane\\QRX.MCR"] = "zero\r\n";
    files.contents["\\Kelvane\\QRX.HCT"] = files.contents["\\Kelvane\\QRX.HIX"] = "kept";
    stored = files.contents;
    // A lock is looked for by the paper's name as page 0.
    files.spared = {"\\State\\journal\\", "\\State\\locks\\", "\\P\\Other.000", "\\P\\New.000"};
  }

  void Prepare() {
    files.LetGo();
    files.contents = stored;
    toolkit.quit = false;
    Start("\\P\\Essay.001");
    window->PressShortcut("PgDown");
    PlaceAt("Top Left", 12, 21);
    canvas->Type("typed");
    std::erase_if(files.contents, [this](const auto& file) { return !IsOfJournal(file.first); });
    files.contents.insert(stored.begin(), stored.end());
    dialogs.messages.clear();
  }

  // The same on a disk, all of it synced.
  void PrepareOn(PowerCutFiles& disk) {
    TheFiles = &disk;
    toolkit.quit = false;
    Start("\\P\\Essay.001");
    window->PressShortcut("PgDown");
    PlaceAt("Top Left", 12, 21);
    RunHandler([this] { canvas->Type("typed"); });
    disk.SyncAll();
    dialogs.messages.clear();
  }

  void RunUntilCut(const std::function<void()>& run) {
    try {
      RunHandler(run);
    } catch (const PowerCut&) {
    }
    TheFiles = &files;
    dialogs = ScriptedDialogs();
  }

  // Whether a page file holds it, or what the start has found of journals leads to it.
  bool IsFound(const std::string& text) const {
    const auto inFile = [&](const auto& file) {
      return file.first.starts_with("\\P\\") && file.second.find(text) != std::string::npos;
    };
    const auto inJournal = [&](const LeftWork& work) {
      return WholePage(work.journal).text.find(text) != std::string::npos;
    };
    return std::ranges::any_of(files.contents, inFile) || std::ranges::any_of(FoundWork(), inJournal);
  }

  // The journal and the locks stand on their own: what becomes of them stops no command.
  bool IsOfJournal(const std::string& path) const {
    return std::any_of(files.spared.begin(), files.spared.end(),
                       [&](const std::string& folder) { return path.starts_with(folder); });
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
    lastingFailure = false;
    powerCut = true;
    int step = 1;
    while (step < kMostSteps && !HasFailure() && CutAtStep(run, step)) ++step;
    powerCut = false;
    EXPECT_TRUE(HasFailure() || step > 5);
  }

  // False if the command takes fewer steps than that.
  bool CutAtStep(const std::function<void()>& run, int step) {
    SCOPED_TRACE("power cut at step " + std::to_string(step));
    PowerCutFiles disk(stored);
    PrepareOn(disk);
    disk.CutAt(step);
    RunUntilCut(run);
    if (!disk.IsCut()) return false;
    for (const PowerCutFiles::Contents& outcome : disk.Outcomes()) {
      files.LetGo();
      files.contents = outcome;
      ExpectOldOrNew();
      // The next start finds everything, and what is left of unfinished writing is in nobody's way.
      Start("\\P\\Essay.002");
      EXPECT_TRUE(dialogs.messages.empty()) << dialogs.messages[0];
      EXPECT_EQ(CurrentPaperFile, "\\P\\Essay.001");
      if (afterCut) afterCut();
      EXPECT_TRUE(IsFound("(typed)"));
      for (const Version& version : VersionsOf("\\P\\Essay.002"))
        EXPECT_EQ(ContentOfVersion(version), stored.at("\\P\\Essay.002"));
      if (HasFailure()) break;
    }
    return true;
  }

  // False if the command takes fewer steps than that.
  bool FailStep(const std::function<void()>& run, const std::function<void()>& check, int step) {
    SCOPED_TRACE("step " + std::to_string(step) + (lastingFailure ? " and all that follow" : ""));
    Prepare();
    files.FailAnyStep(step, lastingFailure);
    RunHandler(run);
    const bool failed = files.steps >= step;
    files.FailNothing();
    if (!failed) return false;
    // That a version was not kept stands in the way of nothing.
    EXPECT_TRUE(!dialogs.messages.empty() ||
                NoteLabel->Text().find("Earlier versions are not kept") != std::string::npos)
        << NoteLabel->Text();
    for (const std::string& message : dialogs.messages) EXPECT_TRUE(NamesAFile(message)) << message;
    dialogs = ScriptedDialogs();  // a command that stopped has not asked all that it would have asked
    ExpectOldOrNew();
    ExpectPageUnharmed();
    if (check) check();
    return true;
  }

  // The person's file, not the temporary one that it would have been made of.
  bool NamesAFile(const std::string& message) const {
    const auto named = [&](const auto& file) {
      return message.find(MachinePath(file.first)) != std::string::npos;
    };
    return std::any_of(stored.begin(), stored.end(), named) || std::any_of(whole.begin(), whole.end(), named);
  }

  void ExpectOldOrNew() {
    for (const auto& [path, content] : files.contents) {
      if (IsOfJournal(path)) continue;
      // Not even the temporary file can be removed where everything fails.
      const bool temporary = path.find(".~") != std::string::npos;
      if ((lastingFailure || powerCut) && temporary) continue;
      if (path.starts_with(StateFolder) || ((powerCut || lastingFailure) && path.ends_with("MATH0.NEW")))
        continue;
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
    const bool inFile = Content("\\P\\Essay.002").find(line) != std::string::npos ||
                        Content(CurrentPaperFile).find(line) != std::string::npos;
    const bool here = CurrentPageNumber == 2 && CurrentPaperFile == "\\P\\Essay.002";
    EXPECT_TRUE(inFile || (here && PageChanged != 0));
    if (!here) return;
    EXPECT_EQ(PageText, "50 60 m 11 F0 (page 002) 1 s\r\n" + line);
    EXPECT_EQ(std::tie(DrawingList, DrawingCount), std::tuple("10 20 12.5 22.5 15 25 1\r\n", 1));
    EXPECT_EQ(std::tuple(window->title, PageBox->Text()), std::tuple(" Essay - Kelvane ver 1.7", "2"));
  }

  std::function<void()> afterCut;  // looks at what the next start has made of it
  bool lastingFailure = false;
  bool powerCut = false;
  std::map<std::string, std::string> stored;
  std::map<std::string, std::string> whole;  // after the command without a failure
};

TEST_F(FileFailuresTest, CommandsOfTheMenu) {
  stored["\\P\\Other.002"] = "what stood there";
  const auto yes = [&] { dialogs.AnswerYes(); };
  const auto save = [&](const char* path) { return [=, this] { dialogs.AnswerSave(path); }; };
  const auto replace = [&](const char* path) {
    return [=, this] {
      dialogs.AnswerOpen(path);
      dialogs.AnswerYes();
    };
  };
  const auto openOther = [&] {
    dialogs.AnswerYes();
    dialogs.AnswerOpen("\\P\\Other.001");
  };
  const std::pair<const char*, std::function<void()>> commands[] = {
      {"&Save", [] {}},
      {"Save &As", save("\\P\\New.001")},
      {"Save &As", save("\\P\\Other.002")},
      {"&New", yes},
      {"Op&en", openOther},
      {"&Print", replace("\\P\\Essay.001")},
      {"Print &One Page", replace("\\P\\Essay.002")},
      {"&Output As ASCII", replace("\\P\\Essay.002")}};
  for (const auto& [entry, answer] : commands) {
    SCOPED_TRACE(entry);
    FailEachStep([&, name = entry, script = answer] {
      script();
      window->ChooseEntry(name);
    });
  }
}

TEST_F(FileFailuresTest, TurningPages) {
  FailEachStep([&] { window->PressShortcut("PgUp"); });
  FailEachStep([&] { window->PressShortcut("PgDown"); });
  FailEachStep([&] {
    window->BoxOf("Page Number")->Type("3");
    window->BoxOf("Page Number")->PressEnter();
  });
}

// Pages change their numbers one after the other, so a cut may come between; none of them is ever gone, and
// one that is deleted is a version then.
TEST_F(FileFailuresTest, ThePowerGoesWhilePagesMove) {
  for (const char* entry : {"Insert &Before", "Du&plicate", "Move &Earlier", "&Delete"}) {
    SCOPED_TRACE(entry);
    bool cut = true;
    for (int step = 1; cut && !HasFailure(); ++step) {
      ASSERT_LT(step, kMostSteps);
      SCOPED_TRACE(step);
      PowerCutFiles disk(stored);
      PrepareOn(disk);
      disk.CutAt(step);
      dialogs.AnswerYes();  // each asks before pages change their numbers
      RunUntilCut([&] { window->Entry(entry)->Choose(); });
      cut = disk.IsCut();
      for (const PowerCutFiles::Contents& outcome : disk.Outcomes()) {
        std::string pages;
        for (const auto& [path, content] : outcome)
          if (path.starts_with("\\P\\Essay.0") || path.starts_with("\\State\\versions\\")) pages += content;
        for (const std::string page : {"001", "002", "003"})
          EXPECT_NE(pages.find("(page " + page + ")"), std::string::npos) << page;
      }
    }
  }
}

// What a killed program has left is decided on, and the power goes while that is done.
TEST_F(FileFailuresTest, ThePowerGoesWhileWorkIsRecovered) {
  const auto click = [](const char* button) {
    static_cast<FakeWindow*>(RecoveryWindow)->ClickButton(button);
  };
  const auto restore = [&] { click("&Restore"); };
  const auto restoreAndSave = [&] {
    RunHandler(restore);
    window->ChooseEntry("&Save");
  };
  const auto bringBack = [&] {
    restoreAndSave();
    window->ChooseEntry("&Versions");
    static_cast<FakeWindow*>(VersionsWindow)->ClickButton("&Bring Back");
  };
  const std::function<void()> ways[] = {restore, restoreAndSave, [&] { click("&Keep Both"); }, bringBack};
  for (const auto& way : ways) {
    SCOPED_TRACE(&way - ways);
    bool cut = true;
    int step = 0;
    while (cut && !HasFailure() && ++step < kMostSteps) {
      SCOPED_TRACE(step);
      PowerCutFiles disk(stored);
      PrepareOn(disk);
      disk.LetGo();
      disk.CutAt(step);
      RunUntilCut([&] {
        Start();
        way();
      });
      cut = disk.IsCut();
      for (const PowerCutFiles::Contents& outcome : disk.Outcomes()) {
        files.LetGo();
        files.contents = outcome;
        Start("\\P\\Essay.001");
        EXPECT_TRUE(IsFound("(typed)"));
        EXPECT_TRUE(IsFound("(page 002)"));
        if (HasFailure()) break;
      }
    }
    EXPECT_TRUE(HasFailure() || (!cut && step > 1));
  }
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
  afterCut = [&] {
    std::string state;
    for (const char* name : {"MATH0.WT", "MATH0.TXT", "MATH0.PSF", "QRX.PRO"}) {
      const std::string path = std::string("\\Kelvane\\") + name;
      state += files.contents.at(path) == whole.at(path) ? 'n' : 'o';
    }
    EXPECT_TRUE(state == "nnnn" || state == "oooo") << state;
  };
  FailEachStep(
      [] {
        LeaveEditing();
        SaveGlyph(65, {"10 40 15 40 20 40 20 35 20 30"});
      },
      [&] {
        EXPECT_EQ(CharacterDefs[65 - kFirstGlyph][0], "0 0 moveto 65 0 rlineto st");
        EXPECT_EQ(TypefaceTable[12].Widths[65], TestWidth(12, 65));
        std::erase_if(files.contents, [this](const auto& file) { return IsOfJournal(file.first); });
        EXPECT_TRUE(lastingFailure || files.contents == stored);
        // A program that was stopped there starts again.
        EXPECT_NO_THROW(LoadCharacterDefs());
        EXPECT_NO_THROW(LoadWidthTables());
      });
}

}  // namespace
}  // namespace kelvane
