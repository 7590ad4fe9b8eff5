#include "editing/edit.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "document/lines.h"
#include "document/page_items.h"
#include "editing/cursor.h"
#include "platform/failure.h"
#include "typography/renderer.h"

namespace kelvane {

std::function<void()> PageEdited;

namespace {

// A larger difference is shown by painting the whole page, which costs less than measuring what differs.
constexpr std::size_t kMostShownBytes = 16384;

// Whole lines of a text that were replaced by others.
struct Difference {
  std::size_t at = 0;
  std::string before;
  std::string after;
};

struct Step {
  std::string label;
  Difference text;
  Difference drawings;
  int countChange = 0;  // of drawings
  Point cursorBefore;
  Point cursorAfter;
  int place = 0;
};

std::vector<Step> Back;
std::vector<Step> Forward;
// The page as the last step left it. The page in memory differs from it only inside an edit, or after
// something else changed it.
Page Known;
int Places = 0;

bool EndsLine(std::string_view text, std::size_t end, std::size_t start) {
  return end == start || text[end - 1] == '\n';
}

Difference Compare(std::string_view before, std::string_view after) {
  const std::size_t shorter = std::min(before.size(), after.size());
  auto front = static_cast<std::size_t>(
      std::mismatch(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(shorter), after.begin())
          .first -
      before.begin());
  while (front > 0 && before[front - 1] != '\n') --front;
  std::size_t back = 0;
  while (back < shorter - front && before[before.size() - 1 - back] == after[after.size() - 1 - back]) ++back;
  while (back > 0 &&
         !(EndsLine(before, before.size() - back, front) && EndsLine(after, after.size() - back, front))) {
    --back;
  }
  return {front, std::string(before.substr(front, before.size() - back - front)),
          std::string(after.substr(front, after.size() - back - front))};
}

void Replace(std::string& text, const Difference& difference, bool forward) {
  const std::string& from = forward ? difference.before : difference.after;
  const std::string& to = forward ? difference.after : difference.before;
  text.replace(difference.at, from.size(), to);
}

void Apply(Page& page, const Step& step, bool forward) {
  Replace(page.text, step.text, forward);
  Replace(page.drawings, step.drawings, forward);
  page.drawingCount = static_cast<std::int16_t>(page.drawingCount + (forward ? 1 : -1) * step.countChange);
}

// The step that leads from what is known to the page in memory, which is known from then on.
Step TakeStep(const std::string& label) {
  Step step;
  step.label = label;
  step.text = Compare(Known.text, ThePage.text);
  step.drawings = Compare(Known.drawings, ThePage.drawings);
  step.countChange = ThePage.drawingCount - Known.drawingCount;
  Apply(Known, step, true);
  return step;
}

// What changed the page without an edit is not lost by undoing: it becomes a step of its own, or the start.
void NoteOtherChanges() {
  if (ThePage == Known) return;
  Step step = TakeStep("change");
  Forward.clear();
  if (Back.empty()) return;
  step.cursorBefore = step.cursorAfter = {CursorX, CursorY};
  Back.push_back(std::move(step));
}

class Area {
 public:
  void Add(const Box& box) {
    if (empty) {
      all = box;
    } else {
      all = {std::min(all.left, box.left), std::min(all.top, box.top), std::max(all.right, box.right),
             std::max(all.bottom, box.bottom)};
    }
    empty = false;
  }
  void AddText(std::string_view lines) {
    TextEntry entry;
    while (!lines.empty()) {
      if (ParseTextEntry(TakeLine(lines), entry)) Add(BoundsOf(entry));
    }
  }
  void AddDrawings(std::string_view records) {
    Drawing drawing;
    while (!records.empty()) {
      if (ParseDrawing(TakeLine(records), drawing)) Add(BoundsOf(drawing));
    }
  }
  void Show() const {
    if (!empty) ShowPage(all);
  }

 private:
  Box all;
  bool empty = true;
};

void ShowStep(const Step& step) {
  const std::size_t bytes = step.text.before.size() + step.text.after.size() + step.drawings.before.size() +
                            step.drawings.after.size();
  if (bytes > kMostShownBytes) {
    ShowPage();
    return;
  }
  Area area;
  area.AddText(step.text.before);
  area.AddText(step.text.after);
  area.AddDrawings(step.drawings.before);
  area.AddDrawings(step.drawings.after);
  area.Show();
}

StepTaken Take(std::vector<Step>& from, std::vector<Step>& to, bool forward) {
  NoteOtherChanges();
  if (from.empty()) return {};
  to.push_back(std::move(from.back()));
  from.pop_back();
  Step& step = to.back();
  Apply(ThePage, step, forward);
  Apply(Known, step, forward);
  if (!forward) step.cursorAfter = {CursorX, CursorY};
  FollowPage();
  ShowStep(step);
  if (PageEdited) PageEdited();
  return {true,      step.label, step.text.before, step.text.after, step.cursorBefore, step.cursorAfter,
          step.place};
}

}  // namespace

void ResetEdits() {
  Back.clear();
  Forward.clear();
  Known = ThePage;
}

void EditPage(const std::string& label, const std::function<void(Page&)>& change) {
  NoteOtherChanges();
  const Point cursor{CursorX, CursorY};
  try {
    change(ThePage);
    if (ThePage.text.size() > kLargestPage) throw Failure("The page would be larger than 32 MB.");
  } catch (...) {
    ThePage = Known;
    throw;
  }
  if (ThePage == Known) return;
  Step step = TakeStep(label);
  step.cursorBefore = step.cursorAfter = cursor;
  step.place = Places;
  Back.push_back(std::move(step));
  Forward.clear();
  FollowPage();
  ShowStep(Back.back());
  if (PageEdited) PageEdited();
}

std::string StepBackLabel() {
  return Back.empty() ? "" : Back.back().label;
}

std::string StepForwardLabel() {
  return Forward.empty() ? "" : Forward.back().label;
}

StepTaken StepBack() {
  return Take(Back, Forward, false);
}

StepTaken StepForward() {
  return Take(Forward, Back, true);
}

void NotePlaceChosen() {
  ++Places;
}

int PlaceChosen() {
  return Places;
}

}  // namespace kelvane
