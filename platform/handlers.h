#pragma once

// The outermost place of every handler: where a failed operation meets the person.

#include <functional>

namespace kelvane {

// Runs a handler of a menu, control, window or timer. What it throws ends here and is shown with
// TheDialogs, so that the event loop goes on. Without dialogs, early in start-up, the exception passes.
void RunHandler(const std::function<void()>& handler);

// Filled at start-up: called when a handler is done that was not called by another one, before a failure is
// shown. Throws nothing.
extern std::function<void()> HandlerDone;

}  // namespace kelvane
