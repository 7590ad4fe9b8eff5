// How long it takes from the start of the process until the first picture of a window: an empty main window
// beside the editor with its sample page. Started without an argument it starts itself in turn as either and
// prints the medians; the windows appear on the platform that QT_QPA_PLATFORM names.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QMainWindow>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/settings.h"
#include "app/startup.h"
#include "platform/files.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_start.h"
#include "platform/qt/qt_toolkit.h"

extern char** environ;

namespace {

constexpr int kStarts = 31;
constexpr int kWidth = 640;
constexpr int kHeight = 480;
constexpr char kSamplePage[] = KELVANE_PROGRAM_FOLDER "/CALCULUS.001";

// Of a clock that all processes share.
double Milliseconds() {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

// Tells its parent when the first painting has gone to the screen, and ends.
class TimedApplication : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    if (event->type() == QEvent::Paint) painted_ = true;
    ++depth_;
    const bool result = QApplication::notify(receiver, event);
    // Windows are painted within the event that asks for it, and are on the screen when that is over.
    if (--depth_ == 0 && painted_) {
      std::printf("%.3f\n", Milliseconds());
      std::fflush(stdout);
      _exit(0);
    }
    return result;
  }

 private:
  int depth_ = 0;
  bool painted_ = false;
};

int ShowWindow(int& argc, char** argv, bool editor) {
  std::future<void> fontSystem;
  if (editor) {
    kelvane::LeaveMissingSessionBus();
    fontSystem = kelvane::ReadFontSystem();
  }
  TimedApplication application(argc, argv);
  std::future<void> fontList;
  if (editor) {
    fontList = kelvane::ListFonts(fontSystem);
    kelvane::UseStyleWithoutPictures();
  }
  QMainWindow empty;
  kelvane::QtToolkit toolkit;
  kelvane::QtDialogs dialogs;
  kelvane::TheToolkit = &toolkit;
  kelvane::TheDialogs = &dialogs;
  if (editor) {
    fontSystem.wait();
    if (!kelvane::StartUp(kelvane::BackslashPath(KELVANE_PROGRAM_FOLDER))) return 1;
    // Whatever size somebody's settings tell.
    kelvane::FormPlace = {0, 0, kWidth * kelvane::kTwipsPerPixel, kHeight * kelvane::kTwipsPerPixel};
    kelvane::ShowEditor(kelvane::BackslashPath(kSamplePage));
  } else {
    empty.resize(kWidth, kHeight);
    empty.show();
  }
  return QApplication::exec();
}

// Milliseconds from starting a process until it tells of its first picture; below 0 if it never does.
double TimeOneStart(char* self, const char* what) {
  int ends[2];
  if (pipe(ends) != 0) return -1;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  std::string argument = what;
  char* arguments[] = {self, argument.data(), nullptr};
  pid_t child = 0;
  const double start = Milliseconds();
  const int failed = posix_spawn(&child, "/proc/self/exe", &actions, nullptr, arguments, environ);
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  char told[64] = {};
  const ssize_t length = failed != 0 ? 0 : read(ends[0], told, sizeof told - 1);
  close(ends[0]);
  if (failed == 0) waitpid(child, nullptr, 0);
  return length > 0 ? std::strtod(told, nullptr) - start : -1;
}

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const std::string_view what = argc > 1 ? argv[1] : "";
  if (what == "editor" || what == "bare") return ShowWindow(argc, argv, what == "editor");

  std::vector<double> bare;
  std::vector<double> editor;
  for (int i = 0; i < kStarts; ++i) {
    bare.push_back(TimeOneStart(argv[0], "bare"));
    editor.push_back(TimeOneStart(argv[0], "editor"));
    if (bare.back() < 0 || editor.back() < 0) {
      std::fprintf(stderr, "A window did not come up.\n");
      return 1;
    }
  }
  std::printf(
      "first picture after: empty window %.1f ms, editor with a page %.1f ms, ratio %.2f (medians of %d)\n",
      Median(bare), Median(editor), Median(editor) / Median(bare), kStarts);
}
