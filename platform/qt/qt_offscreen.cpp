#include "platform/qt/qt_offscreen.h"

#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>

namespace kelvane {

void UseTypefacesOffscreen() {
  static char name[] = "kelvane-render";
  static char* arguments[] = {name, nullptr};
  static int count = 1;
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  // What Qt misses of a desktop does not matter here, and would stand among the program's own messages.
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtFatalMsg) std::fprintf(stderr, "kelvane-render: %s\n", qPrintable(text));
  });
  // Never destroyed: at the end of the program nobody knows what Qt still needs of itself.
  static const auto& application = *new QGuiApplication(count, arguments);
  static_cast<void>(application);
}

}  // namespace kelvane
