#pragma once

// Everything that takes bytes of somebody else, each as a routine that reads them and works with what came
// out. A reader throws nothing and ends the program where what must hold does not.

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane::fuzz {

struct Reader {
  const char* name;
  std::vector<std::string> seeds;  // inputs to begin with
  std::function<void(std::string_view)> run;
};

// Made anew at each call. What they need of the program is set up at the first one.
std::vector<Reader> Readers();

}  // namespace kelvane::fuzz
