// The journal: what is in it after each act of a person, cut off and damaged anywhere, and what the next
// start makes of it.

#include "papers/journal.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "app/commands.h"
#include "app/menus.h"
#include "app/recovery_window.h"
#include "document/page.h"
#include "document/page_items.h"
#include "editing/formula_entry.h"
#include "editing/keyboard.h"
#include "editing/notes.h"
#include "papers/recovery.h"
#include "platform/handlers.h"
#include "tests/support/editor_test.h"

namespace kelvane {
namespace {

constexpr char kPaper[] = "\\P\\Essay.001";
constexpr char kOldPage[] = "50 60 m 11 F0 (old) 1 s\r\n10 20 m 1 lw 5 5 rl stroke\r\n";

// All that a journal must bring back.
struct State {
  Page page;
  std::vector<std::string> back;  // labels of the steps
  std::vector<std::string> forward;
  HalfDone half;
  bool operator==(const State&) const = default;
};

std::vector<std::string> Labels(const std::vector<Step>& steps) {
  std::vector<std::string> labels;
  for (const Step& step : steps) labels.push_back(step.label);
  return labels;
}

State StateNow() {
  return {ThePage, Labels(StepsOfPage().back), Labels(StepsOfPage().forward), HalfDoneNow()};
}

State StateOf(const Journal& journal) {
  return {journal.page, Labels(journal.steps.back), Labels(journal.steps.forward), journal.half};
}

void PrintTo(const State& state, std::ostream* out) {
  *out << state.page.text << "run (" << state.half.run << ") caret " << state.half.caret << " mode "
       << state.half.mode << " path " << state.half.path << " steps " << state.back.size() << ", "
       << state.forward.size();
}

class JournalTest : public EditorTest {
 protected:
  void SetUp() override { files.contents[kPaper] = kOldPage; }

  static void Act(const std::function<void()>& act) { RunHandler(act); }

  void Type(const std::string& keys) {
    for (const char key : keys) Act([&] { canvas->OnKeyPress(static_cast<unsigned char>(key)); });
  }
  void Key(int code) {
    Act([&] { canvas->OnKeyPress(code); });
  }
  void Shortcut(const std::string& key) {
    Act([&] { window->PressShortcut(key); });
  }
  void Place(const std::string& anchor, float x, float y) {
    Act([&] { PlaceAt(anchor, x, y); });
  }

  // The journal that is there, empty if there is none; more than one fails the test.
  std::string JournalPath() {
    const std::vector<std::string> names = files.FilesIn(JournalFolder());
    EXPECT_LE(names.size(), 1U);
    return names.empty() ? "" : JournalFolder() + names.front();
  }
  std::string JournalNow() {
    const std::string path = JournalPath();
    return path.empty() ? "" : files.contents[path];
  }

  // The program is killed and started again.
  void KillAndStart(const std::string& page = {}) {
    files.LetGo();
    dialogs.messages.clear();
    Start(page);
  }
  FakeWindow& Recovery() { return *static_cast<FakeWindow*>(RecoveryWindow); }
  void Choose(const std::string& button) {
    Act([&] { Recovery().ClickButton(button); });
  }
};

// What a person may do to a page, at random.
class RandomActs {
 public:
  RandomActs(FakeWindow& window, RecordingCanvas& canvas, unsigned seed)
      : window_(window), canvas_(canvas), random_(seed) {}

  void Next() {
    switch (Below(14)) {
      case 0:
        window_.ClickButton(Below(2) != 0 ? "Bottom Left" : "Top Left");
        canvas_.Click(Coordinate(), Coordinate());
        break;
      case 1:
        canvas_.OnKeyPress(kKeyEnter);
        break;
      case 2:
        RunCommand(CommandOf("mEditUndo"));
        break;
      case 3:
        RunCommand(CommandOf("mEditRedo"));
        break;
      case 4:
        window_.ClickButton("Draw Bezier");
        canvas_.Click(Coordinate(), Coordinate());
        break;
      case 5:
        canvas_.Click(Coordinate(), Coordinate());
        break;
      case 6:
        canvas_.OnKeyPress(Below(2) != 0 ? kKeyLeft : kKeyBackspace);
        break;
      case 7:
        RunCommand(CommandOf("mEditSelectAll"));
        break;
      case 8:
        RunCommand(CommandOf("mEditDelete"));
        break;
      case 9:
        canvas_.OnKeyPress(kKeyEscape);
        break;
      default:
        canvas_.OnKeyPress('a' + Below(26));
    }
  }

