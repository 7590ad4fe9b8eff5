#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "formula/formula.h"
#include "formula/names.h"

namespace kelvane {

namespace {

// What closes a notation that ends in the middle, kept while it is read.
class Closings {
 public:
  std::string Of(std::string_view notation) {
    for (std::size_t at = 0; at < notation.size();) at += Take(notation.substr(at));
    std::string closings = EmptyPlaces(places_);
    for (; !open_.empty(); open_.pop_back())
      closings += open_.back().closing + EmptyPlaces(open_.back().places);
    return closings;
  }

 private:
  struct Group {
    std::string closing;
    int places;  // that what it belongs to has behind it
  };

  static std::string EmptyPlaces(int count) {
    std::string places;
    for (; count > 0; --count) places += "{}";
    return places;
  }

  void Close() {
    places_ = open_.empty() ? 0 : open_.back().places;
    if (!open_.empty()) open_.pop_back();
  }

  // How many bytes at the beginning of the rest were read.
  std::size_t Take(std::string_view rest) {
    switch (rest.front()) {
      case '\\':
        return TakeName(rest);
      case '{':
        open_.push_back({"}", std::max(places_ - 1, 0)});
        places_ = 0;
        return 1;
      case '}':
        Close();
        return 1;
      case '^':
      case '_':
        places_ = 1;
        return 1;
      case ' ':
        return 1;
      case '[':  // of a root
        if (places_ > 0) return std::min(rest.find(']'), rest.size() - 1) + 1;
        return 1;
      default:
        if ((static_cast<unsigned char>(rest.front()) & 0xC0U) == 0x80U) return 1;  // of the character before
        places_ = std::max(places_ - 1, 0);
        return 1;
    }
  }

  std::size_t TakeName(std::string_view rest) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    std::size_t end = 1;
    while (end < rest.size() && isLetter(rest[end])) ++end;
    if (end == 1) end = std::min<std::size_t>(2, rest.size());
    const std::string_view name = rest.substr(1, end - 1);
    if (name == "begin" || name == "end") {
      const std::size_t close = rest.find('}', end);
      if (close == std::string_view::npos) return rest.size();
      if (name == "begin") {
        open_.push_back({"\\end" + std::string(rest.substr(end, close + 1 - end)), 0});
      } else {
        Close();
      }
      return close + 1;
    }
    if (name == "left") open_.push_back({"\\right.", 0});
    if (name == "right") Close();
    const formula::Name* known = formula::FindName(name);
    places_ = known ? known->places : std::max(places_ - 1, 0);
    return end;
  }

  std::vector<Group> open_;
  int places_ = 0;  // that the last name still has to come
};

}  // namespace

std::string CompletedNotation(std::string_view notation) {
  return std::string(notation) + Closings().Of(notation);
}

}  // namespace kelvane
