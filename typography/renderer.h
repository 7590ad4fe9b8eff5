#pragma once

// The page renderer: paints the page from its items, on whatever painter it is given.

#include <string_view>

#include "document/page_items.h"
#include "platform/canvas.h"
#include "typography/view.h"

namespace kelvane {

// Paints paper, grid, guides, drawings and runs. Items that lie outside `area` (points) are left out.
void PaintPage(Painter& painter, const View& view, const PageItems& items, const Box& area);

// One item as the page shows it.
void PaintEntry(Painter& painter, const View& view, const TextEntry& entry);
void PaintDrawing(Painter& painter, const View& view, const Drawing& drawing);
// A line of a drawing, or of the path being drawn, in the colour and width that a record's style tells.
void StrokeDrawing(Painter& painter, const View& view, const Drawing& drawing);

// The rectangle that surely holds all ink of an item, points.
Box BoundsOf(const TextEntry& entry);
Box BoundsOf(const Drawing& drawing);

// Paints the page on the canvas at once; the overlay follows when the canvas is shown. A canvas of no size is
// left alone.
void RedrawPage();
// The same before the canvas is next shown: all of the page, or an area of it in points.
void ShowPage();
void ShowPage(const Box& area);

}  // namespace kelvane
