#pragma once

// The window "Pages": small pictures of all pages of the paper, to go to them and to change their row.

#include "platform/controls.h"

namespace kelvane {

extern Window* OverviewWindow;  // null until it is first shown

void ResetOverview();

void ShowOverview();

}  // namespace kelvane
