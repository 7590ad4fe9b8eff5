#include "document/pdf_pages.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <map>
#include <optional>
#include <set>

#include "document/page.h"
#include "document/paper.h"
#include "platform/compression.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {
namespace {

std::string_view From(std::string_view text, std::size_t at) {
  return text.substr(std::min(at, text.size()));
}

void SkipBlanks(std::string_view& text) {
  text = From(text, text.find_first_not_of(" \r\n\t"));
}

bool Take(std::string_view& text, std::string_view word) {
  SkipBlanks(text);
  if (!text.starts_with(word)) return false;
  text.remove_prefix(word.size());
  return true;
}

std::optional<std::size_t> TakeNumber(std::string_view& text) {
  SkipBlanks(text);
  std::size_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
  return number;
}

std::optional<std::size_t> NumberBehind(std::string_view text, std::string_view key) {
  const std::size_t at = text.find(key);
  if (at == text.npos) return std::nullopt;
  text.remove_prefix(at + key.size());
  return TakeNumber(text);
}

// The places of the objects by number, as the tables of a file tell them. A program that adds to a document
// puts another table behind, which leads to the one before; its objects count.
std::map<std::size_t, std::size_t> PlacesOfObjects(std::string_view file) {
  std::map<std::size_t, std::size_t> places;
  std::set<std::size_t> tables;
  const std::size_t last = file.rfind("startxref");
  std::optional<std::size_t> table =
      last == file.npos ? std::nullopt : NumberBehind(From(file, last), "startxref");
  while (table && tables.insert(*table).second) {
    std::string_view rest = From(file, *table);
    if (!Take(rest, "xref")) break;
    while (!Take(rest, "trailer")) {
      const auto first = TakeNumber(rest);
      const auto count = TakeNumber(rest);
      if (!first || !count) return places;
      for (std::size_t i = 0; i < *count; ++i) {
        const auto place = TakeNumber(rest);
        if (!place || !TakeNumber(rest)) return places;
        if (Take(rest, "n")) {
          places.emplace(*first + i, *place);
        } else if (!Take(rest, "f")) {
          return places;
        }
      }
    }
    table = NumberBehind(rest.substr(0, rest.find(">>")), "/Prev");
  }
  return places;
}

// The page that an object carries; nothing if it is another object. Throws if it is damaged.
std::optional<CarriedPage> PageOfObject(std::string_view object, const std::string& path) {
  if (!TakeNumber(object) || !TakeNumber(object) || !Take(object, "obj") || !Take(object, "<<") ||
      !Take(object, kAttachedPage)) {
    return std::nullopt;
  }
  const auto number = TakeNumber(object);
  const std::size_t begin = object.find(">>\nstream\n");
  const auto length = NumberBehind(object.substr(0, begin), "/Length");
  if (number && *number >= 1 && *number <= kLastPage && begin != object.npos && length) {
    const std::string_view packed = object.substr(begin + 10);
    auto content = *length <= packed.size() ? Inflate(packed.substr(0, *length), kLargestPage) : std::nullopt;
    if (content) return CarriedPage{static_cast<int>(*number), std::move(*content)};
  }
  throw Failure("Cannot open " + MachinePath(path) + ": a page that it carries is damaged.");
}

}  // namespace

std::vector<CarriedPage> PagesInPdf(std::string_view file, const std::string& path) {
  std::map<int, CarriedPage> pages;
  for (const auto& [object, place] : PlacesOfObjects(file)) {
    auto page = PageOfObject(From(file, place), path);
    if (page) pages.emplace(page->number, std::move(*page));
  }
  std::vector<CarriedPage> sorted;
  for (auto& [number, page] : pages) sorted.push_back(std::move(page));
  return sorted;
}

}  // namespace kelvane
