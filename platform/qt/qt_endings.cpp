#include "platform/qt/qt_endings.h"

#include <sys/socket.h>
#include <unistd.h>

#include <QEvent>
#include <QSessionManager>
#include <QSocketNotifier>
#include <csignal>
#include <utility>

namespace kelvane {
namespace {

// A handler of signals may do next to nothing: it wakes the event loop by a byte.
int Ends[2];

void TellOfSignal(int) {
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = write(Ends[0], &byte, 1);
}

// Qt would ask every window whether it may close.
class QuitWatcher final : public QObject {
 public:
  QuitWatcher(QObject* application, std::function<void()> leave)
      : QObject(application), leave_(std::move(leave)) {}

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched != parent() || event->type() != QEvent::Quit) return false;
    leave_();
    return true;
  }

 private:
  std::function<void()> leave_;
};

}  // namespace

void WatchForEndings(QApplication& application, std::function<void()> flush) {
  QObject::connect(&application, &QGuiApplication::commitDataRequest, &application,
                   [flush](QSessionManager& manager) {
                     flush();
                     manager.setRestartHint(QSessionManager::RestartNever);
                   });
  const auto leave = [flush = std::move(flush)] {
    flush();
    QCoreApplication::exit(0);
    // A dialog that was opened before the event loop began ends by that, and the loop is still to come.
    QuitLater();
  };
  application.installEventFilter(new QuitWatcher(&application, leave));

  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, Ends) != 0) return;
  auto* notifier = new QSocketNotifier(Ends[1], QSocketNotifier::Read, &application);
  QObject::connect(notifier, &QSocketNotifier::activated, &application, [leave] {
    char byte = 0;
    if (read(Ends[1], &byte, 1) == 1) leave();
  });
  struct sigaction action {};
  action.sa_handler = TellOfSignal;
  action.sa_flags = SA_RESTART;
  for (const int signal : {SIGTERM, SIGHUP, SIGINT}) sigaction(signal, &action, nullptr);
}

void QuitLater() {
  QMetaObject::invokeMethod(
      QCoreApplication::instance(), [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

}  // namespace kelvane
