#pragma once

// The row of pages of a paper: inserting, duplicating, deleting and moving pages, which renames their files,
// and the steps back and forward through that.
//
// Every renaming goes to a number that no page has. So whatever step fails, each page is whole in the file of
// some page of the paper, and no two have ever shared one. A failure puts back what was renamed before it.
//
// All complete what is half typed and store the current page first, ask if another page gets another number
// or something is deleted, and return false if the person gave that or the command up. The page that they
// worked on is the current one afterwards. They throw Failure when a file cannot be read or written.

#include <string>

namespace kelvane {

void ResetPageOperations();

// An empty page of that number. It has no file until something is on it, but for the first one.
bool InsertPageAt(int page);
// A copy of a page behind it.
bool DuplicatePageAt(int page);
// The file's content is kept among the versions.
bool DeletePageAt(int page);
// A page that was deleted, with the number that it had, or behind the last one if that is lower.
bool BringPageBack(int number, const std::string& content);
// Page `page` becomes page `to`, from 1 to MostPageNumber; those between move up or down.
bool MovePageTo(int page, int to);
// Asks for the number.
bool MovePageToNumber(int page);
bool CanMovePages();  // there is more than one

// The same with the current page.
bool InsertPageBefore();
bool InsertPageAfter();
bool DuplicatePage();
bool DeletePage();
bool MovePageEarlier();
bool MovePageLater();
bool CanMovePageEarlier();
bool CanMovePageLater();

// The highest page number of the paper, with or without a file: a new page counts.
int MostPageNumber();

// What the steps would take back or do again ("delete page 3"), empty for nothing. They go on as long as the
// paper is open. `next` tells whether nothing was edited since, so that the step is what the person means by
// Undo or Redo.
struct PageStep {
  std::string label;
  bool next = false;
};
PageStep PageStepBack();
PageStep PageStepForward();
// A page that was inserted and has changed since is asked about.
bool UndoPageOperation();
bool RedoPageOperation();

}  // namespace kelvane
