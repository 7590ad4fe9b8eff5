#pragma once

// How items are marked above the page, and how they would look after a change.

#include <cstdint>
#include <functional>

#include "editing/selection.h"
#include "typography/view.h"

namespace kelvane {

// So many items are marked and moved as one box.
bool TooManyToShow(const SelectedItems& items);

void PaintOutline(Painter& painter, const Box& box, ColourValue colour, float width = 1);
// An outline a few pixels outside of the box, which leaves the ink in it free.
void MarkInk(Painter& painter, const Box& ink, ColourValue colour, float width = 1);
void MarkSelected(Painter& painter);
// Lightly, what a click would pick. Nothing for an item that is gone.
void MarkHovered(Painter& painter, std::uint64_t id);

// Items as a change makes them.
void PaintChanged(Painter& painter, const View& view, const SelectedItems& items,
                  const std::function<void(TextEntry&)>& changeText,
                  const std::function<void(Drawing&)>& changeDrawing);

}  // namespace kelvane
