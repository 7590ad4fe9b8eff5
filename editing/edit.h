#pragma once

// The one door through which the page in memory changes, and the steps back and forward through its changes.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/page.h"
#include "editing/differences.h"

namespace kelvane {

// A change of the page that can be taken back and done again.
struct Step {
  std::string label;  // what the person would call it
  Differences text;
  Differences drawings;
  int countChange = 0;  // of drawings
  Point cursorBefore;
  Point cursorAfter;
  int place = 0;  // number of the person's choice of a cursor point at the time
};

// Takes a page through a step, or back.
void Apply(Page& page, const Step& step, bool forward);

// The steps of a page, the next one of each last.
struct Steps {
  std::vector<Step> back;
  std::vector<Step> forward;
};
const Steps& StepsOfPage();

// Forgets the steps of all pages: another paper came into memory.
void ResetEdits();

// Each page of a paper has steps of its own. Before a page is left: keeps them, and the page as it is left.
void KeepEdits(int page);
// After a page was read. Puts it back as it was left, with its steps, if it is `same`: what was read then is
// what was written. Otherwise its steps are forgotten, for they would lead elsewhere.
void TakeUpEdits(int page, bool same);
// Puts a page into memory with its steps and the number of the last choice of a cursor point, as they were.
void RestoreEdits(Page page, Steps steps, int placeChosen);
// Pages that are not in memory get other numbers.
void RenumberEdits(const std::function<int(int)>& numberOf);

// Runs `change` on the page in memory and does what every edit needs: the step back, the painting of what
// differs, and telling PageEdited. `label` is what the person would call the edit ("typing"). A change that
// throws, or that makes the page too large to be saved (Failure), leaves it as it was; one that changes
// nothing leaves no step.
void EditPage(const std::string& label, const std::function<void(Page&)>& change);

// Filled at start-up: told after each edit and each step.
extern std::function<void()> PageEdited;

// What has happened to the page: an edit, a step back or forward, or something that no step leads back from.
enum class PageEvent : std::uint8_t { Edit, Back, Forward, Replaced };
// Filled at start-up: told right after each of them, before anything else hears of it. `step` is the one that
// was made or taken; that of Replaced says nothing.
extern std::function<void(PageEvent event, const Step& step)> PageRecorded;

// Labels of the next steps, empty if there is none.
std::string StepBackLabel();
std::string StepForwardLabel();
// Counts up with every edit and every step, so that one can tell whether there was one since.
int EditsMade();

// What a step changed, and where the cursor point stood at either end.
struct StepTaken {
  bool taken = false;
  std::string_view label;
  bool changesText = false;
  std::string_view added;  // lines, if the edit did nothing else to the text; valid until the next edit
  Point cursorBefore;
  Point cursorAfter;
  int place = 0;            // number of the person's choice of a cursor point at the time of the edit
  std::optional<Box> area;  // of what the step put on the page, or else of what it took away, points
};
StepTaken StepBack();
StepTaken StepForward();

// Counts up whenever the person chooses a cursor point, so that steps can tell whether it is still theirs.
void NotePlaceChosen();
int PlaceChosen();

}  // namespace kelvane
