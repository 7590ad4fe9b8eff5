#pragma once

// Ends of the program that nobody in it has asked for: signals, the end of the desktop's session.

#include <QApplication>
#include <functional>

namespace kelvane {

// From now on SIGTERM, SIGHUP, SIGINT and the desktop's word to end have `flush` called and end the event
// loop as leaving does, without a question; when the desktop asks that work be stored, `flush` is called. (If
// the display goes away, Qt ends the program itself, at once.)
void WatchForEndings(QApplication& application, std::function<void()> flush);

}  // namespace kelvane
