#pragma once

// The window "Versions": what the page's file holds now, if that is not the page, and what saves have
// replaced, with pictures that mark what differs from the page in memory. Any of them can be brought back as
// an edit.

#include "platform/controls.h"

namespace kelvane {

extern Window* VersionsWindow;  // null until it is first shown

void ResetVersionsWindow();

// Shows the versions of the current page.
void ShowVersions();
// Brings the window, while it is shown, up to date with the page in memory.
void FollowVersions();

}  // namespace kelvane
