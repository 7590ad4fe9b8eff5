#include "papers/journal.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "editing/notes.h"
#include "platform/controls.h"
#include "platform/failure.h"
#include "platform/handlers.h"

namespace kelvane {

namespace {

constexpr int kTick = 400;  // milliseconds from a change to its being synced, at most
constexpr int kNames = 100;
constexpr std::uint32_t kWaitAfterFailure = 10;  // seconds

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
  for (const bool removing : {true, false}) {
    try {
      removing ? TheFiles->Remove(file.path) : TheFiles->Close(file.handle);
    } catch (const Failure&) {
    }
  }
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
  Pending = {};
  Pending.AddPage(ThePage, StepsOfPage(), FileOfPage, EditsNotStored);
  LastHalf = {};
}

// What was written stays, whatever it is; a later change begins anew.
void GiveUp(const Failure& failure) {
  if (Now) Old.push_back(*std::exchange(Now, {}));
  Wanted = true;
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
    TheFiles->Write(Now->handle, Pending.Take(Seconds()));
    if (begun && !Old.empty()) {
      TheFiles->Sync(Now->handle);
      RemoveOld();
    }
    FailedAt = 0;
    WakeClock();
  } catch (const Failure& failure) {
    GiveUp(failure);
  }
}

void NoteEvent(PageEvent event, const Step& step) {
  Wanted = true;
  if (event == PageEvent::Replaced) {
    if (Now) Old.push_back(*std::exchange(Now, {}));
    return;
  }
  ++EditsNotStored;
  if (!Now) return;  // the page is taken whole, with this step
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
