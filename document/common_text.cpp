#include "document/common_text.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::size_t kBlock = 1024;  // bytes

bool EndsLine(std::string_view text, std::size_t end, std::size_t start) {
  return end == start || text[end - 1] == '\n';
}

}  // namespace

// Blocks are compared at once: most of two pages is the same.
std::size_t CommonFront(std::string_view a, std::string_view b) {
  const std::size_t shorter = std::min(a.size(), b.size());
  std::size_t front = 0;
  while (shorter - front >= kBlock && a.compare(front, kBlock, b, front, kBlock) == 0) front += kBlock;
  while (front < shorter && a[front] == b[front]) ++front;
  return front;
}

std::size_t CommonBack(std::string_view a, std::string_view b) {
  const std::size_t shorter = std::min(a.size(), b.size());
  std::size_t back = 0;
  while (shorter - back >= kBlock &&
         a.compare(a.size() - back - kBlock, kBlock, b, b.size() - back - kBlock, kBlock) == 0) {
    back += kBlock;
  }
  while (back < shorter && a[a.size() - 1 - back] == b[b.size() - 1 - back]) ++back;
  return back;
}

CommonLines LinesInCommon(std::string_view a, std::string_view b) {
  std::size_t front = CommonFront(a, b);
  while (front > 0 && a[front - 1] != '\n') --front;
  std::size_t back = CommonBack(a.substr(front), b.substr(front));
  while (back > 0 && !(EndsLine(a, a.size() - back, front) && EndsLine(b, b.size() - back, front))) --back;
  return {front, back};
}

}  // namespace kelvane
