#pragma once

// The toolkit: windows and timers made of Qt's. Made after QApplication, destroyed before it.

#include <QTimer>
#include <memory>
#include <string>
#include <vector>

#include "platform/controls.h"
#include "platform/qt/qt_file_watch.h"
#include "platform/qt/qt_window.h"

namespace kelvane {

class QtTimer final : public Timer {
 public:
  QtTimer();
  void Start(int milliseconds) override;
  void Stop() override;

 private:
  QTimer timer_;
};

class QtToolkit final : public Toolkit {
 public:
  ~QtToolkit() override;
  Window* NewWindow(bool main) override;
  Window* NewSeparateWindow() override;
  Timer* NewTimer() override;
  std::unique_ptr<Image> NewImage(int width, int height, const Box& shown, float ratio,
                                  bool transparent) override;
  FileWatch* NewFileWatch() override;
  void Quit() override;
  std::string Version() const override;
  void CopyText(const std::string& text) override;

 private:
  std::vector<std::unique_ptr<QtWindow>> windows_;
  std::vector<std::unique_ptr<QtTimer>> timers_;
  std::vector<std::unique_ptr<QtFileWatch>> watches_;
  QtWindow* main_ = nullptr;
};

}  // namespace kelvane
