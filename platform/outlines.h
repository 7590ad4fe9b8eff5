#pragma once

// The shapes of the screen's typefaces, for what is written without a screen.

#include <functional>

#include "platform/canvas.h"

namespace kelvane {

// The outline of a character at an em of kOutlineEm, y downwards, its origin at (0, 0); empty where the face
// has none. The face is the nearest that the machine has. Filled by whatever has typefaces; null without.
inline constexpr float kOutlineEm = 1000;
extern std::function<Path(const ScreenFace& face, unsigned char code)> ScreenOutline;

}  // namespace kelvane
