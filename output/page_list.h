#pragma once

// Which pages of a paper go out: "1-3, 5" as a person writes it.

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kelvane {

// The numbers in rising order, each once; nothing if the text is no such list, or names pages outside 1 to
// 999. "3-" goes to the last page, "-3" begins at the first; an empty text means all pages.
std::optional<std::set<int>> ReadPageList(std::string_view text);

// The pages that a paper has files for, in order.
std::vector<int> PagesOf(const std::string& paperFile);

// Those of the paper in the editor: the current page counts without a file, too.
std::vector<int> PagesOfPaper();

// Those of some pages that a list names, or why they cannot be had: the list is none, or names none of them.
struct ChosenPages {
  std::vector<int> pages;
  std::string refusal;
};
ChosenPages ChoosePages(const std::vector<int>& pages, std::string_view list);

}  // namespace kelvane
