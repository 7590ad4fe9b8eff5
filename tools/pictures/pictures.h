#pragma once

// Makes the program's picture files from their sources, `pointers.txt` and `about.txt`.

#include <map>
#include <string>
#include <string_view>

#include "tools/pictures/raster.h"

namespace kelvane::pictures {

// The colour of the pixel of a pointer that marks its point.
inline constexpr Pixel kAccent = {214, 36, 28, 255};

// File name and bytes of every pointer described in `source` (see the head of pointers.txt). `name` is the
// source's, for messages. Throws Failure naming the line that is wrong.
std::map<std::string, std::string> BuildPointers(std::string_view source, const std::string& name);

// The picture drawn by `source` (see the head of about.txt). Throws Failure naming the line that is wrong.
Picture BuildDrawing(std::string_view source, const std::string& name);

// File name and bytes of all the pictures. `folder` holds the sources: backslash form, ends in a backslash.
std::map<std::string, std::string> BuildPictures(const std::string& folder);

}  // namespace kelvane::pictures
