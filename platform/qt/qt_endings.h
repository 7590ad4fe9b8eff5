#pragma once

// How the program ends: when it asks for it itself, by signals, at the end of the desktop's session.

#include <QApplication>
#include <functional>

namespace kelvane {

// From now on SIGTERM, SIGHUP, SIGINT and the desktop's word to end have `flush` called and end the event
// loop as leaving does, without a question; when the desktop asks that work be stored, `flush` is called. (If
// the display goes away, Qt ends the program itself, at once.)
void WatchForEndings(QApplication& application, std::function<void()> flush);

// Ends the event loop when it is next idle, also one that is yet to begin. Asks nobody.
void QuitLater();

}  // namespace kelvane
