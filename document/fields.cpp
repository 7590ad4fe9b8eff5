#include "document/fields.h"

// One walk serves counting, reading and replacing, so that the three agree on where a field ends. Positions
// are 0-based in here.

#include <cstddef>
#include <limits>

#include "platform/failure.h"

namespace kelvane {
namespace {

constexpr std::size_t kNone = std::string_view::npos;
constexpr int kLargestInt16 = std::numeric_limits<std::int16_t>::max();

struct Field {
  std::string_view content;  // without quotes
  std::size_t end = kNone;   // position of the delimiter that ends the field; kNone for the last one
};

// The field that starts at `start`, which may be the end of the text.
Field FieldAt(std::string_view text, std::size_t start, std::string_view delimiter) {
  if (delimiter.empty()) return {text.substr(start), kNone};
  std::size_t closing = kNone;
  std::size_t searchFrom = start;
  const bool quoted = start < text.size() && text[start] == '"';
  if (quoted) {
    closing = text.find('"', start + 1);
    if (closing == kNone) return {text.substr(start + 1), kNone};
    searchFrom = closing;
  }
  const std::size_t end = text.find(delimiter, searchFrom);
  if (quoted) return {text.substr(start + 1, closing - start - 1), end};
  return {text.substr(start, end == kNone ? kNone : end - start), end};
}

// Walks to field `index`. False if it, or a field before it, starts beyond the end of the text.
bool FindField(std::string_view text, std::int16_t index, std::string_view delimiter, std::size_t& start,
               Field& field) {
  if (index < 1) return false;
  start = 0;
  for (std::int16_t k = 1;; ++k) {
    if (start >= text.size()) return false;
    field = FieldAt(text, start, delimiter);
    if (k == index) return true;
    if (field.end == kNone) return false;
    start = field.end + delimiter.size();
  }
}

std::size_t FileNameStart(std::string_view path) {
  const std::size_t backslash = path.rfind('\\');
  return backslash == kNone ? 0 : backslash + 1;
}

}  // namespace

std::int16_t CountFields(std::string_view text, std::string_view delimiter) {
  int count = 1;
  std::size_t start = 0;
  while (true) {
    const std::size_t end = FieldAt(text, start, delimiter).end;
    if (end == kNone) return static_cast<std::int16_t>(count);
    if (count == kLargestInt16) throw Failure("A text has more than 32,767 fields.");
    ++count;
    start = end + delimiter.size();
  }
}

std::string GetField(std::string_view text, std::int16_t index, std::string_view delimiter) {
  std::size_t start = 0;
  Field field;
  if (!FindField(text, index, delimiter, start, field)) return {};
  return std::string(field.content);
}

std::vector<std::string_view> SplitFields(std::string_view text, std::string_view delimiter) {
  std::vector<std::string_view> fields;
  std::size_t start = 0;
  while (true) {
    const Field field = FieldAt(text, start, delimiter);
    fields.push_back(field.content);
    if (field.end == kNone) return fields;
    start = field.end + delimiter.size();
  }
}

void ReplaceField(std::string& text, std::int16_t index, std::string_view delimiter, std::string_view value) {
  std::size_t start = 0;
  Field field;
  if (!FindField(text, index, delimiter, start, field)) return;
  const std::size_t end = field.end == kNone ? text.size() : field.end;
  text.replace(start, end - start, value);
}

std::string ReplaceAll(std::string_view text, std::string_view find, std::string_view replacement) {
  if (text == " " || find.empty()) return std::string(text);
  std::string result;
  std::size_t from = 0;
  while (true) {
    const std::size_t at = text.find(find, from);
    if (at == kNone) return result.append(text.substr(from));
    result.append(text.substr(from, at - from));
    result.append(replacement);
    // The search goes on behind what was put in, at a position that formats hold in 16 bits.
    if (result.size() + 1 > kLargestInt16)
      throw Failure("A text to replace in is longer than 32,767 characters.");
    from = at + find.size();
  }
}

int LastIndexOf(std::string_view text, std::string_view find) {
  if (find.empty()) return 0;
  int last = 0;
  for (std::size_t at = text.find(find); at != kNone; at = text.find(find, at + find.size()))
    last = static_cast<int>(at) + 1;
  return last;
}

std::int16_t HexToInt(std::string_view digits) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  int value = 0;
  for (const char c : digits) {
    const std::size_t digit = kDigits.find(c);
    const int shifted = value * 16;  // must fit as well
    value = shifted + (digit == kNone ? -1 : static_cast<int>(digit));
    if (shifted > kLargestInt16 || value > kLargestInt16 || value < std::numeric_limits<std::int16_t>::min())
      throw Failure("The hexadecimal number " + std::string(digits) + " is too large.");
  }
  return static_cast<std::int16_t>(value);
}

std::string ChangeExtension(std::string_view path, std::string_view extension) {
  std::string result(path.substr(0, path.find('.', FileNameStart(path))));
  return result.append(".").append(extension);
}

std::string FolderOf(std::string_view path) {
  const std::size_t start = FileNameStart(path);
  return std::string(path.substr(0, start == 0 ? 0 : start - 1));
}

std::string FileTitleOf(std::string_view path) {
  const std::string_view name = path.substr(FileNameStart(path));
  return std::string(name.substr(0, name.find('.')));
}

std::string EscapePostScriptString(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (c == '\\' || c == '(' || c == ')') result += '\\';
    result += c;
  }
  return result;
}

std::string StripHighChars(std::string_view text) {
  constexpr unsigned char kFirstHighChar = 224;
  std::string result;
  for (const char c : text)
    if (static_cast<unsigned char>(c) < kFirstHighChar) result += c;
  return result;
}

std::string_view TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string UpperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

}  // namespace kelvane
