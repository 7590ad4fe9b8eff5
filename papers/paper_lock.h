#pragma once

// Whose paper it is. A program that has a paper open holds a lock on it in the state folder; another one that
// opens it is told.

#include <optional>
#include <string>

#include "platform/files.h"

namespace kelvane {

// A paper that was asked for, held until it is let go or taken over by another program. One that is only
// looked at is not held.
class PaperLock {
 public:
  PaperLock() = default;
  ~PaperLock();
  PaperLock(PaperLock&& other) noexcept;
  PaperLock& operator=(PaperLock&& other) noexcept;

  // That of the paper that a page file belongs to; nothing if another program holds it. Where no lock can be
  // made nobody is told of anything.
  static std::optional<PaperLock> Try(const std::string& pageFile);
  static PaperLock ToLook(const std::string& pageFile);
  // Takes it from whoever has it.
  static PaperLock TakeOver(const std::string& pageFile);

  bool IsOf(const std::string& pageFile) const;
  bool MayWrite() const;
  bool Looking() const { return looking_; }
  // Leaves it to the end of the program to let it go.
  void Forget() { handle_ = {}; }

 private:
  void Release();

  std::string paper_;  // its name as that of a page 0
  std::string file_;   // of the lock
  std::optional<Files::Handle> handle_;
  bool looking_ = false;
};

}  // namespace kelvane
