#include "platform/qt/qt_offscreen.h"

#include <QGuiApplication>
#include <cstdlib>

namespace kelvane {

void UseTypefacesOffscreen() {
  static char name[] = "kelvane-render";
  static char* arguments[] = {name, nullptr};
  static int count = 1;
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  // Never destroyed: at the end of the program nobody knows what Qt still needs of itself.
  static const auto& application = *new QGuiApplication(count, arguments);
  static_cast<void>(application);
}

}  // namespace kelvane
