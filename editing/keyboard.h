#pragma once

// Typing at the cursor point: what keys and the mouse do to the pending run, and its commit into a text
// entry.

#include <cstdint>
#include <string_view>

#include "editing/pending_run.h"
#include "editing/tool.h"

namespace kelvane {

// The next commit writes the justified form.
extern bool JustifyRun;

void ResetKeyboard();

// The tool of the modes 1 to 9.
Tool& TypingTool();

// Whether a run is being typed at a place of the page. What stands in the box while no cursor point is placed
// has none yet: it waits for one.
bool RunIsOpen();

// A key on the canvas, by character code.
void TypeKey(int code);
// Enter in the box, or "OK": completes the run and gives the focus back to the canvas.
void ApplyControlCodeBox();

// A release of the mouse on the page: snaps the point to the grid and places the cursor there. An open run is
// completed where it was typed; one that had no place yet is open there. Does nothing in modes 0, 10 and 11.
void PlaceCursor(float x, float y);
// Moves the cursor point by grid steps and places it there, as a click would; the run being typed stays
// where it is. False in modes 0, 10 and 11.
bool StepCursor(int stepsX, int stepsY);

// Turns the pending run into a text entry of the page, whether or not a point was placed for it. An empty
// run, or a mode that is no anchor, changes nothing; a run too long for a page file stays, with a note. A run
// that was committed makes the mode positive.
void CommitPendingRun(bool ResetSelection);
// The entry-building half of a commit: appends the run, which is not empty, to PageText.
void AddTextRun(bool ResetSelection);

// The y of the line below one at y, both in points, as Enter goes there.
float NextLine(float y);

// The cursor point goes to the line below, as Enter does: clear of what was noted to hang below this one.
void GoToNextLine();
// Something on the line of the cursor point reaches down to `bottom`; Enter goes back to x, where the line
// began.
void NoteLine(float x, float bottom);
// The line of the cursor point goes down with it.
void LowerLine(float by);
// Whether the cursor point stands on the line that Enter led to last, and was not chosen since.
bool IsOnNewLine();
// Items with a higher identity came to the page on that line.
std::uint64_t LastAboveLine();

// Where the run being typed begins and ends and where its caret is, on its baseline, points; all the cursor
// point while none is open.
struct RunEnds {
  Point start;
  Point end;
  Point caret;
};
RunEnds EndsOfRun();

// Opens the run of an item of the page for editing, the caret where `at` points. Completed, it takes the
// item's place; Escape leaves the item as it was. Either way Select is taken again.
void RetypeItem(std::uint64_t id, Point at);
bool Retyping();
void GiveUpRetyping();
// Whether parts of its run can become items of their own: it is not stretched, and no other text waits in the
// box for a place.
bool RetypedCanBeCut();
// The item by its identity; 0 for none.
std::uint64_t RetypedItem();

// Opens the run of an entry again for editing, at its place and with its typeface and size; the entry itself
// is no longer on the page. Only in its own anchor mode and while nothing is being typed.
bool GiveBackRun(std::string_view line);
// Whether the open run is as it was given back.
bool RunIsAsGivenBack();
// Empties the run without a commit.
void DropRun();

}  // namespace kelvane
