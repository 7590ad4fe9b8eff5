#include "papers/journal.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "editing/notes.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/handlers.h"
#include "platform/if_possible.h"

namespace kelvane {

namespace {

constexpr int kTick = 400;  // milliseconds from a change to its being synced, at most
constexpr int kNames = 100;
constexpr std::uint32_t kWaitAfterFailure = 10;  // seconds
// When it has grown by so much behind the page whole it starts over; it then has the latest steps only, of
// either way up to so many bytes, and one at least.
constexpr std::size_t kMostGrowth = 4U << 20;
constexpr std::size_t kMostHistory = 1U << 20;

struct OpenFile {
  std::string path;
  Files::Handle handle;
};

bool Ended;                   // left in order: nothing is written before another page comes
std::optional<OpenFile> Now;  // begun with the page in memory
// Those that are no longer written to, but hold something until the next one is begun.
std::vector<OpenFile> Old;
bool Wanted;  // something has changed that a journal must hold
JournalRecord Pending;
HalfDone LastHalf;
std::size_t Growth;  // bytes behind the page whole
// Steps that it knows, the next ones of the page's.
std::size_t KnownBack;
std::size_t KnownForward;
JournalFile FileOfPage;
int EditsNotStored;
bool Unsynced;
bool ToldOfFailure;
std::uint32_t FailedAt;  // 0: it did not
Timer* Clock;

std::uint32_t Seconds() {
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
          .count());
}

JournalFile Described(const SeenFile& seen, int number) {
  return {seen.path, number, seen.there, seen.size, seen.sum};
}

// Closing and removing cannot lose anything, and nobody can do anything about it.
void Remove(const OpenFile& file) {
  IfPossible([&] { TheFiles->Remove(file.path); });
  IfPossible([&] { TheFiles->Close(file.handle); });
}

void RemoveOld() {
  for (const OpenFile& file : Old) Remove(file);
  Old.clear();
}

OpenFile OpenNew() {
  TheFiles->MakeFolder(JournalFolder());
  const std::string time = std::to_string(Seconds());
  for (int i = 0; i < kNames; ++i) {
    const std::string path = JournalFolder() + time + "-" + std::to_string(i) + kJournalEnd;
    if (TheFiles->Exists(path)) continue;
    if (const auto handle = TheFiles->OpenLocked(path)) return {path, *handle};
  }
  throw Failure("There are too many files in " + MachinePath(JournalFolder()) + ".");
}

std::size_t BytesOf(const Step& step) {
  std::size_t bytes = step.label.size();
  for (const Differences* all : {&step.text, &step.drawings})
    for (const Difference& difference : *all) bytes += difference.before.size() + difference.after.size();
  return bytes;
}

std::vector<Step> Latest(const std::vector<Step>& steps) {
  std::size_t bytes = 0;
  auto first = steps.end();
  while (first != steps.begin() && (first == steps.end() || bytes + BytesOf(*(first - 1)) <= kMostHistory))
    bytes += BytesOf(*--first);
  return {first, steps.end()};
}

// What is written from now on goes to a new journal, with the page whole.
void StartOver() {
  if (Now) Old.push_back(*std::exchange(Now, {}));
  Wanted = true;
}

// The one step that must not be in anybody's way.
void Begin() {
  const OpenFile file = OpenNew();
  try {
    TheFiles->Write(file.handle, JournalHead());
  } catch (const Failure&) {
    Remove(file);
    throw;
  }
  Now = file;
  const Steps steps = {Latest(StepsOfPage().back), Latest(StepsOfPage().forward)};
  KnownBack = steps.back.size();
  KnownForward = steps.forward.size();
  Pending = {};
  Pending.AddPage(ThePage, steps, FileOfPage, EditsNotStored);
  LastHalf = {};
  Growth = 0;
}

// What was written stays, whatever it is; a later change begins anew.
void GiveUp(const Failure& failure) {
  StartOver();
  FailedAt = Seconds();
  if (ToldOfFailure) return;
  ToldOfFailure = true;
  ShowNote(std::string("What you do is not kept for the case of a crash. ") + failure.what());
}

void Record();

void WakeClock() {
  if (!Clock) {
    Clock = TheToolkit->NewTimer();
    Clock->OnTick = [] {
      Record();  // what a handler has changed that is waiting for a dialog
      if (!Unsynced || !Now) return Clock->Stop();
      Unsynced = false;
      try {
        TheFiles->SyncSoon(Now->handle);
      } catch (const Failure& failure) {
        GiveUp(failure);
      }
    };
  }
  if (!Unsynced) Clock->Start(kTick);
  Unsynced = true;
}

// Takes down what has happened since the last record.
void Record() {
  if (Ended || StateFolder.empty()) return;
  HalfDone half = HalfDoneNow();
  Wanted = Wanted || half.Anything();
  if (!Wanted) return;
  if (!Now && FailedAt != 0 && Seconds() - FailedAt < kWaitAfterFailure) return;
  try {
    const bool begun = !Now;
    if (begun) Begin();
    Pending.AddHalfDone(LastHalf, half);
    LastHalf = std::move(half);
    if (Pending.Empty()) return;
    const std::string record = Pending.Take(Seconds());
    TheFiles->Write(Now->handle, record);
    if (!begun) Growth += record.size();
    if (begun && !Old.empty()) {
      TheFiles->Sync(Now->handle);
      RemoveOld();
    }
    FailedAt = 0;
    WakeClock();
    if (Growth <= kMostGrowth) return;
    // At once, so that both lead to the same if the program is killed before the old one has gone.
    StartOver();
    Record();
  } catch (const Failure& failure) {
    GiveUp(failure);
  }
}

// Whether the journal has the step that was taken, and what steps it has by then.
bool Knows(PageEvent event) {
  if (event == PageEvent::Edit) {
    ++KnownBack;
    KnownForward = 0;
    return true;
  }
  std::size_t& from = event == PageEvent::Back ? KnownBack : KnownForward;
  if (from == 0) return false;
  --from;
  ++(event == PageEvent::Back ? KnownForward : KnownBack);
  return true;
}

void NoteEvent(PageEvent event, const Step& step) {
  Wanted = true;
  if (event == PageEvent::Replaced) return StartOver();
  ++EditsNotStored;
  if (!Now) return;  // the page is taken whole, with this step
  if (!Knows(event)) return StartOver();
  Pending.AddStep(event, step);
  WakeClock();  // a dialog may be opened before the handler ends
}

}  // namespace

