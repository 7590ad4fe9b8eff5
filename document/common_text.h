#pragma once

// What two states of a text have in common at their ends.

#include <cstddef>
#include <string_view>

namespace kelvane {

// How many bytes two texts have in common at their front, and at their back.
std::size_t CommonFront(std::string_view a, std::string_view b);
std::size_t CommonBack(std::string_view a, std::string_view b);

// The same in bytes of whole lines, which end in LF; no line is at the front and at the back.
struct CommonLines {
  std::size_t front = 0;
  std::size_t back = 0;
};
CommonLines LinesInCommon(std::string_view a, std::string_view b);

}  // namespace kelvane
