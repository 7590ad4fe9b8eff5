#include "editing/undo.h"

#include <string_view>

#include "document/lines.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/keyboard.h"

namespace kelvane {

namespace {

// Completes the open run and leaves its place taken. False if it stays open.
bool CompleteRun() {
  const std::int16_t mode = CursorMode;
  CommitPendingRun(false);
  CursorMode = mode;
  ShowCursor();
  return PendingRun.empty();
}

// The line of a step that did nothing but add one.
std::string_view AddedLine(const StepTaken& step) {
  std::string_view lines = step.linesAfter;
  if (!step.linesBefore.empty() || lines.empty()) return {};
  const std::string_view line = TakeLine(lines);
  return lines.empty() ? line : std::string_view{};
}

// Steps through the text take the cursor along while it stands where the person last chose to type.
bool MovesCursor(const StepTaken& step) {
  return step.linesBefore != step.linesAfter && step.place == PlaceChosen();
}

}  // namespace

void ResetUndo() {
  ResetEdits();
}

std::string UndoLabel() {
  if (RunIsOpen()) return "typing";
  return PathIsOpen() ? "drawing" : StepBackLabel();
}

std::string RedoLabel() {
  return StepForwardLabel();
}

void Undo() {
  if (Retyping()) return GiveUpRetyping();
  if (RunIsOpen() && RunIsAsGivenBack()) {
    DropRun();  // Redo brings it back; what is undone is the edit before it
  } else if (RunIsOpen()) {
    if (CompleteRun()) StepBack();
    return;
  }
  if (PathIsOpen()) {
    if (FinishDrawing()) StepBack();
    return;
  }
  const StepTaken step = StepBack();
  ShowCursor();
  if (!step.taken || !MovesCursor(step)) return;
  if (step.label == "typing" && GiveBackRun(AddedLine(step))) return;
  CursorX = step.cursorBefore.x;
  CursorY = step.cursorBefore.y;
  ShowCursor();
}

void Redo() {
  if (Retyping()) return GiveUpRetyping();
  if (RunIsOpen()) {
    if (RunIsAsGivenBack()) {
      DropRun();
    } else {
      CompleteRun();
    }
  }
  FinishDrawing();
  const StepTaken step = StepForward();
  ShowCursor();
  if (!step.taken || !MovesCursor(step)) return;
  CursorX = step.cursorAfter.x;
  CursorY = step.cursorAfter.y;
  ShowCursor();
}

}  // namespace kelvane
