#pragma once

// What two states of a text differ in, as the lines that stand in the place of others.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// Whole lines of a text that were replaced by others.
struct Difference {
  std::size_t at = 0;  // where they begin in the text before
  std::string before;
  std::string after;
};
using Differences = std::vector<Difference>;  // down the text, none touching the next

Differences Compare(std::string_view before, std::string_view after);

// Takes a text from the state before to the one after, or back.
void Replace(std::string& text, const Differences& differences, bool forward);

}  // namespace kelvane
