#pragma once

// Finding text on the pages of a paper, and replacing it in the runs of the current one.
//
// What is searched are the characters of the runs; typeface switches, script codes and fixed spaces between
// them do not count, nor do accents of Math0, which are part of the letter behind them. Capitals match small
// letters unless FindCase says otherwise. Matches on a page follow each other down the page, and to the
// right, by the places of their entries.

#include <cstddef>
#include <string>
#include <vector>

#include "document/page_items.h"
#include "typography/view.h"

namespace kelvane {

// The search in force; while it is open the matches of the current page are framed. Set by the find window.
extern bool FindOpen;
extern std::string FindText;  // codes below 224
extern bool FindCase;         // capitals are other letters than small ones

void ResetFind();

struct Match {
  std::size_t item = 0;   // index among the texts of the page's items
  std::size_t begin = 0;  // in the text of its entry, first and behind the last character
  std::size_t end = 0;
  bool plain = false;  // no code stands between its characters, so that it can be replaced
};
std::vector<Match> MatchesOf(const PageItems& items);

// Starts at the first match of the page again: the search was changed.
void RestartFind();

// Goes to the next match, or the one before, over all pages of the paper and round its end; shows it, and
// says at the foot which one it is or that there is none. The mode stays.
void FindNext(bool forwards);

// Replaces the match that was found last, if it is still there, and goes to the next. Says so if codes within
// it keep it from being replaced.
void ReplaceFound(const std::string& by);
// Replaces all matches of the page in one edit.
void ReplaceAllOnPage(const std::string& by);

// Frames the matches of the page.
void PaintMatches(Painter& painter, const View& view);

}  // namespace kelvane
