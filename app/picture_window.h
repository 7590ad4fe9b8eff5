#pragma once

// The window "Export Picture": what of the page, as what, on what ground and how fine.

#include "platform/controls.h"

namespace kelvane {

extern Window* PictureWindow;  // null until it is first shown

void ResetPictureWindow();

void ShowPictureWindow();

}  // namespace kelvane
