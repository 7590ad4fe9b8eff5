#pragma once

#include "platform/canvas.h"

namespace kelvane {

// The outline of a character of the screen's typefaces, as ScreenOutline gives it.
Path QtOutline(const ScreenFace& face, unsigned char code);

}  // namespace kelvane
