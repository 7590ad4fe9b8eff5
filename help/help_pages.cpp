#include "help/help_pages.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <map>
#include <set>

#include "document/fields.h"
#include "document/lines.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

constexpr int kHeadingLevels = 6;
constexpr int kSymbolFont = 8;
constexpr int kSignColumns = 5;  // the room of a sign in a table, in characters

bool ReadNumber(std::string_view text, int& number) {
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// --- Pages ---

struct Tag {
  enum class Kind { None, Page, PageEnd, Table, TableEnd, Picture, Heading, HeadingEnd, Unknown };
  Kind kind = Kind::None;
  int level = 0;
  std::size_t begin = 0;
  std::size_t end = 0;
};

Tag::Kind KindOfTag(std::string_view upperName, int& level) {
  if (upperName == "PAGE") return Tag::Kind::Page;
  if (upperName == "/PAGE") return Tag::Kind::PageEnd;
  if (upperName == "TABLE") return Tag::Kind::Table;
  if (upperName == "/TABLE") return Tag::Kind::TableEnd;
  if (upperName == "PICTURE") return Tag::Kind::Picture;
  const bool ends = upperName.starts_with('/');
  const std::string_view name = upperName.substr(ends ? 1 : 0);
  if (name.size() == 2 && name[0] == 'H' && name[1] >= '1' && name[1] < '1' + kHeadingLevels) {
    level = name[1] - '0';
    return ends ? Tag::Kind::HeadingEnd : Tag::Kind::Heading;
  }
  return Tag::Kind::Unknown;
}

// The next tag from `from` on: a name in angle brackets, with a slash before it or without.
Tag NextTag(std::string_view line, std::string_view upperLine, std::size_t from) {
  for (std::size_t open = line.find('<', from); open != std::string_view::npos;
       open = line.find('<', open + 1)) {
    const std::size_t close = line.find('>', open);
    if (close == std::string_view::npos) break;
    const std::string_view name = upperLine.substr(open + 1, close - open - 1);
    const std::string_view letters = name.substr(name.starts_with('/') ? 1 : 0);
    const bool isName = !letters.empty() && letters[0] >= 'A' && letters[0] <= 'Z' &&
                        std::ranges::all_of(letters, IsWordCharacter);
    if (!isName) continue;
    Tag tag;
    tag.kind = KindOfTag(name, tag.level);
    tag.begin = open;
    tag.end = close + 1;
    return tag;
  }
  return {};
}

class PageParser {
 public:
  HelpPage Parse(std::string_view text, int firstLine) {
    number = firstLine;
    for (; !text.empty(); ++number) ReadLine(TakeLine(text));
    EndParagraph();
    if (inTable) Fault(tableLine, "<TABLE> is not closed");
    if (inTable) EndTable();
    if (isPage && !ended) Fault(number - 1, "the page has no </PAGE>");
    return std::move(page);
  }

 private:
  void Fault(int line, const std::string& what) {
    page.faults.push_back("Line " + std::to_string(line) + ": " + what + ".");
  }

  void ReadLine(std::string_view line) {
    const std::string upperLine = UpperCase(line);
    std::size_t from = 0;
    std::size_t unread = 0;  // behind tags that are unknown and stay words
    bool tagged = false;     // a line of tags alone is no empty line of the text
    while (true) {
      const Tag tag = inTable ? TableTag(line, upperLine, unread) : NextTag(line, upperLine, unread);
      if (tag.kind == Tag::Kind::None) break;
      if (tag.kind == Tag::Kind::Unknown) {
        Fault(number, "the tag " + std::string(line.substr(tag.begin, tag.end - tag.begin)) + " is unknown");
        unread = tag.end;
        continue;
      }
      tagged = true;
      if (tag.begin > from) Words(line.substr(from, tag.begin - from));
      from = unread = TakeTag(line, upperLine, tag);
    }
    if (from < line.size()) {
      Words(line.substr(from));
    } else if (!tagged) {
      EmptyLine();
    }
    if (inTable && lineBegun) lineBegun = false;
  }

  // Within a table only its end, and a page's, are tags: keys and formats stand there in angle brackets.
  static Tag TableTag(std::string_view line, std::string_view upperLine, std::size_t from) {
    Tag tag;
    do {
      tag = NextTag(line, upperLine, from);
      from = tag.end;
    } while (tag.kind == Tag::Kind::Unknown || tag.kind == Tag::Kind::Picture ||
             tag.kind == Tag::Kind::Heading || tag.kind == Tag::Kind::HeadingEnd);
    return tag;
  }

  // Returns where the line goes on.
  std::size_t TakeTag(std::string_view line, const std::string& upperLine, const Tag& tag) {
    switch (tag.kind) {
      case Tag::Kind::Page:
        isPage = true;
        break;
      case Tag::Kind::PageEnd:
        EndParagraph();
        if (inTable) {
          Fault(tableLine, "<TABLE> is not closed");
          EndTable();
        }
        ended = true;
        break;
      case Tag::Kind::Table:
        if (inTable) {
          Fault(number, "<TABLE> stands inside a table");
          break;
        }
        EndParagraph();
        inTable = true;
        tableLine = number;
        break;
      case Tag::Kind::TableEnd:
        if (inTable) {
          EndTable();
        } else {
          Fault(number, "</TABLE> closes nothing");
        }
        break;
      case Tag::Kind::Picture:
        return TakePicture(line, upperLine, tag);
      case Tag::Kind::Heading:
        return TakeHeading(line, upperLine, tag);
      default:
        Fault(number, std::string(line.substr(tag.begin, tag.end - tag.begin)) + " closes nothing");
    }
    return tag.end;
  }

  // What stands between a tag and its closing one on the same line, or up to the end of the line; `from` is
  // then where the line goes on.
  std::string Enclosed(std::string_view line, const std::string& upperLine, const std::string& name,
                       std::size_t& from) {
    const std::string closing = "</" + name + ">";
    const std::size_t start = from;
    std::size_t close = upperLine.find(closing, start);
    from = close + closing.size();
    if (close == std::string::npos) {
      Fault(number, "<" + name + "> is not closed");
      close = from = line.size();
    }
    return std::string(line.substr(start, close - start));
  }

  std::size_t TakeHeading(std::string_view line, const std::string& upperLine, const Tag& tag) {
    EndParagraph();
    std::size_t after = tag.end;
    const std::string text = Enclosed(line, upperLine, "H" + std::to_string(tag.level), after);
    if (text.empty() || ended) return after;
    if (page.title.empty()) page.title = text;
    page.blocks.push_back({TextBlock::Kind::Heading, tag.level, {{{.text = text}}}});
    return after;
  }

  std::size_t TakePicture(std::string_view line, const std::string& upperLine, const Tag& tag) {
    EndParagraph();
    std::size_t after = tag.end;
    const std::string file = Enclosed(line, upperLine, "PICTURE", after);
    if (file.empty() || file.find_first_of("/\\") != std::string::npos) {
      Fault(number, "\"" + file + "\" is no file of the program folder");
    } else if (!ended) {
      page.blocks.push_back({TextBlock::Kind::Picture, 0, {{{.text = file}}}});
    }
    return after;
  }

  void Words(std::string_view words) {
    const bool blank = words.find_first_not_of(' ') == std::string_view::npos;
    if (ended) {
      if (!blank) Fault(number, "what stands behind </PAGE> is not shown");
    } else if (inTable) {
      if (lineBegun) {
        table.back() += words;
      } else {
        table.emplace_back(words);
      }
      lineBegun = true;
    } else if (blank) {
      EmptyLine();
    } else {
      if (!paragraph.empty() && !paragraph.ends_with(' ')) paragraph += ' ';
      paragraph += words;
    }
  }

  void EmptyLine() {
    if (inTable) {
      table.emplace_back();
    } else {
      EndParagraph();
    }
  }

  void EndParagraph() {
    if (!paragraph.empty()) page.blocks.push_back({TextBlock::Kind::Paragraph, 0, {{{.text = paragraph}}}});
    paragraph.clear();
  }

  void EndTable() {
    inTable = false;
    TextBlock block{TextBlock::Kind::Table, 0, {}};
    for (const std::string& line : table) block.lines.push_back({{.text = line}});
    if (!table.empty()) page.blocks.push_back(std::move(block));
    table.clear();
  }

  HelpPage page;
  int number = 1;
  bool isPage = false;
  bool ended = false;
  std::string paragraph;
  bool inTable = false;
  bool lineBegun = false;
  int tableLine = 0;
  std::vector<std::string> table;
};

// --- Signs ---

// The typeface whose keys the tables of a page show; -1 for other pages.
int TypefaceOfPage(const HelpPage& page) {
  if (page.title.starts_with("Symbol")) return kSymbolFont;
  return page.title.starts_with("Math0") ? kFirstGlyphFont : -1;
}

// The code of a key as tables write it; -1 if the cell is no key.
int CodeOfKey(std::string_view cell) {
  if (cell.size() == 1) return static_cast<unsigned char>(cell[0]);
  if (cell == "space") return ' ';
  int code = 0;
  return cell.size() == 3 && ReadNumber(cell, code) && code >= 127 && code < 224 ? code : -1;
}

// The keys of a line by the columns they stand in: cells of a line lie two blanks apart.
std::map<std::size_t, int> KeysOf(std::string_view line) {
  std::map<std::size_t, int> keys;
  for (std::size_t at = line.find_first_not_of(' '); at != std::string_view::npos;) {
    const std::size_t end = std::min(line.find("  ", at), line.size());
    const int code = CodeOfKey(line.substr(at, end - at));
    if (code >= 0 && end < line.size()) keys[at] = code;
    // Behind the number of a code stands the character to enter, which is no key of its own.
    if (code >= 128) break;
    at = line.find_first_not_of(' ', end);
  }
  return keys;
}

// Sets the signs before the keys of a table, and as much room in rows without one.
void AddSigns(TextBlock& table, int font) {
  std::set<std::size_t> columns;
  for (const TextLine& line : table.lines)
    for (const auto& [column, code] : KeysOf(WordsOf(line))) columns.insert(column);
  for (TextLine& line : table.lines) {
    const std::string words = WordsOf(line);
    const std::map<std::size_t, int> keys = KeysOf(words);
    TextLine signs;
    std::size_t from = 0;
    for (const std::size_t column : columns) {
      if (column >= words.size()) break;
      if (column > 0 && words[column - 1] != ' ') continue;  // within a word of a wider cell
      if (column > from) signs.push_back({.text = words.substr(from, column - from)});
      const auto key = keys.find(column);
      if (key == keys.end()) {
        signs.push_back({.text = std::string(kSignColumns, ' ')});
      } else {
        signs.push_back({.picture = NameOfSign(font, key->second), .columns = kSignColumns});
      }
      from = column;
    }
    signs.push_back({.text = words.substr(from)});
    line = std::move(signs);
  }
}

// --- Links ---

// Quoted words of a paragraph that are a heading become a link to it.
void AddLinks(TextLine& line, const HelpBook& book, int page) {
  const std::string words = WordsOf(line);
  TextLine linked;
  std::size_t from = 0;
  for (std::size_t open = words.find('"'); open != std::string::npos; open = words.find('"', open + 1)) {
    const std::size_t close = words.find('"', open + 1);
    if (close == std::string::npos) break;
    HelpPlace place;
    const std::string quoted = words.substr(open + 1, close - open - 1);
    if (!FindHelpHeading(book, quoted, place) || place == HelpPlace{page, {}}) continue;
    linked.push_back({.text = words.substr(from, open + 1 - from)});
    linked.push_back({.text = quoted, .link = LinkTo(place)});
    from = close;
    open = close;
  }
  if (linked.empty()) return;
  linked.push_back({.text = words.substr(from)});
  line = std::move(linked);
}

bool FindOnPage(const HelpPage& page, std::string_view upperText, int& block) {
  for (std::size_t i = 0; i < page.blocks.size(); ++i) {
    const TextBlock& candidate = page.blocks[i];
    if (candidate.kind != TextBlock::Kind::Heading) continue;
    if (UpperCase(WordsOf(candidate.lines.front())) != upperText) continue;
    block = static_cast<int>(i);
    return true;
  }
  return false;
}

}  // namespace

