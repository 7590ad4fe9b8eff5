#include "editing/change_mark.h"

#include <optional>

#include "editing/tool.h"
#include "platform/controls.h"
#include "typography/colours.h"
#include "typography/zoom.h"

namespace kelvane {

namespace {

constexpr int kShown = 500;       // milliseconds
constexpr float kRoomAround = 2;  // pixels

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

void PaintChangeMark(Painter& painter, const View& view) {
  if (Marked) PaintFrame(painter, view, *Marked, {PaletteColour(kCyan), 2, true});
}

void PaintFrame(Painter& painter, const View& view, const Box& area, const Pen& pen) {
  const float room = kRoomAround / view.scale;
  const Box box{area.left - room, area.top - room, area.right + room, area.bottom + room};
  painter.DrawLine({box.left, box.top}, {box.right, box.top}, pen);
  painter.DrawLine({box.right, box.top}, {box.right, box.bottom}, pen);
  painter.DrawLine({box.right, box.bottom}, {box.left, box.bottom}, pen);
  painter.DrawLine({box.left, box.bottom}, {box.left, box.top}, pen);
}

}  // namespace kelvane
