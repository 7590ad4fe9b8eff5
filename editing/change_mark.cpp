#include "editing/change_mark.h"

#include <optional>

#include "editing/marks.h"
#include "editing/tool.h"
#include "platform/controls.h"
#include "typography/colours.h"
#include "typography/zoom.h"

namespace kelvane {

namespace {

constexpr int kShown = 500;  // milliseconds

std::optional<Box> Marked;
Timer* Clock = nullptr;  // made when it is needed first

void TakeAway() {
  Marked.reset();
  ShowCursor();
}

}  // namespace

void ResetChangeMark() {
  Marked.reset();
  Clock = nullptr;
}

void MarkChange(const Box& area) {
  if (!CanvasIsLaidOut() || !TheToolkit) return;
  BringIntoView((area.left + area.right) / 2, (area.top + area.bottom) / 2);
  Marked = area;
  if (!Clock) {
    Clock = TheToolkit->NewTimer();
    Clock->OnTick = [clock = Clock] {
      clock->Stop();
      TakeAway();
    };
  }
  Clock->Start(kShown);
  ShowCursor();
}

void PaintChangeMark(Painter& painter) {
  if (Marked) MarkInk(painter, *Marked, PaletteColour(kCyan), 2);
}

}  // namespace kelvane
