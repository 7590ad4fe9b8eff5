#pragma once

// The one exception of the program: an operation that failed, with a message for the person.

#include <stdexcept>
#include <string>

namespace kelvane {

// Thrown by a failing operation, caught where handlers are entered (platform/handlers.h), shown as a message
// box. The text is complete: what was being done, with which file, and why not.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace kelvane
