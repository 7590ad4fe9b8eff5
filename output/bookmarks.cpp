#include "output/bookmarks.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstddef>

#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane {
namespace {

constexpr float kLarger = 1.05F;  // than what most of the text is set in
constexpr std::size_t kLevels = 3;
constexpr std::size_t kMostBytes = 200;
constexpr std::size_t kLeastLetters = 3;  // fewer are a sign of a formula

std::size_t LettersIn(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(
      text, [](char c) { return std::isalpha(static_cast<unsigned char>(c)) || (c & 0x80) != 0; }));
}

template <typename Sizes>
float MostUsed(const Sizes& sizes) {
  const auto most = std::ranges::max_element(sizes, {}, [](const auto& size) { return size.second; });
  return most == sizes.end() ? 0 : most->first;
}

// At most so many bytes, ending with a whole character.
void Shorten(std::string& utf8) {
  if (utf8.size() <= kMostBytes) return;
  std::size_t end = kMostBytes;
  while (end > 0 && (utf8[end] & 0xC0) == 0x80) --end;
  utf8.resize(end);
}

}  // namespace

void Bookmarks::AddPage(const PageItems& items, int object, const Box& area) {
  std::map<float, std::size_t> letters;
  std::vector<Line> lines;
  for (const TextItem& item : items.Texts()) {
    const TextEntry& entry = item.entry;
    if (!item.draws || !(entry.size > 0) || !std::isfinite(entry.y) || !IsTextFace(entry.font)) continue;
    std::string text = TextOfRun(entry.text, entry.font);
    const std::size_t count = LettersIn(text);
    letters[entry.size] += count;
    letters_[entry.size] += count;
    lines.push_back(
        {object, entry.size, entry.x, entry.y - area.top, area.bottom - area.top, std::move(text)});
  }
  std::ranges::stable_sort(lines,
                           [](const Line& a, const Line& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; });
  // What is no larger than the rest of its page need not be kept.
  const float usual = MostUsed(letters);
  for (Line& line : lines) {
    if (line.size < usual * kLarger && line.size < MostUsed(letters_) * kLarger) continue;
    Line* const last = lines_.empty() ? nullptr : &lines_.back();
    if (last && last->page == object && last->y == line.y && last->size == line.size) {
      last->text += " " + line.text;
    } else {
      lines_.push_back(std::move(line));
    }
    Shorten(lines_.back().text);
  }
}

std::vector<Bookmarks::Line> Bookmarks::Chosen() const {
  const float least = MostUsed(letters_) * kLarger;
  std::vector<float> sizes;
  std::vector<Line> chosen;
  for (const Line& line : lines_) {
    if (line.size < least || LettersIn(line.text) < kLeastLetters) continue;
    chosen.push_back(line);
    sizes.push_back(line.size);
  }
  std::ranges::sort(sizes, std::greater<>());
  sizes.erase(std::unique(sizes.begin(), sizes.end()), sizes.end());
  sizes.resize(std::min(sizes.size(), kLevels));
  std::erase_if(chosen, [&](const Line& line) { return std::ranges::find(sizes, line.size) == sizes.end(); });
  int depth = 0;  // a level is at most one below that of the line before
  for (Line& line : chosen) {
    const auto level = static_cast<int>(std::ranges::find(sizes, line.size) - sizes.begin()) + 1;
    line.level = depth = std::min(level, depth + 1);
  }
  return chosen;
}

std::string Bookmarks::Write(PdfFile& file) const {
  const std::vector<Line> lines = Chosen();
  if (lines.empty()) return {};
  // Line i is object i + 1 of these, the root object 0.
  std::vector<int> objects(lines.size() + 1);
  for (int& object : objects) object = file.Reserve();
  struct Family {
    std::size_t parent = 0, first = 0, last = 0, next = 0, before = 0, children = 0;
  };
  std::vector<Family> families(objects.size());
  std::vector<std::size_t> open = {0};  // the line in force on each level
  for (std::size_t i = 1; i <= lines.size(); ++i) {
    open.resize(static_cast<std::size_t>(lines[i - 1].level));
    Family& parent = families[open.back()];
    families[i].parent = open.back();
    families[i].before = parent.last;
    if (parent.last != 0) families[parent.last].next = i;
    if (parent.first == 0) parent.first = i;
    parent.last = i;
    ++parent.children;
    open.push_back(i);
  }
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const Family& family = families[i];
    std::string body = i == 0 ? "/Type/Outlines" : "";
    const auto refer = [&](const char* key, std::size_t to) {
      if (to != 0) body += key + (" " + PdfReference(objects[to]));
    };
    refer("/First", family.first);
    refer("/Last", family.last);
    // Below the first level they start folded, which a count below zero says.
    if (family.children > 0)
      body += "/Count " + std::string(i == 0 ? "" : "-") + std::to_string(family.children);
    if (i > 0) {
      const Line& line = lines[i - 1];
      body += "/Parent " + PdfReference(objects[family.parent]);
      refer("/Prev", family.before);
      refer("/Next", family.next);
      body += "/Title" + PdfText(line.text) + "/Dest[" + PdfReference(line.page) + "/XYZ null " +
              PdfNumber(line.height - line.y + 2 * line.size) + " null]";
    }
    file.Write(objects[i], "<<" + body + ">>");
  }
  return "/Outlines " + PdfReference(objects[0]) + "/PageMode/UseOutlines";
}

}  // namespace kelvane