std::string JournalFolder() {
  return StateFolder + "journal\\";
}

void ResetJournal() {
  Ended = Wanted = Unsynced = ToldOfFailure = false;
  Now = {};
  Old.clear();
  Pending = {};
  LastHalf = {};
  FileOfPage = {};
  EditsNotStored = 0;
  Growth = KnownBack = KnownForward = 0;
  FailedAt = 0;
  Clock = nullptr;
  HandlerDone = nullptr;
  BeforeReplacing = nullptr;
  PageRecorded = nullptr;
}

void StartJournal() {
  HandlerDone = Record;
  BeforeReplacing = FlushJournal;
  PageRecorded = NoteEvent;
}

void BeginJournalOfPage(const SeenFile& file, int number) {
  if (Now) Old.push_back(*std::exchange(Now, {}));
  RemoveOld();
  Ended = Wanted = false;
  Pending = {};
  EditsNotStored = 0;
  FileOfPage = Described(file, number);
}

void NoteFileOfPage(const SeenFile& file, int number, bool stored) {
  FileOfPage = Described(file, number);
  if (stored) EditsNotStored = 0;
  if (Now) Pending.AddFile(FileOfPage, stored);
}

void ContinueJournal(const std::string& path, Files::Handle handle, int edits) {
  Old.push_back({path, handle});
  EditsNotStored = edits;
  Wanted = true;
}

void FlushJournal() {
  Record();
  if (!Now) return;
  try {
    TheFiles->Sync(Now->handle);
  } catch (const Failure& failure) {
    GiveUp(failure);
  }
}

void EndJournal() {
  if (Now) Old.push_back(*std::exchange(Now, {}));
  RemoveOld();
  Ended = true;
}

}  // namespace kelvane
