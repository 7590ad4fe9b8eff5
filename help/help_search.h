#pragma once

// Full text search through the pages of the help.

#include <string>
#include <string_view>
#include <vector>

#include "help/help_pages.h"

namespace kelvane {

// A page on which all words of a query occur, and the lines that have one of them.
struct HelpHit {
  int page = 0;
  double rank = 0;
  struct Line {
    TextPlace at;
    std::string excerpt;
  };
  std::vector<Line> lines;
};
// The words of a query, as they are looked for: at the beginning of words, in any letter case.
std::vector<std::string> WordsOfQuery(std::string_view query);
// The best page first.
std::vector<HelpHit> SearchHelp(const HelpBook& book, std::string_view query);

}  // namespace kelvane
