#include "platform/handlers.h"

#include <exception>
#include <new>
#include <string>

#include "platform/controls.h"
#include "platform/failure.h"

namespace kelvane {

std::function<void()> HandlerDone;

namespace {

// Handlers run within each other: painting, and whatever happens while a dialog is open.
int Depth = 0;

// Counts what lies within it, however it is left.
struct OneDeeper {
  OneDeeper() { ++Depth; }
  ~OneDeeper() { --Depth; }
  OneDeeper(const OneDeeper&) = delete;
  OneDeeper& operator=(const OneDeeper&) = delete;
};

}  // namespace

void RunHandler(const std::function<void()>& handler) {
  if (!handler) return;
  if (TheDialogs == nullptr) {
    handler();
    return;
  }
  std::string message;
  try {
    const OneDeeper within;
    handler();
  } catch (const Failure& failure) {
    message = failure.what();
  } catch (const std::bad_alloc&) {
    message = "There is not enough memory for this command.";
  } catch (const std::exception& error) {
    message = std::string("This command stopped because of an error in the program: ") + error.what();
  }
  if (Depth == 0 && HandlerDone) HandlerDone();
  if (!message.empty()) TheDialogs->Message(message);
}

}  // namespace kelvane
