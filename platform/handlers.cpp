#include "platform/handlers.h"

#include <exception>
#include <new>
#include <string>

#include "platform/controls.h"
#include "platform/failure.h"

namespace kelvane {

void RunHandler(const std::function<void()>& handler) {
  if (!handler) return;
  if (TheDialogs == nullptr) {
    handler();
    return;
  }
  try {
    handler();
  } catch (const Failure& failure) {
    TheDialogs->Message(failure.what());
  } catch (const std::bad_alloc&) {
    TheDialogs->Message("There is not enough memory for this command.");
  } catch (const std::exception& error) {
    TheDialogs->Message(std::string("This command stopped because of an error in the program: ") +
                        error.what());
  }
}

}  // namespace kelvane
