#include "platform/file_syncer.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace kelvane {

namespace {

// 0, or the system's number of what went wrong.
int SyncNow(int descriptor, const std::string& folder) {
  if (fdatasync(descriptor) != 0) return errno;
  if (folder.empty()) return 0;
  const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (opened < 0) return 0;  // it may be written but not read; the file itself is there
  const int reason = fsync(opened) == 0 || errno == EINVAL ? 0 : errno;
  close(opened);
  return reason;
}

}  // namespace

FileSyncer::~FileSyncer() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void FileSyncer::Sync(int descriptor, const std::string& folder) {
  {
    const std::lock_guard lock(mutex_);
    std::string& asked = waiting_[descriptor];
    if (!folder.empty()) asked = folder;
    if (!thread_.joinable()) thread_ = std::thread([this] { Run(); });
  }
  changed_.notify_all();
}

int FileSyncer::TakeError(int descriptor) {
  const std::lock_guard lock(mutex_);
  const auto error = errors_.extract(descriptor);
  return error.empty() ? 0 : error.mapped();
}

void FileSyncer::Forget(int descriptor) {
  std::unique_lock lock(mutex_);
  waiting_.erase(descriptor);
  changed_.wait(lock, [&] { return busyWith_ != descriptor; });
  errors_.erase(descriptor);
}

void FileSyncer::Run() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [&] { return ending_ || !waiting_.empty(); });
    if (waiting_.empty()) return;  // what waits is synced before the end
    const auto request = waiting_.extract(waiting_.begin());
    busyWith_ = request.key();
    lock.unlock();
    const int reason = SyncNow(request.key(), request.mapped());
    lock.lock();
    if (reason != 0) errors_[busyWith_] = reason;
    busyWith_ = -1;
    changed_.notify_all();
  }
}

}  // namespace kelvane
