#include "app/first_minutes.h"

#include <algorithm>
#include <string>

#include "document/page.h"
#include "editing/formula_entry.h"
#include "editing/keyboard.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "typography/metrics.h"
#include "typography/run_painter.h"
#include "typography/typefaces.h"

namespace kelvane {

namespace {

constexpr const char* kLines[] = {
    "Choose an anchor at the left edge, click on the page and type. F1 opens the manual.",
    "To look at a page that is done first: Help, Sample Papers.",
};
constexpr std::int16_t kFont = 4;  // Helvetica
constexpr ColourValue kInk = 0x704030;
constexpr ColourValue kGround = 0xFFF8F0;
// Pixels.
constexpr float kEm = 15;
constexpr float kLead = 24;
constexpr float kMargin = 14;

bool Hinting;

std::string MarkFile() {
  return StateFolder + "used";
}

bool Begun() {
  return FormulaIsOpen() || !PendingRun.empty() || !CurrentDrawing.empty() || !ThePage.Empty();
}

}  // namespace

void ResetFirstMinutes() {
  Hinting = false;
}

void BeginFirstMinutes() {
  Hinting = !StateFolder.empty() && !TheFiles->Exists(MarkFile());
}

void FollowFirstMinutes() {
  if (!Hinting || !Begun()) return;
  Hinting = false;
  try {
    TheFiles->MakeFolder(StateFolder);
    WriteFileSafely(MarkFile(), "");
  } catch (const Failure&) {
    // Nothing is lost: the hint comes again at the next start.
  }
}

void PaintHint(Painter& painter, const View& view) {
  if (!Hinting || Begun()) return;
  const float width = (view.area.right - view.area.left) * view.scale;
  const float height = (view.area.bottom - view.area.top) * view.scale;
  float widest = 0;
  for (const char* line : kLines) widest = std::max(widest, MeasureRun(line, kFont, kEm));
  const float fit = std::min(1.0F, (width - 4 * kMargin) / widest);
  if (!(fit > 0.3F)) return;
  const auto at = [&](float x, float y) {
    return Point{view.area.left + x / view.scale, view.area.top + y / view.scale};
  };
  const float half = widest * fit / 2 + kMargin;
  const float top = height / 2 - kLead * fit - kMargin;
  const Point corner = at(width / 2 - half, top);
  const Point opposite = at(width / 2 + half, top + 2 * kLead * fit + 2 * kMargin);
  painter.FillBox({corner.x, corner.y, opposite.x, opposite.y}, kGround);
  float baseline = top + kMargin + kEm * fit;
  for (const std::string_view line : kLines) {
    const float x = (width - MeasureRun(line, kFont, kEm * fit)) / 2;
    PaintWords(painter, line, kFont, kEm * fit, view.scale, at(x, baseline), kInk);
    baseline += kLead * fit;
  }
}

}  // namespace kelvane
