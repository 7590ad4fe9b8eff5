#pragma once

// The one door through which the page in memory changes, and the steps back and forward through its changes.

#include <functional>
#include <string>
#include <string_view>

#include "document/page.h"

namespace kelvane {

// Forgets all steps: another page came into memory.
void ResetEdits();

// Runs `change` on the page in memory and does what every edit needs: the step back, the painting of what
// differs, and telling PageEdited. `label` is what the person would call the edit ("typing"). A change that
// throws, or that makes the page too large to be saved (Failure), leaves it as it was; one that changes
// nothing leaves no step.
void EditPage(const std::string& label, const std::function<void(Page&)>& change);

// Filled at start-up: told after each edit and each step.
extern std::function<void()> PageEdited;

// Labels of the next steps, empty if there is none.
std::string StepBackLabel();
std::string StepForwardLabel();

// What a step changed of the page's text, in whole lines, and where the cursor point stood at either end.
struct StepTaken {
  bool taken = false;
  std::string_view label;
  std::string_view linesBefore;  // valid until the next edit
  std::string_view linesAfter;
  Point cursorBefore;
  Point cursorAfter;
  int place = 0;  // number of the person's choice of a cursor point at the time of the edit
};
StepTaken StepBack();
StepTaken StepForward();

// Counts up whenever the person chooses a cursor point, so that steps can tell whether it is still theirs.
void NotePlaceChosen();
int PlaceChosen();

}  // namespace kelvane
