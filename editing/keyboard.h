#pragma once

// Typing at the cursor point: the pending run, its caret and keys, and its commit into a text entry.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "editing/tool.h"
#include "platform/controls.h"

namespace kelvane {

// The run being typed; always equal to the text of Text4. Codes 1 to 255 without CR and LF.
extern std::string PendingRun;
// The next commit writes the justified form.
extern bool JustifyRun;

extern TextBox* Text4;  // control-code box

void ResetKeyboard();

// The tool of the modes 1 to 9.
Tool& TypingTool();

// Whether a run is being typed at a place of the page. What stands in the box while no cursor point is placed
// has none yet: it waits for one.
bool RunIsOpen();

// A key on the canvas, by character code.
void TypeKey(int code);
// Script button 0 to 11 puts code 240 + index into the run. One that begins a script puts what is selected
// into it.
void InsertScript(int index);
// Puts text into the run at the caret, or in the place of what is selected, if a cursor point is placed.
void InsertText(const std::string& text);
// The same for what sets a sign, which may begin and end with a switch: one that has no effect is left out.
void InsertRun(std::string run);
// What an input method has in the making, in UTF-8: shown at the caret as it would be set, in
// the place of what is selected.
void ShowPreedit(const std::string& utf8);
// What stands before the caret, or before what is selected and gives way; and the typeface in force there.
std::string_view RunBeforeCaret();
std::int16_t FontAtCaret();
// The typeface in force behind a run that begins in BaseFont.
std::int16_t FontBehind(std::string_view run);
// The selected part of the run being typed, empty if there is none.
std::string SelectedText();
void SelectWholeRun();
// A typeface chosen from the Font Name menu: for what is selected, else for what is typed next.
void ChooseFont(std::int16_t font);
// The one that was in force before the last choice.
void ChooseFontBefore();
// The person edited the control-code box.
void ControlCodeBoxChanged();
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
// The item by its identity; 0 for none.
std::uint64_t RetypedItem();

// Opens the run of an entry again for editing, at its place and with its typeface and size; the entry itself
// is no longer on the page. Only in its own anchor mode and while nothing is being typed.
bool GiveBackRun(std::string_view line);
// Puts a run into the box, its caret before character `caret`, whatever stood there. An item being retyped
// goes on being it.
void PutRun(const std::string& run, std::size_t caret);
// Whether the open run is as it was given back.
bool RunIsAsGivenBack();
// Empties the run without a commit.
void DropRun();

}  // namespace kelvane
