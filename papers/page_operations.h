#pragma once

// The row of pages of a paper: inserting, duplicating, deleting and moving pages, which renames their files,
// and the steps back and forward through that.
//
// Every renaming goes to a number that no page has. So whatever step fails, each page is whole in the file of
// some page of the paper, and no two have ever shared one. A failure puts back what was renamed before it.
//
// All complete what is half typed and store the current page first, and return false if the person gave that
// or the command up. They throw Failure when a file cannot be read or written.

#include <string>

namespace kelvane {

void ResetPageOperations();

// An empty page with the number of the current one, or the next. It has no file until something is on it.
bool InsertPageBefore();
bool InsertPageAfter();
// A copy of the current page behind it.
bool DuplicatePage();
// Asks first if there is something on the page.
bool DeletePage();
// The current page changes places with the one before or behind it.
bool MovePageEarlier();
bool MovePageLater();
bool CanMovePageEarlier();
bool CanMovePageLater();

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
