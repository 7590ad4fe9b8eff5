#include "help/help_search.h"

#include <algorithm>
#include <cstddef>

#include "document/fields.h"

namespace kelvane {

namespace {

constexpr std::size_t kMostHitLines = 5;
constexpr std::size_t kExcerpt = 64;  // characters

// How often a word begins a word of the text, both in capitals; `first` is where it does so first.
int Occurrences(const std::string& upperText, const std::string& word, std::size_t& first) {
  int count = 0;
  for (std::size_t at = upperText.find(word); at != std::string::npos; at = upperText.find(word, at + 1)) {
    const bool begins = at == 0 || !IsWordCharacter(upperText[at - 1]) || !IsWordCharacter(word[0]);
    if (!begins) continue;
    if (count++ == 0) first = at;
  }
  return count;
}

// Part of a line around a position, in the room of a list: its columns go.
std::string Excerpt(const std::string& line, std::size_t at) {
  std::string text;
  std::size_t shift = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == ' ' && (text.empty() || text.back() == ' ')) {
      if (i < at) ++shift;
    } else {
      text += line[i];
    }
  }
  at -= shift;
  if (text.size() <= kExcerpt) return text;
  std::size_t begin = at > kExcerpt / 3 ? at - kExcerpt / 3 : 0;
  if (begin > 0) begin = text.find(' ', begin) + 1;  // a match has a beginning before it, so there is a blank
  if (begin > at) begin = at;
  std::size_t end = std::min(begin + kExcerpt, text.size());
  if (end < text.size()) end = std::max(text.rfind(' ', end), begin + 1);
  return (begin > 0 ? "... " : "") + text.substr(begin, end - begin) + (end < text.size() ? " ..." : "");
}

// What a word is worth where it stands, and how many times it counts at most in the text of a page.
double Worth(const TextBlock& block, bool first) {
  if (block.kind != TextBlock::Kind::Heading) return 1;
  return first ? 40 : 15;
}
constexpr int kMostCounted = 8;

HelpHit SearchPage(const HelpPage& page, const std::vector<std::string>& words, const std::string& phrase) {
  HelpHit hit;
  std::vector<int> counts(words.size());
  for (std::size_t i = 0; i < page.blocks.size(); ++i) {
    const TextBlock& block = page.blocks[i];
    if (block.kind == TextBlock::Kind::Picture) continue;
    const double worth = Worth(block, i == 0);
    for (std::size_t j = 0; j < block.lines.size(); ++j) {
      const std::string line = WordsOf(block.lines[j]);
      const std::string upperLine = UpperCase(line);
      std::size_t first = std::string::npos;
      for (std::size_t word = 0; word < words.size(); ++word) {
        std::size_t at = std::string::npos;
        const int count = Occurrences(upperLine, words[word], at);
        first = std::min(first, at);
        if (worth > 1 && count > 0) hit.rank += worth;
        hit.rank += std::min(count, std::max(kMostCounted - counts[word], 0));
        counts[word] += count;
      }
      if (first == std::string::npos) continue;
      std::size_t at = 0;
      if (words.size() > 1 && Occurrences(upperLine, phrase, at) > 0) hit.rank += 10 * worth;
      if (upperLine == phrase) hit.rank += 2 * worth;
      // The heading of the page is its row in the list already.
      if (i > 0 && hit.lines.size() < kMostHitLines)
        hit.lines.push_back({{static_cast<int>(i), static_cast<int>(j)}, Excerpt(line, first)});
    }
  }
  if (std::ranges::find(counts, 0) != counts.end()) hit = {};
  return hit;
}

}  // namespace

std::vector<std::string> WordsOfQuery(std::string_view query) {
  std::vector<std::string> words;
  while (!query.empty()) {
    const std::size_t end = std::min(query.find(' '), query.size());
    if (end > 0) words.push_back(UpperCase(query.substr(0, end)));
    query.remove_prefix(std::min(end + 1, query.size()));
  }
  return words;
}

std::vector<HelpHit> SearchHelp(const HelpBook& book, std::string_view query) {
  const std::vector<std::string> words = WordsOfQuery(query);
  std::vector<HelpHit> hits;
  if (words.empty()) return hits;
  std::string phrase = words.front();
  for (std::size_t i = 1; i < words.size(); ++i) phrase += " " + words[i];
  for (std::size_t page = 0; page < book.pages.size(); ++page) {
    HelpHit hit = SearchPage(book.pages[page], words, phrase);
    hit.page = static_cast<int>(page);
    if (hit.rank > 0) hits.push_back(std::move(hit));
  }
  std::ranges::stable_sort(hits, [](const HelpHit& a, const HelpHit& b) { return a.rank > b.rank; });
  return hits;
}

}  // namespace kelvane
