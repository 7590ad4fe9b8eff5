#include "papers/paper_lock.h"

#include <array>
#include <cstdio>
#include <utility>

#include "document/paper.h"
#include "platform/checksum.h"
#include "platform/failure.h"
#include "platform/if_possible.h"

namespace kelvane {

namespace {

std::string Folder() {
  return StateFolder + "locks\\";
}

// Pages of one paper have one lock, by whatever way they are reached.
std::string LockOf(const std::string& pageFile) {
  if (pageFile.empty() || StateFolder.empty()) return {};
  std::array<char, 24> name;
  std::snprintf(name.data(), name.size(), "%016llx",
                static_cast<unsigned long long>(Checksum(TheFiles->Resolve(PageFileName(pageFile, 0)))));
  return Folder() + name.data();
}

}  // namespace

PaperLock::~PaperLock() {
  Release();
}

PaperLock::PaperLock(PaperLock&& other) noexcept
    : paper_(std::move(other.paper_)),
      file_(std::move(other.file_)),
      handle_(std::exchange(other.handle_, {})),
      looking_(std::exchange(other.looking_, false)) {}

PaperLock& PaperLock::operator=(PaperLock&& other) noexcept {
  if (this == &other) return *this;
  Release();
  paper_ = std::move(other.paper_);
  file_ = std::move(other.file_);
  handle_ = std::exchange(other.handle_, {});
  looking_ = std::exchange(other.looking_, false);
  return *this;
}

void PaperLock::Release() {
  if (!handle_) return;
  // Once it was taken over, what goes by its name is another's. One that stays and nobody holds is in
  // nobody's way.
  IfPossible([&] {
    if (TheFiles->IsInPlace(*handle_)) TheFiles->Remove(file_);
  });
  IfPossible([&] { TheFiles->Close(*handle_); });
  handle_ = {};
}

std::optional<PaperLock> PaperLock::Try(const std::string& pageFile) {
  PaperLock lock;
  lock.paper_ = PageFileName(pageFile, 0);
  try {
    lock.file_ = LockOf(pageFile);
    if (lock.file_.empty()) return lock;
    TheFiles->MakeFolder(Folder());
    lock.handle_ = TheFiles->OpenLocked(lock.file_);
  } catch (const Failure&) {
    return lock;  // a folder that cannot be written must not keep anybody from a paper
  }
  if (!lock.handle_) return {};
  return lock;
}

PaperLock PaperLock::ToLook(const std::string& pageFile) {
  PaperLock lock;
  lock.paper_ = PageFileName(pageFile, 0);
  lock.looking_ = true;
  return lock;
}

PaperLock PaperLock::TakeOver(const std::string& pageFile) {
  const std::string file = LockOf(pageFile);
  if (TheFiles->Exists(file)) TheFiles->Remove(file);
  std::optional<PaperLock> lock = Try(pageFile);
  // Somebody was faster.
  if (!lock) throw Failure("The paper was opened elsewhere again.");
  return std::move(*lock);
}

bool PaperLock::IsOf(const std::string& pageFile) const {
  return !paper_.empty() && paper_ == PageFileName(pageFile, 0);
}

bool PaperLock::MayWrite() const {
  return !looking_ && (!handle_ || TheFiles->IsInPlace(*handle_));
}

}  // namespace kelvane