bool IsWordCharacter(char character) {
  const auto code = static_cast<unsigned char>(character);
  return code >= 128 || (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z') ||
         (code >= 'a' && code <= 'z');
}

HelpBook ReadHelpBook(std::string_view help, const std::vector<std::int64_t>& pageStarts) {
  HelpBook book;
  std::size_t from = 0;
  int line = 1;
  for (std::size_t page = 0; page <= pageStarts.size(); ++page) {
    const std::size_t end = page < pageStarts.size()
                                ? std::min(static_cast<std::size_t>(pageStarts[page]), help.size())
                                : help.size();
    std::string_view text = help.substr(std::min(from, end), end - std::min(from, end));
    book.pages.push_back(PageParser().Parse(text, line));
    HelpPage& parsed = book.pages.back();
    if (page > 0 && UpperCase(text.substr(0, FindLineEnd(text))).find("<PAGE>") == std::string::npos)
      parsed.faults.insert(parsed.faults.begin(), "QRX.HLP has changed since the program was started: page " +
                                                      std::to_string(page) +
                                                      " is no longer where it was. Start the program again.");
    if (parsed.title.empty()) parsed.title = page == 0 ? "QRX.HLP" : "Page " + std::to_string(page);
    for (; !text.empty(); ++line) TakeLine(text);
    from = end;
  }
  for (std::size_t page = 0; page < book.pages.size(); ++page) {
    const int font = TypefaceOfPage(book.pages[page]);
    for (TextBlock& block : book.pages[page].blocks) {
      if (block.kind == TextBlock::Kind::Table && font >= 0) AddSigns(block, font);
      if (block.kind == TextBlock::Kind::Paragraph)
        AddLinks(block.lines.front(), book, static_cast<int>(page));
    }
  }
  return book;
}

std::string LinkTo(const HelpPlace& place) {
  return "help:" + std::to_string(place.page) + "." + std::to_string(place.at.block);
}

bool PlaceOfLink(const HelpBook& book, std::string_view link, HelpPlace& place) {
  constexpr std::string_view kScheme = "help:";
  const std::size_t dot = link.find('.');
  if (!link.starts_with(kScheme) || dot == std::string_view::npos) return false;
  HelpPlace read;
  if (!ReadNumber(link.substr(kScheme.size(), dot - kScheme.size()), read.page) ||
      !ReadNumber(link.substr(dot + 1), read.at.block) || read.page < 0 ||
      read.page >= static_cast<int>(book.pages.size())) {
    return false;
  }
  place = read;
  return true;
}

std::vector<HelpEntry> ReadHelpContents(std::string_view contents) {
  std::vector<HelpEntry> entries;
  while (!contents.empty()) {
    const std::string_view line = TakeLine(contents);
    const std::string upperLine = UpperCase(line);
    const std::size_t mark = upperLine.find(" #");
    if (mark == std::string::npos || mark < 3 || upperLine.compare(mark - 3, 2, "<H") != 0) continue;
    const std::size_t close = upperLine.find('>', mark);
    const int level = upperLine[mark - 1] - '0';
    const std::size_t end = upperLine.find("</H" + std::string(1, upperLine[mark - 1]) + ">", mark);
    int page = 0;
    if (close == std::string::npos || end == std::string::npos || end < close || level < 1 ||
        level > kHeadingLevels || !ReadNumber(line.substr(mark + 2, close - mark - 2), page)) {
      continue;
    }
    entries.push_back({std::string(line.substr(close + 1, end - close - 1)), level, page});
  }
  return entries;
}

std::vector<HelpEntry> ReadHelpIndex(std::string_view index) {
  std::vector<HelpEntry> entries;
  while (!index.empty()) {
    const std::string_view line = TakeLine(index);
    const std::size_t mark = line.rfind("<#");
    const std::size_t close = line.find('>', mark == std::string_view::npos ? 0 : mark);
    int page = 0;
    if (mark == std::string_view::npos || close == std::string_view::npos ||
        !ReadNumber(line.substr(mark + 2, close - mark - 2), page)) {
      continue;
    }
    const std::string_view text = line.substr(0, mark);
    entries.push_back({std::string(text.substr(0, text.find_last_not_of(' ') + 1)), 1, page});
  }
  return entries;
}

bool FindEntry(const HelpBook& book, const HelpEntry& entry, HelpPlace& place) {
  if (entry.page >= 0 && entry.page < static_cast<int>(book.pages.size())) {
    int block = 0;
    if (FindOnPage(book.pages[static_cast<std::size_t>(entry.page)], UpperCase(entry.text), block)) {
      place = {entry.page, {block, 0}};
      return true;
    }
  }
  return FindHelpHeading(book, entry.text, place);
}

bool FindHelpHeading(const HelpBook& book, std::string_view text, HelpPlace& place) {
  const std::string upperText = UpperCase(text);
  for (std::size_t page = 0; page < book.pages.size(); ++page) {
    int block = 0;
    if (!FindOnPage(book.pages[page], upperText, block)) continue;
    place = {static_cast<int>(page), {block, 0}};
    return true;
  }
  return false;
}

std::string NameOfSign(int font, int code) {
  return "sign " + std::to_string(font) + "." + std::to_string(code);
}

bool SignOfName(std::string_view name, int& font, int& code) {
  constexpr std::string_view kStart = "sign ";
  const std::size_t dot = name.find('.');
  return name.starts_with(kStart) && dot != std::string_view::npos &&
         ReadNumber(name.substr(kStart.size(), dot - kStart.size()), font) &&
         ReadNumber(name.substr(dot + 1), code);
}

}  // namespace kelvane
