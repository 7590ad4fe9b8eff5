#pragma once

// Tells when a file has changed, by the notifications of the system.

#include <QFileSystemWatcher>
#include <QTimer>

#include "platform/controls.h"

namespace kelvane {

class QtFileWatch final : public FileWatch {
 public:
  QtFileWatch();
  void Watch(const std::string& path) override;

 private:
  // Asks the system to tell of the file as it is now: one that was replaced is another one.
  void Follow();
  void Tell();

  QFileSystemWatcher watcher_;
  QTimer settle_;
  QString file_;
};

}  // namespace kelvane
