#pragma once

// Leaving the program.

namespace kelvane {

// Completes the run being typed, offers to save, and writes settings and macros. False if the exit was given
// up (text of the control-code box that would be lost, a question or the save dialog cancelled, or a page
// that cannot be written; the latter throws Failure). A program folder that cannot be written is reported,
// once, and does not keep the person here.
bool ExitSequence();

// The menu entry: the sequence, then the end of the program.
void LeaveProgram();

}  // namespace kelvane
