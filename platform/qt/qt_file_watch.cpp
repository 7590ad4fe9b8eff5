#include "platform/qt/qt_file_watch.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>

#include "platform/files.h"
#include "platform/handlers.h"

namespace kelvane {

namespace {

constexpr int kSettle = 300;  // milliseconds; some programs write a file in several steps

}  // namespace

QtFileWatch::QtFileWatch() {
  settle_.setSingleShot(true);
  settle_.setInterval(kSettle);
  const auto begin = [this] {
    if (!file_.isEmpty()) settle_.start();
  };
  QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, &settle_, begin);
  QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &settle_, begin);
  // Not every file system tells of changes that another machine makes.
  QObject::connect(qApp, &QGuiApplication::applicationStateChanged, &settle_,
                   [begin](Qt::ApplicationState state) {
                     if (state == Qt::ApplicationActive) begin();
                   });
  QObject::connect(&settle_, &QTimer::timeout, &settle_, [this] { Tell(); });
}

void QtFileWatch::Watch(const std::string& path) {
  file_ = path.empty() ? QString() : QFile::decodeName(QByteArray::fromStdString(MachinePath(path)));
  settle_.stop();
  const QStringList before = watcher_.files() + watcher_.directories();
  if (!before.isEmpty()) watcher_.removePaths(before);
  Follow();
}

void QtFileWatch::Follow() {
  if (file_.isEmpty()) return;
  const QFileInfo file(file_);
  if (file.exists() && !watcher_.files().contains(file_)) watcher_.addPath(file_);
  const QString folder = file.absolutePath();
  if (QFileInfo::exists(folder) && !watcher_.directories().contains(folder)) watcher_.addPath(folder);
}

void QtFileWatch::Tell() {
  Follow();
  if (QApplication::activeModalWidget() != nullptr) return settle_.start();
  RunHandler(OnChange);
}

}  // namespace kelvane
