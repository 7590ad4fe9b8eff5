#include "output/page_list.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

#include "document/paper.h"
#include "platform/files.h"

namespace kelvane {
namespace {

std::string_view Trim(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  return text;
}

std::optional<int> PageNumber(std::string_view text, int ifEmpty) {
  text = Trim(text);
  if (text.empty()) return ifEmpty;
  int number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size() || number < 1 || number > kLastPage)
    return std::nullopt;
  return number;
}

// Adds "3", "1-3", "3-" or "-3".
bool AddPart(std::set<int>& pages, std::string_view part) {
  const std::size_t dash = part.find('-');
  if (Trim(part).empty() || Trim(part) == "-") return false;
  const auto first = PageNumber(part.substr(0, dash), 1);
  const auto last = dash == part.npos ? first : PageNumber(part.substr(dash + 1), kLastPage);
  if (!first || !last || *first > *last) return false;
  for (int page = *first; page <= *last; ++page) pages.insert(page);
  return true;
}

}  // namespace

std::optional<std::set<int>> ReadPageList(std::string_view text) {
  std::set<int> pages;
  if (Trim(text).empty()) {
    AddPart(pages, "1-");
    return pages;
  }
  for (;;) {
    const std::size_t comma = text.find(',');
    if (!AddPart(pages, text.substr(0, comma))) return std::nullopt;
    if (comma == text.npos) return pages;
    text.remove_prefix(comma + 1);
  }
}

std::vector<int> PagesOf(const std::string& paperFile) {
  std::vector<int> pages;
  for (int number = 1; number <= kLastPage; ++number) {
    if (TheFiles->Exists(PageFileName(paperFile, number))) pages.push_back(number);
  }
  return pages;
}

std::vector<int> PagesOfPaper() {
  std::vector<int> pages;
  if (!CurrentPaperFile.empty()) pages = PagesOf(CurrentPaperFile);
  const int current = CurrentPageNumber;
  const auto place = std::ranges::lower_bound(pages, current);
  if (place == pages.end() || *place != current) pages.insert(place, current);
  return pages;
}

ChosenPages ChoosePages(const std::vector<int>& pages, std::string_view list) {
  const auto named = ReadPageList(list);
  if (!named) return {{}, "Pages are written as 1-3, 5"};
  ChosenPages chosen;
  std::ranges::copy_if(pages, std::back_inserter(chosen.pages),
                       [&](int page) { return named->contains(page); });
  if (chosen.pages.empty()) chosen.refusal = "The paper has none of these pages";
  return chosen;
}

}  // namespace kelvane
