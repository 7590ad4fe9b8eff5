#include "editing/edit.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include "document/lines.h"
#include "editing/cursor.h"
#include "platform/failure.h"
#include "typography/renderer.h"

namespace kelvane {

std::function<void()> PageEdited;
std::function<void(PageEvent, const Step&)> PageRecorded;

namespace {

// A larger difference is shown by painting the whole page, which costs less than measuring what differs.
constexpr std::size_t kMostShownBytes = 16384;

Steps Now;
// By number, the pages that are not in memory and have steps.
struct LeftPage {
  Steps steps;
  Page page;
};
std::map<int, LeftPage> LeftPages;
// The page as the last step left it. The page in memory differs from it only inside an edit, or after
// something else changed it.
Page Known;
int Places = 0;
int Edits = 0;

void Record(PageEvent event, const Step& step) {
  if (PageRecorded) PageRecorded(event, step);
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
  Now.forward.clear();
  if (Now.back.empty()) return Record(PageEvent::Replaced, {});
  step.cursorBefore = step.cursorAfter = {CursorX, CursorY};
  Now.back.push_back(std::move(step));
  Record(PageEvent::Edit, Now.back.back());
}

// What is drawn on the page where a text stood or stands.
using BoundsOfRun = Box (*)(const TextEntry&);
Box CellsOfRun(const TextEntry& entry) {
  return CellsOf(entry, 0, entry.text.size());
}

class Area {
 public:
  // The lines that stand there at one end of a step. Runs take the room that `bounds` gives them.
  void Add(const Step& step, bool after, BoundsOfRun bounds) {
    for (const Difference& lines : step.text) {
      TextEntry entry;
      for (std::string_view rest = after ? lines.after : lines.before; !rest.empty();)
        if (ParseTextEntry(TakeLine(rest), entry)) Add(bounds(entry));
    }
    for (const Difference& records : step.drawings) {
      Drawing drawing;
      for (std::string_view rest = after ? records.after : records.before; !rest.empty();)
        if (ParseDrawing(TakeLine(rest), drawing)) Add(BoundsOf(drawing));
    }
  }
  const std::optional<Box>& All() const { return all; }

 private:
  void Add(const Box& box) {
    all = !all ? box
               : Box{std::min(all->left, box.left), std::min(all->top, box.top),
                     std::max(all->right, box.right), std::max(all->bottom, box.bottom)};
  }

  std::optional<Box> all;
};

bool IsLarge(const Step& step) {
  std::size_t bytes = 0;
  for (const Differences* all : {&step.text, &step.drawings})
    for (const Difference& difference : *all) bytes += difference.before.size() + difference.after.size();
  return bytes > kMostShownBytes;
}

void ShowStep(const Step& step) {
  if (IsLarge(step)) {
    ShowPage();
    return;
  }
  Area area;
  area.Add(step, false, BoundsOf);
  area.Add(step, true, BoundsOf);
  if (area.All()) ShowPage(*area.All());
}

// Where the step has put something, or else has taken something away.
std::optional<Box> AreaOf(const Step& step, bool forward) {
  if (IsLarge(step)) return {};
  for (const bool after : {forward, !forward}) {
    Area area;
    area.Add(step, after, CellsOfRun);
    if (area.All()) return area.All();
  }
  return {};
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
  Record(forward ? PageEvent::Forward : PageEvent::Back, step);
  FollowPage();
  ShowStep(step);
  if (PageEdited) PageEdited();
  ++Edits;
  StepTaken taken{true,       step.label, !step.text.empty(), {}, step.cursorBefore, step.cursorAfter,
                  step.place, {}};
  if (step.text.size() == 1 && step.text[0].before.empty()) taken.added = step.text[0].after;
  taken.area = AreaOf(step, forward);
  return taken;
}

}  // namespace

void Apply(Page& page, const Step& step, bool forward) {
  Replace(page.text, step.text, forward);
  Replace(page.drawings, step.drawings, forward);
  page.drawingCount = static_cast<std::int16_t>(page.drawingCount + (forward ? 1 : -1) * step.countChange);
}

void ResetEdits() {
  Now = {};
  LeftPages.clear();
  Known = ThePage;
  ClearMarkedBox();
}

void KeepEdits(int page) {
  NoteOtherChanges();
  LeftPages.erase(page);
  if (!Now.back.empty() || !Now.forward.empty()) LeftPages[page] = {std::move(Now), Known};
}

void TakeUpEdits(int page, bool same) {
  Now = {};
  auto left = LeftPages.extract(page);
  if (same && !left.empty()) {
    Now = std::move(left.mapped().steps);
    ThePage = std::move(left.mapped().page);
  }
  Known = ThePage;
  ClearMarkedBox();  // items of another page
}

void RestoreEdits(Page page, Steps steps, int placeChosen) {
  ThePage = std::move(page);
  Known = ThePage;
  Now = std::move(steps);
  Places = placeChosen;
  ClearMarkedBox();
}

const Steps& StepsOfPage() {
  return Now;
}

void RenumberEdits(const std::function<int(int)>& numberOf) {
  std::map<int, LeftPage> renumbered;
  for (auto& [number, left] : LeftPages) renumbered[numberOf(number)] = std::move(left);
  LeftPages = std::move(renumbered);
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
  Now.back.push_back(std::move(step));
  Now.forward.clear();
  Record(PageEvent::Edit, Now.back.back());
  ++Edits;
  FollowPage();
  ShowStep(Now.back.back());
  if (PageEdited) PageEdited();
}

std::string StepBackLabel() {
  return Now.back.empty() ? "" : Now.back.back().label;
}

std::string StepForwardLabel() {
  return Now.forward.empty() ? "" : Now.forward.back().label;
}

int EditsMade() {
  return Edits;
}

StepTaken StepBack() {
  return Take(Now.back, Now.forward, false);
}

StepTaken StepForward() {
  return Take(Now.forward, Now.back, true);
}

void NotePlaceChosen() {
  ++Places;
}

int PlaceChosen() {
  return Places;
}

}  // namespace kelvane