 private:
  int Below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
  float Coordinate() { return static_cast<float>(Below(300)); }

  FakeWindow& window_;
  RecordingCanvas& canvas_;
  std::mt19937 random_;
};

TEST_F(JournalTest, EveryPrefixAndEveryFlippedByteLeadsToAStateThatWasThere) {
  constexpr int kActs = 400;
  Start(kPaper);
  RandomActs acts(*window, *canvas, 7);
  std::vector<std::pair<std::size_t, State>> states;  // and the length of the journal that leads to each
  for (int i = 0; i < kActs; ++i) {
    Act([&] { acts.Next(); });
    const std::size_t length = JournalNow().size();
    if (length > 0 && !states.empty() && states.back().first == length) states.pop_back();
    if (length > 0) states.emplace_back(length, StateNow());
  }
  const std::string journal = JournalNow();
  ASSERT_GT(states.size(), 200U);
  const auto whole = [&](std::size_t length) {
    const State* state = nullptr;
    for (const auto& [end, at] : states)
      if (end <= length) state = &at;
    return state;
  };
  for (std::size_t length = 0; length <= journal.size(); ++length) {
    const Journal read = ReadJournal(std::string_view(journal).substr(0, length));
    const State* expected = whole(length);
    if (expected == nullptr) {
      ASSERT_EQ(read.kind, Journal::Kind::NoJournal) << length;
      continue;
    }
    ASSERT_EQ(StateOf(read), *expected) << length;
    ASSERT_EQ(read.kind == Journal::Kind::Whole,
              std::any_of(states.begin(), states.end(), [&](const auto& s) { return s.first == length; }))
        << length;
  }
  for (std::size_t at = JournalHead().size(); at < journal.size(); at += 3) {
    std::string damaged = journal;
    damaged[at] = static_cast<char>(damaged[at] ^ (1 << at % 8));
    const Journal read = ReadJournal(damaged);
    const State* expected = whole(at);
    if (expected == nullptr) {
      ASSERT_EQ(read.kind, Journal::Kind::NoJournal) << at;
    } else {
      ASSERT_EQ(StateOf(read), *expected) << at;
    }
  }
}

// Records with a right checksum that no editor wrote: whatever is in them, what is read is a state of before.
TEST_F(JournalTest, ForeignRecordsDoNoHarm) {
  JournalRecord record;
  record.AddPage({"1 2 m 11 F0 (x) 3 s\r\n", 0, ""}, {}, {}, 0);
  const std::string start = JournalHead() + record.Take(1);
  Step step;
  step.text = {{5, "not there", "new"}};
  record.AddStep(PageEvent::Edit, step);
  const std::string foreign = start + record.Take(2);
  EXPECT_EQ(ReadJournal(foreign).kind, Journal::Kind::Damaged);
  EXPECT_EQ(ReadJournal(foreign).page, ReadJournal(start).page);
  record.AddStep(PageEvent::Back, step);
  EXPECT_EQ(ReadJournal(start + record.Take(2)).kind, Journal::Kind::Damaged);
  step.text = {};
  step.countChange = -1;
  record.AddStep(PageEvent::Edit, step);
  EXPECT_EQ(ReadJournal(start + record.Take(2)).page.drawingCount, 0);

  // Of the steps of a page those that lead nowhere are left out.
  step.countChange = 0;
  Step fits = step;
  fits.text = {{0, "", "1 2 m 11 F0 (x) 3 s\r\n"}};
  step.text = {{50, "", "not there"}};
  record.AddPage({"1 2 m 11 F0 (x) 3 s\r\n", 0, ""}, {{step, fits}, {step}}, {}, 1);
  const Journal left = ReadJournal(JournalHead() + record.Take(1));
  EXPECT_EQ(left.kind, Journal::Kind::Whole);
  EXPECT_EQ(left.steps.back.size(), 1U);
  EXPECT_TRUE(left.steps.forward.empty());

  std::mt19937 random(3);
  for (int i = 0; i < 3000; ++i) {
    HalfDone half;
    half.run = std::string(random() % 40, static_cast<char>(random()));
    record.AddHalfDone({}, half);
    std::string body = record.Take(2);
    for (int flips = 3; flips > 0; --flips) body[random() % body.size()] = static_cast<char>(random());
    ReadJournal(start + body);
  }
  EXPECT_EQ(ReadJournal("Kelvane journal 2\r\nwhatever").kind, Journal::Kind::OtherVersion);
}

TEST_F(JournalTest, AKilledProgramIsTakenUpWhereItWas) {
  Start(kPaper);
  Place("Bottom Left", 100, 99);
  Type("first");
  Key(kKeyEnter);
  Type("second");
  const State left = StateNow();
  KillAndStart();
  ASSERT_TRUE(RecoveryWindow && RecoveryWindow->Visible());
  EXPECT_NE(Recovery().lists[0]->rows.at(0).text.find("Essay, page 1"), std::string::npos);
  EXPECT_NE(Recovery().lists[0]->rows.at(0).text.find("1 edit and a run being typed"), std::string::npos);
  Choose("&Restore");
  EXPECT_EQ(StateNow(), left);
  EXPECT_EQ(Content(kPaper), kOldPage);
  EXPECT_NE(PageChanged, 0);
  EXPECT_FALSE(RecoveryWindow->Visible());

  // It goes on from there: the undo history is the old one, a second kill loses nothing, and saving writes
  // it.
  Shortcut("Ctrl+Z");
  Shortcut("Ctrl+Z");
  const State undone = StateNow();
  KillAndStart();
  Choose("&Restore");
  EXPECT_EQ(StateNow(), undone);
  Shortcut("Ctrl+S");
  EXPECT_NE(Content(kPaper).find("(first)"), std::string::npos);
  EXPECT_EQ(PageChanged, 0);
  KillAndStart();
  EXPECT_EQ(RecoveryWindow, nullptr);
  EXPECT_EQ(JournalPath(), "");
}

TEST_F(JournalTest, ARunBeingRetypedAndAPathBeingDrawnAreTakenUp) {
  files.contents[kPaper] = "50 60 m 11 F0 (old) 1 s\r\n";
  Start(kPaper);
  Act([] { RunCommand(CommandOf("mEditSelectAll")); });
  Act([] { RunCommand(CommandOf("mEditOpen")); });
  Key(kKeyEnd);
  Type("er");
  State left = StateNow();
  KillAndStart();
  Choose("&Restore");
  EXPECT_EQ(StateNow(), left);
  Key(kKeyEnter);
  EXPECT_EQ(PageText, "50 60 m 11 F0 (older) 1 s\r\n");

  Place("Draw Bezier", 10, 20);
  Act([&] { canvas->Click(40, 60); });
  left = StateNow();
  ASSERT_NE(left.half.path, "");
  KillAndStart();
  Choose("&Restore");
  EXPECT_EQ(StateNow(), left);
  Key(kKeyEnter);
  EXPECT_EQ(DrawingCount, 1);
}

TEST_F(JournalTest, WhatGoesOnBehindAFormulaAndItsLinesAreTakenUp) {
  Start(kPaper);
  Place("Bottom Left", 100, 99);
  Type("so on");
  for (int i = 0; i < 3; ++i) Key(kKeyLeft);
  Shortcut("Ctrl+M");
  Act([] { InsertIntoFormula("x % pasted\n^2"); });
  const State left = StateNow();
  KillAndStart();
  const Page whole = WholePage(FoundWork().at(0).journal);
  Choose("&Restore");
  EXPECT_EQ(StateNow(), left);
  Key(kKeyEnter);
  EXPECT_EQ(ThePage, whole);
  EXPECT_NE(ThePage.text.find("( on) 3 s"), std::string::npos);
  // What was placed opens again by its notation.
  KillAndStart();
  Choose("&Restore");
  const auto& texts = ItemsOfPage().Texts();
  const auto square = std::ranges::find_if(texts, [](const TextItem& item) { return item.entry.font == 2; });
  ASSERT_NE(square, texts.end());
  Act([&] { EXPECT_TRUE(OpenFormulaOf(square->id)); });
  EXPECT_EQ(FormulaNow()->notation, "x % pasted\n^2");
}

TEST_F(JournalTest, AFormulaBeingTypedIsTakenUp) {
  Start(kPaper);
  Place("Bottom Left", 100, 99);
  Shortcut("Ctrl+M");
  Type("a^2+{b");  // with an error by now
  State left = StateNow();
  KillAndStart();
  EXPECT_NE(Recovery().lists[0]->rows.at(0).text.find("a formula being typed"), std::string::npos);
  EXPECT_NE(WholePage(FoundWork().at(0).journal).text.find("(a^2+{b)"), std::string::npos);
  Choose("&Restore");
  EXPECT_EQ(StateNow(), left);
  dialogs.AnswerNo();  // an end of the program would lose it
  Act([&] { window->ClickFrameClose(); });
  EXPECT_EQ(StateNow(), left);
  Type("}");
  Key(kKeyEnter);
  const Page placed = ThePage;
  ASSERT_NE(placed.text, std::string(kOldPage));

  // Opened again, it takes the place of what it was.
  Act([] { OpenFormulaOf(ItemsOfPage().Texts().back().id); });
  Type("+c");
  left = StateNow();
  ASSERT_FALSE(left.half.replaced.empty());
  KillAndStart();
  const Page whole = WholePage(FoundWork().at(0).journal);
  Choose("&Restore");
  EXPECT_EQ(StateNow(), left);
  Key(kKeyEnter);
  EXPECT_EQ(ThePage, whole);
  EXPECT_EQ(ThePage.text.find("(old)"), placed.text.find("(old)"));
  Shortcut("Ctrl+Z");
  EXPECT_EQ(ThePage, placed);
}

// Edits of everything on a large page: the journal is never much larger than the page and a few of them.
TEST_F(JournalTest, ItStartsOverWhenItHasGrown) {
  constexpr std::size_t kMost = 7U << 20;
  files.contents[kPaper].clear();
  for (int i = 0; i < 4000; ++i)
    files.contents[kPaper] += std::to_string(i % 600) + " 20 m 11 F0 (aaaaaaaaaaaaaaaaaaaa) 1 s\r\n";
  Start(kPaper);
  const auto change = [&](char to) {
    Act([to] {
      EditPage("change", [to](Page& page) {
        for (char& c : page.text)
          if (c >= 'a' && c < 'l') c = to;
      });
    });
  };
  std::size_t largest = 0;
  for (int i = 0; i < 40; ++i) {
    change(static_cast<char>('b' + i % 10));
    ASSERT_LT(JournalNow().size(), kMost);  // and is one
    largest = std::max(largest, JournalNow().size());
  }
  ASSERT_GT(largest, 4U << 20);
  // Back beyond the steps that it has kept, and on.
  for (int i = 0; i < 30; ++i) Shortcut("Ctrl+Z");
  for (int i = 0; i < 5; ++i) Shortcut("Ctrl+Shift+Z");
  State left = StateNow();
  files.contents[JournalFolder() + "9-9.journal"] = JournalNow();  // killed while one took the other's place
  KillAndStart();
  EXPECT_EQ(FoundWork().size(), 1U);
  Choose("&Restore");
  EXPECT_EQ(ThePage, left.page);
  const std::vector<std::string> back = Labels(StepsOfPage().back);
  ASSERT_FALSE(back.empty());
  EXPECT_TRUE(std::equal(back.rbegin(), back.rend(), left.back.rbegin()));
  Shortcut("Ctrl+Z");
  Shortcut("Ctrl+Shift+Z");
  EXPECT_EQ(ThePage, left.page);
}

TEST_F(JournalTest, ItGoesWhenThePageIsLeftInOrder) {
  Start(kPaper);
  EXPECT_EQ(JournalPath(), "");
  Place("Top Left", 10, 10);
  EXPECT_EQ(JournalPath(), "");  // nothing to lose yet
  Type("x");
  EXPECT_NE(JournalPath(), "");
  Act([&] { window->PressShortcut("PgDown"); });
  EXPECT_EQ(JournalPath(), "");
  EXPECT_NE(Content(kPaper).find("(x)"), std::string::npos);
  Place("Top Left", 10, 10);
  Type("y");
  dialogs.AnswerNo();
  Act([&] { window->ClickFrameClose(); });
  EXPECT_EQ(JournalPath(), "");
  KillAndStart();
  EXPECT_EQ(RecoveryWindow, nullptr);
}

TEST_F(JournalTest, WhatWasLeftIsKeptBesideDiscardedOrLeftForLater) {
  files.contents["\\P\\Other.001"] = kOldPage;
  Start(kPaper);
  Place("Bottom Left", 100, 99);
  Type("unsaved");
  KillAndStart();
  Act([&] { Recovery().OnEscape(); });
  EXPECT_FALSE(RecoveryWindow->Visible());
  Act([] { OpenPaperFile("\\P\\Other.001"); });
  EXPECT_FALSE(RecoveryWindow->Visible());
  Act([] { OpenPaperFile(kPaper); });  // its own paper, by hand
  EXPECT_TRUE(RecoveryWindow->Visible());
  KillAndStart();
  dialogs.AnswerNo();
  Choose("&Discard");
  EXPECT_NE(JournalPath(), "");
  files.contents["\\P\\Essay-recovered.001"] = "taken";
  Choose("&Keep Both");
  EXPECT_EQ(Content(kPaper), kOldPage);
  EXPECT_EQ(Content("\\P\\Essay-recovered.001"), "taken");
  EXPECT_NE(Content("\\P\\Essay-recovered-2.001").find("100 99 m 11 F0 (unsaved) 3 s"), std::string::npos);
  EXPECT_EQ(JournalPath(), "");

  Act([] { OpenPaperFile(kPaper); });
  Act([&] { window->BoxOf("Control Codes")->Type("waits"); });  // no place was chosen
  KillAndStart();
  Choose("&Keep Both");
  EXPECT_NE(Content("\\P\\Essay-recovered-3.001").find("(waits)"), std::string::npos);

  Place("Bottom Left", 100, 99);
  Type("a paper without a name");
  KillAndStart();
  EXPECT_FALSE(Recovery().ButtonOf("&Keep Both")->enabled);
  dialogs.AnswerYes();
  Choose("&Discard");
  EXPECT_EQ(JournalPath(), "");
  EXPECT_FALSE(RecoveryWindow->Visible());
}

TEST_F(JournalTest, ARestoredPageDoesNotOverwriteWhatAnotherProgramWrote) {
  Start(kPaper);
  Place("Bottom Left", 100, 99);
  Type("mine");
  KillAndStart();
  files.contents[kPaper] = "1 2 m 11 F0 (theirs) 3 s\r\n";
  Choose("&Restore");
  EXPECT_EQ(PendingRun, "mine");
  dialogs.AnswerChoice(2);  // it asks, and Cancel keeps both
  Shortcut("Ctrl+S");
  EXPECT_NE(Content(kPaper).find("theirs"), std::string::npos);
}

TEST_F(JournalTest, OfAnotherVersionIsShownAndLeftAlone) {
  files.contents[JournalFolder() + "1-0.journal"] = "Kelvane journal 9\r\n...";
  Start();
  ASSERT_TRUE(RecoveryWindow && RecoveryWindow->Visible());
  EXPECT_FALSE(Recovery().ButtonOf("&Restore")->enabled);
  EXPECT_FALSE(Recovery().ButtonOf("&Keep Both")->enabled);
  EXPECT_EQ(Content(JournalFolder() + "1-0.journal"), "Kelvane journal 9\r\n...");
}

TEST_F(JournalTest, OneThatCannotBeReadOrRemovedHidesNoOther) {
  Start(kPaper);
  Place("Bottom Left", 100, 99);
  Type("left");
  for (const FileStep step : {FileStep::OpenLocked, FileStep::ReadWhole, FileStep::Remove}) {
    files.LetGo();
    files.contents[JournalFolder() + "0-0.journal"] = JournalHead();  // nothing to lose yet
    ResetRecovery();
    files.FailStep(step);
    Act(OfferRecovery);
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_EQ(FoundWork().size(), 1U);
  }
}

TEST_F(JournalTest, WhereItCannotBeWrittenTheEditorSaysSoOnceAndGoesOn) {
  for (const FileStep step : {FileStep::OpenLocked, FileStep::Write, FileStep::Sync}) {
    files.LetGo();
    files.contents.erase(JournalPath());
    Start(kPaper);
    Place("Bottom Left", 100, 99);
    files.FailStep(step, 1);
    Type("typed");
    toolkit.TickAll();
    EXPECT_NE(NoteLabel->Text().find("is not kept"), std::string::npos);
    Shortcut("Ctrl+S");
    EXPECT_NE(Content(kPaper).find("(typed)"), std::string::npos);
    EXPECT_TRUE(dialogs.messages.empty());
    files.FailNothing();
    files.contents[kPaper] = kOldPage;
  }
}

// The second editor is played by the locks that it would hold.
TEST_F(JournalTest, TwoEditorsOnOnePaper) {
  Start(kPaper);
  const std::vector<std::string> locks = files.FilesIn("\\State\\locks\\");
  ASSERT_EQ(locks.size(), 1U);
  const std::string lock = "\\State\\locks\\" + locks[0];

  // Taken over by the other one: saving asks for another name, and turning pages writes nothing.
  Place("Bottom Left", 100, 99);
  Type("mine");
  files.lockedElsewhere.insert(lock);
  dialogs.AnswerSave("\\P\\Mine.001");
  Shortcut("Ctrl+S");
  EXPECT_TRUE(dialogs.asked.back().starts_with("Save: Save As - Taken over")) << dialogs.asked.back();
  EXPECT_EQ(Content(kPaper), kOldPage);
  EXPECT_NE(Content("\\P\\Mine.001").find("(mine)"), std::string::npos);

  // Opened while the other one has it: given up, looked at, taken over.
  dialogs.AnswerChoice(2);
  Act([] { OpenPaperFile(kPaper); });
  EXPECT_EQ(CurrentPaperFile, "\\P\\Mine.001");
  dialogs.AnswerChoice(0);
  Act([] { OpenPaperFile(kPaper); });
  EXPECT_EQ(CurrentPaperFile, kPaper);
  Place("Bottom Left", 100, 99);
  Type("looked");
  dialogs.AnswerSave(kPaper);  // it is not free yet
  Shortcut("Ctrl+S");
  EXPECT_EQ(dialogs.messages.size(), 1U);
  dialogs.messages.clear();
  dialogs.AnswerSave("");
  Act([&] { window->PressShortcut("PgDown"); });
  EXPECT_EQ(Content(kPaper), kOldPage);
  dialogs.AnswerNo();  // to saving it
  dialogs.AnswerChoice(1);
  Act([] { OpenPaperFile(kPaper); });
  Place("Bottom Left", 100, 99);
  Type("mine now");
  Shortcut("Ctrl+S");
  EXPECT_NE(Content(kPaper).find("(mine now)"), std::string::npos);
}

}  // namespace
}  // namespace kelvane
