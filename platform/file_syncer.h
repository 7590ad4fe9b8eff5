#pragma once

// Syncs files on a thread of its own, so that nobody who types waits for the disk. The one thread of the
// program beside the main one; it touches nothing but the file descriptors it is told of.

#include <condition_variable>
#include <map>
#include <mutex>
#include <string>
#include <thread>

namespace kelvane {

class FileSyncer {
 public:
  FileSyncer() = default;
  ~FileSyncer();
  FileSyncer(const FileSyncer&) = delete;
  FileSyncer& operator=(const FileSyncer&) = delete;

  // Has what was written to the descriptor so far reach the disk, and the folder (machine form) that its name
  // is in, unless empty. Requests that wait already are one.
  void Sync(int descriptor, const std::string& folder);
  // The system's number of what went wrong since the last call, 0 for nothing.
  int TakeError(int descriptor);
  // Waits until the thread does nothing with the descriptor, and will not.
  void Forget(int descriptor);

 private:
  void Run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<int, std::string> waiting_;  // descriptors and their folders
  std::map<int, int> errors_;
  int busyWith_ = -1;
  bool ending_ = false;
  std::thread thread_;  // started by the first request
};

}  // namespace kelvane
