#include "editing/split_run.h"

#include <algorithm>
#include <utility>

#include "document/page_items.h"
#include "editing/cursor.h"
#include "editing/edit.h"
#include "editing/keyboard.h"
#include "typography/signs.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

void TakeRun(TextEntry entry, const std::string& text, std::size_t caret) {
  entry.text = text;
  TakeRunOf(entry, caret);
}

// The part of a run behind another, in its own typeface.
std::string RestBehind(const std::string& before, const std::string& rest) {
  const std::int16_t font = FontBehind(before);
  return rest.empty() || font == BaseFont ? rest : SwitchTo(font) + rest;
}

// What stands before the caret as an item. False if it cannot be one; the run is open as before, then.
bool CommitLeftPart(SplitRun& run, const std::string& left) {
  const int edits = EditsMade();
  const bool retyped = Retyping();
  const float x = RunOrigin().x;
  GoOnBehind(x, run.entry.anchor);
  TextEntry entry = run.entry;
  entry.x = x;
  TakeRun(entry, left, left.size());
  CommitPendingRun(false);
  if (!PendingRun.empty() || Retyping()) {
    TakeMode(run.mode);
    TakeRun(run.entry, run.text, run.selected.last);
    return false;
  }
  if (EditsMade() != edits) run.edited = EditsMade();
  if (retyped) TakeRun(run.entry, "", 0);  // completed, it left the typeface and the place of new runs
  return true;
}

}  // namespace

std::optional<SplitRun> CutRun() {
  const Part selected = SelectedPart().Empty() ? Part{Caret(), Caret()} : SelectedPart();
  SplitRun run;
  run.text = PendingRun;
  run.entry = EntryOfRun();
  run.entry.text = {};
  run.mode = CursorMode;
  run.selected = selected;
  const std::string left = run.text.substr(0, selected.first);
  const std::string taken = run.text.substr(selected.first, selected.last - selected.first);
  run.taken = TextOfRun(taken, FontBehind(left));
  run.behind = RestBehind(left + taken, run.text.substr(selected.last));
  if (Retyping()) {
    const auto& texts = ItemsOfPage().Texts();
    const auto item = std::ranges::find(texts, RetypedItem(), &TextItem::id);
    run.retyped = static_cast<std::size_t>(item - texts.begin()) + 1;
  }
  const Point start = RunOrigin();
  const float x = PenBehind(selected.first).x;
  if ((!left.empty() || run.retyped > 0) && !CommitLeftPart(run, left)) return std::nullopt;
  EmptyRun();
  if (left.empty() && run.behind.empty()) {
    TakeMode(static_cast<std::int16_t>(-run.entry.anchor));
  } else {
    run.lineX = run.entry.anchor <= 3 ? run.entry.x : start.x;
    GoOnBehind(x, run.entry.anchor);
  }
  return run;
}

void JoinRun(const SplitRun& run) {
  if (run.edited && *run.edited != EditsMade()) {
    const std::string left = run.text.substr(0, run.selected.first);
    const std::string taken = run.text.substr(left.size(), run.selected.last - left.size());
    return OpenRunAt(CursorX, RestBehind(left, taken) + run.behind);
  }
  if (run.edited) StepBack();
  if (run.retyped > 0) {
    RetypeItem(ItemsOfPage().Texts()[run.retyped - 1].id, {run.entry.x, run.entry.y});
  } else {
    TakeMode(run.mode);
  }
  TakeRun(run.entry, run.text, run.selected.last);
  if (run.selected.Empty()) return;
  MoveCaret(run.selected.first);
  MoveCaret(run.selected.last, true);
}

// Only an anchor at the left does; 1 to 3 go down that side.
void GoOnBehind(float x, int anchor) {
  const bool top = anchor == 1 || anchor == 7 || anchor == 8;
  const bool centre = anchor == 2 || anchor == 6 || anchor == 9;
  CursorX = x;
  TakeMode(static_cast<std::int16_t>(top ? -1 : centre ? -2 : -3));
}

void OpenRunAt(float x, const std::string& run) {
  GoOnBehind(x, AnchorOfMode(CursorMode));
  if (!run.empty()) TakeRun(EntryOfRun(), run, run.size());
}

}  // namespace kelvane
