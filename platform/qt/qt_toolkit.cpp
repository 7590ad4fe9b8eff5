#include "platform/qt/qt_toolkit.h"

#include <QCoreApplication>

#include "platform/handlers.h"

namespace kelvane {

QtTimer::QtTimer() {
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { RunHandler(OnTick); });
}

void QtTimer::Start(int milliseconds) {
  timer_.start(milliseconds);
}

QtToolkit::~QtToolkit() {
  timers_.clear();
  // The other windows hang on the main one, which was made before them.
  while (!windows_.empty()) windows_.pop_back();
}

Window* QtToolkit::NewWindow(bool main) {
  windows_.push_back(std::make_unique<QtWindow>(main ? nullptr : main_));
  QtWindow* window = windows_.back().get();
  if (main) main_ = window;
  return window;
}

Timer* QtToolkit::NewTimer() {
  return timers_.emplace_back(std::make_unique<QtTimer>()).get();
}

void QtToolkit::Quit() {
  QuitLater();
}

void QtToolkit::QuitLater() {
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

}  // namespace kelvane
