#include "document/page.h"

// The page in memory and its file. Both forms of writing and the reading go through the same limits: a page
// that could not be read again is not written.

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

#include "document/fields.h"
#include "document/lines.h"
#include "document/numbers.h"
#include "platform/failure.h"
#include "platform/files.h"

namespace kelvane {

Page ThePage;
std::string& PageText = ThePage.text;
std::int16_t& DrawingCount = ThePage.drawingCount;
std::string& DrawingList = ThePage.drawings;
std::string CurrentDrawing;

namespace {

constexpr std::size_t kMostDrawings = std::numeric_limits<std::int16_t>::max();

constexpr std::string_view kLineEnd = "\r\n";

// `task` opens every message about a page file: what was being done, with which file.
std::string Task(const char* verb, const std::string& path) {
  return "Cannot " + std::string(verb) + " the page file " + MachinePath(path);
}

[[noreturn]] void FailAtLine(const std::string& task, int lineNumber, const std::string& reason) {
  throw Failure(task + ": line " + std::to_string(lineNumber) + ": " + reason + ".");
}

bool EndsDrawing(std::string_view line) {
  // A quote may make a word at the end part of a longer token.
  const bool plain = line.find('"') == std::string_view::npos;
  const std::string_view last = plain ? line.substr(line.rfind(' ') + 1) : SplitFields(line, " ").back();
  return last == "stroke" || last == "fill";
}

void CheckLine(const std::string& task, int lineNumber, std::string_view line) {
  if (line.find('\0') != std::string_view::npos)
    FailAtLine(task, lineNumber, "it holds a character of code 0");
  // Drawings have no such limit: a path drawn with the mouse may have any number of segments.
  if (line.size() > kLongestTextLine && !EndsDrawing(line))
    FailAtLine(task, lineNumber, "it is longer than 65,535 characters");
}

void CheckSize(const std::string& task, std::size_t size) {
  if (size > kLargestPage) throw Failure(task + ": it is larger than 32 MB.");
}

// A record of a start, at least one segment and the closing value.
bool IsUsableRecord(std::string_view record) {
  const std::size_t tokens = SplitFields(record, " ").size();
  return tokens >= 7 && (tokens - 3) % 4 == 0;
}

std::string RecordOfFileLine(const std::string& task, int lineNumber, std::string_view line) {
  try {
    return LineToDrawingRecord(line);
  } catch (const Failure& failure) {
    FailAtLine(task, lineNumber, failure.what());
  }
}

void AppendSortedText(std::string& content, std::string_view text) {
  struct Entry {
    float y;
    float x;
    std::string_view line;
  };
  std::vector<Entry> entries;
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view line = TakeLine(rest);
    if (line.empty()) continue;
    // By fields, not by entries: what draws nothing still has its place among what does.
    entries.push_back({ReadSingle(GetField(line, 2, " ")), ReadSingle(GetField(line, 1, " ")), line});
  }
  std::reverse(entries.begin(), entries.end());
  std::stable_sort(entries.begin(), entries.end(),
                   [](const Entry& a, const Entry& b) { return a.y < b.y || (a.y == b.y && a.x < b.x); });
  for (const Entry& entry : entries) content.append(entry.line).append(kLineEnd);
}

void AppendDrawings(std::string& content, const Page& page) {
  std::string_view rest = page.drawings;
  for (int i = 0; i < page.drawingCount && !rest.empty(); ++i) {
    const std::string line = DrawingRecordToLine(TakeLine(rest));
    if (!line.empty()) content.append(line).append(kLineEnd);
  }
}

}  // namespace

void ClearPage() {
  ThePage = Page{};
  CurrentDrawing.clear();
}

std::string ContentOfPage(const Page& page, PageOrder order, const std::string& path) {
  std::string content;
  if (order == PageOrder::ByPosition) {
    AppendSortedText(content, page.text);
  } else {
    content = page.text;
    if (!content.empty() && !content.ends_with(kLineEnd)) content.append(kLineEnd);
  }
  AppendDrawings(content, page);
  const std::string task = Task("write", path);
  CheckSize(task, content.size());
  int lineNumber = 0;
  for (std::string_view rest = content; !rest.empty();) CheckLine(task, ++lineNumber, TakeLine(rest));
  return content;
}

Page PageOfContent(std::string_view content, const std::string& path) {
  const std::string task = Task("read", path);
  CheckSize(task, content.size());
  Page page;
  std::size_t drawingCount = 0;
  std::size_t written =
      0;  // what the page takes in a file: some lines are written longer than they were read
  int lineNumber = 0;
  for (std::string_view rest = content; !rest.empty();) {
    const std::string_view line = TakeLine(rest);
    CheckLine(task, ++lineNumber, line);
    const std::string record = EndsDrawing(line) ? RecordOfFileLine(task, lineNumber, line) : std::string();
    if (!IsUsableRecord(record)) {
      page.text.append(line).append(kLineEnd);
      written += line.size() + kLineEnd.size();
      continue;
    }
    if (++drawingCount > kMostDrawings) FailAtLine(task, lineNumber, "there are more than 32,767 drawings");
    page.drawings.append(record).append(kLineEnd);
    // Only a line this long can grow by what matters.
    written += kLineEnd.size() +
               (content.size() > kLargestPage / 4 ? DrawingRecordToLine(record).size() : line.size());
  }
  if (written > kLargestPage)
    throw Failure(task + ": it would take more than 32 MB when it is written again.");
  page.drawingCount = static_cast<std::int16_t>(drawingCount);
  return page;
}

void WritePageSorted(const std::string& path) {
  WriteFileSafely(path, ContentOfPage(ThePage, PageOrder::ByPosition, path));
}

void WritePagePlain(const std::string& path) {
  WriteFileSafely(path, ContentOfPage(ThePage, PageOrder::AsTyped, path));
}

void ReadPage(const std::string& path) {
  ThePage = PageOfContent(TheFiles->ReadWhole(path), path);
  CurrentDrawing.clear();
}

}  // namespace kelvane
