#include "platform/qt/qt_toolkit.h"

#include <QClipboard>
#include <QGuiApplication>

#include "platform/failure.h"
#include "platform/handlers.h"
#include "platform/qt/qt_endings.h"
#include "platform/qt/qt_image_painter.h"
#include "platform/qt/qt_text.h"

namespace kelvane {

QtTimer::QtTimer() {
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { RunHandler(OnTick); });
}

void QtTimer::Start(int milliseconds) {
  timer_.start(milliseconds);
}

void QtTimer::Stop() {
  timer_.stop();
}

QtToolkit::~QtToolkit() {
  timers_.clear();
  // The other windows hang on the main one, which was made before them.
  while (!windows_.empty()) windows_.pop_back();
}

Window* QtToolkit::NewWindow(bool main) {
  const auto kind = main ? QtWindow::Kind::Main : QtWindow::Kind::Tool;
  windows_.push_back(std::make_unique<QtWindow>(kind, main ? nullptr : main_));
  QtWindow* window = windows_.back().get();
  if (main) main_ = window;
  return window;
}

Window* QtToolkit::NewSeparateWindow() {
  return windows_.emplace_back(std::make_unique<QtWindow>(QtWindow::Kind::Separate, main_)).get();
}

Timer* QtToolkit::NewTimer() {
  return timers_.emplace_back(std::make_unique<QtTimer>()).get();
}

std::unique_ptr<Image> QtToolkit::NewImage(int width, int height, const Box& shown, float ratio,
                                           bool transparent) {
  auto image = std::make_unique<QtImagePainter>(QSize(width, height), shown, ratio,
                                                transparent ? Qt::transparent : Qt::white);
  if (image->Picture().isNull()) {
    throw Failure("There is not enough memory for a picture of " + std::to_string(width) + " by " +
                  std::to_string(height) + " pixels.");
  }
  return image;
}

FileWatch* QtToolkit::NewFileWatch() {
  return watches_.emplace_back(std::make_unique<QtFileWatch>()).get();
}

void QtToolkit::Quit() {
  QuitLater();
}

std::string QtToolkit::Version() const {
  return std::string("Qt ") + qVersion();
}

void QtToolkit::CopyText(const std::string& text) {
  QGuiApplication::clipboard()->setText(PlainText(text));
}

}  // namespace kelvane
