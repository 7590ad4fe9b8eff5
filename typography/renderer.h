#pragma once

// The page renderer: paints the whole page from its text. It changes nothing of the page.

#include <functional>
#include <string_view>

#include "document/page.h"
#include "platform/canvas.h"

namespace kelvane {

// Filled at start-up: what is painted above the page (cursor mark, run being typed).
extern std::function<void()> PaintOverlay;

// Repaints page and overlay. A canvas of no size is left alone.
void RedrawPage();

// Paints one text line of the page on top of what is there, as a redraw would paint it last.
void PaintTextLine(std::string_view line);

// The origin of a run of `width` points and size `size` whose `anchor` lies on `at`; y is the baseline. An
// anchor outside 1 to 9 leaves the point.
Point AlignAtAnchor(Point at, int anchor, float width, float size);

// The extra width of each blank that stretches a run of `width` points to `amount`; 0 without blanks.
float JustificationSpace(std::string_view text, float amount, float width);

// Colour number and width in points of the last value of a drawing record.
struct LineStyle {
  std::int16_t colour;
  float width;
};
LineStyle DecodeLineStyle(float value);

}  // namespace kelvane
