#include "app/typing_view.h"

#include <string>

#include "app/foot.h"
#include "document/numbers.h"
#include "editing/cursor.h"
#include "editing/keyboard.h"
#include "typography/metrics.h"
#include "typography/renderer.h"
#include "typography/typefaces.h"
#include "typography/view.h"
#include "typography/zoom.h"

namespace kelvane {

namespace {

// The ends of the run being typed, points; both the cursor point while it is empty.
struct RunEnds {
  Point start;
  Point end;
};

RunEnds EndsOfPendingRun() {
  if (PendingRun.empty()) return {{CursorX, CursorY}, {CursorX, CursorY}};
  const float width = MeasureRun(PendingRun, BaseFont, FontSize);
  const Point start = AlignAtAnchor({CursorX, CursorY}, AnchorOfMode(CursorMode), width, FontSize);
  return {start, {start.x + width, start.y}};
}

std::string TypingWarning() {
  if (!(FontSize > 0)) return "Size " + FormatSingle(FontSize) + ": what is typed will not be seen";
  if (CursorMode >= 0) return {};
  if (CursorX < 0 || CursorX > PaperWidth || CursorY < 0 || CursorY > PaperHeight)
    return "The cursor point is outside the paper";
  const RunEnds run = EndsOfPendingRun();
  return run.start.x < 0 || run.end.x > PaperWidth ? "The run passes the paper's edge" : "";
}

}  // namespace

void FollowTyping() {
  if (CursorMode < 0) {
    const Point end = EndsOfPendingRun().end;
    BringIntoView(end.x, end.y);
  }
  WarnOfTyping();
}

void WarnOfTyping() {
  ShowWarning(TypingWarning());
}

}  // namespace kelvane
