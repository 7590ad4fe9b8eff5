#pragma once

// Typing at the cursor point: the pending run, its keys, and its commit into a text entry.

#include <cstdint>
#include <string>

#include "platform/controls.h"

namespace kelvane {

// The run being typed; always equal to the text of Text4. Codes 1 to 255 without CR and LF.
extern std::string PendingRun;
// The next commit writes the justified form.
extern bool JustifyRun;

extern TextBox* Text4;  // control-code box

void ResetKeyboard();

// A key on the canvas, by character code.
void TypeKey(int code);
// Script button 0 to 11 appends code 240 + index.
void InsertScript(int index);
// Appends text to the run if a cursor point is placed (macros).
void InsertText(const std::string& text);
// A typeface chosen from the Font Name menu.
void ChooseFont(std::int16_t font);
// The person edited the control-code box.
void ControlCodeBoxChanged();
// Enter in the box, or "OK": completes the run and gives the focus back to the canvas.
void ApplyControlCodeBox();

// Turns the pending run into a text entry of the page. An empty run, or a mode that is no anchor, changes
// nothing. A run that was committed makes the mode positive.
void CommitPendingRun(bool ResetSelection);
// The entry-building half of a commit: appends the run, which is not empty, to PageText.
void AddTextRun(bool ResetSelection);

// Paints the cursor mark in a palette colour; kWhite takes it away.
void DrawCursorMark(std::int16_t colour, bool typing);

}  // namespace kelvane
