#pragma once

// What the canvas says to somebody who has never used the program.

#include "platform/canvas.h"
#include "typography/view.h"

namespace kelvane {

void ResetFirstMinutes();

// At the start without a paper: the canvas says what to do, unless the program was used before.
void BeginFirstMinutes();
// Notes in the state folder, once something stands on the page, that the program was used.
void FollowFirstMinutes();
// Paints the hint above the page, as long as it holds.
void PaintHint(Painter& painter, const View& view);

}  // namespace kelvane
