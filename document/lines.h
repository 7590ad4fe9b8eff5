#pragma once

// Plain lines of a text: no quote rule, so that a line that begins with a quote cannot swallow the next.

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace kelvane {

// Position of the first CR or LF. Searched for in short stretches, one character at a time, which is much
// faster than a search for either, and looks at no part of the text twice where only one of them occurs.
inline std::size_t FindLineEnd(std::string_view text) {
  constexpr std::size_t kStretch = 256;
  for (std::size_t start = 0; start < text.size(); start += kStretch) {
    const std::string_view stretch = text.substr(start, kStretch);
    const std::size_t feed = stretch.find('\n');
    const std::size_t end = std::min(stretch.substr(0, feed).find('\r'), feed);
    if (end != std::string_view::npos) return start + end;
  }
  return std::string_view::npos;
}

// Takes the first line off `rest` and returns it without its end. Lines end in CR LF, or in a lone CR or LF.
// Call while `rest` is not empty; the end of the last line may be missing.
inline std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = FindLineEnd(rest);
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
