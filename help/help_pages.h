#pragma once

// The help text taken apart: pages of headings, paragraphs and tables, and the rows of its contents and
// index. No windows.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text_view.h"

namespace kelvane {

struct HelpPage {
  std::vector<TextBlock> blocks;
  // What is not in order, each a sentence with the number of its line in the file.
  std::vector<std::string> faults;

  // The text of its first heading; "Page 7" without one.
  std::string title;
};

// All pages; number 0 is what stands before the first one.
struct HelpBook {
  std::vector<HelpPage> pages;
};

// Takes the text apart at the stored positions of its pages. What is amiss does not keep the rest from being
// shown. Quoted headings ("Script examples") become links to them.
HelpBook ReadHelpBook(std::string_view help, const std::vector<std::int64_t>& pageStarts);

// A place of the book, and links to one.
struct HelpPlace {
  int page = 0;
  TextPlace at;
  bool operator==(const HelpPlace&) const = default;
};
std::string LinkTo(const HelpPlace& place);
// False if `link` is no link into the book.
bool PlaceOfLink(const HelpBook& book, std::string_view link, HelpPlace& place);

// A row of the contents or the index: a heading and the page that it is said to be on.
struct HelpEntry {
  std::string text;
  int level = 1;
  int page = 0;
};
// The lines of QRX.HCT and QRX.HIX; lines that are none of theirs are left out.
std::vector<HelpEntry> ReadHelpContents(std::string_view contents);
std::vector<HelpEntry> ReadHelpIndex(std::string_view index);

// Where a heading is: on the page of the entry, else on another one. False if it is nowhere.
bool FindEntry(const HelpBook& book, const HelpEntry& entry, HelpPlace& place);
// Where the first heading of that text is, in any letter case.
bool FindHelpHeading(const HelpBook& book, std::string_view text, HelpPlace& place);

// Letters, digits and everything beyond ASCII.
bool IsWordCharacter(char character);

// A sign in a table of keys: the name of its picture, and the typeface and code that it stands for.
std::string NameOfSign(int font, int code);
bool SignOfName(std::string_view name, int& font, int& code);

}  // namespace kelvane
