#pragma once

// The paper's commands: new, open, save, turning pages, and what is offered before a page is left.
//
// They complete what is half typed or drawn, ask, write, and only then change what is in memory. All throw
// Failure when a file cannot be read or written; page, name and number are then as they were. All return
// false if the person gave the command up, with the same left as it was.

#include <functional>
#include <optional>
#include <string>

#include "editing/edit.h"
#include "editing/half_done.h"
#include "papers/seen_file.h"
#include "platform/controls.h"

namespace kelvane {

// The window whose title names the paper, and the box that shows the page number.
extern Window* Form1;
extern TextBox* PageBox;
extern Label* PageCountLabel;  // "of 3", beside it

inline constexpr char kProgramTitle[] = "Kelvane ver 1.7";
inline constexpr char kPageFilter[] = "*.001|*.001";
inline constexpr char kOpenFilter[] = "*.001|*.001|*.pdf|*.pdf";  // a PDF of this program has its pages in it

// Filled at start-up: shows the page beside what its file holds now.
extern std::function<void()> LookAtBoth;

// Filled at start-up too: called when another page is shown, and when it is changed or stored.
extern std::function<void()> PaperShown;

// Watches the file of the page; null until start-up has made it.
extern FileWatch* PageWatch;

// Forgets what page files held.
void ResetPaperCommands();

bool SavePaper();
bool SavePaperAs();
bool NewPaper();
bool OpenPaper();
// Filled at start-up: told when a paper was opened.
extern std::function<void()> PaperOpened;
bool OpenPaperFile(const std::string& chosenFile);
// Opens a copy of one page as a paper that has no name yet, so that its file is not written to.
bool OpenCopyOf(const std::string& pageFile);
// A page as a journal has it, with what was half done on it.
struct RecoveredPage {
  Page page;
  Steps steps;
  HalfDone half;
  int number = 1;
  SeenFile file;               // as the journal knew it, or as it is if that is no other
  std::optional<Page> stored;  // what it holds; none if that is not known
};
// Goes on with it where it was broken off: nothing is saved by that.
bool OpenRecovered(RecoveredPage recovered);
// The paper is left: other programs may have it.
void ReleasePaper();
// They write the page that is left if its file does not hold it, and return false, too, if there is no page
// to go to.
bool PageUp();
bool PageDown();
// Goes to a page as "Pg Up" and "Pg Dn" do, in one step. False for the current page and for a number that no
// page has, too.
bool GoToPage(int number);

// The highest number among the paper's pages that have files; 0 for none.
int LastPageOfPaper();
// The same, pages that were looked at among them: one that is empty has no file, but may have steps back.
int LastPageSeen();

// Counts up whenever a page comes into memory or pages get other numbers.
int PagesShown();
// Counts up whenever pages get other numbers.
int Renumberings();

// What the commands that change the row of pages begin with: completes what is half typed, gives the paper a
// name and has the page stored in its file.
bool StorePageOfPaper();
// Shows a page of the paper, as its file holds it, once the one in memory is stored. Nothing is asked.
void ShowPageOfPaper(int number);
// Page files have other names now: page `n` is page `numberOf(n)`, with all that is known of it.
void RenumberPages(const std::function<int(int)>& numberOf);

// Looks whether another program has changed the page's file, when the watch tells of it. A page that has not
// changed here is read again, as an edit; otherwise a note tells, and saving asks.
void FollowPageFile();
// Whether the page's file holds something else than was last read or written.
bool PageFileIsOther();
// Puts what the page's file holds in the place of the page in memory, as an edit.
void TakePageFile();

// Asks whether to save a changed page that is not empty, and saves it.
bool OfferToSave();
// The first step of printing and plain-text output: writes a changed page of a named paper to its own file,
// and offers to save one that has no name.
bool StorePageBeforeOutput();

// Shows the paper's name and whether the page has changed in the window's title; after commands and edits.
void ShowPaperState();
// Shows the current page number in the page box.
void ShowPageNumber();

}  // namespace kelvane
