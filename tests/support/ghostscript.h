#pragma once

// Ghostscript as the printer of a test.

#include <string>

namespace kelvane {

// Interprets a job with the given arguments (the device and what it needs), those of `after` behind it, and
// returns all that Ghostscript says, errors too. Fails the test if it does not run to the end, or runs on.
std::string Ghostscript(const std::string& job, const std::string& arguments, const std::string& after = "");

}  // namespace kelvane
