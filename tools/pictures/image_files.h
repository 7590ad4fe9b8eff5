#pragma once

// The bytes of the picture files that ship with the program.

#include <string>

#include "tools/pictures/raster.h"

namespace kelvane::pictures {

// A 24-bit bitmap file, rows from the bottom; the alpha of the picture does not count.
std::string BitmapFile(const Picture& picture);

// A pointer file: the icon container in its pointer flavour (type 2), which is the one that has a hot spot,
// with one 32-bit image and its mask. A picture of at most 255 by 255 pixels, a multiple of 32 wide.
std::string PointerFile(const Picture& picture, int hotX, int hotY);

}  // namespace kelvane::pictures
