#include "papers/find.h"

#include <algorithm>
#include <array>
#include <compare>
#include <map>
#include <optional>
#include <string_view>

#include "document/page.h"
#include "document/paper.h"
#include "editing/change_mark.h"
#include "editing/edit.h"
#include "editing/marks.h"
#include "editing/modes.h"
#include "editing/notes.h"
#include "editing/picking.h"
#include "editing/tool.h"
#include "papers/paper_commands.h"
#include "platform/characters.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "typography/colours.h"
#include "typography/renderer.h"
#include "typography/signs.h"
#include "typography/typefaces.h"
#include "typography/zoom.h"

namespace kelvane {

bool FindOpen;
std::string FindText;
bool FindCase;

namespace {

// Where the search is: behind this match of the current page. The entry's place keeps it there when the page
// changes.
struct Spot {
  float y = 0;
  float x = 0;
  std::size_t item = 0;
  std::ptrdiff_t begin = 0;
  auto operator<=>(const Spot&) const = default;
};
std::optional<Spot> Found;

// The matches of the page in memory as it was last searched.
struct Searched {
  std::string page;
  std::string text;
  bool letterCase = false;
  std::vector<Match> matches;
};
Searched Last;

// How many matches each page has, for as long as the search is the same and only it shows other pages.
std::map<int, std::size_t> Counts;
int CountedAt = 0;   // PagesShown by then
std::string Unread;  // "; page 3 is unreadable"

char16_t SmallLetter(char16_t letter) {
  constexpr char16_t kTimes = 0xD7;
  constexpr char16_t kCapitalY = 0x178;
  constexpr char16_t kSmallY = 0xFF;
  if ((letter >= u'A' && letter <= u'Z') || (letter >= 0xC0 && letter <= 0xDE && letter != kTimes))
    return static_cast<char16_t>(letter + 0x20);
  if (letter == 0x152 || letter == 0x160 || letter == 0x17D) return static_cast<char16_t>(letter + 1);
  return letter == kCapitalY ? kSmallY : letter;
}

// By code, those that the text faces have for the small letters of their capitals.
std::array<char, kFirstSwitchCode> SmallLetters() {
  std::array<char, kFirstSwitchCode> small{};
  for (int code = 0; code < kFirstSwitchCode; ++code) {
    const char16_t letter = SmallLetter(UnicodeOfText(static_cast<unsigned char>(code)));
    int found = code;
    for (int other = 1; other < kFirstSwitchCode; ++other)
      if (letter != 0 && UnicodeOfText(static_cast<unsigned char>(other)) == letter) found = other;
    small[static_cast<std::size_t>(code)] = static_cast<char>(found);
  }
  return small;
}

// The capital of a Greek letter is on its key, as that of a Latin one.
char Folded(char c, std::int16_t font) {
  static const std::array<char, kFirstSwitchCode> small = SmallLetters();
  const auto code = static_cast<unsigned char>(c);
  const bool folds = !FindCase && code < small.size() && (IsTextFace(font) || code < 128);
  return folds ? small[code] : c;
}

// The characters of a run that count, and the parts of it that set them.
struct Characters {
  struct Part {
    std::size_t begin;
    std::size_t end;
  };
  std::string text;
  std::vector<Part> parts;
};

// An accent that is put together with a letter stands before it, and is part of it.
void Take(const TextEntry& entry, Characters& characters) {
  characters.text.clear();
  characters.parts.clear();
  std::int16_t font = entry.font;
  std::size_t begin = std::string::npos;  // of the accent that waits for its letter
  for (std::size_t i = 0; i < entry.text.size(); ++i) {
    const auto code = static_cast<unsigned char>(entry.text[i]);
    if (code >= kFirstSwitchCode) {
      if (code < kFirstScriptCode) font = static_cast<std::int16_t>(code - kFirstSwitchCode);
      continue;
    }
    const Sign* glyph = font >= kFirstGlyphFont ? SignAt(font, code) : nullptr;
    if (glyph && glyph->kind == SignClass::Accent) {
      begin = i;
      continue;
    }
    characters.text += Folded(entry.text[i], font);
    characters.parts.push_back({std::min(begin, i), i + 1});
    begin = std::string::npos;
  }
}

Spot SpotOf(const PageItems& items, const Match& match) {
  const TextEntry& entry = items.Texts()[match.item].entry;
  return {entry.y, entry.x, match.item, static_cast<std::ptrdiff_t>(match.begin)};
}

const std::vector<Match>& MatchesOfPage() {
  const PageItems& items = ItemsOfPage();
  if (Last.page != items.Text() || Last.text != FindText || Last.letterCase != FindCase)
    Last = {items.Text(), FindText, FindCase, MatchesOf(items)};
  return Last.matches;
}

std::size_t CountOn(int page) {
  const std::string file = PageFileName(CurrentPaperFile, page);
  if (!TheFiles->Exists(file)) return 0;
  try {
    return MatchesOf(PageItems(PageOfContent(TheFiles->ReadWhole(file), file))).size();
  } catch (const Failure&) {
    // One bad page must not keep the person from what stands on the others; it is named beside the count.
    Unread += "; page " + std::to_string(page) + " is unreadable";
    return 0;
  }
}

void CountMatches() {
  if (Counts.empty() || CountedAt != PagesShown()) {
    CountedAt = PagesShown();
    Counts.clear();
    Unread.clear();
    for (int page = 1; page <= LastPageOfPaper(); ++page)
      Counts[page] = page == CurrentPageNumber ? 0 : CountOn(page);
  }
  Counts[CurrentPageNumber] = MatchesOfPage().size();
}

// The page with a match that comes next behind the current one, round the paper's end, which sets `around`;
// 0 if there is none.
int NextPage(bool forwards, bool& around) {
  const auto before = Counts.find(CurrentPageNumber);
  auto at = before;
  for (std::size_t i = 0; i < Counts.size(); ++i) {
    if (forwards) {
      if (++at == Counts.end()) at = Counts.begin(), around = true;
    } else {
      if (at == Counts.begin()) at = Counts.end(), around = true;
      --at;
    }
    if (at->second > 0) return at->first;
  }
  return 0;
}

// The match of the page behind or before `spot`; without one the first or last. Null if there is none.
const Match* MatchFrom(const std::optional<Spot>& spot, bool forwards) {
  const PageItems& items = ItemsOfPage();
  const std::vector<Match>& matches = MatchesOfPage();
  const Match* last = nullptr;
  for (const Match& match : matches) {
    const Spot here = SpotOf(items, match);
    if (forwards) {
      if (!spot || here > *spot) return &match;
    } else if (!spot || here < *spot) {
      last = &match;
    }
  }
  return last;
}

Box BoxOf(const Match& match) {
  return CellsOf(ItemsOfPage().Texts()[match.item].entry, match.begin, match.end);
}

void ShowFound(const Match& match, bool around) {
  Found = SpotOf(ItemsOfPage(), match);
  const Box box = BoxOf(match);
  BringIntoView(box.right, box.bottom);
  BringIntoView(box.left, box.top);
  if (!FindOpen) MarkChange(box);
  ShowCursor();
  std::size_t all = 0;
  for (const auto& [page, count] : Counts) all += count;
  const auto number = &match - MatchesOfPage().data() + 1;
  ShowNote((around ? "Round the end: " : "") + std::to_string(number) + " of " +
           std::to_string(Counts[CurrentPageNumber]) + " on page " + std::to_string(CurrentPageNumber) +
           ", " + std::to_string(all) + " in all" + Unread);
}

// The match that was found last, if it is there.
const Match* MatchFound() {
  const PageItems& items = ItemsOfPage();
  const std::vector<Match>& matches = MatchesOfPage();
  const auto at = std::ranges::find_if(
      matches, [&items](const Match& match) { return Found && SpotOf(items, match) == *Found; });
  return at == matches.end() ? nullptr : &*at;
}

// Replaces the plain ones of some matches; returns how many.
std::size_t Replace(std::vector<Match> matches, const std::string& by) {
  std::erase_if(matches, [](const Match& match) { return !match.plain; });
  const PageItems& items = ItemsOfPage();
  struct Stretch {
    std::size_t at;
    std::size_t length;
  };
  std::vector<Stretch> stretches;
  for (const Match& match : matches) {
    const TextItem& item = items.Texts()[match.item];
    const auto run = static_cast<std::size_t>(item.entry.text.data() - items.Text().data());
    if (item.line.size() - (match.end - match.begin) + by.size() > kLongestTextLine)
      throw Failure("A run would be too long for a page file: a line holds 65,535 characters.");
    stretches.push_back({run + match.begin, match.end - match.begin});
  }
  std::ranges::sort(stretches, {}, &Stretch::at);
  EditPage("replacing", [&](Page& page) {
    std::string text;
    std::size_t done = 0;
    for (const Stretch& stretch : stretches) {
      text.append(page.text, done, stretch.at - done).append(by);
      done = stretch.at + stretch.length;
    }
    page.text = text.append(page.text, done);
  });
  return matches.size();
}

bool NothingToFind() {
  if (FindText.empty()) ShowNote("Type what to find");
  return FindText.empty();
}

}  // namespace

void ResetFind() {
  FindOpen = FindCase = false;
  FindText.clear();
  Last = {};
  RestartFind();
}

std::vector<Match> MatchesOf(const PageItems& items) {
  std::vector<Match> matches;
  std::string wanted;
  for (const char c : FindText) wanted += Folded(c, 0);
  if (wanted.empty()) return matches;
  Characters characters;
  for (std::size_t i = 0; i < items.Texts().size(); ++i) {
    const TextItem& item = items.Texts()[i];
    if (!item.draws) continue;
    Take(item.entry, characters);
    for (std::size_t at = 0; (at = characters.text.find(wanted, at)) != std::string::npos;
         at += wanted.size()) {
      const std::size_t begin = characters.parts[at].begin;
      const std::size_t end = characters.parts[at + wanted.size() - 1].end;
      matches.push_back({i, begin, end, end - begin == wanted.size()});
    }
  }
  std::ranges::sort(matches, {}, [&items](const Match& match) { return SpotOf(items, match); });
  return matches;
}

void RestartFind() {
  Found.reset();
  Counts.clear();
  Unread.clear();
}

void FindNext(bool forwards) {
  if (NothingToFind()) return;
  FinishEditing();
  CountMatches();
  bool around = false;
  const Match* match = MatchFrom(Found, forwards);
  while (!match) {
    const int page = NextPage(forwards, around);
    if (page == 0) {
      Found.reset();
      Counts.clear();  // the files may be others by the next time
      ShowCursor();
      ShowNote("Not found: " + FindText + Unread);
      return;
    }
    if (page != CurrentPageNumber) {
      if (!StorePageOfPaper()) return;
      ShowPageOfPaper(page);
      CountedAt = PagesShown();
      CountMatches();
    }
    Found.reset();
    match = MatchFrom(Found, forwards);
  }
  ShowFound(*match, around);
}

void ReplaceFound(const std::string& by) {
  if (NothingToFind()) return;
  FinishEditing();
  const Match* match = MatchFound();
  if (!match) return FindNext(true);
  if (!match->plain) {
    ShowNote("Not replaced: it has codes within");
    return;
  }
  Found = SpotOf(ItemsOfPage(), *match);
  Replace({*match}, by);
  // What was put in is not searched.
  Found->begin += static_cast<std::ptrdiff_t>(by.size()) - 1;
  FindNext(true);
}

void ReplaceAllOnPage(const std::string& by) {
  if (NothingToFind()) return;
  FinishEditing();
  const std::vector<Match> matches = MatchesOfPage();
  const std::size_t replaced = Replace(matches, by);
  const std::size_t left = matches.size() - replaced;
  ShowNote(std::to_string(replaced) + " of " + std::to_string(matches.size()) + " on this page replaced" +
           (left == 0 ? "" : "; " + std::to_string(left) + " with codes within"));
}

void PaintMatches(Painter& painter, const View& view) {
  if (!FindOpen) return;
  const Match* found = MatchFound();
  for (const Match& match : MatchesOfPage()) {
    const Box box = BoxOf(match);
    if (Touch(box, view.area)) MarkInk(painter, box, PaletteColour(&match == found ? kBlue : kCyan), 2);
  }
}

}  // namespace kelvane
