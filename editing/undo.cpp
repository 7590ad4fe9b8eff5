#include "editing/undo.h"

#include <deque>
#include <utility>

#include "document/page.h"
#include "document/paper.h"
#include "editing/bezier.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "typography/renderer.h"

namespace kelvane {

namespace {

constexpr std::size_t kMostSteps = 200;
constexpr std::size_t kMostBytes = 64U << 20;

// The page and the cursor on the far side of an edit.
struct Step {
  std::string label;
  std::string text;
  std::string drawings;
  std::int16_t drawingCount = 0;
  float x = 0;
  float y = 0;
};
std::deque<Step> UndoSteps;
std::deque<Step> RedoSteps;

Step CurrentState(const std::string& label) {
  return {label, PageText, DrawingList, DrawingCount, CursorX, CursorY};
}

std::size_t BytesOf(const std::deque<Step>& steps) {
  std::size_t bytes = 0;
  for (const Step& step : steps) bytes += step.text.size() + step.drawings.size();
  return bytes;
}

void Move(std::deque<Step>& from, std::deque<Step>& to) {
  // What is being typed or drawn is an edit as well; the place it was typed at stays taken.
  const bool placed = CursorMode < 0;
  CommitPendingRun(false);
  FinishDrawing();
  if (placed && CursorMode > 0) CursorMode = static_cast<std::int16_t>(-CursorMode);
  if (from.empty()) return;
  Step step = std::move(from.back());
  from.pop_back();
  to.push_back(CurrentState(step.label));
  PageText = std::move(step.text);
  DrawingList = std::move(step.drawings);
  DrawingCount = step.drawingCount;
  CursorX = step.x;
  CursorY = step.y;
  NotePageChange();
  RedrawPage();
}

}  // namespace

void ResetUndo() {
  UndoSteps.clear();
  RedoSteps.clear();
}

void BeginEdit(const std::string& label) {
  UndoSteps.push_back(CurrentState(label));
  RedoSteps.clear();
  while (UndoSteps.size() > kMostSteps || (UndoSteps.size() > 1 && BytesOf(UndoSteps) > kMostBytes)) {
    UndoSteps.pop_front();
  }
}

std::string UndoLabel() {
  return UndoSteps.empty() ? "" : UndoSteps.back().label;
}
std::string RedoLabel() {
  return RedoSteps.empty() ? "" : RedoSteps.back().label;
}

void Undo() {
  Move(UndoSteps, RedoSteps);
}
void Redo() {
  Move(RedoSteps, UndoSteps);
}

}  // namespace kelvane
