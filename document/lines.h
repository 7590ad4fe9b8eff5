#pragma once

// Plain lines of a text: no quote rule, so that a line that begins with a quote cannot swallow the next.

#include <cstddef>
#include <string_view>

namespace kelvane {

// Takes the first line off `rest` and returns it without its end. Lines end in CR LF, or in a lone CR or LF.
// Call while `rest` is not empty; the end of the last line may be missing.
inline std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = rest.find_first_of("\r\n");
  const std::string_view line = rest.substr(0, end);
  if (end == std::string_view::npos) {
    rest = {};
    return line;
  }
  const bool pair = rest[end] == '\r' && end + 1 < rest.size() && rest[end + 1] == '\n';
  rest.remove_prefix(end + (pair ? 2 : 1));
  return line;
}

}  // namespace kelvane
