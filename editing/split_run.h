#pragma once

// The open run cut at its caret, so that something else can stand between its parts, and whole again if
// nothing comes of that.

#include <cstddef>
#include <optional>
#include <string>

#include "document/page.h"
#include "editing/pending_run.h"

namespace kelvane {

struct SplitRun {
  std::string taken;           // what was selected, UTF-8
  std::string behind;          // a run: what stood behind that
  std::optional<float> lineX;  // where the line began, if anything else is left of the run

  // As it was before.
  std::string text;
  TextEntry entry;  // without its text
  std::int16_t mode = 0;
  Part selected;
  std::size_t retyped = 0;    // number of the item among the texts, from 1, if it was one
  std::optional<int> edited;  // the edit that made what stands before the caret an item
};

// What stands before the caret, or before what is selected, becomes part of the page where it is; the cursor
// point is behind it, without a run. Nothing if that cannot be.
std::optional<SplitRun> CutRun();
// The run is open again as it was. Only what was taken and what stood behind it, once the page has changed.
void JoinRun(const SplitRun& run);

// The cursor point goes on in the line at x, with an anchor at the left on the same height as `anchor`.
void GoOnBehind(float x, int anchor);
// The same with a run open there.
void OpenRunAt(float x, const std::string& run);

}  // namespace kelvane
