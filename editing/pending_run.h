#pragma once

// The run being typed, as a text: its caret and what is selected of it, what goes into it and out of it, and
// where it lies on the page.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "document/page.h"
#include "platform/canvas.h"
#include "platform/controls.h"
#include "typography/metrics.h"
#include "typography/view.h"

namespace kelvane {

// Always equal to the text of Text4. Codes 1 to 255 without CR and LF.
extern std::string PendingRun;

extern TextBox* Text4;  // control-code box

void ResetPendingRun();

void EmptyRun();
// Makes an entry the run: its text, place, typeface and size, the caret at an index into the text. The mode
// is the caller's.
void TakeRunOf(const TextEntry& entry, std::size_t caret);
// The box may hold what the person edited there.
void TakeRunFromBox();

// The caret, an index into the run.
std::size_t Caret();
// The selected part of the run; of no length if nothing is selected.
struct Part {
  std::size_t first;
  std::size_t last;
  bool Empty() const { return first == last; }
};
Part SelectedPart();
// `extending` leaves the other end of the selected part where it is.
void MoveCaret(std::size_t to, bool extending = false);
// The next place to the left or right of the caret where a word begins.
std::size_t WordLeft();
std::size_t WordRight();
// The word around a place, without the blanks beside it.
void SelectWordAt(std::size_t at);
void SelectWholeRun();
// The selected part of the run being typed, empty if there is none.
std::string SelectedText();
// What stands before the caret, or before what is selected and gives way; and the typeface in force there.
std::string_view RunBeforeCaret();
std::int16_t FontAtCaret();
// The typeface in force behind a run that begins in BaseFont.
std::int16_t FontBehind(std::string_view run);
// The code that switches a run to a typeface.
char SwitchTo(std::int16_t font);

// Takes out what stands between the caret and `to`; the caret is then there.
void EraseTo(std::size_t to);
// What is selected gives way to what is entered.
void EraseSelected();
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
// A typeface chosen from the Font Name menu: for what is selected, else for what is typed next.
void ChooseFont(std::int16_t font);
// The one that was in force before the last choice.
void ChooseFontBefore();
// The person edited the control-code box.
void ControlCodeBoxChanged();

// The run as a text entry at the cursor point, not stretched.
TextEntry EntryOfRun();
// Where its first character lies, and the pen behind so many characters of it; points.
Point RunOrigin();
RunPen PenBehind(std::size_t length);
bool IsOnRun(Point at);
// The run as it will stand once committed, with what is selected and the caret.
void PaintRun(Painter& painter, const View& view);

}  // namespace kelvane
